#include "ui/widgets/FormComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include <cmath>
#include <numeric>

namespace
{
constexpr float SCROLL_LEAST = 160.f;       ///< height that one who scrolls keeps
constexpr float BAR = 6.f, BAR_ROOM = 22.f; ///< of what shows how far it is scrolled
constexpr float LINE = 1.5f;

float sum(const std::vector<float> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.f);
}
} // namespace

void FormComponent::setKind(FormKind val)
{
    kind = val;
    touch();
}

void FormComponent::setLook(FormLook val)
{
    look = val;
    touchPaint();
}

void FormComponent::setColumns(int val)
{
    columns = std::clamp(val, 1, 64);
    touch();
}

void FormComponent::setGap(float val)
{
    if (take(gap, val, 0.f, MOST))
        touch();
}

void FormComponent::setPadding(const Vec4 &val)
{
    if (take(padding, val, 0.f, MOST))
        touch();
}

void FormComponent::setPage(int val)
{
    if (page == val)
        return;
    page = val;
    scroll = 0.f;
    touch();
}

const std::vector<WidgetComponent *> &FormComponent::widgets()
{
    found.clear();
    const auto entity = getParent().lookup();
    if (!entity)
        return found;
    int number = 0;
    for (auto child = entity->children_begin(); child != entity->children_end(); ++child)
        if (WidgetComponent *const widget = widgetOf(*child))
        {
            const bool away = kind == FK_PAGES && page >= 0 && number != page;
            ++number;
            if (widget->getShown() && !away)
                found.push_back(widget);
        }
    return found;
}

int FormComponent::getWidgetCount()
{
    const auto entity = getParent().lookup();
    return entity ? static_cast<int>(std::count_if(entity->children_begin(), entity->children_end(),
                                                   [](const Handle<Object> &child) { return widgetOf(child); }))
                  : 0;
}

float FormComponent::gaps(const WidgetStyle &style, std::size_t count) const
{
    return count > 1 ? gap * style.unit * static_cast<float>(count - 1) : 0.f;
}

float FormComponent::measureWidth(const WidgetStyle &style)
{
    float widest = 0.f, total = 0.f;
    const std::vector<WidgetComponent *> &all = widgets();
    for (WidgetComponent *widget : all)
    {
        const float width = widget->widthWanted(style);
        widest = std::max(widest, width);
        total += width;
    }
    if (kind == FK_ROW)
        return total + gaps(style, all.size()) + paddingX(style);
    if (kind == FK_GRID)
        widest = widest * static_cast<float>(columns) + gaps(style, static_cast<std::size_t>(columns));
    return widest + paddingX(style) + (kind == FK_SCROLL ? BAR_ROOM * style.unit : 0.f);
}

float FormComponent::measureHeight(const WidgetStyle &style, float width)
{
    const float room = std::max(width - paddingX(style) - (kind == FK_SCROLL ? BAR_ROOM * style.unit : 0.f), 0.f);
    const std::vector<WidgetComponent *> all = widgets();
    float total = 0.f, highest = 0.f;
    if (kind == FK_GRID)
    {
        std::vector<float> heights;
        gridHeights(style, room, heights);
        return sum(heights) + gaps(style, heights.size()) + paddingY(style);
    }
    std::vector<float> widths(all.size(), room);
    if (kind == FK_ROW)
        divideWidth(style, room, widths);
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        const float height = all[i]->heightWanted(style, all[i]->widthTaken(style, widths[i]));
        highest = std::max(highest, height);
        total += height;
    }
    const bool stacked = kind == FK_COLUMN || kind == FK_SCROLL;
    return (stacked ? total + gaps(style, all.size()) : highest) + paddingY(style);
}

