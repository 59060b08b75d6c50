// WidgetText: a text of a widget, wrapped and, where a word alone is too wide, shrunk to its room.
#pragma once

#include "assets/fonts/TextBlock.h"

#include "foundation/KVString.h"

class FontAsset;

/// One text with its layout, which is kept until text, font, size or room changes.
///
/// Pixels. A text is never cut: it wraps at its spaces, and where its widest word does not fit it becomes smaller, down
/// to `SMALLEST` of its size; only then a word is broken.
class WidgetText
{
public:
    static constexpr float SMALLEST = 0.6f;

    const String &get() const { return text; }
    /// Takes another text; false where it is the same.
    bool set(const String &val);

    /// Width that the text takes in as many lines as it has line feeds.
    float naturalWidth(FontAsset &font, int pixelSize);
    /// Height of the text in lines of a width.
    float heightFor(FontAsset &font, int pixelSize, float width);
    /// Lays the text out in lines of a width.
    const TextBlock &fit(FontAsset &font, int pixelSize, float width, TextAlignment alignment);
    /// The size that `fit` took.
    int getFittedSize() const { return fittedSize; }
    /// Whether a word had to be broken.
    bool isBroken() const { return broken; }

private:
    void measure(FontAsset &font, int pixelSize);

    String text;
    const FontAsset *font = nullptr; ///< measured with; compared only
    int size = 0;                    ///< measured with; 0: not yet
    float natural = 0.f;
    float widestWord = 0.f;
    TextBlock block;
    float fittedWidth = -1.f; ///< of `block`; negative: not laid out
    int fittedSize = 0;
    bool broken = false;
    TextAlignment fittedAlignment = TA_LEFT;
};
