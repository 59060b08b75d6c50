// RigidMove: objects with all that hangs on them, moved as one while the editor's user looks on.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <vector>

class ParentFollowerComponent;
class PhysicsComponent;
class TransformComponent;
class TransformOffsetComponent;

/// A motion of the world: about a pivot, scaled, turned, then moved.
struct RigidMotion
{
    Vec4 by;                               ///< metres
    Quaternion turn;                       ///< about the pivot
    Vec4 pivot = Vec4(0, 0, 0, 1);         ///< world space
    Vec4 scale = Vec4(1.f, 1.f, 1.f, 0.f); ///< along the world's axes, before the turn

    /// Whether all of it is numbers, and the scale more than nothing.
    bool isSound() const;
    Vec4 moved(const Vec4 &place) const;
};

/// Subtrees as they stood, and where a motion takes them from there.
///
/// Keeps the numbers of each transform, since children have places of their own, and of each follower. Bodies are put
/// to rest. What dies meanwhile is passed over. Volumes find their new cells by themselves in the same frame.
class RigidMove
{
public:
    void clear();
    /// Takes an object with all below it; one that stands below another one which was taken comes along once.
    void take(const Handle<Object> &root);
    /// Puts all to where a motion takes it from where it stood.
    void apply(const RigidMotion &motion) const;
    /// Puts all back to the last bit.
    void restore() const;

private:
    struct Place
    {
        Handle<TransformComponent> transform;
        Handle<ParentFollowerComponent> follower; ///< whose offset keeps its direction
        Handle<TransformOffsetComponent> offset;
        Handle<PhysicsComponent> body;
        Vec4 position;
        Quaternion orientation;
        Vec4 scale;
        Vec4 positionOffset;
        Quaternion orientationOffset;
        bool isRoot = false; ///< what it follows, if anything, does not come along
    };

    void takeOne(const Handle<TransformComponent> &transform, bool isRoot);
    static void rest(const Place &place);
    static void moveFollowers(const Place &place, const RigidMotion &motion);

    std::vector<Place> places;
    std::vector<Handle<Object>> roots;
};

/// Ends the motion of a body, and of forces that have gathered on it.
void putToRest(const Handle<PhysicsComponent> &body);
