#include "ai/BTLib.h"

#include "engine/SystemSystem.h"

System::DependencyList BTLib::systemDependencies()
{
    return {SystemSystem::staticType};
}
