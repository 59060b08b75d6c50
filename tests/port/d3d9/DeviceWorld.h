// DeviceWorld: a device on a hidden window, files to feed it, and a look at the pixels it made.
#pragma once

#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/d3d9.h"
#include "port/d3dx9/d3dx9effect.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

/// Owns one reference to an interface.
template <class T>
class Owned
{
public:
    Owned() = default;
    Owned(const Owned &) = delete;
    Owned &operator=(const Owned &) = delete;
    ~Owned() { reset(); }
    void reset()
    {
        if (T *last = std::exchange(object, nullptr))
            last->Release();
    }
    /// For calls that hand a reference out.
    T **out()
    {
        reset();
        return &object;
    }
    T *get() const { return object; }
    T *operator->() const { return object; }
    operator T *() const { return object; }

private:
    T *object = nullptr;
};

struct Pixel
{
    int r, g, b, a;
    bool operator==(const Pixel &) const = default;
};

void PrintTo(const Pixel &pixel, std::ostream *stream);

/// A device of 64 x 64 pixels, made for each test.
class DeviceWorld : public testing::Test
{
protected:
    void SetUp() override;
    /// Behind the resources that a test keeps as members.
    ~DeviceWorld() override;

    static D3DPRESENT_PARAMETERS parameters(UINT width, UINT height);
    /// Path of a new file in a folder that goes with the test.
    std::string write(const std::string &name, const std::string &content);
    std::string write(const std::string &name, const std::vector<unsigned char> &content);
    /// An effect from its text; fails the test with the compiler's words if it does not compile.
    void makeEffect(const std::string &text, Owned<ID3DXEffect> &effect);
    /// What the compiler says about a text.
    std::string compilerOutput(const std::string &text, HRESULT &result);

    /// A buffer with the given contents.
    template <class T>
    void makeVertices(const std::vector<T> &vertices, Owned<IDirect3DVertexBuffer9> &buffer)
    {
        const auto bytes = static_cast<UINT>(vertices.size() * sizeof(T));
        ASSERT_EQ(D3D_OK,
                  device->CreateVertexBuffer(bytes, D3DUSAGE_WRITEONLY, 0, D3DPOOL_MANAGED, buffer.out(), nullptr));
        void *data = nullptr;
        ASSERT_EQ(D3D_OK, buffer->Lock(0, 0, &data, 0));
        std::copy(vertices.begin(), vertices.end(), static_cast<T *>(data));
        ASSERT_EQ(D3D_OK, buffer->Unlock());
    }
    void makeIndices(const std::vector<DWORD> &list, Owned<IDirect3DIndexBuffer9> &buffer);
    void makeDeclaration(const std::vector<D3DVERTEXELEMENT9> &elements, Owned<IDirect3DVertexDeclaration9> &out);
    /// Draws a technique's first pass with what is bound, as triangles without indices.
    void draw(ID3DXEffect &effect, const char *technique, UINT triangles);

    /// One pixel of a texture, row 0 on top.
    Pixel pixelOf(IDirect3DTexture9 *texture, int x, int y);
    /// One pixel of the back buffer.
    Pixel pixel(int x, int y);

    Owned<IDirect3D9> direct3D;
    Owned<IDirect3DDevice9> device;
    std::filesystem::path folder;
};
