#include "tools/console/ConsoleSystem.h"

#include "engine/systems/SystemSystem.h"

System::DependencyList ConsoleSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
