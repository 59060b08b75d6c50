#include "rendering/drawn/DustParticleSystemComponent.h"

#include "rendering/frame/GraphicsManager2.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimeSystem.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float longestStep = 0.1f; ///< seconds; after a pause the motes go on from where they were
constexpr float rim = 0.12f;        ///< share of the box, on each side, within which motes fade in and out
constexpr float faintest = 0.002f;  ///< light below which a mote is not drawn

/// Names that stay the same from batch to batch, made once.
struct DustNames
{
    const String defaultSet = SCS("Default");
    const GraphicsSystem2::ShaderID shader{SCS("test.fx"), SCS("PointParticles")};
    const String particleColor = SCS("particleColor");
    const String particleSize = SCS("particleSize");
};

/// Air that swirls without ever gathering: a flow without sources. About length 1.
Vec4 swirl(const Vec4 &place, float time)
{
    const float x = place.x * 1.9f + time * 0.11f, y = place.y * 1.7f - time * 0.13f, z = place.z * 2.3f + time * 0.07f;
    return Vec4(std::sin(z) + std::cos(y), std::sin(x) + std::cos(z), std::sin(y) + std::cos(x), 0) * 0.58f;
}

/// A number within its bounds; what is no number becomes the lower one.
float bounded(float val, float least, float most)
{
    return val > least ? std::min(val, most) : least;
}

Vec4 eyeOf(const Handle<AbstractManager> &hManager, Vec4 &ahead)
{
    const auto manager = handle_cast<GraphicsManager2>(hManager).lookup();
    TransformComponent *const transform =
        manager ? componentOf<TransformComponent>(manager->getCurrentCamera(), ComponentKeys::transform) : nullptr;
    if (!transform)
        return Vec4(0, 0, 0, 1);
    ahead = transform->getTransformationMatrix(TransformComponent::OMIT_SCALE).getColumn(2);
    return transform->getPosition();
}

/// From 0 to below 1.
float thrown(std::minstd_rand &dice)
{
    return static_cast<float>(dice() & 0xFFFF) / 65536.0f;
}

} // namespace

/// The box of the entity's transform, with places in it as shares of its extents around its centre: -0.5 to 0.5.
class DustParticleSystemComponent::Box
{
public:
    explicit Box(TransformComponent &transform)
    {
        const Matrix4 toWorld = transform.getTransformationMatrix();
        centre = toWorld.getColumn(3);
        for (int i = 0; i < 3; ++i)
        {
            axes[i] = toWorld.getColumn(i);
            const float squared = axes[i].dot(axes[i]);
            inverses[i] = squared > 1e-12f ? axes[i] * (1.0f / squared) : Vec4();
            radius += squared * 0.25f;
        }
        radius = std::sqrt(radius);
    }

    Vec4 toWorld(const Vec4 &share) const { return centre + axes[0] * share.x + axes[1] * share.y + axes[2] * share.z; }
    Vec4 toShare(const Vec4 &place) const
    {
        const Vec4 offset = place - centre;
        return Vec4(inverses[0].dot(offset), inverses[1].dot(offset), inverses[2].dot(offset), 0);
    }
    Vec4 somewhere(std::minstd_rand &dice) const
    {
        const float x = thrown(dice), y = thrown(dice), z = thrown(dice);
        return toWorld(Vec4(x - 0.5f, y - 0.5f, z - 0.5f, 0));
    }
    /// A place inside as it is; the one that a place outside comes in again at.
    Vec4 wrapped(const Vec4 &place, std::minstd_rand &dice) const
    {
        const Vec4 share = toShare(place);
        const Vec4 turns(std::floor(share.x + 0.5f), std::floor(share.y + 0.5f), std::floor(share.z + 0.5f), 0);
        if (turns.x == 0 && turns.y == 0 && turns.z == 0)
            return place;
        return std::isfinite(share.x + share.y + share.z) ? toWorld(share - turns) : somewhere(dice);
    }
    /// 1 inside, falling to 0 at the sides.
    float presence(const Vec4 &place) const
    {
        Vec4 share = toShare(place);
        share.absoluteValue();
        return saturate((0.5f - std::max({share.x, share.y, share.z})) / rim);
    }

    Vec4 centre;
    float radius = 0; ///< of the sphere around it, metres

private:
    Vec4 axes[3];     ///< world space, as long as the box
    Vec4 inverses[3]; ///< from a world offset to the share along each axis; zero where the box is flat
};

