#include "port/fmod/project/ProjectParser.h"

#include <gtest/gtest.h>

namespace
{

using port::parseProject;
using port::ProjectData;

const std::string HEAD = "project kaVel 1\ncategory sfx 0.9\ncategory sfx/doors 0.5\ngroup sfx\n";

ProjectData parse(const std::string &text)
{
    return parseProject(text, "kaVel.fev");
}

const port::EventData &onlyEvent(const ProjectData &data)
{
    return data.groups.at(0).events.at(0);
}

std::string joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    return text;
}

} // namespace

TEST(SoundProject, EveryKindOfLineIsRead)
{
    const ProjectData data = parse("\xEF\xBB\xBF" + HEAD + R"(event DoorOpen # creaks
    category sfx/doors
    caption "A door creaks" 0.05
    loudness -20
    priority 100
    voices 4
    mode loop
    fade 0.02 0.3
    layer creak
        sample doors\creak_1.ogg 2
        sample "doors/creak 2.ogg"
        volume 0.8 0.1
        pitch 0 1.5
        delay 0 0.2
        stream
    layer dirt
        sample doors/dirt.ogg
    parameter distance 0 40
        volume 0:1 2:0.8 40:0
        lowpass 0:22000 40:4000
        reverb 0:0.2 40:0.8
    parameter speed 0 2 0.5
        pitch 0:0 1:3
        volume creak 0:0 0.5:1
group music
event Dread
    music 92 3
    segment calm music/calm.ogg next calm
    segment low music/low.ogg layer 0.3
    parameter tension 0 1
)");
    EXPECT_EQ(joined(data.problems), "");
    EXPECT_EQ(data.name, "kaVel");
    EXPECT_EQ(data.categories.at(1).volume, 0.5F);
    const port::EventData &door = onlyEvent(data);
    EXPECT_EQ(door.caption, "A door creaks");
    EXPECT_EQ(door.leastCaption, 0.05F);
    EXPECT_EQ(door.loudness, -20);
    EXPECT_TRUE(door.loop);
    EXPECT_EQ(door.fadeOut, 0.3F);
    EXPECT_EQ(door.layers.at(0).samples.at(0).path, "doors/creak_1.ogg");
    EXPECT_EQ(door.layers.at(0).samples.at(0).weight, 2);
    EXPECT_EQ(door.layers.at(0).samples.at(1).path, "doors/creak 2.ogg");
    EXPECT_EQ(door.layers.at(0).pitch.spread, 1.5F);
    EXPECT_TRUE(door.layers.at(0).stream);
    EXPECT_FLOAT_EQ(door.parameters.at(0).curves.at(0).curve.at(21), 0.4F);
    EXPECT_EQ(door.parameters.at(1).start, 0.5F);
    EXPECT_EQ(door.parameters.at(1).curves.at(1).layer, 0);
    const port::MusicData &music = data.groups.at(1).events.at(0).music;
    EXPECT_EQ(music.beatsPerBar, 3);
    EXPECT_EQ(music.segments.at(0).next, "calm");
    EXPECT_TRUE(music.segments.at(1).isLayer);
}

