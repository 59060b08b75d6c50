// ScriptBarControl: one control of a script's bar, and the functions behind it.
#pragma once

#include "tools/bars/ScriptBar.h"

#include "object/reflection/SavedArguments.h"
#include "object/reflection/Variant.h"
#include "object/tree/ReflectorPtr.h"

#include <memory>
#include <string>
#include <vector>

struct TwGraph;
struct TwListRow;
struct TwPicture;

/// What stands behind one control; outlives it while one of its functions is under way.
struct ScriptBar::Control : std::enable_shared_from_this<ScriptBar::Control>
{
    ScriptBar *bar = nullptr; ///< null once the bar is gone
    std::string name;
    String words;
    ReflectorPtr get; ///< also `count` of a list
    ReflectorPtr row; ///< also `picture`
    ReflectorPtr act; ///< `set`, `pressed` or `clicked`
    std::unique_ptr<ValueGraph> graph;
    std::vector<float> curve; ///< the line's place, then the numbers
    String failure;
    bool isPlaced = false; ///< it stands on the bar
    bool isRemoved = false;

    /// Calls one of its functions; a value of nothing where that fails, which is told once.
    Variant call(const ReflectorPtr &function, SavedArguments &arguments, const char *role);
    Variant call(const ReflectorPtr &function, const char *role);
    /// Puts it on the bar as a value with the control for what `get` first gives.
    void addVariable(bool isColor);
    /// Has `act` be called at the beginning of the next frame.
    void press();
    /// What stands at the control of its last failure; empty for none.
    String shownFailure() const;

    // What the bars' library calls, with the control.
    static void getText(void *value, void *self);
    static unsigned countRows(void *self);
    static void fillRow(unsigned index, TwListRow *row, void *self);
    static void clickRow(unsigned index, int onMark, void *self);
    static void fillPicture(unsigned index, TwPicture *picture, void *self);
    static void clickPicture(unsigned index, void *self);
    static void fillGraph(TwGraph *graph, void *self);
    static void fillCurve(TwGraph *graph, void *self);
    static void holdCurve(float share, void *self);

private:
    void fail(const String &why, const char *role);
    template <class T>
    void ask(const T &argument);
    template <class T>
    static void getValue(void *value, void *self);
    template <class T>
    static void setValue(const void *value, void *self);
    static void openLink(void *self);
};

/// A call that waits for the next frame.
struct ScriptBar::Action
{
    std::shared_ptr<Control> control;
    Variant argument; ///< none for a button
};
