#include "rendering/device/GraphicsSystem2.h"

#include "platform/window/GraphicsAdapterSystem.h"
#include "platform/window/WindowSystem2.h"

#include "assets/cache/AssetSystem.h"
#include "assets/cache/AssetUploader.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/DynamicMeshAssetLoader.h"
#include "assets/cache/TextureAsset.h"
#include "engine/levels/GameLoop.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/d3d9.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float LEAST_BRIGHTNESS = 0.25f;
constexpr float MOST_BRIGHTNESS = 4;
constexpr float LEAST_GAMMA = 1;
constexpr float MOST_GAMMA = 4;
constexpr int LEAST_SHADOW_MAP = 64;                                 // texels a side
constexpr int MOST_SHADOW_MAP = 4096;                                // texels a side
constexpr int WORLD_PICTURE_WIDTH = 384, WORLD_PICTURE_HEIGHT = 216; // pixels

/// Hands finished assets to the system that installed it.
class GraphicsUploader : public IAssetUploader
{
public:
    explicit GraphicsUploader(GraphicsSystem2 &graphics_) : graphics(graphics_) {}

    ErrorCode uploadTexture(Handle<TextureAsset> texture) override { return graphics.uploadTexture(texture); }
    String replaceTexture(Handle<TextureAsset> texture) override { return graphics.replaceTexture(texture); }
    ErrorCode uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &image) override
    {
        return graphics.uploadCoverage(texture, image);
    }
    ErrorCode uploadMesh(Handle<MeshAsset> mesh) override { return graphics.uploadMesh(mesh); }

private:
    GraphicsSystem2 &graphics;
};

} // namespace

GraphicsSystem2::GraphicsSystem2() = default;

GraphicsSystem2::~GraphicsSystem2()
{
    releaseDevice();
}

void GraphicsSystem2::systemStartup()
{
    initDefaultVertexTypes(layouts);
    deviceIsLost = true;
    createDevice();
    shaders.setDirectDevice(device);
    shaders.CreateShader(SCS("ff.fx"));
    shaders.CreateShader(SCS("lights.fx"));
    shaders.CreateShader(SCS("test.fx"));
    uploader = std::make_unique<GraphicsUploader>(*this);
    setAssetUploader(uploader.get());
    // The reset reports for itself, and is tried again with the next frame.
    getSystemDeref<WindowSystem2>().setSizeListener([this] { resetDevice().ignoreError(); });
}

void GraphicsSystem2::systemShutdown()
{
    getSystemDeref<WindowSystem2>().setSizeListener({});
    if (uploader)
        setAssetUploader(nullptr);
    uploader.reset();
    releaseDevice();
}

System::DependencyList GraphicsSystem2::systemDependencies()
{
    return {WindowSystem2::staticType, GraphicsAdapterSystem::staticType};
}

UpdaterList GraphicsSystem2::getUpdaters()
{
    return {Updater(SCS("GraphicsSystem2::beginFrame"), bind(SCS("beginFrame")), 1000001, true),
            Updater(SCS("GraphicsSystem2::endFrame"), bind(SCS("endFrame")), 90000000, true),
            Updater(SCS("GraphicsSystem2::present"), bind(SCS("present")), 91000000, true)};
}

ErrorCode GraphicsSystem2::beginFrame()
{
    if (!device)
        return ErrorCode::SUCCESS;
    const ErrorCode recovery = tryToRecoverDevice();
    if (!recovery.succeeded() || !isDrawing())
        return recovery;

    ErrorCode result = dxCall(device->BeginScene());
    KV_VERIFY(result.succeeded(), result.getErrorString());
    if (!result.succeeded())
        return result;
    static const String screen = SCS("screen");
    result = useRenderTargets(screen);
    if (!result.succeeded())
        return result;
    result = dxCall(device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL, 0, 1.0f, 0));
    if (!result.succeeded())
        return result;
    result = dxCall(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CCW));
    KV_VERIFY(result.succeeded(), result.getErrorString());
    return result;
}

ErrorCode GraphicsSystem2::endFrame()
{
    if (!isDrawing())
        return ErrorCode::SUCCESS;
    // The tweak bar library draws with its own streams and expects to find none bound.
    for (UINT stream = 0; stream < 2; ++stream)
    {
        device->SetStreamSourceFreq(stream, 1);
        device->SetStreamSource(stream, nullptr, 0, 0);
    }
    if (showAntTweakBar)
    {
        // The bars lie above this folder, and start with the first frame that shows them.
        static const String bars = SCS("TweakSystem");
        getSystem(bars);
    }
    if (port::showTweakBars(showAntTweakBar))
        TwDraw();
    else
        TwHide();
    return dxCall(device->EndScene());
}

ErrorCode GraphicsSystem2::present()
{
    if (!isDrawing())
        return ErrorCode::SUCCESS;
    writeScreenshot();
    const ErrorCode result = dxCall(device->Present(nullptr, nullptr, nullptr, nullptr));
    if (result.getHRESULT() != D3DERR_DEVICELOST)
        return result;
    lostDevice();
    return ErrorCode::SUCCESS;
}

void GraphicsSystem2::captureScreen(const String &fileName)
{
    screenshotFile = fileName;
}

