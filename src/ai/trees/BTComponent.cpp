#include "ai/trees/BTComponent.h"

#include "ai/nodes/BTSubtreeLookup.h"
#include "ai/trees/BTLib.h"
#include "ai/trees/TreeText.h"

#include "engine/entities/Entity.h"

#include <string>

void BTComponent::doFrame()
{
    if (activeRoot.objectChanges != ObjectMap().getChangeCount())
        findActiveRoot();
    if (!activeRoot.task)
        return;
    // A tree may turn the creature to another behaviour from within its own tick; the name stays in the map.
    const TreeUnderWay here(*activeRoot.name);
    activeRoot.task->tick();
}

void BTComponent::findActiveRoot()
{
    const auto &active = *behaviors.try_emplace(activeBehavior).first;
    activeRoot = ActiveRoot{active.second.lookup().ptr, &active.first, ObjectMap().getChangeCount()};
}

void BTComponent::onLoadComplete()
{
    setActiveBehavior(defaultBehavior);
    setBehavior(activeBehavior);
}

void BTComponent::addBehavior(String behaviorName)
{
    if (behaviors.contains(behaviorName))
        return;
    const auto library = getSystem<BTLib>().lookup();
    if (!library)
        return;
    const Handle<BTTask> copy = library->BTLookUp(behaviorName).value;
    const auto root = copy.lookup();
    if (!root)
        return;
    root->setTreeParent(handle_cast<Entity>(getParent()));
    root->prepare();
    behaviors.emplace(behaviorName, copy);
    activeRoot = ActiveRoot();
}

void BTComponent::setDefaultBehavior(String behavior)
{
    defaultBehavior = behavior;
}

void BTComponent::setBehavior(String behaviorName)
{
    if (!behaviors.contains(behaviorName))
        return;
    const auto current = behaviors[activeBehavior].lookup();
    if (!current)
        return;
    current->terminate();
    setActiveBehavior(behaviorName);
}

void BTComponent::setActiveBehavior(String val)
{
    activeBehavior = val;
    activeRoot = ActiveRoot();
}

Handle<BTTask> BTComponent::getTree(String behaviorName) const
{
    const auto found = behaviors.find(behaviorName);
    return found == behaviors.end() ? Handle<BTTask>() : found->second;
}

String BTComponent::drawTree() const
{
    std::vector<String> names{activeBehavior};
    for (const String &name : sortedNames(behaviors))
        if (name != activeBehavior)
            names.push_back(name);

    std::string text;
    for (const String &name : names)
    {
        const auto root = getTree(name).lookup();
        const char *const state = root ? (name == activeBehavior ? " (active)" : "") : " (no such tree)";
        text.append(name.toCString()).append(state).append("\n");
        if (root)
            text.append(drawTask(*root).toCString());
    }
    return String::copyFrom(text);
}

String BTComponent::tell() const
{
    const auto root = getTree(activeBehavior).lookup();
    return root ? tellTask(activeBehavior, *root) : String();
}
