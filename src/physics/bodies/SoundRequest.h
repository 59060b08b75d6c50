// SoundRequest: bodies ask for sounds without knowing who plays them.
#pragma once

#include "engine/entities/AbstractComponent.h"

#include "foundation/KVString.h"

/// What a component under the key "sound" can be asked for; a higher folder has the component.
class ISoundPlayer
{
public:
    virtual ~ISoundPlayer() = default;

    /// Plays a sound effect of its list.
    /// @return false where it has none of the name
    virtual bool playRequestedSound(const String &sound) = 0;
};

/// Asks the component "sound" beside another one to play a sound effect of its list.
///
/// Notes the request in the log, at the importance of debugging, whether or not there is anything to play it: a locked
/// door's refusal can be read where nothing can be heard.
/// @param sound  name of the event, as "DoorOpen"
void requestSound(AbstractComponent &component, const String &sound);
