// SurfaceShaders: the techniques of one class of drawn surfaces.
#pragma once

#include "rendering/frame/RenderParams.h"

/// One technique of "ff.fx" for each shader set that passes ask for; a class keeps one of these for all its objects.
class SurfaceShaders
{
public:
    /// Names the techniques for the sets "Default", "Shadow" and "ZPrePass".
    SurfaceShaders(const String &technique, const String &shadowTechnique, const String &zPrePassTechnique)
        : defaultShader(SCS("ff.fx"), technique), shadowShader(SCS("ff.fx"), shadowTechnique),
          zPrePassShader(SCS("ff.fx"), zPrePassTechnique)
    {
    }

    /// Adds the three to what a batch can be drawn with.
    void addTo(GraphicsSystem2::BatchRenderParams &params) const
    {
        params.shaders.insert(defaultSet, defaultShader);
        params.shaders.insert(shadowSet, shadowShader);
        params.shaders.insert(zPrePassSet, zPrePassShader);
    }

private:
    const String defaultSet = SCS("Default");
    const String shadowSet = SCS("Shadow");
    const String zPrePassSet = SCS("ZPrePass");
    const GraphicsSystem2::ShaderID defaultShader;
    const GraphicsSystem2::ShaderID shadowShader;
    const GraphicsSystem2::ShaderID zPrePassShader;
};
