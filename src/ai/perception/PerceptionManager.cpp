#include "ai/perception/PerceptionManager.h"

#include "ai/perception/LightAt.h"
#include "ai/perception/PerceptionComponent.h"
#include "ai/perception/Sightline.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/messages/PostOffice.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/acoustics/SoundWays.h"
#include "platform/sound/SoundMessages.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/ViewerComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float PLAYERS_VIEW = 0.7f;     ///< cosine of the half angle of one who has no camera
constexpr float POINT_RADIUS = 0.05f;    ///< metres of a body around a point of it
constexpr float LEAST_THRESHOLD = 1e-6f; ///< of hearing, that sounds are looked for by
constexpr float GOLDEN = 0.618034f;      ///< shares of it lie far apart, however many there are

} // namespace

void PerceptionManager::onAddToCoordinator()
{
    static const String handler = SCS("handleSoundMade");
    PostOffice().registerMessageHandler(SoundMadeMessage, bind(handler));
}

ReflectorPtr PerceptionManager::getComponentClass() const
{
    return PerceptionComponent::staticType;
}

void PerceptionManager::doFrame()
{
    const auto level = handle_cast<Coordinator>(getParent()).lookup();
    if (!level)
        return;
    const Seconds passed = level->getTimer(TimerNames::master).getFrameTimeSeconds();
    frameSeconds = static_cast<float>(std::max(passed, 0.0));
    now += std::max(passed, 0.0);
    ++frame;
    dropDeadBodies();
    hearNoises();
    SimpleManager::doFrame();
}

void PerceptionManager::handleSoundMade(const ReflectorPtr &, String name, Vec4 placeAndLoudness, Handle<Object> maker)
{
    const auto live = maker.lookup();
    if (live && live->getAncestorOfType<Coordinator>() != getParent())
        return;
    Vec4 place = placeAndLoudness;
    place.w = 1.f;
    makeNoise(name, place, placeAndLoudness.w, maker);
}

void PerceptionManager::makeNoise(String name, Vec4 place, float loudness, Handle<Object> maker)
{
    if (noises.size() < MOST_NOISES && isFinite(place) && std::isfinite(loudness) && loudness > 0.f)
        noises.push_back(Noise{name, place, loudness, maker});
}

/// Lets each sound come to each creature of its map. What a creature calls meanwhile may sound again, for the next frame.
void PerceptionManager::hearNoises()
{
    heardNow.clear();
    heardNow.swap(noises);
    for (const Noise &noise : heardNow)
    {
        const auto root = handle_cast<MapRootEntity>(noise.maker);
        const Handle<MapRootEntity> map = root.isValid() ? root : mapAround(handle_cast<Entity>(noise.maker));
        for (const Handle<SimpleComponent> &h : getComponents())
            if (const auto creature = handle_cast<PerceptionComponent>(h).lookup())
                hear(*creature, noise, map);
    }
}

/// @param map  that the sound was made in; invalid where nobody knows
void PerceptionManager::hear(PerceptionComponent &creature, const Noise &noise, const Handle<MapRootEntity> &map)
{
    Vec4 ear, ahead;
    if (!creature.getHasEars() || !creature.findEye(ear, ahead) ||
        (map.isValid() && creature.findSurroundings().map != map))
        return;
    Vec4 straight = noise.place - ear;
    straight.w = 0.f;
    // No way is shorter than the straight one, and none makes a sound louder.
    const float threshold = creature.getHearingThreshold();
    if (noise.loudness < threshold * std::max(straight.magnitude(), 1.f) ||
        !creature.isOfInterest(noise.place, noise.maker, ear))
        return;
    HeardWay way;
    way.distance = straight.magnitude();
    if (const auto ways = SoundWays::ofMap(creature.findSurroundings().map).lookup())
    {
        ++soundQuestions;
        way = ways->hearWithin(noise.place, ear, noise.loudness / std::max(threshold, LEAST_THRESHOLD));
    }
    const float level = noise.loudness * way.gain / std::max(way.distance, 1.f);
    if (level >= threshold && level > 0.f)
        creature.takeIn(way, level, noise.place, noise.name);
}

float PerceptionManager::nextPhase()
{
    const float phase = static_cast<float>(creatures++ % 4096) * GOLDEN;
    return phase - std::floor(phase);
}

SeenBody *PerceptionManager::seenBody(const Handle<Entity> &entity)
{
    const auto known = std::lower_bound(bodies.begin(), bodies.end(), entity,
                                        [](const std::unique_ptr<SeenBody> &body, const Handle<Entity> &sought)
                                        { return body->getEntity() < sought; });
    const bool isKnown = known != bodies.end() && (*known)->getEntity() == entity;
    if (!isKnown && !entity.isValid())
        return nullptr;
    SeenBody &body = isKnown ? **known : **bodies.insert(known, std::make_unique<SeenBody>(entity));
    return body.find(frame, now) ? &body : nullptr;
}

