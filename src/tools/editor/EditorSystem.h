// EditorSystem: runs the open editor of the level in charge, also while that level stands still.
#pragma once

#include "engine/systems/System.h"

#include <vector>

class EditorComponent;

/// Runs at most one editor, that of the level in charge; one of another level is closed. Has closed ones draw, too, as
/// long as they have shapes.
///
/// Started by the first editor that is opened or draws, and costs next to nothing while there is none.
class EditorSystem : public System
{
    KV_REFLECTED(EditorSystem)
public:
    EditorSystem() = default;

    /// Runs this editor from now on, and closes another one.
    void attend(Handle<EditorComponent> editor);
    /// Runs it no longer.
    void leave(Handle<EditorComponent> editor);
    /// Has an editor draw from now on, until it has nothing to draw.
    void show(Handle<EditorComponent> drawn);
    /// The open editor; invalid for none.
    Handle<EditorComponent> getEditor() const { return editor; }

    /// Gives the editor what has come since the last frame. Frame step.
    void update();
    /// Has the editor draw, once all has moved. Frame step.
    void draw();

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    Handle<EditorComponent> editor;
    std::vector<Handle<EditorComponent>> drawing; ///< the open one among them
};
