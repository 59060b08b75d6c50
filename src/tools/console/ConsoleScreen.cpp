#include "tools/console/ConsoleScreen.h"

#include "tools/console/Characters.h"

#include "assets/cache/AssetUploader.h"
#include "assets/cache/DynamicTextureAsset.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/drawn/QuadComponent2.h"
#include "rendering/drawn/TextComponent2.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{
// Shares of an em in the console's font.
constexpr float LETTER_WIDTH = 0.5f, ROW_HEIGHT = 1.09f, MARGIN = 0.6f, LINE_HEIGHT = 1.7f;
/// The part of the window's width that a row of the log takes; the rest is for what is watched.
constexpr float LOG_WIDTH = 0.62f;
/// The most of the window's height that log and line take.
constexpr float MOST_HEIGHT = 0.72f;
/// The line hides more of the world than the log does.
constexpr int LINE_ALPHA = 40;
constexpr std::uint8_t LOG_GREY = 8, LINE_GREY = 26;
constexpr float WATCH_ROWS = 0.9f; // size of what is watched, as a share of the log's

const String children[] = {SCS("EntQuad"),  SCS("EntQuad2"), SCS("EntText"), SCS("EntText2"), SCS("Errors"),
                           SCS("Warnings"), SCS("Prompt"),   SCS("Ways"),    SCS("WaysQuad")};

template <class Component>
Component *partOf(Object &console, const char *name, const String &key)
{
    return componentOf<Component>(console.getChild(SCS(name)), key);
}

TextComponent2 *textOf(Object &console, const char *name)
{
    return partOf<TextComponent2>(console, name, ComponentKeys::graphics2);
}

void setText(Object &console, const char *name, const String &text)
{
    if (TextComponent2 *const drawn = textOf(console, name))
        drawn->setText(text);
}

void place(Object &console, const char *name, float x, float y, float depth)
{
    if (auto *const transform = partOf<TransformComponent>(console, name, ComponentKeys::transform))
        transform->setPosition(Vec4(x, y, depth, 1.f));
}

void placeText(Object &console, const char *name, float x, float y, float size)
{
    place(console, name, x, y, 0.f);
    if (TextComponent2 *const drawn = textOf(console, name))
        drawn->setFontSize(size);
}

/// What a row takes of a text that stands; `guess` before it does.
float rowHeightOf(Object &console, const char *name, float guess)
{
    TextComponent2 *const drawn = textOf(console, name);
    const int rows = drawn ? drawn->getLineCount() : 0;
    return rows > 0 ? drawn->getHeight() / static_cast<float>(rows) : guess;
}

/// Lays a quad between two heights over the whole width.
void placeQuad(Object &console, const char *name, float width, float bottom, float top, float depth)
{
    place(console, name, 0.f, bottom, depth);
    if (auto *const transform = partOf<TransformComponent>(console, name, ComponentKeys::transform))
        transform->setScale(Vec4(width, top - bottom, 1.f, 0.f));
}

/// One pixel of a grey and an alpha, as a texture of the console's own.
void paintOne(Object &console, Handle<DynamicTextureAsset> &paint, std::uint8_t grey, int alpha)
{
    if (!paint.isValid())
    {
        paint = construct<DynamicTextureAsset>(defaultAllocationCategory);
        paint.lookup()->setName(SCS("paint"));
        paint.lookup()->setParent(console.getHandle());
    }
    const auto coverage = static_cast<std::uint8_t>(std::min(alpha, 255));
    paint.lookup()->setCoverage({1, 1, &coverage, {0, 0, 1, 1}, grey});
}

void wear(Object &console, const char *name, const Handle<DynamicTextureAsset> &paint)
{
    if (auto *const quad = partOf<QuadComponent2>(console, name, ComponentKeys::graphics2))
        quad->setTexture(paint);
}
} // namespace

void ConsoleScreen::show(Object &console, bool shown)
{
    if (visible == shown)
        return;
    visible = shown;
    for (const String &name : children)
        if (auto *const drawn = componentOf<GraphicsComponent2>(console.getChild(name), ComponentKeys::graphics2))
            drawn->setVisible(shown);
}

