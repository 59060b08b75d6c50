// Assertions: checks of the program's own correctness, and what happens when one fails.
#pragma once

#include "foundation/IStringizable.h"
#include "foundation/KVString.h"

enum AssertMode
{
    AM_CRITICAL_ASSERT = 0, ///< reports and ends the process
    AM_ASSERT = 1,          ///< reports with a message box and goes on
    AM_VERIFY = 2,          ///< reports in the log and goes on
    AM_COUNT = 3
};

#ifndef AC_GENERAL_ENABLED
#define AC_GENERAL_ENABLED 1
#endif
#ifndef AC_ALL_ENABLED
#define AC_ALL_ENABLED 0
#endif

constexpr long AC_GENERAL = 0;
constexpr long AC_ALWAYS = 1;
constexpr long AC_STRINGS = 2;
constexpr long AC_HANDLES = 3;

namespace Assertions
{

/// Whether a category's checks are made in this build.
constexpr bool isCategoryEnabled(long catID)
{
    return catID == AC_ALWAYS || AC_ALL_ENABLED || (AC_GENERAL_ENABLED && catID == AC_GENERAL);
}

/// Raises a failed check; returns false, if at all, so that a check yields whether it held.
bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line);
bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line, const char *format, ...)
    __attribute__((format(printf, 6, 7)));
bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line, const String &message);
bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line,
                   const boost::format &message);
template <Stringizable T>
bool prepareAssert(AssertMode mode, long cat, const char *expr, const char *file, long line, const T &message)
{
    const String text = message.toString();
    return prepareAssert(mode, cat, expr, file, line, text);
}

/// Reports a failed check: stack trace, log line, message box, and the end of the process where the mode says so.
///
/// A failure while another is being reported stops in the debugger or ends the process with status 1.
void doAssert(AssertMode mode, long cat, const String &file, long line, const String &expr, const String &message);

/// Reports what was raised in a script: as a failed check that goes on, but at the script's line and without the
/// engine's stack, which tells nothing of it. Where nobody can see a box, the log line is all.
void raiseInScript(const String &file, long line, const String &message);

String getMessageBoxMessage(const String &expr, String realMessage, const String &file, long line);
String getConsoleAssertMessage(AssertMode severity, const String &expr, const String &message, const String &file,
                               long line);

} // namespace Assertions

#define DO_NOTHING true
#define OR_ELSE ||
#define ASSERT_CHECK_(mode, cat, expr, ...)                                                                            \
    static_cast<void>(                                                                                                 \
        (Assertions::isCategoryEnabled(cat) ? static_cast<bool>(expr) : DO_NOTHING)OR_ELSE Assertions::prepareAssert(  \
            mode, cat, #expr, __FILE__, __LINE__ __VA_OPT__(, ) __VA_ARGS__))

/// Ends the process when the expression is false. Arguments: a printf format with values, or one text form.
#define KV_CRITICAL_ASSERT(expr, ...) ASSERT_CHECK_(AM_CRITICAL_ASSERT, AC_GENERAL, expr __VA_OPT__(, ) __VA_ARGS__)
/// Reports in a message box when the expression is false, and goes on.
#define KV_ASSERT(expr, ...) ASSERT_CHECK_(AM_ASSERT, AC_GENERAL, expr __VA_OPT__(, ) __VA_ARGS__)
/// Reports in the log when the expression is false, and goes on.
#define KV_VERIFY(expr, ...) ASSERT_CHECK_(AM_VERIFY, AC_GENERAL, expr __VA_OPT__(, ) __VA_ARGS__)

/// Reports and ends the process.
#define KV_FATAL(...)                                                                                                  \
    static_cast<void>(                                                                                                 \
        Assertions::prepareAssert(AM_CRITICAL_ASSERT, AC_ALWAYS, "", __FILE__, __LINE__ __VA_OPT__(, ) __VA_ARGS__))
/// Reports in a message box and goes on.
#define KV_ERROR(...)                                                                                                  \
    static_cast<void>(                                                                                                 \
        Assertions::prepareAssert(AM_ASSERT, AC_ALWAYS, "", __FILE__, __LINE__ __VA_OPT__(, ) __VA_ARGS__))
/// Reports in the log and goes on.
#define KV_WARN(...)                                                                                                   \
    static_cast<void>(                                                                                                 \
        Assertions::prepareAssert(AM_VERIFY, AC_ALWAYS, "", __FILE__, __LINE__ __VA_OPT__(, ) __VA_ARGS__))
