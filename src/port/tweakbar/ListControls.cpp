#include "port/tweakbar/ListControls.h"

#include "port/tweakbar/BarPictures.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <imgui/imgui.h>
#include <imgui/imgui_stdlib.h>

namespace port
{

namespace
{
void drawRow(TweakVar &var, unsigned index)
{
    TwListRow row{};
    var.list.row(index, &row, var.clientData);
    if (var.removed)
        return;
    ImGui::SetCursorPosX(ImGui::GetCursorPosX() + static_cast<float>(row.depth) * ImGui::GetFontSize());
    const char *mark = !row.opens ? "  " : row.isOpen ? "- ##mark" : "+ ##mark";
    if (ImGui::Selectable(mark, false, 0, ImVec2(ImGui::GetFontSize(), 0)) && row.opens)
        return var.list.click(index, 1, var.clientData);
    ImGui::SameLine();
    const ImVec2 at = ImGui::GetCursorPos();
    const bool pressed = ImGui::Selectable("##row", row.marked != 0);
    // Beside the control: what stands in a text is no mark of the library's.
    ImGui::SetCursorPos(at);
    ImGui::TextUnformatted(row.text);
    if (pressed)
        var.list.click(index, 0, var.clientData);
}

void drawRows(TweakVar &var)
{
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(var.list.count(var.clientData)), ImGui::GetTextLineHeightWithSpacing());
    while (clipper.Step())
    {
        for (int i = clipper.DisplayStart; i < clipper.DisplayEnd && !var.removed; ++i)
        {
            ImGui::PushID(i);
            drawRow(var, static_cast<unsigned>(i));
            ImGui::PopID();
        }
    }
}

bool contains(const char *text, const std::string &part)
{
    const auto same = [](char a, char b)
    { return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b)); };
    const char *end = text + std::strlen(text);
    return std::search(text, end, part.begin(), part.end(), same) != end;
}

/// The pictures whose label holds what is searched for.
std::vector<unsigned> foundPictures(TweakVar &var)
{
    std::vector<unsigned> found;
    const unsigned count = var.pictures.count(var.clientData);
    TwPicture picture{};
    for (unsigned i = 0; i < count && !var.removed; ++i)
    {
        if (!var.typed.empty())
            var.pictures.picture(i, &picture, var.clientData);
        if (var.typed.empty() || contains(picture.label, var.typed))
            found.push_back(i);
    }
    return found;
}

void drawPicture(TweakVar &var, unsigned index, float edge, BarPictures &pictures)
{
    TwPicture picture{};
    var.pictures.picture(index, &picture, var.clientData);
    if (var.removed)
        return;
    const ImVec2 at = ImGui::GetCursorScreenPos();
    const float words = ImGui::GetTextLineHeight();
    const bool pressed = ImGui::InvisibleButton("##picture", ImVec2(edge, edge + words));
    ImDrawList &list = *ImGui::GetWindowDrawList();
    const ImVec2 corner(at.x + edge, at.y + edge);
    if (const unsigned texture = pictures.find(picture.file))
        list.AddImage(reinterpret_cast<ImTextureID>(static_cast<std::uintptr_t>(texture)), at, corner);
    list.AddRect(at, corner, ImGui::GetColorU32(ImGui::IsItemHovered() ? ImGuiCol_ButtonHovered : ImGuiCol_Border));
    const ImVec4 room(at.x, at.y, at.x + edge, at.y + edge + words);
    list.AddText(ImGui::GetFont(), ImGui::GetFontSize(), ImVec2(at.x, corner.y), ImGui::GetColorU32(ImGuiCol_Text),
                 picture.label, nullptr, 0.0f, &room);
    if (ImGui::IsItemHovered() && picture.label[0])
        ImGui::SetTooltip("%s", picture.label);
    if (pressed)
        var.pictures.click(index, var.clientData);
}

