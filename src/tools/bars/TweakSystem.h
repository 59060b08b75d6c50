// TweakSystem: bars that watch and change properties of the running game.
#pragma once

#include "engine/systems/System.h"

#include <memory>
#include <vector>

class ObjectBar;
class ObjectBrowser;
class ScriptBar;

/// The tweak bars of the whole run: one bar an object that was picked, and the bar "Objects" to pick from.
///
/// Shown while GraphicsSystem2's showAntTweakBar is set, which also starts this system. Meanwhile the mouse cursor is
/// free; it is held again afterwards if it was before. Bars of objects that died go with the next frame.
class TweakSystem : public System
{
    KV_REFLECTED(TweakSystem)
public:
    TweakSystem();
    ~TweakSystem() override;

    /// Opens a bar for an object, or the one that it has; a handle that does not resolve is logged as an error.
    void addBar(Handle<Object> object);
    /// Closes the bar of an object, if it has one; it goes with the next frame step.
    void removeBar(Handle<Object> object);
    /// Opens a bar for the object at a path, as "c:/villa/lamp" or "s:/InputSystem", and shows the bars.
    ///
    /// A path that leads nowhere is logged as an error that names the step.
    void showObject(const String &path);
    /// Bounds a number on an object's bar, which becomes a slider; opens the bar if need be.
    ///
    /// Bounds that are no numbers, or in the wrong order, are logged as an error and change nothing.
    void setRange(Handle<Object> object, const String &property, double min, double max);
    /// Lists, in the bar "Objects", what has this text in its name or class.
    void search(const String &text);

    /// The bar of this name whose controls a script adds, made now if there is none; it lasts for the run.
    ///
    /// One that belongs to a level is given to it by `setParent`, and `murder` takes a bar away.
    Handle<ScriptBar> makeBar(const String &name);
    /// Whether the mouse is on a bar, so that what it does is none of the game's business.
    bool getMouseOverBars() const;
    /// Whether a text on a bar is being typed.
    bool getKeyboardInBars() const;

    /// Whether the bars are shown: GraphicsSystem2's showAntTweakBar.
    bool getShown() const;
    void setShown(bool val);
    /// Number of objects that have a bar.
    int getBarCount() const { return static_cast<int>(bars.size()); }
    /// Writes the window with its bars as a PNG file when they are next drawn.
    void captureScreen(const String &fileName);

    /// Calls what scripts' bars were asked for since the last frame. Frame step.
    void act();
    /// Drops bars that were closed or whose object died, and frees or holds the cursor. Frame step.
    void refresh();

    /// The bar of an object; null if it has none.
    ObjectBar *findBar(const Handle<Object> &object) const;
    /// The bar "Objects".
    ObjectBrowser &getBrowser() { return *browser; }

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    void refreshScriptBars(bool shown);
    void freeCursor();
    void holdCursorAgain();

    std::vector<std::unique_ptr<ObjectBar>> bars;
    std::vector<Handle<ScriptBar>> scriptBars;
    std::unique_ptr<ObjectBrowser> browser; ///< from start to shutdown
    bool wereShown = false;                 ///< at the last frame step
    bool cursorWasHeld = false;             ///< before the bars came up
};
