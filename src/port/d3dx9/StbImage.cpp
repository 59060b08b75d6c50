// The one place where the image library's code is compiled; only its formats in use are.
#include "port/d3dx9/ImageFile.h"
#include "port/d3dx9/ImageMemory.h"

#include <cstdlib>
#include <unordered_set>

namespace
{

thread_local std::unordered_set<void *> heldBlocks;

} // namespace

namespace port
{

void *allocateImageBlock(std::size_t bytes)
{
    // Zeroed: the library reads tables of a damaged JPEG file that it never wrote, and indexes by what it finds.
    void *block = std::calloc(1, bytes);
    if (block)
        heldBlocks.insert(block);
    return block;
}

void *reallocateImageBlock(void *block, std::size_t bytes)
{
    heldBlocks.erase(block);
    void *moved = std::realloc(block, bytes);
    if (void *held = moved ? moved : block)
        heldBlocks.insert(held);
    return moved;
}

void freeImageBlock(void *block)
{
    heldBlocks.erase(block);
    std::free(block);
}

ImageMemory::~ImageMemory()
{
    for (void *block : heldBlocks)
        std::free(block);
    heldBlocks.clear();
}

} // namespace port

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_ONLY_TGA
#define STBI_ONLY_JPEG
#define STBI_ONLY_BMP
#define STBI_MALLOC(bytes) port::allocateImageBlock(bytes)
#define STBI_REALLOC(block, bytes) port::reallocateImageBlock(block, bytes)
#define STBI_FREE(block) port::freeImageBlock(block)
#define STBI_ASSERT(condition) ((condition) ? void() : throw port::ImageError("the image is damaged"))
#include <stb/stb_image.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>
#pragma GCC diagnostic pop
