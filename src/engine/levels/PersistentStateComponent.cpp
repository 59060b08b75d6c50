#include "engine/levels/PersistentStateComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "object/tree/PathBelow.h"
#include "object/reflection/PropertyDesc.h"
#include "object/python/PythonCalls.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <string>

namespace
{
/// The place of a path in a level, whatever level runs.
String placeIn(Object &anyOfLevel, const String &path)
{
    const auto level = anyOfLevel.getAncestorOfType<Coordinator>().lookup();
    return (level ? level->getLevelName() : String()) + SCS("/") + path;
}

String nameOf(const MapRootEntity &map)
{
    return map.getMapName().empty() ? map.getName() : map.getMapName();
}

/// Where a reload of its map finds an object, or why it would not.
struct PlaceInLevel
{
    String path; ///< begins with the map's name
    const char *cause = nullptr;
};

bool hasSlash(const String &name)
{
    return std::find(name.begin(), name.end(), '/') != name.end();
}

bool isMadeUp(const String &name)
{
    static const String prefix = SCS("unnamed__");
    return name.startsWith(prefix);
}

PlaceInLevel findPlace(Object &object)
{
    const auto map = object.getAncestorOfType<MapRootEntity>().lookup();
    if (!map)
        return {String(), "it lies below no map"};
    const std::vector<String> names = namesBelow(map.ptr, object);
    if (std::any_of(names.begin(), names.end(), isMadeUp))
        return {String(), "it, or something above it, was given no name"};
    if (std::any_of(names.begin(), names.end(), hasSlash))
        return {String(), "its name, or one above it, has a \"/\" in it, which parts the names of a path"};
    const String below = pathBelow(map.ptr, object);
    if (map->getDescendantByPath(below) != object.getHandle())
        return {String(), "another object stands at its path; give it a name of its own"};
    return {nameOf(*map) + SCS("/") + below};
}

/// Whether a path that leads to nothing yet may be one from a map downwards: two names at least, and no other start.
bool beginsWithMap(const String &path)
{
    const std::string steps = "/" + std::string(path.toCString()) + "/";
    for (const char *wrong : {"//", "/./", "/../", ":/"})
        if (steps.find(wrong) != std::string::npos)
            return false;
    return hasSlash(path);
}

bool isSetter(const Object &object, const String &funcName)
{
    const ReflectorPtr function = object.getType()->getMember(funcName);
    const IReflectedThing::PropertyList properties = object.getType()->getPropertyList();
    return function && std::any_of(properties.begin(), properties.end(),
                                   [&](const PropertyDesc &property) { return property.getSetter() == function; });
}

/// Whether a value is a handle of an object that dies with its level.
bool diesWithLevel(const Variant &value)
{
    if (value.getType() != Variant::VT_HANDLE)
        return false;
    const auto object = value.as<Handle<Object>>().lookup();
    return object && object->getAncestorOfType<Coordinator>().isValid();
}

void warnOfHandles(const String &place, const String &funcName, const SavedArguments &args)
{
    for (std::size_t i = 0; i < args.getArgCount(); ++i)
        if (diesWithLevel(args[i]))
            KV_LOGF(Logger_::I_WARNING,
                    "%s of %s is kept with an object that dies with this level, so a later one cannot repeat it. Keep "
                    "a call that takes the object's name instead.",
                    funcName.toCString(), place.toCString());
}

SavedArguments withObject(const Handle<Object> &obj, const SavedArguments &args)
{
    SavedArguments all(args.getArgCount() + 1);
    all[0].set(obj);
    for (std::size_t i = 0; i < args.getArgCount(); ++i)
        all[i + 1] = args[i];
    return all;
}

/// Calls an object's function by name; the cause of a failure, or an empty text.
String callByName(const Handle<Object> &obj, const PersistentStateComponent::StateFunction &function)
{
    const auto object = obj.lookup();
    const ReflectorPtr member = object ? object->getType()->getMember(function.name) : nullptr;
    if (!member)
        return SCS("the object has no such function");
    if (function.args.getArgCount() >= maxCallArgs)
        return SCS("it has too many arguments");
    SavedArguments all = withObject(obj, function.args);
    ErrorCode outcome;
    if (!pythonGuarded([&] { outcome = member->do_call(all).code; }))
        return getCurrentPythonTraceback();
    return outcome.succeeded() ? String() : outcome.toString();
}
} // namespace

Handle<PersistentStateComponent> PersistentStateComponent::ofLevel(Handle<Coordinator> level)
{
    const auto coordinator = level.lookup();
    const auto entity = coordinator
                            ? handle_cast<Entity>(coordinator->getChild(WellKnownPaths::persistentState)).lookup()
                            : Handle<Entity>::Result();
    return entity ? handle_cast<PersistentStateComponent>(entity->getComponent(ComponentKeys::persist))
                  : Handle<PersistentStateComponent>();
}

Handle<PersistentStateComponent> PersistentStateComponent::makeFor(Handle<Coordinator> level)
{
    const auto entity = construct<Entity>(defaultAllocationCategory).lookup();
    entity->setName(WellKnownPaths::persistentState);
    entity->setParent(level);
    return handle_cast<PersistentStateComponent>(entity->addComponent(ComponentKeys::persist, staticType));
}

void PersistentStateComponent::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    if (const auto level = getAncestorOfType<Coordinator>().lookup())
        setManager(level->getManager(ComponentKeys::persist));
}

