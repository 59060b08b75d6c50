#include "ui/widgets/ProgressComponent.h"

#include "ui/widgets/WidgetPainter.h"

void ProgressComponent::setValue(float val)
{
    if (take(value, val, 0.f, 1.f))
        touchPaint();
}

float ProgressComponent::measureWidth(const WidgetStyle &style)
{
    return 300.f * style.unit;
}

float ProgressComponent::measureHeight(const WidgetStyle &style, float)
{
    return 10.f * style.unit;
}

void ProgressComponent::paint(WidgetPainter &painter)
{
    using namespace WidgetColors;
    const WidgetRect &place = getPlace();
    painter.rect(place, withAlpha(brass, 0.25f));
    painter.rect({place.left, place.top, place.width * value, place.height}, candle);
}
