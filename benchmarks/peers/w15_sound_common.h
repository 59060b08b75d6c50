// W15: five hundred sounds that walk about a house of 16 x 16 rooms, and who hears them. The same for engine and peer.
#pragma once
#include "bench_common.h"

#include <algorithm>
#include <vector>

namespace bench {

struct Place { float x, z; };

struct SoundHouse {
    static constexpr int emitters = 500, voices = 64, frames = 600, rate = 44100;
    static constexpr int rooms = 16;        // along x and along z
    static constexpr float room = 8;        // 16 cells of 0.5 m
    static constexpr float side = rooms * room;
    static constexpr float ears = 1.6f;     // metres above the floor
    static constexpr float frame = 1.0f / 60;

    struct Walker { Place at; float heading; };
    std::vector<Walker> walkers;
    Rng rng{15};

    SoundHouse() {
        for (int i = 0; i < emitters; ++i)
            walkers.push_back({{rng.range(-side / 2 + 1, side / 2 - 1), rng.range(-side / 2 + 1, side / 2 - 1)},
                               rng.range(0, 6.2831853f)});
    }
    // Every walker goes a frame's part of 1 m/s, and bends a little as it likes.
    void step() {
        for (Walker &w : walkers) {
            w.heading += rng.range(-0.1f, 0.1f);
            w.at.x += std::sin(w.heading) * frame;
            w.at.z += std::cos(w.heading) * frame;
            const float edge = side / 2 - 1;
            if (std::fabs(w.at.x) > edge || std::fabs(w.at.z) > edge) w.heading += 3.1415927f;
            w.at.x = std::clamp(w.at.x, -edge, edge);
            w.at.z = std::clamp(w.at.z, -edge, edge);
        }
    }
    // The listener goes round a circle of 20 m at 1.4 m/s.
    static Place listener(int number) {
        const float angle = 1.4f / 20 * frame * float(number);
        return {20 * std::sin(angle), 20 * std::cos(angle)};
    }
    // Loudness by distance, as the events' curve has it.
    static float gain(float distance) { return std::max(0.0f, 1 - distance / 60); }
    // A second of noise, 16 bit, that loops.
    static std::vector<std::int16_t> sample() {
        Rng noise(16);
        std::vector<std::int16_t> values(rate);
        for (std::int16_t &value : values) value = std::int16_t(noise.range(-2000, 2000));
        return values;
    }
};

} // namespace bench
