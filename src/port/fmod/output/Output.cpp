#include "port/fmod/output/Output.h"

#include "port/fmod/Notices.h"

namespace port
{

namespace
{

constexpr double LOOK_SECONDS = 0.1; ///< between looks whether the device is still there
constexpr double ASK_SECONDS = 2;    ///< between asks for one, each of which may cost milliseconds
constexpr ALCint SENDS = 2;          ///< a source's ways to reverberation: two zones

} // namespace

Output::Output(std::unique_ptr<AudioHost> host, bool headRelated) : host(std::move(host)), headRelated(headRelated) {}

Output::~Output()
{
    close();
}

std::vector<ALCint> Output::attributes() const
{
    std::vector<ALCint> all = host->getAttributes();
    for (const ALCint value : {ALC_MAX_AUXILIARY_SENDS, SENDS, ALC_HRTF_SOFT, headRelated ? ALC_TRUE : ALC_FALSE, 0})
        all.push_back(value);
    return all;
}

bool Output::open()
{
    device = host->open();
    if (!device)
        return false;
    context = alcCreateContext(device, attributes().data());
    if (!context || !alcMakeContextCurrent(context))
    {
        close();
        return false;
    }
    effects = EffectCalls::load(device);
    if (!effects.areThere())
        tellAudio("The sound library has no effects: nothing is muffled and rooms do not sound.", true);
    if (headRelated && !isHeadRelated())
        tellAudio("The sound device cannot give directions by the shape of a head.", true);
    ++opened;
    return true;
}

Output::Change Output::watch()
{
    const double now = host->getTime();
    const bool looks = now >= nextLook;
    if (isOpen())
    {
        alcMakeContextCurrent(context);
        if (changesOver)
        {
            changesOver = false;
            close();
            nextLook = now;
            return LOST;
        }
        if (!looks)
            return SAME;
        nextLook = now + LOOK_SECONDS;
        if (host->isConnected(device))
            return SAME;
        close();
        nextLook = now;
        tellAudio("The sound device is gone.", false);
        return LOST;
    }
    if (!looks || !host->isWanted())
        return SAME;
    if (!open())
    {
        nextLook = now + ASK_SECONDS;
        tellAudio("No sound device can be opened: the game goes on in silence and asks again for one.", true);
        return SAME;
    }
    nextLook = now + LOOK_SECONDS;
    if (opened > 1)
        tellAudio("Sound goes on at a new device.", false);
    return OPENED;
}

void Output::chooseDevice(const std::string &name)
{
    host->choose(name);
    changesOver = isOpen();
    nextLook = 0;
}

void Output::close()
{
    if (context)
    {
        if (alcGetCurrentContext() == context)
            alcMakeContextCurrent(nullptr);
        alcDestroyContext(context);
    }
    if (device)
        alcCloseDevice(device);
    context = nullptr;
    device = nullptr;
}

bool Output::isHeadRelated() const
{
    ALCint on = ALC_FALSE;
    alcGetIntegerv(device, ALC_HRTF_SOFT, 1, &on);
    return on == ALC_TRUE;
}

bool Output::setHeadRelated(bool on)
{
    headRelated = on;
    if (!isOpen())
        return true;
    if (!alcIsExtensionPresent(device, "ALC_SOFT_HRTF"))
        return !on;
    const auto reset = reinterpret_cast<LPALCRESETDEVICESOFT>(alcGetProcAddress(device, "alcResetDeviceSOFT"));
    return reset(device, attributes().data()) && isHeadRelated() == on;
}

int Output::getRate() const
{
    ALCint rate = 0;
    if (device)
        alcGetIntegerv(device, ALC_FREQUENCY, 1, &rate);
    return rate;
}

} // namespace port
