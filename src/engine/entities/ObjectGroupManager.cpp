#include "engine/entities/ObjectGroupManager.h"

#include "foundation/Logger.h"

Handle<AbstractComponent> ObjectGroupManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, ObjectGroupComponent::staticType);
}

void ObjectGroupManager::addComponentToManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const auto hMember = handle_cast<ObjectGroupComponent>(component);
    const auto member = hMember.lookup();
    if (!member)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: %s is no live ObjectGroupComponent and is in no group", getName().toCString(),
                component.toString().toCString());
        return;
    }
    generations[member->getGroup()] += groups[member->getGroup()].insert(hMember).second;
}

void ObjectGroupManager::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity>)
{
    const auto hMember = handle_cast<ObjectGroupComponent>(component);
    if (const auto member = hMember.lookup())
        generations[member->getGroup()] += static_cast<std::uint32_t>(groups[member->getGroup()].erase(hMember));
}

void ObjectGroupManager::destroyComponent(Handle<AbstractComponent> component)
{
    const auto doomed = component.lookup();
    if (doomed && !doomed->isDying())
        doomed->murder();
}

const ObjectGroupManager::ComponentGroup &ObjectGroupManager::getGroup(ObjectGroupComponent::Group g) const
{
    static const ComponentGroup empty;
    const auto found = groups.find(g);
    return found != groups.end() ? found->second : empty;
}

std::uint32_t ObjectGroupManager::getGeneration(ObjectGroupComponent::Group g) const
{
    const auto found = generations.find(g);
    return found != generations.end() ? found->second : 0;
}

void ObjectGroupManager::changeGroups(Handle<ObjectGroupComponent> c, ObjectGroupComponent::Group oldGroup,
                                      ObjectGroupComponent::Group newGroup)
{
    if (groups[oldGroup].erase(c) == 0)
        return;
    groups[newGroup].insert(c);
    ++generations[oldGroup];
    ++generations[newGroup];
}
