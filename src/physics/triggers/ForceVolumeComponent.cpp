#include "physics/triggers/ForceVolumeComponent.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/grid/CellRect.h"
#include "physics/volumes/FiniteProperty.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/RigidBody.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/entities/SimpleManager.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float SPIN_TIME = 0.5f;   ///< seconds in which a spin comes two thirds of its way
constexpr float SPIN_OVER = 0.005f; ///< radians a second that nobody sees

/// The components of an object that is pushed; null where it has none, or is gone.
struct Pushed
{
    BoundingVolume *volume = nullptr;
    PhysicsComponent *body = nullptr;
    TransformComponent *transform = nullptr;

    explicit Pushed(const Handle<BoundingVolume> &h)
    {
        volume = h.lookup().ptr;
        if (!volume)
            return;
        body = volume->findPhysics();
        transform = volume->findTransform();
    }
    explicit operator bool() const { return body && transform; }
};

bool isBefore(const ProjectileInfo &info, const Handle<BoundingVolume> &volume)
{
    return info.hBoundingVolume < volume;
}

/// The part of its way that a spin comes in some seconds.
float spinPart(Seconds seconds)
{
    return 1.f - std::exp(-static_cast<float>(seconds) / SPIN_TIME);
}

/// Turns a body faster, and notes how much of its spin it has from the volume.
void addSpin(ProjectileInfo &info, RigidBody &body, const Vec4 &spin)
{
    body.setAngularVelocity(body.getAngularVelocity() + spin);
    info.angularVelocity += spin;
}

/// Takes from what a body has got what its damping, or somebody who stopped it, has taken from it since the last frame.
void followSpin(ProjectileInfo &info, const RigidBody &body, Seconds seconds)
{
    info.angularVelocity *=
        body.getAngularVelocity() == Vec4() ? 0.f : std::pow(body.getAngularDamping(), static_cast<float>(seconds));
}

/// Takes back, step by step, the spin that a body has got.
/// @return whether that goes on
bool easeSpinOut(ProjectileInfo &info, RigidBody &body, Seconds seconds)
{
    if (info.angularVelocity == Vec4())
        return false;
    followSpin(info, body, seconds);
    const bool over = info.angularVelocity.magnitude() < SPIN_OVER;
    addSpin(info, body, info.angularVelocity * (over ? -1.f : -spinPart(seconds)));
    return !over;
}

/// The body, if it is one that may spin.
RigidBody *spinning(const Pushed &pushed)
{
    if (VolumeTraits::of(*pushed.volume).isPlayer)
        return nullptr;
    return handle_cast<RigidBody>(getHandle(pushed.body)).lookup().ptr;
}

} // namespace

Vec4 ForceVolumeComponent::Field::local(const Vec4 &point) const
{
    Vec4 way = point - centre;
    way.w = 0.f;
    return way * rotation; // a row vector's product turns back
}

bool ForceVolumeComponent::Field::contains(const Vec4 &point) const
{
    const Vec4 inside = local(point);
    if (isBall)
        return inside.magnitude() <= half.x;
    return std::fabs(inside.x) <= half.x && std::fabs(inside.y) <= half.y && std::fabs(inside.z) <= half.z;
}

float ForceVolumeComponent::Field::strengthAt(const Vec4 &point) const
{
    return wholeUpTo >= reach ? 1.f : 1.f - smoothstep(wholeUpTo, reach, direction.dot(point - centre));
}

void ForceVolumeComponent::onLoadComplete()
{
    const String name = getName(), entity = getParent().toString();
    if (!handle_cast<SimpleManager>(getManager()).isValid())
        KV_LOGF(Logger_::I_ERROR, "%s of %s: nothing runs a force volume under this key; give it the key \"dummy\".",
                name.toCString(), entity.toCString());
    if (forceDirection == Vec4())
        KV_LOGF(Logger_::I_ERROR, "%s of %s: a forceDirection of length 0 pushes nowhere; give it (0, 1, 0, 0) for up.",
                name.toCString(), entity.toCString());
}

void ForceVolumeComponent::onMurder()
{
    letGoOfAll();
    SimpleComponent::onMurder();
}

