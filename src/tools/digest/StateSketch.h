// StateSketch: a few numbers that tell whether two states are equal, and where they differ if that is one place.
#pragma once

#include <array>
#include <cstdint>

/// Sums over the values of a state, each times a key, modulo a prime.
///
/// Each value has three keys: its own, that of its entity and that of its field's name. The sums of two states differ by
/// what changed alone: where one value did, or only values of one entity or of one field, the difference of that sum
/// divided by that of the plain sum is the key of the place. Order plays no part.
class StateSketch
{
public:
    /// Largest prime below 2^24: a sum takes three bytes.
    static constexpr std::uint64_t PRIME = 16777213;
    static constexpr std::size_t SUMS = 4;
    static constexpr std::size_t BYTES = 3 * SUMS;

    /// Where a value stands.
    struct Keys
    {
        std::uint32_t value = 0;  ///< of this field of this object
        std::uint32_t entity = 0; ///< of the entity around the object
        std::uint32_t field = 0;  ///< of the field in all objects
    };

    /// A number below the prime for a hash; never 0, by which nothing could be divided.
    static std::uint32_t keyOf(std::uint64_t hash) { return static_cast<std::uint32_t>(hash % (PRIME - 1)) + 1; }

    void add(const Keys &keys, std::uint64_t hash)
    {
        const std::uint64_t value = keyOf(hash);
        sums[0] += value;
        sums[1] += value * keys.value;
        sums[2] += value * keys.entity;
        sums[3] += value * keys.field;
        if (++added % ADDED_AT_MOST == 0)
            reduce();
    }

    /// The sums, three bytes each, lowest first.
    std::array<unsigned char, BYTES> getBytes()
    {
        reduce();
        std::array<unsigned char, BYTES> bytes;
        for (std::size_t i = 0; i < BYTES; ++i)
            bytes[i] = static_cast<unsigned char>(sums[i / 3] >> (8 * (i % 3)));
        return bytes;
    }

private:
    /// Products of two numbers below 2^24 that a 64-bit sum holds for certain.
    static constexpr std::uint64_t ADDED_AT_MOST = 1 << 15;

    void reduce()
    {
        for (std::uint64_t &sum : sums)
            sum %= PRIME;
    }

    std::array<std::uint64_t, SUMS> sums{};
    std::uint64_t added = 0;
};
