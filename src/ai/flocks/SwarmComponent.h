// SwarmComponent: small creatures that fly or scurry together around something.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <vector>

class Entity;
class LightComponent;
class PartitioningGrid;
class TransformComponent;

/// Moves a swarm around an anchor that may be carried about, under the component key "flocking": moths around a lamp,
/// crows above a yard, rats on a floor.
///
/// Metres, seconds, in the space of the map's objects. Builds its members below its own entity by a pattern and moves
/// their transforms itself: members need no bodies. Each circles the anchor, keeps its distance from the others, turns
/// as its neighbours do and strays a little, by smooth changes of velocity alone. Members never come nearer to each
/// other than bodySize, leave neither the reach of the anchor, nor the heights between lowest and highest, nor, with
/// heldByWalls, the walls. An anchor with a light holds them by its reach; one that goes out lets them drift, slowly,
/// where they are. A member that walls have parted from its light joins it again out of the dark.
///
///     kaVel.addComponent(swarm, 'flocking', 'SwarmComponent', memberPattern='Moth', population=24, anchor=lamp)
class SwarmComponent : public SimpleComponent
{
    KV_REFLECTED(SwarmComponent)
public:
    typedef std::vector<Handle<Entity>> MemberHandles;

    /// The most members: each minds all others.
    static constexpr std::size_t MOST_MEMBERS = 256;

    SwarmComponent() = default;

    /// Builds the members.
    void onLoadComplete() override;
    /// Draws the reach, each member's velocity and its bodySize, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Moves the members.
    void doFrame() override;

    /// Builds as many members as the population says, around the anchor; more than MOST_MEMBERS are refused.
    void populate();
    /// Takes an entity with a transform into the swarm, and puts it somewhere around the anchor; nothing for one that is
    /// in it, and for a full swarm.
    void addMember(Handle<Entity> entity);
    /// Drives all members within fearRadius, or all without one, away from a place.
    void scatter(Vec4 from);
    /// What the swarm does, as the end of a sentence; empty without members.
    String tell();

    /// The members that live, in the order of their making.
    MemberHandles getMembers() const;
    /// Count of the members.
    int getMemberCount() const { return static_cast<int>(members.size()); }
    /// The least distance of two members' middles, metres; infinite for fewer than two.
    float getLeastDistance() const;
    /// The greatest distance of a member from the anchor, metres; 0 for none.
    float getGreatestDistance();

