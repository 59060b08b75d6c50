// BTLib: the trees of the player, what he carries and what the screen shows of him, and those of blob and mannequin.
//
// Their actions and conditions stand in a higher folder and are made by the names of their classes and functions.
#include "ai/trees/BTLib.h"

#include "ai/actions/Action.h"
#include "object/reflection/Reflection.h"

#include <initializer_list>

namespace
{

struct Leaf
{
    enum Kind
    {
        ACTION,    ///< of the class of a name
        CONDITION, ///< the function of a name
        SUBTREE    ///< the tree of a name
    };

    Kind kind;
    const char *name;
};

Handle<BTTask> makeLeaf(BTLib &library, const Leaf &leaf)
{
    const String name = String::fromStaticCString(leaf.name);
    if (leaf.kind == Leaf::SUBTREE)
        return library.BTCreateSubtreeLookup(name);
    const ReflectorPtr thing = Reflection().getType(name);
    if (leaf.kind == Leaf::CONDITION)
        return library.BTCreateConditionR(thing);
    const Handle<Action> action = thing ? handle_cast<Action>(thing->construct(BTAllocation)) : Handle<Action>();
    if (const auto made = action.lookup())
        made->setName(name);
    return library.BTCreateAction(action);
}

void fill(BTLib &library, const char *tree, const Handle<BTTask> &root, std::initializer_list<Leaf> leaves)
{
    for (const Leaf &leaf : leaves)
        library.BTAddChild(root, makeLeaf(library, leaf));
    library.addBehaviorTree(String::fromStaticCString(tree), root);
}

constexpr Leaf hasFlashlight = {Leaf::CONDITION, "DoesPlayerHaveFlashlight"};

} // namespace

void BTLib::buildPlayerWalk()
{
    fill(*this, "PlayerWalk", BTCreateParallelSequence(),
         {{Leaf::ACTION, "ActPlaySounds"}, {Leaf::ACTION, "ActTakeFootstep"}});
}

void BTLib::buildFlashlightTree()
{
    fill(*this, "Flashlight", BTCreateParallelSequence(),
         {{Leaf::ACTION, "ActFlashlightFlicker"},
          hasFlashlight,
          {Leaf::ACTION, "ActFlashlightOn"},
          hasFlashlight,
          {Leaf::ACTION, "ActEquipmentBob"}});
}

void BTLib::buildPlayerTree()
{
    fill(*this, "PlayerTree", BTCreateParallelSequence(),
         {{Leaf::SUBTREE, "PlayerWalk"},
          {Leaf::ACTION, "ActPlayerHeadbob"},
          {Leaf::ACTION, "ActPlayerCrouch"},
          {Leaf::ACTION, "ActPlayerLean"}});
}

void BTLib::buildHUDTree()
{
    fill(*this, "HUD", BTCreateSequence(), {{Leaf::ACTION, "ActDisplayHUD"}});
}

void BTLib::buildBlobTree()
{
    fill(*this, "BlobTree", BTCreateSequence(), {{Leaf::ACTION, "ActBlobSounds"}});
}

void BTLib::buildMannequinTree()
{
    fill(*this, "MannequinTree", BTCreateSequence(), {{Leaf::ACTION, "ActWatchPlayer"}});
}

void BTLib::buildBatteryMeterTree()
{
    fill(*this, "BatteryMeter", BTCreateParallelSequence(),
         {{Leaf::ACTION, "ActDisplayHUD"}, hasFlashlight, {Leaf::ACTION, "ActUpdateBatteryMeter"}});
}
