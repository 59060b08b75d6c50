// ErrorCode: names of the codes and what the platform says about them.
#include "foundation/ErrorCode.h"

#include "foundation/Assertions.h"
#include "port/d3d9/dxerr.h"
#include "port/win32/Diagnostics.h"

#include <iterator>

namespace
{

constexpr const char *CODE_NAMES[] = {"SUCCESS",
                                      "MAX_SUCCESS",
                                      "ASSET_NOT_READY",
                                      "BAD_HANDLE",
                                      "BT_FAILURE",
                                      "BT_UNKNOWN_BEHAVIOR",
                                      "DX_ERROR",
                                      "LOST_ASSET",
                                      "MAP_DATA_ERROR",
                                      "NO_MEMORY",
                                      "CALL_FAILURE",
                                      "NO_SUCH_PROPERTY",
                                      "PROPERTY_NOT_READABLE",
                                      "PROPERTY_NOT_WRITABLE",
                                      "NOT_AN_ENUMERANT",
                                      "NOT_CALLABLE",
                                      "NOT_CONVERTIBLE",
                                      "NOT_LERPABLE",
                                      "OUT_OF_BOUNDS",
                                      "PYTHON_EXCEPTION",
                                      "UNKNOWN_KEY",
                                      "WIN32_ERROR",
                                      "NOT_INTERPOLATABLE",
                                      "NOT_IMPLEMENTED",
                                      "MAX_CODE"};
static_assert(std::size(CODE_NAMES) == ErrorCode::MAX_CODE + 1);

// The kinds of call failure belong to the object layer, which this file must not know; their numbers are fixed.
constexpr const char *CALL_FAILURE_NAMES[] = {"THIS_POINTER_ARG_NOT_A_HANDLE", "BAD_THIS_POINTER",
                                              "WRONG_ARGUMENT_TYPE", "WRONG_ARGUMENT_COUNT"};

constexpr DWORD SYSTEM_LANGUAGE = 1024;

template <std::size_t N>
String nameOf(const char *const (&names)[N], std::int32_t value)
{
    if (value < 0 || value >= static_cast<std::int32_t>(N))
        return SCS("<invalid enum value>");
    return SCS(names[value]);
}

String textOfWin32Code(DWORD code)
{
    char *message = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    if (!FormatMessageA(flags, nullptr, code, SYSTEM_LANGUAGE, reinterpret_cast<LPSTR>(&message), 0, nullptr))
        return String::format("[[Error #%u occurred while attempting to retrieve the message for error #%u.]]",
                              GetLastError(), code);
    String text = String::format("[%p] %s", reinterpret_cast<void *>(static_cast<std::uintptr_t>(code)), message);
    LocalFree(message);
    return text;
}

} // namespace

ErrorCode::Code ErrorCode::getCodeForSwitch() const
{
#ifndef NO_ERROR_CHECKING_DEBUG
    KV_ASSERT(value >= SUCCESS && value < MAX_CODE, "%d is not an error code", static_cast<int>(value));
#endif
    return value;
}

String ErrorCode::getErrorString() const
{
    switch (value)
    {
    case DX_ERROR:
        return String::format("[%s] %s", DXGetErrorStringA(hr), DXGetErrorDescriptionA(hr));
    case CALL_FAILURE:
        return nameOf(CALL_FAILURE_NAMES, hr);
    case WIN32_ERROR:
        return textOfWin32Code(static_cast<DWORD>(hr) & 0xFFFF);
    default:
        return SCS("<No error description.>");
    }
}

String ErrorCode::toString() const
{
    return nameOf(CODE_NAMES, value) + SCS(": ") + getErrorString();
}

String ErrorCode::getTraceback() const
{
    return SCS("Traceback not available.");
}

String ErrorCode::getLongErrorString() const
{
    return toString() + SCS(", at:\n") + getTraceback();
}

ErrorCode winError()
{
    const DWORD code = GetLastError();
    if (code == ERROR_SUCCESS)
        return ErrorCode(ErrorCode::SUCCESS, S_OK);
    const auto result = static_cast<HRESULT>(code);
    return ErrorCode(ErrorCode::WIN32_ERROR,
                     result <= 0 ? result : static_cast<HRESULT>((code & 0xFFFF) | 0x80070000u));
}
