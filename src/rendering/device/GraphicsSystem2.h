// GraphicsSystem2: owner of the Direct3D 9 device and of everything bound to it.
#pragma once

#include "rendering/device/DeviceMeshes.h"
#include "rendering/device/DeviceTextures.h"
#include "rendering/device/InstanceRing.h"
#include "rendering/device/RenderTargets.h"
#include "rendering/device/ShaderBank.h"
#include "rendering/device/VertexLayouts.h"

#include "engine/systems/System.h"

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "foundation/Vector.h"
#include "port/d3d9/d3d9types.h"

#include <memory>
#include <utility>

class DynamicMeshAsset;
class Entity;
class IAssetUploader;
class MeshAsset;
class SceneGraph;
class ShaderAsset;
class TextureAsset;
struct CoverageImage;
struct IDirect3DDevice9;
struct IDirect3DSurface9;
struct IDirect3DTexture9;
struct IDirect3DVertexDeclaration9;

/// The graphics device for the rest of the engine: render targets, textures, meshes and effects by name or handle.
///
/// Owns the device. What is bound to it is held by its parts, one kind each: targets, textures, meshes, layouts, the ring
/// of instances, effects; no other class holds a device resource. A lost device is hidden here: drawing stops being possible, beginFrame
/// brings the device back when it can, and whoever draws only asks deviceIsReady. The frame brackets beginFrame,
/// endFrame and present are updaters of every level, run also while the level is stopped.
class GraphicsSystem2 : public System
{
    KV_REFLECTED(GraphicsSystem2)
public:
    /// How a render target takes part in a pass.
    enum RenderTargetBindMode
    {
        AS_TARGET = 0,  ///< drawn into
        AS_TEXTURE = 1, ///< read by the effect
        AS_UNBOUND = 2  ///< not at all
    };

    typedef ::RenderTarget RenderTarget;
    typedef ::DepthTarget DepthTarget;
    typedef ::MeshData MeshData;
    struct ShaderID;          // RenderParams.h
    struct SceneRenderParams; // RenderParams.h
    struct BatchRenderParams; // RenderParams.h

    GraphicsSystem2();
    ~GraphicsSystem2() override;

    /// Brings a lost device back if it can, then opens and clears the frame. Success also while it stays lost.
    ErrorCode beginFrame();
    /// Closes the frame, with the tweak bars drawn on top if they are shown.
    ErrorCode endFrame();
    /// Shows the frame; a device found lost is success, and beginFrame deals with it.
    ErrorCode present();

    /// Writes the next presented frame into a PNG file; a later call before that replaces the name.
    ///
    /// The path is relative to the working directory. A file that cannot be written is logged with the reason, and ends
    /// a game that nobody watches with exit code 1; what stood there before stays.
    void captureScreen(const String &fileName);

    /// Writes the world as the next frame shows it into a small PNG file, without what lies over it on the screen.
    ///
    /// The path is as that of `captureScreen`, and a file that cannot be written is logged with the reason. Nothing is
    /// written while nothing is drawn.
    void captureWorld(const String &fileName);
    /// Writes what `captureWorld` has asked for, if anything; for whoever has just drawn the world.
    void writeWorldPicture();

    /// Marks the device as lost and gives up what may not outlive a reset; a second call does nothing.
    void lostDevice();
    /// Resets the device, for a new window size or after a loss; failing that, it stays lost.
    ErrorCode resetDevice();
    /// Whether drawing is possible: there is a device and it is not lost.
    bool deviceIsReady() const;
    /// Whether frames are drawn: the device is ready, the window has not been put away, and nobody wants none.
    bool isDrawing() const;

