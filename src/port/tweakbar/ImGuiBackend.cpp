#include "port/tweakbar/ImGuiBackend.h"

#include "port/tweakbar/BarWidgets.h"

#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/DebugText.h"
#include "port/d3d9/PngFile.h"
#include "port/win32/Clipboard.h"
#include "port/win32/Diagnostics.h"

#include <algorithm>
#include <epoxy/gl.h>
#include <imgui/imgui.h>
#include <utility>

namespace port
{

ImGuiBackend &ImGuiBackend::get()
{
    static ImGuiBackend &backend = *new ImGuiBackend;
    return backend;
}

bool ImGuiBackend::init(TwGraphAPI graphAPI, void *newDevice)
{
    if (graphAPI != TW_DIRECT3D9 || !newDevice)
        return false;
    device = static_cast<IDirect3DDevice9 *>(newDevice);
    return true;
}

void ImGuiBackend::windowSize(int newWidth, int newHeight)
{
    width = newWidth;
    height = newHeight;
    if (width > 0 && height > 0)
        return;
    hide();
    pictures.release();
    renderer.release();
}

void ImGuiBackend::terminate()
{
    hide();
    pictures.release();
    renderer.release();
    device = nullptr;
    if (context)
        ImGui::DestroyContext(std::exchange(context, nullptr));
}

void ImGuiBackend::hide()
{
    if (shown)
        setPresentOverlay(device, {});
    shown = frameReady = false;
    input.clear();
}

bool ImGuiBackend::event(HWND, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return shown && input.event(msg, wParam, lParam);
}

bool ImGuiBackend::draw()
{
    if (!device)
        return false;
    if (width <= 0 || height <= 0)
        return true; // the device is lost: nothing to draw on
    if (!context)
        makeContext();
    if (font.fit(height))
        renderer.dropFont();
    beginFrame();
    pictures.beginFrame(device);
    std::vector<TweakPlace> places;
    Bars::get().drawAll([&](TwBar &bar) { places.push_back(layOutBar(bar, places, pictures)); });
    ImGui::Render();
    input.setBars(std::move(places));
    frameReady = true;
    if (!std::exchange(shown, true))
        setPresentOverlay(device,
                          [this](int drawableWidth, int drawableHeight) { present(drawableWidth, drawableHeight); });
    return true;
}

void ImGuiBackend::makeContext()
{
    context = ImGui::CreateContext();
    ImGuiIO &io = ImGui::GetIO();
    io.IniFilename = nullptr; // the install folder may be read only, and a run must not depend on the last one
    io.ConfigFlags |= ImGuiConfigFlags_NoMouseCursorChange;
    io.ConfigDragClickToInputText = true;
    io.SetClipboardTextFn = [](void *, const char *text) { setClipboardText(text); };
    io.GetClipboardTextFn = [](void *)
    {
        static std::string text; // until the next call, as the library wants it
        text = clipboardText();
        return text.c_str();
    };
    font.reset();
    lastDraw = 0;
}

void ImGuiBackend::beginFrame()
{
    LARGE_INTEGER now, rate;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&rate);
    const float elapsed = static_cast<float>(now.QuadPart - lastDraw) / static_cast<float>(rate.QuadPart);
    lastDraw = now.QuadPart;

    ImGuiIO &io = ImGui::GetIO();
    io.DisplaySize = ImVec2(static_cast<float>(width), static_cast<float>(height));
    // The library wants some time to pass, and after a pause no more than counts as one frame.
    io.DeltaTime = std::clamp(elapsed, 0.0001f, 0.25f);
    input.beginFrame();
    ImGui::NewFrame();
}

void ImGuiBackend::present(int drawableWidth, int drawableHeight)
{
    if (!std::exchange(frameReady, false))
        return;
    renderer.draw(*ImGui::GetDrawData(), drawableWidth, drawableHeight);
    if (!captureFile.empty())
        writeCapture(drawableWidth, drawableHeight);
}

void ImGuiBackend::writeCapture(int drawableWidth, int drawableHeight)
{
    const std::size_t row = static_cast<std::size_t>(drawableWidth) * 3;
    std::vector<unsigned char> pixels(row * static_cast<std::size_t>(drawableHeight));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, drawableWidth, drawableHeight, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    // The window's first row is the lowest one, so the last row is handed over with a step backwards.
    const unsigned char *top = pixels.data() + pixels.size() - row;
    const std::string problem =
        writePngFile(captureFile.c_str(), drawableWidth, drawableHeight, top, -static_cast<int>(row));
    if (!problem.empty())
        debugText("the picture of the tweak bars, %s, cannot be written: %s", captureFile.c_str(), problem.c_str());
    captureFile.clear();
}

} // namespace port
