#include "RenderingWorld.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/DynamicMeshAssetLoader.h"
#include "support/TemporaryFile.h"

#include "platform/window/WindowSystem2.h"
#include "port/win32/Messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace
{

typedef std::vector<std::string> Journal;

class Graphics : public testing::Test, public RenderingWorld
{
protected:
    MeshAsset &dynamicMesh()
    {
        const Handle<Asset> asset =
            getSystemDeref<AssetSystem>().startLoad(DynamicMeshAssetLoader::staticType, SCS("<dynamic>"), nullptr, 0);
        return *handle_cast<MeshAsset>(asset).lookup();
    }
};

} // namespace

TEST_F(Graphics, PresentParametersFollowTheWindowAndWaitForTheScreenOnlyWhenAsked)
{
    D3DPRESENT_PARAMETERS p;
    GraphicsSystem2TestAccess::presentParams(graphics(), p);
    EXPECT_EQ(p.BackBufferWidth, static_cast<UINT>(WIDTH));
    EXPECT_EQ(p.BackBufferHeight, static_cast<UINT>(HEIGHT));
    EXPECT_EQ(p.BackBufferFormat, D3DFMT_X8R8G8B8);
    EXPECT_EQ(p.BackBufferCount, 1u);
    EXPECT_EQ(p.SwapEffect, D3DSWAPEFFECT_DISCARD);
    EXPECT_EQ(p.AutoDepthStencilFormat, D3DFMT_D24S8);
    EXPECT_TRUE(p.Windowed);
    EXPECT_EQ(p.FullScreen_RefreshRateInHz, 0u);
    EXPECT_EQ(p.PresentationInterval, D3DPRESENT_INTERVAL_IMMEDIATE);
    graphics().setVsync(true);
    drawFrame();
    EXPECT_EQ(device->lastParameters.PresentationInterval, D3DPRESENT_INTERVAL_ONE);
}

TEST_F(Graphics, WindowThatWasPutAwayIsNotDrawnUntilItIsBack)
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    SendMessageA(window.getWindowHandle(), WM_SIZE, SIZE_MINIMIZED, 0);
    drawFrame();
    EXPECT_TRUE(device->take().empty());
    SendMessageA(window.getWindowHandle(), WM_SIZE, SIZE_RESTORED, 0);
    drawFrame();
    EXPECT_EQ(device->count("Present"), 1);
}

TEST_F(Graphics, FrameOpensOnTheClearedBackBufferAndClosesInOrder)
{
    ASSERT_TRUE(graphics().beginFrame().succeeded());
    EXPECT_EQ(device->take(), (Journal{"BeginScene", "Target 0 screen", "Target 1 -", "Target 2 -", "Target 3 -",
                                       "Clear target depth stencil z=1", "State 22 3"}));
    EXPECT_TRUE(graphics().endFrame().succeeded());
    EXPECT_TRUE(graphics().present().succeeded());
    EXPECT_EQ(device->take(), (Journal{"Stream 1 empty offset 0 stride 0", "EndScene", "Present"}));
}

