#include "ai/perception/LightAt.h"

#include "ai/perception/Sightline.h"

#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "object/tree/ObjectMap.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/frame/GraphicsManager2.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int MOST_SHADOWS = 8;         ///< segments of one question
constexpr float OFF_THE_SURFACE = .02f; ///< metres that a surface's light is looked for above it

float luminanceOf(const Vec4 &color)
{
    return 0.2126f * color.r + 0.7152f * color.g + 0.0722f * color.b;
}

/// A map with what lights it, as long as no object is born or dies.
struct LitMap
{
    Handle<MapRootEntity> map;
    GraphicsManager2 *graphics = nullptr; ///< null: nothing is drawn
    PartitioningGrid *grid = nullptr;     ///< null: nothing casts shadows
    std::uint64_t objectChanges = 0;      ///< births and deaths that these take account of

    bool isCurrent(const Handle<MapRootEntity> &asked) const
    {
        return map == asked && objectChanges == ObjectMap().getChangeCount();
    }
    void find(const Handle<MapRootEntity> &asked)
    {
        static const String graphicsName = SCS("graphics2Manager");
        map = asked;
        objectChanges = ObjectMap().getChangeCount();
        const auto root = asked.lookup();
        const auto level = root ? root->getAncestorOfType<Coordinator>().lookup() : Handle<Coordinator>::Result{};
        graphics = level ? handle_cast<GraphicsManager2>(level->getChild(graphicsName)).lookup().ptr : nullptr;
        grid = PartitioningGrid::ofMap(asked).lookup().ptr;
    }
};

const LitMap &litMap(const Handle<MapRootEntity> &map)
{
    static LitMap last;
    if (!last.isCurrent(map))
        last.find(map);
    return last;
}

/// A place that asks for its light.
class Question
{
public:
    Question(const LitMap &lit, const Vec4 &place, const Vec4 *normal)
        : lit(lit), normal(normal), place(normal ? place + *normal * OFF_THE_SURFACE : place)
    {
    }

    float answer()
    {
        float sum = ambient();
        const auto graph = lit.graphics->getSceneGraph().lookup();
        if (!graph)
            return sum;
        for (const Handle<GraphicsComponent2> &h : graph->getLayerComponents(SceneGraph::LIGHT))
        {
            const auto light = handle_cast<LightComponent>(h).lookup();
            const float part = light && light->getVisible() ? partOf(*light) : 0.f;
            sum += std::isfinite(part) ? part : 0.f;
        }
        return std::max(sum, 0.f);
    }

private:
    /// More from above, as "test.fx" shapes it; what has no side gets what stands upright does.
    float ambient() const
    {
        const Vec4 light = lit.graphics->getAmbientLight();
        const float up = normal ? normal->y * 0.5f + 0.5f : 0.5f;
        const Vec4 cool(lerp(1.02f, 0.90f, up), lerp(0.92f, 0.96f, up), lerp(0.88f, 1.18f, up));
        const float sum = luminanceOf(light * cool) * lerp(0.62f, 1.55f, up);
        return std::isfinite(sum) ? sum : 0.f;
    }

    float partOf(const LightComponent &light)
    {
        const float share = light.shareAt(place);
        if (!(share > 0.f))
            return 0.f;
        const Vec4 from = light.getPlace();
        const float facing = normal ? facingTo(from) : 1.f;
        if (!(facing > 0.f) || (light.drawsShadows() && isInShadow(light, from)))
            return 0.f;
        return luminanceOf(light.getDiffuseColor()) * share * facing;
    }

    float facingTo(const Vec4 &from) const
    {
        Vec4 towards = from - place;
        towards.w = 0.f;
        return normal->dot(towards) / std::max(towards.magnitude(), 1e-4f);
    }

    /// Looks from where the light's own shadow map begins to the place.
    bool isInShadow(const LightComponent &light, const Vec4 &from)
    {
        if (shadows == MOST_SHADOWS)
            return false;
        ++shadows;
        Vec4 way = place - from;
        way.w = 0.f;
        const float length = way.magnitude(), skipped = light.getShadowNear();
        if (!(length > skipped))
            return false;
        return !isFreeBetween(lit.grid, ShadowFilter(place), from + way * (skipped / length), place);
    }

    const LitMap &lit;
    const Vec4 *normal; ///< null: no surface
    Vec4 place;
    int shadows = 0; ///< segments so far
};

float ask(const Handle<MapRootEntity> &map, const Vec4 &place, const Vec4 *normal)
{
    const LitMap &lit = litMap(map);
    return lit.graphics && isFinite(place) && (!normal || isFinite(*normal)) ? Question(lit, place, normal).answer()
                                                                             : 0.f;
}

} // namespace

float lightAt(const Handle<MapRootEntity> &map, Vec4 place)
{
    place.w = 1.f;
    return ask(map, place, nullptr);
}

float lightOn(const Handle<MapRootEntity> &map, Vec4 place, Vec4 normal)
{
    place.w = 1.f;
    normal.w = 0.f;
    return ask(map, place, &normal);
}
