// EditorCamera: the eye of whoever builds a level.
#pragma once

#include "tools/editor/SeenMesh.h"
#include "tools/editor/EditorView.h"

#include "foundation/Quaternion.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"
#include "object/tree/Handle.h"

#include <limits>

class Coordinator;
class Entity;

/// Flies, orbits and pans the entity ".EditorCamera" of a level, which the picture is drawn from while it is on.
///
/// World space, metres; angles in radians, a positive pitch looks down. It is moved in wall time, so it flies in a level
/// that stands still. Never touches the level's own cameras.
class EditorCamera
{
public:
    /// Directions that keys hold.
    struct Push
    {
        float right = 0.f, up = 0.f, ahead = 0.f; ///< -1, 0 or 1
        float factor = 1.f;                       ///< of the speed
    };

    /// Makes the entity where there is none, at the level's own camera, and has the picture drawn from it.
    void begin(Coordinator &level);
    /// Gives the picture back to the level's own camera.
    void end(Coordinator &level);
    /// Keeps the picture with this camera, whatever else has been put before the level meanwhile.
    void stayOn(Coordinator &level);

    /// Flies on for a frame, gently setting out and stopping.
    void fly(const Push &push, Seconds time);
    /// Turns the view about its own place; parts of the window's longer side.
    void look(float right, float down);
    /// Turns about a place that stays where it is on the screen.
    void orbit(const Vec4 &about, float right, float down);
    /// Moves across the view so that what is so many metres ahead follows the pointer; pixels.
    void pan(const EditorView &view, float distance, float right, float down);
    /// Goes towards a place, or away, by a part of the way for each notch.
    void approach(const Vec4 &place, float notches);
    /// Looks at a box from where it fills most of the window, in the direction of now.
    void frame(const SpanBox &box);
    /// Makes the flight faster or slower by notches of the wheel.
    void changeSpeed(float notches);

    bool isLive() const { return entity.isValid(); }
    Handle<Entity> getEntity() const { return entity; }
    Vec4 getPlace() const { return place; }
    /// Puts the eye somewhere, at rest; what is no number is left out.
    void setPlace(const Vec4 &val);
    float getTurn() const { return turn; }
    float getPitch() const { return pitch; }
    void setAngles(float newTurn, float newPitch);
    float getSpeed() const { return speed; }
    void setSpeed(float val);
    /// Height above which nothing is drawn while the eye is above it, metres; endless for none.
    void setCutHeight(float val);
    float getCutHeight() const { return cutHeight; }

private:
    Quaternion orientation() const;
    void show();

    Handle<Entity> entity;
    Vec4 place = Vec4(0.f, 1.7f, 0.f, 1.f);
    Vec4 velocity; ///< metres a second
    float turn = 0.f;
    float pitch = 0.f;
    float speed = 4.f; ///< metres a second
    float cutHeight = std::numeric_limits<float>::infinity();
};
