// SoundRequest: bodies ask for sounds without knowing who plays them.
#pragma once

#include "engine/entities/AbstractComponent.h"

#include "foundation/KVString.h"

/// Asks the component "sound" beside another one to play a sound effect of its list.
///
/// Notes the request in the log, at the importance of debugging, whether or not there is anything to play it: a locked
/// door's refusal can be read where nothing can be heard. The sound component is reached by the name of its function
/// `playSoundEffect`.
/// @param sound  name of the event, as "DoorOpen"
void requestSound(AbstractComponent &component, const String &sound);
