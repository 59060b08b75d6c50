#include "physics/acoustics/ReverbVolume.h"

#include "physics/volumes/FiniteProperty.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/PathBelow.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{
const Vec4 COLOR(0.4f, 0.7f, 0.6f, 1.f);
} // namespace

ReverbVolume::ReverbVolume() : preset(ReverbPreset::find(SCS("smallRoom"))) {}

void ReverbVolume::onLoadComplete()
{
    if (!(getContent() > 0.f))
        KV_LOGF(Logger_::I_WARNING, "%s has an extent of 0 and nobody is ever inside; set its size in metres.",
                pathBelow(nullptr, *this).toCString());
}

void ReverbVolume::setSize(Vec4 val)
{
    if (!isUsable(*this, "size", val))
        return;
    if (val.x < 0.f || val.y < 0.f || val.z < 0.f)
        KV_LOGF(Logger_::I_ERROR, "%s cannot have the size %s and keeps its own; no extent may be negative.",
                pathBelow(nullptr, *this).toCString(), val.toString().toCString());
    else
        size = val;
}

String ReverbVolume::getPreset() const
{
    return String::copyFrom(preset->name);
}

void ReverbVolume::setPreset(String name)
{
    preset = ReverbPreset::choose(*this, name, preset);
}

void ReverbVolume::setFade(float val)
{
    if (!isUsable(*this, "fade", val))
        return;
    if (val < 0.f)
        KV_LOGF(Logger_::I_ERROR, "%s cannot fade within %g m and keeps %g m; set fade to 0 or more.",
                pathBelow(nullptr, *this).toCString(), static_cast<double>(val), static_cast<double>(fade));
    else
        fade = val;
}

float ReverbVolume::shareAt(Vec4 point)
{
    const auto *const place = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!place)
        return 0.f;
    Vec4 away = point - place->getPosition();
    away.w = 0.f;
    const Vec4 own = away * place->getOrientation().generateRotation(); // a row vector's product takes the turn back
    const Vec4 half = size * 0.5f;
    const float inside = std::min({half.x - std::fabs(own.x), half.y - std::fabs(own.y), half.z - std::fabs(own.z)});
    if (!(inside > 0.f))
        return 0.f;
    return inside < fade ? inside / fade : 1.f;
}

void ReverbVolume::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    const auto *const place = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!collector || !place || !config.getDebugDrawEnabled() || !config.getDebugDrawSoundWays())
        return;
    Matrix4 toWorld = place->getOrientation().generateRotation();
    for (int row = 0; row < 3; ++row)
        toWorld[row][3] = place->getPosition()[row];
    drawBoxEdges(*collector, findBoxCorners(toWorld, size), COLOR);
    collector->addText3D(place->getPosition(), getPreset(), COLOR);
}
