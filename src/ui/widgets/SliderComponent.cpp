#include "ui/widgets/SliderComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "object/reflection/SavedArguments.h"

#include <cmath>

namespace
{
constexpr float TEXT_ROOM = 130.f, KNOB = 12.f, RAIL = 4.f;
constexpr double FREE_STEPS = 20.0; ///< from one end to the other, where no step is given
} // namespace

void SliderComponent::setLeast(double val)
{
    least = std::isfinite(val) ? val : 0.0;
    touchPaint();
}

void SliderComponent::setMost(double val)
{
    most = std::isfinite(val) ? val : 1.0;
    touchPaint();
}

void SliderComponent::setStep(double val)
{
    step = std::isfinite(val) && val > 0.0 ? val : 0.0;
}

void SliderComponent::setValue(double val)
{
    const double taken = std::isfinite(val) ? std::min(std::max(val, least), std::max(least, most)) : least;
    if (value == taken)
        return;
    value = taken;
    touchPaint();
}

void SliderComponent::setValueText(const String &val)
{
    if (valueText.set(val))
        touchPaint();
}

double SliderComponent::nearestStep(double wanted) const
{
    return step > 0.0 ? least + std::round((wanted - least) / step) * step : wanted;
}

void SliderComponent::change(double wanted)
{
    const double before = value;
    setValue(nearestStep(wanted));
    if (value == before)
        return;
    SavedArguments arguments = SavedArguments::of(value);
    call(changed, arguments, "changed");
}

bool SliderComponent::turn(int direction)
{
    const double before = value;
    const double by = step > 0.0 ? step : (most - least) / FREE_STEPS;
    change(value + by * direction);
    return value != before;
}

WidgetRect SliderComponent::rail() const
{
    const WidgetRect room = valuePlace(lastUnit);
    const float text = valueText.get().empty() ? 0.f : std::min(TEXT_ROOM * lastUnit, room.width * 0.45f);
    return {room.left, room.middleY() - RAIL * 0.5f * lastUnit, std::max(room.width - text, 1.f), RAIL * lastUnit};
}

bool SliderComponent::grabs(float x, float) const
{
    const WidgetRect along = rail();
    return x >= along.left - KNOB * lastUnit && x < along.right() + KNOB * lastUnit;
}

void SliderComponent::drag(float x, float)
{
    const WidgetRect along = rail();
    const double part = std::min(std::max((x - along.left) / along.width, 0.f), 1.f);
    change(least + part * (most - least));
}

void SliderComponent::paintValue(WidgetPainter &painter, const WidgetRect &room)
{
    using namespace WidgetColors;
    const float unit = lastUnit = painter.unit();
    const WidgetRect along = rail();
    const double range = most - least;
    const float part = range > 0.0 ? static_cast<float>((value - least) / range) : 0.f;
    const float knob = KNOB * unit, at = along.left + part * (along.width - knob);
    painter.rect(along, withAlpha(brass, 0.35f));
    painter.rect({along.left, along.top, at - along.left, along.height}, hasFocus() ? candle : brass);
    painter.rect({at, along.middleY() - knob * 1.2f, knob, knob * 2.4f}, textColor());
    const float gap = 16.f * unit;
    const WidgetRect words{along.right() + gap, room.top, std::max(room.right() - along.right() - gap, 1.f),
                           room.height};
    painter.text(valueText, words, textPixels(painter.getStyle(), getTextSize() * 0.85f), textColor(), TA_RIGHT);
}
