// ProgressComponent: how far something has come.
#pragma once

#include "ui/widgets/WidgetComponent.h"

/// A line that fills from the left, under the component key "form".
class ProgressComponent : public WidgetComponent
{
    KV_REFLECTED(ProgressComponent)
public:
    ProgressComponent() = default;

    float getValue() const { return value; }
    /// How far it is filled, 0 to 1.
    void setValue(float val);

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void paint(WidgetPainter &painter) override;

private:
    float value = 0.f;
};
