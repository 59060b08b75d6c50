#include "port/d3d9/DeviceWorld.h"
#include "port/d3dx9/d3dx9tex.h"
#include "port/win32/Diagnostics.h"

#include <cstring>
#include <epoxy/gl.h>
#include <stb/stb_image.h>

namespace
{

struct PositionVertex
{
    float x, y, z;
};

constexpr D3DVERTEXELEMENT9 positionElement = {0, 0, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_POSITION, 0};

constexpr Pixel black{0, 0, 0, 255};
constexpr Pixel red{255, 0, 0, 255};

/// Flat colour in clip space.
const char *const flatEffect = R"(
float4 tint = { 1, 0, 0, 1 };
VertexShader flatVS { void main() { gl_Position = POSITION; } }
PixelShader flatPS { void main() { COLOR0 = tint; } }
technique Flat { pass { CullMode = CCW; ZEnable = False; VertexShader = flatVS; PixelShader = flatPS; } }
technique TwoSided { pass { CullMode = None; ZEnable = False; VertexShader = flatVS; PixelShader = flatPS; } }
technique Behind { pass { CullMode = None; ZEnable = True; ZFunc = LessEqual; VertexShader = flatVS; PixelShader = flatPS; } }
technique RedOnly { pass { CullMode = None; ZEnable = False; ColorWriteEnable = Red; VertexShader = flatVS; PixelShader = flatPS; } }
)";

/// A texture through a quad, its coordinates from TEXCOORD0.
const char *const texturedEffect = R"(
texture image_texture;
sampler image = sampler_state { Texture = <image_texture>; MinFilter = Linear; MagFilter = Linear; MipFilter = None; AddressU = Clamp; AddressV = Clamp; };
VertexShader imageVS { out vec2 uv; void main() { gl_Position = vec4(POSITION.xyz, 1); uv = TEXCOORD0.xy; } }
PixelShader imagePS { in vec2 uv; void main() { COLOR0 = texture(image, uv); } }
technique Image { pass { CullMode = None; ZEnable = False; VertexShader = imageVS; PixelShader = imagePS; } }
)";

/// Clockwise on screen, over the upper left half.
const std::vector<PositionVertex> upperLeft = {{-1, -1, 0.5f}, {-1, 1, 0.5f}, {1, 1, 0.5f}};

class Device : public DeviceWorld
{
protected:
    void bindTriangle(const std::vector<PositionVertex> &corners)
    {
        makeVertices(corners, vertices);
        makeDeclaration({positionElement}, declaration);
        device->SetVertexDeclaration(declaration);
        device->SetStreamSource(0, vertices, 0, sizeof(PositionVertex));
    }
    void clear(D3DCOLOR color)
    {
        ASSERT_EQ(D3D_OK, device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, color, 1, 0));
    }

    Owned<IDirect3DVertexBuffer9> vertices;
    Owned<IDirect3DVertexDeclaration9> declaration;
};

} // namespace

TEST_F(Device, ClearFillsTheViewportAlone)
{
    clear(D3DCOLOR_ARGB(255, 10, 20, 30));
    const D3DVIEWPORT9 corner{0, 0, 16, 8, 0, 1};
    device->SetViewport(&corner);
    clear(D3DCOLOR_ARGB(255, 200, 100, 50));
    EXPECT_EQ((Pixel{200, 100, 50, 255}), pixel(15, 7));
    EXPECT_EQ((Pixel{10, 20, 30, 255}), pixel(16, 7));
    EXPECT_EQ((Pixel{10, 20, 30, 255}), pixel(15, 8));
}

