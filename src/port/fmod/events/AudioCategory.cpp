#include "port/fmod/events/AudioCategory.h"

#include <algorithm>
#include <cmath>

namespace port
{

FMOD_RESULT AudioCategory::setVolume(float newVolume)
{
    if (std::isnan(newVolume))
        return FMOD_ERR_INVALID_FLOAT;
    volume = std::clamp(newVolume, 0.0F, 1.0F);
    return FMOD_OK;
}

FMOD_RESULT AudioCategory::getVolume(float *volumeOut)
{
    if (!volumeOut)
        return FMOD_ERR_INVALID_PARAM;
    *volumeOut = volume;
    return FMOD_OK;
}

FMOD_RESULT AudioCategory::setPaused(bool newPaused)
{
    paused = newPaused;
    return FMOD_OK;
}

FMOD_RESULT AudioCategory::getPaused(bool *pausedOut)
{
    if (!pausedOut)
        return FMOD_ERR_INVALID_PARAM;
    *pausedOut = paused;
    return FMOD_OK;
}

float AudioCategory::getGain() const
{
    float gain = 1;
    for (const AudioCategory *each = this; each; each = each->parent)
        gain *= each->authored * each->volume;
    return gain;
}

bool AudioCategory::isHeld() const
{
    return paused || (parent && parent->isHeld());
}

AudioCategory *CategoryTree::find(const std::string &path) const
{
    for (const auto &each : all)
        if (each->getPath() == path)
            return each.get();
    return nullptr;
}

AudioCategory &CategoryTree::make(const std::string &path)
{
    if (AudioCategory *there = find(path))
        return *there;
    const std::size_t slash = path.rfind('/');
    AudioCategory *parent = slash == std::string::npos ? nullptr : &make(path.substr(0, slash));
    all.push_back(std::make_unique<AudioCategory>(path, parent));
    return *all.back();
}

} // namespace port
