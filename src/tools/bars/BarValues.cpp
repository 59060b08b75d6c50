#include "tools/bars/BarValues.h"

#include "object/tree/Object.h"
#include "port/tweakbar/TweakBar.h"

String BarValues::describe(const Variant &value)
{
    switch (value.getType())
    {
    case Variant::VT_HANDLE:
        if (const auto target = value.as<Handle<Object>>().lookup())
            return String::format("%s: %s", target->getName().toCString(), target->getType()->getName().toCString());
        return String();
    case Variant::VT_REFLECTOR:
    {
        const ReflectorPtr &thing = value.as<ReflectorPtr>();
        return thing ? thing->toString() : SCS("none");
    }
    case Variant::VT_PYTHON:
        return value.as<PythonObject>().isNone() ? SCS("none") : SCS("a script object");
    case Variant::VT_STRING:
        return value.as<String>();
    case Variant::VT_INT64:
        return String::format("%lld", static_cast<long long>(value.as<std::int64_t>()));
    case Variant::VT_FLOAT:
        return String::format("%.6g", value.as<double>());
    case Variant::VT_BOOL:
        return value.as<bool>() ? SCS("true") : SCS("false");
    case Variant::VT_VECTOR:
    {
        const Vec4 &v = value.as<Vec4>();
        return String::format("%.6g %.6g %.6g %.6g", double(v.x), double(v.y), double(v.z), double(v.w));
    }
    case Variant::VT_QUATERNION:
    {
        const Quaternion &q = value.as<Quaternion>();
        return String::format("%.6g %.6g %.6g %.6g", double(q.i), double(q.j), double(q.k), double(q.r));
    }
    default:
        return SCS("none");
    }
}

Vec4 BarValues::placeOf(TwBar *bar, const char *control)
{
    int place[4]{};
    if (!bar || !TwGetParam(bar, control, "place", TW_PARAM_INT32, 4, place))
        return Vec4(0.f, 0.f, 0.f, 0.f);
    const auto number = [](int value) { return static_cast<float>(value); };
    return Vec4(number(place[0]), number(place[1]), number(place[0] + place[2]), number(place[1] + place[3]));
}
