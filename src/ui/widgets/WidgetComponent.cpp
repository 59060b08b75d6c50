#include "ui/widgets/WidgetComponent.h"

#include "ui/widgets/IWidgetHost.h"
#include "ui/widgets/WidgetPainter.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

#include <cmath>

namespace
{
/// The part of spare room that lies before a thing.
float partBefore(WidgetAlign align)
{
    return align == WA_CENTER ? 0.5f : align == WA_END ? 1.f : 0.f;
}
} // namespace

WidgetComponent *widgetOf(const Handle<Object> &hEntity)
{
    const auto entity = handle_cast<Entity>(hEntity).lookup();
    if (!entity || entity->isDying())
        return nullptr;
    if (auto *const form = componentOf<WidgetComponent>(hEntity, ComponentKeys::form))
        return form;
    return componentOf<WidgetComponent>(hEntity, ComponentKeys::button);
}

int textPixels(const WidgetStyle &style, float size)
{
    constexpr float largest = 200.f;
    return static_cast<int>(std::lround(std::clamp(size * style.unit * style.textScale, 8.f, largest)));
}

void WidgetComponent::onMurder()
{
    touch();
    SimpleComponent::onMurder();
}

void WidgetComponent::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    SimpleComponent::onHierarchyChange(reparentedObject, newParent);
    touch();
}

bool WidgetComponent::take(float &field, float val, float least, float most)
{
    const float taken = std::isfinite(val) ? std::clamp(val, least, most) : std::clamp(0.f, least, most);
    if (field == taken)
        return false;
    field = taken;
    return true;
}

bool WidgetComponent::take(Vec4 &field, const Vec4 &val, float least, float most)
{
    bool changed = false;
    for (int part = 0; part < 4; ++part)
        changed |= take(field[part], val[part], least, most);
    return changed;
}

void WidgetComponent::tellMenu(bool places)
{
    for (auto above = getParent().lookup(); above; above = above->getParent().lookup())
    {
        const auto entity = handle_cast<Entity>(above->getHandle()).lookup();
        if (!entity)
            continue;
        const auto menu = entity->getComponent(ComponentKeys::menu).lookup();
        if (auto *const host = dynamic_cast<IWidgetHost *>(menu.ptr))
            return host->widgetChanged(places);
    }
}

void WidgetComponent::touch()
{
    tellMenu(true);
}

void WidgetComponent::touchPaint()
{
    tellMenu(false);
}

void WidgetComponent::setShown(bool val)
{
    if (shown == val)
        return;
    shown = val;
    touch();
}

void WidgetComponent::setLeastWidth(float val)
{
    if (take(leastWidth, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setLeastHeight(float val)
{
    if (take(leastHeight, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setMostWidth(float val)
{
    if (take(mostWidth, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setGrowX(float val)
{
    if (take(growX, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setGrowY(float val)
{
    if (take(growY, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setAlignX(WidgetAlign val)
{
    alignX = val;
    touch();
}

void WidgetComponent::setAlignY(WidgetAlign val)
{
    alignY = val;
    touch();
}

void WidgetComponent::setMargin(const Vec4 &val)
{
    if (take(margin, val, 0.f, MOST))
        touch();
}

void WidgetComponent::setShift(const Vec4 &val)
{
    const bool changedX = take(shift.x, val.x, -MOST, MOST), changedY = take(shift.y, val.y, -MOST, MOST);
    if (changedX || changedY)
        touchPaint();
}

void WidgetComponent::setOpacity(float val)
{
    if (take(opacity, val, 0.f, 1.f))
        touchPaint();
}

float WidgetComponent::limitWidth(const WidgetStyle &style, float width) const
{
    const float limited = mostWidth > 0.f ? std::min(width, mostWidth * style.unit) : width;
    return std::max(limited, leastWidth * style.unit);
}

float WidgetComponent::widthWanted(const WidgetStyle &style)
{
    return limitWidth(style, std::ceil(measureWidth(style))) + marginX(style);
}

float WidgetComponent::heightWanted(const WidgetStyle &style, float width)
{
    const float inner = std::max(width - marginX(style), 0.f);
    return std::max(std::ceil(measureHeight(style, inner)), leastHeight * style.unit) + marginY(style);
}

float WidgetComponent::widthTaken(const WidgetStyle &style, float given)
{
    const float most = mostWidth > 0.f ? mostWidth * style.unit + marginX(style) : given;
    const float wanted = alignX == WA_FILL ? given : widthWanted(style);
    return std::min({wanted, most, given});
}

float WidgetComponent::heightToSpare(const WidgetStyle &, float)
{
    return 0.f;
}

void WidgetComponent::layOut(const WidgetStyle &style, const WidgetRect &room)
{
    const float width = widthTaken(style, room.width);
    const float height = alignY == WA_FILL ? room.height : std::min(heightWanted(style, width), room.height);
    const WidgetRect taken{room.left + (room.width - width) * partBefore(alignX == WA_FILL ? WA_CENTER : alignX),
                           room.top + (room.height - height) * partBefore(alignY), width, height};
    place = taken.inset(margin.x * style.unit, margin.y * style.unit, margin.z * style.unit, margin.w * style.unit);
    arrange(style);
}

void WidgetComponent::slide(float x, float y)
{
    place = place.moved(x, y);
}

void WidgetComponent::draw(WidgetPainter &painter)
{
    if (!shown || opacity <= 0.f)
        return;
    const float before = painter.getOpacity();
    const Vec4 by = shift * painter.unit();
    const bool moved = by.x != 0.f || by.y != 0.f;
    painter.setOpacity(before * opacity);
    if (moved)
        slide(by.x, by.y);
    paint(painter);
    if (moved)
        slide(-by.x, -by.y);
    painter.setOpacity(before);
}
