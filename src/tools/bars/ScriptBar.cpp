#include "tools/bars/ScriptBar.h"

#include "tools/bars/BarValues.h"
#include "tools/bars/TweakSystem.h"
#include "tools/bars/ValueGraph.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/PathBelow.h"
#include "port/tweakbar/TweakBar.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

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

    Variant call(const ReflectorPtr &function, SavedArguments &arguments, const char *role);
    Variant call(const ReflectorPtr &function, const char *role)
    {
        SavedArguments none(0);
        return call(function, none, role);
    }
    void fail(const String &why, const char *role);
    template <class T>
    void ask(const T &argument);
    void press();

    template <class T>
    static void getValue(void *value, void *self);
    template <class T>
    static void setValue(const void *value, void *self);
    static void getText(void *value, void *self);
    static void openLink(void *self);
    static unsigned countRows(void *self);
    static void fillRow(unsigned index, TwListRow *row, void *self);
    static void clickRow(unsigned index, int onMark, void *self);
    static void fillPicture(unsigned index, TwPicture *picture, void *self);
    static void clickPicture(unsigned index, void *self);
    static void fillGraph(TwGraph *graph, void *self);
    static void fillCurve(TwGraph *graph, void *self);
};

/// A call that waits for the next frame.
struct ScriptBar::Action
{
    std::shared_ptr<Control> control;
    Variant argument; ///< none for a button
};

namespace
{
constexpr std::size_t MOST_CURVE_VALUES = 2000; ///< more than there are pixels across

Object *objectOf(const Variant &value)
{
    return value.getType() == Variant::VT_HANDLE ? value.as<Handle<Object>>().lookup().ptr : nullptr;
}

/// Up to and without the first line break of a report.
String firstLine(const String &text)
{
    const char *begin = text.toCString();
    const char *end = std::strchr(begin, '\n');
    return end ? String::copyFrom(std::string(begin, end)) : text;
}

template <std::size_t N>
void copyText(const char *text, char (&out)[N])
{
    const std::size_t length = std::min(std::strlen(text), N - 1);
    std::memcpy(out, text, length);
    out[length] = 0;
}
} // namespace

/// A failure is told when it comes up, and shows until a call of the same control has succeeded.
void ScriptBar::Control::fail(const String &why, const char *role)
{
    if (why == failure)
        return;
    failure = why;
    if (!why.empty())
        KV_LOGF(Logger_::I_ERROR, "%s: %s of '%s' failed: %s", pathBelow(nullptr, *bar).toCString(), role, name.c_str(),
                why.toCString());
    if (isPlaced && !isRemoved)
        bar->setText(name.c_str(), "error", firstLine(why));
}

Variant ScriptBar::Control::call(const ReflectorPtr &function, SavedArguments &arguments, const char *role)
{
    // The function may take the control away, or set another in its place.
    const std::shared_ptr<Control> keep = shared_from_this();
    const ReflectorPtr called = function;
    if (!called || isRemoved)
        return Variant();
    String raised;
    const ScriptCall announced(*called, raised);
    const ErrorReturn<Variant> result = called->do_call(arguments);
    if (bar)
        fail(result.succeeded() ? String() : raised.empty() ? result.code.toString() : raised, role);
    return result.value;
}

template <class T>
void ScriptBar::Control::ask(const T &argument)
{
    if (act && bar)
        bar->actions.push_back({shared_from_this(), Variant(argument)});
}

void ScriptBar::Control::press()
{
    if (act && bar)
        bar->actions.push_back({shared_from_this(), Variant()});
}

template <class T>
void ScriptBar::Control::getValue(void *value, void *self)
{
    auto &control = *static_cast<Control *>(self);
    const ErrorReturn<T> typed = control.call(control.get, "get").get<T>();
    if (typed.succeeded())
        BarValues::toBar(typed.value, value);
}

template <class T>
void ScriptBar::Control::setValue(const void *value, void *self)
{
    static_cast<Control *>(self)->ask(BarValues::fromBar<T>(value));
}

void ScriptBar::Control::getText(void *value, void *self)
{
    auto &control = *static_cast<Control *>(self);
    BarValues::toBar(BarValues::describe(control.call(control.get, "get")), value);
}

void ScriptBar::Control::openLink(void *self)
{
    auto &control = *static_cast<Control *>(self);
    if (Object *target = objectOf(control.call(control.get, "get")))
        getSystemDeref<TweakSystem>().addBar(target->getHandle());
}

