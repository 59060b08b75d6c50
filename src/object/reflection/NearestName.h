// NearestName: finds what a misspelt name probably meant.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>

/// Collects candidates for a name that was not found and keeps the most similar one.
///
/// Letters of either case count as equal; of equally similar candidates the first in the alphabet wins, whatever their
/// order. A candidate that differs in more than about a third of its letters is not offered.
class NearestName
{
public:
    explicit NearestName(String wanted);

    void consider(const String &candidate);

    /// The best candidate so far; empty if none is similar.
    const String &get() const { return best; }
    /// "; did you mean 'position'?", or nothing if no candidate is similar.
    String hint() const;

private:
    std::size_t distanceTo(const String &candidate) const;

    String wanted;
    String best;
    std::size_t bestDistance; ///< letters; a candidate must differ in no more
};
