#include "tools/digest/StateWalk.h"

#include "engine/entities/Entity.h"
#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "object/tree/Object.h"
#include "object/tree/TreeWalk.h"
#include "tools/digest/NotState.h"

#include "foundation/Random.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace
{
constexpr std::uint64_t NO_OBJECT = 0x6E6F6E65;
constexpr std::uint64_t LEFT_OUT = 0x6C656674;

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word)
{
    const auto product = static_cast<unsigned __int128>(hash ^ word) * 0xD6E8FEB86659FD93;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t hashOf(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char letter : text)
        hash = mixed(hash, static_cast<unsigned char>(letter) + 1u);
    return hash;
}

/// The name that somebody gave an object; empty where nobody did.
String nameOf(const Object &object)
{
    static const String madeUp = SCS("unnamed__");
    const String name = object.getName();
    return name.startsWith(madeUp) ? String() : name;
}

const DoxyElement &classOf(const Object &object)
{
    return static_cast<const DoxyElement &>(*object.getType());
}

std::string lineOf(const std::string &path, const char *field, const StateSketch::Keys &keys, std::uint64_t hash,
                   const std::string &value)
{
    char numbers[80];
    std::snprintf(numbers, sizeof(numbers), "\t%x\t%x\t%x\t%016llx\t", keys.value, keys.entity, keys.field,
                  static_cast<unsigned long long>(hash));
    std::string line = path + '\t' + field + numbers;
    for (const char letter : value)
        line += static_cast<unsigned char>(letter) < ' ' ? '?' : letter;
    return line + '\n';
}

/// The one state of chance that stands in no object.
constexpr const char *CHANCE_FIELD = "engineRandState";

StateSketch::Keys keysOfChance()
{
    const std::uint32_t key = StateSketch::keyOf(hashOf(CHANCE_FIELD));
    return {key, key, key};
}
} // namespace

std::string statePath(const Object &object)
{
    std::string path;
    for (const Object *step = &object; step; step = step->getParent().lookup().ptr)
    {
        const std::string given = nameOf(*step).toCString();
        const std::string name = given.empty() ? '(' + std::string(classOf(*step).getQualifiedText()) + ')' : given;
        path = path.empty() ? name : name + '/' + path;
    }
    return path;
}

void StateWalk::meet()
{
    objects.clear();
    std::fill(identities.begin(), identities.end(), 0);
    meetBelow(getSystemDeref<SystemSystem>());
    Handle<Coordinator> level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator();
    for (auto next = level.lookup(); next; next = next->getSubCoordinator().lookup())
        meetBelow(*next);
}

void StateWalk::meetBelow(Object &root)
{
    TreeWalk walk(root);
    while (const Object *const object = walk.next())
        if (!meetObject(*object, walk.getDepth()))
            walk.skipChildren();
}

bool StateWalk::meetObject(const Object &object, std::size_t depth)
{
    if (way.size() <= depth)
        way.resize(depth + 1);
    const Plan &plan = planOf(object);
    const String name = nameOf(object);
    const machine_word number = object.getHandle().getNumber();
    if (number >= identities.size())
        identities.resize(2 * number);
    const Level above = depth > 0 ? way[depth - 1] : Level{0, 0};
    Level &here = way[depth];
    here.identity = mixed(above.identity, name.empty() ? plan.hash : hash_value(name));
    here.entity = depth == 0 || plan.isEntity || above.entity == 0 ? StateSketch::keyOf(here.identity) : above.entity;
    identities[number] = plan.left ? LEFT_OUT : here.identity;
    if (!plan.left)
        objects.push_back({&object, here.identity, here.entity, &plan.fields});
    return !plan.left;
}

StateWalk::Plan &StateWalk::planOf(const Object &object)
{
    const DoxyElement &type = classOf(object);
    if (plans.size() <= type.getClassNumber())
        plans.resize(type.getClassNumber() + 1);
    Plan &plan = plans[type.getClassNumber()];
    if (plan.made)
        return plan;
    plan.made = true;
    plan.left = isNoState(type);
    plan.isEntity = type.isSubclassOf(Entity::staticType);
    plan.hash = hashOf(type.getQualifiedText());
    for (const DoxyRef &member : type.getMemberRefs())
        if (member.obj->getFieldReader() && !isNoStateField(*member.obj))
            plan.fields.push_back({member.obj, hashOf(member.obj->getQualifiedText())});
    return plan;
}

std::uint64_t StateWalk::handleWord(machine_word number) const
{
    const std::uint64_t known = number < identities.size() ? identities[number] : 0;
    return known ? known : NO_OBJECT;
}

std::string StateWalk::handleText(machine_word number) const
{
    const Object *const object = ObjectMap_::find(number);
    return object ? '<' + statePath(*object) + '>' : "<none>";
}

StateSketch::Keys StateWalk::keysOf(const Met &met, const StateField &field) const
{
    return {StateSketch::keyOf(mixed(met.identity, field.hash)), met.entity, StateSketch::keyOf(field.hash)};
}

void StateWalk::readField(const Met &met, const StateField &field, std::string *text)
{
    begin(met.identity ^ field.hash, text);
    field.record->getFieldReader()(*met.object, *this);
}

void StateWalk::addTo(StateSketch &sketch)
{
    sketch.add(keysOfChance(), engineRandState());
    for (const Met &met : objects)
    {
        for (const StateField &field : *met.fields)
        {
            readField(met, field, nullptr);
            sketch.add(keysOf(met, field), getHash());
        }
    }
}

std::string StateWalk::asText()
{
    std::string lines =
        lineOf("(chance)", CHANCE_FIELD, keysOfChance(), engineRandState(), std::to_string(engineRandState()));
    for (const Met &met : objects)
    {
        const std::string path = statePath(*met.object);
        for (const StateField &field : *met.fields)
        {
            std::string value;
            readField(met, field, &value);
            lines += lineOf(path, field.record->getQualifiedText(), keysOf(met, field), getHash(), value);
        }
    }
    return lines;
}
