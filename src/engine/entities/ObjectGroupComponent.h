// ObjectGroupComponent: which of a level's named groups an entity belongs to.
#pragma once

#include "engine/entities/AbstractComponent.h"

/// Puts its entity into one group, under the component key "objectGroup".
///
/// The level's ObjectGroupManager keeps the members of each group; a component is in exactly one, `NONE` at first.
class ObjectGroupComponent : public AbstractComponent
{
    KV_REFLECTED(ObjectGroupComponent)
public:
    /// What an object is to those who look for its like.
    enum Group
    {
        NONE = 0,            ///< nothing in particular
        WALL = 1,            ///< part of a wall
        CEILING = 2,         ///< part of a ceiling
        FLOOR = 3,           ///< part of a floor
        SLAMMING_DOOR_0 = 4, ///< a door that slams by itself
        PULSING_LIGHT = 5,   ///< a light that pulses
        PLAYER_FOLLOW = 6    ///< what follows the player
    };

    ObjectGroupComponent() = default;

    Group getGroup() const { return group; }
    /// Moves the component into another group; its present one changes nothing.
    void setGroup(Group val);

private:
    Group group = NONE;
};
