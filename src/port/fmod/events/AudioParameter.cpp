#include "port/fmod/events/AudioParameter.h"

#include <algorithm>
#include <cmath>

namespace port
{

FMOD_RESULT AudioParameter::getInfo(int *indexOut, char **name)
{
    if (indexOut)
        *indexOut = index;
    if (name)
        *name = const_cast<char *>(data->name.c_str()); // published so; nobody may write there
    return FMOD_OK;
}

FMOD_RESULT AudioParameter::getRange(float *rangeMin, float *rangeMax)
{
    if (rangeMin)
        *rangeMin = data->least;
    if (rangeMax)
        *rangeMax = data->most;
    return FMOD_OK;
}

FMOD_RESULT AudioParameter::getValue(float *valueOut)
{
    if (!valueOut)
        return FMOD_ERR_INVALID_PARAM;
    *valueOut = value;
    return FMOD_OK;
}

FMOD_RESULT AudioParameter::setValue(float newValue)
{
    if (std::isnan(newValue))
        return FMOD_ERR_INVALID_FLOAT;
    const float clamped = std::clamp(newValue, data->least, data->most);
    *changed = *changed || clamped != value;
    value = clamped;
    return FMOD_OK;
}

} // namespace port
