#include "gameplay/creatures/DampBody.h"

#include "ai/perception/Sightline.h"
#include "assets/models/DynamicMeshAsset.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/FiniteProperty.h"

#include "foundation/Finite.h"
#include "foundation/PerlinNoise.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int SIDES_A_FRAME = 8;     ///< that are felt for: each is known anew after five frames
constexpr float FARTHEST = 1.4f;     ///< metres that it feels
constexpr float SKIN = 0.03f;        ///< metres between it and a wall
constexpr float FEELS_AT = 0.15f;    ///< metres above the ground
constexpr float LYING = 0.16f;       ///< metres: its height when it lies
constexpr float STANDING = 1.75f;    ///< metres: its height reared up
constexpr float RUN = 2.5f;          ///< metres a second at which it flows as fast as it can
constexpr float MOST_SQUEEZE = 1.6f; ///< factor of its height in a narrow place
constexpr float FASTEST = 30.f;      ///< metres a second: what comes along faster does not flow
constexpr float LUMP = 1.9f;         ///< lumps a metre

/// Part of a way that is gone in a time by what eases at a rate.
float eased(float rate, float seconds)
{
    return 1.f - std::exp(-rate * seconds);
}

float smooth(float x)
{
    x = std::clamp(x, 0.f, 1.f);
    return x * x * (3.f - 2.f * x);
}

MeshVector3 toMesh(const Vec4 &v)
{
    return {v.x, v.y, v.z};
}

Vec4 aroundAxis(int side)
{
    const float angle = 2.f * PI * static_cast<float>(side) / DampBody::SIDES;
    return Vec4(std::sin(angle), 0.f, std::cos(angle), 0.f);
}

/// The noise repeats after 256; wrapped, a place at the end of the world has a cell like any other.
float noiseAt(const Vec4 &place)
{
    static const PerlinNoise noise;
    const auto wrapped = [](float part) { return std::remainder(part, 256.f); };
    return noise.generateNoise(Vec4(wrapped(place.x), wrapped(place.y), wrapped(place.z), 0.f));
}

} // namespace

void DampBody::doFrame()
{
    OnGround::doFrame();
    const auto mesh = hMesh.lookup();
    const TransformComponent *const own = transform();
    const float seconds = frameSeconds();
    if (!mesh || !own || !isFinite(own->getPosition()) || (!(seconds > 0.f) && !vertices.empty()))
        return;
    time += static_cast<Seconds>(seconds);
    feelAround(*own);
    shape(flowOn(*own, seconds), *own);
    findNormals();
    mesh->setMeshData(vertices, indices);
}

/// Feels for what stands around, some directions a frame; all of them in the first one.
void DampBody::feelAround(const TransformComponent &transform)
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    PartitioningGrid *const grid = PartitioningGrid::ofMap(getAncestorOfType<MapRootEntity>()).lookup().ptr;
    if (!grid || !level)
        return room.fill(FARTHEST);
    const SightFilter filter(getParent(), level->getChild(WellKnownPaths::player));
    const Vec4 from = transform.getPosition() + Vec4(0.f, FEELS_AT - getGroundBelow(), 0.f, 0.f);
    for (int felt = 0; felt < (hasFelt ? SIDES_A_FRAME : SIDES); ++felt)
    {
        const SegmentHit hit = grid->checkSegmentFor(filter, from, aroundAxis(nextSide) * FARTHEST);
        const float free = hit.volume.isValid() ? hit.collision.t * FARTHEST : FARTHEST;
        float &known = room[static_cast<std::size_t>(nextSide)];
        known = hasFelt ? std::min(free, known + 0.12f) : free;
        nextSide = (nextSide + 1) % SIDES;
    }
    hasFelt = true;
}

