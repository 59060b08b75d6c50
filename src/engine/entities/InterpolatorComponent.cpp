#include "engine/entities/InterpolatorComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/entities/LerpVisitor.h"
#include "object/tree/PathBelow.h"
#include "engine/systems/RunningMark.h"
#include "engine/time/TimeSystem.h"
#include "engine/time/TimerNames.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace
{
void report(const Handle<Object> &obj, const String &prop, const ErrorCode &code, const ScriptPlace &place)
{
    const auto object = obj.lookup();
    const String path = object ? pathBelow(nullptr, *object) : obj.toString();
    Logger().writeFormatted(Logger_::I_ERROR, place.file, place.line,
                            "Error while interpolating property `%s' of object `%s': %s", prop.toCString(),
                            path.toCString(), code.toString().toCString());
}

/// The ticks of a time that a script gives; what is no time of day is none.
TimerTicks ticksOf(Seconds duration)
{
    return duration > 0.0 && std::isfinite(duration) ? getSystemDeref<TimeSystem>().toTicks(duration) : 0;
}

double partOf(TimerTicks elapsed, TimerTicks duration)
{
    return elapsed < duration ? static_cast<double>(elapsed) / static_cast<double>(duration) : 1.0;
}

/// The entity whose interpolator serves an object: the nearest one, if it stands in a level.
Handle<Entity> servingEntity(Object &object)
{
    const Handle<Entity> entity = object.getAncestorOfType<Entity>();
    const auto found = entity.lookup();
    return found && found->getAncestorOfType<Coordinator>().isValid() ? entity : Handle<Entity>();
}

/// The entity that interpolates what stands in no entity: a child of the object's level or else of that in charge.
Handle<Entity> levelsEntity(Object &object)
{
    static const String name = SCS(".Interpolator");
    Handle<Coordinator> level = object.getAncestorOfType<Coordinator>();
    if (!level.isValid())
        level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator();
    const auto coordinator = level.lookup();
    if (!coordinator || coordinator->isDying())
        return Handle<Entity>();
    const Handle<Entity> present = handle_cast<Entity>(coordinator->getChild(name));
    if (present.isValid())
        return present;
    const Handle<Entity> made = construct<Entity>(defaultAllocationCategory);
    made.lookup()->setName(name);
    made.lookup()->setParent(level);
    return made;
}

ErrorCode findProperty(const Object &obj, const String &name, bool allowManagers, PropertyDesc &prop)
{
    const ErrorReturn<PropertyDesc> found = obj.getType()->getProperty(name);
    if (!found.succeeded())
        return found.code;
    if (!found.value.getSetter())
        return ErrorCode::PROPERTY_NOT_WRITABLE;
    if (!allowManagers && obj.getType()->isSubclassOf(AbstractManager::staticType))
        return ErrorCode::NOT_INTERPOLATABLE;
    prop = found.value;
    return ErrorCode::SUCCESS;
}

/// What a script asks for; nothing, with the error reported at the script's line, where there is no such property.
std::optional<Interpolant> makeInterpolant(const Handle<Object> &obj, const String &prop, const Variant &initialValue,
                                           const Variant &finalValue, Seconds duration, bool allowManagers)
{
    const auto object = obj.lookup();
    if (!object)
        return std::nullopt;
    Interpolant i;
    i.instantiationLoc = currentScriptPlace();
    const ErrorCode outcome = findProperty(*object, prop, allowManagers, i.prop);
    if (!outcome.succeeded())
    {
        report(obj, prop, outcome, i.instantiationLoc);
        return std::nullopt;
    }
    i.obj = obj;
    i.initialValue = initialValue;
    i.finalValue = finalValue;
    i.duration = ticksOf(duration);
    return i;
}

/// The present value of a property; nothing, with the error reported at the script's line, where it cannot be read.
std::optional<Variant> readPresent(const Handle<Object> &obj, const String &prop)
{
    const auto object = obj.lookup();
    if (!object)
        return std::nullopt;
    const ErrorReturn<Variant> present = object->getPropertyValue(prop);
    if (present.succeeded())
        return present.value;
    report(obj, prop, present.code, currentScriptPlace());
    return std::nullopt;
}

/// What waits for the next level: set up while none was in charge, or handed on by one that ended.
InterpolatorComponent::InterpolantList &waiting()
{
    static auto *list = new InterpolatorComponent::InterpolantList;
    return *list;
}

bool outlivesLevels(const Interpolant &i)
{
    const auto object = i.obj.lookup();
    return object && !object->isDying() && !i.takenOver && !object->getAncestorOfType<Coordinator>().isValid();
}
} // namespace

