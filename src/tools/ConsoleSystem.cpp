#include "tools/ConsoleSystem.h"

#include "engine/SystemSystem.h"

System::DependencyList ConsoleSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