float FormComponent::heightToSpare(const WidgetStyle &style, float width)
{
    if (kind == FK_SCROLL)
        return std::max(heightWanted(style, width) - SCROLL_LEAST * style.unit, 0.f);
    const float room = std::max(width - paddingX(style), 0.f);
    float spare = 0.f;
    for (WidgetComponent *widget : std::vector<WidgetComponent *>(widgets()))
    {
        const float own = widget->heightToSpare(style, room);
        spare = kind == FK_COLUMN ? spare + own : std::max(spare, own);
    }
    return spare;
}

/// Shares a width among the widgets of a row: each gets what it wants, then the rest goes to those that grow; where
/// there is too little, all give up the same part.
void FormComponent::divideWidth(const WidgetStyle &style, float width, std::vector<float> &widths)
{
    const std::vector<WidgetComponent *> all = widgets();
    widths.clear();
    float wanted = 0.f, growth = 0.f;
    for (WidgetComponent *widget : all)
    {
        widths.push_back(widget->widthWanted(style));
        wanted += widths.back();
        growth += widget->getGrowX();
    }
    const float room = std::max(width - gaps(style, all.size()), 0.f);
    if (wanted > room && wanted > 0.f)
        for (float &each : widths)
            each *= room / wanted;
    else if (growth > 0.f)
        for (std::size_t i = 0; i < all.size(); ++i)
            widths[i] += (room - wanted) * all[i]->getGrowX() / growth;
}

void FormComponent::gridHeights(const WidgetStyle &style, float width, std::vector<float> &heights)
{
    const auto count = static_cast<std::size_t>(columns);
    const float cell = (width - gaps(style, count)) / static_cast<float>(columns);
    const std::vector<WidgetComponent *> all = widgets();
    heights.assign((all.size() + count - 1) / count, 0.f);
    for (std::size_t i = 0; i < all.size(); ++i)
        heights[i / count] =
            std::max(heights[i / count], all[i]->heightWanted(style, all[i]->widthTaken(style, std::max(cell, 0.f))));
}

WidgetRect FormComponent::inner(const WidgetStyle &style) const
{
    const float u = style.unit;
    const float bar = kind == FK_SCROLL ? BAR_ROOM * u : 0.f;
    return getPlace().inset(padding.x * u, padding.y * u, padding.z * u + bar, padding.w * u);
}

void FormComponent::arrange(const WidgetStyle &style)
{
    lastUnit = style.unit;
    const WidgetRect room = inner(style);
    switch (kind)
    {
    case FK_ROW:
        return arrangeRow(style, room);
    case FK_GRID:
        return arrangeGrid(style, room);
    case FK_PAGES:
        for (WidgetComponent *widget : std::vector<WidgetComponent *>(widgets()))
            widget->layOut(style, room);
        return;
    case FK_COLUMN:
    case FK_SCROLL:
        return arrangeColumn(style, room, kind == FK_SCROLL);
    }
}

void FormComponent::arrangeColumn(const WidgetStyle &style, const WidgetRect &room, bool scrolls)
{
    const std::vector<WidgetComponent *> all = widgets();
    std::vector<float> heights;
    float growth = 0.f, spare = 0.f;
    for (WidgetComponent *widget : all)
    {
        const float width = widget->widthTaken(style, room.width);
        heights.push_back(widget->heightWanted(style, width));
        growth += widget->getGrowY();
        spare += widget->heightToSpare(style, width);
    }
    contentHeight = sum(heights) + gaps(style, all.size());
    const float free = room.height - contentHeight;
    for (std::size_t i = 0; i < all.size() && !scrolls; ++i)
        if (free > 0.f && growth > 0.f)
            heights[i] += free * all[i]->getGrowY() / growth;
        else if (free < 0.f && spare > 0.f)
            heights[i] +=
                std::max(free, -spare) * all[i]->heightToSpare(style, all[i]->widthTaken(style, room.width)) / spare;
    scroll = scrolls ? std::clamp(scroll, 0.f, std::max(-free, 0.f)) : 0.f;
    float top = room.top - std::round(scroll);
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        all[i]->layOut(style, {room.left, top, room.width, heights[i]});
        top += heights[i] + gap * style.unit;
    }
}

