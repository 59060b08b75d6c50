#include "object/reflection/Variant.h"

PythonConversions pythonConversions;

void Variant::copyCounted(const Variant &rhs)
{
    switch (type)
    {
    case VT_REFLECTOR:
        new (storage.bytes) ReflectorPtr(rhs.as<ReflectorPtr>());
        break;
    case VT_STRING:
        new (storage.bytes) String(rhs.as<String>());
        break;
    default:
        new (storage.bytes) PythonObject(rhs.as<PythonObject>());
        break;
    }
}

void Variant::destroyCounted()
{
    switch (type)
    {
    case VT_REFLECTOR:
        as<ReflectorPtr>().~ReflectorPtr();
        break;
    case VT_STRING:
        as<String>().~String();
        break;
    default:
        as<PythonObject>().~PythonObject();
        break;
    }
}

String Variant::toString() const
{
    static const String text = SCS("<variant>");
    return text;
}

bool scriptInteger(const Variant &v, std::int64_t &out)
{
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toInt64 &&
           pythonConversions.toInt64(v.as<PythonObject>(), out);
}

bool scriptFloat(const Variant &v, double &out)
{
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toDouble &&
           pythonConversions.toDouble(v.as<PythonObject>(), out);
}

bool fromVariant(const Variant &v, String &out)
{
    if (v.getType() == Variant::VT_STRING)
    {
        out = v.as<String>();
        return true;
    }
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toString &&
           pythonConversions.toString(v.as<PythonObject>(), out);
}

bool reflectorFromScript(const Variant &v, ReflectorPtr &out)
{
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toReflector &&
           pythonConversions.toReflector(v.as<PythonObject>(), out);
}

bool fromVariant(const Variant &v, Vec4 &out)
{
    if (v.getType() == Variant::VT_VECTOR)
    {
        out = v.as<Vec4>();
        return true;
    }
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toVector &&
           pythonConversions.toVector(v.as<PythonObject>(), out);
}

bool fromVariant(const Variant &v, Quaternion &out)
{
    if (v.getType() == Variant::VT_QUATERNION)
    {
        out = v.as<Quaternion>();
        return true;
    }
    return v.getType() == Variant::VT_PYTHON && pythonConversions.toQuaternion &&
           pythonConversions.toQuaternion(v.as<PythonObject>(), out);
}

bool fromVariant(const Variant &v, PythonObject &out)
{
    if (v.getType() == Variant::VT_PYTHON)
    {
        out = v.as<PythonObject>();
        return true;
    }
    return v.getType() != Variant::VT_INVALID && pythonConversions.fromVariant && pythonConversions.fromVariant(v, out);
}
