#include "physics/bodies/SoundRequest.h"

#include "engine/entities/ComponentKeys.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

void requestSound(AbstractComponent &component, const String &sound)
{
    static const String playFunction = SCS("playSoundEffect");
    const Handle<AbstractComponent> source = component.getSibling(ComponentKeys::sound);
    const auto player = source.lookup();
    const ReflectorPtr play = player ? player->getType()->getMember(playFunction) : ReflectorPtr();
    const bool played = play && play->call(source, sound).succeeded();
    // By name: the text of a handle holds an address, and two runs are to give the same log.
    const auto entity = component.getParent().lookup();
    KV_LOGF(Logger_::I_DEBUG, "%s asks for the sound \"%s\"%s", (entity ? entity->getName() : String()).toCString(),
            sound.toCString(), played ? "" : "; nothing beside it plays sounds");
}
