#include "assets/cache/Asset.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "object/reflection/Variant.h"
#include "object/reflection/SavedArguments.h"

#include <utility>

namespace
{
/// More calls of listeners within each other than anybody means.
constexpr int MOST_NESTED_CALLS = 16;

/// Counts a call for as long as it runs, however it ends.
class CallUnderWay
{
public:
    explicit CallUnderWay(int &count) : count(count) { ++count; }
    ~CallUnderWay() { --count; }
    CallUnderWay(const CallUnderWay &) = delete;
    CallUnderWay &operator=(const CallUnderWay &) = delete;

private:
    int &count;
};
} // namespace

Asset::Asset() : status(ErrorCode::ASSET_NOT_READY) {}

void Asset::addListener(ReflectorPtr callback, RequestHandle h, bool oneShot)
{
    if (!callback)
        return;
    const ListenerData listener{callback, h, oneShot};
    if (!isFinished() || !oneShot)
        listeners.push_back(listener);
    if (isFinished())
        notify(listener);
}

void Asset::setStatus(ErrorCode ec)
{
    status = ec;
    // A callback may add listeners here; those are called by addListener, so the list is taken before the first call.
    std::vector<ListenerData> calls;
    calls.swap(listeners);
    for (const ListenerData &listener : calls)
        if (!listener.oneShot)
            listeners.push_back(listener);
    for (const ListenerData &listener : calls)
        notify(listener);
}

ErrorCode Asset::getStatus() const
{
    return status;
}

bool Asset::isFinished() const
{
    return status.getCode() != ErrorCode::ASSET_NOT_READY;
}

void Asset::notify(const ListenerData &listener)
{
    if (callsUnderWay == MOST_NESTED_CALLS)
    {
        KV_LOGF(Logger_::I_ERROR, "Listener %s of asset %s asks for that asset in its own call, without end",
                listener.callback->getName().toCString(), getName().toCString());
        return;
    }
    const CallUnderWay call(callsUnderWay);
    const ErrorCode result = listener.callback->call(listener.h).code;
    const bool listenerDied =
        result.getCode() == ErrorCode::CALL_FAILURE && result.getHRESULT() == IReflectedThing::BAD_THIS_POINTER;
    KV_VERIFY(result.succeeded() || listenerDied, "Listener %s of asset %s failed: %s",
              listener.callback->toString().toCString(), getName().toCString(), result.toString().toCString());
}
