// TextComponent2: a text on the screen plane.
#pragma once

#include "rendering/drawn/FlatGraphicsComponent.h"

#include "assets/fonts/TextBlock.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

class DynamicMeshAsset;
class FontAsset;

/// A text in one font, size and colour, in as many lines as it needs; for the layers SCREEN and SCREEN_DEBUG.
///
/// Sizes are in normalised window units. Its letters are drawn for the pixels that they take in the window as it is,
/// and an upright text is moved to the nearest whole pixels, so that it is sharp at any window size. The transform's
/// y scale multiplies the size, its x scale the wrap width. Its place is the corner that the anchor points name.
class TextComponent2 : public FlatGraphicsComponent
{
    KV_REFLECTED(TextComponent2)
public:
    TextComponent2();

    /// Requests the font, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    /// 0 for a text that shows nothing.
    int objectGetInstanceCount() override;
    /// Lays the text out and makes its mesh, if anything has changed.
    ErrorCode batchPreRender() override;

    /// Width of the widest line as the text stands now, normalised window units; 0 until the font is there.
    float getWidth() override;
    /// Height of all lines as the text stands now, normalised window units; 0 until the font is there.
    float getHeight() override;
    /// Count of lines as the text stands now; 0 until the font is there.
    int getLineCount();

    String getText() const { return text; }
    /// What is shown, in UTF-8; a line feed begins a new line.
    void setText(const String &val) { text = val; }
    String getFontName() const { return fontName; }
    /// Font file of "..\assets\fonts\", with its extension; takes effect when loaded, or at once after that.
    void setFontName(const String &val);
    float getFontSize() const { return fontSize; }
    /// Em of the font, normalised window units: 0.025 is 32 pixels in a window 1280 wide.
    ///
    /// The smallest em is a pixel, for what is smaller and for what is no finite number.
    void setFontSize(float val) { fontSize = val; }
    Vec4 getColor() const { return color; }
    /// Colour as it arrives on the screen, 0 to 1, alpha in w.
    void setColor(const Vec4 &val);
    float getWrapWidth() const { return wrapWidth; }
    /// Width that a line may take, normalised window units; 0 lets lines end only where the text says.
    ///
    /// So does what is negative or no finite number.
    void setWrapWidth(float val) { wrapWidth = val; }
    TextAlignment getAlignment() const { return alignment; }
    /// Where lines stand within the wrap width, or else within the widest line.
    void setAlignment(TextAlignment val) { alignment = val; }
    /// The font of the present font name, perhaps still without its file; invalid until this has been loaded.
    Handle<FontAsset> getFont() const { return font; }

    void onSetHorizontalAnchorPoint(HorizontalAnchor val) override;
    void onSetVerticalAnchorPoint(VerticalAnchor val) override;

private:
    void requestFont();
    FontAsset *findReadyFont() const;
    FontAsset *layOut();
    void buildMesh(FontAsset &asset);

    String text;
    String fontName;
    String lastTextInBlock; ///< what textBlock holds
    Handle<FontAsset> font;
    Handle<DynamicMeshAsset> mesh;
    TextBlock textBlock;
    TextBlockParams params; ///< what textBlock was laid out with

    float fontSize = 0.025f;       ///< normalised window units
    float wrapWidth = 0.0f;        ///< normalised window units; 0: none
    Vec4 color = Vec4(1, 1, 1, 1); ///< 0 to 1, alpha in w
    TextAlignment alignment = TA_LEFT;
    int pixelSize = 0;            ///< em that textBlock was laid out for, pixels; 0: not laid out
    float unitsPerPixel = 0.0f;   ///< size of a pixel of textBlock, normalised window units
    bool meshIsStale = true;      ///< the mesh shows something else than textBlock
    unsigned atlasGeneration = 0; ///< of the font when the mesh was made
    bool loaded = false;          ///< set by onLoadComplete
    bool missingFontTold = false; ///< reported for the present font name
};
