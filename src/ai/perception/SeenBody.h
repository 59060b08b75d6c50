// SeenBody: what there is to see of somebody: points of his body, the light on them, and the lamps that he carries.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/Matrix4.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <array>

class Entity;
class LightComponent;
class MapRootEntity;
class PartitioningGrid;
class TransformComponent;

/// The map that an entity lies in; invalid for one without a transform, and in a level without maps.
Handle<MapRootEntity> mapAround(const Handle<Entity> &entity);

/// Where something stands and how it is turned, metres: by the numbers that it has, as all that is drawn and touched.
Matrix4 poseInMap(TransformComponent &transform);

/// Somebody as all see him who look at him in one frame.
///
/// Found for the first who asks and kept for the others: five points of the body's box, or one where there is none,
/// looked for in each frame; the light on them and the lamps, which cost more, ten times a second and after a step.
class SeenBody
{
public:
    static constexpr int MOST_POINTS = 5;
    static constexpr int MOST_LAMPS = 2;
    /// How much of the whole body a point stands for: breast, head, feet, and both sides.
    static constexpr std::array<float, MOST_POINTS> WEIGHTS = {0.3f, 0.25f, 0.15f, 0.15f, 0.15f};

    /// A lamp that somebody carries, and where its beam ends.
    struct Lamp
    {
        Vec4 place;
        Vec4 lit;              ///< where the middle of its cone meets something; its own place where it does not
        float luminance = 0.f; ///< of its colour
    };

    explicit SeenBody(const Handle<Entity> &entity) : entity(entity) {}

    /// Looks where the body is in this frame.
    /// @param frame  its number
    /// @param now    seconds of the level's time
    /// @return false where it is nowhere: dead, in no map, or at a place that is no number
    bool find(int frame, Seconds now);

    const Handle<Entity> &getEntity() const { return entity; }
    Handle<MapRootEntity> getMap() const { return map; }
    /// The middle of the body.
    Vec4 getPlace() const { return place; }
    float getRadius() const { return radius; }
    int getPointCount() const { return pointCount; }
    Vec4 getPoint(int number) const { return points[static_cast<std::size_t>(number)]; }
    float weightOf(int number) const { return pointCount == 1 ? 1.f : WEIGHTS[static_cast<std::size_t>(number)]; }
    /// Luminance of the light on a point.
    float lightOnPoint(int number);
    int getLampCount();
    const Lamp &getLamp(int number) const { return lamps[static_cast<std::size_t>(number)]; }
    /// Questions for the light at a place so far.
    int getLightQuestions() const { return lightQuestions; }

private:
    bool takePlace();
    void spreadPoints(const Matrix4 &pose);
    void bringLightUpToDate();
    void findLamps();
    void addLamp(LightComponent &light, PartitioningGrid *grid);

    Handle<Entity> entity;
    Handle<MapRootEntity> map;
    Vec4 place;
    float radius = 0.f; ///< metres from the middle to the farthest point
    std::array<Vec4, MOST_POINTS> points;
    int pointCount = 0;
    int frame = -1; ///< in which the points were found
    bool isSomewhere = false;

    std::array<float, MOST_POINTS> light = {};
    std::array<Lamp, MOST_LAMPS> lamps;
    int lampCount = 0;
    bool lightIsKnown = false;
    Seconds litAt = 0; ///< when the light was looked for
    Vec4 litPlace;     ///< of the body then
    Seconds now = 0;
    int lightQuestions = 0;
};
