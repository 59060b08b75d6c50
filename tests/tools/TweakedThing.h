// TweakedThing: an object with a property of each kind.
#pragma once

#include "object/tree/Object.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <functional>

/// Keeps what it is set to, but for a limit that is not positive.
class TweakedThing : public Object
{
    KV_REFLECTED(TweakedThing)
public:
    enum Gait
    {
        GAIT_STAND = 0,
        GAIT_WALK = 1,
        GAIT_RUN = 2
    };

    TweakedThing() = default;

    bool getAwake() const { return awake; }
    void setAwake(bool val) { awake = val; }
    /// Metres a second. Not shown in the tooltip.
    float getSpeed() const { return speed; }
    void setSpeed(float val) { speed = val; }
    int getLimit() const { return limit; }
    /// Fails with OUT_OF_BOUNDS for what is not positive.
    ErrorCode setLimit(int val)
    {
        if (val <= 0)
            return ErrorCode::OUT_OF_BOUNDS;
        limit = val;
        if (onLimit)
            onLimit();
        return ErrorCode::SUCCESS;
    }
    Gait getGait() const { return gait; }
    void setGait(Gait val) { gait = val; }
    Vec4 getEyeColor() const { return eyeColor; }
    void setEyeColor(Vec4 val) { eyeColor = val; }
    Quaternion getHeading() const { return heading; }
    void setHeading(Quaternion val) { heading = val; }
    Handle<Object> getPrey() const { return prey; }
    void setPrey(Handle<Object> val) { prey = val; }
    /// Not const and alone: a bar does not read it.
    int getSideEffect() { return ++reads; }

    bool awake = false;
    float speed = 1.0f;
    int limit = 5;
    Gait gait = GAIT_STAND;
    Vec4 eyeColor = Vec4(1, 0, 0, 1);
    Quaternion heading;
    Handle<Object> prey;
    int reads = 0;
    std::function<void()> onLimit; ///< called when the limit was set
};
