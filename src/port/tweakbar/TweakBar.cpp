#include "port/tweakbar/TweakBar.h"

#include "port/tweakbar/ImGuiBackend.h"

namespace
{
port::TweakBarBackend *&backend()
{
    static port::TweakBarBackend *current = &port::ImGuiBackend::get();
    return current;
}
} // namespace

void port::installTweakBarBackend(TweakBarBackend *other)
{
    backend() = other;
}

bool port::showTweakBars(bool all)
{
    return Bars::get().show(all);
}

void port::letTweakBarsHearTheMouse(bool hear)
{
    ImGuiBackend::get().getInput().setHearsMouse(hear);
}

bool port::tweakBarsHaveTheMouse()
{
    return ImGuiBackend::get().hasMouse();
}

bool port::tweakBarsHaveTheKeyboard()
{
    return ImGuiBackend::get().hasKeyboard();
}

void port::pickWithTweakBars()
{
    ImGuiBackend::get().getInput().setPicking(true);
}

bool port::tweakBarsPicked(int &x, int &y)
{
    return ImGuiBackend::get().getInput().takePick(x, y);
}

void port::setTweakBarFont(const char *file, float size, int windowHeight)
{
    ImGuiBackend::get().getFont().set(file, size, windowHeight);
}

void port::captureTweakBars(const char *pngFile)
{
    ImGuiBackend::get().capture(pngFile);
}

int TwInit(TwGraphAPI graphAPI, void *device)
{
    return backend() && backend()->init(graphAPI, device);
}

int TwWindowSize(int width, int height)
{
    if (backend())
        backend()->windowSize(width, height);
    return backend() != nullptr;
}

int TwDraw()
{
    return backend() && backend()->draw();
}

int TwHide()
{
    if (backend())
        backend()->hide();
    return backend() != nullptr;
}

int TwEventWin(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return backend() && backend()->event(wnd, msg, wParam, lParam);
}

int TwTerminate()
{
    if (backend())
        backend()->terminate();
    return backend() != nullptr;
}
