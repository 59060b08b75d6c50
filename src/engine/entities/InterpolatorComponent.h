// InterpolatorComponent: takes properties of objects from one value to another over time.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "object/reflection/PropertyDesc.h"
#include "object/python/ScriptPlace.h"
#include "object/reflection/Variant.h"

#include "foundation/TimeTypes.h"

#include <list>

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

    /// Takes a property of an object from one value to another.
    ///
    /// Both values are of one type: numbers, vectors or rotations. A duration of 0 sets the final value in the next
    /// frame. What interpolates the property already, here, ends where it is. An unknown property is logged as an
    /// error, as is a manager's unless managers are allowed.
    /// @param duration  seconds
    void addInterpolator(Handle<Object> obj, const String &prop, const Variant &initialValue, const Variant &finalValue,
                         Seconds duration);
    /// Takes a property of an object from its present value to another; see the form with a first value.
    void addInterpolator(Handle<Object> obj, const String &prop, const Variant &finalValue, Seconds duration);

    /// Whether properties of managers are interpolated; no, unless set.
    bool getAllowManagers() const { return allowManagers; }
    void setAllowManagers(bool val) { allowManagers = val; }
    /// Count of the properties that are under way.
    int getInterpolantCount() const { return static_cast<int>(interpolants.size()); }

    /// Moves one property on.
    /// @return whether it has arrived, or why it could not be moved
    ErrorReturn<bool> interpolate(Interpolant &i, TimerTicks frameTime);

private:
    ErrorCode findProperty(const Object &obj, const String &name, PropertyDesc &prop) const;
    void endOthers(const Handle<Object> &obj, const String &prop);

    bool allowManagers = false;
    bool frameRunning = false;
    InterpolantList interpolants; ///< in the order in which they were added
};

/// The interpolator in charge of an object's properties, made at first use.
///
/// That of the nearest entity above the object or the object itself. For what stands in no entity, as managers and
/// systems do, that of the level in charge, which allows managers; invalid where there is no level.
Handle<InterpolatorComponent> getInterpolatorForObject(Handle<Object> obj);
/// Takes a property of an object from one value to another over some seconds; see `InterpolatorComponent`.
void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &initialValue, const Variant &finalValue,
                         Seconds duration);
/// Takes a property of an object from its present value to another over some seconds; see `InterpolatorComponent`.
void interpolateProperty(Handle<Object> obj, const String &prop, const Variant &finalValue, Seconds duration);
