// BarPictures: image files that are shown on bars, kept as textures.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>

struct IDirect3DDevice9;
struct IDirect3DTexture9;

namespace port
{

/// Reads files as they are first shown, a few in a frame, and lets go of those that were longest out of view.
///
/// A file that has changed is read anew within a second or two. What cannot be read is tried again then, too.
class BarPictures
{
public:
    /// Begins a frame on a device, which lives until `release`.
    void beginFrame(IDirect3DDevice9 *device);
    /// The texture's name in the graphics library; 0 where it is not there yet or cannot be read.
    /// @param file  a designed path; empty for none
    unsigned find(const char *file);
    /// Lets go of all textures.
    void release();

private:
    struct Picture
    {
        IDirect3DTexture9 *texture = nullptr;
        std::filesystem::file_time_type written{};
        std::uint64_t lastSeen = 0; ///< frames
        std::uint64_t nextLook = 0; ///< frame in which the file is looked at again
    };

    void bringUpToDate(Picture &picture, const std::string &file);
    void dropOldest();

    std::unordered_map<std::string, Picture> pictures;
    IDirect3DDevice9 *device = nullptr;
    std::uint64_t frame = 0;
    int readsLeft = 0; ///< in this frame
};

} // namespace port
