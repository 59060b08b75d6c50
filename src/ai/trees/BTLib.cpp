#include "ai/trees/BTLib.h"

#include "engine/systems/SystemSystem.h"

System::DependencyList BTLib::systemDependencies()
{
    return {SystemSystem::staticType};
}