unsigned ScriptBar::Control::countRows(void *self)
{
    auto &control = *static_cast<Control *>(self);
    const std::int64_t count = control.call(control.get, "count").get<std::int64_t>().value;
    constexpr std::int64_t most = 10000000; // beyond that a pixel of the list is no row any more
    return static_cast<unsigned>(std::clamp<std::int64_t>(count, 0, most));
}

void ScriptBar::Control::fillRow(unsigned index, TwListRow *row, void *self)
{
    auto &control = *static_cast<Control *>(self);
    SavedArguments arguments = SavedArguments::of(static_cast<std::int64_t>(index));
    const String text = BarValues::describe(control.call(control.row, arguments, "row"));
    const char *begin = text.toCString();
    while (*begin == '\t')
        ++begin;
    row->depth = static_cast<int>(begin - text.toCString());
    row->marked = begin[0] == '*' && begin[1] == ' ';
    copyText(begin + (row->marked ? 2 : 0), row->text);
}

void ScriptBar::Control::clickRow(unsigned index, int, void *self)
{
    static_cast<Control *>(self)->ask(static_cast<std::int64_t>(index));
}

void ScriptBar::Control::fillPicture(unsigned index, TwPicture *picture, void *self)
{
    auto &control = *static_cast<Control *>(self);
    SavedArguments arguments = SavedArguments::of(static_cast<std::int64_t>(index));
    const String text = BarValues::describe(control.call(control.row, arguments, "picture"));
    const char *tab = std::strchr(text.toCString(), '\t');
    copyText(tab ? std::string(text.toCString(), tab).c_str() : text.toCString(), picture->file);
    const char *slash = std::strrchr(picture->file, '/');
    copyText(tab ? tab + 1 : slash ? slash + 1 : picture->file, picture->label);
}

void ScriptBar::Control::clickPicture(unsigned index, void *self)
{
    static_cast<Control *>(self)->ask(static_cast<std::int64_t>(index));
}

void ScriptBar::Control::fillGraph(TwGraph *graph, void *self)
{
    static_cast<Control *>(self)->graph->show(*graph);
}

void ScriptBar::Control::fillCurve(TwGraph *graph, void *self)
{
    Control &control = *static_cast<Control *>(self);
    const std::shared_ptr<Control> keep = control.shared_from_this();
    const ErrorReturn<String> text = control.call(control.get, "get").get<String>();
    if (control.isRemoved)
        return; // the numbers go with it
    std::vector<float> &curve = control.curve;
    curve.clear();
    const char *at = text.succeeded() ? text.value.toCString() : "";
    for (char *end = nullptr; curve.size() < MOST_CURVE_VALUES; at = end)
    {
        const float number = std::strtof(at, &end);
        if (end == at)
            break;
        curve.push_back(number);
    }
    if (curve.size() < 2)
        curve.assign({-1.0f, std::nanf("")});
    const auto count = static_cast<unsigned>(curve.size() - 1);
    const float cursor = std::isfinite(curve[0]) ? curve[0] : -1.0f;
    const auto under = static_cast<unsigned>(std::max(cursor, 0.0f) * static_cast<float>(count));
    *graph = {&curve[1], &curve[1], count, curve[1 + (cursor < 0.0f ? count - 1 : std::min(under, count - 1))], cursor};
}

ScriptBar::ScriptBar() = default;

ScriptBar::~ScriptBar()
{
    onMurder();
}

void ScriptBar::onMurder()
{
    if (!bar)
        return;
    for (const auto &control : controls)
    {
        control->isRemoved = true;
        control->bar = nullptr;
    }
    for (const Action &action : actions)
        action.control->bar = nullptr;
    TwDeleteBar(std::exchange(bar, nullptr));
    controls.clear();
    actions.clear();
}

void ScriptBar::open()
{
    if (bar)
        return;
    bar = TwNewBar((SCS("script ") + getName()).toCString());
    setLabel(getName());
}

void ScriptBar::setText(const char *control, const char *parameter, const String &text)
{
    if (bar)
        TwSetParam(bar, control, parameter, TW_PARAM_CSTRING, 1, text.toCString());
}

void ScriptBar::setLabel(const String &val)
{
    label = val;
    setText(nullptr, "label", label);
}

void ScriptBar::setHelp(const String &val)
{
    help = val;
    setText(nullptr, "help", help);
}

bool ScriptBar::getShown() const
{
    int visible = 0;
    return bar && TwGetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible) && visible;
}

void ScriptBar::setShown(bool val)
{
    const int visible = val;
    if (bar)
        TwSetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible);
}

void ScriptBar::setAlways(bool val)
{
    always = val;
    const int number = val;
    if (bar)
        TwSetParam(bar, nullptr, "always", TW_PARAM_INT32, 1, &number);
}

