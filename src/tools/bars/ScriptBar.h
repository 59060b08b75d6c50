// ScriptBar: a bar of controls that a script puts there.
#pragma once

#include "object/tree/Object.h"

#include "foundation/Vector.h"

#include <memory>
#include <vector>

class TwBar;
class ValueGraph;
class Variant;

/// A bar whose lines are a script's: buttons, values, lists, pictures and curves, each with functions to call.
///
/// Made by `makeBar` of TweakSystem, as whose child it lasts for the run; as a level's child it ends with the level.
/// Functions that read (`get`, `row`, `picture`) are called while the bar is laid out, for what is seen only; functions
/// that act (`set`, `pressed`, `clicked`) at the beginning of the next frame. One that raises is told in the log once,
/// shows its error at the control, and is called again. A name that a control has already gives the older one up.
class ScriptBar : public Object
{
    KV_REFLECTED(ScriptBar)
public:
    ScriptBar();
    ~ScriptBar() override;

    void onMurder() override;

    String getLabel() const { return label; }
    /// The title; at first the bar's name.
    void setLabel(const String &val);
    String getHelp() const { return help; }
    /// A line below the title.
    void setHelp(const String &val);
    /// Whether it is among the bars that are shown; false once the user has closed it.
    bool getShown() const;
    void setShown(bool val);
    bool getAlways() const { return always; }
    /// Whether it is drawn even while the bars are not shown. It does not free the mouse cursor by itself.
    void setAlways(bool val);
    bool getPlain() const { return plain; }
    /// Whether it has no title and stays where it is put, as the frame of a screen does.
    void setPlain(bool val);
    /// Puts it somewhere, pixels; a left or top below 0 counts from the right or lower edge, a size of 0 is chosen.
    ///
    /// Wherever it is put, it stays inside the window. Where the user left it in the last run wins over the first call.
    void setPlace(int left, int top, int width, int height);

    /// Takes all controls away.
    void clear();
    /// Takes a control away, if there is one of this name.
    void remove(const String &name);
    /// Adds a button.
    void addButton(const String &name, const String &words, ReflectorPtr pressed);
    /// Adds a line that is read each frame; without words the text has the whole width.
    void addText(const String &name, const String &words, ReflectorPtr get);
    /// Adds a value with the control for what `get` first gives: bool, int, float, str, Vec4, Quaternion, or an object,
    /// whose bar it opens. Without `set` it can only be read.
    void addValue(const String &name, const String &words, ReflectorPtr get, ReflectorPtr set);
    /// Adds a Vec4 as a colour.
    void addColor(const String &name, const String &words, ReflectorPtr get, ReflectorPtr set);
    /// Turns an int into a choice by its texts, a line each, from 0.
    void setChoices(const String &name, const String &choices);
    /// Adds a list: `count()` rows, `row(i)` is the text of one, `clicked(i)` is called for one that was clicked.
    ///
    /// Leading tabs indent a row; one that begins with "* " is shown as chosen.
    void addList(const String &name, ReflectorPtr count, ReflectorPtr row, ReflectorPtr clicked);
    /// Adds pictures with a search: `picture(i)` is an image file, or file, tab and label.
    void addPictures(const String &name, ReflectorPtr count, ReflectorPtr picture, ReflectorPtr clicked);
    /// Adds a curve of a number over the last seconds.
    void addGraph(const String &name, const String &words, ReflectorPtr get, float seconds);
    /// Adds a curve of numbers that a script has: `get` gives them as a text with spaces between them, "nan" for a gap,
    /// behind the share of the width where a line stands, -1 for none. `held` is called with the share at which the mouse
    /// holds it, for as long as it does.
    void addCurve(const String &name, const String &words, ReflectorPtr get, ReflectorPtr held);
    /// Puts what is added from now on under a heading; an empty text ends that.
    void group(const String &heading);
    /// Puts the next control beside the last.
    void sameLine();

    /// Bounds a number, which becomes a slider; bounds that are no numbers, or in the wrong order, are logged as an error.
    void setRange(const String &name, double least, double most);
    /// Changes what stands at a control.
    void setLabelOf(const String &name, const String &words);
    /// Sets the text that shows beside the mouse on a control.
    void setTip(const String &name, const String &words);
    /// Whether a control can be used.
    void setEnabled(const String &name, bool on);
    /// Whether a button looks pressed.
    void setMarked(const String &name, bool on);
    /// Whether a text is set with each letter rather than when it is whole.
    void setLive(const String &name, bool on);

    /// Where a control is seen, or the bar for an empty name: left, top, right and lower edge in pixels of the window;
    /// zeros for what is not seen.
    Vec4 whereIs(const String &name) const;

    /// Calls what the user's edits since the last frame ask for; TweakSystem's frame step.
    void act();
    /// Measures what its curves show, if it is drawn; TweakSystem's frame step.
    void measure(float elapsed, bool barsAreShown);
    /// The bar itself, for a test to look at; null before its name is known.
    TwBar *getBar() const { return bar; }
    /// Puts it where it stood in the last run, in place of the first place that its script gives it.
    void keepPlace(const int *place);
    /// Makes the bar under the object's name; TweakSystem does, once.
    void open();

private:
    struct Control;
    struct Action;

    Control *add(const String &name, const String &words);
    void finish(const String &name);
    void setText(const char *control, const char *parameter, const String &text);
    void setSwitch(const String &name, const char *parameter, bool on);
    Control *find(const String &name) const;

    TwBar *bar = nullptr;
    std::vector<std::shared_ptr<Control>> controls;
    std::vector<Action> actions; ///< asked for since the last frame
    String label;
    String help;
    String heading;
    bool always = false;
    bool plain = false;
    bool nextBeside = false;
    bool hasKeptPlace = false;
};