void GraphicsSystem2::writeScreenshot()
{
    if (screenshotFile.empty())
        return;
    const std::string problem = port::saveBackBuffer(device, screenshotFile.toCString());
    if (!problem.empty())
    {
        KV_LOGF(Logger_::I_ERROR, "The screenshot %s could not be written: %s", screenshotFile.toCString(),
                problem.c_str());
        getSystemDeref<GameLoopSystem>().quitIfUnattended();
    }
    screenshotFile = String();
}

void GraphicsSystem2::captureWorld(const String &fileName)
{
    worldPictureFile = fileName;
}

void GraphicsSystem2::writeWorldPicture()
{
    if (worldPictureFile.empty())
        return;
    const std::string problem =
        port::saveSmallBackBuffer(device, worldPictureFile.toCString(), WORLD_PICTURE_WIDTH, WORLD_PICTURE_HEIGHT);
    if (!problem.empty())
        KV_LOGF(Logger_::I_ERROR, "The picture %s could not be written: %s", worldPictureFile.toCString(),
                problem.c_str());
    worldPictureFile = String();
}

Handle<DynamicMeshAsset> GraphicsSystem2::getFullScreenQuad()
{
    if (fullScreenQuad.isValid())
        return fullScreenQuad;
    const Handle<Asset> quad =
        getSystemDeref<AssetSystem>().startLoad(DynamicMeshAssetLoader::staticType, SCS("<dynamic>"), nullptr, 0);
    fullScreenQuad = handle_cast<DynamicMeshAsset>(quad);
    updateFullScreenQuad();
    return fullScreenQuad;
}

void GraphicsSystem2::updateFullScreenQuad()
{
    const auto quad = fullScreenQuad.lookup();
    if (!quad)
        return;
    // Half a texel, so that pixel centres of the target meet texel centres of the textures that are read.
    const WindowCoordinate halfTexel = getSystemDeref<WindowSystem2>().convertWindowCoordinate(
        WindowCoordinate(0.5f, -0.5f, WCS_PIXEL, WCS_PIXEL), WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED_NOWRAP);
    const float ox = halfTexel.x / renderScale;
    const float oy = halfTexel.y / renderScale;
    const auto corner = [ox, oy](float x, float y, float u, float v) {
        return DefaultMeshVertex{{x - ox, y - oy, 0}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {u, v}};
    };
    quad->setMeshData({corner(-1, 1, 0, 0), corner(1, 1, 1, 0), corner(1, -1, 1, 1), corner(-1, -1, 0, 1)},
                      {0, 1, 2, 0, 2, 3});
}

void GraphicsSystem2::setRenderScale(float val)
{
    const float scale = std::isfinite(val) ? std::clamp(val, 0.1f, 2.0f) : 1.0f;
    if (scale == renderScale)
        return;
    renderScale = scale;
    lostDevice(); // beginFrame goes on from there
}

void GraphicsSystem2::setVsync(bool val)
{
    if (val == vsync)
        return;
    vsync = val;
    lostDevice(); // as above
}

void GraphicsSystem2::setBrightness(float val)
{
    if (val >= LEAST_BRIGHTNESS && val <= MOST_BRIGHTNESS)
        brightness = val;
    else
        KV_LOGF(Logger_::I_ERROR, "brightness cannot be %g and stays %g; give it a number from %g to %g.",
                static_cast<double>(val), static_cast<double>(brightness), static_cast<double>(LEAST_BRIGHTNESS),
                static_cast<double>(MOST_BRIGHTNESS));
}

void GraphicsSystem2::setGamma(float val)
{
    if (val >= LEAST_GAMMA && val <= MOST_GAMMA)
        gamma = val;
    else
        KV_LOGF(Logger_::I_ERROR, "gamma cannot be %g and stays %g; give it a number from %g to %g.",
                static_cast<double>(val), static_cast<double>(gamma), static_cast<double>(LEAST_GAMMA),
                static_cast<double>(MOST_GAMMA));
}

void GraphicsSystem2::setShadowMapSize(int val)
{
    shadowMapSize = std::clamp(val, LEAST_SHADOW_MAP, MOST_SHADOW_MAP);
    if (deviceIsReady())
        createShadowMap();
}

void GraphicsSystem2::setSparing(int val)
{
    const int wanted = std::clamp(val, 0, 2);
    if (wanted == sparing)
        return;
    sparing = wanted;
    if (deviceIsReady())
        createShadowMap();
}

int GraphicsSystem2::getDrawCallCount() const
{
    return static_cast<int>(port::lastFrameStats(device).draws);
}

int GraphicsSystem2::getInstanceCount() const
{
    return static_cast<int>(port::lastFrameStats(device).instances);
}

int GraphicsSystem2::getTriangleCount() const
{
    return static_cast<int>(port::lastFrameStats(device).triangles);
}

int GraphicsSystem2::getStateChangeCount() const
{
    return static_cast<int>(port::lastFrameStats(device).stateChanges);
}

int GraphicsSystem2::getTargetChangeCount() const
{
    return static_cast<int>(port::lastFrameStats(device).targetChanges);
}

int GraphicsSystem2::getClearCount() const
{
    return static_cast<int>(port::lastFrameStats(device).clears);
}

int GraphicsSystem2::getUploadCount() const
{
    return static_cast<int>(port::lastFrameStats(device).uploads);
}

IDirect3DDevice9 *GraphicsSystem2::replaceDevice(IDirect3DDevice9 *other)
{
    return std::exchange(device, other);
}