TEST_F(Device, StretchingCopiesUprightFiltersAsToldAndRefusesDepth)
{
    Owned<IDirect3DTexture9> small;
    Owned<IDirect3DSurface9> from, to, depth;
    ASSERT_EQ(D3D_OK, device->CreateTexture(2, 2, 1, D3DUSAGE_RENDERTARGET, D3DFMT_X8R8G8B8, D3DPOOL_DEFAULT,
                                            small.out(), nullptr));
    small->GetSurfaceLevel(0, from.out());
    device->GetRenderTarget(0, to.out());
    device->GetDepthStencilSurface(depth.out());
    device->SetRenderTarget(0, from);
    device->SetDepthStencilSurface(nullptr);
    device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_ARGB(255, 0, 0, 0), 1, 0);
    const D3DRECT top{0, 0, 2, 1};
    device->Clear(1, &top, D3DCLEAR_TARGET, D3DCOLOR_ARGB(255, 200, 200, 200), 1, 0);

    ASSERT_EQ(D3D_OK, device->StretchRect(from, nullptr, to, nullptr, D3DTEXF_POINT));
    EXPECT_EQ((Pixel{200, 200, 200, 255}), pixel(5, 31));
    EXPECT_EQ((Pixel{0, 0, 0, 255}), pixel(5, 32));
    const RECT corner{32, 32, 64, 64};
    ASSERT_EQ(D3D_OK, device->StretchRect(from, nullptr, to, &corner, D3DTEXF_LINEAR));
    EXPECT_NEAR(pixel(40, 48).r, 100, 8) << "between the rows";
    EXPECT_EQ((Pixel{0, 0, 0, 255}), pixel(5, 33)) << "outside the rectangle";
    EXPECT_EQ(D3DERR_INVALIDCALL, device->StretchRect(depth, nullptr, to, nullptr, D3DTEXF_POINT));
    EXPECT_EQ(D3DERR_INVALIDCALL, device->StretchRect(to, nullptr, to, nullptr, D3DTEXF_POINT));
    device->SetRenderTarget(0, to);
}

TEST_F(Device, ClearOfStencilWithoutADepthSurfaceIsRefused)
{
    device->SetDepthStencilSurface(nullptr);
    EXPECT_EQ(D3DERR_INVALIDCALL, device->Clear(0, nullptr, D3DCLEAR_STENCIL, 0, 0, 0));
    EXPECT_EQ(D3D_OK, device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 0, 0));
}

TEST_F(Device, ClearIgnoresTheWriteMasksOfTheDrawBefore)
{
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    bindTriangle(upperLeft);
    clear(0);
    draw(*effect, "RedOnly", 1);
    clear(D3DCOLOR_ARGB(255, 1, 2, 3));
    EXPECT_EQ((Pixel{1, 2, 3, 255}), pixel(5, 5));
}

TEST_F(Device, ClockwiseTrianglesFaceTheViewerAndRowZeroIsOnTop)
{
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    bindTriangle(upperLeft);
    clear(0);
    draw(*effect, "Flat", 1);
    EXPECT_EQ(red, pixel(2, 2));
    EXPECT_EQ(black, pixel(60, 60));

    bindTriangle({upperLeft[0], upperLeft[2], upperLeft[1]});
    clear(0);
    draw(*effect, "Flat", 1);
    EXPECT_EQ(black, pixel(2, 2));
    draw(*effect, "TwoSided", 1);
    EXPECT_EQ(red, pixel(2, 2));
}

TEST_F(Device, DepthRunsFromZeroInFrontToOneBehind)
{
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    bindTriangle(upperLeft);
    ASSERT_EQ(D3D_OK, device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 0.4f, 0));
    draw(*effect, "Behind", 1);
    EXPECT_EQ(black, pixel(2, 2));
    ASSERT_EQ(D3D_OK, device->Clear(0, nullptr, D3DCLEAR_ZBUFFER, 0, 0.6f, 0));
    draw(*effect, "Behind", 1);
    EXPECT_EQ(red, pixel(2, 2));
}