TEST_F(Graphics, ResetMakesEveryTargetAnewInOrder)
{
    ASSERT_TRUE(graphics().resetDevice().succeeded());
    const std::string size = "160x90";
    const std::string colour = "CreateTexture " + size + " levels 1 format 113";
    const std::string half = "CreateTexture 80x45 levels 1 format 113";
    const std::string depth = "CreateDepth " + size + " format 75";
    Journal journal = device->take();
    journal.resize(11);
    EXPECT_EQ(journal, (Journal{"Reset 160x90", colour, colour, colour, colour, colour, half, half, depth,
                                "CreateTexture 768x768 levels 1 format 114", "CreateDepth 768x768 format 75"}));
    EXPECT_EQ(GraphicsSystem2TestAccess::targets(graphics()).size(), 10u) << "with the screen";
    EXPECT_EQ(GraphicsSystem2TestAccess::targets(graphics()).at(SCS("screen")).tex, nullptr);
    EXPECT_EQ(GraphicsSystem2TestAccess::targets(graphics()).at(SCS("screen")).format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(GraphicsSystem2TestAccess::depthTargets(graphics()).size(), 3u);
}

TEST_F(Graphics, TargetSizesAreShiftedOrSquare)
{
    ASSERT_TRUE(graphics().registerRenderTarget(SCS("half"), 1, D3DFMT_A8R8G8B8).succeeded());
    ASSERT_TRUE(graphics().registerRenderTarget(SCS("square"), -64, D3DFMT_A8R8G8B8, true).succeeded());
    ASSERT_TRUE(graphics().registerDepthTarget(SCS("squareDepth"), -64, D3DFMT_D24S8).succeeded());
    EXPECT_EQ(device->take(), (Journal{"CreateTexture 80x45 levels 1 format 21",
                                       "CreateTexture 64x64 levels 0 format 21", "CreateDepth 64x64 format 75"}));
    EXPECT_TRUE(graphics().useRenderTargetAndMipLevel(0, SCS("square"), 2).succeeded()) << "it has a mip chain";
    EXPECT_FALSE(graphics().useRenderTargetAndMipLevel(0, SCS("half"), 2).succeeded());
}

TEST_F(Graphics, UnknownTargetNameLeavesEarlierSlotsAsTheyWere)
{
    const ErrorCode result = graphics().useRenderTargets(SCS("GBuffer1"), SCS("noSuchTarget"), SCS("GBuffer3"));
    EXPECT_EQ(result.getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_EQ(device->take(), Journal{"Target 0 GBuffer1"});
    EXPECT_EQ(graphics().useDepthTarget(SCS("noSuchTarget")).getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_TRUE(graphics().useRenderTargets(String()).succeeded());
    EXPECT_EQ(device->take().front(), "Target 0 screen") << "slot 0 falls back on the back buffer";
}

TEST_F(Graphics, InstanceRingAppendsUntilItIsFullThenDiscards)
{
    graphics().releaseInstanceBuffer();
    const auto lock = [this](int count)
    {
        ASSERT_TRUE(graphics().lockInstanceBuffer(MVT_DEFAULT_INSTANCE, count).succeeded());
        ASSERT_TRUE(graphics().unlockInstanceBuffer().succeeded());
    };
    lock(10);
    EXPECT_EQ(device->take(), (Journal{"CreateVertexBuffer 840 dynamic", "Lock 0+840 append"}));
    lock(10);
    EXPECT_EQ(device->take(), Journal{"Lock 0+840 discard"}) << "it would not fit behind the first";
    lock(4);
    lock(3);
    lock(3);
    lock(1);
    EXPECT_EQ(device->take(),
              (Journal{"Lock 0+336 discard", "Lock 336+252 append", "Lock 588+252 append", "Lock 0+84 discard"}));
    lock(20);
    EXPECT_EQ(device->take(), (Journal{"CreateVertexBuffer 1680 dynamic", "Lock 0+1680 append"}));
}

TEST_F(Graphics, DeclarationNumbersTextureCoordinatesOverBothStreams)
{
    ASSERT_NE(graphics().getVertexDeclaration(MVT_DEFAULT, MVT_DEFAULT_INSTANCE), nullptr);
    const std::vector<D3DVERTEXELEMENT9> elements = device->lastElements;
    ASSERT_EQ(elements.size(), 11u);
    const BYTE usages[] = {D3DDECLUSAGE_POSITION, D3DDECLUSAGE_NORMAL, D3DDECLUSAGE_TANGENT, D3DDECLUSAGE_BINORMAL};
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(elements[i].Usage, usages[i]);
        EXPECT_EQ(elements[i].Offset, 12 * i);
        EXPECT_EQ(elements[i].Type, D3DDECLTYPE_FLOAT3);
    }
    for (std::size_t i = 4; i < 11; ++i)
    {
        EXPECT_EQ(elements[i].Usage, D3DDECLUSAGE_TEXCOORD);
        EXPECT_EQ(elements[i].UsageIndex, i - 4);
        EXPECT_EQ(elements[i].Stream, i == 4 ? 0 : 1);
    }
    EXPECT_EQ(elements[4].Type, D3DDECLTYPE_FLOAT2);
    EXPECT_EQ(elements[7].Offset, 32);
    EXPECT_EQ(elements[7].Type, D3DDECLTYPE_FLOAT4);
    EXPECT_EQ(elements[8].Offset, 48);
    EXPECT_EQ(elements[10].Offset, 72);
    EXPECT_EQ(elements[10].Type, D3DDECLTYPE_FLOAT3);
    device->take();
    graphics().getVertexDeclaration(MVT_DEFAULT, MVT_DEFAULT_INSTANCE);
    EXPECT_TRUE(device->take().empty()) << "declarations are made once";
}

TEST_F(Graphics, SmallerUploadKeepsTheBiggerBuffers)
{
    MeshAsset &mesh = dynamicMesh();
    mesh.setMeshData(Mesh::VertexBufferType(8), Mesh::IndexBufferType(12, 0u));
    EXPECT_EQ(device->take(), (Journal{"CreateVertexBuffer 448", "CreateIndexBuffer 48 format 102"}));
    mesh.setMeshData(Mesh::VertexBufferType(3));
    EXPECT_TRUE(device->take().empty());
    EXPECT_EQ(graphics().getMeshData(::getHandle(&mesh)).value.meshHeader.indexCount, 0u);
    mesh.setMeshData(Mesh::VertexBufferType(9));
    EXPECT_EQ(device->take(), Journal{"CreateVertexBuffer 504"});
}

TEST_F(Graphics, MeshThatWouldReadBeyondItsVerticesNeverReachesTheDevice)
{
    MeshAsset &mesh = dynamicMesh();
    mesh.setMeshData(Mesh::VertexBufferType(3), {0, 1, 3});
    EXPECT_EQ(mesh.getStatus().getCode(), ErrorCode::OUT_OF_BOUNDS);
    mesh.setMeshData(Mesh::VertexBufferType(3), {0, 1, 2}, MPT_POLYGONS);
    EXPECT_EQ(mesh.getStatus().getCode(), ErrorCode::NOT_IMPLEMENTED);
    EXPECT_TRUE(device->take().empty());
    EXPECT_EQ(graphics().getMeshData(::getHandle(&mesh)).code.getCode(), ErrorCode::UNKNOWN_KEY);
}

TEST_F(Graphics, BufferThatCannotBeMadeIsTheAssetsFailure)
{
    MeshAsset &mesh = dynamicMesh();
    device->failOn("CreateVertexBuffer", D3DERR_OUTOFVIDEOMEMORY);
    const std::size_t logged = countLogLines("Could not create vertex buffer.");
    mesh.setMeshData(Mesh::VertexBufferType(3));
    EXPECT_EQ(mesh.getStatus().getHRESULT(), D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(countLogLines("Could not create vertex buffer."), logged + 1);
}

TEST_F(Graphics, LostDeviceComesBackInALaterFrame)
{
    drawFrame();
    device->take();
    device->failOn("Present", D3DERR_DEVICELOST);
    EXPECT_TRUE(graphics().present().succeeded());
    EXPECT_FALSE(graphics().deviceIsReady());
    EXPECT_TRUE(GraphicsSystem2TestAccess::targets(graphics()).empty()) << "nothing may outlive the loss";
    graphics().lostDevice();
    device->take();

    device->failOn("TestCooperativeLevel", D3DERR_DEVICELOST);
    drawFrame();
    EXPECT_TRUE(device->take().empty()) << "still lost: nothing is asked of the device";

    device->failOn("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    device->failOn("Reset", D3DERR_DEVICELOST);
    drawFrame();
    EXPECT_EQ(device->take(), Journal{"Reset 160x90"});
    EXPECT_FALSE(graphics().deviceIsReady());

    device->failOn("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    drawFrame();
    EXPECT_TRUE(graphics().deviceIsReady());
    EXPECT_EQ(device->count("Present"), 1);
    EXPECT_EQ(GraphicsSystem2TestAccess::targets(graphics()).size(), 10u);
}

TEST_F(Graphics, RenderScaleIsTheWorldsAndTheScreenLayersKeepTheWindowsSize)
{
    thing("notice", SceneGraph::SCREEN);
    const Journal unscaled = journalOfPasses();
    EXPECT_EQ(std::count(unscaled.begin(), unscaled.end(), "Stretch World to screen"), 0);

    graphics().setRenderScale(0.5f);
    drawFrame();
    EXPECT_EQ(device->lastParameters.BackBufferWidth, 160u);
    EXPECT_EQ(graphics().getBackBufferHeight(), 90);
    EXPECT_EQ(graphics().getWorldWidth(), 80);
    EXPECT_EQ(device->count("CreateTexture 80x45 levels 1 format 113"), 5);
    device->take();
    const Journal scaled = journalOfPasses();
    const auto place = [&scaled](const char *line) { return std::find(scaled.begin(), scaled.end(), line); };
    EXPECT_LT(place("Target 0 World"), place("Stretch World to screen"));
    EXPECT_LT(place("Stretch World to screen"), place("Viewport 0 0 160 90")) << "only then the notice";
    EXPECT_NE(place("Viewport 0 0 160 90"), scaled.end());
    EXPECT_NE(place("Viewport 0 0 80 45"), scaled.end());

    graphics().setRenderScale(-3);
    EXPECT_FLOAT_EQ(graphics().getRenderScale(), 0.1f);
}

TEST_F(Graphics, ScreenshotIsWrittenByTheNextPresentOnly)
{
    const TemporaryFile file("shot.png");
    graphics().captureScreen(file.name());
    EXPECT_FALSE(std::filesystem::exists(file.path));
    EXPECT_NE(presentedPixel(1, 1), 0u) << "a PNG with a picture in it";
    const std::size_t logged = countLogLines("could not be written");
    graphics().captureScreen(SCS("/no/such/folder/shot.png"));
    drawFrame();
    drawFrame();
    EXPECT_EQ(countLogLines("could not be written"), logged + 1);
}
