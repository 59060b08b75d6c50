// InterpolatorComponent: takes properties of objects from one value to another over time.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "object/reflection/PropertyDesc.h"
#include "object/python/ScriptPlace.h"
#include "object/reflection/Variant.h"

#include "foundation/TimeTypes.h"

#include <list>

class Coordinator;

/// One property on its way from a value to another.
struct Interpolant
{
    Handle<Object> obj;
    PropertyDesc prop;
    Variant initialValue;
    Variant finalValue;
    TimerTicks duration = 0;      ///< of the level's "master" timer
    TimerTicks elapsed = 0;       ///< of the level's "master" timer
    bool takenOver = false;       ///< by another interpolant of the property
    ScriptPlace instantiationLoc; ///< the script's line that set it up, which an error is reported at
};

/// Interpolates properties in the time of its level's "master" timer, under the component key "interpolator".
///
/// One that fails is logged as an error and dropped; the property keeps its last value. So is one whose object is gone.
/// What moves a system goes on in the next level when its own ends.
class InterpolatorComponent : public SimpleComponent
{
    KV_REFLECTED(InterpolatorComponent)
public:
    typedef std::list<Interpolant> InterpolantList;

    InterpolatorComponent() = default;

    /// Moves every property on by the frame's time; what is added meanwhile starts with the next frame.
    ///
    /// A call from within this one does nothing.
    void doFrame() override;
    /// Where the level ends, hands on what moves objects outside it, as systems are.
    void onMurder() override;

    // Scripts reach the first of the two by its name; an object and five values are more than a call takes.
    /// Takes a property of an object from its present value to another; see the form with a first value.
    void addInterpolator(Handle<Object> obj, const String &prop, const Variant &finalValue, Seconds duration);
    /// Takes a property of an object from one value to another.
    ///
    /// Both values are of one type: numbers, vectors or rotations. A duration of 0 sets the final value in the next
    /// frame. What interpolates the property already, here, ends where it is. An unknown property is logged as an
    /// error, as is a manager's unless managers are allowed.
    /// @param duration  seconds
    void addInterpolator(Handle<Object> obj, const String &prop, const Variant &initialValue, const Variant &finalValue,
                         Seconds duration);

    /// Whether properties of managers are interpolated; no, unless set.
    bool getAllowManagers() const { return allowManagers; }
    void setAllowManagers(bool val) { allowManagers = val; }
    /// Count of the properties that are under way.
    int getInterpolantCount() const { return static_cast<int>(interpolants.size()); }

    /// Moves one property on.
    /// @return whether it has arrived, or why it could not be moved
    ErrorReturn<bool> interpolate(Interpolant &i, TimerTicks frameTime);

    /// Begins in a level, which takes charge now, what was set up or handed on while none was in charge.
    static void startWaiting(const Coordinator &level);

private:
    void add(const Interpolant &added);

    bool allowManagers = false;
    bool frameRunning = false;
    InterpolantList interpolants; ///< in the order in which they were added
};

/// The interpolator in charge of an object's properties, made at first use.
///
/// That of the nearest entity above the object or the object itself. For what stands in no entity, as managers and
/// systems do, that of the level in charge, which allows managers; invalid where no level is in charge.
Handle<InterpolatorComponent> getInterpolatorForObject(Handle<Object> obj);
/// Takes a property of an object from one value to another over some seconds; see `InterpolatorComponent`.
///
/// While no level is in charge, as before the first one, what stands in none waits for the next.
void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &initialValue, const Variant &finalValue,
                         Seconds duration);
/// Takes a property of an object from its present value to another over some seconds; see `InterpolatorComponent`.
void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &finalValue, Seconds duration);
