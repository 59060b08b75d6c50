#include "port/tweakbar/BarFont.h"

#include "port/d3d9/DebugText.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <imgui/imgui.h>

namespace port
{

namespace
{
constexpr float BUILT_IN_SIZE = 13.0f;
constexpr float LARGEST = 64.0f; ///< beyond that the letters need more of a texture than they are worth

void setStyle(float scale)
{
    ImGuiStyle style;
    ImGui::StyleColorsDark(&style);
    style.WindowRounding = 4.0f;
    style.FrameRounding = 2.0f;
    style.FramePadding = ImVec2(4.0f, 2.0f);
    style.ItemSpacing = ImVec2(6.0f, 3.0f);
    style.CellPadding = ImVec2(4.0f, 1.0f);
    ImVec4 *colors = style.Colors;
    colors[ImGuiCol_WindowBg] = ImVec4(0.09f, 0.09f, 0.10f, 0.97f);
    colors[ImGuiCol_FrameBg] = ImVec4(0.19f, 0.20f, 0.22f, 1.0f);
    colors[ImGuiCol_FrameBgHovered] = ImVec4(0.26f, 0.28f, 0.31f, 1.0f);
    colors[ImGuiCol_TitleBg] = ImVec4(0.13f, 0.13f, 0.14f, 1.0f);
    colors[ImGuiCol_TitleBgActive] = ImVec4(0.20f, 0.23f, 0.28f, 1.0f);
    colors[ImGuiCol_Header] = ImVec4(0.22f, 0.26f, 0.32f, 1.0f);
    colors[ImGuiCol_Button] = ImVec4(0.24f, 0.27f, 0.32f, 1.0f);
    colors[ImGuiCol_ButtonActive] = ImVec4(0.20f, 0.46f, 0.78f, 1.0f);
    colors[ImGuiCol_PlotLines] = ImVec4(0.45f, 0.74f, 0.98f, 1.0f);
    style.ScaleAllSizes(scale);
    ImGui::GetStyle() = style;
}
} // namespace

void BarFont::set(const char *newFile, float newPixels, int windowHeight)
{
    file = newFile ? newFile : "";
    pixels = std::isfinite(newPixels) ? std::clamp(newPixels, 6.0f, LARGEST) : BUILT_IN_SIZE;
    baseHeight = std::max(windowHeight, 1);
    present = 0.0f;
}

bool BarFont::fit(int windowHeight)
{
    const float scale = std::max(static_cast<float>(windowHeight) / static_cast<float>(baseHeight), 1.0f);
    const float wanted = std::min(std::round(pixels * scale), LARGEST);
    if (wanted == present)
        return false;
    present = wanted;
    load(wanted);
    setStyle(wanted / BUILT_IN_SIZE);
    return true;
}

void BarFont::load(float size)
{
    ImFontAtlas &fonts = *ImGui::GetIO().Fonts;
    fonts.Clear();
    const std::string path = hostPath(file.c_str());
    std::error_code missing;
    const bool isThere = !file.empty() && std::filesystem::is_regular_file(path, missing);
    if (!file.empty() && !isThere)
        debugText("tweak bars: the font %s cannot be read; the built-in one stands in its place", path.c_str());
    if (!isThere || !fonts.AddFontFromFileTTF(path.c_str(), size))
    {
        ImFontConfig config;
        config.SizePixels = size;
        fonts.AddFontDefault(&config);
    }
    fonts.Build();
}

} // namespace port
