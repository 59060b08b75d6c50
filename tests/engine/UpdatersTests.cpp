#include "engine/systems/CombinedUpdaterRange.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
UpdaterSet setOf(std::initializer_list<std::pair<const char *, int>> steps)
{
    UpdaterSet set;
    for (const auto &[name, priority] : steps)
        set.insert(Updater(SCS(name), ReflectorPtr(), priority));
    return set;
}

std::vector<std::string> walk(const std::vector<const UpdaterSet *> &sets)
{
    UpdaterIterator::IteratorList begins, ends;
    for (const UpdaterSet *set : sets)
    {
        begins.push_back(set->begin());
        ends.push_back(set->end());
    }
    CombinedUpdaterRange range(begins, ends);
    std::vector<std::string> names;
    for (UpdaterIterator &it = range.begin(); it != range.end(); ++it)
        names.push_back(it->updaterName.toCString() + std::string("@") + std::to_string(it.index()));
    return names;
}
} // namespace

TEST(CombinedUpdaterRange, MergesByPriorityAndGivesTiesToTheFirstSet)
{
    const UpdaterSet systems = setOf({{"cursor", 50}, {"present", 900}});
    const UpdaterSet level = setOf({{"player", 200}, {"physics", 300}, {"draw", 900}});
    const UpdaterSet overlay = setOf({{"menu", 200}});
    EXPECT_THAT(walk({&systems, &level, &overlay}),
                ElementsAre("cursor@0", "player@1", "menu@2", "physics@1", "present@0", "draw@1"));
}

TEST(CombinedUpdaterRange, EqualPrioritiesOfOneSetKeepTheirInsertion)
{
    const UpdaterSet level = setOf({{"first", 5}, {"early", 1}, {"second", 5}, {"third", 5}});
    EXPECT_THAT(walk({&level}), ElementsAre("early@0", "first@0", "second@0", "third@0"));
}

TEST(CombinedUpdaterRange, EmptySetsAndNoSetsHaveNothingToWalk)
{
    const UpdaterSet none;
    const UpdaterSet one = setOf({{"only", 1}});
    EXPECT_THAT(walk({}), IsEmpty());
    EXPECT_THAT(walk({&none, &none}), IsEmpty());
    EXPECT_THAT(walk({&none, &one}), ElementsAre("only@1"));
}

TEST(CombinedUpdaterRange, InsertionBehindThePresentPlaceIsSeenAndBeforeItIsNot)
{
    UpdaterSet level = setOf({{"a", 10}, {"c", 30}});
    CombinedUpdaterRange range({level.begin()}, {level.end()});
    std::vector<std::string> names;
    for (UpdaterIterator &it = range.begin(); it != range.end(); ++it)
    {
        names.push_back(it->updaterName.toCString());
        if (names.size() == 1)
        {
            level.insert(Updater(SCS("b"), ReflectorPtr(), 20));
            level.insert(Updater(SCS("late"), ReflectorPtr(), 5));
        }
    }
    EXPECT_THAT(names, ElementsAre("a", "b", "c"));
}
