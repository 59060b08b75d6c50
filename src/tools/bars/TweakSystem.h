// TweakSystem: bars that watch and change properties of the running game.
#pragma once

#include "engine/systems/System.h"

#include "foundation/Vector.h"

#include <memory>
#include <vector>

class BarMemory;
class Entity;
class ObjectBar;
class ObjectBrowser;
class ScriptBar;
class TwBar;
class Variant;
class WatchBar;

/// The tweak bars of the whole run: one bar an object that was picked, and the bar "Objects" to pick from.
///
/// A bar whose object dies comes up again where an object of the same path is born soon after, as in a level that is
/// loaded anew. Bars keep their places, and what is watched, between runs in a file.
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
    /// Lists, in the bar "Objects", what meets a search: parts of names and classes, "class:light", "path:villa/",
    /// "value:0.5", "mass:>2".
    void search(const String &text);
    /// Opens the bar of what is seen at a place of the window, pixels from its top left, triangle by triangle.
    /// @return the entity; invalid where nothing is seen, which opens nothing
    Handle<Entity> pick(float x, float y);
    /// Opens the bar of what is seen in the middle of the window.
    Handle<Entity> pickUnderCrosshair();
    /// Has the next click into the world open the bar of what is seen there.
    void pickWithMouse();
    /// Where the control of a property is seen on the bar of its object, as "speed" or "transform/position"; an empty name
    /// for the bar: left, top, right and lower edge in pixels; zeros for what is not seen.
    Vec4 whereIs(Handle<Object> object, const String &property) const;
    /// Begins to watch a property in the bar "Watched", with a curve where it is a number, or ends that.
    void watch(Handle<Object> object, const String &property);
    /// Number of properties that are watched.
    int getWatchCount() const;
    /// The object of one of them, from 0; invalid while there is none at its path.
    Handle<Object> getWatchedObject(int index) const;
    /// The name of one of the properties that are watched, from 0; empty for a number that is none's.
    String getWatchedProperty(int index) const;
    /// Puts a text on the clipboard, for whatever program wants it.
    void copy(const String &text);

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
    /// One of these objects, from 0, in the order in which their bars were opened; invalid for a number that is none's.
    Handle<Object> getBarObject(int index) const;
    /// Writes the window with its bars as a PNG file when they are next drawn.
    void captureScreen(const String &fileName);

    ReflectorPtr getEdited() const { return edited; }
    /// Called with object, property, value before and value after when an edit in a bar of an object is over: the mouse
    /// let go, Enter pressed. One that fails is told, and called again.
    void setEdited(ReflectorPtr val) { edited = val; }
    ReflectorPtr getTeller() const { return teller; }
    /// Tells bars where an object comes from: called with it and "call" or "place", gives a text, empty for not known.
    void setTeller(ReflectorPtr val) { teller = val; }
    String getKeptFile() const;
    /// The file in which places and watches are kept; an empty name keeps nothing.
    void setKeptFile(const String &name);
    String getFont() const { return font; }
    /// The font file of all bars; without one, or where it cannot be read, the letters are plain ones that are built in.
    void setFont(const String &file);
    /// Height of the bars' letters in the present window, pixels; what is laid out for them is measured by it.
    float getLetters() const;

    /// Tells who asked for it by `setEdited` of an edit that is over.
    void tellEdited(const Handle<Object> &object, const String &property, const Variant &before, const Variant &after);
    /// What the teller says of an object: its "call" or its "place".
    String tell(Handle<Object> object, const String &what);
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
    void dropBars();
    void bringBarsBack();
    void putWhereItStood(TwBar *bar, const char *key);
    void notePlaces();
    void notePlace(const ObjectBar &bar);
    void notePlaceOf(TwBar *bar, const char *key);
    void showOrHide(bool shown);
    void freeCursor();
    void holdCursorAgain();

    /// A bar whose object died, and which waits for another one at its path.
    struct Awaited
    {
        String path;
        int framesLeft;
    };

    std::vector<std::unique_ptr<ObjectBar>> bars;
    std::vector<Awaited> awaited;
    std::unique_ptr<BarMemory> memory;
    std::unique_ptr<WatchBar> watched; ///< from start to shutdown
    ReflectorPtr edited;
    ReflectorPtr teller;
    std::vector<Handle<ScriptBar>> scriptBars;
    std::unique_ptr<ObjectBrowser> browser; ///< from start to shutdown
    bool wereShown = false;                 ///< at the last frame step
    bool cursorWasHeld = false;             ///< before the bars came up
    String keptFile;
    String font;
};
