#include "physics/bodies/PlayerPhysics.h"

#include "physics/bodies/EdgeProbe.h"
#include "physics/bodies/PhysicsManager.h"
#include "physics/bodies/RigidCollision.h"
#include "physics/doors/DoorCalls.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"
#include "physics/volumes/ScriptFaults.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/reflection/Reflection.h"
#include "object/reflection/Variant.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "foundation/Random.h"

#include <algorithm>
#include <cmath>

namespace
{

// The picture's fades: a factor a frame, and where the rest is not seen any more.
constexpr float FADE_IN = 0.97f, ALL_SEEN = 0.005f;
constexpr float FADE_OUT = 1.15f, NOTHING_SEEN = 0.995f;
constexpr double MOST_PIECES = 64.0; ///< of a frame: one that takes a second is not divided further

constexpr float THROWN = 3.f;        ///< metres a second away from the ground that no step makes
constexpr float HELD = 0.4f;         ///< metres a second ahead: who is as slow may be held by an edge
constexpr float LEAST_FORCE = 1e-3f; ///< newtons
constexpr float SIDEWAYS = 0.7f;     ///< part of the force ahead by which one goes round an edge
constexpr float STANDS = 0.5f;       ///< height of a normal from which on one stands on a thing rather than before it
constexpr float LEVEL = 0.9999f;     ///< height of a normal of ground that has no slope to speak of
constexpr float LEAST_KEPT = 1e-3f;  ///< of a speed: with less of it there is nothing to give back

/// The inverse inertia of what nothing turns.
const Matrix4 &unturnable()
{
    static const Matrix4 zero = []
    {
        Matrix4 m;
        for (int axis = 0; axis < 3; ++axis)
            m[axis][axis] = 0.f;
        return m;
    }();
    return zero;
}

/// An object of the level that a body stands in.
Handle<Object> inLevel(Object &body, const String &path)
{
    const auto level = body.getAncestorOfType<Coordinator>().lookup();
    return level ? level->getDescendantByPath(path) : Handle<Object>();
}

/// The manager "graphics2" of a body's level, which stands in a higher folder; invalid where nothing is drawn.
Handle<Object> findRenderer(Object &body)
{
    static const String name = SCS("graphics2Manager");
    const auto level = body.getAncestorOfType<Coordinator>().lookup();
    return level ? level->getChild(name) : Handle<Object>();
}

const String &dissolveName()
{
    static const String name = SCS("dissolveAmount");
    return name;
}

/// Sets a property of an object of a higher folder; where that is missing, the log is told once.
void setInLevel(Object &body, const String &path, const String &property, const Variant &value)
{
    const auto object = inLevel(body, path).lookup();
    const bool set = object && object->setPropertyValue(property, value).succeeded();
    if (!set && isNewFault(body.getHandle(), path.toCString()))
        KV_LOGF(
            Logger_::I_ERROR,
            "%s of %s: the level has nothing at \"%s\" with the property %s. Build it there, or leave the hud alone.",
            body.getName().toCString(), body.getParent().toString().toCString(), path.toCString(),
            property.toCString());
}

} // namespace

void PlayerPhysics::onLoadComplete()
{
    RigidBody::onLoadComplete();
    const auto manager = handle_cast<PhysicsManager>(getManager()).lookup();
    if (!manager)
        return;
    const Handle<PlayerPhysics> present = manager->getPlayer();
    if (!present.isValid())
        manager->setPlayer(getHandle(this));
    else if (present != getHandle(this))
        KV_LOGF(Logger_::I_ERROR,
                "%s is a second player beside %s: a level has one, whom shadows and triggers count for. Give others a "
                "RigidBody.",
                getParent().toString().toCString(), present.lookup()->getParent().toString().toCString());
}

void PlayerPhysics::doFrame(Seconds frameTime)
{
    runOutTimes(frameTime);
    if (opening)
        fadeIn();
    if (dead)
        fadeOut();
    if (dead)
        return clearAccumulator(); // or all forces of the fade would move who comes back
    if (won)
        Assertions::prepareAssert(AM_CRITICAL_ASSERT, AC_ALWAYS, "", "PhysicsComponent", 216, "Whoops!");
    workOffDoors();
    shadowList.clear();
    touchedTriggers.clear();
    if (surefooted)
        walk(frameTime);
    else
        moveInPieces(frameTime);
}

void PlayerPhysics::runOutTimes(Seconds frameTime)
{
    if (invincibilityTime > 0.f)
        invincibilityTime = std::max(invincibilityTime - static_cast<float>(frameTime), 0.f);
    if (!(hudDisplayed > 0.0))
        return;
    hudDisplayed -= frameTime;
    if (!(hudDisplayed > 0.0))
        displayHUD(false);
}

void PlayerPhysics::fadeIn()
{
    float amount = 0.f;
    if (!readDissolve(amount))
        return;
    opening = amount >= ALL_SEEN;
    writeDissolve(opening ? amount * FADE_IN : 0.f);
}