void ForceVolumeComponent::doFrame()
{
    Field field;
    if (!makeField(field))
        return letGoOfAll();
    for (ProjectileInfo &info : projectiles)
        info.inVolume = false;
    takeInsiders(field);
    if (projectiles.empty())
        return;
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Seconds seconds = level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    auto kept = projectiles.begin();
    for (ProjectileInfo &info : projectiles)
        if (info.inVolume ? push(info, field, seconds) : letGo(info, seconds))
            *kept++ = info;
    projectiles.erase(kept, projectiles.end());
}

void ForceVolumeComponent::setForceMagnitude(float val)
{
    if (isUsable(*this, "forceMagnitude", val))
        forceMagnitude = val;
}

void ForceVolumeComponent::setDampingMultiplier(float val)
{
    if (isUsable(*this, "dampingMultiplier", val))
        dampingMultiplier = std::max(val, 0.f);
}

void ForceVolumeComponent::setForceDirection(Vec4 val)
{
    val.w = 0.f;
    if (isUsable(*this, "forceDirection", val))
        forceDirection = val;
}

void ForceVolumeComponent::setMaxForceOffset(float val)
{
    if (isUsable(*this, "maxForceOffset", val))
        maxForceOffset = val;
}

void ForceVolumeComponent::setMaxAngularVelocity(float val)
{
    if (isUsable(*this, "maxAngularVelocity", val))
        maxAngularVelocity = val;
}

void ForceVolumeComponent::setForceOrientation(Quaternion val)
{
    if (!isUsable(*this, "forceOrientation", Vec4(val.r, val.i, val.j, val.k)))
        return;
    val.normalize();
    forceOrientation = val;
}

/// The volume as it stands now; false where there is none.
bool ForceVolumeComponent::makeField(Field &field)
{
    BoundingVolume *const volume = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    const TransformComponent *const transform = volume ? volume->findTransform() : nullptr;
    if (!transform)
        return false;
    field.centre = transform->getPosition();
    field.rotation = transform->getOrientation().generateRotation();
    field.half = volume->getHitBox() * 0.5f;
    field.isBall = VolumeTraits::of(*volume).shape == VolumeTraits::BALL;

    Vec4 own = forceOrientation.generateRotation() * forceDirection;
    own.w = 0.f;
    own *= forceMagnitude < 0.f ? -1.f : 1.f;
    own.normalize();
    field.direction = field.rotation * own;
    field.force = field.direction * std::fabs(forceMagnitude);
    field.reach = field.isBall ? field.half.x
                               : std::fabs(own.x * field.half.x) + std::fabs(own.y * field.half.y) +
                                     std::fabs(own.z * field.half.z);
    field.wholeUpTo = maxForceOffset;
    return true;
}

/// Marks the bodies that are inside, new ones among them, by the cells that the volume covers.
void ForceVolumeComponent::takeInsiders(const Field &field)
{
    BoundingVolume *const own = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    const auto grid = PartitioningGrid::ofMap(own->findTransform()->findMap()).lookup();
    if (!grid)
        return;
    const CellRect cells =
        CellRect::between(own->getPreviousMin(), own->getPreviousMax(), grid->getColumns(), grid->getRows());
    grid->forEachMovingVolume(cells,
                              [&](const Handle<BoundingVolume> &h)
                              {
                                  const Pushed pushed(h);
                                  if (pushed && pushed.volume != own && VolumeTraits::of(*pushed.volume).takesForces &&
                                      field.contains(pushed.transform->getPosition()))
                                      take(h);
                              });
}

/// Marks a body as inside; one that is new gets an entry, if the volume takes new ones.
void ForceVolumeComponent::take(const Handle<BoundingVolume> &volume)
{
    const auto place = std::lower_bound(projectiles.begin(), projectiles.end(), volume, isBefore);
    if (place != projectiles.end() && place->hBoundingVolume == volume)
    {
        place->inVolume = true;
        return;
    }
    if (!addVolumes)
        return;
    ProjectileInfo info;
    info.hBoundingVolume = volume;
    info.inVolume = true;
    const Pushed pushed(volume);
    if (const RigidBody *const body = pushed ? spinning(pushed) : nullptr)
        info.ownSpin = body->getAngularVelocity().magnitude();
    projectiles.insert(place, info);
}

