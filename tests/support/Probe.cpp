#include "support/Probe.h"

#include "object/messages/Message.h"

#include <stdexcept>

namespace
{

const MessageType probeMessage(SCS("ProbeMessage"));
const MessageType probeValueMessage(SCS("ProbeValueMessage"));

void callIfSet(const std::function<void()> &function)
{
    if (function)
        function();
}

} // namespace

Probe::~Probe()
{
    callIfSet(whenDestroyed);
}

void Probe::onMurder()
{
    callIfSet(whenMurdered);
}

void Probe::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    moves.emplace_back(reparentedObject, newParent);
}

ErrorCode Probe::setLimit(int val)
{
    if (val <= 0)
        return ErrorCode::OUT_OF_BOUNDS;
    limit = val;
    callIfSet(onLimit);
    return ErrorCode::SUCCESS;
}

Vec4 Probe::shifted(const Vec4 &by, unsigned char times, double scale, bool negate) const
{
    const float factor = static_cast<float>(times * scale) * (negate ? -1 : 1);
    return Vec4(by.x * factor, by.y * factor, by.z * factor, by.w);
}

void Probe::handleValueMessage(const ReflectorPtr &, float amount)
{
    ++calls;
    value += amount;
    callIfSet(whenCalled);
}

ErrorCode Probe::failingHandler(const ReflectorPtr &, float)
{
    ++calls;
    return ErrorCode::NOT_IMPLEMENTED;
}

ErrorCode Probe::callBack(const ReflectorPtr &callable, const Variant &argument)
{
    if (!callable)
        return ErrorCode::UNKNOWN_KEY;
    return callable->call(argument).code;
}

void Probe::throwNative()
{
    throw std::runtime_error("the probe broke");
}

Handle<Probe> spawn(const char *name, const Handle<Object> &parent)
{
    const Handle<Probe> h = construct<Probe>(defaultAllocationCategory);
    auto probe = h.lookup();
    probe->setName(String::copyFrom(name));
    probe->setParent(parent);
    return h;
}