TEST_F(Device, FullScreenQuadShiftedByHalfAPixelMapsTexelsExactly)
{
    // Every texel differs from its neighbours, so that the linear filter shows the smallest shift.
    constexpr int side = 64;
    Owned<IDirect3DTexture9> texture;
    ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, side, side, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.out()));
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3D_OK, texture->LockRect(0, &locked, nullptr, 0));
    const auto colorAt = [](int x, int y) { return Pixel{(x * 37) & 255, (y * 91) & 255, (x * y * 13) & 255, 255}; };
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
        {
            auto *texel = static_cast<BYTE *>(locked.pBits) + y * locked.Pitch + x * 4;
            const Pixel color = colorAt(x, y);
            const BYTE bytes[] = {BYTE(color.b), BYTE(color.g), BYTE(color.r), 255};
            std::memcpy(texel, bytes, 4);
        }
    ASSERT_EQ(D3D_OK, texture->UnlockRect(0));

    struct Vertex
    {
        float x, y, z, u, v;
    };
    const float ox = 1.0f / side, oy = -1.0f / side; // (0.5, -0.5) pixels in clip space
    const Vertex corners[4] = {
        {-1 - ox, 1 - oy, 0, 0, 0}, {1 - ox, 1 - oy, 0, 1, 0}, {1 - ox, -1 - oy, 0, 1, 1}, {-1 - ox, -1 - oy, 0, 0, 1}};
    makeVertices(std::vector<Vertex>{corners[0], corners[1], corners[2], corners[0], corners[2], corners[3]}, vertices);
    makeDeclaration({positionElement, {0, 12, D3DDECLTYPE_FLOAT2, 0, D3DDECLUSAGE_TEXCOORD, 0}}, declaration);
    device->SetVertexDeclaration(declaration);
    device->SetStreamSource(0, vertices, 0, sizeof(Vertex));

    Owned<ID3DXEffect> effect;
    makeEffect(texturedEffect, effect);
    IDirect3DTexture9 *pointer = texture;
    ASSERT_EQ(D3D_OK,
              effect->SetValue(effect->GetParameterByName(nullptr, "image_texture"), &pointer, sizeof(pointer)));
    clear(0);
    draw(*effect, "Image", 2);
    int wrong = 0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            wrong += pixel(x, y) != colorAt(x, y);
    EXPECT_EQ(0, wrong);
}

TEST_F(Device, InstancesTakeTheirRecordsFromTheSecondStream)
{
    struct Instance
    {
        float offsetX, offsetY, r, g;
    };
    Owned<ID3DXEffect> effect;
    makeEffect(R"(
        VertexShader v { flat out vec2 color; void main() { gl_Position = vec4(POSITION.xy + TEXCOORD1.xy, 0, 1); color = TEXCOORD1.zw; } }
        PixelShader p { flat in vec2 color; void main() { COLOR0 = vec4(color, 0, 1); } }
        technique T { pass { CullMode = None; ZEnable = False; VertexShader = v; PixelShader = p; } })",
               effect);
    const float s = 0.25f;
    makeVertices(std::vector<PositionVertex>{{-s, -s, 0}, {-s, s, 0}, {s, s, 0}, {s, -s, 0}}, vertices);
    Owned<IDirect3DIndexBuffer9> indices;
    makeIndices({0, 1, 2, 0, 2, 3}, indices);
    Owned<IDirect3DVertexBuffer9> instances;
    makeVertices(std::vector<Instance>{{9, 9, 0, 0}, {-0.5f, 0.5f, 1, 0}, {0.5f, 0.5f, 0, 1}, {0.5f, -0.5f, 1, 1}},
                 instances);
    makeDeclaration({positionElement, {1, 0, D3DDECLTYPE_FLOAT4, 0, D3DDECLUSAGE_TEXCOORD, 1}}, declaration);

    clear(0);
    device->SetVertexDeclaration(declaration);
    device->SetStreamSourceFreq(0, D3DSTREAMSOURCE_INDEXEDDATA | 3u);
    device->SetStreamSource(0, vertices, 0, sizeof(PositionVertex));
    device->SetStreamSourceFreq(1, D3DSTREAMSOURCE_INSTANCEDATA | 1u);
    device->SetStreamSource(1, instances, sizeof(Instance), sizeof(Instance)); // skips the first record
    device->SetIndices(indices);
    UINT passes = 0;
    effect->Begin(&passes, 0);
    effect->BeginPass(0);
    ASSERT_EQ(D3D_OK, device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, 0, 0, 4, 0, 2));
    effect->EndPass();
    effect->End();

    EXPECT_EQ((Pixel{255, 0, 0, 255}), pixel(16, 16));
    EXPECT_EQ((Pixel{0, 255, 0, 255}), pixel(48, 16));
    EXPECT_EQ((Pixel{255, 255, 0, 255}), pixel(48, 48));
    EXPECT_EQ(black, pixel(16, 48));
    const port::FrameStats stats = port::currentFrameStats(device);
    EXPECT_EQ(1u, stats.draws);
    EXPECT_EQ(3u, stats.instances);
}

