// SoundParameter: one input of a sound event's curves.
#pragma once

namespace FMOD
{
class EventParameter;
}

/// One input of an event's curves, as its distance in metres.
///
/// Borrowed from the event and dead with it; null for a parameter that the event does not have.
class SoundParameter
{
public:
    /// From the least to the most that a parameter takes.
    struct Range
    {
        float least = 0;
        float most = 0;
    };

    SoundParameter() = default;
    explicit SoundParameter(FMOD::EventParameter *param) : pParam_(param) {}

    /// Sets the value, cut to the range; does nothing where there is no parameter or `newVal` is no number.
    void SetParam(float newVal);
    /// The value, as it was last set; 0 where there is no parameter.
    float getValue() const;
    /// The range as authored; 0 to 0 where there is no parameter.
    Range GetRange() const;
    /// Whether the event has the parameter.
    bool exists() const { return pParam_ != nullptr; }

private:
    FMOD::EventParameter *pParam_ = nullptr;
};
