#include "foundation/FailedStart.h"

#include "foundation/KVString.h"
#include "foundation/LogFile.h"
#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"

#include <cstdlib>

namespace Assertions
{

void failStart(const char *message)
{
    Logger().writeLine(Logger_::I_CRITICAL, message);
    LogFile::tell();
    if (port::hasMessageBoxPresenter())
        MessageBoxA(nullptr, (String::copyFrom(message) + LogFile::placeForBox()).toCString(), "Error",
                    MB_TASKMODAL | MB_ICONERROR);
    port::flushDebugOutput();
    std::_Exit(1);
}

} // namespace Assertions
