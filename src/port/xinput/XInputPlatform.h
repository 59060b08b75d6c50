// XInputPlatform: the seam behind the pad operations, so that a test can plug in pads that do not exist.
#pragma once

#include "port/xinput/XInput.h"

namespace port
{

/// The pads: the host's own are SdlPads.
class XInputPlatform
{
public:
    virtual ~XInputPlatform() = default;

    /// As the free function; the arguments are in range.
    virtual DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state) = 0;
    virtual DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration) = 0;
};

/// Stands pads in place of the host's, or with null the host's own back; borrowed.
/// @return what was installed before; null for the host's own
XInputPlatform *installXInputPlatform(XInputPlatform *platform);

} // namespace port
