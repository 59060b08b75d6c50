// Bars: what stands on the debug bars, whoever draws it.
#pragma once

#include "port/tweakbar/TweakBar.h"

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
        LIST
    };

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
    TwListCallbacks list{};
    void *clientData = nullptr;
    std::optional<double> min;
    std::optional<double> max;
    double step = 0.0; ///< 0: after the size of the value

    std::string typed;     ///< a text while it is being typed
    bool isTyping = false; ///< the text's control has the keyboard
    TweakPlace place;      ///< of the control, as last drawn
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

    std::string name;
    std::string label; ///< the title; the name until it is set
    std::string help;
    std::vector<std::unique_ptr<port::TweakVar>> vars;
    bool visible = true;
    bool deleted = false; ///< goes when nobody draws any more
    int width = 0;        ///< pixels; 0: the backend chooses
    int height = 0;
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

    /// Calls `draw` with each bar; bars that it makes come up too, bars that it deletes go behind.
    template <class Draw>
    void drawAll(const Draw &draw)
    {
        drawing = true;
        for (std::size_t i = 0; i < bars.size(); ++i)
            if (bars[i]->visible && !bars[i]->deleted)
                draw(*bars[i]);
        drawing = false;
        dropDeleted();
    }

private:
    void dropDeleted();

    std::vector<std::unique_ptr<TwBar>> bars;
    std::vector<TweakEnum> enums;
    bool drawing = false;
};

} // namespace port
