// NumberTexts: the texts of numbers that change every frame, without allocating.
#pragma once

#include "foundation/KVString.h"

#include <vector>

/// Short texts of numbers, each made when it is first asked for and kept.
class NumberTexts
{
public:
    /// "0" to "99999"; what lies beyond reads as its bound.
    const String &whole(double number);
    /// "0.00" to "99.99", and whole numbers from there on.
    const String &hundredths(double number);
    /// "0%" to "100%" of a share in 0..1.
    const String &percent(double share);

private:
    std::vector<String> wholes;
    std::vector<String> fractions; ///< by hundredths
    std::vector<String> percents;
};
