// Assertions: what happens when a check fails.
#include "foundation/Assertions.h"

#include "foundation/LogFile.h"
#include "foundation/Logger.h"
#include "foundation/StackTrace.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Messages.h"

#include <cstdarg>
#include <cstdlib>

namespace
{

constexpr UINT CRITICAL_BOX = MB_TASKMODAL | MB_ICONERROR;
constexpr UINT ASSERT_BOX = MB_TASKMODAL | MB_ICONWARNING;
constexpr const char *SEVERITY_NAMES[AM_COUNT] = {"Critical assertion", "Assertion", "Minor assertion"};
constexpr Logger_::Importance SEVERITY_LEVELS[AM_COUNT] = {Logger_::I_CRITICAL, Logger_::I_ERROR, Logger_::I_WARNING};

// After as many boxes their number itself is the trouble, and the next ones ask how to go on.
constexpr int PLAIN_BOXES = 3;

bool isHandlingAssertion = false;
int boxesShown = 0;
bool boxesAreSilenced = false;

void breakIfDebugged()
{
    if (IsDebuggerPresent())
        DebugBreak();
}

void showAssertBox(const String &text)
{
    if (boxesAreSilenced)
        return;
    const UINT type = boxesShown++ < PLAIN_BOXES ? ASSERT_BOX : ASSERT_BOX | MB_ABORTRETRYIGNORE;
    const int answer = MessageBoxA(nullptr, (text + LogFile::placeForBox()).toCString(), "Assertion failed!", type);
    boxesAreSilenced = answer == IDABORT || answer == IDIGNORE;
    if (answer == IDABORT)
        PostQuitMessage(1);
}

// Skips static destructors and shutdown on purpose: after this nothing is assumed to be in order.
[[noreturn]] void endProcess()
{
    breakIfDebugged();
    LogFile::tell();
    port::flushDebugOutput();
    std::_Exit(1);
}

} // namespace

namespace Assertions
{

bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line)
{
    return prepareAssert(mode, cat, expr, file, line, String());
}

bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const String message = String::vformat(format, args);
    va_end(args);
    return prepareAssert(mode, cat, expr, file, line, message);
}

bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line,
                   const boost::format &message)
{
    return prepareAssert(mode, cat, expr, file, line, String::copyFrom(message));
}

bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line, const String &message)
{
    doAssert(mode, cat, SCS(file), line, SCS(expr), message);
    return false;
}

void doAssert(AssertMode mode, long cat, const String &file, long line, const String &expr, const String &message)
{
    const String shown = message.empty() ? SCS("<no message>") : message;
    if (isHandlingAssertion)
        endProcess();
    isHandlingAssertion = true;
    StackTrace().dumpToConsole();

    Logger().writeLine(SEVERITY_LEVELS[mode], getConsoleAssertMessage(mode, expr, shown, file, line), file, line);
    if (mode == AM_CRITICAL_ASSERT)
    {
        const String text = getMessageBoxMessage(expr, shown, file, line) + SCS(" The game will now abort.");
        MessageBoxA(nullptr, (text + LogFile::placeForBox()).toCString(), "Critical assertion failed!", CRITICAL_BOX);
        endProcess();
    }
    if (mode == AM_ASSERT)
    {
        showAssertBox(getMessageBoxMessage(expr, shown, file, line));
        breakIfDebugged();
    }
    isHandlingAssertion = false;
}

void raiseInScript(const String &file, long line, const String &message)
{
    if (isHandlingAssertion)
        endProcess();
    isHandlingAssertion = true;
    Logger().writeLine(SEVERITY_LEVELS[AM_ASSERT], getConsoleAssertMessage(AM_ASSERT, String(), message, file, line),
                       file, line);
    if (port::hasMessageBoxPresenter())
        showAssertBox(getMessageBoxMessage(String(), message, file, line));
    breakIfDebugged();
    isHandlingAssertion = false;
}

String getMessageBoxMessage(const String &expr, String realMessage, const String &file, long line)
{
    const String expression =
        expr.empty() ? String() : String::format("\n\nThe failing expression was:\n\t%s", expr.toCString());
    return String::format("%s%s\n\nat file %s, line %li.", realMessage.toCString(), expression.toCString(),
                          file.toCString(), line);
}

String getConsoleAssertMessage(AssertMode severity, const String &expr, const String &message, const String &, long)
{
    const char *const name = severity < AM_COUNT ? SEVERITY_NAMES[severity] : "Unknown assertion";
    return String::format("%s failed: [ %s ] %s", name, expr.toCString(), message.toCString());
}

} // namespace Assertions
