// W8: a thousand creatures, each with a tree of fifteen nodes.
//
// The engine's composites pass on to one more child a tick. "frame" ticks a tree until it has finished or a leaf needs
// the next frame, which is what a composite that passes on at once does in one tick: the same leaves in the same frames.
// "tick" is what a level does: one tick a frame, through the components.
#include "Rate.h"
#include "Subjects.h"

#include "ai/nodes/BTAction.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "engine/levels/Coordinator.h"

#include <vector>

namespace
{
bool leafWaits = false; ///< a leaf has asked for the next frame

Agent &agentOf(const Handle<Entity> &h)
{
    Agent &agent = unchecked_handle_cast<BenchCreature>(h).lookupNoCheck()->agent;
    ++agent.visits;
    return agent;
}

StatusCode answer(bool yes)
{
    return yes ? SC_Success : SC_Failure;
}

StatusCode seesThreat(Handle<Entity> h)
{
    return answer((w08Frame + agentOf(h).id) % 8 == 0);
}

StatusCode inRange(Handle<Entity> h)
{
    return answer((w08Frame + agentOf(h).id) % 4 == 0);
}

StatusCode onCooldown(Handle<Entity> h)
{
    return answer((w08Frame + agentOf(h).id) % 3 == 0);
}

StatusCode hasPath(Handle<Entity> h)
{
    agentOf(h);
    return SC_Success;
}

ActionStatus succeed(Handle<Entity> h)
{
    agentOf(h);
    return AS_Complete;
}

ActionStatus look(Handle<Entity> h)
{
    agentOf(h);
    return AS_Failed;
}

ActionStatus followPath(Handle<Entity> h)
{
    Agent &agent = agentOf(h);
    if (++agent.progress < 3)
    {
        leafWaits = true;
        return AS_InProgress;
    }
    agent.progress = 0;
    return AS_Complete;
}

/// A thousand creatures in a level of their own, for one benchmark.
class Crowd
{
public:
    Crowd()
    {
        registerTree();
        level = construct<Coordinator>(defaultAllocationCategory);
        for (std::uint32_t id = 0; id < w08Agents; ++id)
            addCreature(id);
        w08Frame = 0;
    }
    ~Crowd()
    {
        level.lookup()->murder();
        cremateDeadObjects();
        cremateDeadObjects();
    }

    double getVisits() const
    {
        std::uint64_t visits = 0;
        for (const Handle<BenchCreature> &h : creatures)
            visits += h.lookup()->agent.visits;
        return double(visits);
    }

    std::vector<Handle<BTTask>> roots;
    std::vector<BTComponent *> minds;

private:
    static void registerTree()
    {
        static bool known = false;
        if (std::exchange(known, true))
            return;
        BTLib &library = getSystemDeref<BTLib>();
        const auto join = [&](Handle<BTTask> parent, std::initializer_list<Handle<BTTask>> children)
        {
            for (const Handle<BTTask> &child : children)
                library.BTAddChild(parent, child);
            return parent;
        };
        const auto sequence = [&](std::initializer_list<Handle<BTTask>> children)
        { return join(library.BTCreateSequence(), children); };
        const auto decorated = [&](BTDecorator::DecoratorType type, Handle<BTTask> child)
        { return join(library.BTCreateDecorator(type), {child}); };

        library.addBehaviorTree(
            SCS("W8"), join(library.BTCreateSelector(),
                            {sequence({library.BTCreateCondition(seesThreat), library.BTCreateAction(succeed)}),
                             sequence({library.BTCreateCondition(inRange),
                                       decorated(BTDecorator::DT_Inverter, library.BTCreateCondition(onCooldown)),
                                       library.BTCreateAction(succeed)}),
                             sequence({library.BTCreateCondition(hasPath), library.BTCreateAction(followPath),
                                       decorated(BTDecorator::DT_FailFilter, library.BTCreateAction(look)),
                                       library.BTCreateAction(succeed)})}));
    }

    void addCreature(std::uint32_t id)
    {
        static const String name = SCS("W8");
        static const String key = SCS("behaviors");
        const Handle<BenchCreature> h = construct<BenchCreature>(defaultAllocationCategory);
        h.lookup()->setParent(level);
        h.lookup()->agent.id = id;
        creatures.push_back(h);
        auto mind = handle_cast<BTComponent>(h.lookup()->addComponent(key, BTComponent::staticType)).lookup();
        mind->addBehavior(name);
        mind->setActiveBehavior(name);
        minds.push_back(mind.ptr);
        roots.push_back(mind->getTree(name));
    }

    Handle<Coordinator> level;
    std::vector<Handle<BenchCreature>> creatures;
};

void frame(benchmark::State &state)
{
    Crowd crowd;
    for (auto _ : state)
    {
        for (const Handle<BTTask> &h : crowd.roots)
        {
            BTTask &root = *h.lookup();
            leafWaits = false;
            while (root.tick() == SC_NeedMoreTime && !leafWaits)
                ;
        }
        ++w08Frame;
    }
    state.counters["check"] = crowd.getVisits();
    reportNanoseconds(state, w08Agents);
}

void tick(benchmark::State &state)
{
    Crowd crowd;
    for (auto _ : state)
    {
        for (BTComponent *mind : crowd.minds)
            mind->doFrame();
        ++w08Frame;
    }
    state.counters["check"] = crowd.getVisits();
    reportNanoseconds(state, w08Agents);
}
} // namespace

BENCHMARK(frame)->Name("W8/frame")->Iterations(w08Frames);
BENCHMARK(tick)->Name("W8/tick")->Iterations(w08Frames);
