#include "port/fmod/samples/SampleStream.h"

namespace port
{

SampleStream::SampleStream(SampleBank &bank, const std::vector<TrackEntry> &entries, int first, double seconds,
                           bool placed)
    : bank(bank), entries(entries), placed(placed), shape(bank.shapeOf(entries[static_cast<std::size_t>(first)].sample))
{
    open(first);
    if (file && seconds > 0 && !file->seek(static_cast<long>(seconds * shape.rate)))
        advance();
}

void SampleStream::open(int index)
{
    entry = -1;
    if (index < 0)
        return;
    const int sample = entries[static_cast<std::size_t>(index)].sample;
    std::string why;
    if (bank.shapeOf(sample).frames > 0)
        file = std::make_unique<SampleFile>(bank.pathOf(sample), why);
    if (!file || !file->isOpen())
        return;
    if (file->getShape().rate != shape.rate || file->getShape().channels != shape.channels)
    {
        bank.tell(sample, "has another rate or number of channels than the segments before it and ends them.");
        return;
    }
    entry = index;
    yielded = false;
}

void SampleStream::advance()
{
    const int next = entries[static_cast<std::size_t>(entry)].next;
    if (next == entry && yielded && file->seek(0))
    {
        yielded = false;
        return;
    }
    // An entry that gave nothing and follows itself would be read without end.
    open(next == entry ? -1 : next);
}

void SampleStream::read(std::vector<std::int16_t> &values, std::size_t frames)
{
    const bool mixing = placed && shape.channels == 2;
    const auto channels = static_cast<std::size_t>(shape.channels);
    std::vector<std::int16_t> &into = mixing ? stereo : values;
    into.resize(frames * channels);
    std::size_t done = 0;
    while (done < frames && entry >= 0)
    {
        const std::size_t count = file->read(into.data() + done * channels, frames - done);
        done += count;
        yielded = yielded || count > 0;
        if (done < frames)
            advance();
    }
    into.resize(done * channels);
    if (!mixing)
        return;
    values = stereo;
    mixDown(values);
}

} // namespace port
