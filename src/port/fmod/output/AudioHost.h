// AudioHost: the devices that sound can come from, and their clock.
#pragma once

#include <AL/alc.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace port
{

/// Where output goes. Tests put one in place whose devices come and go as they say.
class AudioHost
{
public:
    virtual ~AudioHost() = default;

    /// False as long as nobody listens: no device is asked for, and its lack is not told.
    virtual bool isWanted() const = 0;
    /// Says which device to open next by its name, empty for the usual one; a host with but one pays no heed.
    virtual void choose(const std::string &) {}
    /// Opens the device of choice, or the usual one where that is not there; null where there is none.
    virtual ALCdevice *open() = 0;
    /// False once an open device went away.
    virtual bool isConnected(ALCdevice *device) = 0;
    /// What the device is asked for beyond what every device is, as pairs of names and values.
    virtual std::vector<ALCint> getAttributes() const = 0;
    /// Seconds since some moment; what plays without a device goes by them.
    virtual double getTime() = 0;
    /// Seconds after which a device has surely taken in a change.
    virtual double getLatency() const = 0;
};

/// The computer's own devices.
std::unique_ptr<AudioHost> makeHostDevices();

/// What the next event system gets in the place of the computer's devices; an empty function brings those back.
void setAudioHostMaker(std::function<std::unique_ptr<AudioHost>()> maker);
std::unique_ptr<AudioHost> makeDeviceHost();

} // namespace port
