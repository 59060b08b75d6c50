// Output: the device that is heard, as long as there is one.
#pragma once

#include "port/fmod/output/AudioHost.h"
#include "port/fmod/output/EffectCalls.h"

#include <memory>
#include <string>

namespace port
{

/// One device and its context. Follows devices that come and go, and tells it; never falls over their lack.
class Output
{
public:
    enum Change
    {
        SAME,
        OPENED, ///< a device is there; it knows nothing yet
        LOST    ///< what was made on the device is gone
    };

    Output(std::unique_ptr<AudioHost> host, bool headRelated);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Looks after the device, and makes its context the current one. Asks for a new one every two seconds.
    Change watch();
    /// Directions by the shape of a head; false where the device cannot.
    bool setHeadRelated(bool on);
    /// Changes over to another device, by its name or to the usual one with an empty one: told as LOST, then OPENED.
    void chooseDevice(const std::string &name);
    void close();

    bool isOpen() const { return context != nullptr; }
    AudioHost &getHost() { return *host; }
    ALCdevice *getDevice() { return device; }
    const EffectCalls &getEffects() const { return effects; }
    int getOpenedCount() const { return opened; }
    /// Frames a second; 0 without a device.
    int getRate() const;

private:
    bool open();
    std::vector<ALCint> attributes() const;
    bool isHeadRelated() const;

    std::unique_ptr<AudioHost> host;
    ALCdevice *device = nullptr;
    ALCcontext *context = nullptr;
    EffectCalls effects;
    bool headRelated;
    bool changesOver = false; ///< the open device is to be given up for another one
    int opened = 0;
    double nextLook = 0; ///< s, host time
};

} // namespace port
