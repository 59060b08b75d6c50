#include "engine/transforms/TransformComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/levels/MapRootEntity.h"
#include "object/reflection/EnumText.h"

#include "foundation/Assertions.h"

#include <cmath>

namespace
{
constexpr float AXIS_LENGTH = 1.f; ///< metres of a drawn axis

Handle<TransformComponent> transformOf(const Handle<MapRootEntity> &map)
{
    auto root = map.lookup();
    return root ? handle_cast<TransformComponent>(root->getComponent(ComponentKeys::transform))
                : Handle<TransformComponent>();
}
} // namespace

void TransformComponent::onLoadComplete()
{
    ready = true;
}

void TransformComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawTransformAxesEnabled())
        return;
    // By the numbers as they stand, like what is drawn of the object itself.
    const Matrix4 axes = getTransformationMatrix(OMIT_SCALE);
    const Vec4 origin = axes.getColumn(3);
    for (int axis = 0; axis < 3; ++axis)
    {
        Vec4 color(0.f, 0.f, 0.f, 1.f);
        color[axis] = 1.f;
        collector->addLine3D(origin, origin + axes.getColumn(axis) * AXIS_LENGTH, color);
    }
}

void TransformComponent::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    auto entity = getParent().lookup();
    const bool inMap = entity && handle_cast<MapRootEntity>(entity->getParent()).isValid();
    nativeSpace = inMap ? MAP_SPACE : WORLD_SPACE;
}

Vec4 TransformComponent::getPositionWithFlags(unsigned flags)
{
    Vec4 result = position;
    if (flags & USE_OFFSET)
        result -= scale * (orientation.generateRotation() * modelOriginOffset);
    if (flags & INVERT)
        result.negate();
    return result;
}

Matrix4 TransformComponent::getTransformationMatrix(unsigned flags)
{
    const bool inverted = flags & INVERT;
    const bool transposed = flags & TRANSPOSE;
    const bool reversed = inverted != transposed;

    Matrix4 s, r, t;
    if (!(flags & OMIT_SCALE))
    {
        if (inverted)
            s.scale(1.f / scale.x, 1.f / scale.y, 1.f / scale.z);
        else
            s.scale(scale.x, scale.y, scale.z);
    }
    if (!(flags & OMIT_ROTATE))
    {
        r = orientation.generateRotation();
        if (reversed)
            r = r.transpose();
    }
    if (!(flags & OMIT_TRANSLATE))
    {
        t.translate(getPositionWithFlags(flags & ~unsigned(SPACES_MASK)));
        if (transposed)
            t = t.transpose();
    }
    return reversed ? s * r * t : t * r * s;
}

Matrix4 TransformComponent::getCameraMatrix(unsigned flags)
{
    return getTransformationMatrix(flags);
}

Vec4 TransformComponent::getDirection()
{
    const Vec4 forward = orientation.generateRotation().getColumn(2);
    return Vec4(forward.x, -forward.y, forward.z, 0.f);
}

Quaternion TransformComponent::getDirectionQuaternion()
{
    return Quaternion::fromDirectionWithAdaptingUpVector(getDirection());
}

Quaternion TransformComponent::getAngleQuaternion()
{
    return orientation * getDirectionQuaternion().inverse();
}

float TransformComponent::getAngle()
{
    Quaternion angle = getAngleQuaternion();
    angle.normalize();
    return 2.f * std::acos(angle.r);
}

void TransformComponent::setAngle(float val)
{
    // The angle depends on the orientation, which may not have been loaded yet.
    if (!ready)
        return;
    orientation = getDirectionQuaternion() * Quaternion(std::cos(val / 2.f), 0.f, 0.f, std::sin(val / 2.f));
    orientation.normalize();
}

Handle<MapRootEntity> TransformComponent::findMap()
{
    if (nativeSpace == MAP_SPACE)
    {
        auto entity = getParent().lookup();
        return entity ? handle_cast<MapRootEntity>(entity->getParent()) : Handle<MapRootEntity>();
    }
    if (nativeSpace == WORLD_SPACE)
    {
        auto coordinator = getAncestorOfType<Coordinator>().lookup();
        return coordinator ? coordinator->findMap(position) : Handle<MapRootEntity>();
    }
    KV_ERROR("Unable to look up map for transforms with native space %s", enumToString(nativeSpace).toCString());
    return Handle<MapRootEntity>();
}

Matrix4 TransformComponent::getSpaceChangeTransform(CoordinateSpace space, unsigned flags)
{
    if (space == nativeSpace)
        return Matrix4();

    const bool intoMap = nativeSpace == WORLD_SPACE && space == MAP_SPACE;
    const bool intoWorld = nativeSpace == MAP_SPACE && space == WORLD_SPACE;
    if (!intoMap && !intoWorld)
    {
        KV_ERROR("Unsupported space change: %s -> %s", enumToString(nativeSpace).toCString(),
                 enumToString(space).toCString());
        return Matrix4();
    }
    auto map = transformOf(findMap()).lookup();
    if (!map)
        return Matrix4();
    const unsigned mapFlags = (flags & (TRANSPOSE | INVERT)) | OMIT_SCALE;
    return map->getTransformationMatrix(intoMap ? mapFlags ^ INVERT : mapFlags);
}
