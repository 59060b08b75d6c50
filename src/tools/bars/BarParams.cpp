#include "tools/bars/BarParams.h"

#include "port/tweakbar/TweakBar.h"

#include "foundation/Logger.h"

#include <cmath>

void BarParams::setText(TwBar *bar, const char *line, const char *parameter, const String &text)
{
    TwSetParam(bar, line, parameter, TW_PARAM_CSTRING, 1, text.toCString());
}

void BarParams::setNumber(TwBar *bar, const char *line, const char *parameter, int value)
{
    TwSetParam(bar, line, parameter, TW_PARAM_INT32, 1, &value);
}

void BarParams::setPlace(TwBar *bar, const int *place)
{
    TwSetParam(bar, nullptr, "place", TW_PARAM_INT32, 4, place);
}

void BarParams::setSize(TwBar *bar, int width, int height)
{
    const int size[] = {width, height};
    TwSetParam(bar, nullptr, "size", TW_PARAM_INT32, 2, size);
}

bool BarParams::isVisible(TwBar *bar)
{
    int visible = 0;
    return TwGetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible) && visible;
}

bool BarParams::isRange(const char *caller, const String &line, double least, double most)
{
    constexpr double largest = 1e15; // farther than any value goes, and a whole number either way
    if (std::fabs(least) <= largest && std::fabs(most) <= largest && least < most)
        return true;
    KV_LOGF(Logger_::I_ERROR, "%s: %g to %g is no range of '%s': give two numbers, the lesser one first", caller, least,
            most, line.toCString());
    return false;
}

bool BarParams::setRange(TwBar *bar, const char *line, double least, double most)
{
    return TwSetParam(bar, line, "min", TW_PARAM_DOUBLE, 1, &least) &&
           TwSetParam(bar, line, "max", TW_PARAM_DOUBLE, 1, &most);
}