DampBody::Flow DampBody::flowOn(const TransformComponent &transform, float seconds)
{
    Flow flow;
    flow.place = transform.getPosition();
    if (lastPlace.w == 0.f)
        lastPlace = flow.place;
    if (seconds > 0.f)
    {
        Vec4 now = (flow.place - lastPlace) * (1.f / seconds);
        now.y = now.w = 0.f;
        if (!(now.magnitude() < FASTEST))
            now = Vec4(); // it was put there
        velocity = velocity + (now - velocity) * eased(6.f, seconds);
        reared += (rearing - reared) * eased(2.2f, seconds);
        boiled += (boiling - boiled) * eased(9.f, seconds);
    }
    lastPlace = Vec4(flow.place.x, flow.place.y, flow.place.z, 1.f);
    const float speed = velocity.magnitude();
    if (speed > 0.1f)
        facing = velocity * (1.f / speed);
    flow.heading = facing;
    flow.hurry = smooth(speed / RUN);
    // What stands up is narrower than what lies.
    flow.radius = girth * (1.25f - 0.45f * reared);
    return flow;
}

/// How far it reaches over the ground in a direction: lumps, fingers ahead, a tail behind, and the walls.
float DampBody::reachTo(const Flow &flow, const Vec4 &direction) const
{
    const Vec4 side(flow.heading.z, 0.f, -flow.heading.x, 0.f);
    const float ahead = direction.dot(flow.heading);
    const float angle = std::atan2(direction.dot(side), ahead);
    const float now = static_cast<float>(time);
    const Vec4 rim = (flow.place + direction * flow.radius) * LUMP;
    float reach = flow.radius * (1.f + 0.28f * noiseAt(Vec4(rim.x, 0.35f * now, rim.z, 0.f)));
    for (int finger = 0; finger < 5; ++finger)
    {
        const float number = static_cast<float>(finger);
        const float at = 2.4f * std::sin(2.1f * number + 0.23f * now + 0.9f * std::sin(0.7f * now + number));
        const float off = std::remainder(angle - at, 2.f * PI) / 0.24f;
        const float feeling = 0.5f + 0.5f * std::sin(1.3f * now + 2.6f * number);
        reach += flow.radius * (0.22f + 0.5f * flow.hurry * std::max(ahead, 0.f)) * feeling * std::exp(-off * off);
    }
    return reach + flow.radius * 0.45f * flow.hurry * std::max(-ahead, 0.f);
}

DampBody::Band DampBody::bandOf(int ring) const
{
    Band band;
    band.ring = ring;
    band.height = static_cast<float>(ring) / RINGS;
    band.body = std::pow(std::max(0.f, std::cos(0.5f * PI * band.height)), 0.8f);
    band.up = tallness * std::pow(std::sin(0.5f * PI * band.height), ring <= 1 ? 2.f : 1.2f);
    band.sway = 0.10f * band.up * std::sin(1.1f * static_cast<float>(time) + 2.f * band.height);
    return band;
}

Vec4 DampBody::pointOf(const Flow &flow, const Spoke &spoke, const Band &band) const
{
    const auto &[ring, height, body, up, sway] = band;
    const Vec4 &direction = spoke.direction;
    const float now = static_cast<float>(time);
    // A thin foot runs out over the ground; above it the heap closes to its crown.
    const float foot = ring == 0 ? 1.22f : ring == 1 ? 1.06f : 0.94f;
    const float out = std::min(spoke.reach * foot * body, std::max(spoke.room - SKIN, 0.04f));
    Vec4 point = direction * out + Vec4(0.f, up, 0.f, 0.f);
    // It runs down its own sides, faster as it boils.
    const Vec4 skin = (flow.place + point) * (LUMP * 1.7f);
    const float run = noiseAt(Vec4(skin.x, skin.y + (0.8f + 3.f * boiled) * now, skin.z, 0.f));
    const float ripple = noiseAt(Vec4(2.6f * skin.x, 2.6f * skin.y + 1.7f * now, 2.6f * skin.z, 0.f));
    const float swell = (0.17f + 0.10f * boiled) * run + (0.05f + 0.08f * boiled) * ripple;
    point = point + direction * (swell * std::min(1.f, 2.5f * height) * body * std::min(1.f, out / 0.3f));
    point.y += 0.45f * swell * std::min(1.f, 1.5f * height) * std::min(1.f, tallness);
    // It leans where it goes, and sways where it stands.
    const float lean = up * (0.25f * reared + 0.35f * flow.hurry) * height;
    point = point + flow.heading * lean + Vec4(flow.heading.z, 0.f, -flow.heading.x, 0.f) * sway;
    point.y = std::max(point.y, ring == 0 ? 0.004f : 0.012f);
    return point;
}

