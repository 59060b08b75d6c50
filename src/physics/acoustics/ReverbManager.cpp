#include "physics/acoustics/ReverbManager.h"

#include "physics/acoustics/ReverbVolume.h"

#include "engine/levels/MapRootEntity.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

/// How much of a point each preset of the table has.
class Shares
{
public:
    void add(const ReverbPreset &preset, float share) { shares[&preset - ReverbPreset::all().data()] += share; }
    ReverbShare strongest() const
    {
        const auto first = std::max_element(std::begin(shares), std::end(shares));
        const float *second = nullptr;
        for (const float &share : shares)
            if (&share != first && share > 0.f && (!second || share > *second))
                second = &share;
        const auto presetOf = [&](const float &share) { return &ReverbPreset::all()[&share - shares]; };
        return second ? ReverbShare{presetOf(*first), presetOf(*second), *second / (*first + *second)}
                      : ReverbShare{presetOf(*first), presetOf(*first), 0.f};
    }

private:
    float shares[ReverbPreset::COUNT] = {};
};

/// The next volume of a map behind another one, by content and then by age; null for no more.
ReverbVolume *nextLarger(const SimpleManager::ComponentSet &volumes, const Handle<MapRootEntity> &map,
                         const std::pair<float, Handle<SimpleComponent>> &behind)
{
    ReverbVolume *next = nullptr;
    auto least = std::pair(std::numeric_limits<float>::infinity(), Handle<SimpleComponent>());
    for (const Handle<SimpleComponent> &handle : volumes)
    {
        const auto volume = unchecked_handle_cast<ReverbVolume>(handle).lookup();
        if (!volume || volume->isDying())
            continue;
        const auto place = std::pair(volume->getContent(), handle);
        const auto before = [](const auto &one, const auto &other)
        { return one.first < other.first || (one.first == other.first && one.second < other.second); };
        if (!before(behind, place) || !before(place, least) || volume->getAncestorOfType<MapRootEntity>() != map)
            continue;
        next = volume.ptr;
        least = place;
    }
    return next;
}

} // namespace

ReverbManager::ReverbManager() : surroundings(ReverbPreset::find(SCS("outdoors"))) {}

Handle<AbstractComponent> ReverbManager::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, ReverbVolume::staticType);
}

ReflectorPtr ReverbManager::getComponentClass() const
{
    return ReverbVolume::staticType;
}

ReverbShare ReverbManager::zonesAt(Vec4 point, Handle<MapRootEntity> map)
{
    constexpr float NOTHING_LEFT = 1e-3f;
    Shares shares;
    float left = 1.f;
    if (isFinite(point))
    {
        auto last = std::pair(-1.f, Handle<SimpleComponent>());
        while (left > NOTHING_LEFT)
        {
            ReverbVolume *const volume = nextLarger(getComponents(), map, last);
            if (!volume)
                break;
            const float taken = left * volume->shareAt(point);
            shares.add(volume->getFigures(), taken);
            left -= taken;
            last = std::pair(volume->getContent(), Handle<SimpleComponent>(getHandle(volume)));
        }
    }
    shares.add(*surroundings, left);
    return shares.strongest();
}

String ReverbManager::getSurroundings() const
{
    return String::copyFrom(surroundings->name);
}

void ReverbManager::setSurroundings(String name)
{
    surroundings = ReverbPreset::choose(*this, name, surroundings);
}
