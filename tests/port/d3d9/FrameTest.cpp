#include "port/d3d9/DeviceWorld.h"
#include "port/d3dx9/D3DXMath.h"
#include "port/d3dx9/d3dx9tex.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stb/stb_image_write.h>

namespace
{

struct MeshVertex
{
    float position[3], normal[3], tangent[3], binormal[3], uv[2];
};
static_assert(sizeof(MeshVertex) == 56);

struct InstanceVertex
{
    float model[3][4], normal[3][3];
};
static_assert(sizeof(InstanceVertex) == 84);

/// KV_PICTURES names a folder that the pictures of these tests go to, for those who want to look, and makes them big.
const char *const pictureFolder = std::getenv("KV_PICTURES");
const int width = pictureFolder ? 1280 : 320, height = pictureFolder ? 720 : 180;

struct Vector
{
    float x, y, z;
};

/// A box that stands upright, turned about y, as the instance stream wants it.
InstanceVertex box(Vector centre, Vector size, float turn = 0.0f)
{
    const float c = std::cos(turn), s = std::sin(turn);
    return {{{c * size.x, 0, s * size.z, centre.x}, {0, size.y, 0, centre.y}, {-s * size.x, 0, c * size.z, centre.z}},
            {{c / size.x, 0, s / size.z}, {0, 1 / size.y, 0}, {-s / size.x, 0, c / size.z}}};
}

/// Row-vector view matrix of a camera that looks along `forward`.
D3DXMATRIX lookAlong(Vector eye, Vector forward)
{
    const float length = std::sqrt(forward.x * forward.x + forward.y * forward.y + forward.z * forward.z);
    const Vector z{forward.x / length, forward.y / length, forward.z / length};
    const float flat = std::sqrt(z.x * z.x + z.z * z.z);
    const Vector x{z.z / flat, 0, -z.x / flat};
    const Vector y{z.y * x.z - z.z * x.y, z.z * x.x - z.x * x.z, z.x * x.y - z.y * x.x};
    const auto along = [&eye](const Vector &axis) { return -(axis.x * eye.x + axis.y * eye.y + axis.z * eye.z); };
    return {{{x.x, y.x, z.x, 0}, {x.y, y.y, z.y, 0}, {x.z, y.z, z.z, 0}, {along(x), along(y), along(z), 1}}};
}

/// The whole deferred frame over a room of boxes, pass by pass as the engine draws it.
class Frame : public DeviceWorld
{
protected:
    void SetUp() override
    {
        DeviceWorld::SetUp();
        D3DPRESENT_PARAMETERS wanted = parameters(UINT(width), UINT(height));
        ASSERT_EQ(D3D_OK, device->Reset(&wanted));
        load("ff.fx", world);
        load("lights.fx", lights);
        load("test.fx", frame);
        for (int index = 0; index < 5; ++index)
            makeTarget(targets[index], index == shadowMap ? D3DFMT_R32F : D3DFMT_A16B16G16R16F);
        makeDepth(depth);
        makeDepth(shadowDepth);
        device->GetRenderTarget(0, backBuffer.out());
        makeMeshes();
        makeTextures();
        setCamera(lookAlong({0.4f, 1.5f, -2.6f}, {-0.08f, -0.22f, 1.0f}), 1.05f);
    }

    void load(const char *name, Owned<ID3DXEffect> &effect)
    {
        const std::string file = std::string(KV_SOURCE_DIR) + "/assets/shaders/" + name;
        Owned<ID3DXBuffer> errors;
        ASSERT_EQ(D3D_OK, D3DXCreateEffectFromFileA(device, file.c_str(), nullptr, nullptr, 0, nullptr, effect.out(),
                                                    errors.out()));
    }

