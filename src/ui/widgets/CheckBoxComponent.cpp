#include "ui/widgets/CheckBoxComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "object/reflection/SavedArguments.h"

void CheckBoxComponent::setValue(bool val)
{
    if (value == val)
        return;
    value = val;
    touchPaint();
}

void CheckBoxComponent::press()
{
    change(!value);
    ButtonComponent::press();
}

bool CheckBoxComponent::turn(int direction)
{
    if (value == (direction > 0))
        return false;
    change(direction > 0);
    return true;
}

void CheckBoxComponent::change(bool val)
{
    setValue(val);
    SavedArguments arguments = SavedArguments::of(val);
    call(changed, arguments, "changed");
}

void CheckBoxComponent::paintValue(WidgetPainter &painter, const WidgetRect &room)
{
    const float unit = painter.unit(), side = 28.f * unit;
    const WidgetRect box{room.right() - side, room.middleY() - side * 0.5f, side, side};
    const Vec4 color = hasFocus() ? WidgetColors::candle : WidgetColors::brass;
    painter.frame(box, 2.f * unit, textColor().w < 1.f ? textColor() : color);
    if (value)
        painter.rect(box.inset(7.f * unit), textColor());
}
