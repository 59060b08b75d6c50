#include "ui/widgets/ChoiceComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "object/reflection/SavedArguments.h"

#include <cmath>

namespace
{
constexpr float ARROW = 34.f;       ///< room for each arrow
constexpr float TEXT_SHARE = 0.92f; ///< size of a choice, of the text's
} // namespace

void ChoiceComponent::addChoice(const String &words)
{
    choices.push_back(words);
    setChosen(chosen);
    touch();
}

void ChoiceComponent::clearChoices()
{
    choices.clear();
    setChosen(0);
    touch();
}

void ChoiceComponent::setChosen(int val)
{
    chosen = std::max(std::min(val, getCount() - 1), 0);
    if (shownChoice.set(choices.empty() ? String() : choices[static_cast<std::size_t>(chosen)]))
        touchPaint();
}

void ChoiceComponent::change(int wanted)
{
    const int before = chosen;
    setChosen(wanted);
    if (chosen == before)
        return;
    SavedArguments arguments = SavedArguments::of(chosen);
    call(changed, arguments, "changed");
}

void ChoiceComponent::press()
{
    change(chosen + 1 < getCount() ? chosen + 1 : 0);
    ButtonComponent::press();
}

bool ChoiceComponent::turn(int direction)
{
    const int before = chosen;
    change(chosen + (direction > 0 ? 1 : -1));
    return chosen != before;
}

void ChoiceComponent::pressAt(float x, float)
{
    const WidgetRect room = valuePlace(lastUnit);
    if (x >= room.left && x < room.middleX())
        turn(-1);
    else
        press();
}

/// A triangle in lines of pixels, dim where there is nothing more to that side.
void ChoiceComponent::paintArrow(WidgetPainter &painter, const WidgetRect &room, bool right) const
{
    const bool more = right ? chosen + 1 < getCount() : chosen > 0;
    const Vec4 color = WidgetColors::withAlpha(textColor(), more ? 0.9f : 0.2f);
    const float size = std::max(std::round(9.f * painter.unit()), 3.f);
    for (float row = -size; row <= size; row += 1.f)
    {
        const float length = size - std::fabs(row);
        const float left = right ? room.middleX() - size * 0.5f : room.middleX() + size * 0.5f - length;
        painter.rect({left, room.middleY() + row, length, 1.f}, color);
    }
}

float ChoiceComponent::valueHeight(const WidgetStyle &style)
{
    const float room = (valueWidth() - 2.f * ARROW) * style.unit;
    const int pixels = textPixels(style, getTextSize() * TEXT_SHARE);
    float highest = 0.f;
    for (const String &choice : choices)
    {
        WidgetText words;
        words.set(choice);
        highest = std::max(highest, words.heightFor(*style.font, pixels, room));
    }
    return highest;
}

void ChoiceComponent::paintValue(WidgetPainter &painter, const WidgetRect &room)
{
    lastUnit = painter.unit();
    const float arrow = ARROW * lastUnit;
    paintArrow(painter, {room.left, room.top, arrow, room.height}, false);
    paintArrow(painter, {room.right() - arrow, room.top, arrow, room.height}, true);
    painter.text(shownChoice, room.inset(arrow, 0.f, arrow, 0.f),
                 textPixels(painter.getStyle(), getTextSize() * TEXT_SHARE), textColor(), TA_CENTER);
}
