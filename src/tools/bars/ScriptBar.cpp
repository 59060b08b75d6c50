#include "tools/bars/ScriptBar.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/ScriptBarControl.h"
#include "tools/bars/ValueGraph.h"

#include "object/reflection/SavedArguments.h"
#include "port/tweakbar/TweakBar.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
        BarParams::setText(bar, control, parameter, text);
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
    return bar && BarParams::isVisible(bar);
}

void ScriptBar::setShown(bool val)
{
    if (bar)
        BarParams::setNumber(bar, nullptr, "visible", val);
}

void ScriptBar::setAlways(bool val)
{
    always = val;
    if (bar)
        BarParams::setNumber(bar, nullptr, "always", val);
}

void ScriptBar::setPlain(bool val)
{
    plain = val;
    if (bar)
        BarParams::setNumber(bar, nullptr, "plain", val);
}

void ScriptBar::keepPlace(const int *place)
{
    hasKeptPlace = true;
    BarParams::setPlace(bar, place);
}

void ScriptBar::setPlace(int left, int top, int width, int height)
{
    if (std::exchange(hasKeptPlace, false))
        return;
    constexpr int most = 100000; // pixels; beyond that sums would overflow
    const int place[] = {std::clamp(left, -most, most), std::clamp(top, -most, most), std::clamp(width, 0, most),
                         std::clamp(height, 0, most)};
    if (bar)
        BarParams::setPlace(bar, place);
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
    setText(name.toCString(), "error", control->shownFailure());
    setText(name.toCString(), "label", control->words);
    setText(name.toCString(), "group", heading);
    BarParams::setNumber(bar, name.toCString(), "sameline", std::exchange(nextBeside, false));
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
    control->addVariable(false);
    finish(name);
}

void ScriptBar::addColor(const String &name, const String &words, ReflectorPtr get, ReflectorPtr set)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    control->act = set;
    control->addVariable(true);
    finish(name);
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

void ScriptBar::addCurve(const String &name, const String &words, ReflectorPtr get, ReflectorPtr held)
{
    Control *control = add(name, words);
    if (!control)
        return;
    control->get = get;
    control->act = held;
    TwAddGraphCB(bar, control->name.c_str(), &Control::fillCurve, control);
    if (held)
        TwSetGraphHeldCB(bar, control->name.c_str(), &Control::holdCurve);
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
    if (BarParams::isRange("ScriptBar::setRange", name, least, most) && find(name))
        BarParams::setRange(bar, name.toCString(), least, most);
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
    if (find(name))
        BarParams::setNumber(bar, name.toCString(), parameter, on);
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
    for (std::size_t i = 0; i < controls.size(); ++i) // a function may change what there is
    {
        const std::shared_ptr<Control> control = controls[i];
        if (!control->graph)
            continue;
        const ErrorReturn<double> value = control->call(control->get, "get").get<double>();
        control->graph->add(value.succeeded() ? value.value : std::nan(""), elapsed);
    }
}
