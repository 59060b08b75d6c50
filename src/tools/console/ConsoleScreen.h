// ConsoleScreen: what the console looks like.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/KVString.h"

#include <optional>

class DynamicTextureAsset;
class Object;

/// Places and fills the children of a console's entity by which it is drawn.
///
/// The log takes the upper part of the window in so many rows of so many characters, which are as large as fits; the
/// line stands below it, the ways to go on with it below that, and what is watched in the upper right corner. Children
/// are "EntQuad" and "EntText" of the log, "EntQuad2" and "EntText2" of the line, and "Errors", "Warnings", "Prompt",
/// "Watch", "Ways" and "WaysQuad". A child that is missing is not drawn. Borrows the entity for each call.
class ConsoleScreen
{
public:
    /// What is to be seen.
    struct Content
    {
        String log;
        String errors;   ///< rows of `log` that are errors
        String warnings; ///< rows of `log` that are warnings
    };

    /// Shows all children, or hides all but what is watched.
    void show(Object &console, bool shown);
    /// Fits the children to the window.
    void layOut(Object &console, int rows, int charsPerRow, int alpha);
    /// Shows what the log has.
    static void setLog(Object &console, const Content &content);
    /// Shows the line with its cursor, or where it is too long the part around it.
    /// @param caret  bytes of the line before the cursor
    void setLine(Object &console, const String &line, std::size_t caret, bool cursorShown);
    static void setWatch(Object &console, const String &text);
    /// Shows the ways to go on; an empty text hides their place.
    void setWays(Object &console, const String &text);
    /// Characters that a row of the line and of the ways to go on has room for.
    int charsAcross() const;

private:
    struct Measures
    {
        float letter = 0.f; ///< em, normalised window units
        float row = 0.f;    ///< height, normalised window units
        float width = 0.f;  ///< of the window, normalised window units
        float height = 0.f; ///< of the window, normalised window units
        int rows = 0;
        int charsPerRow = 0;
        int alpha = 0;

        bool operator==(const Measures &) const = default;
    };

    float lineTop() const;
    void placeTexts(Object &console) const;
    void placeWays(Object &console) const;
    void paint(Object &console);

    Measures measures;
    int wayRows = 0;
    std::optional<bool> visible; ///< as the children were told last
    Handle<DynamicTextureAsset> logPaint;
    Handle<DynamicTextureAsset> linePaint;
};
