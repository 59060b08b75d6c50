#include "RenderingWorld.h"

#include "rendering/frame/RenderParams.h"
#include "platform/window/WindowSystem2.h"
#include "support/AllocationCount.h"
#include "support/TemporaryFile.h"

#include "object/python/PythonCalls.h"
#include "port/d3dx9/d3dx9tex.h"

#include <cstdlib>
#include <cstring>

std::string GraphicsSystem2TestAccess::nameOf(GraphicsSystem2 &g, IDirect3DSurface9 *surface)
{
    for (const auto &[name, target] : targets(g))
        if (target.surf == surface)
            return name.toCString();
    for (const auto &[name, target] : depthTargets(g))
        if (target.surf == surface)
            return name.toCString();
    return surface ? "?" : "-";
}

namespace
{

/// Before the systems start: no display is asked for.
struct Headless
{
    Headless() { setenv("KAVEL_HEADLESS", "1", 1); }
} headless;

} // namespace

RenderingWorld::RenderingWorld()
{
    initPython(); // the viewer of the screen is built by a script
    getSystemDeref<WindowSystem2>().setWindowedSize(WIDTH, HEIGHT);
    manager = &*handle_cast<GraphicsManager2>(level.coordinator().getManager(SCS("graphics2"))).lookup();
    camera = level.entity("camera");
    level.transform(camera);
    level.component<ViewerComponent>(camera, "viewer");
    manager->pushCamera(camera);

    device = std::make_unique<RecordingDevice>(graphics().getDevice());
    device->nameOf = [this](IDirect3DSurface9 *s) { return GraphicsSystem2TestAccess::nameOf(graphics(), s); };
    realDevice = graphics().replaceDevice(device.get());
}

RenderingWorld::~RenderingWorld()
{
    graphics().releaseInstanceBuffer();
    graphics().replaceDevice(realDevice);
}

DrawnThing &RenderingWorld::thing(const char *label, SceneGraph::Layer layer, int group, Handle<Object> parent)
{
    const Handle<Entity> entity = level.entity(label, parent);
    level.transform(entity);
    DrawnThing &thing = *level.component<DrawnThing>(entity, "graphics2").lookup();
    thing.journal = &calls;
    thing.label = label;
    thing.group = group;
    thing.setLayer(layer);
    thing.onLoadComplete();
    return thing;
}

PartitioningGrid &RenderingWorld::mapWithGrid(const char *name)
{
    const Handle<MapRootEntity> map = level.map(name, Vec4(0, 0, 0, 1), Vec4(40, 10, 40, 0));
    const Handle<Entity> data = level.entity(".MapData_partitioningGrid", map);
    PartitioningGrid &grid = *level.component<PartitioningGrid>(data, "partitioning").lookup();
    grid.setSize(Vec4(40, 0, 40, 0));
    grid.setCellSize(2);
    grid.updateSize();
    return grid;
}

BoundingVolume &RenderingWorld::putInGrid(PartitioningGrid &grid, DrawnThing &thing, Vec4 place)
{
    const Handle<Entity> entity = handle_cast<Entity>(thing.getParent());
    handle_cast<TransformComponent>(entity.lookup()->getComponent(SCS("transform"))).lookup()->setPosition(place);
    BoundingVolume &volume = *level.component<BoundingVolume>(entity, "boundingVolume").lookup();
    grid.addVolume(getHandle(&volume));
    return volume;
}

void RenderingWorld::drawFrame()
{
    graphics().beginFrame().ignoreError();
    manager->doFrame();
    graphics().endFrame().ignoreError();
    graphics().present().ignoreError();
}

std::vector<std::string> RenderingWorld::journalOfPasses()
{
    graphics().beginFrame().ignoreError();
    device->take();
    manager->doFrame();
    std::vector<std::string> passes = device->take();
    graphics().endFrame().ignoreError();
    graphics().present().ignoreError();
    device->take();
    return passes;
}

RenderingWorld::OnRealDevice::OnRealDevice(RenderingWorld &world)
    : world(world), recorder(world.graphics().replaceDevice(world.realDevice))
{
    world.graphics().releaseInstanceBuffer();
}

RenderingWorld::OnRealDevice::~OnRealDevice()
{
    world.graphics().releaseInstanceBuffer();
    world.graphics().replaceDevice(recorder);
}

std::size_t RenderingWorld::allocationsOfFrames(int frames)
{
    const OnRealDevice real(*this);
    for (int i = 0; i < 5; ++i)
        drawFrame();
    return allocationsOf([this] { drawFrame(); }, frames);
}

unsigned RenderingWorld::presentedPixel(int x, int y)
{
    // The PNG is read back by the same texture loader that content goes through.
    const TemporaryFile file("pixel.png");
    const OnRealDevice real(*this);
    graphics().captureScreen(file.name());
    drawFrame();
    IDirect3DTexture9 *picture = nullptr;
    D3DLOCKED_RECT rows = {};
    unsigned color = 0;
    if (SUCCEEDED(D3DXCreateTextureFromFileA(realDevice, file.name().toCString(), &picture)) &&
        SUCCEEDED(picture->LockRect(0, &rows, nullptr, D3DLOCK_READONLY)))
        std::memcpy(&color, static_cast<char *>(rows.pBits) + y * rows.Pitch + x * 4, sizeof(color));
    if (picture)
        picture->Release();
    return color;
}