TEST_F(Device, DynamicBufferWrittenAsARingKeepsWhatEarlierDrawsRead)
{
    // Two triangles written one behind the other without waiting, then a discard over both.
    constexpr UINT triangle = 3 * sizeof(PositionVertex);
    ASSERT_EQ(D3D_OK, device->CreateVertexBuffer(2 * triangle, D3DUSAGE_DYNAMIC | D3DUSAGE_WRITEONLY, 0,
                                                 D3DPOOL_DEFAULT, vertices.out(), nullptr));
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    makeDeclaration({positionElement}, declaration);
    device->SetVertexDeclaration(declaration);
    clear(0);
    const auto drawAt = [&](UINT offset, DWORD flags, float x, float y)
    {
        void *data = nullptr;
        ASSERT_EQ(D3D_OK, vertices->Lock(offset, triangle, &data, flags));
        const PositionVertex corners[] = {{x, y, 0}, {x, y + 1, 0}, {x + 1, y + 1, 0}};
        std::memcpy(data, corners, triangle);
        ASSERT_EQ(D3D_OK, vertices->Unlock());
        device->SetStreamSource(0, vertices, offset, sizeof(PositionVertex));
        draw(*effect, "Flat", 1);
    };
    drawAt(0, D3DLOCK_NOOVERWRITE, -1, 0);
    drawAt(triangle, D3DLOCK_NOOVERWRITE, 0, 0);
    drawAt(0, D3DLOCK_DISCARD, -1, -1);
    EXPECT_EQ(red, pixel(2, 2));
    EXPECT_EQ(red, pixel(34, 2));
    EXPECT_EQ(red, pixel(2, 34));
    EXPECT_EQ(black, pixel(34, 34));
}

TEST_F(Device, LocksOutOfRangeTwiceOrOfTheWrongKindAreRefused)
{
    void *data = nullptr;
    Owned<IDirect3DVertexBuffer9> fixed;
    ASSERT_EQ(D3D_OK, device->CreateVertexBuffer(64, D3DUSAGE_WRITEONLY, 0, D3DPOOL_MANAGED, fixed.out(), nullptr));
    EXPECT_EQ(D3DERR_INVALIDCALL, fixed->Lock(0, 0, &data, D3DLOCK_DISCARD));
    EXPECT_EQ(D3DERR_INVALIDCALL, fixed->Lock(60, 8, &data, 0));
    EXPECT_EQ(D3DERR_INVALIDCALL, fixed->Unlock());
    ASSERT_EQ(D3D_OK, fixed->Lock(0, 64, &data, 0));
    EXPECT_EQ(D3DERR_INVALIDCALL, fixed->Lock(0, 8, &data, 0));
    EXPECT_EQ(D3D_OK, fixed->Unlock());
    EXPECT_EQ(D3DERR_INVALIDCALL,
              device->CreateVertexBuffer(64, D3DUSAGE_DYNAMIC, 0, D3DPOOL_MANAGED, fixed.out(), nullptr));
}

TEST_F(Device, DrawWithoutAPassIsRefused)
{
    bindTriangle(upperLeft);
    EXPECT_EQ(D3DERR_INVALIDCALL, device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, 1));
}

TEST_F(Device, SecondDeviceIsRefusedWhileOneLives)
{
    IDirect3DDevice9 *second = nullptr;
    D3DPRESENT_PARAMETERS wanted = parameters(32, 32);
    EXPECT_EQ(D3DERR_NOTAVAILABLE, direct3D->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, nullptr,
                                                          D3DCREATE_HARDWARE_VERTEXPROCESSING, &wanted, &second));
    EXPECT_EQ(nullptr, second);
}

