// PersistentStateComponent: what has become of a game's objects, for when their maps are loaded again.
#pragma once

#include "engine/entities/AbstractComponent.h"
#include "engine/levels/MapRootEntity.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/KVString.h"

#include <map>
#include <vector>

class Coordinator;

/// Keeps calls of objects and repeats them when the objects' map is loaded again, under the component key "persist".
///
/// Stands at "PersistentState/persist" below the level in charge; the entity is handed on from level to level, so that
/// it remembers all maps of a run. An object is known by its level, its map and the names below the map, so that two
/// loads of one map in a level share what is kept. Record what an object has become, as `setOpen(true)` or `murder`,
/// rather than what was done to it: a setter of a property takes the place of its earlier record, while any other
/// function is repeated as often as it was recorded. Arguments that are handles do not outlive their level.
class PersistentStateComponent : public AbstractComponent
{
    KV_REFLECTED(PersistentStateComponent)
public:
    /// A call without its object.
    struct StateFunction
    {
        String name;
        SavedArguments args;
    };
    typedef std::vector<StateFunction> StateFunctionList;
    /// By "level/map/names below the map"; an object's calls in the order of their records.
    typedef std::map<String, StateFunctionList> StateFunctionsMap;

    PersistentStateComponent() = default;

    /// What a level keeps; invalid where it keeps nothing.
    static Handle<PersistentStateComponent> ofLevel(Handle<Coordinator> level);
    /// Makes a level keep what becomes of its objects; its entity is new, and nothing is known yet.
    static Handle<PersistentStateComponent> makeFor(Handle<Coordinator> level);

    /// Enters the care of the manager of the level that it has come to.
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// Records a call of an object.
    ///
    /// One that no reloaded map could find is refused with a warning: it lies below no map, has no name of its own, or
    /// another object stands at its path. A handle among the arguments whose object dies with its level is warned of.
    void addFunction(Handle<Object> obj, String funcName, const SavedArguments &args);
    /// Records a call for what stands at a path, or will stand there once its map is loaded.
    ///
    /// A path that leads to nothing yet begins with a map's name, "hall/shelf/lamp"; any other is refused with a
    /// warning, and its calls cannot be told to set properties.
    void addFunctionNoArgs(String path, String funcName);
    /// Records a call with one argument for what stands at a path; see the form without.
    void addFunctionOneArg(String path, String funcName, const Variant &arg);
    /// Repeats the calls of a map's objects: objects in the order of their paths, an object's calls in that of their
    /// records.
    ///
    /// A level does so once the map is built, and before its load completes. An object that is not there and a call
    /// that fails are logged as warnings, and the rest goes on. What the calls record in turn is known already and left
    /// out. A call may load another map, which is served too; one that loads its own map again is warned of.
    void persistState(Handle<MapRootEntity> map);
    /// Forgets all maps and notes, as a new game does.
    void forgetEverything();

    /// Count of the calls that are kept, of all maps.
    ///
    /// They are told one by one for whoever writes them down: in the order of their objects' places, an object's in that
    /// of their records. A number that is none gives an empty text, or no argument.
    int getCallCount() const;
    /// Place of the object of a call, "level/map/names below the map".
    String getCallPlace(int number) const;
    /// Name of the function of a call.
    String getCallFunction(int number) const;
    /// Count of the arguments of a call.
    int getCallArgumentCount(int number) const;
    /// An argument of a call, counted from 0.
    Variant getCallArgument(int number, int which) const;

    /// Adds a call as `getCallPlace` and the others have told it, behind those of its object that are kept.
    void restoreNoArgs(const String &place, const String &funcName);
    /// As `restoreNoArgs`, of a call with one argument.
    void restoreOneArg(const String &place, const String &funcName, const Variant &arg);
    /// As `restoreNoArgs`, of a call with two arguments.
    void restoreTwoArgs(const String &place, const String &funcName, const Variant &argOne, const Variant &argTwo);

    /// A text that is kept under a name and goes from level to level with all this; empty where there is none.
    String getNote(const String &name) const;
    void setNote(const String &name, const String &text) { notes[name] = text; }

private:
    void addAtPath(const String &path, const String &funcName, const SavedArguments &args);
    void record(const String &place, bool sets, const String &funcName, const SavedArguments &args);
    void repeatCalls(const String &place, const Handle<Object> &obj, const StateFunctionList &functions);
    struct Call
    {
        const String *place = nullptr;
        const StateFunction *function = nullptr; ///< null for none
    };
    Call findCall(int number) const;

    StateFunctionsMap functionMap;
    std::map<String, String> notes;
    std::vector<String> repeating; ///< "level/map/" of the maps whose calls are being repeated, the outermost first
};
