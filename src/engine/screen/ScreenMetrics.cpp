#include "engine/screen/ScreenMetrics.h"

namespace
{
ScreenMetrics current;
}

const ScreenMetrics &getScreenMetrics()
{
    return current;
}

void setScreenMetrics(const ScreenMetrics &metrics)
{
    current = metrics;
}
