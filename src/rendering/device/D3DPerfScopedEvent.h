// D3DPerfScopedEvent: names a stretch of device calls for graphics debuggers and for the profiler.
#pragma once

#include "foundation/KVString.h"
#include "foundation/ProfilerScope.h"

/// Guard of one named group of device calls; groups nest.
class D3DPerfScopedEvent
{
public:
    explicit D3DPerfScopedEvent(const String &szName);
    ~D3DPerfScopedEvent();

    D3DPerfScopedEvent(const D3DPerfScopedEvent &) = delete;
    D3DPerfScopedEvent &operator=(const D3DPerfScopedEvent &) = delete;

private:
    ProfilerScope profileConnector;
};
