#include "Probe.h"

#include "object/SavedArguments.h"

#include <stdexcept>

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