void drawPictures(TweakVar &var, float edge, BarPictures &pictures)
{
    const std::vector<unsigned> found = foundPictures(var);
    const float gap = ImGui::GetStyle().ItemSpacing.x;
    const auto columns = static_cast<int>(std::max(1.0f, (ImGui::GetContentRegionAvail().x + gap) / (edge + gap)));
    const auto count = static_cast<int>(found.size());
    ImGuiListClipper clipper;
    clipper.Begin((count + columns - 1) / columns, edge + ImGui::GetTextLineHeight() + ImGui::GetStyle().ItemSpacing.y);
    while (clipper.Step())
    {
        for (int i = clipper.DisplayStart * columns; i < std::min(clipper.DisplayEnd * columns, count); ++i)
        {
            if (var.removed)
                continue;
            if (i % columns > 0)
                ImGui::SameLine();
            ImGui::PushID(i);
            drawPicture(var, found[static_cast<std::size_t>(i)], edge, pictures);
            ImGui::PopID();
        }
    }
}

/// The height of a frame about one row of pictures of this size.
float heightOfStrip(float edge)
{
    const ImGuiStyle &style = ImGui::GetStyle();
    return edge + ImGui::GetTextLineHeight() + 2.0f * style.WindowPadding.y + style.ScrollbarSize;
}

/// One row, which the wheel moves sideways.
void drawStrip(TweakVar &var, float edge, BarPictures &pictures)
{
    const std::vector<unsigned> found = foundPictures(var);
    const float step = edge + ImGui::GetStyle().ItemSpacing.x;
    if (ImGui::IsWindowHovered() && ImGui::GetIO().MouseWheel != 0.0f)
        ImGui::SetScrollX(
            std::clamp(ImGui::GetScrollX() - ImGui::GetIO().MouseWheel * step, 0.0f, ImGui::GetScrollMaxX()));
    const auto count = static_cast<int>(found.size());
    const int first = std::clamp(static_cast<int>(ImGui::GetScrollX() / step), 0, count);
    const int end = std::min(first + static_cast<int>(ImGui::GetWindowWidth() / step) + 2, count);
    const ImVec2 begin = ImGui::GetCursorPos();
    ImGui::Dummy(ImVec2(step * static_cast<float>(count), edge)); // the room to move through
    for (int i = first; i < end && !var.removed; ++i)
    {
        ImGui::SetCursorPos(ImVec2(begin.x + step * static_cast<float>(i), begin.y));
        ImGui::PushID(i);
        drawPicture(var, found[static_cast<std::size_t>(i)], edge, pictures);
        ImGui::PopID();
    }
}

/// Lowest and highest value of a curve; both the same where there is none.
std::pair<float, float> boundsOf(const TwGraph &graph)
{
    float low = INFINITY, high = -INFINITY;
    for (unsigned i = 0; i < graph.count; ++i)
    {
        if (!std::isfinite(graph.lows[i]) || !std::isfinite(graph.highs[i]))
            continue;
        low = std::min(low, graph.lows[i]);
        high = std::max(high, graph.highs[i]);
    }
    return low <= high ? std::pair(low, high) : std::pair(0.0f, 0.0f);
}

/// A line from step to step, as thick as the values of a step lie apart.
void drawCurve(const TwGraph &graph, ImVec2 at, ImVec2 size, float low, float high)
{
    ImDrawList &list = *ImGui::GetWindowDrawList();
    const ImU32 color = ImGui::GetColorU32(ImGuiCol_PlotLines);
    const float span = high > low ? high - low : 1.0f;
    const float base = high > low ? 0.0f : 0.5f;
    const auto height = [&](float value)
    { return at.y + size.y - 3.0f - (size.y - 6.0f) * ((value - low) / span + base); };
    float lastLow = 0.0f, lastHigh = 0.0f;
    bool hasLast = false;
    for (unsigned i = 0; i < graph.count; ++i)
    {
        const bool is = std::isfinite(graph.lows[i]) && std::isfinite(graph.highs[i]);
        if (is)
        {
            float top = height(graph.highs[i]), bottom = height(graph.lows[i]);
            const float own[] = {top, bottom};
            if (hasLast) // no gap between one step and the next
            {
                top = std::min(top, lastLow);
                bottom = std::max(bottom, lastHigh);
            }
            const float x = at.x + size.x * static_cast<float>(i) / static_cast<float>(graph.count);
            const float width = std::max(size.x / static_cast<float>(graph.count), 1.0f);
            list.AddRectFilled(ImVec2(x, top - 0.5f), ImVec2(x + width, bottom + 1.0f), color);
            lastHigh = own[0];
            lastLow = own[1];
        }
        hasLast = is;
    }
}
/// The room of a curve; one that can be held tells where the mouse has it.
void letHold(TweakVar &var, ImVec2 at, ImVec2 size)
{
    if (!var.graphHeld)
        return ImGui::Dummy(size);
    ImGui::InvisibleButton(var.name.c_str(), size);
    if (ImGui::IsItemHovered())
        ImGui::SetMouseCursor(ImGuiMouseCursor_ResizeEW);
    if (ImGui::IsItemActive() && !var.removed)
        var.graphHeld(std::clamp((ImGui::GetIO().MousePos.x - at.x) / size.x, 0.0f, 1.0f), var.clientData);
}
} // namespace

