// MenuComponent: what is wrong with a screen as it stands.
#include "ui/screens/FocusSearch.h"
#include "ui/screens/MenuComponent.h"

#include "foundation/Utf8.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace
{
constexpr float TOLERANCE = 1.5f; ///< pixels that letters may hang over

bool sticksOut(const WidgetRect &inner, const WidgetRect &outer)
{
    return inner.left < outer.left - TOLERANCE || inner.right() > outer.right() + TOLERANCE ||
           inner.top < outer.top - TOLERANCE || inner.bottom() > outer.bottom() + TOLERANCE;
}

bool isSame(const WidgetRect &a, const WidgetRect &b)
{
    return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
}

/// The beginning of a text, in whole characters.
std::string shortened(const String &text)
{
    std::string words = text.toCString();
    std::replace(words.begin(), words.end(), '\n', ' ');
    std::size_t most = 48;
    if (words.size() <= most)
        return words;
    while (!beginsCharacter(words[most]))
        --most;
    return words.substr(0, most) + "...";
}

/// A word with dots in it and no blank, as "menu.continue".
bool looksLikeKey(const String &text)
{
    const std::string words = text.toCString();
    const auto belongs = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '.'; };
    return !words.empty() && std::islower(static_cast<unsigned char>(words[0])) && words.back() != '.' &&
           words.find('.') != std::string::npos && std::all_of(words.begin(), words.end(), belongs);
}

void addLine(std::string &found, const std::string &line)
{
    found += found.empty() ? line : "\n" + line;
}

void addOf(const PaintedText &text, const WidgetRect &window, std::string &found)
{
    const std::string name = "'" + shortened(text.text) + "'";
    if (looksLikeKey(text.text))
        addLine(found, name + " is a key and no text");
    if (text.broken)
        addLine(found, name + " has a word that is broken");
    if (sticksOut(text.ink, text.box))
        addLine(found, name + " leaves its box");
    const bool scrolls = !isSame(text.clip, window);
    WidgetRect limit = text.clip;
    if (scrolls)
        limit = {limit.left, text.ink.top, limit.width, text.ink.height};
    if (sticksOut(text.ink, limit))
        addLine(found, name + (scrolls ? " is cut at its side" : " leaves the window"));
}

bool overlap(const PaintedText &a, const PaintedText &b)
{
    const bool together = isSame(a.clip, b.clip);
    const WidgetRect one = together ? a.ink : a.ink.common(a.clip), other = together ? b.ink : b.ink.common(b.clip);
    return !one.inset(TOLERANCE).common(other.inset(TOLERANCE)).isEmpty();
}
} // namespace

/// The texts as they are painted, from the first to the last; none while the screen is not seen.
std::vector<PaintedText> MenuComponent::paintedTexts()
{
    std::vector<PaintedText> texts;
    if (!visible || !bringUpToDate())
        return texts;
    WidgetPainter painter(*this, style, window);
    painter.noteTexts(&texts);
    draw(painter);
    paintIsStale = true;
    return texts;
}

String MenuComponent::findings()
{
    if (!visible)
        return String();
    const std::vector<PaintedText> texts = paintedTexts();
    std::string found;
    for (const PaintedText &text : texts)
        addOf(text, window, found);
    for (std::size_t i = 0; i < texts.size(); ++i)
        for (std::size_t j = i + 1; j < texts.size(); ++j)
            if (overlap(texts[i], texts[j]))
                addLine(found, "'" + shortened(texts[i].text) + "' overlaps '" + shortened(texts[j].text) + "'");
    addUnreachable(found);
    return String::copyFrom(found);
}

String MenuComponent::texts()
{
    std::string lines;
    for (const PaintedText &text : paintedTexts())
        addLine(lines, text.text.toCString());
    return String::copyFrom(lines);
}

/// Follows every way of the focus from the first widget on.
void MenuComponent::addUnreachable(std::string &found)
{
    const std::vector<WidgetRect> places = stopPlaces();
    std::vector<bool> reached(stops.size(), false);
    std::vector<std::size_t> open;
    const auto reach = [&](std::size_t number)
    {
        if (!reached[number])
            open.push_back(number);
        reached[number] = true;
    };
    if (!stops.empty())
        reach(0);
    while (!open.empty())
    {
        const std::size_t at = open.back();
        open.pop_back();
        const auto widget = stops[at].lookup();
        for (const int way : {1, -1})
        {
            reach(findInDirection(places, at, 0, way));
            if (widget && !widget->stepsSideways())
                reach(findInDirection(places, at, way, 0));
        }
    }
    for (std::size_t i = 0; i < stops.size(); ++i)
        if (const auto widget = reached[i] ? Handle<ButtonComponent>::Result{} : stops[i].lookup())
            addLine(found, "no way of the focus leads to '" + shortened(widget->getText()) + "'");
}
