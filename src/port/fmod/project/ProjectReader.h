// ProjectReader: turns the words of a sound project's lines into its data, one line after the other.
#pragma once

#include "port/fmod/project/ProjectData.h"
#include "port/fmod/project/ProjectWords.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace port
{

using Words = std::vector<std::string>;

/// What a line may stand in; each stands in the one before.
enum class Scope
{
    FILE,
    GROUP,
    EVENT,
    LAYER,
    PARAMETER, ///< beside LAYER
};

/// Knows which group, event, layer or parameter is open; a line that belongs further out closes what is further in.
class ProjectReader
{
public:
    /// Takes the words of a line.
    /// @throws LineError; the line, and what stands below it, is left out
    void take(const Words &words, int line);
    /// What was read, after checks that need all of it; their problems are told with lines of their own.
    ProjectData finish(const std::string &file);

private:
    struct Keyword;
    static const std::vector<Keyword> &keywords();
    /// The keyword that stands in this scope or further out.
    static const Keyword *find(const std::string &word, Scope in);
    [[noreturn]] void refuse(const std::string &word);
    void skipBelow(const Keyword &keyword);
    static void checkCount(const Words &words, const Keyword &keyword);
    void resolveLayers(const std::string &file);
    void checkEvent(const EventData &checked, const std::string &file);
    void problem(const std::string &file, int where, const std::string &text);

    void readProject(const Words &words);
    void readCategory(const Words &words);
    void readGroup(const Words &words);
    void readEvent(const Words &words);
    void readEventCategory(const Words &words);
    void readCaption(const Words &words);
    void readLoudness(const Words &words);
    void readPriority(const Words &words);
    void readVoices(const Words &words);
    void readMode(const Words &words);
    void readFade(const Words &words);
    void readLayer(const Words &words);
    void readParameter(const Words &words);
    void readMusic(const Words &words);
    void readSegment(const Words &words);
    void readSample(const Words &words);
    void readLayerVolume(const Words &words);
    void readLayerPitch(const Words &words);
    void readDelay(const Words &words);
    void readStream(const Words &words);
    void readCurve(const Words &words);

    EventData &event() { return data.groups[group].events.back(); }
    LayerData &layer() { return event().layers.back(); }
    ParameterData &parameter() { return event().parameters.back(); }
    /// Names a layer that stands further down or nowhere: known when the event is complete.
    struct LayerCurve
    {
        std::size_t group, event, parameter, curve;
        std::string layer;
        int line;
    };

    ProjectData data;
    std::set<std::pair<std::size_t, std::string>> names; ///< of events, by group
    std::vector<LayerCurve> layerCurves;
    Scope scope = Scope::FILE;
    std::size_t group = 0; ///< index of the open one
    int line = 0;
    bool skipping = false;       ///< below a line that opens something and could not be read
    Scope skipped = Scope::FILE; ///< what it would have opened
};

} // namespace port
