// FontAsset: a font file, and the texture with the glyphs that have been asked for.
#pragma once

#include "assets/cache/Asset.h"
#include "assets/fonts/FontFace.h"
#include "assets/fonts/FontFaces.h"
#include "assets/fonts/GlyphAtlas.h"
#include "assets/fonts/TextShaper.h"

#include "foundation/KVString.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

class DynamicTextureAsset;
class TextureAsset;

/// One font at any size, with substitutes for characters that it lacks.
///
/// Glyphs are drawn into the texture the first time they are asked for.
///
/// Sizes are the em in whole pixels. A letter is drawn at one of four places within a pixel column, so that spacing
/// stays even although every picture lies on whole pixels.
class FontAsset : public Asset
{
    KV_REFLECTED(FontAsset)
public:
    static constexpr int LARGEST_PIXEL_SIZE = 256; ///< what is larger is drawn at this size and stretched
    static constexpr int SHIFTS = 4;               ///< places within a pixel that a glyph is drawn at

    /// Where a glyph's picture lies in the atlas and how it stands to the pen.
    struct Glyph
    {
        GlyphAtlas::Place place;
        int width = 0; ///< pixels; 0 for a glyph without ink
        int height = 0;
        int left = 0; ///< pixels from the pen's pixel to the picture's left edge
        int top = 0;  ///< pixels from the baseline up to the picture's upper edge
    };

    /// The font at one size; for as long as the font lives.
    class Shaper final : public ITextShaper
    {
    public:
        Shaper(const FontFaces &faces_, int pixelSize_);

        void shape(std::u32string_view run, std::vector<ShapedGlyph> &glyphs) const override;
        float getAscent() const override { return ascent; }
        float getLineHeight() const override { return lineHeight; }

    private:
        const FontFaces &faces;
        const float size;       ///< pixels of one em
        const float ascent;     ///< whole pixels
        const float lineHeight; ///< whole pixels
    };

    /// Reads the file. A missing or broken one is logged with its path and the reason, and its status is LOST_ASSET.
    virtual void startLoad();

    /// Whether the font can be measured and drawn.
    bool isReady() const { return getStatus().succeeded(); }
    /// What lays out text in this font at a size; the font must be ready.
    Shaper getShaper(int pixelSize) const { return Shaper(faces, pixelSize); }
    /// The picture of a glyph, drawn now if it has not been yet; the font must be ready.
    ///
    /// Borrowed until the next call. A glyph that cannot be drawn is as one without ink.
    /// @param glyph      number that the shaper gave
    /// @param pixelSize  1 to LARGEST_PIXEL_SIZE
    /// @param shift      place within the pixel column, 0 to SHIFTS - 1
    const Glyph &getGlyph(unsigned glyph, int pixelSize, int shift);

    /// Brings new glyphs to the device; to be called before what uses them is drawn.
    void updateTexture();
    /// Counts the times that texture coordinates went stale: whoever keeps some asks for them anew.
    unsigned getAtlasGeneration() const { return atlas.getGeneration(); }
    const GlyphAtlas &getAtlas() const { return atlas; }
    /// The texture with the glyphs: white, the glyphs in its alpha.
    Handle<TextureAsset> getTexture() const;

    /// Path of the file, as "..\assets\fonts\Inconsolata.otf".
    String getFileName() const { return fileName; }
    void setFileName(const String &val) { fileName = val; }

private:
    Glyph draw(unsigned glyph, int pixelSize, int shift);

    String fileName;
    FontFaces faces;
    GlyphAtlas atlas;
    std::unordered_map<std::uint64_t, Glyph> glyphs; ///< by glyph, size and shift
    Handle<DynamicTextureAsset> texture;
    FontFace::Picture picture; ///< kept for the next glyph
};
