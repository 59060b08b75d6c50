// DreadComponent: what it costs the mind to look at something.
#pragma once

#include "engine/entities/SimpleComponent.h"

/// Makes an entity one whose sight the level's `NervesComponent` suffers from, under the component key "dread".
///
/// Does nothing by itself, and lets nobody see what he does not.
class DreadComponent : public SimpleComponent
{
    KV_REFLECTED(DreadComponent)
public:
    DreadComponent() = default;

    /// Has no step of its own.
    void doFrame() override {}

    /// Percent of the mind that a second's look from close by costs.
    float getDread() const { return dread; }
    /// Sets what a look costs, 0 or more; what is no number is logged as an error and changes nothing.
    void setDread(float val);
    /// How far away the sight stops to matter, metres.
    float getRange() const { return range; }
    /// Sets how far the sight matters, 0 or more; what is no number is logged as an error and changes nothing.
    void setRange(float val);

private:
    float dread = 4.f;  ///< percent a second
    float range = 14.f; ///< metres
};
