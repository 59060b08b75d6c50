// BarMemory: what a developer's bars keep between runs.
#pragma once

#include "foundation/KVString.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Where bars stand, and what is watched, in a text file of the user's; a run without a file keeps nothing.
///
/// A file that is damaged gives what can be read of it. One that cannot be written is told once.
class BarMemory
{
public:
    using Place = std::array<int, 4>; ///< left, top, width, height in pixels

    /// A property that is watched: the object's path, and the property's name.
    struct Watch
    {
        std::string path;
        std::string property;
        bool operator==(const Watch &) const = default;
    };

    /// Reads a file, and keeps everything there from now on; an empty name keeps nothing.
    void setFile(const String &name);

    /// Where the bar of a key stood; nothing for one that is not known.
    std::optional<Place> placeOf(const std::string &key) const;
    /// Notes where a bar stands, to be written by `write`; nothing for one that was not drawn yet.
    void notePlace(const std::string &key, const Place &place);
    const std::vector<Watch> &getWatches() const { return watches; }
    void setWatches(std::vector<Watch> val);
    /// Writes what has changed since the last time.
    void write();

private:
    void readLine(const std::string &line);

    String file;
    std::vector<std::pair<std::string, Place>> places; ///< the one noted last comes last
    std::vector<Watch> watches;
    bool isChanged = false;
};