void ConsoleScreen::layOut(Object &console, int rows, int charsPerRow, int alpha)
{
    const ScreenMetrics &window = getScreenMetrics();
    Measures wanted;
    wanted.width = static_cast<float>(window.width) / window.normalizationFactor;
    wanted.height = static_cast<float>(window.height) / window.normalizationFactor;
    wanted.letter = std::min(wanted.width * LOG_WIDTH / (static_cast<float>(charsPerRow) * LETTER_WIDTH),
                             wanted.height * MOST_HEIGHT / (static_cast<float>(rows) * ROW_HEIGHT + LINE_HEIGHT));
    wanted.row = rowHeightOf(console, "EntText", wanted.letter * ROW_HEIGHT);
    wanted.rows = rows;
    wanted.charsPerRow = charsPerRow;
    wanted.alpha = alpha;
    if (measures == wanted)
        return;
    const bool repainted = measures.alpha != alpha || !logPaint.isValid();
    measures = wanted;
    if (repainted)
        paint(console);
    placeTexts(console);
    placeWays(console);
}

/// Height at which the log ends and the line begins.
float ConsoleScreen::lineTop() const
{
    return measures.height - measures.row * static_cast<float>(measures.rows) - measures.letter * MARGIN;
}

int ConsoleScreen::charsAcross() const
{
    const float room = measures.width - measures.letter * MARGIN * 2.f;
    return measures.letter > 0.f ? std::max(8, static_cast<int>(room / (measures.letter * LETTER_WIDTH))) : 80;
}

void ConsoleScreen::placeTexts(Object &console) const
{
    const float left = measures.letter * MARGIN;
    const float lineBottom = lineTop() - measures.letter * LINE_HEIGHT;
    const float lineMiddle = (lineTop() + lineBottom) * 0.5f;
    placeQuad(console, "EntQuad", measures.width, lineTop(), measures.height, 4.f);
    placeQuad(console, "EntQuad2", measures.width, lineBottom, lineTop(), 3.f);
    // The line feed behind the last row makes one more.
    for (const char *name : {"EntText", "Errors", "Warnings"})
        placeText(console, name, left, lineTop() + measures.letter * MARGIN * 0.5f - measures.row, measures.letter);
    placeText(console, "Prompt", left, lineMiddle, measures.letter);
    placeText(console, "EntText2", left + measures.letter * LETTER_WIDTH * 2.f, lineMiddle, measures.letter);
    placeText(console, "Watch", measures.width - left, measures.height - left, measures.letter * WATCH_ROWS);
}

void ConsoleScreen::placeWays(Object &console) const
{
    const float top = lineTop() - measures.letter * LINE_HEIGHT;
    const float height = wayRows ? measures.row * static_cast<float>(wayRows) + measures.letter * MARGIN : 0.f;
    placeQuad(console, "WaysQuad", measures.width, top - height, top, 2.f);
    placeText(console, "Ways", measures.letter * MARGIN, top - measures.letter * MARGIN * 0.5f, measures.letter);
}

void ConsoleScreen::paint(Object &console)
{
    paintOne(console, logPaint, LOG_GREY, measures.alpha);
    paintOne(console, linePaint, LINE_GREY, measures.alpha + LINE_ALPHA);
    wear(console, "EntQuad", logPaint);
    wear(console, "EntQuad2", linePaint);
    wear(console, "WaysQuad", linePaint);
}

void ConsoleScreen::setLog(Object &console, const Content &content)
{
    setText(console, "EntText", content.log);
    setText(console, "Errors", content.errors);
    setText(console, "Warnings", content.warnings);
}

void ConsoleScreen::setLine(Object &console, const String &line, std::size_t caret, bool cursorShown)
{
    std::string text = line.toCString();
    const std::size_t cursorAt = charactersOf(std::string_view(text).substr(0, caret));
    // Within the line a blank holds the cursor's place while it is not shown, so that nothing jumps.
    if (cursorShown)
        text.insert(caret, 1, '|');
    else if (caret < text.size())
        text.insert(caret, 1, ' ');
    const auto room = static_cast<std::size_t>(charsAcross() - 2);
    const std::size_t length = charactersOf(text);
    const std::size_t first = std::min(length > room ? length - room : 0, cursorAt);
    text.erase(0, bytesOf(text, first));
    text.resize(bytesOf(text, room));
    setText(console, "EntText2", String::copyFrom(text));
}

void ConsoleScreen::setWatch(Object &console, const String &text)
{
    setText(console, "Watch", text);
}

void ConsoleScreen::setWays(Object &console, const String &text)
{
    const int rowsNow = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    setText(console, "Ways", text);
    if (rowsNow == wayRows)
        return;
    wayRows = rowsNow;
    placeWays(console);
}