TEST(SoundProject, AWrongLineIsNamedWithItsPlaceAndWhatWasExpected)
{
    const struct
    {
        const char *text;
        const char *problem; ///< what its one text holds
    } cases[] = {
        {"event A\nlayer a\nsmaple x.ogg\nsample y.ogg\n", ":7: no 'smaple' in a layer; did you mean 'sample'?"},
        {"event A\nlayer a\nsample x.ogg\nwobble 3\n", "expected one of project, category, group, event,"},
        {"event A\nlayer a\nsample x.ogg\nfade 1\n", ":8: 'fade': expected 'fade SECONDS-IN SECONDS-OUT'"},
        {"event A\nlayer a\nsample x.ogg\nfade 1 nan\n", "'nan' is no number"},
        {"event A\nlayer a\nsample x.ogg\nfade 1 1e9\n", "1e9 is not in 0..600"},
        {"event A\nlayer a\nsample x.ogg\nvoices 1.5\n", "1.5 is no whole number"},
        {"event A\nlayer a\nsample x.ogg\nmode lop\n", "expected 'once' or 'loop'; did you mean 'loop'?"},
        {"event A\nlayer a\nsample x.ogg\ncategory sfx/dors\n", "did you mean 'sfx/doors'?"},
        {"event A\nlayer a\nsample x.ogg\ncaption \"open\n", "a quote is not closed"},
        {"event A\nlayer a\nsample ../../x.ogg\nsample y.ogg\n", "is no path below the project's folder"},
        {"event A\nlayer a\nsample x.ogg\nparameter d 5 5\nvolume 0:1\n", "the range is empty"},
        {"event A\nlayer a\nsample x.ogg\nparameter d 0 5\nvolume 0:1 0:2\n", "does not lie behind the point before"},
        {"event A\nlayer a\nsample x.ogg\nparameter d 0 5\nvolume 1 2\n", "'2' is no point; expected VALUE:RESULT"},
        {"event A\nlayer a\nsample x.ogg\nparameter d 0 5\nvolume b 1:1\n", ":9: event 'A' has no layer 'b'"},
        {"event A\nsample x.ogg\nlayer a\nsample x.ogg\n", ":6: 'sample' stands only in a layer"},
        {"event A\nlayer a\nsample x.ogg\nevent A\nlayer b\nsample y.ogg\n", ":8: 'event': there is a 'A' already"},
        {"event A\n", ":5: event 'A' has no layer and stays silent"},
        {"event A\nlayer a\nsample x.ogg\nsegment s x.ogg\n", "segments stand below 'music"},
        {"event A\nmusic 90\nsegment one x.ogg next twoo\nsegment two y.ogg\n", "'twoo' to go on with; did you mean"},
        {"event A\nmusic 90\nsegment one x.ogg layer 0.5\n", "has no segment to begin with"},
        {"event A\nlayer a\nsample x.ogg\n\x01\x02\x03\n", ":8: this is not text"},
    };
    for (const auto &each : cases)
    {
        const ProjectData data = parse(HEAD + each.text);
        EXPECT_EQ(data.problems.size(), 1u) << each.text << joined(data.problems);
        EXPECT_NE(joined(data.problems).find(each.problem), std::string::npos) << joined(data.problems);
        EXPECT_EQ(joined(data.problems).find("kaVel.fev:"), 0u);
        ASSERT_EQ(data.groups.at(0).events.size(), 1u) << each.text;
    }
}

TEST(SoundProject, BelowALineThatOpensSomethingAndIsWrongNothingIsTakenForItsNeighbour)
{
    const ProjectData data = parse(HEAD + "event A\nlayer a\nsample x.ogg\nevnet B\nlayer a\nsample y.ogg\nvoices 3\n"
                                          "event C\nlayer a\nsample z.ogg\nparamter d 0 1\nvolume 0:0\npriority 7\n");
    EXPECT_EQ(data.problems.size(), 2u) << joined(data.problems);
    ASSERT_EQ(data.groups.at(0).events.size(), 2u);
    EXPECT_EQ(onlyEvent(data).layers.at(0).samples.size(), 1u);
    EXPECT_NE(onlyEvent(data).voices, 3);
    EXPECT_EQ(data.groups.at(0).events.at(1).priority, 7);
}

TEST(SoundProject, AProjectWithoutSenseIsToldInFewLines)
{
    EXPECT_EQ(parse("").problems.size(), 1u);
    std::string noise;
    for (int i = 0; i < 200000; ++i)
        noise += static_cast<char>('!' + i * 31 % 90) + std::string(i % 7 == 0 ? "\n" : " ");
    EXPECT_LE(parse(noise).problems.size(), 60u);
    EXPECT_EQ(parse(HEAD + "event " + std::string(100000, 'x')).problems.size(), 1u);
}

TEST(SoundProject, MoreEventsThanThereIsRoomForAreLeftOut)
{
    std::string text = HEAD;
    for (int i = 0; i < 5000; ++i)
        text += "event E" + std::to_string(i) + "\nlayer a\nsample x.ogg\n";
    const ProjectData data = parse(text);
    EXPECT_EQ(data.groups.at(0).events.size(), 4096u);
    EXPECT_NE(data.problems.at(0).find("more than 4096 events"), std::string::npos);
}
