#include "tools/bars/TweakSystem.h"

#include "tools/bars/BarMemory.h"
#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/ObjectBar.h"
#include "tools/bars/ObjectBrowser.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/PythonText.h"
#include "tools/bars/ScriptBar.h"
#include "tools/bars/WatchBar.h"
#include "tools/editor/EditorPicking.h"
#include "tools/editor/EditorView.h"

#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"
#include "port/tweakbar/TweakBar.h"
#include "port/win32/Clipboard.h"
#include "rendering/device/GraphicsSystem2.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
constexpr float LETTERS = 15.0f;         ///< pixels, in windows up to a height
constexpr int WINDOW_HEIGHT = 900;       ///< pixels; in larger ones the letters grow with it
constexpr int FRAMES_TO_COME_BACK = 300; ///< a level takes some to be loaded anew
} // namespace

TweakSystem::TweakSystem() = default;
TweakSystem::~TweakSystem() = default;

void TweakSystem::systemStartup()
{
    memory = std::make_unique<BarMemory>();
    memory->setFile(keptFile);
    browser = std::make_unique<ObjectBrowser>([this](const Handle<Object> &object) { addBar(object); });
    watched = std::make_unique<WatchBar>(*memory);
    putWhereItStood(browser->getBar(), "Objects");
    putWhereItStood(watched->getBar(), "Watched");
    browser->refresh();
}

void TweakSystem::systemShutdown()
{
    notePlaces();
    memory->write();
    bars.clear();
    watched.reset();
    browser.reset();
    memory.reset();
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
    {
        bars.push_back(std::make_unique<ObjectBar>(object));
        putWhereItStood(bars.back()->getBar(), bars.back()->getPath().toCString());
    }
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
    if (const auto place = memory ? memory->placeOf(name.toCString()) : std::nullopt)
        made.lookup()->keepPlace(place->data());
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
    for (std::size_t i = 0; i < scriptBars.size(); ++i) // what is called may make bars
        if (const auto live = scriptBars[i].lookup())
            live->act();
}

void TweakSystem::refreshScriptBars(bool shown)
{
    std::erase_if(scriptBars, [](const Handle<ScriptBar> &bar) { return !bar.isValid(); });
    const auto elapsed = static_cast<float>(getSystemDeref<GameLoopSystem>().getTime().lookup()->getFrameTimeSeconds());
    for (std::size_t i = 0; i < scriptBars.size(); ++i)
        if (const auto live = scriptBars[i].lookup())
            live->measure(elapsed, shown);
    watched->refresh(elapsed);
}