TEST_F(Device, SlotZeroAlwaysHasATargetAndBindingItSetsTheViewport)
{
    EXPECT_EQ(D3DERR_INVALIDCALL, device->SetRenderTarget(0, nullptr));
    Owned<IDirect3DTexture9> texture;
    ASSERT_EQ(D3D_OK, device->CreateTexture(32, 16, 0, D3DUSAGE_RENDERTARGET, D3DFMT_A16B16G16R16F, D3DPOOL_DEFAULT,
                                            texture.out(), nullptr));
    EXPECT_EQ(6u, texture->GetLevelCount());
    Owned<IDirect3DSurface9> surface, bound;
    ASSERT_EQ(D3D_OK, texture->GetSurfaceLevel(1, surface.out()));
    ASSERT_EQ(D3D_OK, device->SetRenderTarget(0, surface));
    D3DVIEWPORT9 viewport;
    device->GetViewport(&viewport);
    EXPECT_EQ(16u, viewport.Width);
    EXPECT_EQ(8u, viewport.Height);
    ASSERT_EQ(D3D_OK, device->GetRenderTarget(0, bound.out()));
    EXPECT_EQ(surface.get(), bound.get());
    EXPECT_EQ(D3DERR_NOTFOUND, device->GetRenderTarget(1, bound.out()));
}

