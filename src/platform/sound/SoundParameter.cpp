#include "platform/sound/SoundParameter.h"

#include "port/fmod/fmod_event.h"

void SoundParameter::SetParam(float newVal)
{
    if (pParam_)
        pParam_->setValue(newVal);
}

float SoundParameter::getValue() const
{
    float value = 0;
    if (pParam_)
        pParam_->getValue(&value);
    return value;
}

SoundParameter::Range SoundParameter::GetRange() const
{
    Range range;
    if (pParam_)
        pParam_->getRange(&range.least, &range.most);
    return range;
}
