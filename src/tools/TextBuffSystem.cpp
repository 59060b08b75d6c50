#include "tools/TextBuffSystem.h"

#include "engine/SystemSystem.h"

System::DependencyList TextBuffSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}