void ScriptBar::keepPlace(const int *place)
{
    hasKeptPlace = true;
    TwSetParam(bar, nullptr, "place", TW_PARAM_INT32, 4, place);
}

void ScriptBar::setPlace(int left, int top, int width, int height)
{
    if (std::exchange(hasKeptPlace, false))
        return;
    constexpr int most = 100000; // pixels; beyond that sums would overflow
    const int place[] = {std::clamp(left, -most, most), std::clamp(top, -most, most), std::clamp(width, 0, most),
                         std::clamp(height, 0, most)};
    if (bar)
        TwSetParam(bar, nullptr, "place", TW_PARAM_INT32, 4, place);
}

void ScriptBar::clear()
{
    for (const auto &control : controls)
        control->isRemoved = true;
    controls.clear();
    heading = String();
    nextBeside = false;
    if (bar)
        TwRemoveAllVars(bar);
}

void ScriptBar::remove(const String &name)
{
    Control *control = find(name);
    if (!control)
        return;
    control->isRemoved = true;
    TwRemoveVar(bar, control->name.c_str());
    std::erase_if(controls, [control](const auto &each) { return each.get() == control; });
}

ScriptBar::Control *ScriptBar::find(const String &name) const
{
    const auto named = [&name](const auto &control) { return control->name == name.toCString(); };
    const auto found = std::find_if(controls.begin(), controls.end(), named);
    return found != controls.end() ? found->get() : nullptr;
}

ScriptBar::Control *ScriptBar::add(const String &name, const String &words)
{
    if (!bar)
    {
        KV_LOGF(Logger_::I_ERROR, "ScriptBar: '%s' can stand on no bar: make bars by makeBar of TweakSystem",
                name.toCString());
        return nullptr;
    }
    remove(name);
    auto control = std::make_shared<Control>();
    control->bar = this;
    control->name = name.toCString();
    control->words = words;
    controls.push_back(control);
    return control.get();
}

void ScriptBar::finish(const String &name)
{
    Control *control = find(name);
    if (!control)
        return;
    control->isPlaced = true;
    setText(name.toCString(), "error", firstLine(control->failure));
    setText(name.toCString(), "label", control->words);
    setText(name.toCString(), "group", heading);
    const int beside = std::exchange(nextBeside, false);
    TwSetParam(bar, name.toCString(), "sameline", TW_PARAM_INT32, 1, &beside);
}

void ScriptBar::addButton(const String &name, const String &words, ReflectorPtr pressed)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->act = pressed;
    TwAddButton(
        bar, control->name.c_str(), [](void *self) { static_cast<Control *>(self)->press(); }, control);
    finish(name);
}

void ScriptBar::addText(const String &name, const String &words, ReflectorPtr get)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    TwAddVarCB(bar, control->name.c_str(), TW_TYPE_STDSTRING, nullptr, &Control::getText, control);
    finish(name);
}

void ScriptBar::addValue(const String &name, const String &words, ReflectorPtr get, ReflectorPtr set)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    control->act = set;
    addVariable(*control, false);
    finish(name);
}

void ScriptBar::addColor(const String &name, const String &words, ReflectorPtr get, ReflectorPtr set)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    control->act = set;
    addVariable(*control, true);
    finish(name);
}

void ScriptBar::addVariable(Control &control, bool isColor)
{
    const auto add = [&]<class T>(TwType type, T *)
    {
        TwAddVarCB(bar, control.name.c_str(), type, control.act ? &Control::setValue<T> : nullptr,
                   &Control::getValue<T>, &control);
    };
    // What it first gives decides, whatever it may take away or put on the bar meanwhile.
    const std::shared_ptr<Control> keep = control.shared_from_this();
    const Variant first = control.call(control.get, "get");
    if (control.isRemoved || !bar)
        return;
    if (isColor)
        return add(TW_TYPE_COLOR4F, static_cast<Vec4 *>(nullptr));
    switch (first.getType())
    {
    case Variant::VT_BOOL:
        return add(TW_TYPE_BOOLCPP, static_cast<bool *>(nullptr));
    case Variant::VT_INT64:
        return add(TW_TYPE_INT64, static_cast<std::int64_t *>(nullptr));
    case Variant::VT_FLOAT:
        return add(TW_TYPE_DOUBLE, static_cast<double *>(nullptr));
    case Variant::VT_VECTOR:
        return add(TW_TYPE_VEC4F, static_cast<Vec4 *>(nullptr));
    case Variant::VT_QUATERNION:
        return add(TW_TYPE_QUAT4F, static_cast<Quaternion *>(nullptr));
    case Variant::VT_STRING:
        return add(TW_TYPE_STDSTRING, static_cast<String *>(nullptr));
    case Variant::VT_HANDLE:
        TwAddLinkCB(bar, control.name.c_str(), &Control::getText, &Control::openLink, &control);
        return;
    default:
        TwAddVarCB(bar, control.name.c_str(), TW_TYPE_STDSTRING, nullptr, &Control::getText, &control);
    }
}

