// SdlPads: the host's game pads, through SDL.
#pragma once

#include "port/xinput/XInputPlatform.h"

#include <array>

struct _SDL_GameController;

namespace port
{

/// The first four pads that SDL knows the layout of.
///
/// Pads come and go at any time: a player keeps his place while his pad is plugged in, and a new pad takes the first
/// free place. Starts with the first question.
class SdlPads : public XInputPlatform
{
public:
    SdlPads() = default;
    ~SdlPads() override;
    SdlPads(const SdlPads &) = delete;
    SdlPads &operator=(const SdlPads &) = delete;

    DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state) override;
    DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration) override;

private:
    struct Place
    {
        _SDL_GameController *pad = nullptr;
        XINPUT_STATE last; ///< tells when the packet number has to move on
    };

    void followPlugs();
    bool isPlaced(int instance) const;
    Place *freePlace();

    std::array<Place, XUSER_MAX_COUNT> places;
    bool started = false;
};

} // namespace port
