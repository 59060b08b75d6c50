#include "gameplay/mind/DreadComponent.h"

#include "physics/volumes/FiniteProperty.h"

#include <algorithm>

void DreadComponent::setDread(float val)
{
    if (isUsable(*this, "dread", val))
        dread = std::max(val, 0.f);
}

void DreadComponent::setRange(float val)
{
    if (isUsable(*this, "range", val))
        range = std::max(val, 0.f);
}
