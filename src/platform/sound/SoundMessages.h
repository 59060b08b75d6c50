// SoundMessages: what the sound tells the game.
//
// A handler takes the message type first and the payload, given here, behind it.
#pragma once

#include "object/tree/ReflectorPtr.h"

/// String caption, Vec4 direction, float loudness: a sound with a caption has become loud enough to be told of.
///
/// The direction is from the ears, to the right, up and ahead, length 1; its w is the distance in metres. Both are 0 for
/// a sound without a place. The loudness is linear, at the ears.
extern const ReflectorPtr SoundHeardMessage;

/// String name, Vec4 place, Handle<Object> maker: a sound with a place in the world was made, heard by anybody or not.
///
/// The name is that of the event. The place is in the space of the maker's map, metres; its w is how loud the sound is
/// a metre away, linear, whatever the player's volumes are. The maker is the entity whose sound it is, which what
/// happens to bodies leaves to the root of their map; it is invalid where that has died. Sent as an event begins, and
/// once a second while a body slides or rolls.
extern const ReflectorPtr SoundMadeMessage;
