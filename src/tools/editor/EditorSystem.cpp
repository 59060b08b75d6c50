#include "tools/editor/EditorSystem.h"

#include "tools/editor/EditorComponent.h"

#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"

#include <algorithm>

System::DependencyList EditorSystem::systemDependencies()
{
    return {SystemSystem::staticType};
}

UpdaterList EditorSystem::getUpdaters()
{
    constexpr int afterTheScreens = 130, beforeAllIsDrawn = 9999998;
    return {Updater(SCS("EditorSystem::update"), bind(SCS("update")), afterTheScreens, true),
            Updater(SCS("EditorSystem::draw"), bind(SCS("draw")), beforeAllIsDrawn, true)};
}

void EditorSystem::attend(Handle<EditorComponent> val)
{
    const auto before = editor.lookup();
    if (before && editor != val)
        before->close();
    editor = val;
}

void EditorSystem::leave(Handle<EditorComponent> val)
{
    if (editor == val)
        editor = Handle<EditorComponent>();
}

void EditorSystem::update()
{
    const auto open = editor.lookup();
    if (!open)
        return;
    const Handle<Coordinator> inCharge = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator();
    if (open->isDying() || open->getAncestorOfType<Coordinator>() != inCharge)
        open->close();
    else
        open->runFrame();
}

void EditorSystem::show(Handle<EditorComponent> drawn)
{
    if (std::find(drawing.begin(), drawing.end(), drawn) == drawing.end())
        drawing.push_back(drawn);
}

void EditorSystem::draw()
{
    std::erase_if(drawing,
                  [](const Handle<EditorComponent> &each)
                  {
                      const auto drawn = each.lookup();
                      return !drawn || !drawn->drawFrame();
                  });
}
