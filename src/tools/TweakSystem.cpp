#include "tools/TweakSystem.h"

#include "engine/SystemSystem.h"
#include "rendering/GraphicsSystem2.h"

System::DependencyList TweakSystem::systemDependencies()
{
    return {SystemSystem::staticType, GraphicsSystem2::staticType};
}
