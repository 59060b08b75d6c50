// GraphicsManager2: one level's frame, pass by pass.
#pragma once

#include "engine/entities/AbstractManager.h"

#include "foundation/ErrorCode.h"
#include "foundation/Vector.h"

#include <vector>

class Entity;
class SceneGraph;

/// Drives the deferred renderer for one level, under the manager key "graphics2".
///
/// Owns the level's scene graph, the stack of cameras and the viewer of the screen plane. Holds no device resources:
/// every pass is a filled-in set of parameters for SceneGraph. Draws also while the level is stopped.
class GraphicsManager2 : public AbstractManager
{
    KV_REFLECTED(GraphicsManager2)
public:
    GraphicsManager2() = default;

    /// Temporary function for the coordinator to call.
    ///
    /// Renders the level: G-buffer, lights, combine, debug geometry, what a failing mind makes of it, screen plane.
    /// Nothing while the device is lost.
    void doFrame() override;
    void onAddToCoordinator() override;
    void onMurder() override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void destroyComponent(Handle<AbstractComponent> component) override;

    /// The camera on top of the stack; invalid while there is none.
    Handle<Entity> getCurrentCamera() const;
    /// Replaces the top of the stack; with an empty stack pushes.
    void setCurrentCamera(Handle<Entity> camera);
    /// Puts a camera on top; it is an entity with the components "viewer" and "transform".
    void pushCamera(Handle<Entity> camera);
    /// Takes the top camera off, unless it is the last one.
    void popCamera();
    /// Takes a camera off, wherever it lies in the stack, the last one too; one that is not there changes nothing.
    void dropCamera(Handle<Entity> camera);

    Handle<SceneGraph> getSceneGraph() const { return sceneGraph; }

    float getSceneAmbient() const { return sceneAmbient; }
    /// Light that reaches everything, as a factor on the diffuse colour.
    void setSceneAmbient(float val) { sceneAmbient = val; }
    /// Linear light that comes from everywhere, before what "test.fx" makes of it by where a surface faces.
    Vec4 getAmbientLight() const;
    float getDissolveAmount() const { return dissolveAmount; }
    /// How far the picture is dissolved, 0 not at all.
    void setDissolveAmount(float val) { dissolveAmount = val; }
    Vec4 getDissolveColor() const { return dissolveColor; }
    /// Colour that the picture dissolves to.
    void setDissolveColor(const Vec4 &val) { dissolveColor = val; }
    float getHeartbeat() const { return heartbeat; }
    /// How hard the heart beats at this moment, 0 to 1: the picture's edges close with it.
    void setHeartbeat(float val) { heartbeat = val; }
    float getFlash() const { return flash; }
    /// How far the picture starts at this moment, 0 to 1.
    void setFlash(float val) { flash = val; }

    /// Has the next frame first draw the world from a camera, seen by nobody, to learn what that view costs.
    ///
    /// The result is `viewCost` from that frame's end on. What is no camera gives 0.
    void measureView(Handle<Entity> camera);
    /// What the view that was measured last costs: draw calls of the world, its lights and their shadows in x, instances
    /// in y; how often a pixel is drawn by the world in z and by lights with their shadows in w, on average.
    Vec4 getViewCost() const { return viewCost; }
    /// Whether a view is still to be measured.
    bool getMeasuresView() const { return measuresView; }

private:
    ErrorCode measureAskedView();
    ErrorCode depthPrepass();
    ErrorCode generateGBuffer();
    ErrorCode drawLights();
    ErrorCode findOcclusion();
    ErrorCode postProcessWorld();
    ErrorCode drawWorldDebug();
    ErrorCode unsettleWorld();
    ErrorCode showWorld();
    ErrorCode drawScreen();
    ErrorCode drawScreenDebug();

    bool hasUsableCamera();
    void loadScreenViewer();
    void centreScreenViewer();
    ErrorCode drawScreenLayer(int layer);
    float getMasterTime();
    float getInsanityAmount();
    void findUnsettling();
    bool isUnsettled() const;
    String getPictureTarget() const;
    SceneGraph &getLiveSceneGraph();

    Handle<SceneGraph> sceneGraph;
    std::vector<Handle<Entity>> cameraStack; ///< the last one is current
    Handle<Entity> screenViewer;             ///< viewer of the two screen-space passes
    Handle<Entity> brokenCamera;             ///< camera that has been reported as showing nothing
    float sceneAmbient = 0.2f;
    float dissolveAmount = 0.0f;
    Vec4 dissolveColor = Vec4(0, 0, 0, 1);
    float heartbeat = 0.0f;
    float flash = 0.0f;
    float insanity = 0.0f;   ///< of this frame
    Vec4 unsettling;         ///< of this frame: shares of drained colour, grain, closing edges, bent edges
    Handle<Entity> measured; ///< camera whose view is to be measured
    bool measuresView = false;
    Vec4 viewCost;
    Vec4 starts; ///< of this frame: the heart's beat, the picture's start
};
