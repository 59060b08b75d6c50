// What each kind of line of a sound project means.
#include "port/fmod/project/ProjectReader.h"

#include <algorithm>

namespace port
{

namespace
{

constexpr std::size_t MOST_EVENTS = 4096; ///< of a project
constexpr std::size_t MOST_LAYERS = 16;
constexpr std::size_t MOST_SAMPLES = 64; ///< of a layer
constexpr std::size_t MOST_PARAMETERS = 16;
constexpr std::size_t MOST_SEGMENTS = 32;
constexpr float MOST_SECONDS = 600;
constexpr float MOST_SEMITONES = 48;
constexpr float LEAST_LOUDNESS = -96; ///< dB
constexpr float FAR_AWAY = 1e6F;      ///< bound of a parameter's values

float numberAt(const Words &words, std::size_t index, float least, float most, float otherwise)
{
    return index < words.size() ? readNumber(words[index], least, most) : otherwise;
}

void checkRoom(std::size_t count, std::size_t most, const char *what)
{
    if (count >= most)
        throw LineError{"more than " + std::to_string(most) + " " + what};
}

template <class Named>
void checkNew(const std::vector<Named> &all, const std::string &name)
{
    if (std::any_of(all.begin(), all.end(), [&](const Named &each) { return each.name == name; }))
        throw LineError{"there is a '" + name + "' already"};
}

/// Below the project's folder, whatever the file says.
std::string samplePath(std::string word)
{
    std::replace(word.begin(), word.end(), '\\', '/');
    if (word.empty() || word.front() == '/' || word.find("..") != std::string::npos)
        throw LineError{"'" + word + "' is no path below the project's folder"};
    return word;
}

CurveData::Target targetOf(const std::string &word)
{
    if (word == "lowpass")
        return CurveData::LOWPASS;
    if (word == "reverb")
        return CurveData::REVERB;
    return word == "pitch" ? CurveData::PITCH : CurveData::VOLUME;
}

struct Bounds
{
    float least, most;
};

Bounds boundsOf(CurveData::Target target)
{
    switch (target)
    {
    case CurveData::LOWPASS:
        return {10, 22000};
    case CurveData::PITCH:
        return {-MOST_SEMITONES, MOST_SEMITONES};
    case CurveData::REVERB:
        return {0, 1};
    default:
        return {0, 4};
    }
}

Curve::Point readPoint(const std::string &word, CurveData::Target target)
{
    const std::size_t colon = word.find(':');
    if (colon == std::string::npos)
        throw LineError{"'" + word + "' is no point; expected VALUE:RESULT, as 10:0.5"};
    const Bounds bounds = boundsOf(target);
    return {readNumber(word.substr(0, colon), -FAR_AWAY, FAR_AWAY),
            readNumber(word.substr(colon + 1), bounds.least, bounds.most)};
}

} // namespace

void ProjectReader::readProject(const Words &words)
{
    if (!data.name.empty())
        throw LineError{"the project is named already"};
    readWhole(words[2], 1, 1);
    if (words[1].empty() || words[1].find('/') != std::string::npos)
        throw LineError{"'" + words[1] + "' is no name"};
    data.name = words[1];
}

void ProjectReader::readCategory(const Words &words)
{
    const float volume = numberAt(words, 2, 0, 1, 1);
    for (const CategoryData &each : data.categories)
        if (each.path == words[1])
            throw LineError{"there is a '" + words[1] + "' already"};
    checkRoom(data.categories.size(), 256, "categories");
    data.categories.push_back({words[1], volume});
}

void ProjectReader::readGroup(const Words &words)
{
    for (group = 0; group < data.groups.size(); ++group)
        if (data.groups[group].name == words[1])
            return;
    data.groups.push_back({words[1], {}});
}

void ProjectReader::readEvent(const Words &words)
{
    checkRoom(names.size(), MOST_EVENTS, "events");
    if (words[1].empty())
        throw LineError{"the name is empty"};
    if (!names.insert({group, words[1]}).second)
        throw LineError{"there is a '" + words[1] + "' already"};
    EventData event;
    event.name = words[1];
    event.line = line;
    data.groups[group].events.push_back(std::move(event));
}

void ProjectReader::readEventCategory(const Words &words)
{
    Words known;
    for (const CategoryData &each : data.categories)
        known.push_back(each.path);
    if (std::find(known.begin(), known.end(), words[1]) == known.end())
        throw LineError{"no category '" + words[1] + "' stands before the groups" + suggestion(words[1], known)};
    event().category = words[1];
}

void ProjectReader::readCaption(const Words &words)
{
    const float least = numberAt(words, 2, 0, 1, 0);
    event().caption = words[1];
    event().leastCaption = least;
}

void ProjectReader::readLoudness(const Words &words)
{
    event().loudness = readNumber(words[1], LEAST_LOUDNESS, 0);
}

void ProjectReader::readPriority(const Words &words)
{
    event().priority = readWhole(words[1], 0, 256);
}

void ProjectReader::readVoices(const Words &words)
{
    event().voices = readWhole(words[1], 1, 64);
}

void ProjectReader::readMode(const Words &words)
{
    if (words[1] != "once" && words[1] != "loop")
        throw LineError{"expected 'once' or 'loop'" + suggestion(words[1], {"once", "loop"})};
    event().loop = words[1] == "loop";
}

void ProjectReader::readFade(const Words &words)
{
    const float in = readNumber(words[1], 0, MOST_SECONDS), out = readNumber(words[2], 0, MOST_SECONDS);
    event().fadeIn = in;
    event().fadeOut = out;
}

void ProjectReader::readLayer(const Words &words)
{
    checkRoom(event().layers.size(), MOST_LAYERS, "layers");
    checkNew(event().layers, words[1]);
    LayerData layer;
    layer.name = words[1];
    event().layers.push_back(std::move(layer));
}

void ProjectReader::readParameter(const Words &words)
{
    checkRoom(event().parameters.size(), MOST_PARAMETERS, "parameters");
    checkNew(event().parameters, words[1]);
    ParameterData parameter;
    parameter.name = words[1];
    parameter.least = readNumber(words[2], -FAR_AWAY, FAR_AWAY);
    parameter.most = readNumber(words[3], -FAR_AWAY, FAR_AWAY);
    if (parameter.least >= parameter.most)
        throw LineError{"the range is empty; expected the least value first"};
    parameter.start = numberAt(words, 4, parameter.least, parameter.most, parameter.least);
    event().parameters.push_back(std::move(parameter));
}

void ProjectReader::readMusic(const Words &words)
{
    const float beats = readNumber(words[1], 20, 400);
    const int bar = words.size() > 2 ? readWhole(words[2], 1, 32) : 4;
    event().music.beatsPerMinute = beats;
    event().music.beatsPerBar = bar;
}

void ProjectReader::readSegment(const Words &words)
{
    MusicData &music = event().music;
    if (music.beatsPerMinute == 0)
        throw LineError{"segments stand below 'music BEATS-A-MINUTE BEATS-A-BAR'"};
    checkRoom(music.segments.size(), MOST_SEGMENTS, "segments");
    checkNew(music.segments, words[1]);
    SegmentData segment;
    segment.name = words[1];
    segment.path = samplePath(words[2]);
    segment.line = line;
    if (words.size() == 4 || (words.size() == 5 && words[3] != "next" && words[3] != "layer"))
        throw LineError{"expected 'next NAME' or 'layer TENSION' after the file"};
    if (words.size() == 5 && words[3] == "next")
        segment.next = words[4];
    if (words.size() == 5 && words[3] == "layer")
    {
        segment.isLayer = true;
        segment.tension = readNumber(words[4], -FAR_AWAY, FAR_AWAY);
    }
    music.segments.push_back(std::move(segment));
}

void ProjectReader::readSample(const Words &words)
{
    checkRoom(layer().samples.size(), MOST_SAMPLES, "samples");
    const float weight = numberAt(words, 2, 0.001F, 1000, 1);
    layer().samples.push_back({samplePath(words[1]), weight, line});
}

void ProjectReader::readLayerVolume(const Words &words)
{
    layer().volume = {readNumber(words[1], 0, 1), numberAt(words, 2, 0, 1, 0)};
}

void ProjectReader::readLayerPitch(const Words &words)
{
    layer().pitch = {readNumber(words[1], -MOST_SEMITONES, MOST_SEMITONES), numberAt(words, 2, 0, MOST_SEMITONES, 0)};
}

void ProjectReader::readDelay(const Words &words)
{
    layer().delay = {readNumber(words[1], 0, MOST_SECONDS), numberAt(words, 2, 0, MOST_SECONDS, 0)};
}

void ProjectReader::readStream(const Words &)
{
    layer().stream = true;
}

void ProjectReader::readCurve(const Words &words)
{
    CurveData read;
    read.target = targetOf(words[0]);
    const bool ofLayer = words[1].find(':') == std::string::npos;
    for (std::size_t i = ofLayer ? 2 : 1; i < words.size(); ++i)
    {
        read.curve.points.push_back(readPoint(words[i], read.target));
        const auto &points = read.curve.points;
        if (points.size() > 1 && points[points.size() - 2].x >= points.back().x)
            throw LineError{"'" + words[i] + "' does not lie behind the point before it"};
    }
    if (read.curve.points.empty())
        throw LineError{"expected points as 10:0.5 after the layer's name"};
    parameter().curves.push_back(std::move(read));
    if (ofLayer)
        layerCurves.push_back({group, data.groups[group].events.size() - 1, event().parameters.size() - 1,
                               parameter().curves.size() - 1, words[1], line});
}

} // namespace port
