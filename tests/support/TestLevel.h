// TestLevel: a running level that no script built.
#pragma once

#include "engine/levels/Coordinator.h"
#include "engine/entities/Entity.h"
#include "engine/levels/GameLoop.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

/// The systems up, one coordinator in charge, and frames of a fixed length; everything is torn down with it.
///
/// A frame is 64 ticks of 4096 a second. One at a time.
class TestLevel
{
public:
    static constexpr TimerTicks FRAME_TICKS = 64;

    TestLevel();
    ~TestLevel();
    TestLevel(const TestLevel &) = delete;
    TestLevel &operator=(const TestLevel &) = delete;

    Coordinator &coordinator() const { return *level.lookup(); }
    /// Runs one whole frame through the game loop, cremation included.
    void frame();
    /// Makes a coordinator that nobody runs yet; it dies with the test level.
    Handle<Coordinator> anotherCoordinator();

    /// Makes an entity under a parent, or directly under the coordinator.
    Handle<Entity> entity(const char *name, Handle<Object> parent = Handle<Object>());
    /// Makes a map with a transform: its centre and its extents, metres.
    Handle<MapRootEntity> map(const char *name, Vec4 centre, Vec4 extents);
    /// Gives an entity a transform.
    Handle<TransformComponent> transform(const Handle<Entity> &entity, Vec4 position = Vec4(0, 0, 0, 1));

    template <class T>
    Handle<T> component(const Handle<Entity> &entity, const char *key)
    {
        return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType));
    }

    Handle<Coordinator> level;

private:
    std::vector<Handle<Coordinator>> others;
};

/// How many lines of the log so far hold a text.
std::size_t countLogLines(const char *text);