void PerceptionManager::dropDeadBodies()
{
    if (bodyChanges == ObjectMap().getChangeCount())
        return;
    bodyChanges = ObjectMap().getChangeCount();
    std::erase_if(bodies,
                  [this](const std::unique_ptr<SeenBody> &body)
                  {
                      const bool isDead = !body->getEntity().isValid();
                      lightQuestionsOfDead += isDead ? body->getLightQuestions() : 0;
                      return isDead;
                  });
}

int PerceptionManager::getLightQuestions() const
{
    int sum = lightQuestionsOfDead;
    for (const std::unique_ptr<SeenBody> &body : bodies)
        sum += body->getLightQuestions();
    return sum;
}

Handle<Entity> PerceptionManager::findPlayer(const Handle<MapRootEntity> &map)
{
    // Maps have thousands of children: who was the player is looked at before they are searched.
    const auto last = player.lookup();
    const bool isThere = last && last->getName() == WellKnownPaths::player &&
                         (last->getParent() == getParent() || last->getParent() == map);
    const std::uint64_t changes = ObjectMap().getChangeCount();
    if (isThere || (playerChanges == changes && playersMap == map))
        return player;
    playerChanges = changes;
    playersMap = map;
    const auto level = getParent().lookup();
    player = level ? handle_cast<Entity>(level->getChild(WellKnownPaths::player)) : Handle<Entity>();
    // In a level that nobody walks a mind stands there, which has no body.
    const auto root = map.lookup();
    if (root && !componentOf<TransformComponent>(player, ComponentKeys::transform))
        player = handle_cast<Entity>(root->getChild(WellKnownPaths::player));
    return player;
}

const Vec4 *PerceptionManager::getEye()
{
    if (viewFrame != frame)
        findView();
    return hasEye ? &eye : nullptr;
}

/// Takes over what the camera shows, or where the player looks in a level that has none.
void PerceptionManager::findView()
{
    static const String graphicsName = SCS("graphics2Manager");
    typedef TransformComponent T;
    viewFrame = frame;
    view.reset();
    const auto level = getParent().lookup();
    const auto graphics =
        handle_cast<GraphicsManager2>(level ? level->getChild(graphicsName) : Handle<Object>()).lookup();
    const Handle<Entity> camera = graphics ? graphics->getCurrentCamera() : Handle<Entity>();
    ViewerComponent *const viewer = componentOf<ViewerComponent>(camera, ComponentKeys::viewer);
    const Handle<Entity> looking = viewer ? camera : player;
    T *const transform = componentOf<T>(looking, ComponentKeys::transform);
    hasEye = transform && isFinite(transform->getPosition()) && isFinite(transform->getOrientation());
    if (!hasEye)
        return;
    const Matrix4 pose = poseInMap(*transform);
    eye = pose.getColumn(3);
    ahead = pose.getColumn(2);
    if (!viewer)
        return;
    const ScreenMetrics &screen = getScreenMetrics();
    view.emplace(transform->getCameraMatrix(T::INVERT | T::OMIT_SCALE),
                 viewer->getProjectionMatrix(static_cast<float>(screen.width), static_cast<float>(screen.height)));
}

bool PerceptionManager::isOnScreen(const Vec4 &place)
{
    if (!getEye())
        return false;
    if (view)
        return !view->excludes(place, POINT_RADIUS);
    Vec4 way = place - eye;
    way.w = 0.f;
    return way.dot(ahead) >= PLAYERS_VIEW * way.magnitude();
}

bool PerceptionManager::isWatched(const Handle<Entity> &entity, float leastLight, const Vec4 *elsewhere)
{
    SeenBody *const body = seenBody(entity);
    if (!body)
        return false;
    const Handle<Entity> watcher = findPlayer(body->getMap());
    if (!getEye())
        return false;
    PartitioningGrid *const grid = PartitioningGrid::ofMap(body->getMap()).lookup().ptr;
    Vec4 shift = elsewhere ? *elsewhere - body->getPlace() : Vec4();
    shift.w = 0.f;
    for (int i = 0; i < body->getPointCount(); ++i)
    {
        const Vec4 point = body->getPoint(i) + shift;
        if (!isOnScreen(point))
            continue;
        if ((elsewhere ? lightAt(body->getMap(), point) : body->lightOnPoint(i)) < leastLight)
            continue;
        countSightLine();
        if (isFreeBetween(grid, SightFilter(watcher, entity), eye, point))
            return true;
    }
    return false;
}