void TweakSystem::setRange(Handle<Object> object, const String &property, double min, double max)
{
    if (!BarParams::isRange("TweakSystem::setRange", property, min, max))
        return;
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

Handle<Entity> TweakSystem::pick(float x, float y)
{
    const auto level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator().lookup();
    const EditorView view = level ? EditorView(*level) : EditorView();
    if (!view.isUsable() || !std::isfinite(x) || !std::isfinite(y))
        return Handle<Entity>();
    const Handle<Entity> found = EditorPicking().cast(*level, view.rayAt(x, y)).entity;
    if (found.isValid())
        addBar(found);
    return found;
}

Handle<Entity> TweakSystem::pickUnderCrosshair()
{
    const WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    return pick(static_cast<float>(window.getWidth()) * 0.5f, static_cast<float>(window.getHeight()) * 0.5f);
}

void TweakSystem::pickWithMouse()
{
    port::pickWithTweakBars();
}

Vec4 TweakSystem::whereIs(Handle<Object> object, const String &property) const
{
    const ObjectBar *known = findBar(object);
    return BarValues::placeOf(known ? known->getBar() : nullptr, property.empty() ? nullptr : property.toCString());
}

void TweakSystem::watch(Handle<Object> object, const String &property)
{
    const auto target = object.lookup();
    if (!target || !target->getType()->getProperty(property).succeeded())
        KV_LOGF(Logger_::I_ERROR, "TweakSystem::watch: there is no property '%s' of '%s'", property.toCString(),
                objectPath(object).toCString());
    else
        watched->toggle(object, property);
}

int TweakSystem::getWatchCount() const
{
    return watched ? static_cast<int>(watched->getCount()) : 0;
}

Handle<Object> TweakSystem::getWatchedObject(int index) const
{
    return watched ? watched->getObject(index) : Handle<Object>();
}

String TweakSystem::getWatchedProperty(int index) const
{
    return watched ? watched->getProperty(index) : String();
}

Handle<Object> TweakSystem::getBarObject(int index) const
{
    const bool isThere = index >= 0 && index < getBarCount();
    return isThere ? bars[static_cast<std::size_t>(index)]->getObject() : Handle<Object>();
}

void TweakSystem::copy(const String &text)
{
    port::setClipboardText(text.toCString());
}

String TweakSystem::getKeptFile() const
{
    return keptFile;
}

void TweakSystem::setKeptFile(const String &name)
{
    keptFile = name;
    if (memory)
        memory->setFile(name);
}

void TweakSystem::setFont(const String &file)
{
    font = file;
    port::setTweakBarFont(font.toCString(), LETTERS, WINDOW_HEIGHT);
}

float TweakSystem::getLetters() const
{
    const auto height = static_cast<float>(getSystemDeref<WindowSystem2>().getHeight());
    return std::round(LETTERS * std::max(height / static_cast<float>(WINDOW_HEIGHT), 1.0f));
}

void TweakSystem::tellEdited(const Handle<Object> &object, const String &property, const Variant &before,
                             const Variant &after)
{
    const ReflectorPtr called = edited;
    if (!called)
        return;
    SavedArguments arguments = SavedArguments::of(object, property, before, after);
    callOrReport(called, arguments, *this, "edited");
}

String TweakSystem::tell(Handle<Object> object, const String &what)
{
    const ReflectorPtr called = teller;
    if (!called || !object.isValid())
        return what == SCS("call") ? pythonPath(object) : String();
    String raised;
    const ScriptCall announced(*called, raised);
    const ErrorReturn<Variant> said = called->call(object, what);
    if (!raised.empty())
        KV_LOGF(Logger_::I_ERROR, "TweakSystem: the teller failed: %s", raised.toCString());
    const ErrorReturn<String> text = said.value.get<String>();
    return said.succeeded() && text.succeeded() ? text.value : String();
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
        showOrHide(shown);
    dropBars();
    bringBarsBack();
    int x = 0, y = 0;
    if (port::tweakBarsPicked(x, y))
        pick(static_cast<float>(x), static_cast<float>(y));
    refreshScriptBars(shown);
    if (shown)
        browser->refresh();
    const bool hasCursor = getSystemDeref<WindowSystem2>().getCursorMode() != WindowSystem2::CURSOR_RELATIVE;
    port::letTweakBarsHearTheMouse(hasCursor);
}

void TweakSystem::showOrHide(bool shown)
{
    wereShown = shown;
    if (shown)
        return freeCursor();
    holdCursorAgain();
    notePlaces();
    memory->write();
}

void TweakSystem::dropBars()
{
    for (const auto &bar : bars)
    {
        bar->followPath();
        const auto object = bar->getObject().lookup();
        if ((!object || object->isDying()) && bar->isOpen())
            awaited.push_back({bar->getPath(), FRAMES_TO_COME_BACK});
    }
    const auto isGone = [this](const auto &bar)
    {
        const auto object = bar->getObject().lookup();
        const bool gone = !object || object->isDying() || !bar->isOpen();
        if (gone)
            notePlace(*bar);
        return gone;
    };
    std::erase_if(bars, isGone);
}

/// A piece of a level that is built anew, and all of one that is loaded again, is another object of the same path.
void TweakSystem::bringBarsBack()
{
    const std::vector<Awaited> now = std::exchange(awaited, {});
    for (const Awaited &each : now)
    {
        String problem;
        const auto object = findObjectAt(each.path, problem).lookup();
        if (object && !object->isDying())
            addBar(object->getHandle());
        else if (each.framesLeft > 0)
            awaited.push_back({each.path, each.framesLeft - 1});
    }
}

void TweakSystem::notePlace(const ObjectBar &bar)
{
    notePlaceOf(bar.getBar(), bar.getPath().toCString());
}

void TweakSystem::notePlaceOf(TwBar *bar, const char *key)
{
    BarMemory::Place place{};
    if (memory && bar && TwGetParam(bar, nullptr, "place", TW_PARAM_INT32, 4, place.data()))
        memory->notePlace(key, place);
}

void TweakSystem::putWhereItStood(TwBar *bar, const char *key)
{
    if (const auto place = memory->placeOf(key))
        BarParams::setPlace(bar, place->data());
}

void TweakSystem::notePlaces()
{
    notePlaceOf(browser->getBar(), "Objects");
    notePlaceOf(watched->getBar(), "Watched");
    for (const auto &bar : bars)
        notePlace(*bar);
    for (const Handle<ScriptBar> &bar : scriptBars)
        if (const auto live = bar.lookup())
            notePlaceOf(live->getBar(), live->getName().toCString());
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
