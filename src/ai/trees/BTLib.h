// BTLib: owns the master copies of the behaviour trees.
#pragma once

#include "ai/nodes/BTDecorator.h"

#include "engine/systems/System.h"

#include <unordered_map>
#include <vector>

class Action;

/// Library of behaviour trees by name.
///
/// Filled when it starts, by native code and by the scripts of `BehaviorLib`; a script may add trees at any time. Owns
/// the masters, which are never ticked: whoever asks for a tree gets a copy. Nodes are made by its factories, which
/// assert and give an invalid handle where that fails.
class BTLib : public System
{
    KV_REFLECTED(BTLib)
public:
    using BTCont = std::unordered_map<BTType, Handle<BTTask>>;
    using BTContIt = BTCont::iterator;

    BTLib() = default;

    /// A leaf that asks a native function.
    Handle<BTTask> BTCreateCondition(BTConditionFn func);
    /// A leaf that asks a reflected function or a script's callable.
    Handle<BTTask> BTCreateConditionR(ReflectorPtr rPtr);
    /// A leaf with an action, which it owns.
    Handle<BTTask> BTCreateAction(Handle<Action> hAction);
    /// A leaf that calls a native function.
    Handle<BTTask> BTCreateAction(BTActionFn func);
    /// A leaf that calls a reflected function or a script's callable.
    Handle<BTTask> BTCreateActionR(ReflectorPtr rPtr);
    /// A leaf that stands for a tree of this name.
    Handle<BTTask> BTCreateSubtreeLookup(BTType behavior);
    Handle<BTTask> BTCreateSelector();
    Handle<BTTask> BTCreateSequence();
    Handle<BTTask> BTCreateRandomSelector();
    Handle<BTTask> BTCreateRandomSequence();
    Handle<BTTask> BTCreateParallelSequence();
    /// A decorator; none for DT_Interrupter.
    Handle<BTTask> BTCreateDecorator(BTDecorator::DecoratorType type);
    /// Adds a node to another and gives what that one's `addChild` gives.
    Handle<BTTask> BTAddChild(Handle<BTTask> parent, Handle<BTTask> child);

    /// Takes a tree under a name; a name that has a tree keeps it.
    ///
    /// A root that does not exist is an error that tells the name.
    void addBehaviorTree(BTType behavior, Handle<BTTask> root);
    /// A copy of the tree of this name, which nobody owns yet; BT_UNKNOWN_BEHAVIOR where there is none, BT_FAILURE,
    /// with an error, for a tree that cannot be copied.
    ErrorReturn<Handle<BTTask>> BTLookUp(BTType behavior);

    /// Builds all trees.
    void compileLibrary();
    /// Has the script `BehaviorLib.Wander` build its trees; what it raises travels to the caller.
    void buildWander();
    /// Has the scripts of the package `BehaviorLib` build the trees of all other creatures; what they raise travels to
    /// the caller.
    void buildCreatures();
    /// Builds the tree "PlayerWalk": the air of the place and steps are heard.
    void buildPlayerWalk();
    /// Builds the tree "Flashlight": what the flashlight does by itself, and in the player's hand.
    void buildFlashlightTree();
    /// Builds the tree "PlayerTree": the body of who walks in the first person.
    void buildPlayerTree();
    /// Builds the tree "HUD": a part of the screen that shows itself for a while.
    void buildHUDTree();
    /// Builds the tree "BlobTree": the blob is heard.
    void buildBlobTree();
    /// Builds the tree "MannequinTree": a head that turns to the player.
    void buildMannequinTree();
    /// Builds the tree "BatteryMeter": such a part that is as long as the battery lasts.
    void buildBatteryMeterTree();
    /// Does nothing: cameras act by no tree.
    void buildCameraTree() {}

    const BTCont &getTrees() const { return behaviorTrees; }

protected:
    /// Builds all trees; a script that raises is reported, and the trees built before it stay.
    void systemStartup() override;
    /// Murders all trees.
    void systemShutdown() override;
    DependencyList systemDependencies() override;

private:
    BTCont behaviorTrees;
};

/// The names of trees in order, for walks that repeat.
std::vector<String> sortedNames(const std::unordered_map<String, Handle<BTTask>> &trees);
