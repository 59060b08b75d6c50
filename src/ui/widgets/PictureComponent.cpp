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
    if (take(color, val, 0.f, 4.f))
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
    painter.picture(stretched ? getPlace() : getPlace().fitted(pictureWidth, pictureHeight), WHOLE_IMAGE, texture,
                    color);
}
