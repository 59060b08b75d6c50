#include "rendering/device/D3DPerfScopedEvent.h"

#include "foundation/Assertions.h"
#include "port/d3d9/d3d9.h"
#include "port/win32/WideText.h"

namespace
{

/// Pass names are short; a longer one is a wrong caller.
constexpr int longestName = 256;

String profilerSection()
{
    static const String section = SCS("D3DPSE");
    return section;
}

} // namespace

D3DPerfScopedEvent::D3DPerfScopedEvent(const String &szName) : profileConnector(profilerSection(), szName)
{
    WCHAR wideName[longestName];
    const int written = MultiByteToWideChar(CP_ACP, 0, szName.toCString(), -1, wideName, longestName);
    KV_CRITICAL_ASSERT(written != 0, "could not convert ansi to unicode string");
    D3DPERF_BeginEvent(D3DCOLOR_ARGB(255, 255, 255, 255), wideName);
}

D3DPerfScopedEvent::~D3DPerfScopedEvent()
{
    D3DPERF_EndEvent();
}
