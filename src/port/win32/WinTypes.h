// WinTypes: the platform's scalar types, result codes and small structures, with their published sizes.
#pragma once

#include <cstddef>
#include <cstdint>

typedef int BOOL;
typedef std::uint8_t BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::uint32_t UINT;
typedef std::uint32_t ULONG;
typedef std::int32_t INT;
typedef std::int32_t LONG;
typedef std::int64_t LONGLONG;
typedef std::int64_t INT64;
typedef std::uint64_t UINT64;
typedef std::uint64_t DWORD64;
typedef std::uint64_t ULONG64;
typedef std::int16_t SHORT;
typedef std::uint16_t USHORT;
typedef char CHAR;
typedef unsigned char UCHAR;
typedef float FLOAT;
typedef void VOID;
typedef void *PVOID;
typedef void *LPVOID;
typedef const void *LPCVOID;
typedef char *LPSTR;
typedef const char *LPCSTR;
typedef BYTE *LPBYTE;
typedef DWORD *LPDWORD;
typedef UINT *PUINT;
typedef DWORD *PDWORD;
typedef std::size_t SIZE_T;
typedef std::intptr_t INT_PTR;
typedef std::uintptr_t UINT_PTR;
typedef std::intptr_t LONG_PTR;
typedef std::uintptr_t ULONG_PTR;
typedef std::uintptr_t DWORD_PTR;
typedef UINT_PTR WPARAM;
typedef LONG_PTR LPARAM;
typedef LONG_PTR LRESULT;
typedef WORD ATOM;
typedef DWORD COLORREF;
typedef std::int32_t HRESULT;

typedef void *HANDLE;
typedef HANDLE HLOCAL;
typedef struct HWND__ *HWND;
typedef struct HINSTANCE__ *HINSTANCE;
typedef HINSTANCE HMODULE;
typedef struct HICON__ *HICON;
typedef HICON HCURSOR;
typedef struct HBRUSH__ *HBRUSH;
typedef struct HMENU__ *HMENU;
typedef struct HDC__ *HDC;
typedef struct HMONITOR__ *HMONITOR;
typedef struct HRAWINPUT__ *HRAWINPUT;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef CONST
#define CONST const
#endif

// The host has one calling convention; the words mark what the platform calls back.
#define WINAPI
#define CALLBACK

struct POINT
{
    LONG x;
    LONG y;
};
typedef POINT *LPPOINT;

struct SIZE
{
    LONG cx;
    LONG cy;
};

struct RECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
typedef RECT *LPRECT;
typedef const RECT *LPCRECT;

union LARGE_INTEGER
{
    __extension__ struct
    {
        DWORD LowPart;
        LONG HighPart;
    };
    LONGLONG QuadPart;
};

struct GUID
{
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};

constexpr WORD LOWORD(ULONG_PTR value)
{
    return static_cast<WORD>(value & 0xFFFF);
}

constexpr WORD HIWORD(ULONG_PTR value)
{
    return static_cast<WORD>((value >> 16) & 0xFFFF);
}

constexpr LPARAM MAKELPARAM(DWORD low, DWORD high)
{
    return static_cast<LPARAM>((low & 0xFFFF) | ((high & 0xFFFF) << 16));
}

constexpr bool SUCCEEDED(HRESULT result)
{
    return result >= 0;
}

constexpr bool FAILED(HRESULT result)
{
    return result < 0;
}

/// Result code of a severity (0 success, 1 failure), a facility and a code.
constexpr HRESULT MAKE_HRESULT(unsigned severity, unsigned facility, unsigned code)
{
    return static_cast<HRESULT>((severity << 31) | (facility << 16) | code);
}

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_ABORT = static_cast<HRESULT>(0x80004004u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005u);
constexpr HRESULT E_HANDLE = static_cast<HRESULT>(0x80070006u);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_NO_MORE_FILES = 18;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_CALL_NOT_IMPLEMENTED = 120;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_INVALID_ADDRESS = 487;
constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
constexpr DWORD ERROR_CLASS_ALREADY_EXISTS = 1410;
