// LightComponent: a light that adds to the light buffer whatever reaches the surfaces inside its volume.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

class MeshAsset;
class TextureAsset;
class TransformComponent;
class ViewerComponent;

/// A spot or sphere light at its entity's transform, shining along +z.
///
/// Drawn in the layer LIGHT as the mesh that bounds its reach, with a technique of "lights.fx" that reads the G-buffer.
/// Angles are half angles of the cone in radians, distances metres. A spot with castShadows is also a camera: its
/// entity needs a component "viewer", and the world is drawn from it before the light is. Such a spot may throw a
/// picture, its texture. The partitioning grid finds a light by a volume on a child entity, ".partitioningDummy", which
/// the light keeps as large as its reach.
class LightComponent : public GraphicsComponent2
{
    KV_REFLECTED(LightComponent)
public:
    LightComponent();

    /// Requests mesh and texture, and builds the volume that the grid finds the light by where the entity has none.
    void onLoadComplete() override;
    /// Draws the light's volume while GlobalConfigSystem's debugDrawLightVolumes is set.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// The light's volume and constants, for the current camera of its manager. Needs a sibling "transform".
    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    /// Nothing: a light is drawn alone, without an instance stream.
    void objectDraw(BatchProxy &batch) override;
    int objectGetInstanceCount() override;
    /// Draws the shadow map of a light with castShadows, in a pass inside the one under way.
    ErrorCode batchPreRender() override;
    /// Sphere around what the light reaches: the ball of its falloff, or the cone cut out of it.
    Vec4 getBoundingSphere() override;

    /// Share of the light's colour that its distance and its cone let come to a place, 0 to 1, as "lights.fx" has it.
    ///
    /// What stands between is left out, and so is how a surface is turned. 0 for a place that is no number.
    /// @param place  in the native space of the light's transform, metres
    float shareAt(const Vec4 &place) const;
    /// Where the light stands, in the native space of its transform, metres; the origin without one.
    Vec4 getPlace() const;
    /// Whether what stands in the light's way is drawn to keep it off: a spot with castShadows and a viewer.
    bool drawsShadows() const;
    /// How near to the light nothing casts a shadow, metres: the near plane of its viewer; 0 without one.
    float getShadowNear() const;

    Handle<TextureAsset> getTexture() const { return texture; }
    /// Has a spot with castShadows throw a picture, as a lens does: a value of 0.5 lets the light pass as it is.
    ///
    /// It fills the cone, its top above. What a place gets of it is left out of `shareAt`.
    void setTexture(Handle<TextureAsset> val);
    String getTextureName() const { return textureName; }
    /// Name of the texture's file; it is requested at once.
    void setTextureName(const String &val);
    Handle<MeshAsset> getMesh() const { return mesh; }
    /// Draws the light's volume with another mesh until isSpot is set the next time.
    void setMesh(Handle<MeshAsset> val) { mesh = val; }

    bool getIsSpot() const { return isSpot; }
    /// Whether the light is a cone; a sphere otherwise.
    void setIsSpot(bool val);
    bool getSteadyShadows() const { return steadyShadows; }
    /// Whether the shadow map stays as it is turned while the light turns by little, by default not.
    ///
    /// For a light that is carried: edges of shadows then do not crawl over what stands still. The map covers a quarter
    /// more than the cone and is that much coarser; it is rolled, so that upright edges move evenly over its texels.
    void setSteadyShadows(bool val) { steadyShadows = val; }
    bool getIsAmbient() const { return isAmbient; }
    /// A mark for scripts: it changes nothing in how the light is drawn.
    void setIsAmbient(bool val) { isAmbient = val; }

    Vec4 getDiffuseColor() const { return diffuseColor; }
    /// Light that matt surfaces return, linear; above 1 is brighter still.
    void setDiffuseColor(const Vec4 &val) { diffuseColor = val; }
    Vec4 getSpecularColor() const { return specularColor; }
    /// Light that highlights return, linear.
    void setSpecularColor(const Vec4 &val) { specularColor = val; }

    float getSpotInnerAngle() const { return spotInnerAngle; }
    /// Half angle of the cone of full intensity, radians.
    void setSpotInnerAngle(float val) { spotInnerAngle = val; }
    float getSpotOuterAngle() const { return spotOuterAngle; }
    /// Half angle at which the cone ends, radians.
    void setSpotOuterAngle(float val);
    float getSpotFalloff() const { return spotFalloff; }
    /// Shape of the way from the inner to the outer angle: 10 is even, more a narrower core, less a fuller cone.
    void setSpotFalloff(float val) { spotFalloff = val; }
    float getLightFalloffBegin() const { return lightFalloffBegin; }
    /// Distance up to which the light has its full strength, metres.
    void setLightFalloffBegin(float val) { lightFalloffBegin = val; }
    float getLightFalloffEnd() const { return lightFalloffEnd; }
    /// Distance at which the light ends, metres.
    void setLightFalloffEnd(float val);

private:
    struct LightCamera;
    class TurnedToMap;

    float shadowAngle() const;
    void followLight(const TransformComponent &transform);
    void addLens(GraphicsSystem2::BatchRenderParams &params, const Vec4 &right, const Vec4 &up) const;
    void requestMesh();
    void createPartitioningDummy();
    void updatePartitioningDummy() const;
    ViewerComponent *findViewer() const;
    ViewerComponent *findShadowViewer();
    float shareInCone(float cosine) const;
    void drawRays(DebugCollectorComponent &collector, TransformComponent &transform) const;
    void drawRings(DebugCollectorComponent &collector, TransformComponent &transform) const;

    Handle<TextureAsset> texture;
    String textureName;
    Handle<MeshAsset> mesh; ///< "lightCone" or "unitsphere"
    bool isSpot = true;
    bool isAmbient = false;
    Vec4 diffuseColor = Vec4(0.9f, 0.9f, 0.81f, 0);
    Vec4 specularColor = Vec4(0.2f, 0.2f, 0.18f, 0);
    float spotInnerAngle = 0.17453294f; ///< radians, half of the cone of full intensity
    float spotOuterAngle = 0.5235988f;  ///< radians, half of the whole cone
    float spotFalloff = 10.0f;
    float lightFalloffBegin = 0.0f; ///< metres
    float lightFalloffEnd = 17.0f;  ///< metres
    bool missingViewerTold = false; ///< reported, and not found since
    bool steadyShadows = false;
    Quaternion shadowTurn = Quaternion(0, 0, 0, 0); ///< of a steady shadow map, native space; no turn before the first
};