    void makeTarget(Owned<IDirect3DTexture9> &texture, D3DFORMAT format)
    {
        ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, UINT(width), UINT(height), 1, D3DUSAGE_RENDERTARGET, format,
                                            D3DPOOL_DEFAULT, texture.out()));
    }

    void makeDepth(Owned<IDirect3DSurface9> &surface)
    {
        ASSERT_EQ(D3D_OK, device->CreateDepthStencilSurface(UINT(width), UINT(height), D3DFMT_D24S8,
                                                            D3DMULTISAMPLE_NONE, 0, TRUE, surface.out(), nullptr));
    }

    void makeMeshes()
    {
        std::vector<MeshVertex> corners;
        std::vector<DWORD> indices;
        for (int axis = 0; axis < 3; ++axis)
            for (int sign = -1; sign <= 1; sign += 2)
                addFace(axis, static_cast<float>(sign), corners, indices);
        makeVertices(corners, cubeVertices);
        makeIndices(indices, cubeIndices);

        // Half a pixel left and up, as every full-screen quad for this device.
        const float l = -1 - 1.0f / width, r = 1 - 1.0f / width, t = 1 + 1.0f / height, b = -1 + 1.0f / height;
        const MeshVertex quad[4] = {{{l, t, 0}, {0, 0, -1}, {}, {}, {0, 0}},
                                    {{r, t, 0}, {0, 0, -1}, {}, {}, {1, 0}},
                                    {{r, b, 0}, {0, 0, -1}, {}, {}, {1, 1}},
                                    {{l, b, 0}, {0, 0, -1}, {}, {}, {0, 1}}};
        makeVertices(std::vector<MeshVertex>(quad, quad + 4), quadVertices);
        makeIndices({0, 1, 2, 0, 2, 3}, quadIndices);

        std::vector<D3DVERTEXELEMENT9> elements = {{0, 0, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_POSITION, 0},
                                                   {0, 12, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_NORMAL, 0},
                                                   {0, 24, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_TANGENT, 0},
                                                   {0, 36, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_BINORMAL, 0},
                                                   {0, 48, D3DDECLTYPE_FLOAT2, 0, D3DDECLUSAGE_TEXCOORD, 0}};
        makeDeclaration(elements, plain);
        for (BYTE row = 0; row < 6; ++row)
            elements.push_back({1, static_cast<WORD>(row < 3 ? row * 16 : 48 + (row - 3) * 12),
                                static_cast<BYTE>(row < 3 ? D3DDECLTYPE_FLOAT4 : D3DDECLTYPE_FLOAT3), 0,
                                D3DDECLUSAGE_TEXCOORD, static_cast<BYTE>(row + 1)});
        makeDeclaration(elements, instanced);
    }

    /// One side of the cube from -0.5 to 0.5, clockwise as seen from outside.
    static void addFace(int axis, float sign, std::vector<MeshVertex> &corners, std::vector<DWORD> &indices)
    {
        const int u = (axis + 1) % 3, v = (axis + 2) % 3;
        const auto first = static_cast<DWORD>(corners.size());
        for (int corner = 0; corner < 4; ++corner)
        {
            const float a = corner == 1 || corner == 2 ? 0.5f : -0.5f, b = corner >= 2 ? 0.5f : -0.5f;
            MeshVertex vertex{};
            vertex.position[axis] = 0.5f * sign;
            vertex.position[u] = a;
            vertex.position[v] = b;
            vertex.normal[axis] = sign;
            vertex.tangent[u] = 1;
            vertex.binormal[v] = 1;
            vertex.uv[0] = a + 0.5f;
            vertex.uv[1] = b + 0.5f;
            corners.push_back(vertex);
        }
        const std::vector<DWORD> outward =
            sign < 0 ? std::vector<DWORD>{0, 2, 1, 0, 3, 2} : std::vector<DWORD>{0, 1, 2, 0, 2, 3};
        for (DWORD index : outward)
            indices.push_back(first + index);
    }

    void makeImage(const std::string &name, const std::function<Vector(int, int)> &color,
                   Owned<IDirect3DTexture9> &texture)
    {
        constexpr int side = 128;
        std::vector<unsigned char> pixels;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
            {
                const Vector c = color(x, y);
                for (float channel : {c.x, c.y, c.z})
                    pixels.push_back(static_cast<unsigned char>(std::clamp(channel, 0.0f, 1.0f) * 255.0f + 0.5f));
            }
        const std::string file = (folder / name).string();
        ASSERT_TRUE(stbi_write_png(file.c_str(), side, side, 3, pixels.data(), side * 3));
        ASSERT_EQ(D3D_OK, D3DXCreateTextureFromFileA(device, file.c_str(), texture.out()));
    }

    void makeTextures()
    {
        // Bricks: a joint every 32 by 16 pixels, shifted every other row.
        const auto joint = [](int x, int y) { return y % 16 < 2 || (x + (y / 16 % 2) * 16) % 32 < 2; };
        makeImage(
            "diffuse.png",
            [&joint](int x, int y) {
                return joint(x, y) ? Vector{0.35f, 0.33f, 0.31f}
                                   : Vector{0.58f, 0.48f + (x * 7 + y * 13) % 17 * 0.004f, 0.42f};
            },
            diffuse);
        makeImage(
            "normal.png",
            [&joint](int x, int y)
            {
                const float dx = joint(x + 1, y) - joint(x - 1, y), dy = joint(x, y + 1) - joint(x, y - 1);
                return Vector{0.5f + 0.35f * dx, 0.5f + 0.35f * dy, 0.85f};
            },
            normal);
        makeImage(
            "black.png",
            [](int, int) {
                return Vector{0, 0, 0};
            },
            blackImage);
        makeImage(
            "specular.png",
            [](int, int) {
                return Vector{0.3f, 0.3f, 0.3f};
            },
            specular);
    }

    template <class T>
    static void set(ID3DXEffect &effect, const char *name, const T &value)
    {
        const D3DXHANDLE parameter = effect.GetParameterByName(nullptr, name);
        ASSERT_NE(nullptr, parameter) << name;
        ASSERT_EQ(D3D_OK, effect.SetValue(parameter, &value, sizeof(value))) << name;
    }
    static void setTexture(ID3DXEffect &effect, const char *name, IDirect3DTexture9 *texture)
    {
        set(effect, name, texture);
    }
    static void set4(ID3DXEffect &effect, const char *name, float x, float y, float z, float w)
    {
        set(effect, name, std::array<float, 4>{x, y, z, w});
    }

    void setCamera(const D3DXMATRIX &worldToView, float fieldOfView)
    {
        D3DXMATRIX viewToWorld, projection, inverseTranspose;
        D3DXMatrixInverse(&viewToWorld, nullptr, &worldToView);
        D3DXMatrixTranspose(&inverseTranspose, &viewToWorld);
        D3DXMatrixPerspectiveFovLH(&projection, fieldOfView, float(width) / float(height), 0.05f, 30.0f);
        for (ID3DXEffect *effect : {world.get(), lights.get(), frame.get()})
        {
            set(*effect, "worldToView", worldToView);
            set(*effect, "viewToWorld", viewToWorld);
            set(*effect, "worldToViewInverseTranspose", inverseTranspose);
            set(*effect, "viewToProjection", projection);
            set4(*effect, "viewportPixels", 0, 0, float(width), float(height));
        }
        view = worldToView;
    }

    void bind(std::initializer_list<IDirect3DTexture9 *> colors, IDirect3DSurface9 *depthSurface)
    {
        DWORD slot = 0;
        for (IDirect3DTexture9 *color : colors)
        {
            Owned<IDirect3DSurface9> surface;
            color->GetSurfaceLevel(0, surface.out());
            ASSERT_EQ(D3D_OK, device->SetRenderTarget(slot++, surface));
        }
        for (; slot < 4; ++slot)
            if (slot == 0)
                device->SetRenderTarget(0, backBuffer);
            else
                device->SetRenderTarget(slot, nullptr);
        ASSERT_EQ(D3D_OK, device->SetDepthStencilSurface(depthSurface));
    }

    void drawMesh(ID3DXEffect &effect, const char *technique, bool cube, UINT instances)
    {
        device->SetVertexDeclaration(instances ? instanced : plain);
        device->SetStreamSourceFreq(0, instances ? D3DSTREAMSOURCE_INDEXEDDATA | instances : 1);
        device->SetStreamSource(0, cube ? cubeVertices : quadVertices, 0, sizeof(MeshVertex));
        device->SetStreamSourceFreq(1, instances ? D3DSTREAMSOURCE_INSTANCEDATA | 1u : 1);
        device->SetStreamSource(1, instances ? instanceBuffer.get() : nullptr, 0, sizeof(InstanceVertex));
        device->SetIndices(cube ? cubeIndices : quadIndices);
        ASSERT_EQ(D3D_OK, effect.SetTechnique(effect.GetTechniqueByName(technique)));
        UINT passes = 0;
        effect.Begin(&passes, 0);
        effect.BeginPass(0);
        ASSERT_EQ(D3D_OK, device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, 0, 0, cube ? 24 : 4, 0, cube ? 12 : 2));
        effect.EndPass();
        effect.End();
    }

    void drawGBuffer(const std::vector<InstanceVertex> &boxes)
    {
        makeVertices(boxes, instanceBuffer);
        boxCount = static_cast<UINT>(boxes.size());
        bind({targets[0], targets[1], targets[2]}, depth);
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1, 0);
        setTexture(*world, "diffuseMap_texture", diffuse);
        setTexture(*world, "normalMap_texture", normal);
        setTexture(*world, "emissiveMap_texture", blackImage);
        setTexture(*world, "specularMap_texture", specular);
        drawMesh(*world, "Crappy", true, boxCount);
    }

    /// A light whose volume is the cube, which holds it whole.
    void drawLight(const char *technique, Vector at, Vector along, float reach)
    {
        const float size = 2.2f * reach;
        const D3DXMATRIX model = {{{size, 0, 0, 0}, {0, size, 0, 0}, {0, 0, size, 0}, {at.x, at.y, at.z, 1}}};
        const auto intoView = [this](Vector v, float w)
        {
            const auto row = [&](int c)
            { return v.x * view.m[0][c] + v.y * view.m[1][c] + v.z * view.m[2][c] + w * view.m[3][c]; };
            return std::array<float, 4>{row(0), row(1), row(2), w};
        };
        set(*lights, "modelToWorld", model);
        set(*lights, "spotInnerAngleCos", std::cos(0.25f));
        set(*lights, "spotOuterAngleCos", std::cos(0.5f));
        set4(*lights, "lightDiffuseColor", 0.9f, 0.9f, 0.81f, 0);
        set4(*lights, "lightSpecularColor", 0.2f, 0.2f, 0.18f, 0);
        set(*lights, "lightFalloffEnd", reach);
        set(*lights, "lightPosition_ViewSpace", intoView(at, 1));
        set(*lights, "spotDirection_ViewSpace", intoView(along, 0));
        bind({targets[lightBuffer]}, depth);
        setTexture(*lights, "GBuffer2_texture", targets[1]);
        setTexture(*lights, "ShadowMap_texture", targets[shadowMap]);
        drawMesh(*lights, technique, true, 0);
    }

    void drawShadowMap(const D3DXMATRIX &lightView, float fieldOfView)
    {
        const D3DXMATRIX cameraView = view;
        D3DXMATRIX projection;
        D3DXMatrixPerspectiveFovLH(&projection, fieldOfView, float(width) / float(height), 0.05f, 30.0f);
        bind({targets[shadowMap]}, shadowDepth);
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1, 0);
        setCamera(lightView, fieldOfView);
        drawMesh(*world, "CrappyShadow", true, boxCount);
        setCamera(cameraView, 1.05f);
        set(*lights, "worldToLightView", lightView);
        set(*lights, "lightViewToLightProjection", projection);
    }

    void clearLight()
    {
        bind({targets[lightBuffer]}, depth);
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1, 0);
    }

    void combine(float ambient, const char *picture = nullptr)
    {
        bind({}, nullptr);
        set4(*frame, "sceneAmbient", ambient * 0.1f, ambient * 0.1f, ambient * 0.08f, ambient * 0.1f);
        setTexture(*frame, "GBuffer1_texture", targets[0]);
        setTexture(*frame, "GBuffer2_texture", targets[1]);
        setTexture(*frame, "GBuffer3_texture", targets[2]);
        setTexture(*frame, "LBuffer_texture", targets[lightBuffer]);
        drawMesh(*frame, "CombineTest", false, 0);
        if (picture && pictureFolder)
            port::saveBackBuffer(device, (std::string(pictureFolder) + "/" + picture + ".png").c_str());
    }

    /// A room 6 wide, 3 high and 7 long, with some furniture.
    static std::vector<InstanceVertex> room()
    {
        return {box({0, -0.1f, 0}, {6, 0.2f, 7}),
                box({0, 3.1f, 0}, {6, 0.2f, 7}),
                box({-3.1f, 1.5f, 0}, {0.2f, 3, 7}),
                box({3.1f, 1.5f, 0}, {0.2f, 3, 7}),
                box({0, 1.5f, 3.6f}, {6, 3, 0.2f}),
                box({-1.2f, 0.4f, 1.2f}, {0.9f, 0.8f, 0.9f}, 0.5f),
                box({-1.1f, 1.0f, 1.3f}, {0.5f, 0.4f, 0.5f}, 0.2f),
                box({1.4f, 0.9f, 2.2f}, {0.8f, 1.8f, 0.5f}, -0.3f),
                box({0.7f, 0.25f, 0.2f}, {0.5f, 0.5f, 0.5f}, 0.9f)};
    }

    /// Mean of all three channels over a part of the picture, given in hundredths of it, 0 to 255.
    float brightness(int left, int top, int right, int bottom)
    {
        float sum = 0;
        int count = 0;
        for (int y = height * top / 100; y < height * bottom / 100; y += height / 90)
            for (int x = width * left / 100; x < width * right / 100; x += width / 160)
            {
                const Pixel p = pixel(x, y);
                sum += static_cast<float>(p.r + p.g + p.b) / 3.0f;
                ++count;
            }
        return sum / static_cast<float>(count);
    }

    static constexpr int lightBuffer = 3, shadowMap = 4;
    Owned<ID3DXEffect> world, lights, frame;
    Owned<IDirect3DTexture9> targets[5];
    Owned<IDirect3DSurface9> depth, shadowDepth, backBuffer;
    Owned<IDirect3DVertexBuffer9> cubeVertices, quadVertices, instanceBuffer;
    Owned<IDirect3DIndexBuffer9> cubeIndices, quadIndices;
    Owned<IDirect3DVertexDeclaration9> plain, instanced;
    Owned<IDirect3DTexture9> diffuse, normal, blackImage, specular;
    D3DXMATRIX view;
    UINT boxCount = 0;
};

} // namespace

