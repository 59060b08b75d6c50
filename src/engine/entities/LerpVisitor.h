// LerpVisitor: the value between two values of one type.
#pragma once

#include "object/reflection/Variant.h"

/// Blends a pair of values of like types: numbers and vectors component by component, rotations on the shorter arc.
///
/// A bool is true for as long as any part of true is in it. A pair of different types, or of types that have nothing
/// between them, gives NOT_LERPABLE.
class LerpVisitor
{
public:
    typedef ErrorReturn<Variant> result_type;

    /// @param alpha  0 gives the first value, 1 the second
    explicit LerpVisitor(double alpha) : alpha(alpha) {}

    /// Blends what two Variants hold.
    result_type apply(const Variant &from, const Variant &to) const;

    result_type operator()(std::int64_t from, std::int64_t to) const;
    result_type operator()(bool from, bool to) const;
    result_type operator()(double from, double to) const;
    result_type operator()(const Vec4 &from, const Vec4 &to) const;
    result_type operator()(const Quaternion &from, const Quaternion &to) const;
    template <class From, class To>
    result_type operator()(const From &, const To &) const
    {
        return ErrorCode(ErrorCode::NOT_LERPABLE);
    }

private:
    double alpha; ///< 0..1
};
