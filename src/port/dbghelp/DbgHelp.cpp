// DbgHelp: stack capture on the compiler's unwinder, names and lines on libbacktrace.
#include "port/dbghelp/DbgHelp.h"

#include "port/win32/Diagnostics.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <dlfcn.h>
#include <string>
#include <unwind.h>

#ifdef KV_HAVE_BACKTRACE
#include <backtrace.h>
#endif

namespace
{

struct Capture
{
    DWORD toSkip;
    DWORD room;
    PVOID *addresses;
    USHORT count;
};

_Unwind_Reason_Code storeFrame(_Unwind_Context *context, void *data)
{
    auto &capture = *static_cast<Capture *>(data);
    const auto address = _Unwind_GetIP(context);
    if (address == 0 || capture.count == capture.room)
        return _URC_END_OF_STACK;
    if (capture.toSkip > 0)
        --capture.toSkip;
    else
        capture.addresses[capture.count++] = reinterpret_cast<PVOID>(address);
    return _URC_NO_REASON;
}

std::string demangled(const char *name)
{
    int status = 0;
    char *const text = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    std::string result = status == 0 && text ? text : name;
    std::free(text);
    return result;
}

struct Symbol
{
    const char *name = nullptr; ///< as the linker knows it; null where there is none
    DWORD64 address = 0;
};

struct SourceLine
{
    const char *file = nullptr; ///< lasts as long as the symbol tables
    int line = 0;
};

DWORD symbolOptions = 0;

#ifdef KV_HAVE_BACKTRACE

backtrace_state *state = nullptr;

void ignoreFailure(void *, const char *, int) {}

void takeSymbol(void *data, uintptr_t, const char *name, uintptr_t value, uintptr_t)
{
    if (name)
        *static_cast<Symbol *>(data) = {name, value};
}

// The first report for an address is its innermost inlined function, whose line is the one that ran.
int takeLine(void *data, uintptr_t, const char *file, int line, const char *)
{
    if (file)
        *static_cast<SourceLine *>(data) = {file, line};
    return 1;
}

bool openSymbols()
{
    if (!state)
        state = backtrace_create_state(nullptr, 0, ignoreFailure, nullptr);
    return state != nullptr;
}

Symbol findSymbol(DWORD64 address)
{
    Symbol symbol;
    if (state)
        backtrace_syminfo(state, address, takeSymbol, ignoreFailure, &symbol);
    return symbol;
}

SourceLine findLine(DWORD64 address)
{
    SourceLine line;
    if (state)
        backtrace_pcinfo(state, address, takeLine, ignoreFailure, &line);
    return line;
}

#else

bool openSymbols()
{
    return true;
}

Symbol findSymbol(DWORD64 address)
{
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void *>(address), &info) || !info.dli_sname)
        return {};
    return {info.dli_sname, reinterpret_cast<DWORD64>(info.dli_saddr)};
}

// Without libbacktrace no line is known.
SourceLine findLine(DWORD64)
{
    return {};
}

#endif

} // namespace

__attribute__((noinline)) USHORT RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, PVOID *addresses,
                                                          DWORD *hash)
{
    // The unwinder reports this function first.
    Capture capture{framesToSkip + 1, std::min<DWORD>(framesToCapture, UINT16_MAX), addresses, 0};
    _Unwind_Backtrace(storeFrame, &capture);
    if (hash)
    {
        *hash = 0;
        for (USHORT i = 0; i < capture.count; ++i)
            *hash += static_cast<DWORD>(reinterpret_cast<UINT_PTR>(addresses[i]));
    }
    return capture.count;
}

DWORD SymSetOptions(DWORD options)
{
    return symbolOptions = options;
}

BOOL SymInitialize(HANDLE, LPCSTR, BOOL)
{
    return openSymbols();
}

BOOL SymFromAddr(HANDLE, DWORD64 address, DWORD64 *displacement, SYMBOL_INFO *symbol)
{
    const Symbol found = findSymbol(address);
    if (!found.name)
    {
        SetLastError(ERROR_INVALID_ADDRESS);
        return FALSE;
    }
    const std::string name = demangled(found.name);
    const std::size_t fitting = std::min<std::size_t>(name.size(), symbol->MaxNameLen ? symbol->MaxNameLen - 1 : 0);
    std::memcpy(symbol->Name, name.data(), fitting);
    symbol->Name[fitting] = 0;
    symbol->NameLen = static_cast<ULONG>(fitting);
    symbol->Address = found.address;
    if (displacement)
        *displacement = address - found.address;
    return TRUE;
}

BOOL SymGetLineFromAddr64(HANDLE, DWORD64 address, DWORD *displacement, IMAGEHLP_LINE64 *line)
{
    const SourceLine found = findLine(address);
    if (!found.file)
    {
        SetLastError(ERROR_INVALID_ADDRESS);
        return FALSE;
    }
    line->FileName = const_cast<LPSTR>(found.file); // the published structure knows no constant text
    line->LineNumber = static_cast<DWORD>(found.line);
    line->Address = address;
    if (displacement)
        *displacement = 0;
    return TRUE;
}

namespace port
{

const char *linkerName(DWORD64 address)
{
    return findSymbol(address).name;
}

} // namespace port