void FormComponent::arrangeRow(const WidgetStyle &style, const WidgetRect &room)
{
    std::vector<float> widths;
    divideWidth(style, room.width, widths);
    const std::vector<WidgetComponent *> all = widgets();
    float left = room.left;
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        all[i]->layOut(style, {left, room.top, widths[i], room.height});
        left += widths[i] + gap * style.unit;
    }
}

void FormComponent::arrangeGrid(const WidgetStyle &style, const WidgetRect &room)
{
    std::vector<float> heights;
    gridHeights(style, room.width, heights);
    const auto count = static_cast<std::size_t>(columns);
    const float step = gap * style.unit, cell = (room.width - gaps(style, count)) / static_cast<float>(columns);
    const std::vector<WidgetComponent *> all = widgets();
    float top = room.top;
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        const float left = room.left + static_cast<float>(i % count) * (cell + step);
        all[i]->layOut(style, {left, top, cell, heights[i / count]});
        if (i % count == count - 1)
            top += heights[i / count] + step;
    }
}

bool FormComponent::scrollBy(float distance)
{
    const float most = std::max(contentHeight - (getPlace().height - (padding.y + padding.w) * lastUnit), 0.f);
    if (kind != FK_SCROLL || !std::isfinite(distance))
        return false;
    const float wanted = std::clamp(scroll + distance * lastUnit, 0.f, most);
    if (wanted == scroll)
        return false;
    scroll = wanted;
    touch();
    return true;
}

void FormComponent::scrollTo(const WidgetRect &target)
{
    const float above = getPlace().top + padding.y * lastUnit - target.top;
    const float below = target.bottom() - (getPlace().bottom() - padding.w * lastUnit);
    if (above > 0.f)
        scrollBy(-above / lastUnit);
    else if (below > 0.f)
        scrollBy(std::min(below, -above) / lastUnit);
}

void FormComponent::slide(float x, float y)
{
    WidgetComponent::slide(x, y);
    for (WidgetComponent *widget : std::vector<WidgetComponent *>(widgets()))
        widget->slide(x, y);
}

void FormComponent::paint(WidgetPainter &painter)
{
    using namespace WidgetColors;
    const float line = std::max(LINE * painter.unit(), 1.f);
    if (look == FL_INK || look == FL_VEIL)
        painter.rect(getPlace(), withAlpha(ink, 0.86f));
    if (look == FL_INK)
        painter.frame(getPlace(), line, withAlpha(brass, 0.8f));
    if (look == FL_RULED)
        painter.rect({getPlace().left, getPlace().bottom() - line, getPlace().width, line}, withAlpha(brass, 0.8f));
    const WidgetRect before = painter.getClip();
    if (kind == FK_SCROLL)
        painter.narrow(getPlace());
    for (WidgetComponent *widget : std::vector<WidgetComponent *>(widgets()))
        widget->draw(painter);
    painter.setClip(before);
    if (kind == FK_SCROLL)
        paintScrollBar(painter);
}

/// A thin rail with a piece of brass as long as what is seen.
void FormComponent::paintScrollBar(WidgetPainter &painter) const
{
    using namespace WidgetColors;
    const WidgetRect place = getPlace();
    const float seen = place.height - (padding.y + padding.w) * painter.unit();
    if (contentHeight <= seen + 1.f || contentHeight <= 0.f)
        return;
    const float wide = std::max(BAR * painter.unit(), 2.f);
    const float length = place.height * seen / contentHeight, travel = place.height - length;
    const float at = travel * scroll / (contentHeight - seen);
    painter.rect({place.right() - wide, place.top, wide, place.height}, withAlpha(brass, 0.18f));
    painter.rect({place.right() - wide, place.top + at, wide, length}, withAlpha(brass, 0.9f));
}
