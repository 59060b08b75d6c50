// W15b, peer: OpenAL Soft alone mixes the 64 nearest of the sounds, their places and gains set in every frame; once as
// they are, once each through a low-pass of its own, as sounds come through a house.
#include "w15_sound_common.h"

#define AL_ALEXT_PROTOTYPES
#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>
#include <AL/efx.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <numeric>

namespace {
double now() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

ALuint lowpass() {
    ALuint filter = 0;
    reinterpret_cast<LPALGENFILTERS>(alGetProcAddress("alGenFilters"))(1, &filter);
    reinterpret_cast<LPALFILTERI>(alGetProcAddress("alFilteri"))(filter, AL_FILTER_TYPE, AL_FILTER_LOWPASS);
    reinterpret_cast<LPALFILTERF>(alGetProcAddress("alFilterf"))(filter, AL_LOWPASS_GAINHF, 0.3f);
    return filter;
}

void mix(benchmark::State &state) {
    const auto open = reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
    const auto render = reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
    ALCdevice *device = open(nullptr);
    const ALCint attributes[] = {ALC_FREQUENCY, bench::SoundHouse::rate, ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT,
                                 ALC_FORMAT_TYPE_SOFT, ALC_SHORT_SOFT, ALC_HRTF_SOFT, ALC_FALSE,
                                 ALC_MONO_SOURCES, bench::SoundHouse::voices, 0};
    ALCcontext *context = alcCreateContext(device, attributes);
    alcMakeContextCurrent(context);
    alDistanceModel(AL_NONE);

    double seconds = 0, rounds = 0, power = 0;
    for (auto _ : state) {
        bench::SoundHouse house;
        const bench::Place ears = bench::SoundHouse::listener(0);
        std::vector<int> nearest(house.walkers.size());
        std::iota(nearest.begin(), nearest.end(), 0);
        const auto distance = [&](int i) { return std::hypot(house.walkers[i].at.x - ears.x, house.walkers[i].at.z - ears.z); };
        std::sort(nearest.begin(), nearest.end(), [&](int a, int b) { return distance(a) < distance(b); });

        const std::vector<std::int16_t> data = bench::SoundHouse::sample();
        ALuint buffer = 0, sources[bench::SoundHouse::voices];
        alGenBuffers(1, &buffer);
        alBufferData(buffer, AL_FORMAT_MONO16, data.data(), ALsizei(data.size() * 2), bench::SoundHouse::rate);
        alGenSources(bench::SoundHouse::voices, sources);
        const ALuint filter = state.range(0) ? lowpass() : AL_FILTER_NULL;
        for (ALuint source : sources) {
            alSourcei(source, AL_BUFFER, ALint(buffer));
            alSourcei(source, AL_LOOPING, AL_TRUE);
            alSourcei(source, AL_DIRECT_FILTER, ALint(filter));
            alSourcePlay(source);
        }
        std::vector<std::int16_t> heard(2 * 735);
        power = 0;
        for (int f = 0; f < bench::SoundHouse::frames; ++f) {
            house.step();
            const bench::Place at = bench::SoundHouse::listener(f);
            const double begin = now();
            alListener3f(AL_POSITION, at.x, 1.6f, -at.z);
            for (int i = 0; i < bench::SoundHouse::voices; ++i) {
                const bench::Place &place = house.walkers[nearest[i]].at;
                alSource3f(sources[i], AL_POSITION, place.x, 1.6f, -place.z);
                alSourcef(sources[i], AL_GAIN, bench::SoundHouse::gain(std::hypot(place.x - at.x, place.z - at.z)));
            }
            render(device, heard.data(), 735);
            seconds += now() - begin;
            for (std::int16_t value : heard) power += double(value) * value;
        }
        rounds += bench::SoundHouse::frames * 735.0 / bench::SoundHouse::rate;
        alDeleteSources(bench::SoundHouse::voices, sources);
        alDeleteBuffers(1, &buffer);
    }
    state.counters["ns_mix"] = seconds / rounds * 1e9;
    state.counters["check"] = 10 * std::log10(power / (bench::SoundHouse::frames * 2 * 735.0) / 32768 / 32768);
    alcMakeContextCurrent(nullptr);
    alcDestroyContext(context);
    alcCloseDevice(device);
}
} // namespace

BENCHMARK(mix)->Name("mix")->ArgName("lowpass")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
