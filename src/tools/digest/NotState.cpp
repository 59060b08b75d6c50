#include "tools/digest/NotState.h"

#include "object/reflection/DoxyElement.h"
#include "object/reflection/Reflection.h"

#include <algorithm>
#include <string_view>

namespace
{
/// Classes whose objects, and those of derived classes, are left out with all that hangs below them.
constexpr const char *classes[] = {
    // The outside of the game: devices, windows, files. What came in from there is in whoever took it.
    "Asset",
    "AssetLoader",
    "AssetSystem",
    "File",
    "FileSystem",
    "FolderWatchSystem",
    "FramePacingSystem",
    "GraphicsAdapterSystem",
    "GraphicsSystem2",
    "InputSystem",
    "SoundSystem",
    "TimeSource",
    "WindowSystem2",
    // What draws the game; what is drawn is state, and what was made for drawing it is not.
    "GraphicsManager2",
    "MindPictureSystem",
    "SceneGraph",
    "SheetGraphics",
    "ViewerComponent",
    // What shows and measures the game.
    "ConsoleComponent",
    "ConsoleSystem",
    "DebugCollectorComponent",
    "DebugLineGraphicsComponent",
    "DebugTextGraphicsComponent",
    "EditorComponent",
    "EditorSystem",
    "FloorSurvey",
    "FrameMeter",
    "OverlayGraphics",
    "ProfilerSystem",
    "ScriptBar",
    "StateDigest",
    "TextBuffSystem",
    "TimelineSystem",
    "TweakSystem",
};

/// Fields that are left out of the objects that have them.
constexpr const char *fields[] = {
    // Where an object stands is what its fields are told apart by.
    "Object::children",
    "Object::name",
    "Object::parent",
    "Object::this_",
    // Who runs when; it follows from what there is.
    "SimpleManager::walkOrder",
    "SystemSystem::initializationOrder",
    "SystemSystem::updaters",
    // Asked of this run.
    "GameLoopSystem::frameCallback",
    "GameLoopSystem::frameLimit",
    "GameLoopSystem::longestFrame",
    "GameLoopSystem::profilerNewFrame",
    "GameLoopSystem::quitAsked",
    "GameLoopSystem::renewQueued",
    "TimeSystem::sourceType",
    // Marks of who asked last; drawing asks, too.
    "BoundingVolume::lastRequest",
    "GraphicsComponent2::lastRequest",
    "PartitioningGrid::lastRequestMarkings",
    "PartitioningGrid::probeNumber",
    // Made for drawing, when something is drawn.
    "DecalComponent::mesh",
    "DustParticleSystemComponent::lastTicks",
    "DustParticleSystemComponent::lights",
    "DustParticleSystemComponent::particles",
    "DustParticleSystemComponent::swirlTime",
    "DustParticleSystemComponent::vertices",
    "MenuComponent::paintCount",
    "MenuComponent::paintIsStale",
    "TextComponent2::atlasGeneration",
    "TextComponent2::lastTextInBlock",
    "TextComponent2::meshIsStale",
    "TextComponent2::pixelSize",
    "TextComponent2::unitsPerPixel",
    "WorldBasedTCBoxGraphicsComponent::builtPlacement",
    "WorldBasedTCBoxGraphicsComponent::builtTextureScale",
    "WorldBasedTCBoxGraphicsComponent::mesh",
    // Counts of births and deaths among all objects, of which those that are no state are part.
    "BTComponent::activeRoot",
    "BoundingVolume::siblings",
    "Coordinator::knownMaps",
    "CreatureAction::known",
    "GraphicsComponent2::objectChanges",
    "MapDataComponent::searched",
    "PerceptionManager::bodyChanges",
    "PerceptionManager::playerChanges",
    "PhysicsComponent::objectChanges",
    "SteeringComponent::moved",
};
} // namespace

bool isNoState(const DoxyElement &objectClass)
{
    return std::any_of(std::begin(classes), std::end(classes),
                       [&](const char *name)
                       {
                           const ReflectorPtr left = Reflection().getType(SCS(name));
                           return left && objectClass.isSubclassOf(left);
                       });
}

bool isNoStateField(const DoxyElement &field)
{
    const std::string_view name = field.getQualifiedText();
    return std::any_of(std::begin(fields), std::end(fields), [&](const char *left) { return name == left; });
}
