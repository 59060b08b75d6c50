// InputDevices: the game pads, the registration of keyboard and mouse, and the recorded input that stands in for all.
#pragma once

#include "platform/input/InputRecorder.h"
#include "platform/input/InputReplay.h"

#include "port/win32/RawInput.h"
#include "port/xinput/XInput.h"

/// Numbers of devices and their parts.
namespace Rawx
{

enum CONTROLS
{
    KEYBOARD = 0,
    MOUSE = 1,
    CON_PS2 = 2, ///< a joystick of the plain kind
    INPUT_SIZE = 3
};

enum CON_360
{
    PLAYER_1 = 0,
    PLAYER_2 = 1,
    PLAYER_3 = 2,
    PLAYER_4 = 3,
    PLAYERS = 4
};

enum STICK
{
    RIGHT = 0,
    LEFT = 1,
    STICKS = 2
};

} // namespace Rawx

/// Samples the pads once a frame and tells the game what they do.
///
/// While recorded input is played back, the pads are those of the recording. Keyboard and mouse report by themselves,
/// through the window, once they are registered here.
class InputDevices
{
public:
    InputDevices();

    /// Asks the platform for raw input; a refusal is logged.
    void registerDevices();
    /// Begins a frame: plays recorded input, reads every pad and sends what it tells. A missing pad sends nothing.
    /// @param atRest  every pad tells that nobody touches it, whatever it reads
    void update(bool atRest = false);
    /// Stops what the pads' motors still do and closes a recording.
    void shutdown();

    /// Sets both motors of a pad, 0 still to 65535 full; a player without a pad has none, which is no failure.
    void setVibration(unsigned player, WORD vib);
    /// The player's pad as of this frame, dead zones applied; all zero without one.
    const XINPUT_STATE &getState(unsigned player) const { return states[player]; }

    /// Sets how far a stick has to be moved before it counts, as a part of its way, 0 to 0.9.
    void setDeadZone(Rawx::STICK stick, float part);
    float getDeadZone(Rawx::STICK stick) const { return deadZones[stick]; }

    InputReplay &getReplay() { return replay; }
    const InputReplay &getReplay() const { return replay; }
    /// The recording that was asked for.
    InputRecorder &getRecorder() { return recorder; }
    /// The recording that is kept of every run, for a report.
    InputRecorder &getRunRecorder() { return runRecorder; }
    /// Notes something in both recordings.
    template <class... Values>
    void record(const Values &...values)
    {
        recorder.record(values...);
        runRecorder.record(values...);
    }

private:
    PadState readPad(unsigned player);
    void applyDeadZone(unsigned player, Rawx::STICK stick);
    void checkButtonPress(unsigned player);

    XINPUT_VIBRATION vibration[Rawx::PLAYERS];   ///< as set last
    RAWINPUTDEVICE deviceList[Rawx::INPUT_SIZE]; ///< what is registered
    XINPUT_STATE states[Rawx::PLAYERS];          ///< of this frame
    float deadZones[Rawx::STICKS];               ///< parts of a stick's way, by STICK
    InputReplay replay;
    InputRecorder recorder{InputRecorder::ASKED_FOR};
    InputRecorder runRecorder{InputRecorder::KEPT_BY_THE_WAY};
};
