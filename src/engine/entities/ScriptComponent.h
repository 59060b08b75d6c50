// ScriptComponent: a frame step written in a script.
#pragma once

#include "engine/entities/SimpleComponent.h"

/// Component whose behaviour is a pair of script callables, for any key whose manager runs simple components.
///
/// A callback takes no arguments: scripts give it a bound method. One that fails is reported once with its error and
/// not called again until it is set anew.
class ScriptComponent : public SimpleComponent
{
    KV_REFLECTED(ScriptComponent)
public:
    ScriptComponent() = default;

    /// Calls the frame callback, if there is one.
    void doFrame() override;
    /// Calls the load callback, if there is one.
    void onLoadComplete() override;

    /// Sets what is called once a frame; None for nothing.
    void setFrameCallback(ReflectorPtr val) { frameCallback = val; }
    /// What is called once a frame.
    ReflectorPtr getFrameCallback() const { return frameCallback; }
    /// Sets what is called when the component's tree is loaded; None for nothing.
    void setLoadCallback(ReflectorPtr val) { loadCallback = val; }
    /// What is called when the component's tree is loaded.
    ReflectorPtr getLoadCallback() const { return loadCallback; }

private:
    ReflectorPtr frameCallback;
    ReflectorPtr loadCallback;
};
