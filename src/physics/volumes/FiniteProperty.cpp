#include "physics/volumes/FiniteProperty.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <cmath>

namespace
{
bool refuse(const Object &owner, const char *property, const String &value)
{
    KV_LOGF(Logger_::I_ERROR, "%s of %s: %s cannot be %s and keeps its value; give it finite numbers.",
            owner.getName().toCString(), owner.getParent().toString().toCString(), property, value.toCString());
    return false;
}
} // namespace

bool isUsable(const Object &owner, const char *property, float value)
{
    return std::isfinite(value) || refuse(owner, property, String::format("%g", static_cast<double>(value)));
}

bool isUsable(const Object &owner, const char *property, const Vec4 &value)
{
    return isFinite(value) || refuse(owner, property, value.toString());
}
