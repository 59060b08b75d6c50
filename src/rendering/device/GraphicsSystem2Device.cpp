// GraphicsSystem2: making, losing, resetting and releasing the device.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/D3DPerfScopedEvent.h"
#include "rendering/device/DeviceCalls.h"
#include "platform/window/GraphicsAdapterSystem.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/FailedStart.h"
#include "port/d3d9/d3d9.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cmath>

namespace
{

int scaled(int length, float factor)
{
    return std::max(1, static_cast<int>(std::lround(static_cast<float>(length) * factor)));
}

} // namespace

void GraphicsSystem2::getPresentParams(D3DPRESENT_PARAMETERS &params)
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    backBufferWidth = std::max(window.getWidth(), 1);
    backBufferHeight = std::max(window.getHeight(), 1);
    worldWidth = scaled(backBufferWidth, renderScale);
    worldHeight = scaled(backBufferHeight, renderScale);

    params = {};
    params.BackBufferWidth = static_cast<UINT>(backBufferWidth);
    params.BackBufferHeight = static_cast<UINT>(backBufferHeight);
    params.BackBufferFormat = D3DFMT_X8R8G8B8;
    params.BackBufferCount = 1;
    params.MultiSampleType = D3DMULTISAMPLE_NONE;
    params.SwapEffect = D3DSWAPEFFECT_DISCARD;
    params.hDeviceWindow = window.getWindowHandle();
    params.Windowed = !window.getFullScreen();
    params.EnableAutoDepthStencil = TRUE;
    params.AutoDepthStencilFormat = D3DFMT_D24S8;
    params.Flags = 0;
    params.FullScreen_RefreshRateInHz = window.getFullScreen() ? static_cast<UINT>(window.getSelectedRefreshRate()) : 0;
    params.PresentationInterval = vsync ? D3DPRESENT_INTERVAL_ONE : D3DPRESENT_INTERVAL_IMMEDIATE;
}

void GraphicsSystem2::createDevice()
{
    if (device)
        return;
    GraphicsAdapterSystem &adapter = getSystemDeref<GraphicsAdapterSystem>();
    D3DPRESENT_PARAMETERS params;
    getPresentParams(params);
    const HRESULT result =
        adapter.getD3DPointer()->CreateDevice(adapter.getAdapterID(), adapter.getDeviceType(), params.hDeviceWindow,
                                              D3DCREATE_HARDWARE_VERTEXPROCESSING, &params, &device);
    if (FAILED(result))
    {
        Assertions::failStart("The Direct3D device could not be created. Please ensure you have the latest video "
                              "drivers available for your system installed.");
    }
    TwInit(TW_DIRECT3D9, device);
    deviceIsLost = false;
    onCreateOrReset();
}

void GraphicsSystem2::onCreateOrReset()
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    TwWindowSize(window.getWidth(), window.getHeight());
    createRenderTargets();
    updateFullScreenQuad();
}

void GraphicsSystem2::releaseDevice()
{
    destroyRenderTargets();
    textures.release();
    meshes.release();
    shaders.shutdown();
    layouts.release();
    releaseInstanceBuffer();
    if (device)
        TwTerminate();
    releaseAndForget(device);
    deviceIsLost = true;
}

bool GraphicsSystem2::deviceIsReady() const
{
    return device && !deviceIsLost;
}

bool GraphicsSystem2::isDrawing() const
{
    return deviceIsReady() && !withoutDrawing && !getSystemDeref<WindowSystem2>().getMinimised();
}

ErrorCode GraphicsSystem2::tryToRecoverDevice()
{
    while (deviceIsLost)
    {
        const HRESULT state = device->TestCooperativeLevel();
        if (state == D3DERR_DEVICELOST)
            return ErrorCode::SUCCESS; // nothing to be done before a later frame
        if (FAILED(state) && state != D3DERR_DEVICENOTRESET)
            return dxCall(state);
        const ErrorCode result = resetDevice();
        if (!result.succeeded())
            return result.getHRESULT() == D3DERR_DEVICELOST ? ErrorCode() : result;
    }
    return ErrorCode::SUCCESS;
}

void GraphicsSystem2::lostDevice()
{
    if (deviceIsLost)
        return;
    deviceIsLost = true;
    shaders.onLostDevice();
    TwWindowSize(0, 0);
    destroyRenderTargets();
    releaseInstanceBuffer();
}

ErrorCode GraphicsSystem2::resetDevice()
{
    if (!device)
        return ErrorCode::LOST_ASSET;
    lostDevice();
    D3DPRESENT_PARAMETERS params;
    getPresentParams(params);
    const ErrorCode result = dxCall(device->Reset(&params));
    deviceIsLost = false;
    if (!result.succeeded())
    {
        lostDevice();
        return result;
    }
    shaders.onResetDevice();
    onCreateOrReset();
    return result;
}
