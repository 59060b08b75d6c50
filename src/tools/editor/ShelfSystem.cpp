#include "tools/editor/ShelfSystem.h"

#include "tools/editor/ChildOrder.h"

#include "rendering/drawn/DecalComponent.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/SceneGraph.h"
#include "rendering/frame/ViewerComponent.h"

#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"

#include "engine/entities/AbstractManager.h"
#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "engine/systems/SystemSystem.h"
#include "object/reflection/Reflection.h"
#include "object/tree/TreeWalk.h"

#include <algorithm>
#include <vector>

namespace
{
/// The classes whose objects nothing but their manager, the grid and the scene graph knows of.
std::vector<ReflectorPtr> findQuietClasses()
{
    std::vector<ReflectorPtr> found;
    for (const String &name :
         {SCS("BoundingVolume"), SCS("DecalComponent"), SCS("DynamicMeshAsset"), SCS("Entity"), SCS("LightComponent"),
          SCS("ModelGraphicsComponent2"), SCS("ObjectGroupComponent"), SCS("ParentFollowerComponent"),
          SCS("QuadComponent2"), SCS("RigidBody"), SCS("TextComponent2"), SCS("TransformComponent"), SCS("WallPhysics"),
          SCS("WorldBasedTCBoxGraphicsComponent")})
        found.push_back(Reflection().getType(name));
    std::sort(found.begin(), found.end());
    return found;
}

bool isQuiet(const Object &object)
{
    static const auto *const classes = new std::vector<ReflectorPtr>(findQuietClasses());
    return std::binary_search(classes->begin(), classes->end(), object.getType());
}

/// Whether this is what a light looks from for its shadows, rather than a camera.
bool isEyeOfLight(const Object &object)
{
    const auto entity = handle_cast<Entity>(object.getParent()).lookup();
    return object.getType() == ViewerComponent::staticType && entity &&
           std::any_of(entity->children_begin(), entity->children_end(),
                       [](const Handle<Object> &each) { return handle_cast<LightComponent>(each).isValid(); });
}

Handle<SceneGraph> sceneGraphOf(const GraphicsComponent2 &drawn)
{
    const auto manager = handle_cast<GraphicsManager2>(drawn.getManager()).lookup();
    return manager ? manager->getSceneGraph() : Handle<SceneGraph>();
}

/// Has nobody know of an object any more who would draw, move or touch it.
void retire(Object &object)
{
    const auto component = handle_cast<AbstractComponent>(object.getHandle()).lookup();
    if (!component)
        return;
    if (const auto drawn = handle_cast<GraphicsComponent2>(object.getHandle()).lookup())
        if (const auto graph = sceneGraphOf(*drawn).lookup())
            graph->removeComponent(getHandle(drawn.ptr));
    PartitioningGrid::withdraw(handle_cast<BoundingVolume>(object.getHandle()));
    if (const auto manager = component->getManager().lookup())
        manager->removeComponentFromManager(getHandle(component.ptr), handle_cast<Entity>(object.getParent()));
}

/// The reverse of `retire`; a volume finds its way into the grid by its next frame step.
void employ(Object &object)
{
    const auto component = handle_cast<AbstractComponent>(object.getHandle()).lookup();
    if (!component)
        return;
    if (const auto manager = component->getManager().lookup())
        manager->addComponentToManager(getHandle(component.ptr), handle_cast<Entity>(object.getParent()));
    if (const auto drawn = handle_cast<GraphicsComponent2>(object.getHandle()).lookup())
        if (const auto graph = sceneGraphOf(*drawn).lookup())
            graph->addComponent(getHandle(drawn.ptr));
}

template <class Function>
void forEachBelow(Object &root, Function function)
{
    TreeWalk walk(root);
    while (Object *each = walk.next())
        function(*each);
}

/// Has all look again who keep what they found as long as nothing is born and nothing dies.
void tellOfChange()
{
    construct<Object>(defaultAllocationCategory).lookup()->murder();
}
} // namespace

bool ShelfSystem::canTake(Handle<Object> root) const
{
    const auto object = root.lookup();
    if (!object || object->isDying() || !object->getAncestorOfType<Coordinator>().isValid())
        return false;
    bool can = true;
    forEachBelow(*object,
                 [&](const Object &each) { can = can && !each.isDying() && (isQuiet(each) || isEyeOfLight(each)); });
    return can;
}

bool ShelfSystem::take(Handle<Object> root)
{
    if (!canTake(root))
        return false;
    Object &object = *root.lookup();
    shelves[object.getAncestorOfType<Coordinator>()].insert(root);
    forEachBelow(object, retire);
    object.setParent(Handle<Object>()).ignoreError();
    tellOfChange();
    return true;
}

bool ShelfSystem::giveBack(Handle<Object> root, Handle<Object> parent, Handle<Object> sibling)
{
    const auto object = root.lookup();
    const auto above = parent.lookup();
    if (!object || !above)
        return false;
    const auto shelf = shelves.find(above->getAncestorOfType<Coordinator>());
    if (shelf == shelves.end() || shelf->second.erase(root) == 0)
        return false;
    object->setParent(parent).ignoreError();
    if (sibling.isValid())
        placeBefore(root, sibling);
    forEachBelow(*object, employ);
    tellOfChange();
    return true;
}

bool ShelfSystem::holds(Handle<Object> root) const
{
    return root.isValid() &&
           std::any_of(shelves.begin(), shelves.end(), [&](const auto &shelf) { return shelf.second.contains(root); });
}

void ShelfSystem::discard(Handle<Object> root)
{
    for (auto &[level, roots] : shelves)
        if (roots.erase(root) != 0)
            murderAll({root});
}

int ShelfSystem::getCount() const
{
    std::size_t count = 0;
    for (const auto &[level, roots] : shelves)
        count += roots.size();
    return static_cast<int>(count);
}

void ShelfSystem::update()
{
    std::erase_if(shelves,
                  [](const auto &shelf)
                  {
                      const auto level = shelf.first.lookup();
                      if (level && !level->isDying())
                          return false;
                      murderAll(shelf.second);
                      return true;
                  });
}

void ShelfSystem::murderAll(const Roots &roots)
{
    for (const Handle<Object> &each : roots)
        if (const auto object = each.lookup())
            object->murder();
}

void ShelfSystem::systemShutdown()
{
    for (const auto &[level, roots] : shelves)
        murderAll(roots);
    shelves.clear();
}

System::DependencyList ShelfSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}

UpdaterList ShelfSystem::getUpdaters()
{
    constexpr int beforeTheEditor = 125;
    return {Updater(SCS("ShelfSystem::update"), bind(SCS("update")), beforeTheEditor, true)};
}
