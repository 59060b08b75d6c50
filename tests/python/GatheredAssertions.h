// GatheredAssertions: the message boxes of assertions, for a test to read in place of the user.
#pragma once

#include <string>

/// Takes every message box of its scope off the screen and keeps its text. One at a time.
class GatheredAssertions
{
public:
    GatheredAssertions();
    ~GatheredAssertions();
    GatheredAssertions(const GatheredAssertions &) = delete;
    GatheredAssertions &operator=(const GatheredAssertions &) = delete;

    /// The texts so far, one behind the other.
    const std::string &getText() const;
};
