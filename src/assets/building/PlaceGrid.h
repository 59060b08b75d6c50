// PlaceGrid: finds what was put at nearly the same place before.
#pragma once

#include "assets/models/MeshVectors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

/// Numbers in a hashed grid of places, mesh space, metres.
///
/// A place that is no number is never found again.
class PlaceGrid
{
public:
    typedef std::uint32_t Number;
    static constexpr Number none = ~Number(0);

    /// @param tolerance  greatest difference on each axis between places that count as one
    explicit PlaceGrid(float tolerance) : pitch(std::fmax(2.0 * tolerance, finestPitch)) {}

    /// The number put in first within the tolerance of a place that `accepts` says yes to; `none` without one.
    template <class Accepts>
    Number find(const MeshVector3 &place, Accepts accepts) const
    {
        // A cell is twice as wide as the tolerance, so what is near lies in this cell or its neighbour on one side.
        const double scaled[] = {place.x / pitch, place.y / pitch, place.z / pitch};
        Number first = none;
        if (!isPlace(place))
            return none;
        for (int corner = 0; corner < 8; ++corner)
        {
            std::int64_t cell[3];
            for (int axis = 0; axis < 3; ++axis)
                cell[axis] = whole(scaled[axis] + ((corner >> axis & 1) ? 0.5 : -0.5));
            const auto found = newest.find(hash(cell));
            for (Number i = found == newest.end() ? none : found->second; i != none; i = older[i])
                if (i < first && accepts(i))
                    first = i;
        }
        return first;
    }

    /// Puts the next number, counted from 0, at a place.
    Number put(const MeshVector3 &place)
    {
        const auto number = static_cast<Number>(older.size());
        if (!isPlace(place))
        {
            older.push_back(none);
            return number;
        }
        const std::int64_t cell[] = {whole(place.x / pitch), whole(place.y / pitch), whole(place.z / pitch)};
        const auto [head, isNew] = newest.try_emplace(hash(cell), number);
        older.push_back(isNew ? none : head->second);
        head->second = number;
        return number;
    }

private:
    static constexpr double finestPitch = 1e-9; ///< metres; places of any use still differ in their cells

    static bool isPlace(const MeshVector3 &place)
    {
        return std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(place.z);
    }

    static std::int64_t whole(double value)
    {
        constexpr double limit = 4e18; // within 64 bits; what lies beyond shares a cell
        return static_cast<std::int64_t>(std::floor(std::clamp(value, -limit, limit)));
    }

    static std::uint64_t hash(const std::int64_t (&cell)[3])
    {
        std::uint64_t mixed = 0;
        for (const std::int64_t part : cell)
        {
            mixed = (mixed ^ static_cast<std::uint64_t>(part)) * 0x9E3779B97F4A7C15u;
            mixed ^= mixed >> 29;
        }
        return mixed;
    }

    double pitch;                                     ///< metres
    std::unordered_map<std::uint64_t, Number> newest; ///< by cell
    std::vector<Number> older;                        ///< the one before in the same cell
};