TEST_F(Device, SetTargetsAndStatesThatAreInPlaceCostNothing)
{
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    bindTriangle(upperLeft);
    clear(0);
    draw(*effect, "Flat", 1);
    const unsigned once = port::currentFrameStats(device).stateChanges;
    Owned<IDirect3DSurface9> target;
    device->GetRenderTarget(0, target.out());
    for (int repeat = 0; repeat < 10; ++repeat)
    {
        device->SetRenderTarget(0, target);
        device->SetStreamSource(0, vertices, 0, sizeof(PositionVertex));
        draw(*effect, "Flat", 1);
    }
    EXPECT_EQ(once, port::currentFrameStats(device).stateChanges);
    ASSERT_EQ(D3D_OK, device->Present(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(11u, port::lastFrameStats(device).draws);
    EXPECT_EQ(0u, port::currentFrameStats(device).draws);
}

TEST_F(Device, StencilThatIsKnownToHoldTheValueIsNotClearedAgain)
{
    Owned<ID3DXEffect> effect;
    makeEffect(std::string(flatEffect) + R"(
technique Mark { pass { CullMode = None; ZEnable = False; StencilEnable = True; StencilPass = Replace; StencilRef = 3; ColorWriteEnable = 0; VertexShader = flatVS; PixelShader = flatPS; } }
technique WhereMarked { pass { CullMode = None; ZEnable = False; StencilEnable = True; StencilFunc = Equal; StencilRef = 3; StencilWriteMask = 0; VertexShader = flatVS; PixelShader = flatPS; } })",
               effect);
    bindTriangle(upperLeft);
    clear(0);
    const auto clearStencil = [this] { device->Clear(0, nullptr, D3DCLEAR_STENCIL, 0, 0, 0); };
    clearStencil();
    const unsigned clears = port::currentFrameStats(device).clears;
    clearStencil();
    EXPECT_EQ(clears, port::currentFrameStats(device).clears);

    draw(*effect, "Mark", 1);
    clearStencil(); // now it matters
    EXPECT_EQ(clears + 1, port::currentFrameStats(device).clears);
    draw(*effect, "WhereMarked", 1);
    EXPECT_EQ(black, pixel(2, 2));
    draw(*effect, "Mark", 1);
    draw(*effect, "WhereMarked", 1);
    EXPECT_EQ(red, pixel(2, 2));
}

TEST_F(Device, SavedPictureStandsUpright)
{
    clear(D3DCOLOR_ARGB(255, 0, 0, 255));
    const D3DRECT top{0, 0, 64, 10};
    device->Clear(1, &top, D3DCLEAR_TARGET, D3DCOLOR_ARGB(255, 255, 0, 0), 1, 0);
    ASSERT_EQ(D3D_OK, device->Present(nullptr, nullptr, nullptr, nullptr));
    const std::string file = (folder / "picture.png").string();
    ASSERT_EQ("", port::saveBackBuffer(device, file.c_str()));
    int width = 0, height = 0, channels = 0;
    unsigned char *pixels = stbi_load(file.c_str(), &width, &height, &channels, 3);
    ASSERT_NE(nullptr, pixels);
    EXPECT_EQ(64, width);
    EXPECT_EQ(64, height);
    EXPECT_EQ(255, pixels[0]);
    EXPECT_EQ(0, pixels[2]);
    EXPECT_EQ(255, pixels[(63 * 64) * 3 + 2]);
    stbi_image_free(pixels);
    EXPECT_EQ("No such file or directory.", port::saveBackBuffer(device, (folder / "no" / "folder.png").c_str()));
}

TEST_F(Device, OverlayMayLeaveAnyStateBehind)
{
    Owned<ID3DXEffect> effect;
    makeEffect(flatEffect, effect);
    bindTriangle(upperLeft);
    int calls = 0;
    port::setPresentOverlay(device,
                            [&calls](int, int)
                            {
                                ++calls;
                                glUseProgram(0);
                                glBindVertexArray(0);
                                glColorMask(0, 0, 0, 0);
                                glEnable(GL_SCISSOR_TEST);
                                glScissor(0, 0, 1, 1);
                                glViewport(0, 0, 3, 3);
                            });
    for (int frame = 0; frame < 2; ++frame)
    {
        clear(0);
        draw(*effect, "Flat", 1);
        EXPECT_EQ(red, pixel(20, 2)) << "frame " << frame;
        ASSERT_EQ(D3D_OK, device->Present(nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_EQ(2, calls);
}

TEST_F(Device, LostDeviceComesBackOnlyThroughReset)
{
    D3DPRESENT_PARAMETERS wanted = parameters(32, 48);
    port::setDeviceLost(device, true);
    EXPECT_EQ(D3DERR_DEVICELOST, device->TestCooperativeLevel());
    EXPECT_EQ(D3DERR_DEVICELOST, device->Present(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(D3DERR_DEVICELOST, device->BeginScene());
    EXPECT_EQ(D3DERR_DEVICELOST, device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1, 0));
    EXPECT_EQ(D3DERR_DEVICELOST, device->Reset(&wanted));
    port::setDeviceLost(device, false);
    EXPECT_EQ(D3DERR_DEVICENOTRESET, device->TestCooperativeLevel());
    EXPECT_EQ(D3DERR_DEVICENOTRESET, device->Present(nullptr, nullptr, nullptr, nullptr));
    ASSERT_EQ(D3D_OK, device->Reset(&wanted));
    EXPECT_EQ(D3D_OK, device->TestCooperativeLevel());
    Owned<IDirect3DSurface9> surface;
    ASSERT_EQ(D3D_OK, device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, surface.out()));
    D3DSURFACE_DESC description;
    surface->GetDesc(&description);
    EXPECT_EQ(32u, description.Width);
    EXPECT_EQ(48u, description.Height);
}

TEST_F(Device, ResetFailsAndNamesDefaultPoolResourcesThatLive)
{
    D3DPRESENT_PARAMETERS wanted = parameters(64, 64);
    Owned<IDirect3DTexture9> target, managed;
    ASSERT_EQ(D3D_OK,
              D3DXCreateTexture(device, 16, 16, 1, D3DUSAGE_RENDERTARGET, D3DFMT_R32F, D3DPOOL_DEFAULT, target.out()));
    ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, 16, 16, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, managed.out()));
    target->SetPrivateData(WKPDID_D3DDebugObjectName, "ShadowMap", 9, 0);
    Owned<IDirect3DSurface9> backBuffer, surface;
    ASSERT_EQ(D3D_OK, device->GetRenderTarget(0, backBuffer.out()));
    ASSERT_EQ(D3D_OK, target->GetSurfaceLevel(0, surface.out()));
    ASSERT_EQ(D3D_OK, device->SetRenderTarget(0, surface));

    testing::internal::CaptureStderr();
    EXPECT_EQ(D3DERR_INVALIDCALL, device->Reset(&wanted));
    port::flushDebugOutput();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, said.find("texture \"ShadowMap\" of 16 x 16, R32F, 2 references")) << said;
    EXPECT_NE(std::string::npos, said.find("texture \"back buffer\"")) << said;
    EXPECT_NE(std::string::npos, said.find("2 default-pool resources")) << said;
    EXPECT_EQ(D3DERR_DEVICENOTRESET, device->TestCooperativeLevel());

    backBuffer.reset();
    surface.reset();
    target.reset(); // still bound, which the reset itself undoes
    EXPECT_EQ(D3D_OK, device->Reset(&wanted));
    EXPECT_EQ(D3D_OK, device->TestCooperativeLevel());
}

TEST_F(Device, ReferencesCountAsPublished)
{
    Owned<IDirect3DTexture9> texture;
    ASSERT_EQ(D3D_OK, device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.out(), nullptr));
    EXPECT_EQ(2u, texture->AddRef());
    Owned<IDirect3DSurface9> surface;
    ASSERT_EQ(D3D_OK, texture->GetSurfaceLevel(0, surface.out()));
    EXPECT_EQ(2u, surface->AddRef() - 2u);
    EXPECT_EQ(3u, surface->Release());
    EXPECT_EQ(2u, texture->Release());
    // The texture keeps its device alive.
    IDirect3DDevice9 *raw = device;
    raw->AddRef();
    EXPECT_EQ(2u, raw->Release());
}