    /// Makes a colour target and its texture.
    ///
    /// A divisor from 0 up halves the world picture's size that often; a negative one gives a square of that side.
    /// A name that is there already is replaced. The name "screen" is the back buffer's own.
    ErrorCode registerRenderTarget(String name, int logSizeDivisor, D3DFORMAT format, bool buildMipChain = false);
    /// Makes a depth and stencil target; the size rule is that of registerRenderTarget.
    ErrorCode registerDepthTarget(String name, int logSizeDivisor, D3DFORMAT format);
    /// Binds up to four targets to slots 0 to 3; an empty name unbinds. Stops at the first failure, earlier slots stay.
    ErrorCode useRenderTargets(String name1, String name2 = String(), String name3 = String(), String name4 = String());
    /// Binds one level of a target to a slot: UNKNOWN_KEY for an unknown name; an empty one unbinds, slot 0 to the
    /// back buffer.
    ErrorCode useRenderTargetAndMipLevel(int targetID, const String &name, int mipLevel = 0);
    /// Binds a depth target; an empty name unbinds.
    ErrorCode useDepthTarget(const String &name);
    /// Width of what slot 0 draws into, pixels.
    int getTargetWidth() const { return targetWidth; }
    /// Height of what slot 0 draws into, pixels.
    int getTargetHeight() const { return targetHeight; }
    /// Name of the target that the world's picture is put together in: "screen", or with a render scale "World".
    String getWorldTarget() const;
    /// Brings the world's picture to the screen, stretched to fit; nothing where it was made there.
    ErrorCode showWorld();
    /// The texture of a target, borrowed; UNKNOWN_KEY for an unknown name and for one without a texture.
    ErrorReturn<IDirect3DTexture9 *> getRenderTargetTexture(const String &name);
    /// One level of a target with a reference that the caller releases; null for an empty name.
    ErrorReturn<IDirect3DSurface9 *> getSingleRenderTargetSurface(const String &name, int mipLevel);
    /// A depth target with a reference that the caller releases; null for an empty name.
    ErrorReturn<IDirect3DSurface9 *> getSingleDepthTargetSurface(const String &name);

