// Prefetch: asks for memory before it is used.
#pragma once

#include <cstddef>

/// Starts loading an object that a walk will come to: crowds do not fit into the caches near the processor, and their
/// objects lie too far apart for it to guess the next one. Null is ignored.
inline void prefetch(const void *object, std::size_t size)
{
    constexpr std::size_t line = 64; // bytes that are loaded at once
    if (!object)
        return;
    for (std::size_t offset = 0; offset < size; offset += line)
        __builtin_prefetch(static_cast<const char *>(object) + offset);
}
