// AudioParameter: one input of an event instance.
#pragma once

#include "port/fmod/fmod_event.h"
#include "port/fmod/project/ProjectData.h"

namespace port
{

/// Belongs to its event instance and tells it of changes.
class AudioParameter : public FMOD::EventParameter
{
public:
    /// @param changed  becomes true with each new value
    AudioParameter(const ParameterData &data, int index, bool &changed)
        : data(&data), changed(&changed), index(index), value(data.start)
    {
    }

    FMOD_RESULT getInfo(int *indexOut, char **name) override;
    FMOD_RESULT getRange(float *rangeMin, float *rangeMax) override;
    FMOD_RESULT getValue(float *valueOut) override;
    FMOD_RESULT setValue(float newValue) override;

    float get() const { return value; }
    const ParameterData &getData() const { return *data; }

private:
    const ParameterData *data;
    bool *changed;
    int index;
    float value;
};

} // namespace port
