// ConsoleComponent: the command "spawn".
#include "tools/console/ConsoleComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/levels/ObjectFromPattern.h"
#include "engine/transforms/TransformComponent.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/grid/SquareGrid.h"

#include "foundation/Logger.h"

namespace
{
/// The module that the first argument means: a level's by its name, else one of patterns by its own.
String moduleOf(const String &name)
{
    Variant isLevel;
    if (isPythonRunning() && !pythonCall("loader", "hasLevel", SavedArguments::of(name), isLevel))
        getCurrentPythonTraceback(); // it is no level's name, then
    return isLevel.get<bool>().value ? SCS("levels.") + name : name;
}

GridCell cellUnder(const Handle<MapRootEntity> &map, const TransformComponent &player)
{
    const Handle<Object> found =
        map.lookup()->getDescendantByPath(WellKnownPaths::mainPathGrid + SCS("/") + ComponentKeys::grid);
    const auto grid = handle_cast<SquareGrid>(found).lookup();
    return grid ? grid->getCellFromPoint(player.getPosition()) : GridCell();
}
} // namespace

void ConsoleComponent::spawnDict(const String &first_arg, const String &second_arg)
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Handle<Object> player = level ? level->getChild(WellKnownPaths::player) : Handle<Object>();
    if (!player.isValid())
        return complain(SCS("Could not find the player."));
    const auto *stance = componentOf<TransformComponent>(player, ComponentKeys::transform);
    if (!stance)
        return complain(SCS("The player does not have a transform component"));
    const Handle<MapRootEntity> map = level->findMap(stance->getPosition());
    if (!map.isValid())
        return complain(SCS("Could not find current map"));

    const GridCell cell = cellUnder(map, *stance);
    const Handle<Object> made = construct(first_arg, second_arg, map, cell.getWorldCoords());
    auto *transform = componentOf<TransformComponent>(made, ComponentKeys::transform);
    if (!handle_cast<Entity>(made).isValid())
        complain(SCS("spawned object was not an Entity"));
    else if (!transform)
        complain(SCS("spawned object had no transform component"));
    else if (!cell.isValid())
        complain(SCS("Could not look up the player's grid coordinates."));
    else
        return Logger().writeLine(Logger_::I_INFO,
                                  String::format("%s stands in the cell %d, %d", made.lookup()->getName().toCString(),
                                                 cell.getX(), cell.getZ()));
    if (const auto useless = made.lookup())
        useless->murder();
}

/// Builds an object below a map, at a place; what a script could not build is told by it.
Handle<Object> ConsoleComponent::construct(const String &module, const String &pattern, const Handle<Object> &map,
                                           Vec4 place)
{
    const String name = String::format("%s_spawned%d", pattern.toCString(), ++spawned);
    return buildFromPattern(moduleOf(module), pattern, map, name, &place);
}
