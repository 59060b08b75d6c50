#include "engine/entities/LerpVisitor.h"

#include "foundation/precompile.h"

LerpVisitor::result_type LerpVisitor::apply(const Variant &from, const Variant &to) const
{
    if (from.getType() != to.getType())
        return (*this)(from, to);
    switch (from.getType())
    {
    case Variant::VT_INT64:
        return (*this)(from.as<std::int64_t>(), to.as<std::int64_t>());
    case Variant::VT_BOOL:
        return (*this)(from.as<bool>(), to.as<bool>());
    case Variant::VT_FLOAT:
        return (*this)(from.as<double>(), to.as<double>());
    case Variant::VT_VECTOR:
        return (*this)(from.as<Vec4>(), to.as<Vec4>());
    case Variant::VT_QUATERNION:
        return (*this)(from.as<Quaternion>(), to.as<Quaternion>());
    default:
        return (*this)(from, to);
    }
}

LerpVisitor::result_type LerpVisitor::operator()(std::int64_t from, std::int64_t to) const
{
    // In doubles, since the difference need not fit; the end itself is exact.
    if (alpha >= 1.0)
        return Variant(to);
    return Variant(castNumber<std::int64_t>(lerp(static_cast<double>(from), static_cast<double>(to), alpha)));
}

LerpVisitor::result_type LerpVisitor::operator()(bool from, bool to) const
{
    return Variant(lerp(static_cast<double>(from), static_cast<double>(to), alpha) != 0.0);
}

LerpVisitor::result_type LerpVisitor::operator()(double from, double to) const
{
    return Variant(alpha >= 1.0 ? to : lerp(from, to, alpha));
}

LerpVisitor::result_type LerpVisitor::operator()(const Vec4 &from, const Vec4 &to) const
{
    return Variant(alpha >= 1.0 ? to : lerp(from, to, static_cast<float>(alpha)));
}

LerpVisitor::result_type LerpVisitor::operator()(const Quaternion &from, const Quaternion &to) const
{
    return Variant(alpha >= 1.0 ? to : lerp(from, to, alpha));
}
