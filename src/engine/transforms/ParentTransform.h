// ParentTransform: what a component that follows its parent reads.
#pragma once

#include "engine/transforms/TransformComponent.h"

/// The two transforms of a follower; both null where either is missing.
struct ParentTransform
{
    TransformComponent *own = nullptr;
    TransformComponent *parent = nullptr;

    explicit operator bool() const { return own && parent; }
};

/// The transforms of a follower's entity and of that entity's parent, once the parent's own follower has run.
///
/// Running that one first settles a whole chain of followers from the top in one frame. Null, both, where the parent
/// is no entity or either has no transform. Borrowed for the call.
ParentTransform updatedParentTransform(AbstractComponent &follower);

/// The transform of a component's entity; null where it has none. Borrowed for the call.
TransformComponent *ownTransform(AbstractComponent &component);
/// The transform of the parent of a component's entity; null where it has none. Borrowed for the call.
TransformComponent *parentTransform(const AbstractComponent &component);