void PlayerPhysics::fadeOut()
{
    float amount = 0.f;
    if (!readDissolve(amount))
        return;
    dead = !(amount > NOTHING_SEEN);
    writeDissolve(dead ? amount * FADE_OUT : 1.f);
    if (!dead)
        findPauseMenu();
}

/// Menus stand in a higher folder, so theirs is known here by its class's name only.
void PlayerPhysics::findPauseMenu()
{
    static const String menuClass = SCS("MenuComponent");
    const ReflectorPtr type = Reflection().getType(menuClass);
    const auto found = inLevel(*this, WellKnownPaths::pauseMenu).lookup();
    const bool isMenu = found && type && found->getType()->isSubclassOf(type);
    pauseMenu = isMenu ? found->getHandle() : Handle<Object>();
}

/// How far the picture is dissolved; false in a level that is not drawn.
bool PlayerPhysics::readDissolve(float &amount)
{
    const auto renderer = findRenderer(*this).lookup();
    if (!renderer)
        return false;
    const ErrorReturn<Variant> property = renderer->getPropertyValue(dissolveName());
    const ErrorReturn<float> value =
        property.succeeded() ? property.value.get<float>() : ErrorReturn<float>(property.code);
    amount = value.value;
    return value.succeeded();
}

void PlayerPhysics::writeDissolve(float amount)
{
    if (const auto renderer = findRenderer(*this).lookup())
        renderer->setPropertyValue(dissolveName(), Variant(amount)).ignoreError();
}

void PlayerPhysics::workOffDoors()
{
    for (std::size_t i = 0; i < doorInteractList.size(); ++i)
    {
        const DoorInfo info = doorInteractList[i]; // a door's script may add another one
        callDoor(info.door, getHandle(), info.open ? DoorCall::OPEN : DoorCall::CLOSE);
    }
    doorInteractList.clear();
}

void PlayerPhysics::walk(Seconds frameTime)
{
    const bool stood = footing.isOnGround();
    footing.begin();
    keepUp();
    noteLanding(stood);
    if (footing.isOnGround())
        passEdges();
    moveInPieces(frameTime);
    if (footing.isOnGround())
        keepToGround();
    else
        fallingSpeed = std::max(-velocity.y, 0.f);
}

void PlayerPhysics::meet(const Vec4 &normal, const Vec4 &itsVelocity)
{
    const float away = -itsVelocity.dot(normal);
    if (std::abs(normal.y) < STANDS && away > pushed.magnitude())
        pushed = -normal * away;
}

/// Who pushes a thing goes on with it. Its contact has taken all of his speed that was straight at it, as a wall does,
/// and given the thing what both have in common.
void PlayerPhysics::keepUp()
{
    const float speed = pushed.magnitude();
    const Vec4 ahead = speed > 0.f ? pushed * (1.f / speed) : Vec4();
    pushed = Vec4();
    const float missing = speed - velocity.dot(ahead);
    if (missing > 0.f && getNetForce().dot(ahead) > LEAST_FORCE)
        velocity += ahead * missing;
}

/// Who is held by an edge that he has run against goes round it.
void PlayerPhysics::passEdges()
{
    const Vec4 force = getNetForce();
    Vec4 ahead(force.x, 0.f, force.z, 0.f);
    const float strength = ahead.magnitude();
    if (!(strength > LEAST_FORCE))
        return;
    ahead *= 1.f / strength;
    TransformComponent *const place = findTransform();
    BoundingVolume *const volume = findVolume();
    const auto grid = place ? PartitioningGrid::ofMap(place->findMap()).lookup() : Handle<PartitioningGrid>::Result{};
    if (grid && volume && velocity.dot(ahead) < HELD)
        addForce(sideFreeOfEdge(*grid.ptr, *volume, *place, ahead) * (strength * SIDEWAYS));
}

void PlayerPhysics::noteLanding(bool stood)
{
    if (stood || !footing.isOnGround())
        return;
    ++landings;
    landingSpeed = fallingSpeed;
    fallingSpeed = 0.f;
}

/// Takes the feet down to ground that falls away below them, unless the body is thrown up.
void PlayerPhysics::keepToGround()
{
    TransformComponent *const place = findTransform();
    BoundingVolume *const volume = findVolume();
    const auto grid = place ? PartitioningGrid::ofMap(place->findMap()).lookup() : Handle<PartitioningGrid>::Result{};
    if (!grid || !volume)
        return;
    const float gap = footing.findGap(*grid.ptr, *volume, *place);
    const float leaves = velocity.dot(footing.getNormal());
    if (gap < 0.f || leaves > THROWN)
        return footing.loseGround();
    if (leaves > 0.f)
        velocity -= footing.getNormal() * leaves;
    if (gap > 0.f)
        place->setPosition(place->getPosition() - Vec4(0.f, gap, 0.f, 0.f));
}