TEST_F(Frame, RoomWithoutLightsIsDarkButReadable)
{
    drawGBuffer(room());
    clearLight();
    combine(0.2f, "ambient");
    const float whole = brightness(0, 0, 100, 100);
    EXPECT_GT(whole, 30.0f);
    EXPECT_LT(whole, 80.0f);

    combine(0.0f);
    EXPECT_LT(brightness(0, 0, 100, 100), 1.0f);
}

TEST_F(Frame, DissolveAndInsanityLeaveTheSceneAloneAtZeroAndDissolveTakesAllAtOne)
{
    drawGBuffer(room());
    clearLight();
    combine(0.2f);
    const Pixel before = pixel(width / 2, height / 2);
    set(*frame, "time", 17.0f);
    combine(0.2f);
    EXPECT_EQ(before, pixel(width / 2, height / 2));
    set(*frame, "dissolveAmount", 0.5f);
    combine(0.2f, "dissolve");
    set(*frame, "dissolveAmount", 0.0f);
    set(*frame, "insanityAmount", 1.0f);
    combine(0.2f, "insane");
    set(*frame, "insanityAmount", -3.0f);
    combine(0.2f);
    EXPECT_EQ(before, pixel(width / 2, height / 2));
    set4(*frame, "dissolveColor", 0, 0, 1, 1);
    set(*frame, "dissolveAmount", 1.0f);
    combine(0.2f);
    EXPECT_EQ((Pixel{0, 0, 255, 255}), pixel(width / 2, height / 2));
}

