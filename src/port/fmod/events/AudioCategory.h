// AudioCategory: a loudness of several events together.
#pragma once

#include "port/fmod/fmod_event.h"

#include <memory>
#include <string>
#include <vector>

namespace port
{

/// Belongs to a tree by the slashes in its path; what holds for it holds for those below it.
class AudioCategory : public FMOD::EventCategory
{
public:
    AudioCategory(std::string path, AudioCategory *parent) : path(std::move(path)), parent(parent) {}

    FMOD_RESULT setVolume(float newVolume) override;
    FMOD_RESULT getVolume(float *volumeOut) override;
    FMOD_RESULT setPaused(bool newPaused) override;
    FMOD_RESULT getPaused(bool *pausedOut) override;

    void setAuthored(float newVolume) { authored = newVolume; }
    const std::string &getPath() const { return path; }
    /// With all above it.
    float getGain() const;
    bool isHeld() const;

private:
    const std::string path;
    const AudioCategory *const parent;
    float authored = 1; ///< by the project
    float volume = 1;   ///< on top of it
    bool paused = false;
};

/// All categories of a system; they outlive the projects that name them, with what was set.
class CategoryTree
{
public:
    /// The category of a path, made with all above it where it was not there.
    AudioCategory &make(const std::string &path);
    /// Null for one that no project named.
    AudioCategory *find(const std::string &path) const;

private:
    std::vector<std::unique_ptr<AudioCategory>> all;
};

} // namespace port
