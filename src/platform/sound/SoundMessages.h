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
