#include "rendering/drawn/WholeWindow.h"

#include "platform/window/WindowSystem2.h"

WindowCoordinate getWholeWindow()
{
    return getSystemDeref<WindowSystem2>().convertWindowCoordinate(WindowCoordinate(1, 1, WCS_PERCENT, WCS_PERCENT),
                                                                   WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED_NOWRAP);
}
