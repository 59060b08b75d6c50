// Bars: what stands on the debug bars, whoever draws it.
#pragma once

#include "port/tweakbar/TweakBar.h"

#include <array>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace port
{

/// A rectangle of the window, pixels.
struct TweakPlace
{
    int left = 0, top = 0, right = 0, bottom = 0;
};

/// One line of a bar.
struct TweakVar
{
    enum Kind
    {
        VALUE,
        LINK,
        BUTTON,
        LIST,
        PICTURES,
        GRAPH
    };

    /// Whether it takes the room that other lines leave.
    bool isStretched() const { return (kind == LIST || kind == PICTURES) && rows == 0; }

    std::string name;
    std::string label; ///< shown; the name until it is set
    std::string help;
    std::string group;
    std::string error;
    Kind kind = VALUE;
    TwType type = TW_TYPE_STDSTRING;
    TwGetVarCallback get = nullptr;
    TwSetVarCallback set = nullptr; ///< null: read only
    TwButtonCallback pressed = nullptr;
    TwButtonCallback edited = nullptr; ///< may be null
    TwListCallbacks list{};
    TwPictureCallbacks pictures{};
    TwGraphCallback graph = nullptr;
    TwGraphHeldCallback graphHeld = nullptr; ///< may be null
    void *clientData = nullptr;
    TwMenuCallback menuChosen = nullptr;
    std::vector<std::string> menu;    ///< texts of the lines that a right click shows
    std::vector<std::string> choices; ///< texts of a whole number from 0; empty: it is a number
    std::optional<double> min;
    std::optional<double> max;
    double step = 0.0; ///< 0: after the size of the value
    bool enabled = true;
    bool marked = false;   ///< a button that looks pressed
    bool sameLine = false; ///< stands beside the one before
    bool closed = false;   ///< the heading of its group is closed at first
    int rows = 0;          ///< lines of a list; 0: the room that is left
    bool live = false;     ///< a text is set with each letter

    std::string typed;             ///< a text while it is being typed; what is searched for among pictures
    bool isTyping = false;         ///< the text's control has the keyboard
    bool isEdited = false;         ///< set since its control was last at rest
    std::array<float, 3> angles{}; ///< of a rotation while it is being edited, degrees about x, y, z
    bool removed = false;          ///< its callbacks are no more; goes when nobody draws it
    TweakPlace place;              ///< of the control, as last drawn
    float height = 0.0f;           ///< of the whole line, as last drawn
};

/// An enum's values by their texts.
struct TweakEnum
{
    std::string name;
    std::vector<std::pair<std::int64_t, std::string>> values;
};

} // namespace port

class TwBar
{
public:
    port::TweakVar *find(const char *varName);
    /// Takes a line away, or with null all of them; kept aside until nobody draws.
    bool remove(const char *varName);

    std::string name;
    std::string label; ///< the title; the name until it is set
    std::string help;
    std::vector<std::unique_ptr<port::TweakVar>> vars;
    bool visible = true;
    bool always = false;  ///< drawn even where only such bars are
    bool front = false;   ///< comes before the others when it is next drawn
    bool plain = false;   ///< has no title, and the user cannot move it
    bool deleted = false; ///< goes when nobody draws any more
    int width = 0;        ///< pixels; 0: the backend chooses
    int height = 0;
    std::optional<std::array<int, 4>> wanted; ///< left, top, width, height, until it has been put there
    port::TweakPlace place;                   ///< as last drawn
    std::vector<std::unique_ptr<port::TweakVar>> removed;
    unsigned version = 0; ///< counts what was taken away
};

namespace port
{

/// All bars and enums. Made at first use, never destroyed.
class Bars
{
public:
    static Bars &get();

    TwBar *add(const char *name);
    void remove(TwBar *bar);
    TwType defineEnum(const char *name, const TwEnumVal *values, unsigned count);
    /// The enum behind a type; null for the plain ones.
    const TweakEnum *findEnum(TwType type) const;

    /// Chooses between all bars and those that are always shown; whether there is any.
    bool show(bool all);
    /// Calls `draw` with each shown bar; bars that it makes come up too, bars that it deletes go behind.
    template <class Draw>
    void drawAll(const Draw &draw)
    {
        drawing = true;
        for (std::size_t i = 0; i < bars.size(); ++i)
            if (isShown(*bars[i]))
                draw(*bars[i]);
        drawing = false;
        dropDeleted();
    }

    /// Lets go of what was deleted, unless it is being drawn.
    void dropDeleted();

private:
    bool isShown(const TwBar &bar) const { return bar.visible && !bar.deleted && (showsAll || bar.always); }

    std::vector<std::unique_ptr<TwBar>> bars;
    std::deque<TweakEnum> enums; ///< stay where they are: a control may be laid out while others come
    bool drawing = false;
    bool showsAll = true;
};

} // namespace port
