#include "tools/bars/TweakSystem.h"

#include "tools/bars/ObjectBar.h"
#include "tools/bars/ObjectBrowser.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/ScriptBar.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "port/tweakbar/TweakBar.h"
#include "rendering/device/GraphicsSystem2.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Farther than any value goes, and a whole number either way.
constexpr double LARGEST_BOUND = 1e15;
} // namespace

TweakSystem::TweakSystem() = default;
TweakSystem::~TweakSystem() = default;

void TweakSystem::systemStartup()
{
    browser = std::make_unique<ObjectBrowser>([this](const Handle<Object> &object) { addBar(object); });
    browser->refresh();
}

void TweakSystem::systemShutdown()
{
    bars.clear();
    browser.reset();
}

System::DependencyList TweakSystem::systemDependencies()
{
    return {SystemSystem::staticType, GraphicsSystem2::staticType};
}

UpdaterList TweakSystem::getUpdaters()
{
    constexpr int beforeTheBarsAreDrawn = 89000000;
    // As if what was clicked were input, which comes in before the frame.
    constexpr int beforeAllElse = 10;
    return {Updater(SCS("TweakSystem::act"), bind(SCS("act")), beforeAllElse, true),
            Updater(SCS("TweakSystem::refresh"), bind(SCS("refresh")), beforeTheBarsAreDrawn, true)};
}

ObjectBar *TweakSystem::findBar(const Handle<Object> &object) const
{
    const auto of = [&object](const auto &bar) { return bar->getObject() == object; };
    const auto found = std::find_if(bars.begin(), bars.end(), of);
    return found != bars.end() ? found->get() : nullptr;
}

void TweakSystem::addBar(Handle<Object> object)
{
    const auto target = object.lookup();
    if (!target || target->isDying())
        KV_LOG(Logger_::I_ERROR, "TweakSystem::addBar: there is no such object, or it is dying");
    else if (ObjectBar *known = findBar(object))
        known->show();
    else
        bars.push_back(std::make_unique<ObjectBar>(object, [this](const Handle<Object> &linked) { addBar(linked); }));
}

void TweakSystem::removeBar(Handle<Object> object)
{
    // Not at once: an edit on this very bar may have asked for it.
    if (ObjectBar *bar = findBar(object))
        bar->hide();
}

void TweakSystem::showObject(const String &path)
{
    String problem;
    const Handle<Object> object = findObjectAt(path, problem);
    if (!object.isValid())
    {
        KV_LOGF(Logger_::I_ERROR, "TweakSystem::showObject('%s'): %s", path.toCString(), problem.toCString());
        return;
    }
    addBar(object);
    setShown(true);
}

Handle<ScriptBar> TweakSystem::makeBar(const String &name)
{
    for (const Handle<ScriptBar> &known : scriptBars)
        if (const auto bar = known.lookup(); bar && !bar->isDying() && bar->getName() == name)
            return known;
    const Handle<ScriptBar> made = construct<ScriptBar>(defaultAllocationCategory);
    made.lookup()->setName(name);
    made.lookup()->setParent(getHandle());
    made.lookup()->open();
    scriptBars.push_back(made);
    return made;
}

bool TweakSystem::getMouseOverBars() const
{
    return port::tweakBarsHaveTheMouse();
}

bool TweakSystem::getKeyboardInBars() const
{
    return port::tweakBarsHaveTheKeyboard();
}

void TweakSystem::act()
{
    const std::vector<Handle<ScriptBar>> now = scriptBars; // what is called may make bars
    for (const Handle<ScriptBar> &bar : now)
        if (const auto live = bar.lookup())
            live->act();
}

void TweakSystem::refreshScriptBars(bool shown)
{
    std::erase_if(scriptBars, [](const Handle<ScriptBar> &bar) { return !bar.isValid(); });
    const auto elapsed = static_cast<float>(getSystemDeref<GameLoopSystem>().getTime().lookup()->getFrameTimeSeconds());
    const std::vector<Handle<ScriptBar>> now = scriptBars;
    for (const Handle<ScriptBar> &bar : now)
        if (const auto live = bar.lookup())
            live->measure(elapsed, shown);
}

void TweakSystem::setRange(Handle<Object> object, const String &property, double min, double max)
{
    if (!(std::fabs(min) <= LARGEST_BOUND && std::fabs(max) <= LARGEST_BOUND && min < max))
    {
        KV_LOGF(Logger_::I_ERROR,
                "TweakSystem::setRange: %g to %g is no range of '%s': give two numbers, the lesser one first", min, max,
                property.toCString());
        return;
    }
    if (!findBar(object))
        addBar(object);
    ObjectBar *bar = findBar(object);
    if (bar && !bar->setRange(property, min, max))
        KV_LOGF(Logger_::I_ERROR, "TweakSystem::setRange: the bar of '%s' has no property '%s'",
                objectPath(object).toCString(), property.toCString());
}

void TweakSystem::search(const String &text)
{
    browser->setSearch(text.toCString());
}

bool TweakSystem::getShown() const
{
    return getSystemDeref<GraphicsSystem2>().getShowAntTweakBar();
}

void TweakSystem::setShown(bool val)
{
    getSystemDeref<GraphicsSystem2>().setShowAntTweakBar(val);
}

void TweakSystem::captureScreen(const String &fileName)
{
    port::captureTweakBars(fileName.toCString());
}

void TweakSystem::refresh()
{
    // Closing the bar that opens all others puts the bars away.
    if (!browser->isOpen())
    {
        browser->show();
        setShown(false);
    }
    const bool shown = getShown();
    if (shown != wereShown)
    {
        wereShown = shown;
        if (shown)
            freeCursor();
        else
            holdCursorAgain();
    }
    std::erase_if(bars,
                  [](const auto &bar)
                  {
                      const auto object = bar->getObject().lookup();
                      return !object || object->isDying() || !bar->isOpen();
                  });
    refreshScriptBars(shown);
    if (shown)
        browser->refresh();
    const bool hasCursor = getSystemDeref<WindowSystem2>().getCursorMode() != WindowSystem2::CURSOR_RELATIVE;
    port::letTweakBarsHearTheMouse(hasCursor);
}

void TweakSystem::freeCursor()
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    cursorWasHeld = window.getCursorMode() == WindowSystem2::CURSOR_RELATIVE;
    window.setCursorMode(WindowSystem2::CURSOR_ABSOLUTE);
}

void TweakSystem::holdCursorAgain()
{
    TwHide();
    if (cursorWasHeld)
        getSystemDeref<WindowSystem2>().setCursorMode(WindowSystem2::CURSOR_RELATIVE);
}
