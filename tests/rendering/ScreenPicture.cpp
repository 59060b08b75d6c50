#include "ScreenPicture.h"

#include "RenderingWorld.h"

#include "port/d3dx9/d3dx9tex.h"
#include "support/TemporaryFile.h"

#include <cstring>

int ScreenPicture::countLit(int left, int top, int right, int bottom) const
{
    int lit = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            lit += (at(x, y) & 0xFFFFFF) != 0;
    return lit;
}

ScreenPicture drawPicture(RenderingWorld &world)
{
    // The PNG is read back by the same texture loader that content goes through.
    const TemporaryFile file("picture.png");
    const RenderingWorld::OnRealDevice real(world);
    world.graphics().captureScreen(file.name());
    world.level.frame();

    ScreenPicture picture;
    IDirect3DTexture9 *texture = nullptr;
    D3DSURFACE_DESC size = {};
    D3DLOCKED_RECT rows = {};
    if (FAILED(D3DXCreateTextureFromFileA(world.realGraphicsDevice(), file.name().toCString(), &texture)))
        return picture;
    if (SUCCEEDED(texture->GetLevelDesc(0, &size)) && SUCCEEDED(texture->LockRect(0, &rows, nullptr, D3DLOCK_READONLY)))
    {
        picture.width = static_cast<int>(size.Width);
        picture.height = static_cast<int>(size.Height);
        picture.pixels.resize(std::size_t(size.Width) * size.Height);
        for (UINT y = 0; y < size.Height; ++y)
            std::memcpy(&picture.pixels[std::size_t(y) * size.Width],
                        static_cast<char *>(rows.pBits) + std::ptrdiff_t(y) * rows.Pitch, std::size_t(size.Width) * 4);
    }
    texture->Release();
    return picture;
}
