// StackTrace: capture, and look-up of names through the platform's symbol operations.
#include "foundation/StackTrace.h"

#include "foundation/Logger.h"
#include "foundation/TextBuffer.h"
#include "port/dbghelp/DbgHelp.h"
#include "port/win32/Diagnostics.h"

#include <cstring>

namespace
{

constexpr DWORD SYMBOL_OPTIONS = SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES;
constexpr ULONG MAX_SYMBOL_NAME = 2000;

/// The symbol tables, opened at the first look-up; one look-up at a time.
class Symbols
{
public:
    Symbols()
    {
        static CRITICAL_SECTION &section = open();
        entered = &section;
        EnterCriticalSection(entered);
    }
    ~Symbols() { LeaveCriticalSection(entered); }
    Symbols(const Symbols &) = delete;
    Symbols &operator=(const Symbols &) = delete;

    void describe(StackTrace::Frame &frame) const;

private:
    static CRITICAL_SECTION &open();

    CRITICAL_SECTION *entered;
};

CRITICAL_SECTION &Symbols::open()
{
    // Kept for the whole run: traces may be looked at until the process ends.
    static CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
    SymSetOptions(SYMBOL_OPTIONS);
    SymInitialize(GetCurrentProcess(), nullptr, TRUE);
    LeaveCriticalSection(&section);
    return section;
}

void Symbols::describe(StackTrace::Frame &frame) const
{
    // A return address stands behind its call; the byte before it belongs to the call's own line and function.
    const DWORD64 address = reinterpret_cast<DWORD64>(frame.address) - 1;

    alignas(SYMBOL_INFO) char buffer[sizeof(SYMBOL_INFO) + MAX_SYMBOL_NAME];
    auto *const symbol = ::new (buffer) SYMBOL_INFO{};
    symbol->SizeOfStruct = sizeof(SYMBOL_INFO);
    symbol->MaxNameLen = MAX_SYMBOL_NAME;
    frame.function = SymFromAddr(GetCurrentProcess(), address, nullptr, symbol) ? String::copyFrom(symbol->Name)
                                                                                : SCS("Unknown function");

    IMAGEHLP_LINE64 place{};
    place.SizeOfStruct = sizeof place;
    DWORD displacement = 0;
    const bool hasLine = SymGetLineFromAddr64(GetCurrentProcess(), address, &displacement, &place);
    frame.file = hasLine ? String::copyFrom(place.FileName) : SCS("Unknown file");
    frame.line = hasLine ? static_cast<int>(place.LineNumber) : 0;
    frame.dataRetrieved = true;
}

} // namespace

__attribute__((noinline)) StackTrace::StackTrace(unsigned skip)
{
    void *addresses[MAX_STACKTRACE_FRAMES];
    DWORD capturedHash = 0;
    numFrames = RtlCaptureStackBackTrace(skip, MAX_STACKTRACE_FRAMES - 1, addresses, &capturedHash);
    hash = capturedHash;
    for (unsigned i = 0; i < numFrames; ++i)
        frames[i].address = addresses[i];
}

ErrorReturn<StackTrace::Frame> StackTrace::getFrame(unsigned index) const
{
    if (index >= numFrames)
        return ErrorCode::OUT_OF_BOUNDS;
    Frame &frame = frames[index];
    if (!frame.dataRetrieved)
        Symbols().describe(frame);
    return frame;
}

void StackTrace::dumpToConsole() const
{
    Logger().writeLine(Logger_::I_STACKTRACE, "-- Begin stack trace:");
    for (unsigned i = 0; i < numFrames; ++i)
    {
        const Frame frame = getFrame(i).value;
        // A log of its own keeps the frame lines out of the history.
        Logger_().writeLine(Logger_::I_STACKTRACE, frame.function, frame.file, frame.line);
    }
    Logger().writeLine(Logger_::I_STACKTRACE, "-- End stack trace:");
}

String StackTrace::toString() const
{
    TextBuffer text;
    for (unsigned i = 0; i < numFrames; ++i)
    {
        const ErrorReturn<Frame> frame = getFrame(i);
        if (!frame.succeeded())
            return SCS("An error occurred while dumping the stack trace");
        text.append(String::format("%s(%d): %s\n", frame.value.file.toCString(), frame.value.line,
                                   frame.value.function.toCString()));
    }
    return String::copyFrom(text.data(), text.size());
}
