// RenderingWorld: a level with a camera, drawn off-screen by the real device with a recording one in front of it.
#pragma once

#include "DrawnThing.h"
#include "RecordingDevice.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/device/GraphicsSystem2.h"
#include "rendering/frame/SceneGraph.h"
#include "rendering/frame/ViewerComponent.h"
#include "support/TestLevel.h"

#include <memory>
#include <string>
#include <vector>

/// Fields of GraphicsSystem2 that only tests look at.
struct GraphicsSystem2TestAccess
{
    static const RenderTargets::RenderTargetMap &targets(GraphicsSystem2 &g) { return g.targets.getRenderTargets(); }
    static const RenderTargets::DepthTargetMap &depthTargets(GraphicsSystem2 &g) { return g.targets.getDepthTargets(); }
    static void presentParams(GraphicsSystem2 &g, D3DPRESENT_PARAMETERS &p) { g.getPresentParams(p); }
    static std::string nameOf(GraphicsSystem2 &g, IDirect3DSurface9 *surface);
};

/// The systems up, a window of 160 x 90, one coordinator with a camera at the origin that looks along +z.
class RenderingWorld
{
public:
    /// Takes the recording device out of the way for its scope: textures need the real one, and so does who counts.
    ///
    /// Buffers of one device cannot be used with the other, so the instance ring is made anew on the way out.
    class OnRealDevice
    {
    public:
        explicit OnRealDevice(RenderingWorld &world);
        ~OnRealDevice();
        OnRealDevice(const OnRealDevice &) = delete;
        OnRealDevice &operator=(const OnRealDevice &) = delete;

    private:
        RenderingWorld &world;
        IDirect3DDevice9 *recorder;
    };

    static constexpr int WIDTH = 160;
    static constexpr int HEIGHT = 90;

    RenderingWorld();
    ~RenderingWorld();

    /// Makes a drawn thing in a layer, loaded, below a parent or the coordinator.
    DrawnThing &thing(const char *label, SceneGraph::Layer layer, int group = 0,
                      Handle<Object> parent = Handle<Object>());
    /// Makes a map of 40 x 40 m about the camera with a grid of cells of 2 m.
    PartitioningGrid &mapWithGrid(const char *name = "map");
    /// Gives a thing a volume, a box of 1 m, at a place of the map, and puts it there.
    BoundingVolume &putInGrid(PartitioningGrid &grid, DrawnThing &thing, Vec4 place);
    /// Runs the brackets and the level's passes once.
    void drawFrame();
    /// The device's journal of one frame's passes, without its brackets.
    std::vector<std::string> journalOfPasses();
    /// Blocks of memory that frames take once things have settled, brackets included.
    std::size_t allocationsOfFrames(int frames);
    /// Colour of a pixel of the last presented frame, 0xAARRGGBB.
    unsigned presentedPixel(int x, int y);

    GraphicsSystem2 &graphics() { return getSystemDeref<GraphicsSystem2>(); }
    IDirect3DDevice9 *realGraphicsDevice() const { return realDevice; }
    SceneGraph &sceneGraph() { return *manager->getSceneGraph().lookup(); }

    TestLevel level;
    GraphicsManager2 *manager = nullptr;
    Handle<Entity> camera;
    std::unique_ptr<RecordingDevice> device;
    std::vector<std::string> calls; ///< what the scene graph asked of drawn things

private:
    IDirect3DDevice9 *realDevice = nullptr;
};
