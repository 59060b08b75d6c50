#include "ui/widgets/LabelComponent.h"

#include "ui/widgets/WidgetPainter.h"

void LabelComponent::setText(const String &val)
{
    if (text.set(val))
        touch();
}

void LabelComponent::setTextSize(float val)
{
    if (take(textSize, val, 1.f, 400.f))
        touch();
}

void LabelComponent::setColor(const Vec4 &val)
{
    if (take(color, val, 0.f, 1.f))
        touchPaint();
}

void LabelComponent::setAlignment(TextAlignment val)
{
    alignment = val;
    touchPaint();
}

float LabelComponent::measureWidth(const WidgetStyle &style)
{
    return style.font ? text.naturalWidth(*style.font, textPixels(style, textSize)) : 0.f;
}

float LabelComponent::measureHeight(const WidgetStyle &style, float width)
{
    return style.font ? text.heightFor(*style.font, textPixels(style, textSize), width) : 0.f;
}

void LabelComponent::paint(WidgetPainter &painter)
{
    painter.text(text, getPlace(), textPixels(painter.getStyle(), textSize), color, alignment);
}
