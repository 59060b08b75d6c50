#include "tools/console/TextBuffSystem.h"

#include "engine/systems/SystemSystem.h"

System::DependencyList TextBuffSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