TEST_F(Frame, SphereLightBrightensWhatItReachesAlone)
{
    drawGBuffer(room());
    clearLight();
    combine(0.2f);
    const float leftBefore = brightness(2, 30, 12, 60), rightBefore = brightness(88, 30, 98, 60);
    clearLight();
    drawLight("SphereLight", {-2.0f, 1.4f, 0.5f}, {0, 0, 1}, 2.5f);
    combine(0.2f, "sphere");
    EXPECT_GT(brightness(2, 30, 12, 60), leftBefore + 40.0f);
    EXPECT_NEAR(rightBefore, brightness(88, 30, 98, 60), 0.5f);
}

TEST_F(Frame, CameraInsideTheVolumeAndVolumeBeyondTheFarPlaneStillLight)
{
    drawGBuffer(room());
    clearLight();
    drawLight("SphereLight", {0.0f, 1.5f, -1.0f}, {0, 0, 1}, 60.0f);
    combine(0.0f);
    EXPECT_GT(brightness(40, 30, 60, 60), 40.0f);
}

TEST_F(Frame, SpotLightThrowsAConeAndBoxesThrowShadows)
{
    const Vector at{2.4f, 1.5f, -1.8f}, along{-0.55f, -0.29f, 0.78f};
    drawGBuffer(room());
    clearLight();
    drawLight("SpotLight", at, along, 14.0f);
    combine(0.2f, "spot");
    const float wallLit = brightness(45, 28, 55, 40), besideTheTallBox = brightness(56, 36, 58, 50);
    EXPECT_GT(wallLit, 120.0f);
    EXPECT_GT(besideTheTallBox, 100.0f);
    EXPECT_LT(brightness(2, 10, 8, 40), 60.0f) << "out of the cone";

    drawShadowMap(lookAlong(at, along), 1.0f);
    clearLight();
    drawLight("SpotShadowsLight", at, along, 14.0f);
    combine(0.2f, "shadow");
    EXPECT_NEAR(wallLit, brightness(45, 28, 55, 40), 3.0f);
    EXPECT_LT(brightness(56, 36, 58, 50), besideTheTallBox * 0.6f);
}

