#include "platform/sound/SoundSystem.h"

#include "engine/systems/SystemSystem.h"

System::DependencyList SoundSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
