#include "tools/editor/RigidMove.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/transforms/ParentTransform.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/tree/TreeWalk.h"
#include "physics/bodies/RigidBody.h"

#include "foundation/Finite.h"

#include <algorithm>

namespace
{
bool isBelow(Handle<Object> object, const std::vector<Handle<Object>> &roots)
{
    for (auto step = object.lookup(); step; step = step->getParent().lookup())
        if (std::find(roots.begin(), roots.end(), step->getHandle()) != roots.end())
            return true;
    return false;
}
} // namespace

bool RigidMotion::isSound() const
{
    return isFinite(by) && isFinite(turn) && isFinite(pivot) && isFinite(scale) && scale.x > 0.f && scale.y > 0.f &&
           scale.z > 0.f;
}

Vec4 RigidMotion::moved(const Vec4 &place) const
{
    Vec4 from = (place - pivot) * scale;
    from.w = 0.f;
    Vec4 result = pivot + turn.generateRotation() * from + by;
    result.w = place.w;
    return result;
}

void RigidMove::clear()
{
    places.clear();
    roots.clear();
}

void RigidMove::take(const Handle<Object> &root)
{
    const auto top = root.lookup();
    if (!top || isBelow(root, roots))
        return;
    roots.push_back(root);
    const std::size_t before = places.size();
    TreeWalk walk(*top);
    while (Object *const object = walk.next())
        if (object->getType()->isSubclassOf(TransformComponent::staticType))
            takeOne(handle_cast<TransformComponent>(object->getHandle()), places.size() == before);
}

void RigidMove::takeOne(const Handle<TransformComponent> &hTransform, bool isRoot)
{
    const auto transform = hTransform.lookup();
    Place place;
    place.transform = hTransform;
    const Handle<AbstractComponent> follower = transform->getSibling(ComponentKeys::parentFollower);
    place.follower = handle_cast<ParentFollowerComponent>(follower);
    place.offset = handle_cast<TransformOffsetComponent>(follower);
    place.body = handle_cast<PhysicsComponent>(transform->getSibling(ComponentKeys::physics));
    place.position = transform->getPosition();
    place.orientation = transform->getOrientation();
    place.scale = transform->getScale();
    place.isRoot = isRoot;
    if (const auto kept = place.follower.lookup())
    {
        place.positionOffset = kept->getPositionOffset();
        place.orientationOffset = kept->getOrientationOffset();
    }
    if (const auto kept = place.offset.lookup())
    {
        place.positionOffset = kept->getPositionOffset();
        place.orientationOffset = kept->getOrientationOffset();
    }
    places.push_back(place);
}

void RigidMove::apply(const RigidMotion &motion) const
{
    if (!motion.isSound())
        return;
    for (const Place &place : places)
    {
        const auto transform = place.transform.lookup();
        if (!transform)
            continue;
        transform->setPosition(motion.moved(place.position));
        transform->setOrientation(motion.turn * place.orientation);
        transform->setScale(place.scale * motion.scale);
        moveFollowers(place, motion);
        rest(place);
    }
}

/// An offset from a parent that comes along is turned and scaled with it; one from a parent that stays takes it all up.
void RigidMove::moveFollowers(const Place &place, const RigidMotion &motion)
{
    const auto follower = place.follower.lookup();
    const auto offset = place.offset.lookup();
    if (!follower && !offset)
        return;
    SimpleComponent &any = follower ? static_cast<SimpleComponent &>(*follower) : *offset;
    const TransformComponent *const parent = parentTransform(any);
    if (place.isRoot && parent)
    {
        const Vec4 away = motion.moved(place.position) - parent->getPosition();
        const Quaternion parentTurn = parent->getOrientation();
        const Quaternion turn = parentTurn.inverse() * (motion.turn * place.orientation);
        if (follower)
        {
            follower->setPositionOffset(Vec4(away.x, away.y, away.z, 0.f));
            follower->setOrientationOffset(turn);
            return;
        }
        offset->setPositionOffset(parentTurn.inverse().generateRotation() * Vec4(away.x, away.y, away.z, 0.f));
        offset->setOrientationOffset(turn);
        return;
    }
    const Vec4 scaled = place.positionOffset * motion.scale;
    if (follower)
        follower->setPositionOffset(motion.turn.generateRotation() * scaled);
    else
        offset->setPositionOffset(scaled);
}

void RigidMove::restore() const
{
    for (const Place &place : places)
    {
        const auto transform = place.transform.lookup();
        if (!transform)
            continue;
        transform->setPosition(place.position);
        transform->setOrientation(place.orientation);
        transform->setScale(place.scale);
        if (const auto follower = place.follower.lookup())
        {
            follower->setPositionOffset(place.positionOffset);
            follower->setOrientationOffset(place.orientationOffset);
        }
        if (const auto offset = place.offset.lookup())
        {
            offset->setPositionOffset(place.positionOffset);
            offset->setOrientationOffset(place.orientationOffset);
        }
        rest(place);
    }
}

void RigidMove::rest(const Place &place)
{
    putToRest(place.body);
}

void putToRest(const Handle<PhysicsComponent> &hBody)
{
    const auto body = hBody.lookup();
    if (!body)
        return;
    body->setVelocity(Vec4());
    body->clearAccumulator();
    const auto rigid = handle_cast<RigidBody>(hBody).lookup();
    if (!rigid)
        return;
    rigid->setAngularVelocity(Vec4());
    if (rigid->getTransformComponent().isValid())
        rigid->calculateMatrices();
}
