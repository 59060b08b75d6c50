#include "Probe.h"

#include "object/messages/Message.h"
#include "object/reflection/SavedArguments.h"

#include <stdexcept>

namespace
{

const MessageType probeMessage(SCS("ProbeMessage"));
const MessageType probeValueMessage(SCS("ProbeValueMessage"));

} // namespace

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