void DustParticleSystemComponent::onLoadComplete()
{
    if (!mesh.isValid())
        mesh = makeDynamicMesh(*this);
    expectLayer({SceneGraph::WORLD_DEBUG});
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams DustParticleSystemComponent::batchGetParams()
{
    static const DustNames names;
    const auto manager = handle_cast<GraphicsManager2>(getManager()).lookup();
    // Drawn behind the combination, so what that dissolves has to be taken away here.
    const float shown = manager ? 1.0f - saturate(manager->getDissolveAmount()) : 1.0f;
    GraphicsSystem2::BatchRenderParams params;
    params.mesh = mesh;
    params.shaders.insert(names.defaultSet, names.shader);
    params.shaderConstants.emplace_back(names.particleColor, Vec4(color.r, color.g, color.b, color.a * shown));
    params.shaderConstants.emplace_back(names.particleSize, size);
    return params;
}

void DustParticleSystemComponent::objectDraw(BatchProxy &batch) {}

int DustParticleSystemComponent::objectGetInstanceCount()
{
    TransformComponent *transform = expectTransform();
    vertices.clear();
    if (!transform || count == 0)
        return 0;
    const Box box(*transform);
    if (!isInView(box))
        return 0;
    findLights(box);
    return lights.empty() ? 0 : 1;
}

ErrorCode DustParticleSystemComponent::batchPreRender()
{
    TransformComponent *transform = findTransform();
    if (!transform)
        return ErrorCode::BAD_HANDLE;
    const Box box(*transform);
    fitCount(box);
    drift(box, takeElapsedTime());
    light(box);
    if (const auto asset = mesh.lookup())
        asset->setMeshData(vertices, Mesh::IndexBufferType(), MPT_POINTS);
    return ErrorCode::SUCCESS;
}

bool DustParticleSystemComponent::isInView(const Box &box) const
{
    Vec4 ahead;
    const Vec4 offset = box.centre - eyeOf(getManager(), ahead);
    const float reach = drawDistance + box.radius;
    return offset.dot(offset) <= reach * reach && offset.dot(ahead) >= -box.radius;
}

void DustParticleSystemComponent::findLights(const Box &box)
{
    lights.clear();
    const auto sceneGraph = getSceneGraph().lookup();
    if (!sceneGraph)
        return;
    for (const Handle<GraphicsComponent2> &h : sceneGraph->getLayerComponents(SceneGraph::LIGHT))
    {
        const auto light = handle_cast<LightComponent>(h).lookup();
        const auto transform =
            light ? handle_cast<TransformComponent>(light->getSibling(ComponentKeys::transform)).lookup()
                  : Handle<TransformComponent>::Result{};
        if (!transform || !light->getVisible() || light->isDying())
            continue;
        const LightInAir inAir(*light, *transform);
        if (inAir.reaches(box.centre, box.radius))
            lights.push_back(inAir);
    }
}

/// Makes new motes anywhere in the box, or takes the youngest away.
void DustParticleSystemComponent::fitCount(const Box &box)
{
    const auto wanted = static_cast<std::size_t>(count);
    if (particles.size() > wanted)
        particles.resize(wanted);
    particles.reserve(wanted);
    vertices.reserve(wanted);
    while (particles.size() < wanted)
    {
        const Vec4 place = box.somewhere(dice);
        const float chance = thrown(dice);
        // Few large ones among many small.
        const float shine = 0.25f + 0.75f * thrown(dice);
        particles.push_back({place, 0.6f + 1.2f * chance * chance * chance, shine, 0.02f + 0.18f * thrown(dice)});
    }
}

/// Seconds that the level's clock has run since the last step; 0 in a stopped level.
float DustParticleSystemComponent::takeElapsedTime()
{
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return 0;
    const TimerTicks now = coordinator->getTimer(TimerNames::master).getValue();
    const Seconds seconds = getSystemDeref<TimeSystem>().toSeconds(now - lastTicks);
    lastTicks = now;
    return coordinator->getLoopState() == Coordinator::LOOP_RUN
               ? bounded(static_cast<float>(seconds), 0.0f, longestStep)
               : 0.0f;
}

void DustParticleSystemComponent::drift(const Box &box, float seconds)
{
    swirlTime += seconds;
    const float way = driftSpeed * seconds;
    for (Particle &particle : particles)
    {
        Vec4 carried = swirl(particle.position, swirlTime);
        carried.y -= particle.weight;
        particle.position = box.wrapped(particle.position + carried * way, dice);
    }
}

void DustParticleSystemComponent::light(const Box &box)
{
    Vec4 ahead;
    const Vec4 eye = eyeOf(getManager(), ahead);
    vertices.clear();
    for (const Particle &particle : particles)
    {
        Vec4 sum;
        for (const LightInAir &light : lights)
            sum += light.scatteredAt(particle.position, eye);
        sum *= box.presence(particle.position) * particle.shine;
        if (std::max({sum.r, sum.g, sum.b}) < faintest)
            continue;
        const Vec4 &p = particle.position;
        vertices.push_back({{p.x, p.y, p.z}, {sum.r, sum.g, sum.b}, {0, 0, 0}, {0, 0, 0}, {particle.size, 0}});
    }
}

void DustParticleSystemComponent::setCount(int val)
{
    count = std::clamp(val, 0, 20000);
}

void DustParticleSystemComponent::setSize(float val)
{
    size = bounded(val, 0.0005f, 0.1f);
}

void DustParticleSystemComponent::setDriftSpeed(float val)
{
    driftSpeed = bounded(val, 0.0f, 2.0f);
}

void DustParticleSystemComponent::setDrawDistance(float val)
{
    drawDistance = bounded(val, 0.0f, 1000.0f);
}