/// Each piece begins with the forces of the frame, which the body's own step forgets.
void PlayerPhysics::moveInPieces(Seconds frameTime)
{
    const double wanted = longestStep > 0.f ? std::ceil(frameTime / static_cast<double>(longestStep) - 1e-3) : 1.0;
    const int pieces = wanted > 1.0 ? static_cast<int>(std::min(wanted, MOST_PIECES)) : 1;
    const Vec4 force = footing.isOnGround() ? forceOnGround() : getNetForce(), torque = getNetTorque();
    clearAccumulator();
    for (int piece = 0; piece < pieces; ++piece)
    {
        addForce(force);
        addTorque(torque);
        if (surefooted && !footing.isOnGround())
            fallFreely(frameTime / pieces);
        RigidBody::doFrame(frameTime / pieces);
    }
}

/// The forces of the frame as feet pass them on: what pushes over the ground goes along it, and weight pulls nobody
/// down a slope.
Vec4 PlayerPhysics::forceOnGround() const
{
    const Vec4 force = getNetForce();
    if (footing.getNormal().y > LEVEL || inverseMass == 0.f)
        return force;
    const Vec4 weight = acceleration * (1.f / inverseMass) + Vec4(0.f, force.y, 0.f, 0.f);
    return footing.along(Vec4(force.x, 0.f, force.z, 0.f)) + Vec4(0.f, force.y, 0.f, 0.f) - footing.without(weight);
}

/// Gives the fall beforehand what damping is about to take from it.
void PlayerPhysics::fallFreely(Seconds seconds)
{
    const float kept = keptOver(damping, seconds), gained = totalAcceleration().y * static_cast<float>(seconds);
    if (kept > LEAST_KEPT)
        velocity.y = (velocity.y + gained) / kept - gained;
}

const Matrix4 &PlayerPhysics::getInverseInertia() const
{
    return unturnable();
}

const Matrix4 &PlayerPhysics::getInverseInertiaWorld() const
{
    return unturnable();
}

void PlayerPhysics::addShadow(Handle<PhysicsComponent> shadow)
{
    shadowList.push_back(shadow);
}

void PlayerPhysics::takeContact(const Collision &contact, const BoundingVolume &trigger)
{
    if (const auto *const rigid = dynamic_cast<const RigidCollision *>(&contact))
        touchedTriggers.push_back({::getHandle(&trigger), rigid->contactPos, rigid->contactNormal, rigid->penetration});
}

void PlayerPhysics::addDoor(Handle<Object> door, bool open)
{
    const auto component = handle_cast<AbstractComponent>(door).lookup();
    doorInteractList.push_back({component ? component->getParent() : door, open});
}

void PlayerPhysics::setInvert(String state)
{
    if (state == SCS("true"))
        setInvert(true);
    else if (state == SCS("false"))
        setInvert(false);
    else
        KV_LOGF(Logger_::I_ERROR, "%s is invalid", state.toCString());
}

void PlayerPhysics::setInvert(bool state)
{
    negOne = state ? -1.f : 1.f;
}

bool PlayerPhysics::determineHit()
{
    return (engineRand() & 1) != 0;
}

void PlayerPhysics::displayHUD(bool visible)
{
    static const String path = SCS("Hud/hud"), property = SCS("visible");
    setInLevel(*this, path, property, Variant(visible));
}

void PlayerPhysics::changeHUDTexture(String texture, String type)
{
    static const String battery = SCS("battery"), property = SCS("textureName");
    static const String batteryQuad = SCS("Hud/EntQuad2/graphics2"), otherQuad = SCS("Hud/EntQuad1/graphics2");
    setInLevel(*this, type == battery ? batteryQuad : otherQuad, property, Variant(texture));
}

void PlayerPhysics::setHudDisplayed(double seconds)
{
    if (isUsable(*this, "hudDisplayed", static_cast<float>(seconds)))
        hudDisplayed = seconds;
}

void PlayerPhysics::setInvincibilityTime(float seconds)
{
    if (isUsable(*this, "invincibilityTime", seconds))
        invincibilityTime = seconds;
}

void PlayerPhysics::setLongestStep(float seconds)
{
    if (isUsable(*this, "longestStep", seconds))
        longestStep = seconds;
}

bool PlayerPhysics::isKeyDown(Direction direction) const
{
    const auto index = static_cast<unsigned>(direction);
    return index < NUM_DIRECTIONS && keys[index];
}

void PlayerPhysics::setKeyDown(Direction direction, bool down)
{
    if (const auto index = static_cast<unsigned>(direction); index < NUM_DIRECTIONS)
        keys[index] = down;
}

bool PlayerPhysics::isButtonDown(DirectionsXBOX direction) const
{
    const auto index = static_cast<unsigned>(direction);
    return index < X_NUM_DIRECTIONS && xBtns[index];
}

void PlayerPhysics::setButtonDown(DirectionsXBOX direction, bool down)
{
    if (const auto index = static_cast<unsigned>(direction); index < X_NUM_DIRECTIONS)
        xBtns[index] = down;
}

void PlayerPhysics::setStick(Vec4 val)
{
    if (!isUsable(*this, "stick", val))
        return;
    joyX = std::clamp(val.x, -1.f, 1.f);
    joyY = std::clamp(val.y, -1.f, 1.f);
}
