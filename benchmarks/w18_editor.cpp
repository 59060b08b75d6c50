// W18: an editor open over 5,000 crates of which 200 are selected: what it adds to a frame, and what a pick takes.
#include <benchmark/benchmark.h>

#include "tools/editor/EditorComponent.h"

#include "assets/building/MeshBuilder.h"
#include "assets/models/DynamicMeshAsset.h"
#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/transforms/TransformComponent.h"
#include "platform/window/WindowSystem2.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/ViewerComponent.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace
{
constexpr int SIDE = 71, CRATES = 5000, SELECTED = 200, FRAMES = 25, WARM_UP = 5;

/// Processor time of this thread: what the driver's threads shade is the same with and without the editor, but for it.
double now()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// A field of crates in a small window, seen from above, and an editor.
class CrateLevel
{
public:
    CrateLevel()
    {
        setenv("KAVEL_HEADLESS", "1", 1);
        getSystemDeref<WindowSystem2>().setWindowedSize(320, 180);
        level = construct<Coordinator>(defaultAllocationCategory);
        getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(level);
        level.lookup()->setLoopState(Coordinator::LOOP_STOP);
        const Handle<Entity> eye = entity("eye", Vec4(0, 40, -50, 1));
        add<ViewerComponent>(eye, "viewer");
        handle_cast<GraphicsManager2>(level.lookup()->getManager(SCS("graphics2"))).lookup()->pushCamera(eye);
        fillField();
        editor = add<EditorComponent>(entity(".Editor", Vec4(0, 0, 0, 1)), "editor");
        editor->open();
        editor->goTo(Vec4(0, 40, -50, 1), 0, 38);
        editor->setGizmo(SCS("move"));
        for (int i = 0; i < SELECTED; ++i)
            editor->select(crates[std::size_t(i) * 20]);
    }
    ~CrateLevel()
    {
        editor->close();
        getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(Handle<Coordinator>());
        level.lookup()->murder();
        cremateDeadObjects();
    }
    CrateLevel(const CrateLevel &) = delete;
    CrateLevel &operator=(const CrateLevel &) = delete;

    /// Median of a frame's time, seconds.
    double frame(bool isOpen)
    {
        const Vec4 place = editor->getCameraPlace();
        editor->setActive(isOpen);
        if (!isOpen) // the same is seen
            handle_cast<GraphicsManager2>(level.lookup()->getManager(SCS("graphics2")))
                .lookup()
                ->setCurrentCamera(editor->getCamera());
        editor->setCameraPlace(place);
        std::vector<double> times;
        for (int i = 0; i < WARM_UP + FRAMES; ++i)
        {
            const double begin = now();
            getSystemDeref<GameLoopSystem>().doFrame();
            if (i >= WARM_UP)
                times.push_back(now() - begin);
        }
        return median(times);
    }

    EditorComponent *editor = nullptr;
    std::vector<Handle<Entity>> crates;

private:
    Handle<Entity> entity(const char *name, Vec4 place)
    {
        const Handle<Entity> made = construct<Entity>(defaultAllocationCategory);
        made.lookup()->setName(SCS(name));
        made.lookup()->setParent(level);
        add<TransformComponent>(made, "transform")->setPosition(place);
        return made;
    }
    template <class T>
    T *add(const Handle<Entity> &to, const char *key)
    {
        return handle_cast<T>(to.lookup()->addComponent(SCS(key), T::staticType)).lookup().ptr;
    }
    void fillField()
    {
        MeshBuilder box;
        box.addBox(Vec4(0.3f, 0.3f, 0.3f, 0));
        const Handle<DynamicMeshAsset> mesh = makeDynamicMesh(*level.lookup());
        mesh.lookup()->setMeshData(box);
        for (int i = 0; i < CRATES; ++i)
        {
            crates.push_back(entity("crate", Vec4(float(i % SIDE - SIDE / 2), 0, float(i / SIDE - SIDE / 2), 1)));
            auto *const model = add<ModelGraphicsComponent2>(crates.back(), "graphics2");
            model->setMesh(mesh);
            model->setLayer(SceneGraph::WORLD_UNCONDITIONAL);
            model->GraphicsComponent2::onLoadComplete();
        }
    }

    Handle<Coordinator> level;
};

void editorFrame(benchmark::State &state)
{
    for (auto _ : state)
    {
        CrateLevel level;
        // Turn by turn, so that what the machine does meanwhile falls on both.
        std::vector<double> extra;
        for (int round = 0; round < 5; ++round)
        {
            const double without = level.frame(false);
            extra.push_back(level.frame(true) - without);
        }
        state.counters["ns_frame"] = median(extra) * 1e9;
        state.counters["check"] = level.editor->getSelectedCount();
    }
}

void editorPick(benchmark::State &state)
{
    CrateLevel level;
    level.frame(true);
    const Vec4 pixel = level.editor->toScreen(Vec4(0, 0.3f, 0, 1));
    bool isMet = true;
    for (auto _ : state)
        isMet = isMet && level.editor->pick(pixel.x, pixel.y).isValid();
    state.counters["check"] = isMet;
}
} // namespace

BENCHMARK(editorFrame)->Name("W18/frame")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(editorPick)->Name("W18/pick")->Unit(benchmark::kMillisecond);
