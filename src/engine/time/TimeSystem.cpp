#include "engine/time/TimeSystem.h"

#include "engine/systems/NameSuggestion.h"
#include "engine/time/QPCTimeSource.h"
#include "engine/systems/SystemSystem.h"
#include "object/reflection/Reflection.h"
#include "object/reflection/Variant.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

namespace
{
/// A source of a class; invalid where the class is abstract.
Handle<TimeSource> makeSource(const ReflectorPtr &type)
{
    return handle_cast<TimeSource>(type->construct(defaultAllocationCategory));
}
} // namespace

void TimeSystem::setSource(Handle<TimeSource> src)
{
    auto next = src.lookup();
    if (!next || next->isDying())
    {
        KV_LOG(Logger_::I_ERROR, "TimeSystem::setSource: the time source no longer lives; the present one stays");
        return;
    }
    if (src == source)
        return;
    releaseSource();
    next->setParent(getTypedHandle());
    source = src;
}

void TimeSystem::setSource(const ReflectorPtr &type)
{
    if (!type || !type->isSubclassOf(TimeSource::staticType))
    {
        KV_LOGF(Logger_::I_ERROR,
                "TimeSystem::setSource: %s is no class derived from TimeSource; the present one stays",
                type ? type->getQualifiedName().toCString() : "an empty reference");
        return;
    }
    const Handle<TimeSource> made = makeSource(type);
    if (!made.isValid())
    {
        KV_LOGF(Logger_::I_ERROR, "TimeSystem::setSource: %s is abstract; name a class derived from it",
                type->getQualifiedName().toCString());
        return;
    }
    sourceType = type;
    setSource(made);
}

void TimeSystem::setSource(const String &type)
{
    if (const ReflectorPtr sourceClass = Reflection().getType(type))
        setSource(sourceClass);
    else
        KV_LOGF(Logger_::I_ERROR, "TimeSystem::setSource: %s", describeUnknownClass(type).toCString());
}

Handle<TimeSource> TimeSystem::getSource()
{
    liveSource();
    return source;
}

Seconds TimeSystem::toSeconds(TimerTicks time)
{
    checkTPS();
    return static_cast<Seconds>(time) / static_cast<Seconds>(ticksPerSecondCache);
}

TimerTicks TimeSystem::toTicks(Seconds time)
{
    checkTPS();
    return castNumber<TimerTicks>(static_cast<Seconds>(ticksPerSecondCache) * time);
}

TimerTicks TimeSystem::newFrame()
{
    return liveSource().newFrame();
}

TimerTicks TimeSystem::getTicksPerSecond()
{
    checkTPS();
    return ticksPerSecondCache;
}

void TimeSystem::checkTPS()
{
    if (ticksPerSecondCache != 0)
        return;
    if (!source.isValid())
    {
        if (!sourceType)
            sourceType = QPCTimeSource::staticType;
        source = makeSource(sourceType);
        KV_CRITICAL_ASSERT(source.isValid(), "%s cannot be constructed as a time source.",
                           sourceType->getName().toCString());
        source.lookup()->setParent(getTypedHandle());
    }
    ticksPerSecondCache = source.lookup()->ticksPerSecond();
}

void TimeSystem::systemStartup()
{
    checkTPS();
}

void TimeSystem::systemShutdown()
{
    releaseSource();
}

System::DependencyList TimeSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}

TimeSource &TimeSystem::liveSource()
{
    if (!source.isValid())
        ticksPerSecondCache = 0;
    checkTPS();
    return *source.lookup();
}

void TimeSystem::releaseSource()
{
    auto old = source.lookup();
    if (old && !old->isDying())
        old->murder();
    source = Handle<TimeSource>();
    ticksPerSecondCache = 0;
}
