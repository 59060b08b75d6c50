#include "tools/bars/WatchBar.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/ValueGraph.h"

#include "object/reflection/Variant.h"
#include "object/tree/Object.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
constexpr Seconds SHOWN_TIME = 10.0;
constexpr int FRAMES_BETWEEN_SEARCHES = 20;

/// "readingChair/transform.position": the end of a path says most.
String shortName(const BarMemory::Watch &what)
{
    std::size_t begin = what.path.rfind('/');
    if (begin != std::string::npos && begin > 0)
        begin = what.path.rfind('/', begin - 1);
    const std::string end = begin == std::string::npos ? what.path : what.path.substr(begin + 1);
    return String::copyFrom(end + "." + what.property);
}
} // namespace

WatchBar::WatchBar(BarMemory &memory) : memory(memory)
{
    bar = TwNewBar("Watched");
    BarParams::setSize(bar, 360, 300);
    takeFromMemory();
}

WatchBar::~WatchBar()
{
    TwDeleteBar(bar);
}

const WatchBar::Watched *WatchBar::find(int index) const
{
    const bool isThere = index >= 0 && index < static_cast<int>(watches.size());
    return isThere ? watches[static_cast<std::size_t>(index)].get() : nullptr;
}

Handle<Object> WatchBar::getObject(int index) const
{
    const Watched *const watch = find(index);
    return watch && watch->line ? watch->line->getObject() : Handle<Object>();
}

String WatchBar::getProperty(int index) const
{
    const Watched *const watch = find(index);
    return watch ? String::copyFrom(watch->what.property) : String();
}

void WatchBar::takeFromMemory()
{
    for (const BarMemory::Watch &what : memory.getWatches())
        watches.push_back(std::make_unique<Watched>(Watched{what, nullptr, nullptr}));
    show(!watches.empty());
}

void WatchBar::show(bool val)
{
    BarParams::setNumber(bar, nullptr, "visible", val);
}

void WatchBar::toggle(const Handle<Object> &object, const String &property)
{
    asked.push_back({objectPath(object).toCString(), property.toCString()});
}

void WatchBar::toggleNow(const BarMemory::Watch &what)
{
    if (std::erase_if(watches, [&what](const auto &watched) { return watched->what == what; }) == 0)
    {
        watches.push_back(std::make_unique<Watched>(Watched{what, nullptr, nullptr}));
        show(true);
    }
    isStale = true;
    std::vector<BarMemory::Watch> kept;
    for (const auto &watched : watches)
        kept.push_back(watched->what);
    memory.setWatches(std::move(kept));
}

/// Lets go of the dead and looks for what may have come; whether any line is another one now.
bool WatchBar::findObjects()
{
    bool changed = false;
    const bool looks = --framesToSearch <= 0;
    if (looks)
        framesToSearch = FRAMES_BETWEEN_SEARCHES;
    for (const auto &watched : watches)
    {
        if (watched->line && !watched->line->getObject().isValid())
        {
            changed = true;
            framesToSearch = 0;
            continue;
        }
        String problem;
        if (!watched->line && looks)
            changed |= findObjectAt(String::copyFrom(watched->what.path), problem).isValid();
    }
    return changed;
}

void WatchBar::refresh(float elapsed)
{
    for (const BarMemory::Watch &what : std::exchange(asked, {}))
        toggleNow(what);
    if (watches.empty() && !isStale)
        return;
    if (findObjects() || isStale)
        layOut();
    for (const auto &watched : watches)
    {
        if (!watched->graph)
            continue;
        const ErrorReturn<double> value =
            watched->line ? watched->line->read().value.get<double>() : ErrorReturn<double>(ErrorCode::BAD_HANDLE);
        watched->graph->add(value.succeeded() ? value.value : std::nan(""), elapsed);
    }
}

void WatchBar::layOut()
{
    isStale = false;
    TwRemoveAllVars(bar);
    TwAddVarCB(
        bar, "pinned", TW_TYPE_BOOLCPP,
        [](const void *value, void *self)
        {
            auto &watch = *static_cast<WatchBar *>(self);
            watch.isPinned = *static_cast<const bool *>(value);
            BarParams::setNumber(watch.bar, nullptr, "always", watch.isPinned);
        },
        [](void *value, void *self) { *static_cast<bool *>(value) = static_cast<WatchBar *>(self)->isPinned; }, this);
    BarParams::setText(bar, "pinned", "label", SCS("stays while playing"));
    for (std::size_t i = 0; i < watches.size(); ++i)
        addLines(*watches[i], i);
    if (watches.empty())
        show(false);
}

void WatchBar::addLines(Watched &watched, std::size_t index)
{
    const std::string name = "watch " + std::to_string(index);
    const String label = shortName(watched.what);
    String problem;
    const auto object = findObjectAt(String::copyFrom(watched.what.path), problem);
    watched.line.reset();
    if (const auto live = object.lookup())
    {
        const auto desc = live->getType()->getProperty(String::copyFrom(watched.what.property));
        if (desc.succeeded() && desc.value.getGetter())
            watched.line = std::make_unique<PropertyLine>(object, desc.value, name);
        if (watched.line && !watched.line->addTo(bar))
            watched.line.reset();
    }
    if (!watched.line)
    {
        TwAddVarCB(
            bar, name.c_str(), TW_TYPE_STDSTRING, nullptr,
            [](void *value, void *) { *static_cast<std::string *>(value) = "not there"; }, nullptr);
        BarParams::setText(bar, name.c_str(), "label", label);
        BarParams::setText(bar, name.c_str(), "help", String::copyFrom(watched.what.path));
        return;
    }
    watched.line->setLabel(label);
    if (!BarValues::isNumber(watched.line->read().value))
        return;
    if (!watched.graph)
        watched.graph = std::make_unique<ValueGraph>(SHOWN_TIME);
    const std::string curve = name + " curve";
    TwAddGraphCB(
        bar, curve.c_str(), [](TwGraph *graph, void *self) { static_cast<ValueGraph *>(self)->show(*graph); },
        watched.graph.get());
    BarParams::setText(bar, curve.c_str(), "label", String());
}
