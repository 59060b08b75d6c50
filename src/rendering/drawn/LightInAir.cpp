#include "rendering/drawn/LightInAir.h"

#include "rendering/drawn/LightComponent.h"

#include "engine/transforms/TransformComponent.h"

#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

LightInAir::LightInAir(const LightComponent &light, TransformComponent &transform)
    : position(transform.getPosition()),
      direction(transform.getTransformationMatrix(TransformComponent::OMIT_SCALE).getColumn(2)),
      color(light.getDiffuseColor()), falloffBegin(light.getLightFalloffBegin()),
      falloffEnd(light.getLightFalloffEnd()), innerCos(std::cos(light.getSpotInnerAngle())),
      outerCos(std::cos(light.getSpotOuterAngle())), coneShape(light.getSpotFalloff() * 0.1f), isSpot(light.getIsSpot())
{
}

bool LightInAir::reaches(const Vec4 &centre, float radius) const
{
    const Vec4 fromLight = centre - position;
    const float reach = falloffEnd + radius;
    const bool behind = isSpot && outerCos >= 0 && fromLight.dot(direction) < -radius;
    return fromLight.dot(fromLight) < reach * reach && !behind;
}

Vec4 LightInAir::scatteredAt(const Vec4 &point, const Vec4 &eye) const
{
    Vec4 fromLight = point - position;
    const float distance = std::sqrt(fromLight.dot(fromLight));
    if (distance >= falloffEnd)
        return Vec4();
    fromLight *= 1.0f / std::max(distance, 1e-4f);
    const float cone = isSpot ? coneAt(fromLight) : 1.0f;
    if (cone <= 0)
        return Vec4();
    const float near = saturate((falloffEnd - distance) / std::max(falloffEnd - falloffBegin, 1e-4f));

    const Vec4 toEye = eye - point;
    const float onward = fromLight.dot(toEye) / std::max(std::sqrt(toEye.dot(toEye)), 1e-4f);
    const float glare = std::max(onward, 0.0f);
    return color * (near * near * cone * (1.0f + glare * glare * glare));
}

float LightInAir::coneAt(const Vec4 &fromLight) const
{
    const float within = saturate((fromLight.dot(direction) - outerCos) / std::max(innerCos - outerCos, 1e-4f));
    const float t = within / std::max(within + coneShape * (1 - within), 1e-4f);
    return t * t * (3 - 2 * t);
}