    /// What they swarm around; the swarm's own entity while it is invalid.
    Handle<Entity> getAnchor() const { return hAnchor; }
    void setAnchor(Handle<Entity> val) { hAnchor = val; }
    /// What they flee from within fearRadius.
    Handle<Entity> getFeared() const { return hFeared; }
    void setFeared(Handle<Entity> val) { hFeared = val; }
    /// Name of the members' pattern in `objects.GameObjects`.
    String getMemberPattern() const { return memberPattern; }
    void setMemberPattern(String val) { memberPattern = val; }
    /// How many members `populate` builds.
    unsigned getPopulation() const { return population; }
    void setPopulation(unsigned val) { population = val; }
    /// How far from the anchor they get, metres; 0 for as far as its light reaches, and 3 m without a light.
    float getReach() const { return reach; }
    void setReach(float val) { setPart(reach, "reach", val, 0.f); }
    /// How near to the anchor they get by themselves, metres.
    float getInnerRadius() const { return innerRadius; }
    void setInnerRadius(float val) { setPart(innerRadius, "innerRadius", val, 0.f); }
    /// How fast they move mostly, metres a second; twice as fast at most.
    float getCruiseSpeed() const { return cruiseSpeed; }
    void setCruiseSpeed(float val) { setPart(cruiseSpeed, "cruiseSpeed", val, 0.f); }
    /// How quickly they change their velocity: the share of what they want that they come by in a second.
    float getAgility() const { return agility; }
    void setAgility(float val) { setPart(agility, "agility", val, 0.f); }
    /// Distance that they like to keep from each other, metres.
    float getSpacing() const { return spacing; }
    void setSpacing(float val) { setPart(spacing, "spacing", val, 0.f); }
    /// Distance that they keep from each other at the least, metres.
    float getBodySize() const { return bodySize; }
    void setBodySize(float val) { setPart(bodySize, "bodySize", val, 0.f); }
    /// How far they mind each other, metres.
    float getNeighborhoodSize() const { return neighborhoodSize; }
    void setNeighborhoodSize(float val) { setPart(neighborhoodSize, "neighborhoodSize", val, 0.f); }
    /// How much they turn as their neighbours do, 0..1.
    float getAlignment() const { return alignment; }
    void setAlignment(float val) { setPart(alignment, "alignment", val, 0.f); }
    /// How much they make for the middle of their neighbours: metres a second for each metre.
    float getCohesion() const { return cohesion; }
    void setCohesion(float val) { setPart(cohesion, "cohesion", val, 0.f); }
    /// How much of their speed is circling; below 0 the other way round.
    float getSwirl() const { return swirl; }
    void setSwirl(float val) { setPart(swirl, "swirl", val, -1e6f); }
    /// How much of their speed is straying.
    float getRestlessness() const { return restlessness; }
    void setRestlessness(float val) { setPart(restlessness, "restlessness", val, 0.f); }
    /// How near what they fear may come, metres.
    float getFearRadius() const { return fearRadius; }
    void setFearRadius(float val) { setPart(fearRadius, "fearRadius", val, 0.f); }
    /// Beats of the wings a second: as often a member's scale narrows along x; 0 for none.
    float getFlutter() const { return flutter; }
    void setFlutter(float val) { setPart(flutter, "flutter", val, 0.f); }
    /// The height below which no member comes, metres.
    float getLowest() const { return lowest; }
    void setLowest(float val) { setPart(lowest, "lowest", val, -1e6f); }
    /// The height above which no member comes; at `lowest` or below it all stay at `lowest`, as on a floor.
    float getHighest() const { return highest; }
    void setHighest(float val) { setPart(highest, "highest", val, -1e6f); }
    /// Whether walls and doors hold them: volumes that end what a player points at, with a body without inverse mass.
    bool getHeldByWalls() const { return heldByWalls; }
    void setHeldByWalls(bool val) { heldByWalls = val; }

private:
    struct Member
    {
        Handle<Entity> entity;
        Vec4 place;
        Vec4 from;       ///< its place at the beginning of this step
        Vec4 velocity;   ///< metres a second
        Vec4 wish;       ///< velocity that it wants in this step
        Vec4 scale;      ///< of its transform as it was built
        float phase = 0; ///< 0..1, by which it differs from the others
    };
    /// What a step goes by.
    struct Surroundings
    {
        Vec4 anchor;
        Vec4 feared;
        float reach = 0;
        bool fears = false;
        bool isDark = false; ///< the anchor's light is out
    };

    bool isOnFloor() const { return highest <= lowest; }
    void setPart(float &part, const char *name, float val, float least);
    bool buildMember(std::size_t number);
    void dropDead();
    TransformComponent *findAnchor();
    const LightComponent *findLight();
    Surroundings look();
    void step(float seconds, const Surroundings &around);
    void wish(Member &member, const Surroundings &around) const;
    Vec4 wayFromAnchor(const Member &member, const Surroundings &around) const;
    Vec4 circling(const Member &member, const Surroundings &around) const;
    Vec4 straying(const Member &member) const;
    Vec4 fleeing(const Member &member, const Surroundings &around) const;
    void mindNeighbors();
    Vec4 carried(const Member &member, const Surroundings &around) const;
    void keepApart();
    void keepWithin(Member &member, const Surroundings &around) const;
    PartitioningGrid *findGrid();
    void keepFromWalls(Member &member);
    void bringBack(Member &member, const Surroundings &around);
    void place(Member &member);

    Handle<Entity> hAnchor;
    Handle<Entity> hFeared;
    String memberPattern = SCS("Moth");
    unsigned population = 0;
    float reach = 0.f;
    float innerRadius = 0.15f;
    float cruiseSpeed = 0.9f;
    float agility = 5.f;
    float spacing = 0.25f;
    float bodySize = 0.06f;
    float neighborhoodSize = 0.6f;
    float alignment = 0.15f;
    float cohesion = 0.1f;
    float swirl = 0.8f;
    float restlessness = 0.8f;
    float fearRadius = 0.f;
    float flutter = 0.f;
    float lowest = 0.05f;
    float highest = 3.f;
    bool heldByWalls = true;

    std::vector<Member> members;
    Vec4 lastAnchor;        ///< where it was in the last frame; w 0 before the first one
    Vec4 anchorDrift;       ///< its velocity, smoothed: metres a second
    float liveliness = 1.f; ///< 0 once the light has been out for a while, 1 while it shines
    double time = 0;        ///< seconds of the swarm's life, by which it strays
};
