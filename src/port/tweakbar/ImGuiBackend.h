// ImGuiBackend: the debug bars on Dear ImGui.
#pragma once

#include "port/tweakbar/BarFont.h"
#include "port/tweakbar/BarInput.h"
#include "port/tweakbar/BarPictures.h"
#include "port/tweakbar/BarRenderer.h"
#include "port/tweakbar/TweakBar.h"

#include <cstdint>
#include <string>

struct IDirect3DDevice9;
struct ImGuiContext;

namespace port
{

/// Lays the bars out in TwDraw, and draws them over the presented picture in Present.
class ImGuiBackend final : public TweakBarBackend
{
public:
    /// The one backend of our own. Never destroyed.
    static ImGuiBackend &get();

    bool init(TwGraphAPI graphAPI, void *device) override;
    void windowSize(int width, int height) override;
    bool draw() override;
    void hide() override;
    bool event(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) override;
    void terminate() override;

    /// Has the next Present with bars write what it shows.
    void capture(const char *pngFile) { captureFile = pngFile; }
    /// What bars are shown the messages of.
    BarInput &getInput() { return input; }
    BarFont &getFont() { return font; }
    bool hasMouse() const { return shown && input.wantsMouse(); }
    bool hasKeyboard() const { return shown && input.wantsKeyboard(); }

private:
    ImGuiBackend() = default;

    void makeContext();
    void beginFrame();
    void present(int drawableWidth, int drawableHeight);
    void writeCapture(int drawableWidth, int drawableHeight);

    IDirect3DDevice9 *device = nullptr;
    ImGuiContext *context = nullptr; ///< made with the first frame that shows bars
    BarRenderer renderer;
    BarInput input;
    BarPictures pictures;
    BarFont font;
    int width = 0;  ///< pixels; 0 while the device is lost
    int height = 0; ///< pixels
    bool shown = false;
    bool frameReady = false; ///< laid out, and not presented yet
    std::int64_t lastDraw = 0;
    std::string captureFile; ///< empty for none
};

} // namespace port
