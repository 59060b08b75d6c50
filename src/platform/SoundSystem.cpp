#include "platform/SoundSystem.h"

#include "engine/SystemSystem.h"

System::DependencyList SoundSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
