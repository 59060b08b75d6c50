#include "physics/bodies/SoundRequest.h"

#include "engine/entities/ComponentKeys.h"

#include "foundation/Logger.h"

void requestSound(AbstractComponent &component, const String &sound)
{
    const auto source = component.getSibling(ComponentKeys::sound).lookup();
    auto *const player = dynamic_cast<ISoundPlayer *>(source.ptr);
    const char *const lacking =
        player ? "; the sound component beside it has no such sound" : "; nothing beside it plays sounds";
    const bool played = player && player->playRequestedSound(sound);
    // By name: the text of a handle holds an address, and two runs are to give the same log.
    const auto entity = component.getParent().lookup();
    KV_LOGF(Logger_::I_DEBUG, "%s asks for the sound \"%s\"%s", (entity ? entity->getName() : String()).toCString(),
            sound.toCString(), played ? "" : lacking);
}
