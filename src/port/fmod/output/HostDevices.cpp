#include "port/fmod/output/AudioHost.h"

#include "port/fmod/Notices.h"

#include <AL/alext.h>

#include <chrono>
#include <cstdlib>
#include <dlfcn.h>

namespace port
{

namespace
{

constexpr double LATENCY_SECONDS = 0.06; ///< two of the library's usual periods and a frame

void keepSilent(const char *, int, const char *, int, const char *, ...) {}

/// The sound libraries write a dozen lines on the terminal for each device that is missing; one notice of ours does.
void quietLibraries()
{
    setenv("ALSOFT_LOGLEVEL", "0", 0);
    void *library = dlopen("libasound.so.2", RTLD_LAZY);
    if (!library)
        return;
    using SetHandler = int (*)(void (*)(const char *, int, const char *, int, const char *, ...));
    if (const auto setHandler = reinterpret_cast<SetHandler>(dlsym(library, "snd_lib_error_set_handler")))
        setHandler(keepSilent);
}

class HostDevices : public AudioHost
{
public:
    HostDevices() { quietLibraries(); }

    bool isWanted() const override { return true; }
    void choose(const std::string &name) override { wanted = name; }
    ALCdevice *open() override
    {
        ALCdevice *device = wanted.empty() ? nullptr : alcOpenDevice(wanted.c_str());
        if (!device && !wanted.empty())
            tellAudio("The sound device \"" + wanted + "\" cannot be opened; the usual one is taken.", false);
        device = device ? device : alcOpenDevice(nullptr);
        tellsLoss = device && alcIsExtensionPresent(device, "ALC_EXT_disconnect");
        return device;
    }
    bool isConnected(ALCdevice *device) override
    {
        ALCint connected = ALC_TRUE;
        if (tellsLoss)
            alcGetIntegerv(device, ALC_CONNECTED, 1, &connected);
        return connected == ALC_TRUE;
    }
    std::vector<ALCint> getAttributes() const override { return {}; }
    double getTime() override
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    double getLatency() const override { return LATENCY_SECONDS; }

private:
    std::string wanted;     ///< name of a device; empty for the usual one
    bool tellsLoss = false; ///< of the open device
};

std::function<std::unique_ptr<AudioHost>()> &hostMaker()
{
    static std::function<std::unique_ptr<AudioHost>()> maker;
    return maker;
}

} // namespace

std::unique_ptr<AudioHost> makeHostDevices()
{
    return std::make_unique<HostDevices>();
}

void setAudioHostMaker(std::function<std::unique_ptr<AudioHost>()> maker)
{
    hostMaker() = std::move(maker);
}

std::unique_ptr<AudioHost> makeDeviceHost()
{
    return hostMaker() ? hostMaker()() : makeHostDevices();
}

} // namespace port