TEST_F(Frame, PictureIsProjectedOntoSurfacesThatFaceItAndKeepsTheirHighlights)
{
    drawGBuffer(room());
    const int x = width / 2, y = height * 38 / 100; // on the back wall
    const Pixel before = pixelOf(targets[0], x, y), floorBefore = pixelOf(targets[0], x, height * 9 / 10);
    bind({targets[0]}, depth);
    set(*frame, "modelToWorld", D3DXMATRIX{{{3, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 1, 0}, {0, 1.5f, 3.5f, 1}}});
    setTexture(*frame, "GBuffer2_texture", targets[1]);
    setTexture(*frame, "diffuseMap_texture", blackImage);
    drawMesh(*frame, "Projective_texture", true, 0);
    EXPECT_EQ((Pixel{0, 0, 0, before.a}), pixelOf(targets[0], x, y));
    EXPECT_GT(before.a, 0);
    EXPECT_EQ(floorBefore, pixelOf(targets[0], x, height * 9 / 10));
    clearLight();
    combine(0.2f, "decal");
}

TEST_F(Frame, QuadsBlendByTheirAlphaAndHideNothingWhereTheyAreClear)
{
    Owned<IDirect3DTexture9> image;
    ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, 2, 1, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, image.out()));
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3D_OK, image->LockRect(0, &locked, nullptr, 0));
    const DWORD texels[] = {0x80ffffffu, 0x00ffffffu}; // half white, clear
    std::memcpy(locked.pBits, texels, sizeof(texels));
    ASSERT_EQ(D3D_OK, image->UnlockRect(0));
    const D3DXMATRIX identity{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    set(*world, "worldToView", identity);
    set(*world, "viewToProjection", identity);
    setTexture(*world, "diffuseMap_texture", image);
    const auto drawQuad = [&](float z)
    {
        makeVertices(std::vector<InstanceVertex>{box({0, 0, z}, {1, 1, 1})}, instanceBuffer);
        drawMesh(*world, "CrappyTexturedQuads", false, 1);
    };
    bind({}, depth);
    device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1, 0);
    drawQuad(0.2f);
    drawQuad(0.5f); // behind: hidden on the left, and clear over clear on the right
    EXPECT_NEAR(128, pixel(width / 8, height / 2).r, 1);
    EXPECT_EQ(0, pixel(width * 7 / 8, height / 2).r);
    setTexture(*world, "diffuseMap_texture", specular);
    drawQuad(0.5f);
    EXPECT_NEAR(128, pixel(width / 8, height / 2).r, 1);
    EXPECT_NEAR(77, pixel(width * 7 / 8, height / 2).r, 1);
}

