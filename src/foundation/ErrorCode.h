// ErrorCode: the failure value that fallible operations return, and its pairing with a result.
#pragma once

#include "foundation/KVString.h"
#include "port/win32/WinTypes.h"

#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>

/// How an operation ended.
///
/// A code has no message of its own: its text is the enumerator's name and what getErrorString() yields. Ordinary
/// failures travel as this value and never as an exception.
class ErrorCode : public IStringizable
{
public:
    enum Code : std::int32_t
    {
        SUCCESS = 0,
        MAX_SUCCESS = 1, ///< fence: values below it succeed; nobody returns it
        ASSET_NOT_READY = 2,
        BAD_HANDLE = 3,
        BT_FAILURE = 4,
        BT_UNKNOWN_BEHAVIOR = 5,
        DX_ERROR = 6,
        LOST_ASSET = 7,
        MAP_DATA_ERROR = 8,
        NO_MEMORY = 9,
        CALL_FAILURE = 10, ///< the object was callable, but the call could not be made
        NO_SUCH_PROPERTY = 11,
        PROPERTY_NOT_READABLE = 12,
        PROPERTY_NOT_WRITABLE = 13,
        NOT_AN_ENUMERANT = 14,
        NOT_CALLABLE = 15,
        NOT_CONVERTIBLE = 16,
        NOT_LERPABLE = 17,
        OUT_OF_BOUNDS = 18,
        PYTHON_EXCEPTION = 19,
        UNKNOWN_KEY = 20,
        WIN32_ERROR = 21,
        NOT_INTERPOLATABLE = 22,
        NOT_IMPLEMENTED = 23,
        MAX_CODE = 24
    };

    ErrorCode() noexcept = default;
    ErrorCode(Code c, HRESULT hr = S_OK) noexcept : value(c), hr(hr) {}

    /// Says at the call site that a failure is dropped on purpose.
    void ignoreError() const noexcept {}

    bool succeeded() const noexcept { return value < MAX_SUCCESS; }
    Code getCode() const noexcept { return value; }
    /// The code, for a switch statement; asserts that it is one of the enumerators.
    Code getCodeForSwitch() const;
    /// The platform's own code; for CALL_FAILURE the kind of call failure.
    HRESULT getHRESULT() const noexcept { return hr; }

    /// What the platform or the reflection layer says about the failure, "<No error description.>" otherwise.
    String getErrorString() const;
    /// Enumerator's name, ": " and the error string.
    String toString() const;
    String getTraceback() const;
    String getLongErrorString() const;

private:
    Code value = SUCCESS;
    HRESULT hr = S_OK; ///< platform's code, or the kind of call failure
};

template <class T>
class ErrorReturn;

template <class T>
constexpr bool isErrorReturn = false;
template <class T>
constexpr bool isErrorReturn<ErrorReturn<T>> = true;

/// Any value that is neither a code nor a pair with one.
template <class U>
concept PlainResult = !std::same_as<std::remove_cvref_t<U>, ErrorCode::Code> &&
                      !std::same_as<std::remove_cvref_t<U>, ErrorCode> && !isErrorReturn<std::remove_cvref_t<U>>;

/// A result, or the reason why there is none.
///
/// A failure made from a code leaves `value` default-constructed.
template <class T>
class ErrorReturn
{
public:
    typedef T ReturnType;

    ErrorReturn() = default;
    ErrorReturn(const T &result, ErrorCode::Code c = ErrorCode::SUCCESS) : code(c), value(result) {}
    ErrorReturn(T &&result, ErrorCode::Code c = ErrorCode::SUCCESS) : code(c), value(std::move(result)) {}
    ErrorReturn(const T &result, const ErrorCode &c) : code(c), value(result) {}
    ErrorReturn(T &&result, const ErrorCode &c) : code(c), value(std::move(result)) {}
    ErrorReturn(ErrorCode::Code c) requires(!std::same_as<T, ErrorCode::Code>) : code(c), value() {}
    ErrorReturn(const ErrorCode &c) : code(c), value() {}
    template <PlainResult U>
    requires(std::convertible_to<U, T> && !std::same_as<std::remove_cvref_t<U>, T>)
        ErrorReturn(U &&result, const ErrorCode &c = ErrorCode())
        : code(c), value(std::forward<U>(result))
    {
    }
    template <class U>
    requires(std::convertible_to<U, T> && !std::same_as<U, T>) ErrorReturn(const ErrorReturn<U> &other)
        : code(other.code), value(other.value)
    {
    }

    bool succeeded() const noexcept { return code.succeeded(); }

    ErrorCode code; ///< success by default
    T value{};      ///< the result; default-constructed after a failure
};

/// The end of an operation that has no result.
template <>
class ErrorReturn<void>
{
public:
    typedef void ReturnType;

    ErrorReturn() = default;
    ErrorReturn(ErrorCode::Code c) : code(c) {}
    ErrorReturn(const ErrorCode &c) : code(c) {}

    bool succeeded() const noexcept { return code.succeeded(); }

    ErrorCode code; ///< success by default
};

/// Outcome of a graphics call: DX_ERROR for a negative code, which is kept.
inline ErrorCode dxCall(HRESULT code) noexcept
{
    return ErrorCode(code < 0 ? ErrorCode::DX_ERROR : ErrorCode::SUCCESS, code);
}

/// Outcome that the platform's last-error value tells.
ErrorCode winError();

/// Outcome of a platform call that fails by returning zero.
template <class T>
ErrorCode winErrZ(T result)
{
    return result ? ErrorCode() : winError();
}

/// Result of a platform call that fails by returning zero.
template <class T>
ErrorReturn<T> winErrZReturn(T result)
{
    return ErrorReturn<T>(result, winErrZ(result));
}
