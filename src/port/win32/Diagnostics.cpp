// Diagnostics: last error, message box, debugger and critical sections on the host.
#include "port/win32/Diagnostics.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <unistd.h>

namespace
{

thread_local DWORD lastError = ERROR_SUCCESS;
port::MessageBoxPresenter presenter = nullptr;

struct SystemMessage
{
    DWORD id;
    const char *text;
};

constexpr SystemMessage SYSTEM_MESSAGES[] = {
    {ERROR_SUCCESS, "No error."},
    {1, "The system does not offer this function."},
    {ERROR_FILE_NOT_FOUND, "There is no file of this name."},
    {ERROR_PATH_NOT_FOUND, "There is no folder of this path."},
    {4, "Too many files are open."},
    {ERROR_ACCESS_DENIED, "Access was denied."},
    {ERROR_INVALID_HANDLE, "The handle is not valid."},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory."},
    {13, "The data is not valid."},
    {14, "Memory ran out."},
    {ERROR_NO_MORE_FILES, "There are no more files."},
    {29, "Writing to the device failed."},
    {30, "Reading from the device failed."},
    {ERROR_GEN_FAILURE, "The device does not work."},
    {38, "The end of the file was reached."},
    {50, "The request is not supported."},
    {ERROR_INVALID_PARAMETER, "A parameter is not valid."},
    {112, "The disk is full."},
    {ERROR_CALL_NOT_IMPLEMENTED, "The function is not available on this system."},
    {ERROR_INSUFFICIENT_BUFFER, "The buffer is too small."},
    {ERROR_MOD_NOT_FOUND, "The module was not found."},
    {127, "The procedure was not found."},
    {ERROR_ALREADY_EXISTS, "The file exists already."},
    {ERROR_MR_MID_NOT_FOUND, "There is no message of this number."},
    {ERROR_INVALID_ADDRESS, "The address is not valid."},
    {1167, "The device is not connected."},
    {ERROR_INVALID_WINDOW_HANDLE, "The window handle is not valid."},
    {ERROR_CANNOT_FIND_WND_CLASS, "There is no window class of this name."},
    {ERROR_CLASS_ALREADY_EXISTS, "The window class exists already."},
    {1460, "The time for the operation ran out."},
};

const char *findSystemMessage(DWORD id)
{
    for (const SystemMessage &message : SYSTEM_MESSAGES)
        if (message.id == id)
            return message.text;
    return nullptr;
}

DWORD failWith(DWORD code)
{
    SetLastError(code);
    return 0;
}

} // namespace

DWORD GetLastError()
{
    return lastError;
}

void SetLastError(DWORD code)
{
    lastError = code;
}

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD messageId, DWORD, LPSTR buffer, DWORD size, va_list *)
{
    if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM) || !buffer)
        return failWith(ERROR_INVALID_PARAMETER);
    const char *const text = findSystemMessage(messageId);
    if (!text)
        return failWith(ERROR_MR_MID_NOT_FOUND);

    const std::size_t length = std::strlen(text);
    char *target = buffer;
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER)
    {
        target = static_cast<char *>(std::malloc(length + 1));
        if (!target)
            return failWith(ERROR_NOT_ENOUGH_MEMORY);
        *reinterpret_cast<LPSTR *>(buffer) = target;
    }
    else if (size <= length)
        return failWith(ERROR_INSUFFICIENT_BUFFER);
    std::memcpy(target, text, length + 1);
    return static_cast<DWORD>(length);
}

HLOCAL LocalFree(HLOCAL block)
{
    std::free(block);
    return nullptr;
}

BOOL IsDebuggerPresent()
{
    std::FILE *const status = std::fopen("/proc/self/status", "r");
    if (!status)
        return FALSE;
    char line[256];
    int tracer = 0;
    while (std::fgets(line, sizeof line, status))
        if (std::sscanf(line, "TracerPid: %d", &tracer) == 1)
            break;
    std::fclose(status);
    return tracer != 0;
}

void DebugBreak()
{
    std::raise(SIGTRAP);
}

int MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type)
{
    if (!text)
        text = "";
    if (!caption)
        caption = "";
    port::flushDebugOutput();
    const int answer = presenter ? presenter(owner, text, caption, type) : 0;
    if (answer != 0)
        return answer;
    OutputDebugStringA((std::string(caption) + "\n" + text + "\n").c_str());
    port::flushDebugOutput();
    return (type & MB_TYPEMASK) == MB_ABORTRETRYIGNORE ? IDRETRY : IDOK;
}

void InitializeCriticalSection(LPCRITICAL_SECTION section)
{
    section->lock = new std::recursive_mutex;
}

void EnterCriticalSection(LPCRITICAL_SECTION section)
{
    static_cast<std::recursive_mutex *>(section->lock)->lock();
}

void LeaveCriticalSection(LPCRITICAL_SECTION section)
{
    static_cast<std::recursive_mutex *>(section->lock)->unlock();
}

void DeleteCriticalSection(LPCRITICAL_SECTION section)
{
    delete static_cast<std::recursive_mutex *>(section->lock);
    section->lock = nullptr;
}

HANDLE GetCurrentProcess()
{
    // The published pseudo handle of the calling process.
    return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1));
}

DWORD GetCurrentProcessId()
{
    return static_cast<DWORD>(::getpid());
}

namespace port
{

void setMessageBoxPresenter(MessageBoxPresenter newPresenter)
{
    presenter = newPresenter;
}

bool hasMessageBoxPresenter()
{
    return presenter != nullptr;
}

} // namespace port
