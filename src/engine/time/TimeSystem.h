// TimeSystem: turns the ticks of a time source into frame times.
#pragma once

#include "engine/systems/System.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimeSource.h"

#include "foundation/TimeTypes.h"

/// Owner of the time source in use.
///
/// The source is made at first use; a script chooses another one by its class or hands one over. Scripts that want a
/// repeatable run set a BSTimeSource.
class TimeSystem : public System
{
    KV_REFLECTED(TimeSystem)
public:
    TimeSystem() = default;

    /// Puts this source in place of the present one, which is murdered; the system becomes its parent.
    ///
    /// A handle that does not resolve is logged as an error and changes nothing.
    void setSource(Handle<TimeSource> src);
    /// Puts a new source of this class in place of the present one.
    ///
    /// A class that is no time source, or an abstract one, is logged as an error and changes nothing.
    void setSource(const ReflectorPtr &type);
    /// Puts a new source of the class of this name in place; an unknown name is logged with the nearest one.
    void setSource(const String &type);
    /// The source in use, made now if there is none.
    Handle<TimeSource> getSource();

    /// Ticks of the present source as seconds.
    Seconds toSeconds(TimerTicks time);
    /// Seconds as ticks of the present source, truncated.
    TimerTicks toTicks(Seconds time);
    /// Ticks since the last call, and the start of a new frame.
    TimerTicks newFrame();
    /// The source's present reading; don't use except for performance measurements.
    /// @cost a look-up of the source and its own reading; it stands around every measured scope
    TimerTicks now()
    {
        const auto live = source.lookup();
        return live ? live->now() : liveSource().now();
    }
    /// Ticks in a second of the present source.
    TimerTicks getTicksPerSecond();
    /// Makes sure that there is a source and that its rate is known.
    void checkTPS();

protected:
    void systemStartup() override;
    /// Releases the source, so that the next use builds it anew.
    void systemShutdown() override;
    DependencyList systemDependencies() override;

private:
    TimeSource &liveSource();
    void releaseSource();

    ReflectorPtr sourceType; ///< class of the source to make; null until chosen
    Handle<TimeSource> source;
    TimerTicks ticksPerSecondCache = 0; ///< 0 while the source's rate is not known
};
