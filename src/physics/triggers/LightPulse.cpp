#include "physics/triggers/LightPulse.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "object/reflection/Variant.h"

#include <cmath>

namespace
{

const String &diffuseProperty()
{
    static const String name = SCS("diffuseColor");
    return name;
}

const String &specularProperty()
{
    static const String name = SCS("specularColor");
    return name;
}

/// The light of an entity: whatever draws it and has a colour to shine with. Invalid for none.
Handle<AbstractComponent> lightOf(const Handle<Object> &hEntity)
{
    const AbstractComponent *const graphics = componentOf<AbstractComponent>(hEntity, ComponentKeys::graphics2);
    return graphics && graphics->getPropertyValue(diffuseProperty()).succeeded() ? getHandle(graphics)
                                                                                 : Handle<AbstractComponent>();
}

Vec4 colorOf(const Object &light, const String &property)
{
    const ErrorReturn<Variant> color = light.getPropertyValue(property);
    return color.succeeded() ? color.value.get<Vec4>().value : Vec4();
}

} // namespace

LightPulse *LightPulse::of(const Handle<Object> &hEntity)
{
    static const String childName = SCS(".lightPulse");
    const auto entity = hEntity.lookup();
    if (!entity || !lightOf(hEntity).isValid() || !entity->getAncestorOfType<Coordinator>().isValid())
        return nullptr;
    if (LightPulse *const present = componentOf<LightPulse>(entity->getChild(childName), ComponentKeys::dummy))
        return present;
    const auto child = construct<Entity>(defaultAllocationCategory).lookup();
    child->setName(childName);
    child->setParent(hEntity);
    return handle_cast<LightPulse>(child->addComponent(ComponentKeys::dummy, staticType)).lookup().ptr;
}

void LightPulse::beat(float beatsPerSecond)
{
    if (!(beatsPerSecond > 0.f) || !std::isfinite(beatsPerSecond))
    {
        if (beating)
            shine(1.f);
        beating = false;
        return;
    }
    rate = beatsPerSecond;
    again = beating;
    if (!beating)
        begin();
}

void LightPulse::begin()
{
    const auto light = findLight().lookup();
    if (!light)
        return;
    fullDiffuseColor = colorOf(*light, diffuseProperty());
    fullSpecularColor = colorOf(*light, specularProperty());
    beating = true;
    phase = 0.0;
}

void LightPulse::doFrame()
{
    if (!beating)
        return;
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return;
    phase += rate * coordinator->getTimer(TimerNames::master).getFrameTimeSeconds();
    if (phase >= 1.0)
    {
        beating = again;
        again = false;
        phase = beating ? phase - std::floor(phase) : 0.0;
    }
    shine(static_cast<float>(0.5 + 0.5 * std::cos(2.0 * static_cast<double>(PI) * phase)));
}

void LightPulse::shine(float strength)
{
    const auto light = findLight().lookup();
    if (!light)
        return;
    light->setPropertyValue(diffuseProperty(), Variant(fullDiffuseColor * strength)).ignoreError();
    light->setPropertyValue(specularProperty(), Variant(fullSpecularColor * strength)).ignoreError();
}

/// The light of the entity that the pulse's own entity hangs below.
Handle<AbstractComponent> LightPulse::findLight()
{
    const auto entity = getParent().lookup();
    return entity ? lightOf(entity->getParent()) : Handle<AbstractComponent>();
}
