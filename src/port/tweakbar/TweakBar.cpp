#include "port/tweakbar/TweakBar.h"

namespace
{
port::TweakBarBackend *installed = nullptr;
}

void port::installTweakBarBackend(TweakBarBackend *backend)
{
    installed = backend;
}

int TwInit(TwGraphAPI graphAPI, void *device)
{
    return installed && installed->init(graphAPI, device);
}

int TwWindowSize(int width, int height)
{
    if (installed)
        installed->windowSize(width, height);
    return installed != nullptr;
}

int TwDraw()
{
    return installed && installed->draw();
}

int TwEventWin(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return installed && installed->event(wnd, msg, wParam, lParam);
}

int TwTerminate()
{
    if (installed)
        installed->terminate();
    return installed != nullptr;
}
