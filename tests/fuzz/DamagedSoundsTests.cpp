#include "fuzz/DamageAll.h"
#include "support/TemporaryFile.h"

#include "port/fmod/project/ProjectParser.h"
#include "port/fmod/samples/SampleFile.h"

#include <cmath>
#include <sndfile.h>

namespace
{

constexpr std::size_t mostProblems = 80; ///< that a project without sense is told in
constexpr int soundFrames = 4000;

Bytes bytesOf(const TemporaryFile &file)
{
    const std::vector<char> bytes = file.read();
    return {bytes.begin(), bytes.end()};
}

Bytes soundFile(int format, int channels)
{
    const TemporaryFile file("fuzz.sound");
    SF_INFO info = {};
    info.samplerate = 44100;
    info.channels = channels;
    info.format = format;
    SNDFILE *sound = sf_open(file.path.c_str(), SFM_WRITE, &info);
    std::vector<float> values;
    for (int i = 0; i < soundFrames * channels; ++i)
        values.push_back(std::sin(static_cast<float>(i * i) * 0.0001F));
    sf_writef_float(sound, values.data(), soundFrames);
    sf_close(sound);
    return bytesOf(file);
}

Bytes projectText()
{
    const std::string text = R"(project kaVel 1
category sfx 0.9
group sfx
event DoorOpen
    category sfx
    caption "A door creaks" 0.05
    mode loop
    fade 0.02 0.3
    layer creak
        sample doors/creak_1.ogg 2
        pitch 0 1.5
        stream
    parameter distance 0 40
        volume creak 0:1 2:0.8 40:0
        lowpass 0:22000 40:4000
event Dread
    music 92 4
    segment calm music/calm.ogg next calm
    segment low music/low.ogg layer 0.3
)";
    return {text.begin(), text.end()};
}

} // namespace

TEST(DamagedSounds, SamplesAreReadAsFarAsTheyGoOrSayWhyNot)
{
    const std::vector<Sample> samples = {{"Ogg", soundFile(SF_FORMAT_OGG | SF_FORMAT_VORBIS, 2)},
                                         {"WAV", soundFile(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1)}};
    const TemporaryFile file("fuzz.sound");
    damageAll(samples,
              [&](const Bytes &bytes)
              {
                  std::filesystem::remove(file.path);
                  file.write(std::vector<char>(bytes.begin(), bytes.end()));
                  std::string why;
                  port::SampleFile sound(file.path.string(), why);
                  EXPECT_NE(sound.isOpen(), !why.empty());
                  if (!sound.isOpen())
                      return false;
                  const port::SampleShape &shape = sound.getShape();
                  EXPECT_TRUE(shape.frames > 0 && (shape.channels == 1 || shape.channels == 2) && shape.rate >= 8000);
                  std::vector<std::int16_t> values(std::size_t(1 << 14) * 2);
                  std::size_t count = 1, all = 0;
                  for (; count > 0 && all <= bytes.size() * 64; all += count)
                      count = sound.read(values.data(), 1 << 14);
                  EXPECT_LE(all, bytes.size() * 64) << "more sound than such a file can hold";
                  return true;
              });
}

TEST(DamagedSounds, ProjectsAreReadAsFarAsTheyMakeSense)
{
    damageAll({{"sound project", projectText()}},
              [](const Bytes &bytes)
              {
                  const std::string text(bytes.begin(), bytes.end());
                  const port::ProjectData data = port::parseProject(text, "fuzz.fev");
                  EXPECT_LE(data.problems.size(), mostProblems);
                  for (const port::GroupData &group : data.groups)
                      for (const port::EventData &event : group.events)
                          for (const port::ParameterData &parameter : event.parameters)
                          {
                              EXPECT_LT(parameter.least, parameter.most);
                              for (const port::CurveData &curve : parameter.curves)
                                  EXPECT_TRUE(std::isfinite(curve.curve.at(parameter.start)));
                          }
                  return data.problems.empty();
              });
}
