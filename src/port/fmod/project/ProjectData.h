// ProjectData: what a sound project says, as plain data.
#pragma once

#include "port/fmod/project/Curve.h"

#include <string>
#include <vector>

namespace port
{

/// A value with what chance adds to it or takes from it at each start.
struct Varied
{
    float value = 0;
    float spread = 0;
};

struct SampleData
{
    std::string path; ///< below the project's folder, with slashes; an absolute one stands for itself
    float weight = 1;
    int line = 0;
};

/// Samples of which one sounds at a time, beside the event's other layers.
struct LayerData
{
    std::string name;
    std::vector<SampleData> samples;
    Varied volume{1, 0}; ///< linear
    Varied pitch;        ///< semitones
    Varied delay;        ///< s; chance only adds
    bool stream = false; ///< read along while playing
};

/// What a parameter does to the event or to one of its layers.
struct CurveData
{
    enum Target
    {
        VOLUME,  ///< linear gain
        LOWPASS, ///< Hz
        REVERB,  ///< linear send
        PITCH    ///< semitones
    };
    Target target = VOLUME;
    int layer = -1; ///< index; -1 is the whole event
    Curve curve;
};

struct ParameterData
{
    std::string name;
    float least = 0;
    float most = 1;
    float start = 0;
    std::vector<CurveData> curves;
};

/// A named stretch of music.
struct SegmentData
{
    std::string name;
    std::string path;
    std::string next;  ///< the segment that follows; empty ends the music
    float tension = 0; ///< of layers: heard from this tension on
    bool isLayer = false;
    int line = 0;
};

struct MusicData
{
    float beatsPerMinute = 0; ///< 0: the event is no music
    int beatsPerBar = 4;
    std::vector<SegmentData> segments;
};

struct EventData
{
    std::string name;
    std::string caption;
    float leastCaption = 0;
    std::string category;
    float loudness = -26; ///< dB, a metre away, as loud as its parameters let it be
    int priority = 128;   ///< 0 most important, 256 least
    int voices = 8;       ///< instances heard at once
    bool loop = false;
    float fadeIn = 0;      ///< s
    float fadeOut = 0.02F; ///< s
    std::vector<LayerData> layers;
    std::vector<ParameterData> parameters;
    MusicData music;
    std::string folder; ///< where its samples lie; empty for the project's own
    std::string file;   ///< that it stands in, for texts; empty for the project's own
    int line = 0;
};

struct GroupData
{
    std::string name;
    std::vector<EventData> events;
};

struct CategoryData
{
    std::string path; ///< parts between slashes
    float volume = 1;
};

struct ProjectData
{
    std::string name;
    std::vector<CategoryData> categories;
    std::vector<GroupData> groups;
    std::vector<std::string> problems; ///< of wrong lines, each with file, line and cure
};

} // namespace port
