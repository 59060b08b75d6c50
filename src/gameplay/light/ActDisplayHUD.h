// ActDisplayHUD: the hud is seen for a few seconds after something has changed.
#pragma once

#include "ai/actions/Action.h"

class HudComponent;

/// Shows the component "hud" beside it for four seconds after `DisplayHUDMessage`, or after a press of Tab; for ever.
class ActDisplayHUD : public Action
{
    KV_REFLECTED(ActDisplayHUD)
public:
    ActDisplayHUD() = default;

    ActionStatus update(Seconds frameTime) override;
    /// Has the next step begin afresh, but for what is heard and how long.
    void reset() override;
    Handle<Action> clone() override { return cloneAction(); }

    void handleKeyMessage(const ReflectorPtr &messageType, int key);
    void handleDisplayMessage(const ReflectorPtr &messageType);

    /// Whether the hud is shown.
    bool getDisplayed() const { return displayed; }
    /// Seconds for which it has been shown.
    double getDisplayTime() const { return displayTime; }

private:
    void begin(Seconds frameTime, Handle<HudComponent> hud);
    void show(bool visible);

    bool displayed = false;
    double displayTime = 0.0; ///< seconds
    Handle<HudComponent> hudHandle;
};
