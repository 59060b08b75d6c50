#include "ui/widgets/WidgetText.h"

#include "assets/fonts/FontAsset.h"

#include <algorithm>
#include <cmath>
#include <string>

bool WidgetText::set(const String &val)
{
    if (text == val)
        return false;
    text = val;
    size = 0;
    return true;
}

void WidgetText::measure(FontAsset &with, int pixelSize)
{
    if (font == &with && size == pixelSize)
        return;
    font = &with;
    size = pixelSize;
    fittedWidth = -1.f;
    const FontAsset::Shaper shaper = with.getShaper(pixelSize);
    block.layOut(text, shaper, TextBlockParams());
    natural = std::ceil(block.getWidth());
    std::string words = text.toCString();
    std::replace(words.begin(), words.end(), ' ', '\n');
    block.layOut(String::copyFrom(words), shaper, TextBlockParams());
    widestWord = std::ceil(block.getWidth());
}

float WidgetText::naturalWidth(FontAsset &with, int pixelSize)
{
    if (text.empty())
        return 0.f;
    measure(with, pixelSize);
    return natural;
}

float WidgetText::heightFor(FontAsset &with, int pixelSize, float width)
{
    return text.empty() ? 0.f : fit(with, pixelSize, width, fittedAlignment).getHeight();
}

const TextBlock &WidgetText::fit(FontAsset &with, int pixelSize, float width, TextAlignment alignment)
{
    measure(with, pixelSize);
    width = std::max(std::floor(width), 1.f);
    if (fittedWidth == width && fittedAlignment == alignment)
        return block;
    fittedWidth = width;
    fittedAlignment = alignment;
    const auto wanted = static_cast<float>(pixelSize);
    const float share = widestWord > width ? std::max(width / widestWord, SMALLEST) : 1.f;
    fittedSize = std::max(static_cast<int>(wanted * share), 1);
    broken = widestWord * SMALLEST > width;
    block.layOut(text, with.getShaper(fittedSize), TextBlockParams{width, alignment});
    return block;
}
