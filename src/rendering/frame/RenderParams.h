// RenderParams: what one pass and one batch tell the scene graph. Heavy (boost): for source files only.
#pragma once

#include "rendering/device/GraphicsSystem2.h"
#include "rendering/frame/SceneGraph.h"
#include "rendering/device/ShaderConstantValue.h"

#include <boost/container/small_vector.hpp>

#include <utility>

class Entity;
class MeshAsset;

/// An effect file and one technique of it.
struct GraphicsSystem2::ShaderID
{
    String effect;
    String technique;

    ShaderID() = default;
    ShaderID(const String &effect_, const String &technique_) : effect(effect_), technique(technique_) {}
};

/// Everything that is the same for one pass over a layer.
struct GraphicsSystem2::SceneRenderParams
{
    /// Pairs (key, target name) in the order of insertion: "<target>" binds a render target, any other key a texture.
    typedef boost::container::small_vector<std::pair<String, String>, 6> RenderTargetBindingMap;

    Handle<Entity> viewer;
    ShaderConstantList shaderConstants;
    RenderTargetBindingMap renderTargetBindings;
    SceneGraph::Layer layer = static_cast<SceneGraph::Layer>(-1); ///< must be set
    String depthTarget;
    String shaderSet;
    bool clearTargets = false;
    bool clearDepth = false;
    bool colorWritesEnabled = true;
    bool depthWritesEnabled = false;
    Vec4 viewport = Vec4(0, 0, 1, 1);       ///< (left, top, width, height), fractions of the render targets' size
    Vec4 projectionSize = Vec4(1, 1, 0, 0); ///< (width, height), in windows, that the viewer's projection is fitted to

    SceneRenderParams() : shaderSet(SCS("Default")) {}

    /// Width and height that the viewer's projection is fitted to, in the window's normalised units.
    Vec4 getFittedSize() const;
    /// Fits the projection to a square, whatever the window's shape.
    void fitToSquare();

    void bind(const String &key, const String &targetName) { renderTargetBindings.emplace_back(key, targetName); }
    void bindTarget(const String &targetName) { bind(SCS("<target>"), targetName); }
};

/// Everything that is the same for the objects of one draw call.
struct GraphicsSystem2::BatchRenderParams
{
    /// Shader sets of one class of drawn objects: few, so a list that is searched.
    class ShaderMap
    {
    public:
        typedef boost::container::small_vector<std::pair<String, ShaderID>, 3> Entries;

        /// The technique for a shader set, or null if the class takes no part in passes of that set.
        const ShaderID *find(const String &shaderSet) const
        {
            for (const auto &entry : entries)
                if (entry.first == shaderSet)
                    return &entry.second;
            return nullptr;
        }
        void insert(const String &shaderSet, const ShaderID &shader) { entries.emplace_back(shaderSet, shader); }

    private:
        Entries entries;
    };
    typedef boost::container::small_vector<std::pair<String, Handle<TextureAsset>>, 4> TextureList;

    MeshVertexType instanceType = MVT_NONE;
    Handle<MeshAsset> mesh;
    ShaderMap shaders;
    TextureList textures; ///< parameters that take a texture, set before shaderConstants
    ShaderConstantList shaderConstants;
};
