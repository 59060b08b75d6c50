// ObjectGroupManager: keeps the named groups of a level's objects.
#pragma once

#include "engine/entities/AbstractManager.h"
#include "engine/entities/ObjectGroupComponent.h"

#include <cstdint>
#include <map>
#include <set>

/// Manager of the key "objectGroup": the members of each group, oldest first, and how often a group has changed.
///
/// Who needs the members every frame keeps a list of its own and makes it anew when the group's generation differs
/// from the one it saw. A member leaves with its cremation, which counts as a change.
class ObjectGroupManager : public AbstractManager
{
    KV_REFLECTED(ObjectGroupManager)
public:
    typedef std::set<Handle<ObjectGroupComponent>> ComponentGroup;
    typedef std::map<ObjectGroupComponent::Group, ComponentGroup> ComponentGroupMap;
    typedef std::map<ObjectGroupComponent::Group, std::uint32_t> GroupGenerationMap;

    ObjectGroupManager() = default;

    /// Does nothing: groups change when their members do.
    void doFrame() override {}
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    /// Files a component under its group; one of another class is logged as an error and not filed.
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    /// Murders the component unless it is dying already.
    void destroyComponent(Handle<AbstractComponent> component) override;
    ReflectorPtr getComponentClass() const override { return ObjectGroupComponent::staticType; }

    /// The members of a group, oldest first; borrowed until the group changes.
    const ComponentGroup &getGroup(ObjectGroupComponent::Group g) const;
    /// How often the group's members have changed so far; 0 for a group that never had any.
    std::uint32_t getGeneration(ObjectGroupComponent::Group g) const;
    /// Takes a component out of one group and into another; both generations rise.
    ///
    /// One that is not in the old group (its cremation is under way) is left alone.
    void changeGroups(Handle<ObjectGroupComponent> c, ObjectGroupComponent::Group oldGroup,
                      ObjectGroupComponent::Group newGroup);

private:
    ComponentGroupMap groups;
    GroupGenerationMap generations;
};
