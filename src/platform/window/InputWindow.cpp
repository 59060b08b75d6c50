#include "platform/window/InputWindow.h"

namespace
{
InputWindow *currentWindow = nullptr;
}

InputWindow *InputWindow::current()
{
    return currentWindow;
}

void InputWindow::setCurrent(InputWindow *window)
{
    currentWindow = window;
}
