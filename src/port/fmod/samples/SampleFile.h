// SampleFile: one sound file, read as 16 bit values through libsndfile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace port
{

/// How much sound a file holds.
struct SampleShape
{
    int rate = 0;     ///< frames a second
    int channels = 0; ///< 1 or 2
    long frames = 0;  ///< 0: nothing that can be played

    double seconds() const { return rate > 0 ? static_cast<double>(frames) / rate : 0; }
};

/// An open file. Reads front to back; what is beyond 16 bits is clipped.
class SampleFile
{
public:
    /// @param path  a host path
    /// @param why   becomes the reason where nothing can be played from it, as part of a sentence
    SampleFile(const std::string &path, std::string &why);
    ~SampleFile();
    SampleFile(const SampleFile &) = delete;
    SampleFile &operator=(const SampleFile &) = delete;

    bool isOpen() const { return file != nullptr; }
    const SampleShape &getShape() const { return shape; }
    /// It ends before it should.
    bool isCut() const { return cut; }
    /// @return frames read, interleaved as they stand in the file; fewer than asked only at its end
    std::size_t read(std::int16_t *into, std::size_t frames);
    /// Goes to a frame; false where the file cannot.
    bool seek(long frame);

private:
    struct Handle;
    std::unique_ptr<Handle> file;
    SampleShape shape;
    bool cut = false;
    std::vector<float> block; ///< between the library and 16 bits
};

/// Both channels as one.
void mixDown(std::vector<std::int16_t> &stereo);
/// Lets a sound that begins or ends off the middle line rise and fall within a few frames, so that it does not click.
void taperEnds(std::vector<std::int16_t> &samples, const SampleShape &shape);

} // namespace port
