// ActUpdateBatteryMeter: a bar on the screen is as long as the battery lasts.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

/// Scales its entity's transform along x by what is left of the battery of the level's player; goes on for ever.
class ActUpdateBatteryMeter : public Action
{
    KV_REFLECTED(ActUpdateBatteryMeter)
public:
    ActUpdateBatteryMeter() = default;

    ActionStatus update(Seconds frameTime) override;
    /// Has the next step begin afresh, but for the scale of a full battery.
    void reset() override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Scale of a full battery.
    Vec4 getOriginalMeterScale() const { return originalMeterScale; }

private:
    Vec4 originalMeterScale;
};