void layOutList(TweakVar &var, float height)
{
    if (ImGui::BeginChild(var.name.c_str(), ImVec2(0, height), true))
        drawRows(var);
    ImGui::EndChild();
}

void layOutPictures(TweakVar &var, float height, BarPictures &pictures)
{
    ImGui::PushID(var.name.c_str());
    if (var.sameLine)
        ImGui::SameLine();
    ImGui::SetNextItemWidth(-1.0f);
    ImGui::InputTextWithHint("##search", "search", &var.typed);
    const float used = var.sameLine ? 0.0f : ImGui::GetFrameHeightWithSpacing();
    const float room = std::max(height - used, ImGui::GetFrameHeightWithSpacing());
    const float edge = ImGui::GetFontSize() * 7.0f, smallest = ImGui::GetFontSize() * 4.0f;
    // Where there is no room for two rows, one is enough.
    const bool isStrip = room < 2.0f * heightOfStrip(smallest);
    const ImGuiWindowFlags flags =
        isStrip ? ImGuiWindowFlags_HorizontalScrollbar | ImGuiWindowFlags_NoScrollWithMouse : ImGuiWindowFlags_None;
    if (ImGui::BeginChild("pictures", ImVec2(0, room), true, flags))
    {
        if (isStrip)
            drawStrip(var, std::clamp(edge + room - heightOfStrip(edge), smallest, edge), pictures);
        else
            drawPictures(var, edge, pictures);
    }
    ImGui::EndChild();
    ImGui::PopID();
}

void layOutGraph(TweakVar &var)
{
    TwGraph graph{};
    var.graph(&graph, var.clientData);
    const auto [low, high] = boundsOf(graph);
    ImGui::Text("%s  %.5g", var.label.c_str(), static_cast<double>(graph.latest));
    const ImVec2 size(std::max(ImGui::GetContentRegionAvail().x, 16.0f), ImGui::GetFontSize() * 4.0f);
    const ImVec2 at = ImGui::GetCursorScreenPos();
    letHold(var, at, size);
    var.place = {static_cast<int>(at.x), static_cast<int>(at.y), static_cast<int>(at.x + size.x),
                 static_cast<int>(at.y + size.y)};
    ImDrawList &list = *ImGui::GetWindowDrawList();
    list.AddRectFilled(at, ImVec2(at.x + size.x, at.y + size.y), ImGui::GetColorU32(ImGuiCol_FrameBg), 2.0f);
    drawCurve(graph, at, size, low, high);
    if (graph.cursor >= 0.0f)
    {
        const float x = at.x + size.x * std::min(graph.cursor, 1.0f);
        list.AddLine(ImVec2(x, at.y), ImVec2(x, at.y + size.y), ImGui::GetColorU32(ImGuiCol_Text));
    }
    const auto write = [&](float value, float y)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%.5g", static_cast<double>(value));
        list.AddText(ImVec2(at.x + 3.0f, y), ImGui::GetColorU32(ImGuiCol_TextDisabled), text);
    };
    write(high, at.y);
    write(low, at.y + size.y - ImGui::GetTextLineHeight());
}

} // namespace port