    /// Reads a texture's file into the device; ends in the asset's onUploadComplete.
    ErrorCode uploadTexture(Handle<TextureAsset> texture);
    /// Reads a texture's file into the device in place of what is there, which stays where the file cannot be read.
    /// @return why it failed, as a sentence; empty on success
    String replaceTexture(Handle<TextureAsset> texture);
    /// Compiles an effect's file anew; the effect that is there stays where the new one does not compile.
    /// @param name  of the file in "..\\assets\\shaders\\", as "ff.fx"
    /// @return the compiler's text: file, line, technique and cause; empty on success, and for one that is not used
    String reloadEffect(const String &name);
    /// Copies the changed part of an image that code made to the device; ends in the asset's onUploadComplete.
    ///
    /// All of it goes there the first time and after a change of size.
    ErrorCode uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &image);
    /// Copies a mesh to the device; ends in the asset's onUploadComplete.
    ///
    /// Buffers that are big enough are used again. A mesh that cannot be drawn (an index beyond its vertices, a type
    /// that is not drawn) is refused and named in the log.
    ErrorCode uploadMesh(Handle<MeshAsset> mesh);
    /// Effects go through ShaderBank; there is nothing to upload for a shader asset: NOT_IMPLEMENTED.
    ErrorCode uploadShader(Handle<ShaderAsset> shader);
    /// The device's copy of a mesh; UNKNOWN_KEY if there is none (yet).
    ErrorReturn<MeshData> getMeshData(const Handle<MeshAsset> &mesh);
    /// Sphere around a mesh's vertices, in model space: centre, and radius in w; a radius below 0 for an unknown mesh.
    Vec4 getMeshSphere(const Handle<MeshAsset> &mesh) const;
    /// The device's texture, borrowed; null if there is none (yet).
    IDirect3DTexture9 *getTexturePtr(const Handle<TextureAsset> &texture);

    /// A new scene graph as a child of this system; its owner murders it.
    Handle<SceneGraph> getNewSceneGraph();
    /// A quad that covers the screen for passes in clip space.
    Handle<DynamicMeshAsset> getFullScreenQuad();
    /// Rebuilds the quad for the present window size.
    void updateFullScreenQuad();

    Handle<Entity> getLastFrameCamera() const { return lastFrameCamera; }
    /// The camera that screen points are unprojected with.
    void setLastFrameCamera(Handle<Entity> val) { lastFrameCamera = val; }
    /// World point under a point of the screen, for the camera of the last frame.
    ///
    /// @param screenPoint    window units, origin at the top left; z is the depth, 0 near and 1 far
    /// @param useSceneDepth  takes the depth from screenPoint as well: the scene's depth is not read back
    /// @return the origin, with w 1, without a camera
    Vec4 unprojectPointFromLastFrame(const Vec4 &screenPoint, bool useSceneDepth = false);

    bool getShowAntTweakBar() const { return showAntTweakBar; }
    /// Whether endFrame draws the tweak bars.
    void setShowAntTweakBar(bool val) { showAntTweakBar = val; }

    float getRenderScale() const { return renderScale; }
    /// Size of the world's picture as a fraction of the window's, kept within 0.1 to 2; it is stretched to fit.
    ///
    /// The screen layers, texts among them, keep the window's size. Takes effect with the next frame.
    void setRenderScale(float val);

    bool getWithoutDrawing() const { return withoutDrawing; }
    /// Whether frames are run and never drawn, by default not: for runs of which only the play counts.
    void setWithoutDrawing(bool val) { withoutDrawing = val; }

    bool getVsync() const { return vsync; }
    /// Whether a frame waits for the display's refresh before it is shown, by default not; from the next frame on.
    void setVsync(bool val);

    float getGamma() const { return gamma; }
    /// How the screen's brightness follows its values, as an exponent kept within 1 to 4; more shows more in the dark.
    void setGamma(float val);

    float getBrightness() const { return brightness; }
    /// Factor of the world's light on its way to the screen, kept within 0.25 to 4; texts and pictures stay as they are.
    void setBrightness(float val);

    bool getOcclusion() const { return occlusion; }
    /// Whether corners are darker than open surfaces, by default so; without, two passes at half the size are saved.
    void setOcclusion(bool val) { occlusion = val; }

    bool getLampShadows() const { return lampShadows; }
    /// Whether all lights draw shadows, by default so, or only those that are carried.
    ///
    /// Only the picture hangs on it: what creatures and nerves know of the light is the same.
    void setLampShadows(bool val) { lampShadows = val; }

    int getShadowMapSize() const { return shadowMapSize; }
    /// Side of the square shadow map in texels, kept within 64 to 4096; more draws finer edges and takes longer.
    void setShadowMapSize(int val);

    bool getAntialiasing() const { return antialiasing; }
    /// Whether the stair-steps along outlines are smoothed, by default so; surfaces and texts stay as they are.
    ///
    /// Where software draws, a frame without takes a good deal less time.
    void setAntialiasing(bool val) { antialiasing = val; }

    int getSparing() const { return sparing; }
    /// What is left out for the time being, whatever is wanted, so that frames come sooner: 0, by default, for nothing;
    /// 1 for smoothed outlines and dark corners; 2 for shadows of what nobody carries and fine ones, too.
    void setSparing(int val);
    /// Whether outlines are smoothed now.
    bool drawsAntialiased() const { return antialiasing && sparing < 1; }
    /// Whether corners are darkened now.
    bool drawsOcclusion() const { return occlusion && sparing < 1; }
    /// Whether lights that nobody carries draw shadows now.
    bool drawsLampShadows() const { return lampShadows && sparing < 2; }

    /// Size of the back buffer in pixels: the window's.
    int getBackBufferWidth() const { return backBufferWidth; }
    int getBackBufferHeight() const { return backBufferHeight; }
    /// Size of the world's picture in pixels: the window's times the render scale.
    int getWorldWidth() const { return worldWidth; }
    int getWorldHeight() const { return worldHeight; }

    /// Draw calls of the last presented frame.
    int getDrawCallCount() const;
    /// Instances that the last presented frame's draw calls drew, a plain draw counting as one.
    int getInstanceCount() const;
    /// Triangles of the last presented frame, over all instances.
    int getTriangleCount() const;
    /// Calls of the last presented frame that changed the driver's state; those that change nothing are left out.
    int getStateChangeCount() const;
    /// Switches of the last presented frame to another set of render targets.
    int getTargetChangeCount() const;
    /// Clears of the last presented frame.
    int getClearCount() const;
    /// Writes of the last presented frame into buffers and textures.
    int getUploadCount() const;

    /// Draws one pass of the technique that has begun.
    ///
    /// @param instanceType   layout of the instance stream, MVT_NONE for a plain draw
    /// @param instanceCount  records in the instance buffer's last locked range
    /// @return UNKNOWN_KEY if the batch has no technique for the shader set; success for a mesh not uploaded yet
    ErrorCode renderBatch(const BatchRenderParams &renderParams, const String &shaderSet, unsigned pass,
                          MeshVertexType instanceType, int instanceCount);
    /// Opens room for a batch's instances in the ring; the result is written front to back, then unlocked.
    ErrorReturn<void *> lockInstanceBuffer(MeshVertexType instanceType, int instanceCount);
    ErrorCode unlockInstanceBuffer();
    void releaseInstanceBuffer();

    /// What a vertex type is made of; an unknown type is an assertion and gives an empty description.
    const VertexDescription &getVertexDescription(MeshVertexType type) const;
    /// The device's declaration for a mesh stream and an instance stream, borrowed and cached; null if it failed.
    IDirect3DVertexDeclaration9 *getVertexDeclaration(MeshVertexType vertexType, MeshVertexType instanceType) const;

    ShaderBank &getShaders() { return shaders; }
    IDirect3DDevice9 *getDevice() const { return device; }
    /// Puts another device in the place of this one and returns the one before: the seam where a test records or
    /// fails calls. Neither reference changes hands.
    IDirect3DDevice9 *replaceDevice(IDirect3DDevice9 *other);

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    friend struct GraphicsSystem2TestAccess;

    void createDevice();
    void releaseDevice();
    void onCreateOrReset();
    void getPresentParams(D3DPRESENT_PARAMETERS &params);
    ErrorCode tryToRecoverDevice();
    void writeScreenshot();

    void createRenderTargets();
    void createShadowMap();
    void destroyRenderTargets();
    std::pair<unsigned, unsigned> getTargetSize(int logSizeDivisor) const;
    void rememberTargetSize(const String &name, int mipLevel);

    ErrorCode setStreams(const MeshData &mesh, MeshVertexType instanceType, int instanceCount);
    ErrorCode drawMesh(const MeshData &mesh);
    D3DPRIMITIVETYPE getD3DPrimType(const MeshData &mesh) const;

    IDirect3DDevice9 *device = nullptr;
    RenderTargets targets;
    DeviceTextures textures;
    DeviceMeshes meshes;
    mutable VertexLayouts layouts; ///< makes a declaration when it is first asked for
    InstanceRing instances;
    Handle<Entity> lastFrameCamera;
    Handle<DynamicMeshAsset> fullScreenQuad;
    ShaderBank shaders;
    bool deviceIsLost = true; ///< from before there is a device, and from a loss to the next reset
    bool showAntTweakBar = false;

    float renderScale = 1.0f;
    float gamma = 2.2f;      ///< exponent, as most screens have it
    float brightness = 1.0f; ///< factor of the light
    bool occlusion = true;
    bool lampShadows = true;
    int sparing = 0;         ///< what is left out for the time being, see setSparing
    int shadowMapSize = 768; ///< texels a side: a cone as fine as in a window of that height
    bool antialiasing = true;
    bool vsync = false;
    bool withoutDrawing = false;
    int backBufferWidth = 0;  ///< pixels
    int backBufferHeight = 0; ///< pixels
    int worldWidth = 0;       ///< pixels
    int worldHeight = 0;      ///< pixels
    int targetWidth = 0;      ///< of what slot 0 draws into, pixels
    int targetHeight = 0;     ///< of what slot 0 draws into, pixels
    String screenshotFile;    ///< where the next present writes the frame; empty for nowhere
    String worldPictureFile;  ///< where the next picture of the world goes; empty for nowhere
    std::unique_ptr<IAssetUploader> uploader;
};
