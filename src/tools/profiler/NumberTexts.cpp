#include "tools/profiler/NumberTexts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace
{
constexpr double LARGEST_WHOLE = 99999;
constexpr double FIRST_WHOLE = 100; ///< from here on hundredths say nothing

std::size_t indexOf(double number, double largest)
{
    return static_cast<std::size_t>(std::lround(std::clamp(std::isfinite(number) ? number : 0.0, 0.0, largest)));
}

String &slot(std::vector<String> &texts, std::size_t index)
{
    if (index >= texts.size())
        texts.resize(index + 1);
    return texts[index];
}
} // namespace

const String &NumberTexts::whole(double number)
{
    const std::size_t index = indexOf(number, LARGEST_WHOLE);
    String &text = slot(wholes, index);
    if (text.empty())
        text = String::format("%zu", index);
    return text;
}

const String &NumberTexts::hundredths(double number)
{
    const std::size_t index = indexOf(number * 100, FIRST_WHOLE * 100);
    if (index == FIRST_WHOLE * 100)
        return whole(number);
    String &text = slot(fractions, index);
    if (text.empty())
        text = String::format("%zu.%02zu", index / 100, index % 100);
    return text;
}

const String &NumberTexts::percent(double share)
{
    const std::size_t index = indexOf(share * 100, 100);
    String &text = slot(percents, index);
    if (text.empty())
        text = String::format("%zu%%", index);
    return text;
}
