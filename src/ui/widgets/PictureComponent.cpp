#include "ui/widgets/PictureComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "assets/cache/TextureAsset.h"
#include "rendering/drawn/SurfaceTextures.h"

namespace
{
constexpr WidgetRect WHOLE_IMAGE{0.f, 0.f, 1.f, 1.f};
}

void PictureComponent::setTextureName(const String &val)
{
    if (textureName == val)
        return;
    textureName = val;
    texture = val.empty() ? Handle<TextureAsset>() : requestTexture(val);
    touchPaint();
}

void PictureComponent::setTexture(Handle<TextureAsset> val)
{
    texture = val;
    touchPaint();
}

void PictureComponent::setPictureWidth(float val)
{
    if (take(pictureWidth, val, 1.f, MOST))
        touch();
}

void PictureComponent::setPictureHeight(float val)
{
    if (take(pictureHeight, val, 1.f, MOST))
        touch();
}

void PictureComponent::setStretched(bool val)
{
    stretched = val;
    touchPaint();
}

void PictureComponent::setColor(const Vec4 &val)
{
    bool changed = false;
    for (int part = 0; part < 4; ++part)
        changed |= take(color[part], val[part], 0.f, 4.f);
    if (changed)
        touchPaint();
}

float PictureComponent::measureWidth(const WidgetStyle &style)
{
    return pictureWidth * style.unit;
}

float PictureComponent::measureHeight(const WidgetStyle &style, float width)
{
    const float share = std::min(width / std::max(pictureWidth * style.unit, 1.f), 1.f);
    return pictureHeight * style.unit * (stretched ? 1.f : share);
}

void PictureComponent::paint(WidgetPainter &painter)
{
    WidgetRect place = getPlace();
    if (!stretched)
    {
        const float scale = std::min(place.width / pictureWidth, place.height / pictureHeight);
        const float width = pictureWidth * scale, height = pictureHeight * scale;
        place = {place.middleX() - width * 0.5f, place.middleY() - height * 0.5f, width, height};
    }
    painter.picture(place, WHOLE_IMAGE, texture, color);
}
