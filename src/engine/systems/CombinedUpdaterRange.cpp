#include "engine/systems/CombinedUpdaterRange.h"

const Updater &UpdaterIterator::operator*() const
{
    updateValueCache();
    return *current[currentIndex];
}

UpdaterIterator &UpdaterIterator::operator++()
{
    updateValueCache();
    ++current[currentIndex];
    currentIndex = -1;
    return *this;
}

int UpdaterIterator::index() const
{
    updateValueCache();
    return currentIndex;
}

void UpdaterIterator::updateValueCache() const
{
    if (currentIndex >= 0)
        return;
    const Updater *best = nullptr;
    for (std::size_t i = 0; i < current.size(); ++i)
    {
        if (current[i] == range->ends[i])
            continue;
        const Updater &candidate = *current[i];
        if (best && !(candidate < *best))
            continue;
        best = &candidate;
        currentIndex = static_cast<int>(i);
    }
}

CombinedUpdaterRange::CombinedUpdaterRange(const IteratorList &begins, const IteratorList &ends)
{
    assign(begins, ends);
}

void CombinedUpdaterRange::assign(const IteratorList &newBegins, const IteratorList &newEnds)
{
    begins = newBegins;
    ends = newEnds;
    begin2.range = end2.range = this;
    begin2.current = begins;
    end2.current = ends;
    begin2.currentIndex = end2.currentIndex = -1;
}
