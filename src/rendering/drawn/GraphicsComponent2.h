// GraphicsComponent2: base of everything that is drawn.
#pragma once

#include "rendering/frame/SceneGraph.h"

#include "engine/entities/AbstractComponent.h"
#include "engine/systems/RequestHandle.h"

#include <cstdint>
#include <initializer_list>

class BatchProxy;
class TransformComponent;

/// A drawn component, under the manager key "graphics2".
///
/// It does not draw by itself: it states the parameters of its batch and fills one instance record for itself;
/// the scene graph sorts, batches and draws. It must be given a layer before it is loaded.
class GraphicsComponent2 : public AbstractComponent
{
    KV_REFLECTED(GraphicsComponent2)
public:
    /// Enters the component in the scene graph of its manager; one without a layer is reported and not drawn.
    void onLoadComplete() override;
    void onMurder() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// What the batch that begins with this component needs: mesh, techniques by shader set, constants.
    virtual GraphicsSystem2::BatchRenderParams batchGetParams() = 0;
    /// Writes this component's instance records; not called for a batch without an instance stream.
    virtual void objectDraw(BatchProxy &batch) = 0;
    /// Instance records that objectDraw writes; 0 draws nothing.
    virtual int objectGetInstanceCount();
    /// Runs before the batch that begins with this component is drawn; a failure ends the pass.
    virtual ErrorCode batchPreRender();
    /// Whether this component sorts before another of the same class; equal ones share a draw call.
    ///
    /// Without an override every component is a batch of its own, in the order of handles.
    virtual bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const;
    /// Sphere around everything that is drawn of this component, so that a pass can leave out what it cannot show.
    ///
    /// World space: centre in x, y and z, radius in w, metres. A negative radius says that it is not known.
    virtual Vec4 getBoundingSphere();
    /// Whether this component sorts before another: by class first, then by doBatchCompare. A dead one sorts first.
    bool batchCompare(const Handle<GraphicsComponent2> &rhs) const;

    bool getVisible() const { return visible; }
    /// Whether the component is drawn at all.
    void setVisible(bool val) { visible = val; }
    bool getCastShadows() const { return castShadows; }
    /// Whether the component is drawn into shadow maps.
    void setCastShadows(bool val) { castShadows = val; }
    SceneGraph::Layer getLayer() const { return layer; }
    /// Moves the component to another layer; NUM_LAYERS, or any number beyond, takes it out of all.
    void setLayer(SceneGraph::Layer val);
    RequestHandle getLastRequest() const { return lastRequest; }
    /// The walk over the grid that found this component last.
    void setLastRequest(RequestHandle val) { lastRequest = val; }

protected:
    GraphicsComponent2() = default;

    /// The scene graph of this component's manager; invalid without one.
    Handle<SceneGraph> getSceneGraph() const;
    /// Logs an error unless the component is in one of the layers that its class can be drawn in, or in none.
    void expectLayer(std::initializer_list<SceneGraph::Layer> drawable) const;
    /// The transform of this component's entity; null without one.
    TransformComponent *findTransform() const;
    /// The transform of this component's entity; null without one, which is reported once.
    TransformComponent *expectTransform();

private:
    bool visible = true;
    bool castShadows = true;
    SceneGraph::Layer layer = SceneGraph::NUM_LAYERS; ///< NUM_LAYERS: not set yet
    RequestHandle lastRequest = 0;
    bool loaded = false; ///< set by onLoadComplete; a layer set before that enters nothing yet

    /// The entity's transform, which drawing asks for in every pass; looked up again when any object was born or died,
    /// or this one moved in the tree.
    mutable TransformComponent *transform = nullptr;
    mutable std::uint64_t objectChanges = 0; ///< births and deaths that it takes account of
    bool missingTransformTold = false;       ///< and not found since: a frame later nothing has changed
};
