// W3: one message with a float to 1000 listeners. W3b: 100 of them die before each delivery and 100 new ones subscribe.
#include "Rate.h"
#include "Subjects.h"

#include "object/Message.h"
#include "object/PostOffice.h"

#include <vector>

namespace
{
constexpr std::size_t count = 1000;

MessageType benchMessageType(SCS("BenchMessage"));
MessageType benchChurnMessageType(SCS("BenchChurnMessage"));

Handle<BenchListener> subscribe(const ReflectorPtr &messageType)
{
    const Handle<BenchListener> h = construct<BenchListener>(defaultAllocationCategory);
    PostOffice().registerMessageHandler(messageType, h.lookup()->bind(SCS("handleValueMessage")));
    return h;
}

void murderAll(const std::vector<Handle<BenchListener>> &listeners)
{
    for (const auto &h : listeners)
        h.lookup()->murder();
    cremateDeadObjects();
}

void message(benchmark::State &state)
{
    const ReflectorPtr type(&benchMessageType);
    std::vector<Handle<BenchListener>> listeners;
    for (std::size_t i = 0; i < count; ++i)
        listeners.push_back(subscribe(type));

    SavedArguments payload = SavedArguments::of(1.0f);
    for (auto _ : state)
    {
        PostOffice().submitMessage(type, payload);
        benchmark::ClobberMemory();
    }
    double heard = 0;
    for (const auto &h : listeners)
        heard += h.lookup()->sum > 0;
    state.counters["check"] = heard;
    reportNanoseconds(state, double(count));
    murderAll(listeners);
    PostOffice().submitMessage(type, payload);
}

void churn(benchmark::State &state)
{
    const ReflectorPtr type(&benchChurnMessageType);
    std::vector<Handle<BenchListener>> listeners;
    for (std::size_t i = 0; i < count; ++i)
        listeners.push_back(subscribe(type));

    SavedArguments payload = SavedArguments::of(1.0f);
    std::size_t at = 0;
    for (auto _ : state)
    {
        for (std::size_t k = 0; k < 100; ++k)
            listeners[(at + k * 7) % count].lookup()->murder();
        cremateDeadObjects();
        PostOffice().submitMessage(type, payload);
        for (std::size_t k = 0; k < 100; ++k)
            listeners[(at + k * 7) % count] = subscribe(type);
        at = (at + 13) % count;
    }
    PostOffice().submitMessage(type, payload);
    double heard = 0;
    for (const auto &h : listeners)
        heard += h.lookup()->sum > 0;
    state.counters["check"] = heard;
    reportNanoseconds(state, double(count));
    murderAll(listeners);
    PostOffice().submitMessage(type, payload);
}
} // namespace

BENCHMARK(message)->Name("W3/message");
BENCHMARK(churn)->Name("W3b/churn");
