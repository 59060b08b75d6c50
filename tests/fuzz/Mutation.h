// Mutation: files that are nearly right, made from right ones by chance.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

typedef std::vector<unsigned char> Bytes;

/// Damages a file in one to six ways: bits, bytes and words of it, its length, the order of its blocks.
///
/// The same numbers give the same damage. What a header holds is hit more often than the rest.
class Mutation
{
public:
    Mutation(std::uint64_t seed, std::uint64_t round) : chance(seed * 0x9E3779B97F4A7C15u + round) {}

    Bytes operator()(const Bytes &original)
    {
        Bytes bytes = original;
        for (std::size_t left = 1 + below(6); left > 0 && !bytes.empty(); --left)
            damage(bytes);
        return bytes;
    }

private:
    std::size_t below(std::size_t limit) { return limit ? static_cast<std::size_t>(chance() % limit) : 0; }

    std::size_t place(const Bytes &bytes)
    {
        const std::size_t header = std::min<std::size_t>(bytes.size(), 160);
        return below(4) ? below(header) : below(bytes.size());
    }

    void damage(Bytes &bytes)
    {
        static constexpr unsigned char edges[] = {0, 1, 127, 128, 255};
        switch (below(6))
        {
        case 0:
            bytes[place(bytes)] ^= static_cast<unsigned char>(1u << below(8));
            break;
        case 1:
            bytes[place(bytes)] = edges[below(std::size(edges))];
            break;
        case 2:
            bytes.resize(below(bytes.size() + 1));
            break;
        case 3:
            moveBlock(bytes);
            break;
        default:
            setWord(bytes);
        }
    }

    /// Puts a number in place that readers tend to stumble over.
    void setWord(Bytes &bytes)
    {
        static constexpr std::uint32_t edges[] = {
            0,          1,          3,          0xFF,       0x100,      0x7FFF,     0xFFFF,     0x10000,
            0x01000000, 0x12492493, 0x40000001, 0x55555556, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
        std::uint32_t word = edges[below(std::size(edges))];
        if (below(4) == 0)
            word = static_cast<std::uint32_t>(bytes.size() + below(9) - 4);
        if (below(3) == 0)
            std::reverse(reinterpret_cast<unsigned char *>(&word), reinterpret_cast<unsigned char *>(&word + 1));
        const std::size_t at = place(bytes) & ~std::size_t(below(2) ? 3 : 0);
        std::memcpy(&bytes[at], &word, std::min(sizeof(word), bytes.size() - at));
    }

    /// Drops or repeats a stretch.
    void moveBlock(Bytes &bytes)
    {
        const std::size_t begin = place(bytes), length = std::min(1 + below(64), bytes.size() - begin);
        const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(begin);
        const Bytes block(first, first + static_cast<std::ptrdiff_t>(length));
        if (below(2))
            bytes.erase(first, first + static_cast<std::ptrdiff_t>(length));
        else
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size())), block.begin(), block.end());
    }

    std::mt19937_64 chance;
};