void DampBody::shape(const Flow &flow, const TransformComponent &transform)
{
    prepareMesh();
    float free = 0.f;
    for (const float each : room)
        free += std::min(1.f, each / flow.radius) / SIDES;
    const float squeezed = std::clamp(1.f / std::max(free, 0.1f), 1.f, MOST_SQUEEZE);
    const float breath = 1.f + 0.04f * std::sin(1.7f * static_cast<float>(time));
    tallness = (LYING + (STANDING - LYING) * smooth(reared)) * squeezed * breath * (1.f - 0.25f * boiled);
    std::array<Spoke, SIDES> spokes;
    for (int side = 0; side < SIDES; ++side)
    {
        Spoke &spoke = spokes[static_cast<std::size_t>(side)];
        spoke.direction = aroundAxis(side);
        spoke.reach = reachTo(flow, spoke.direction);
        spoke.room = room[static_cast<std::size_t>(side)];
    }
    const Matrix4 toOwn = transform.getOrientation().inverse().generateRotation();
    const Vec4 ground(0.f, -getGroundBelow(), 0.f, 0.f);
    auto *vertex = vertices.data();
    for (int ring = 0; ring < RINGS; ++ring)
    {
        const Band band = bandOf(ring);
        for (const Spoke &spoke : spokes)
            vertex++->position = toMesh(toOwn * (pointOf(flow, spoke, band) + ground));
    }
    vertex->position = toMesh(toOwn * (pointOf(flow, spokes[0], bandOf(RINGS)) + ground));
}

/// Normals from the neighbours around and above.
void DampBody::findNormals()
{
    prepareMesh();
    const auto at = [this](int ring, int side)
    {
        const std::size_t number = ring >= RINGS ? vertices.size() - 1 : vertexAt(ring, (side + SIDES) % SIDES);
        const MeshVector3 &p = vertices[number].position;
        return Vec4(p.x, p.y, p.z, 0.f);
    };
    for (int ring = 0; ring < RINGS; ++ring)
        for (int side = 0; side < SIDES; ++side)
        {
            DefaultMeshVertex &vertex = vertices[vertexAt(ring, side)];
            const Vec4 along = at(ring, side + 1) - at(ring, side - 1);
            const Vec4 up = at(ring + 1, side) - at(std::max(ring - 1, 0), side);
            Vec4 normal = along.cross(up);
            normal.normalize();
            vertex.normal = toMesh(normal);
            const float runs = side < SIDES / 2 ? 1.f : -1.f; // its texture is mirrored at the seam
            Vec4 tangent = along * runs;
            tangent.normalize();
            vertex.tangent = toMesh(tangent);
            vertex.bitangent = toMesh(normal.cross(tangent));
        }
    vertices.back().normal = {0.f, 1.f, 0.f};
}

void DampBody::prepareMesh()
{
    if (!vertices.empty())
        return;
    vertices.resize(SIDES * RINGS + 1);
    for (std::size_t number = 0; number < vertices.size(); ++number)
    {
        const std::size_t ring = number / SIDES;
        const float around = static_cast<float>(number % SIDES) / SIDES, up = 0.22f * static_cast<float>(ring);
        const float u = 4.f * (1.f - std::fabs(2.f * around - 1.f));
        vertices[number] = DefaultMeshVertex{{}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {u, up}};
    }
    const u32 crown = SIDES * RINGS;
    for (u32 ring = 0; ring < RINGS; ++ring)
        for (u32 side = 0; side < SIDES; ++side)
        {
            const u32 next = (side + 1) % SIDES, below = ring * SIDES;
            const bool isLast = ring + 1 == RINGS;
            const u32 above = isLast ? crown : below + SIDES + side;
            indices.insert(indices.end(), {below + side, below + next, above});
            if (!isLast)
                indices.insert(indices.end(), {below + next, below + SIDES + next, above});
        }
}

void DampBody::setRearing(float val)
{
    if (isUsable(*this, "rearing", val))
        rearing = std::clamp(val, 0.f, 1.f);
}

void DampBody::setBoiling(float val)
{
    if (isUsable(*this, "boiling", val))
        boiling = std::clamp(val, 0.f, 1.f);
}

void DampBody::setGirth(float val)
{
    if (isUsable(*this, "girth", val))
        girth = std::clamp(val, 0.05f, 3.f);
}
