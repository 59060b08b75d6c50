// W3: one message with a float to 1000 listeners. W3b: 100 of them die before each delivery and 100 new ones subscribe.
#include "Rate.h"
#include "Subjects.h"

#include "object/messages/Message.h"
#include "object/messages/PostOffice.h"

#include <vector>

namespace
{
constexpr std::size_t count = 1000;

MessageType benchMessageType(SCS("BenchMessage"));
MessageType benchChurnMessageType(SCS("BenchChurnMessage"));

/// A thousand listeners of one message, alive for one benchmark.
class Audience
{
public:
    explicit Audience(const MessageType &messageType) : type(&messageType)
    {
        for (std::size_t i = 0; i < count; ++i)
            listeners.push_back(subscribe());
    }
    ~Audience()
    {
        for (const auto &h : listeners)
            h.lookup()->murder();
        cremateDeadObjects();
        send();
    }

    void send() { PostOffice().submitMessage(type, payload); }

    /// Kills a hundred listeners; their subscriptions fall out at the next message.
    void murderHundred(std::size_t at)
    {
        for (std::size_t k = 0; k < 100; ++k)
            listeners[(at + k * 7) % count].lookup()->murder();
        cremateDeadObjects();
    }
    void replaceHundred(std::size_t at)
    {
        for (std::size_t k = 0; k < 100; ++k)
            listeners[(at + k * 7) % count] = subscribe();
    }

    /// How many listeners have heard a message.
    double getHeard() const
    {
        double heard = 0;
        for (const auto &h : listeners)
            heard += h.lookup()->sum > 0;
        return heard;
    }

private:
    Handle<BenchListener> subscribe()
    {
        const Handle<BenchListener> h = construct<BenchListener>(defaultAllocationCategory);
        PostOffice().registerMessageHandler(type, h.lookup()->bind(SCS("handleValueMessage")));
        return h;
    }

    ReflectorPtr type;
    std::vector<Handle<BenchListener>> listeners;
    SavedArguments payload = SavedArguments::of(1.0f);
};

void message(benchmark::State &state)
{
    Audience audience(benchMessageType);
    for (auto _ : state)
    {
        audience.send();
        benchmark::ClobberMemory();
    }
    state.counters["check"] = audience.getHeard();
    reportNanoseconds(state, double(count));
}

void churn(benchmark::State &state)
{
    Audience audience(benchChurnMessageType);
    std::size_t at = 0;
    for (auto _ : state)
    {
        audience.murderHundred(at);
        audience.send();
        audience.replaceHundred(at);
        at = (at + 13) % count;
    }
    audience.send();
    state.counters["check"] = audience.getHeard();
    reportNanoseconds(state, double(count));
}
} // namespace

BENCHMARK(message)->Name("W3/message");
BENCHMARK(churn)->Name("W3b/churn");
