#include "object/tree/Obituaries.h"

#include "object/python/ScriptPlace.h"
#include "object/tree/Object.h"
#include "object/tree/PathBelow.h"

#include <algorithm>
#include <array>
#include <vector>

namespace
{
/// Steps of a path that are told; a longer way up is cut.
constexpr int MOST_STEPS = 32;
constexpr std::uint32_t MURDERS = 512;

struct Grave
{
    machine_word number = 0; ///< 0: empty
    machine_word parent = 0;
    ReflectorPtr type;
    String name;
    std::uint32_t murder = 0;
};

struct Murder
{
    std::uint32_t number = 0; ///< 0: none
    machine_word root = 0;
    bool spared = false; ///< only what hung below the root was murdered
    std::int64_t frame = 0;
    ScriptPlace place; ///< no file: not by a script
};

/// Both rings, whose oldest entries are written over.
struct Graveyard
{
    std::vector<Grave> graves = std::vector<Grave>(Obituaries::CAPACITY);
    std::array<Murder, MURDERS> murders;
    std::uint32_t graveCount = 0;
    std::uint32_t murderCount = 0;
    std::int64_t frame = 0;

    const Grave *find(machine_word number) const
    {
        const auto found =
            std::find_if(graves.begin(), graves.end(), [number](const Grave &grave) { return grave.number == number; });
        return number && found != graves.end() ? &*found : nullptr;
    }
};

Graveyard &graveyard()
{
    static auto *instance = new Graveyard;
    return *instance;
}

/// Names from the top of the tree down to an object that is gone, or is not.
String pathOf(machine_word number)
{
    String path;
    for (int step = 0; number && step < MOST_STEPS; ++step)
    {
        const String below = path.empty() ? path : SCS("/") + path;
        if (const Object *const alive = ObjectMap_::find(number))
            return pathBelow(nullptr, *alive) + below;
        const Grave *const grave = graveyard().find(number);
        if (!grave)
            return SCS("...") + below;
        path = (grave->name.empty() ? SCS("unnamed") : grave->name) + below;
        number = grave->parent;
    }
    return path;
}

String describe(const Murder &murder, machine_word gone)
{
    const String root = murder.root == gone ? SCS("it") : pathOf(murder.root);
    const String who = murder.spared ? SCS("all below ") + root : root;
    const String place = murder.place.file.empty()
                             ? SCS("by the engine")
                             : String::format("at %s:%ld", murder.place.file.toCString(), murder.place.line);
    return String::format("gone in frame %lld, when %s was murdered %s", static_cast<long long>(murder.frame),
                          who.toCString(), place.toCString());
}
} // namespace

namespace Obituaries
{

void setFrame(std::int64_t number)
{
    graveyard().frame = number;
}

std::uint32_t noteMurder(const Object &root, bool spared)
{
    Graveyard &yard = graveyard();
    const std::uint32_t number = ++yard.murderCount;
    yard.murders[number % MURDERS] = {number, root.getHandle().getNumber(), spared, yard.frame, currentScriptPlace()};
    return number;
}

void noteCremation(const Object &object, const String &name, std::uint32_t murder)
{
    Graveyard &yard = graveyard();
    yard.graves[yard.graveCount++ % CAPACITY] = {object.getHandle().getNumber(), object.getParent().getNumber(),
                                                 object.getType(), name, murder};
}

String of(const Handle<Object> &gone)
{
    const Grave *const grave = gone.isValid() ? nullptr : graveyard().find(gone.getNumber());
    if (!grave)
        return String();
    const String what =
        String::format("It was the %s %s, ", grave->type->getName().toCString(), pathOf(grave->number).toCString());
    const Murder &murder = graveyard().murders[grave->murder % MURDERS];
    return what + (murder.number == grave->murder ? describe(murder, grave->number) : SCS("long gone"));
}

} // namespace Obituaries
