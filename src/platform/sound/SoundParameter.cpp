#include "platform/sound/SoundParameter.h"

#include "port/fmod/fmod_event.h"

void SoundParameter::SetParam(float newVal)
{
    if (pParam_)
        pParam_->setValue(newVal);
}

SoundParameter::Range SoundParameter::GetRange() const
{
    Range range;
    if (pParam_)
        pParam_->getRange(&range.least, &range.most);
    return range;
}
