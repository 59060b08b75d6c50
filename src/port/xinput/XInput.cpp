#include "port/xinput/XInput.h"

#include "port/xinput/SdlPads.h"
#include "port/xinput/XInputPlatform.h"

namespace port
{

namespace
{
XInputPlatform *installedPads = nullptr;

XInputPlatform &padsInPlace()
{
    if (installedPads)
        return *installedPads;
    static SdlPads hostPads;
    return hostPads;
}
} // namespace

XInputPlatform *installXInputPlatform(XInputPlatform *platform)
{
    XInputPlatform *former = installedPads;
    installedPads = platform;
    return former;
}

} // namespace port

DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    if (userIndex >= XUSER_MAX_COUNT || !state)
        return ERROR_BAD_ARGUMENTS;
    return port::padsInPlace().XInputGetState(userIndex, state);
}

DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration)
{
    if (userIndex >= XUSER_MAX_COUNT || !vibration)
        return ERROR_BAD_ARGUMENTS;
    return port::padsInPlace().XInputSetState(userIndex, vibration);
}