void InterpolatorComponent::doFrame()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!level || frameRunning)
        return;
    const RunningMark mark(frameRunning);
    const TimerTicks frameTime = level->getTimer(TimerNames::master).getFrameTime();
    auto i = interpolants.begin();
    for (std::size_t left = interpolants.size(); left > 0; --left)
    {
        const ErrorReturn<bool> arrived = interpolate(*i, frameTime);
        if (!arrived.succeeded())
            report(i->obj, i->prop.getName(), arrived.code, i->instantiationLoc);
        i = arrived.succeeded() && !arrived.value ? std::next(i) : interpolants.erase(i);
    }
}

ErrorReturn<bool> InterpolatorComponent::interpolate(Interpolant &i, TimerTicks frameTime)
{
    if (i.takenOver)
        return true;
    i.elapsed += frameTime;
    const ErrorReturn<Variant> value = LerpVisitor(partOf(i.elapsed, i.duration)).apply(i.initialValue, i.finalValue);
    if (!value.succeeded())
        return value.code;
    const ErrorCode outcome = i.prop.getSetter()->call(i.obj, value.value).code;
    return ErrorReturn<bool>(i.elapsed >= i.duration, outcome);
}

void InterpolatorComponent::onMurder()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (level && level->isDying())
    {
        // In front of what the next level's script has set up by now, which takes over.
        InterpolantList left;
        std::copy_if(interpolants.begin(), interpolants.end(), std::back_inserter(left), outlivesLevels);
        waiting().splice(waiting().begin(), left);
    }
    SimpleComponent::onMurder();
}

void InterpolatorComponent::startWaiting(const Coordinator &level)
{
    if (level.isDying())
        return;
    InterpolantList begun;
    begun.swap(waiting());
    for (const Interpolant &i : begun)
        if (const auto interpolator = getInterpolatorForObject(i.obj).lookup())
            interpolator->add(i);
}

void InterpolatorComponent::addInterpolator(Handle<Object> obj, const String &prop, const Variant &finalValue,
                                            Seconds duration)
{
    if (const auto present = readPresent(obj, prop))
        addInterpolator(obj, prop, *present, finalValue, duration);
}

void InterpolatorComponent::addInterpolator(Handle<Object> obj, const String &prop, const Variant &initialValue,
                                            const Variant &finalValue, Seconds duration)
{
    if (const auto i = makeInterpolant(obj, prop, initialValue, finalValue, duration, allowManagers))
        add(*i);
}

/// Ends what else interpolates the property. The list stays as it is, since a frame may be walking it.
void InterpolatorComponent::add(const Interpolant &added)
{
    for (Interpolant &i : interpolants)
        if (i.obj == added.obj && i.prop.getName() == added.prop.getName())
            i.takenOver = true;
    interpolants.push_back(added);
}

Handle<InterpolatorComponent> getInterpolatorForObject(Handle<Object> obj)
{
    const auto object = obj.lookup();
    if (!object)
        return Handle<InterpolatorComponent>();
    const Handle<Entity> nearest = servingEntity(*object);
    const Handle<Entity> entity = nearest.isValid() ? nearest : levelsEntity(*object);
    if (InterpolatorComponent *const present = componentOf<InterpolatorComponent>(entity, ComponentKeys::interpolator))
        return getHandle(present);
    const auto holder = entity.lookup();
    if (!holder)
        return Handle<InterpolatorComponent>();
    const auto made = handle_cast<InterpolatorComponent>(
        holder->addComponent(ComponentKeys::interpolator, InterpolatorComponent::staticType));
    if (const auto interpolator = made.lookup())
        interpolator->setAllowManagers(!nearest.isValid());
    return made;
}

void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &initialValue, const Variant &finalValue,
                         Seconds duration)
{
    if (const auto interpolator = getInterpolatorForObject(obj).lookup())
        interpolator->addInterpolator(obj, prop, initialValue, finalValue, duration);
    else if (const auto i = makeInterpolant(obj, prop, initialValue, finalValue, duration, true))
        waiting().push_back(*i);
}

void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &finalValue, Seconds duration)
{
    if (const auto present = readPresent(obj, prop))
        interpolateProperty(obj, prop, *present, finalValue, duration);
}
