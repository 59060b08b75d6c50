// LabelComponent: a text that nobody presses.
#pragma once

#include "ui/widgets/WidgetComponent.h"
#include "ui/widgets/WidgetText.h"

/// A text in as many lines as it needs in its width, under the component key "form".
class LabelComponent : public WidgetComponent
{
    KV_REFLECTED(LabelComponent)
public:
    LabelComponent() = default;

    String getText() const { return text.get(); }
    /// What is shown, in UTF-8; a line feed begins a new line.
    void setText(const String &val);
    float getTextSize() const { return textSize; }
    /// Em of the font.
    void setTextSize(float val);
    Vec4 getColor() const { return color; }
    /// Colour as it arrives on the screen, 0 to 1, alpha in w.
    void setColor(const Vec4 &val);
    TextAlignment getAlignment() const { return alignment; }
    /// Where lines stand between its sides.
    void setAlignment(TextAlignment val);

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void paint(WidgetPainter &painter) override;

private:
    WidgetText text;
    float textSize = 30.f;
    Vec4 color = WidgetColors::paper;
    TextAlignment alignment = TA_LEFT;
};
