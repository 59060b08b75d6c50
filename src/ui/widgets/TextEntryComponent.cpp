#include "ui/widgets/TextEntryComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "object/reflection/SavedArguments.h"

#include "foundation/Utf8.h"

#include <string>

namespace
{
// Codes of keys as `TextCapture` has them.
constexpr unsigned BACKSPACE = 8, ENTER = 13, ESCAPE = 27, FIRST_PRINTABLE = 32, LAST_PRINTABLE = 126, DELETED = 127;
} // namespace

int TextEntryComponent::countCharacters() const
{
    return static_cast<int>(std::count_if(value.begin(), value.end(), beginsCharacter));
}

void TextEntryComponent::setValue(const String &val)
{
    value = val;
    std::string kept = val.toCString();
    for (int over = countCharacters() - most; over > 0; --over)
    {
        while (!beginsCharacter(kept.back()))
            kept.pop_back();
        kept.pop_back();
    }
    value = String::copyFrom(kept);
    show();
}

void TextEntryComponent::setMost(int val)
{
    most = std::clamp(val, 1, 1000);
    setValue(String(value));
}

void TextEntryComponent::show()
{
    if (shownValue.set(typing ? value + SCS("|") : value))
        touchPaint();
}

void TextEntryComponent::press()
{
    if (typing)
        return end(true);
    before = value;
    typing = true;
    show();
    ButtonComponent::press();
}

void TextEntryComponent::leave()
{
    if (typing)
        end(true);
}

void TextEntryComponent::end(bool keep)
{
    typing = false;
    if (!keep)
        value = before;
    show();
    if (!keep || value == before)
        return;
    SavedArguments arguments = SavedArguments::of(value);
    call(entered, arguments, "entered");
}

void TextEntryComponent::type(unsigned code, bool isCharacter)
{
    if (!typing)
        return;
    if (code >= FIRST_PRINTABLE && code != DELETED && (isCharacter || code <= LAST_PRINTABLE))
        return setValue(value + String::copyFrom(utf8Of(code)));
    if (isCharacter)
        return;
    if (code == ENTER || code == ESCAPE)
        end(code == ENTER);
    else if (code == BACKSPACE)
        takeOffLast();
}

void TextEntryComponent::takeOffLast()
{
    std::string text = value.toCString();
    while (!text.empty() && !beginsCharacter(text.back()))
        text.pop_back();
    if (!text.empty())
        text.pop_back();
    setValue(String::copyFrom(text));
}

void TextEntryComponent::paintValue(WidgetPainter &painter, const WidgetRect &room)
{
    using namespace WidgetColors;
    const float unit = painter.unit(), line = std::max(1.5f * unit, 1.f);
    painter.rect({room.left, room.bottom() - 8.f * unit, room.width, line}, typing ? candle : withAlpha(brass, 0.7f));
    painter.text(shownValue, room, textPixels(painter.getStyle(), getTextSize()), textColor(), TA_LEFT);
}
