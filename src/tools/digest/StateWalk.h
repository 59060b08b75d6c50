// StateWalk: every object of the run, and the values of its fields.
#pragma once

#include "object/reflection/AutoReflector.h"
#include "object/reflection/FieldSink.h"
#include "tools/digest/StateSketch.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/// One field of all objects of a class.
struct StateField
{
    const DoxyElement *record = nullptr;
    std::uint64_t hash = 0; ///< of its qualified name
};

/// Walks over all objects of the systems and the level that are state, parents before children, and reads their fields.
///
/// An object is told by its path, so that a build which makes other objects before it finds the same: names count, and
/// for what nobody named its class. Objects of one path are told apart by nothing; their values are. Takes memory while
/// there are more objects, or other classes, than in any walk before.
class StateWalk : private FieldSink
{
public:
    /// Meets all objects there are at this moment.
    void meet();
    /// Sums up the fields of the objects that were met.
    void addTo(StateSketch &sketch);
    /// A line a field of the objects that were met, in the order of the walk: path, field, keys, hash and value.
    std::string asText();

private:
    typedef std::vector<StateField> FieldList;

    struct Met
    {
        const Object *object;
        std::uint64_t identity; ///< hash of the path
        std::uint32_t entity;   ///< key of the entity around it, or of itself where there is none
        const FieldList *fields;
    };
    /// How deep the walk is, and what stands there.
    struct Level
    {
        std::uint64_t identity;
        std::uint32_t entity;
    };
    /// What the walk does with objects of a class.
    struct Plan
    {
        bool made = false;
        bool left = false; ///< no state
        bool isEntity = false;
        std::uint64_t hash = 0; ///< of the class's name
        FieldList fields;
    };

    std::uint64_t handleWord(machine_word number) const override;
    std::string handleText(machine_word number) const override;

    void meetBelow(Object &root);
    bool meetObject(const Object &object, std::size_t depth);
    Plan &planOf(const Object &object);
    void readField(const Met &met, const StateField &field, std::string *text);
    StateSketch::Keys keysOf(const Met &met, const StateField &field) const;

    std::vector<Met> objects;
    std::vector<Level> way;                ///< from a root down to where the walk is
    std::vector<std::uint64_t> identities; ///< by the number of the object; 0 for what was not met
    std::deque<Plan> plans;                ///< by the number of the class
};

/// The path of an object from the top of its tree, with the class in place of a name that nobody gave.
std::string statePath(const Object &object);