void PersistentStateComponent::addFunction(Handle<Object> obj, String funcName, const SavedArguments &args)
{
    const auto object = obj.lookup();
    if (!object)
        return;
    const PlaceInLevel place = findPlace(*object);
    if (place.cause)
        KV_LOGF(Logger_::I_WARNING, "%s of %s is not kept for the next load of its map: %s.", funcName.toCString(),
                pathBelow(nullptr, *object).toCString(), place.cause);
    else
        record(placeIn(*object, place.path), isSetter(*object, funcName), funcName, args);
}

void PersistentStateComponent::addFunctionNoArgs(String path, String funcName)
{
    addAtPath(path, funcName, SavedArguments());
}

void PersistentStateComponent::addFunctionOneArg(String path, String funcName, const Variant &arg)
{
    addAtPath(path, funcName, SavedArguments::of(arg));
}

void PersistentStateComponent::addAtPath(const String &path, const String &funcName, const SavedArguments &args)
{
    const Handle<Object> object = getObjectByPath(path, getAncestorOfType<Coordinator>());
    if (object.isValid())
        addFunction(object, funcName, args);
    else if (beginsWithMap(path))
        record(placeIn(*this, path), false, funcName, args);
    else
        KV_LOGF(Logger_::I_WARNING,
                "%s of %s is not kept: nothing stands there, and what is to come is named by its map and the names "
                "below it, as \"hall/shelf/lamp\".",
                funcName.toCString(), path.toCString());
}

/// Appends a call; one that sets a property takes the place of its earlier record.
void PersistentStateComponent::record(const String &place, bool sets, const String &funcName,
                                      const SavedArguments &args)
{
    if (!repeating.empty())
        return;
    warnOfHandles(place, funcName, args);
    StateFunctionList &functions = functionMap[place];
    if (sets)
        std::erase_if(functions, [&](const StateFunction &earlier) { return earlier.name == funcName; });
    functions.push_back({funcName, args});
}

void PersistentStateComponent::persistState(Handle<MapRootEntity> map)
{
    const auto root = map.lookup();
    if (!root)
        return;
    const String start = placeIn(*root, nameOf(*root)) + SCS("/");
    if (std::find(repeating.begin(), repeating.end(), start) != repeating.end())
        return KV_LOGF(Logger_::I_WARNING, "A call that is repeated for %s loads that map again, which is left as new.",
                       start.toCString());
    repeating.push_back(start);
    const StateFunctionsMap kept = functionMap; // a call may have everything forgotten
    for (auto entry = kept.lower_bound(start); entry != kept.end() && entry->first.startsWith(start); ++entry)
    {
        const String path = entry->first.slice(static_cast<ssize_t>(start.size()));
        repeatCalls(entry->first, root->getDescendantByPath(path), entry->second);
    }
    repeating.pop_back();
}

void PersistentStateComponent::repeatCalls(const String &place, const Handle<Object> &obj,
                                           const StateFunctionList &functions)
{
    for (const StateFunction &function : functions)
    {
        const String cause = obj.isValid() ? callByName(obj, function) : SCS("there is no such object any more");
        if (!cause.empty())
            KV_LOGF(Logger_::I_WARNING, "%s of %s is not repeated: %s", function.name.toCString(), place.toCString(),
                    cause.toCString());
    }
}

void PersistentStateComponent::forgetEverything()
{
    functionMap.clear();
    notes.clear();
}

int PersistentStateComponent::getCallCount() const
{
    std::size_t count = 0;
    for (const auto &entry : functionMap)
        count += entry.second.size();
    return static_cast<int>(count);
}

PersistentStateComponent::Call PersistentStateComponent::findCall(int number) const
{
    int left = number;
    for (const auto &[place, functions] : functionMap)
    {
        const int count = static_cast<int>(functions.size());
        if (left >= 0 && left < count)
            return {&place, &functions[static_cast<std::size_t>(left)]};
        left -= count;
    }
    return {};
}

String PersistentStateComponent::getCallPlace(int number) const
{
    const Call call = findCall(number);
    return call.place ? *call.place : String();
}

String PersistentStateComponent::getCallFunction(int number) const
{
    const Call call = findCall(number);
    return call.function ? call.function->name : String();
}

int PersistentStateComponent::getCallArgumentCount(int number) const
{
    const Call call = findCall(number);
    return call.function ? static_cast<int>(call.function->args.getArgCount()) : 0;
}

Variant PersistentStateComponent::getCallArgument(int number, int which) const
{
    return which >= 0 && which < getCallArgumentCount(number)
               ? findCall(number).function->args[static_cast<std::size_t>(which)]
               : Variant();
}

void PersistentStateComponent::restoreNoArgs(const String &place, const String &funcName)
{
    functionMap[place].push_back({funcName, SavedArguments()});
}

void PersistentStateComponent::restoreOneArg(const String &place, const String &funcName, const Variant &arg)
{
    functionMap[place].push_back({funcName, SavedArguments::of(arg)});
}

void PersistentStateComponent::restoreTwoArgs(const String &place, const String &funcName, const Variant &argOne,
                                              const Variant &argTwo)
{
    functionMap[place].push_back({funcName, SavedArguments::of(argOne, argTwo)});
}

String PersistentStateComponent::getNote(const String &name) const
{
    const auto note = notes.find(name);
    return note == notes.end() ? String() : note->second;
}
