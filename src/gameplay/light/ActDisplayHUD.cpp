#include "gameplay/light/ActDisplayHUD.h"

#include "gameplay/light/HudComponent.h"
#include "gameplay/player/LevelHandlers.h"
#include "gameplay/player/PlayerMessages.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "platform/input/InputMessages.h"
#include "port/win32/VirtualKeys.h"

namespace
{
constexpr double SHOWN_FOR = 4.0; ///< seconds
}

ActionStatus ActDisplayHUD::update(Seconds frameTime)
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    const Handle<HudComponent> hud =
        entity ? handle_cast<HudComponent>(entity->getComponent(ComponentKeys::hud)) : Handle<HudComponent>();
    if (!hud.isValid())
        return AS_InvalidHandle;
    if (elapsedTime == 0.0)
        begin(frameTime, hud);
    if (displayed)
        displayTime += frameTime;
    if (displayTime > SHOWN_FOR)
    {
        displayed = false;
        displayTime = 0.0;
        show(false);
    }
    return AS_InProgress;
}

void ActDisplayHUD::begin(Seconds frameTime, Handle<HudComponent> hud)
{
    static const String keys = SCS("handleKeyMessage"), display = SCS("handleDisplayMessage");
    incrementTime(frameTime);
    hudHandle = hud;
    show(false);
    hearInLevel(*this, KeyDownMessage, keys);
    hearInLevel(*this, KeyUpMessage, keys);
    hearInLevel(*this, DisplayHUDMessage, display);
}

void ActDisplayHUD::reset()
{
    percentDone = 0.0;
    currentStatus = AS_InProgress;
}

void ActDisplayHUD::handleKeyMessage(const ReflectorPtr &messageType, int key)
{
    if (messageType == KeyDownMessage && key == VK_TAB)
        handleDisplayMessage(DisplayHUDMessage);
}

void ActDisplayHUD::handleDisplayMessage(const ReflectorPtr &)
{
    displayed = true;
    displayTime = 0.0;
    show(true);
}

void ActDisplayHUD::show(bool visible)
{
    if (const auto hud = hudHandle.lookup())
        hud->setVisible(visible);
}
