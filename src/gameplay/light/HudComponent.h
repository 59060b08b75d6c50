// HudComponent: a part of the screen that shows itself for a while.
#pragma once

#include "engine/entities/SimpleComponent.h"

/// Shows and hides everything drawn on its entity and below it, under the component key "hud".
///
/// Does nothing by itself: who shows it for how long is told by the actions of the trees "HUD" and "BatteryMeter".
class HudComponent : public SimpleComponent
{
    KV_REFLECTED(HudComponent)
public:
    HudComponent() = default;

    /// Has no step of its own.
    void doFrame() override {}

    /// Whether what is drawn was shown last, and not hidden.
    bool getVisible() const { return visible; }
    /// Shows or hides the entity's graphics and those of all entities below it.
    void setVisible(bool val);

private:
    bool visible = true;
};