TEST_F(Device, UnsupportedVertexElementsAndFormatsAreRefused)
{
    IDirect3DVertexDeclaration9 *bad = nullptr;
    const D3DVERTEXELEMENT9 elements[] = {{0, 0, D3DDECLTYPE_FLOAT3, 0, 9, 0}, D3DDECL_END()};
    EXPECT_EQ(D3DERR_INVALIDCALL, device->CreateVertexDeclaration(elements, &bad));
    IDirect3DTexture9 *texture = nullptr;
    EXPECT_EQ(D3DERR_INVALIDCALL,
              device->CreateTexture(8, 8, 1, 0, static_cast<D3DFORMAT>(77), D3DPOOL_MANAGED, &texture, nullptr));
    EXPECT_EQ(D3DERR_INVALIDCALL, device->CreateTexture(0, 8, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &texture, nullptr));
    EXPECT_EQ(D3DERR_INVALIDCALL,
              device->CreateTexture(1u << 20, 8, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &texture, nullptr));
    IDirect3DSurface9 *surface = nullptr;
    EXPECT_EQ(D3DERR_INVALIDCALL, device->CreateDepthStencilSurface(8, 8, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE, 0,
                                                                    FALSE, &surface, nullptr));
}

TEST_F(Device, EventsNestAndTellTheirDepth)
{
    EXPECT_EQ(0, D3DPERF_BeginEvent(0, u"outer"));
    EXPECT_EQ(1, D3DPERF_BeginEvent(0, u"inner \u00e9"));
    EXPECT_EQ(1, D3DPERF_EndEvent());
    EXPECT_EQ(0, D3DPERF_EndEvent());
    EXPECT_EQ(-1, D3DPERF_EndEvent());
}

TEST(Direct3D, OffersOneAdapterWithItsModesAndRefusesOtherVersions)
{
    EXPECT_EQ(nullptr, Direct3DCreate9(31));
    Owned<IDirect3D9> direct3D;
    *direct3D.out() = Direct3DCreate9(D3D_SDK_VERSION);
    ASSERT_EQ(1u, direct3D->GetAdapterCount());
    D3DADAPTER_IDENTIFIER9 identifier;
    EXPECT_EQ(D3D_OK, direct3D->GetAdapterIdentifier(0, 0, &identifier));
    EXPECT_NE('\0', identifier.Description[0]);
    EXPECT_EQ(D3DERR_INVALIDCALL, direct3D->GetAdapterIdentifier(1, 0, &identifier));
    const UINT modes = direct3D->GetAdapterModeCount(0, D3DFMT_X8R8G8B8);
    ASSERT_GT(modes, 0u);
    EXPECT_EQ(0u, direct3D->GetAdapterModeCount(0, D3DFMT_R32F));
    D3DDISPLAYMODE mode;
    EXPECT_EQ(D3D_OK, direct3D->EnumAdapterModes(0, D3DFMT_X8R8G8B8, modes - 1, &mode));
    EXPECT_GT(mode.Width, 0u);
    EXPECT_EQ(D3DERR_INVALIDCALL, direct3D->EnumAdapterModes(0, D3DFMT_X8R8G8B8, modes, &mode));
}
