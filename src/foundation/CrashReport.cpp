// CrashReport: runs in a signal handler, so it formats by hand in memory of its own and calls nothing that allocates.
#include "foundation/CrashReport.h"

#include "foundation/LogFile.h"
#include "foundation/StackTrace.h"
#include "port/dbghelp/DbgHelp.h"
#include "port/process/MessageBoxProcess.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Exceptions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

/// Text of a bounded length; what does not fit is left out.
class CrashText
{
public:
    void add(const char *text)
    {
        const std::size_t fitting = std::min(std::strlen(text), sizeof bytes - 1 - used);
        std::memcpy(bytes + used, text, fitting);
        used += fitting;
        bytes[used] = 0;
    }
    void addNumber(std::uintptr_t number, unsigned base)
    {
        char digits[2 + 20] = {};
        char *first = digits + sizeof digits - 1;
        do
            *--first = "0123456789abcdef"[number % base];
        while ((number /= base) != 0);
        add(first);
    }
    void clear() { bytes[used = 0] = 0; }
    const char *get() const { return bytes; }

private:
    char bytes[4096] = {};
    std::size_t used = 0;
};

constinit CrashText line;
constinit CrashText message;
CrashReport::ScriptTraceWriter writeScripts = nullptr;

const char *causeOf(const EXCEPTION_RECORD &exception)
{
    switch (exception.ExceptionCode)
    {
    case EXCEPTION_STACK_OVERFLOW:
        return "stack overflow, calls are nested too deep";
    case EXCEPTION_ACCESS_VIOLATION:
    case EXCEPTION_IN_PAGE_ERROR:
        return "invalid use of memory";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
        return "invalid arithmetic";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
        return "illegal instruction";
    case EXCEPTION_BREAKPOINT:
        return "break without a debugger";
    default:
        return "the process aborted";
    }
}

void describe(const EXCEPTION_RECORD &exception)
{
    message.add("The game crashed: ");
    message.add(causeOf(exception));
    message.add(" (");
    message.add(port::signalName(exception));
    if (exception.NumberParameters == 2)
    {
        message.add(exception.ExceptionInformation[0] ? ", writing at 0x" : ", reading at 0x");
        message.addNumber(exception.ExceptionInformation[1], 16);
    }
    message.add(").");
}

void writeFrame(const void *address, bool isReturnAddress)
{
    // A return address stands behind its call; the byte before it belongs to the call's own line and function.
    const DWORD64 place = reinterpret_cast<DWORD64>(address) - (isReturnAddress ? 1 : 0);
    IMAGEHLP_LINE64 source{};
    source.SizeOfStruct = sizeof source;
    line.clear();
    if (SymGetLineFromAddr64(GetCurrentProcess(), place, nullptr, &source))
    {
        line.add(source.FileName);
        line.add("(");
        line.addNumber(source.LineNumber, 10);
        line.add("): ");
    }
    const char *const name = port::linkerName(place);
    line.add(name ? name : "Unknown function");
    line.add(" [0x");
    line.addNumber(reinterpret_cast<std::uintptr_t>(address), 16);
    line.add("]\n");
    OutputDebugStringA(line.get());
}

/// The stack from the instruction that the signal interrupted.
void writeStack(const void *interrupted)
{
    void *addresses[MAX_STACKTRACE_FRAMES];
    const USHORT count = RtlCaptureStackBackTrace(0, MAX_STACKTRACE_FRAMES, addresses, nullptr);
    void **const end = addresses + count;
    void **const top = std::find(addresses, end, interrupted);
    OutputDebugStringA("-- Begin stack trace:\n");
    for (void **frame = top != end ? top : addresses; frame != end; ++frame)
        writeFrame(*frame, *frame != interrupted);
    OutputDebugStringA("-- End stack trace:\n");
}

LONG reportCrash(EXCEPTION_POINTERS *pointers)
{
    const EXCEPTION_RECORD &exception = *pointers->ExceptionRecord;
    describe(exception);
    line.add("Critical: ");
    line.add(message.get());
    line.add("\n");
    OutputDebugStringA(line.get());
    port::flushDebugOutput();

    if (writeScripts)
        port::forEachDebugDescriptor(writeScripts);
    writeStack(exception.ExceptionAddress);
    LogFile::tell();
    port::flushDebugOutput();

    if (*LogFile::path() != 0)
    {
        message.add("\n\nThe log of this run tells more:\n");
        message.add(LogFile::path());
    }
    port::leaveMessageBox(message.get(), "Mornal crashed");
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

namespace CrashReport
{

void install()
{
    // The unwinder allocates at its first use. Symbols are read by system calls alone, which a signal handler may do, and
    // only when they are asked for: reading them holds up a start by a tenth of a second.
    [[maybe_unused]] const StackTrace walkedOnce;
    SymInitialize(GetCurrentProcess(), nullptr, TRUE);
    SetUnhandledExceptionFilter(reportCrash);
}

void setScriptTraceWriter(ScriptTraceWriter writer)
{
    writeScripts = writer;
}

} // namespace CrashReport
