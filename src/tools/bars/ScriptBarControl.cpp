#include "tools/bars/ScriptBarControl.h"

#include "tools/bars/BarValues.h"
#include "tools/bars/TweakSystem.h"
#include "tools/bars/ValueGraph.h"

#include "object/python/ScriptCall.h"
#include "object/tree/PathBelow.h"
#include "port/tweakbar/TweakBar.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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
        bar->setText(name.c_str(), "error", shownFailure());
}

String ScriptBar::Control::shownFailure() const
{
    return firstLine(failure);
}

Variant ScriptBar::Control::call(const ReflectorPtr &function, const char *role)
{
    SavedArguments none(0);
    return call(function, none, role);
}

Variant ScriptBar::Control::call(const ReflectorPtr &function, SavedArguments &arguments, const char *role)
{
    // The function may take the control away, or set another in its place.
    const std::shared_ptr<Control> keep = shared_from_this();
    const ReflectorPtr called = function; // NOLINT(performance-unnecessary-copy-initialization)
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

void ScriptBar::Control::holdCurve(float share, void *self)
{
    static_cast<Control *>(self)->ask(share);
}

void ScriptBar::Control::addVariable(bool isColor)
{
    const auto add = [&]<class T>(TwType type, T *)
    { TwAddVarCB(bar->bar, name.c_str(), type, act ? &Control::setValue<T> : nullptr, &Control::getValue<T>, this); };
    // What it first gives decides, whatever it may take away or put on the bar meanwhile.
    const std::shared_ptr<Control> keep = shared_from_this();
    const Variant first = call(get, "get");
    if (isRemoved || !bar)
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
        TwAddLinkCB(bar->bar, name.c_str(), &Control::getText, &Control::openLink, this);
        return;
    default:
        TwAddVarCB(bar->bar, name.c_str(), TW_TYPE_STDSTRING, nullptr, &Control::getText, this);
    }
}
