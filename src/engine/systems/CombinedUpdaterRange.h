// CombinedUpdaterRange: several sorted sets of updaters walked as one.
#pragma once

#include "engine/systems/Updater.h"

#include <cstddef>
#include <vector>

class CombinedUpdaterRange;

/// Place in a combined walk: one iterator for each set, and which of them is next.
class UpdaterIterator
{
public:
    using IteratorList = std::vector<UpdaterSet::const_iterator>;

    /// The updater at this place.
    const Updater &operator*() const;
    const Updater *operator->() const { return &**this; }
    /// Goes on to the next updater of the walk.
    UpdaterIterator &operator++();
    bool operator==(const UpdaterIterator &rhs) const { return current == rhs.current; }
    bool operator!=(const UpdaterIterator &rhs) const { return !(*this == rhs); }

    /// Which of the sets the updater at this place comes from; -1 at the end.
    int index() const;

private:
    friend class CombinedUpdaterRange;

    void updateValueCache() const;

    const CombinedUpdaterRange *range = nullptr;
    IteratorList current;
    mutable int currentIndex = -1; ///< -1 while unknown
};

/// Several sorted sets of updaters walked in one ascending order of priority.
///
/// Ties go to the set that stands first. The sets are read live: an updater inserted during the walk is seen if it
/// sorts behind the present place.
class CombinedUpdaterRange
{
public:
    using IteratorList = UpdaterIterator::IteratorList;

    CombinedUpdaterRange() = default;
    /// The walk over the sets whose beginnings and ends these are, in order of precedence.
    CombinedUpdaterRange(const IteratorList &begins, const IteratorList &ends);
    CombinedUpdaterRange(const CombinedUpdaterRange &) = delete;
    CombinedUpdaterRange &operator=(const CombinedUpdaterRange &) = delete;

    /// Starts over with other sets; allocates only when there are more of them than ever before.
    void assign(const IteratorList &begins, const IteratorList &ends);

    UpdaterIterator &begin() { return begin2; }
    const UpdaterIterator &end() const { return end2; }

private:
    friend class UpdaterIterator;

    IteratorList begins;
    IteratorList ends;
    UpdaterIterator begin2;
    UpdaterIterator end2;
};
