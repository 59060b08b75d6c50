// PictureComponent: a picture on a screen.
#pragma once

#include "ui/widgets/WidgetComponent.h"

#include "foundation/KVString.h"

class TextureAsset;

/// A picture that is as large as it can be in its place without losing its shape, under the component key "form".
class PictureComponent : public WidgetComponent
{
    KV_REFLECTED(PictureComponent)
public:
    PictureComponent() = default;

    String getTextureName() const { return textureName; }
    /// Name of a file of "assets/textures"; without an extension .dds goes before .png. Empty for no picture.
    void setTextureName(const String &val);
    Handle<TextureAsset> getTexture() const { return texture; }
    /// A picture that does not come from a file of the game; goes in the place of the name's.
    void setTexture(Handle<TextureAsset> val);
    float getPictureWidth() const { return pictureWidth; }
    /// Width that it would like.
    void setPictureWidth(float val);
    float getPictureHeight() const { return pictureHeight; }
    /// Height that it would like; both together are its shape.
    void setPictureHeight(float val);
    bool getStretched() const { return stretched; }
    /// Whether it fills its place, whatever becomes of its shape.
    void setStretched(bool val);
    Vec4 getColor() const { return color; }
    /// What the picture's colours are multiplied by, alpha in w.
    void setColor(const Vec4 &val);

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void paint(WidgetPainter &painter) override;

private:
    String textureName;
    Handle<TextureAsset> texture;
    float pictureWidth = 100.f;
    float pictureHeight = 100.f;
    bool stretched = false;
    Vec4 color = Vec4(1, 1, 1, 1);
};
