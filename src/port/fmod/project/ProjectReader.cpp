#include "port/fmod/project/ProjectReader.h"

#include <algorithm>

namespace port
{

struct ProjectReader::Keyword
{
    const char *word;
    Scope scope;             ///< where it stands
    std::size_t least, most; ///< words that follow it
    const char *form;
    void (ProjectReader::*read)(const Words &words);
    Scope opens = Scope::FILE; ///< FILE: nothing
};

namespace
{

constexpr std::size_t MANY = 64; ///< words on a line

const char *nameOf(Scope scope)
{
    static constexpr const char *names[] = {"outside of groups", "in a group", "in an event", "in a layer",
                                            "in a parameter"};
    return names[static_cast<int>(scope)];
}

Scope outer(Scope scope)
{
    return scope == Scope::PARAMETER ? Scope::EVENT : static_cast<Scope>(static_cast<int>(scope) - 1);
}

bool standsWithin(Scope inner, Scope scope)
{
    while (inner != scope && inner != Scope::FILE)
        inner = outer(inner);
    return inner == scope;
}

} // namespace

const std::vector<ProjectReader::Keyword> &ProjectReader::keywords()
{
    using Reader = ProjectReader;
    static const std::vector<Keyword> all = {
        {"project", Scope::FILE, 2, 2, "project NAME 1", &Reader::readProject},
        {"category", Scope::FILE, 1, 2, "category PATH VOLUME", &Reader::readCategory},
        {"group", Scope::FILE, 1, 1, "group NAME", &Reader::readGroup, Scope::GROUP},
        {"event", Scope::GROUP, 1, 1, "event NAME", &Reader::readEvent, Scope::EVENT},
        {"category", Scope::EVENT, 1, 1, "category PATH", &Reader::readEventCategory},
        {"caption", Scope::EVENT, 1, 2, "caption \"TEXT\" LEAST-LOUDNESS", &Reader::readCaption},
        {"loudness", Scope::EVENT, 1, 1, "loudness DECIBELS", &Reader::readLoudness},
        {"priority", Scope::EVENT, 1, 1, "priority 0..256", &Reader::readPriority},
        {"voices", Scope::EVENT, 1, 1, "voices COUNT", &Reader::readVoices},
        {"mode", Scope::EVENT, 1, 1, "mode once or mode loop", &Reader::readMode},
        {"fade", Scope::EVENT, 2, 2, "fade SECONDS-IN SECONDS-OUT", &Reader::readFade},
        {"layer", Scope::EVENT, 1, 1, "layer NAME", &Reader::readLayer, Scope::LAYER},
        {"parameter", Scope::EVENT, 3, 4, "parameter NAME LEAST MOST START", &Reader::readParameter, Scope::PARAMETER},
        {"music", Scope::EVENT, 1, 2, "music BEATS-A-MINUTE BEATS-A-BAR", &Reader::readMusic},
        {"segment", Scope::EVENT, 2, 4, "segment NAME FILE, then next NAME or layer TENSION", &Reader::readSegment},
        {"sample", Scope::LAYER, 1, 2, "sample FILE WEIGHT", &Reader::readSample},
        {"volume", Scope::LAYER, 1, 2, "volume GAIN SPREAD", &Reader::readLayerVolume},
        {"pitch", Scope::LAYER, 1, 2, "pitch SEMITONES SPREAD", &Reader::readLayerPitch},
        {"delay", Scope::LAYER, 1, 2, "delay SECONDS SPREAD", &Reader::readDelay},
        {"stream", Scope::LAYER, 0, 0, "stream", &Reader::readStream},
        {"volume", Scope::PARAMETER, 1, MANY, "volume VALUE:GAIN ...", &Reader::readCurve},
        {"lowpass", Scope::PARAMETER, 1, MANY, "lowpass VALUE:HZ ...", &Reader::readCurve},
        {"reverb", Scope::PARAMETER, 1, MANY, "reverb VALUE:SEND ...", &Reader::readCurve},
        {"pitch", Scope::PARAMETER, 1, MANY, "pitch VALUE:SEMITONES ...", &Reader::readCurve}};
    return all;
}

const ProjectReader::Keyword *ProjectReader::find(const std::string &word, Scope in)
{
    for (;; in = outer(in))
    {
        for (const Keyword &keyword : keywords())
            if (keyword.scope == in && word == keyword.word)
                return &keyword;
        if (in == Scope::FILE)
            return nullptr;
    }
}

void ProjectReader::skipBelow(const Keyword &keyword)
{
    skipping = keyword.opens != Scope::FILE;
    skipped = keyword.opens;
}

void ProjectReader::refuse(const std::string &word)
{
    Words known;
    for (const Keyword &keyword : keywords())
    {
        if (word == keyword.word)
        {
            skipBelow(keyword);
            throw LineError{"'" + word + "' stands only " + nameOf(keyword.scope)};
        }
        if (standsWithin(scope, keyword.scope))
            known.emplace_back(keyword.word);
    }
    const std::string meant = nearestWord(word, known);
    for (const Keyword &keyword : keywords())
        if (meant == keyword.word && standsWithin(scope, keyword.scope))
            skipBelow(keyword);
    std::string list;
    for (const std::string &each : known)
        list += (list.empty() ? "" : ", ") + each;
    throw LineError{"no '" + word + "' " + nameOf(scope) +
                    (meant.empty() ? "; expected one of " + list : "; did you mean '" + meant + "'?")};
}

void ProjectReader::checkCount(const Words &words, const Keyword &keyword)
{
    if (words.size() - 1 < keyword.least || words.size() - 1 > keyword.most)
        throw LineError{std::string("expected '") + keyword.form + "'"};
}

void ProjectReader::take(const Words &words, int number)
{
    line = number;
    if (skipping)
    {
        const Keyword *skippable = find(words.front(), skipped);
        if (!skippable || standsWithin(skippable->scope, skipped))
            return;
        skipping = false;
    }
    const Keyword *keyword = find(words.front(), scope);
    if (!keyword)
        refuse(words.front());
    scope = keyword->scope;
    try
    {
        checkCount(words, *keyword);
        (this->*keyword->read)(words);
    }
    catch (const LineError &error)
    {
        skipBelow(*keyword);
        throw LineError{"'" + words.front() + "': " + error.text};
    }
    if (keyword->opens != Scope::FILE)
        scope = keyword->opens;
}

void ProjectReader::problem(const std::string &file, int where, const std::string &text)
{
    data.problems.push_back(file + ":" + std::to_string(where) + ": " + text);
}

void ProjectReader::resolveLayers(const std::string &file)
{
    for (const LayerCurve &open : layerCurves)
    {
        EventData &owner = data.groups[open.group].events[open.event];
        CurveData &curve = owner.parameters[open.parameter].curves[open.curve];
        Words known;
        for (std::size_t i = 0; i < owner.layers.size(); ++i)
        {
            known.push_back(owner.layers[i].name);
            if (owner.layers[i].name == open.layer)
                curve.layer = static_cast<int>(i);
        }
        if (curve.layer >= 0)
            continue;
        curve.curve.points.clear();
        problem(file, open.line,
                "event '" + owner.name + "' has no layer '" + open.layer + "'" + suggestion(open.layer, known));
    }
}

void ProjectReader::checkEvent(const EventData &checked, const std::string &file)
{
    const std::string name = "event '" + checked.name + "' ";
    const auto &segments = checked.music.segments;
    if (checked.music.beatsPerMinute == 0 && checked.layers.empty())
        problem(file, checked.line, name + "has no layer and stays silent; expected 'layer NAME'");
    if (checked.music.beatsPerMinute > 0 && !checked.layers.empty())
        problem(file, checked.line, name + "is music: its layers are left out; expected segments alone");
    if (checked.music.beatsPerMinute > 0 &&
        std::all_of(segments.begin(), segments.end(), [](const SegmentData &each) { return each.isLayer; }))
        problem(file, checked.line, name + "has no segment to begin with; expected 'segment NAME FILE next NAME'");
    Words known;
    for (const SegmentData &segment : segments)
        if (!segment.isLayer)
            known.push_back(segment.name);
    for (const SegmentData &segment : segments)
        if (!segment.next.empty() && std::find(known.begin(), known.end(), segment.next) == known.end())
            problem(file, segment.line,
                    name + "has no segment '" + segment.next + "' to go on with" + suggestion(segment.next, known));
}

ProjectData ProjectReader::finish(const std::string &file)
{
    resolveLayers(file);
    for (const GroupData &each : data.groups)
        for (const EventData &owned : each.events)
            checkEvent(owned, file);
    for (GroupData &each : data.groups)
        for (EventData &owned : each.events)
            for (ParameterData &moved : owned.parameters)
                std::erase_if(moved.curves, [](const CurveData &curve) { return curve.curve.points.empty(); });
    if (data.name.empty())
        problem(file, 1, "the project has no name; expected 'project NAME 1' before all else");
    return std::move(data);
}

} // namespace port
