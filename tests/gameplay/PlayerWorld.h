// PlayerWorld: a player in a map, and the keyboard and mouse that move it.
#pragma once

#include "gameplay/player/PlayerComponent.h"
#include "platform/FakeRawInput.h"
#include "support/TestLevel.h"

#include "engine/transforms/TransformOffsetComponent.h"
#include "physics/bodies/PlayerPhysics.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowSystem2.h"
#include "rendering/frame/ViewerComponent.h"

#include <functional>
#include <initializer_list>

/// The fake devices stand before the level's systems start.
struct FakeDevices
{
    FakeRawInput platform;
    port::ScopedWin32Platform scope{platform};
};

/// A map of 40 x 40 m about the origin, and in it the entity "Player" with all that is no picture and no sound.
///
/// Keys and motions are raw records that the input system turns into messages. A frame is 1/64 s.
class PlayerWorld
{
public:
    explicit PlayerWorld(std::initializer_list<const char *> missing = {})
    {
        getSystemDeref<WindowSystem2>().setWindowedSize(800, 400);
        getSystemDeref<WindowSystem2>().setCursorMode(WindowSystem2::CURSOR_RELATIVE);
        input = getSystem<InputSystem>();
        map = level.map("map", Vec4(0, 0, 0, 1), Vec4(40, 10, 40, 0));
        const Handle<Entity> data = level.entity(".MapData_partitioningGrid", map);
        grid = level.component<PartitioningGrid>(data, "partitioning").lookup().ptr;
        grid->setSize(Vec4(40, 0, 40, 0));
        grid->updateSize();
        const auto has = [&](std::string_view part)
        { return std::find(missing.begin(), missing.end(), part) == missing.end(); };
        buildPlayer(has);
    }

    void key(int code, bool down = true) { send(port::keyInput(static_cast<USHORT>(code), down)); }
    void press(int code)
    {
        key(code);
        key(code, false);
    }
    /// Pixels of a window that is 800 wide.
    void moveMouse(int x, int y) { send(port::mouseInput(x, y)); }
    void frames(int count)
    {
        while (count-- > 0)
            level.frame();
    }
    /// What one frame step of the player asks of the body, which moves by it later in the frame.
    Vec4 forceOfStep()
    {
        body->clearAccumulator();
        player->doFrame();
        return body->getNetForce();
    }

    FakeDevices devices;
    TestLevel level;
    Handle<InputSystem> input;
    Handle<MapRootEntity> map;
    PartitioningGrid *grid = nullptr;
    Handle<Entity> entity, camera;
    PlayerComponent *player = nullptr;
    PlayerPhysics *body = nullptr;
    TransformComponent *place = nullptr, *eyes = nullptr;
    ViewerComponent *view = nullptr;

private:
    void buildPlayer(const std::function<bool(std::string_view)> &has)
    {
        entity = level.entity("Player");
        if (has("transform"))
            place = level.transform(entity, Vec4(0, 1, 0, 1)).lookup().ptr;
        if (has("boundingVolume"))
        {
            auto volume = level.component<BoundingVolume>(entity, "boundingVolume").lookup();
            volume->setHitBox(Vec4(0.5f, 1.75f, 0.5f, 0));
            volume->setVolumeType(BoundingVolume::BV_PLAYER);
        }
        if (has("physics"))
            body = level.component<PlayerPhysics>(entity, "physics").lookup().ptr;
        if (has("camera"))
            buildCamera(has);
        player = level.component<PlayerComponent>(entity, "player").lookup().ptr;
        if (body)
            body->onLoadComplete();
        player->onLoadComplete();
    }
    void buildCamera(const std::function<bool(std::string_view)> &has)
    {
        camera = level.entity("camera", entity);
        eyes = level.transform(camera).lookup().ptr;
        if (has("parentFollower"))
            level.component<TransformOffsetComponent>(camera, "parentFollower")
                .lookup()
                ->setPositionOffset(Vec4(0, 0.7f, 0, 0));
        if (has("viewer"))
            view = handle_cast<ViewerComponent>(camera.lookup()->addComponent(SCS("viewer"), SCS("ViewerComponent")))
                       .lookup()
                       .ptr;
    }
    void send(RAWINPUT record)
    {
        record.header.hDevice = reinterpret_cast<HANDLE>(std::uintptr_t(1));
        devices.platform.record = record;
        input.lookup()->processWM_INPUT(RIM_INPUT, FakeRawInput::HANDLE_OF_RECORD);
    }
};