void ScriptBar::setChoices(const String &name, const String &choices)
{
    if (find(name))
        setText(name.toCString(), "choices", choices);
}

void ScriptBar::addList(const String &name, ReflectorPtr count, ReflectorPtr row, ReflectorPtr clicked)
{
    Control *control = add(name, String());
    if (!control)
        return;
    control->get = count;
    control->row = row;
    control->act = clicked;
    const TwListCallbacks list = {&Control::countRows, &Control::fillRow, &Control::clickRow};
    TwAddListCB(bar, control->name.c_str(), &list, control);
    finish(name);
}

void ScriptBar::addPictures(const String &name, ReflectorPtr count, ReflectorPtr picture, ReflectorPtr clicked)
{
    Control *control = add(name, String());
    if (!control)
        return;
    control->get = count;
    control->row = picture;
    control->act = clicked;
    const TwPictureCallbacks pictures = {&Control::countRows, &Control::fillPicture, &Control::clickPicture};
    TwAddPicturesCB(bar, control->name.c_str(), &pictures, control);
    finish(name);
}

void ScriptBar::addGraph(const String &name, const String &words, ReflectorPtr get, float seconds)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    control->graph = std::make_unique<ValueGraph>(seconds);
    TwAddGraphCB(bar, control->name.c_str(), &Control::fillGraph, control);
    finish(name);
}

void ScriptBar::addCurve(const String &name, const String &words, ReflectorPtr get)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    TwAddGraphCB(bar, control->name.c_str(), &Control::fillCurve, control);
    finish(name);
}

void ScriptBar::group(const String &newHeading)
{
    heading = newHeading;
}

void ScriptBar::sameLine()
{
    nextBeside = true;
}

void ScriptBar::setRange(const String &name, double least, double most)
{
    constexpr double largest = 1e15; // farther than any value goes, and a whole number either way
    if (!(std::fabs(least) <= largest && std::fabs(most) <= largest && least < most))
    {
        KV_LOGF(Logger_::I_ERROR,
                "ScriptBar::setRange: %g to %g is no range of '%s': give two numbers, the lesser one first", least,
                most, name.toCString());
        return;
    }
    if (!find(name))
        return;
    TwSetParam(bar, name.toCString(), "min", TW_PARAM_DOUBLE, 1, &least);
    TwSetParam(bar, name.toCString(), "max", TW_PARAM_DOUBLE, 1, &most);
}

void ScriptBar::setLabelOf(const String &name, const String &words)
{
    if (find(name))
        setText(name.toCString(), "label", words);
}

void ScriptBar::setTip(const String &name, const String &words)
{
    if (find(name))
        setText(name.toCString(), "help", words);
}

void ScriptBar::setSwitch(const String &name, const char *parameter, bool on)
{
    const int number = on;
    if (find(name))
        TwSetParam(bar, name.toCString(), parameter, TW_PARAM_INT32, 1, &number);
}

void ScriptBar::setEnabled(const String &name, bool on)
{
    setSwitch(name, "enabled", on);
}

void ScriptBar::setMarked(const String &name, bool on)
{
    setSwitch(name, "marked", on);
}

void ScriptBar::setLive(const String &name, bool on)
{
    setSwitch(name, "live", on);
}

Vec4 ScriptBar::whereIs(const String &name) const
{
    return BarValues::placeOf(find(name) || name.empty() ? bar : nullptr, name.empty() ? nullptr : name.toCString());
}

void ScriptBar::act()
{
    std::vector<Action> now;
    now.swap(actions);
    for (Action &action : now)
    {
        Control &control = *action.control;
        SavedArguments arguments =
            action.argument.getType() == Variant::VT_NONE ? SavedArguments(0) : SavedArguments::of(action.argument);
        if (control.bar)
            control.call(control.act, arguments, "action");
    }
}

void ScriptBar::measure(float elapsed, bool barsAreShown)
{
    if (!getShown() || !(barsAreShown || always))
        return;
    const std::vector<std::shared_ptr<Control>> now = controls; // a function may change what there is
    for (const auto &control : now)
    {
        if (!control->graph || control->isRemoved)
            continue;
        const ErrorReturn<double> value = control->call(control->get, "get").get<double>();
        control->graph->add(value.succeeded() ? value.value : std::nan(""), elapsed);
    }
}
