// WidgetStyle: what the widgets of one screen share: units, font and colours.
#pragma once

#include "foundation/Vector.h"

class FontAsset;

/// How a screen is laid out in the window as it stands.
struct WidgetStyle
{
    float unit = 1.f;          ///< pixels of 1/1080 of the height of the largest 16:9 picture that fits the window
    float textScale = 1.f;     ///< what the player has texts enlarged by
    FontAsset *font = nullptr; ///< ready; null until it is there
};

/// The colours of screens, as they arrive on the screen: paper, ink, brass and candlelight.
namespace WidgetColors
{
inline constexpr Vec4 paper(0.86f, 0.80f, 0.66f, 1.f);
inline constexpr Vec4 faded(0.56f, 0.51f, 0.42f, 1.f);
inline constexpr Vec4 candle(0.99f, 0.78f, 0.42f, 1.f);
inline constexpr Vec4 ink(0.030f, 0.026f, 0.022f, 1.f);
inline constexpr Vec4 brass(0.60f, 0.46f, 0.25f, 1.f);

inline Vec4 withAlpha(const Vec4 &color, float alpha)
{
    return Vec4(color.x, color.y, color.z, color.w * alpha);
}
} // namespace WidgetColors