TEST_F(Frame, LinesTakeTheirColourFromTheNormalAndDustShowsInFrontOfWalls)
{
    drawGBuffer(room());
    bind({}, depth);
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1, 0);
    const auto drawVertices =
        [this](ID3DXEffect &effect, const char *technique, D3DPRIMITIVETYPE type, const std::vector<MeshVertex> &list)
    {
        Owned<IDirect3DVertexBuffer9> buffer;
        makeVertices(list, buffer);
        device->SetVertexDeclaration(plain);
        device->SetStreamSourceFreq(0, 1);
        device->SetStreamSource(0, buffer, 0, sizeof(MeshVertex));
        effect.SetTechnique(effect.GetTechniqueByName(technique));
        UINT passes = 0;
        effect.Begin(&passes, 0);
        effect.BeginPass(0);
        EXPECT_EQ(D3D_OK, device->DrawPrimitive(type, 0, 1));
        effect.EndPass();
        effect.End();
    };
    // Straight ahead of the camera, through the middle of the picture.
    const auto ahead = [](float distance) {
        return Vector{0.4f - 0.0778f * distance, 1.5f - 0.2140f * distance, -2.6f + 0.9737f * distance};
    };
    const Vector near = ahead(1.5f), far = ahead(40.0f);
    drawVertices(*world, "CrappyLines", D3DPT_LINELIST,
                 {{{near.x - 1, near.y, near.z}, {0, 1, 0.2f}, {}, {}, {}},
                  {{near.x + 1, near.y, near.z}, {0, 1, 0.2f}, {}, {}, {}}});
    int found = 0;
    for (int y = height / 2 - 3; y <= height / 2 + 3; ++y)
        found += pixel(width / 3, y) == Pixel{0, 255, 51, 255};
    EXPECT_EQ(1, found);

    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1, 0);
    set(*frame, "particleSize", 0.2f);
    drawVertices(*frame, "PointParticles", D3DPT_POINTLIST, {{{far.x, far.y, far.z}, {1, 1, 1}, {}, {}, {1, 0}}});
    EXPECT_EQ(0, pixel(width / 2, height / 2).r) << "behind the wall";
    drawVertices(*frame, "PointParticles", D3DPT_POINTLIST, {{{near.x, near.y, near.z}, {1, 1, 1}, {}, {}, {1, 0}}});
    EXPECT_GT(pixel(width / 2, height / 2).r, 40) << "soft, as what is near";
}