/// Acts on a body inside.
/// @return false where it is gone
bool ForceVolumeComponent::push(ProjectileInfo &info, const Field &field, Seconds seconds)
{
    const Pushed pushed(info.hBoundingVolume);
    if (!pushed)
        return false;
    const float strength = field.strengthAt(pushed.transform->getPosition());
    info.force = field.force * strength;
    pushed.body->addForce(info.force);
    damp(info, *pushed.body);
    // By the number of the object: neighbours go opposite ways, and every run is the same.
    const float sense = info.hBoundingVolume.getNumber() % 2 ? strength : -strength;
    if (RigidBody *const body = spinning(pushed))
        spin(info, *body, field.direction, sense, seconds);
    return true;
}

/// Brings a body's spin about an axis some way to a part, -1..1, of the volume's.
void ForceVolumeComponent::spin(ProjectileInfo &info, RigidBody &body, const Vec4 &axis, float part,
                                Seconds seconds) const
{
    if (maxAngularVelocity == 0.f)
    {
        easeSpinOut(info, body, seconds);
        return;
    }
    followSpin(info, body, seconds);
    const float lacking = maxAngularVelocity * part - body.getAngularVelocity().dot(axis);
    addSpin(info, body, axis * (lacking * spinPart(seconds)));
    // Two that work against each other give and take for ever; neither has given more than this.
    const float most = std::fabs(maxAngularVelocity) + info.ownSpin, given = info.angularVelocity.magnitude();
    if (given > most)
        info.angularVelocity *= most / given;
}

/// Gives a body that has left its damping back, and step by step its own spin.
/// @return whether that goes on
bool ForceVolumeComponent::letGo(ProjectileInfo &info, Seconds seconds)
{
    const Pushed pushed(info.hBoundingVolume);
    if (!pushed)
        return false;
    info.force = Vec4();
    undamp(info, *pushed.body);
    RigidBody *const body = spinning(pushed);
    return body && easeSpinOut(info, *body, seconds);
}

/// Gives all bodies back what they had, at once.
void ForceVolumeComponent::letGoOfAll()
{
    for (ProjectileInfo &info : projectiles)
    {
        const Pushed pushed(info.hBoundingVolume);
        if (!pushed)
            continue;
        undamp(info, *pushed.body);
        if (RigidBody *const body = spinning(pushed))
            addSpin(info, *body, -info.angularVelocity);
    }
    projectiles.clear();
}

/// Multiplies a body's damping, once: one that somebody has set meanwhile counts as the body's own.
void ForceVolumeComponent::damp(ProjectileInfo &info, PhysicsComponent &body) const
{
    if (!info.damped && isDampedElsewhere(info))
        return;
    if (!info.damped || body.getDamping() != info.givenDamping)
        info.originalDamping = body.getDamping();
    info.damped = true;
    info.givenDamping = std::min(info.originalDamping * dampingMultiplier, 1.f);
    body.setDamping(info.givenDamping);
}

void ForceVolumeComponent::undamp(ProjectileInfo &info, PhysicsComponent &body)
{
    if (info.damped && body.getDamping() == info.givenDamping)
        body.setDamping(info.originalDamping);
    info.damped = false;
}

/// Whether another volume of the level has changed a body's damping; asks the one first that had in the last frame.
bool ForceVolumeComponent::isDampedElsewhere(ProjectileInfo &info) const
{
    if (const auto known = info.damper.lookup(); known && known->damps(info.hBoundingVolume))
        return true;
    info.damper = Handle<ForceVolumeComponent>();
    const auto manager = handle_cast<SimpleManager>(getManager()).lookup();
    if (!manager)
        return false;
    for (const Handle<SimpleComponent> &h : manager->getComponents())
    {
        const Handle<ForceVolumeComponent> other = handle_cast<ForceVolumeComponent>(h);
        if (const auto found = other.lookup(); found && found.ptr != this && found->damps(info.hBoundingVolume))
            info.damper = other;
    }
    return info.damper.isValid();
}

bool ForceVolumeComponent::damps(const Handle<BoundingVolume> &volume) const
{
    const auto place = std::lower_bound(projectiles.begin(), projectiles.end(), volume, isBefore);
    return place != projectiles.end() && place->hBoundingVolume == volume && place->damped;
}
