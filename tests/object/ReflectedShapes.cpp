#include "object/ReflectedShapes.h"

Vec4 ReflectedBox::shifted(const Vec4 &by, unsigned char times, double scale, bool negate) const
{
    const float factor = static_cast<float>(times * scale) * (negate ? -1 : 1);
    return Vec4(by.x * factor, by.y * factor, by.z * factor, by.w);
}

ErrorReturn<int> ReflectedBox::divide(int by) const
{
    if (by == 0)
        return ErrorCode::OUT_OF_BOUNDS;
    return 100 / by;
}
