// SanityComponent: a mind without a body, for levels that nobody walks.
#pragma once

#include "engine/entities/SimpleComponent.h"

/// How sound the mind is that looks on: the renderer shows its loss where no player stands in a level.
///
/// Goes by the key "player" on an entity "Player" below the coordinator, which is where the renderer looks. Changes
/// nothing by itself; scripts set it.
class SanityComponent : public SimpleComponent
{
    KV_REFLECTED(SanityComponent)
public:
    SanityComponent() = default;

    /// Has no step of its own.
    void doFrame() override;

    /// Soundness of the mind, percent: 100 sees what is there, 0 hardly anything of it.
    float getSanity() const { return sanity; }
    void setSanity(float val) { sanity = val; }

private:
    float sanity = 100.0f; ///< percent
};
