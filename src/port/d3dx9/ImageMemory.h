// ImageMemory: the image library's blocks, so that nothing is lost where it stops half way.
#pragma once

#include <cstddef>

namespace port
{

void *allocateImageBlock(std::size_t bytes);
void *reallocateImageBlock(void *block, std::size_t bytes);
void freeImageBlock(void *block);

/// Frees at its end what the image library still holds in this thread.
///
/// The library asserts on some damaged files. Here that is an ImageError, which leaves it without any tidying up.
class ImageMemory
{
public:
    ImageMemory() = default;
    ~ImageMemory();
    ImageMemory(const ImageMemory &) = delete;
    ImageMemory &operator=(const ImageMemory &) = delete;
};

} // namespace port
