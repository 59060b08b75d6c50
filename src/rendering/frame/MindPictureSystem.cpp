#include "rendering/frame/MindPictureSystem.h"

#include "physics/volumes/FiniteProperty.h"

#include <algorithm>

void MindPictureSystem::take(const char *property, float &share, float val)
{
    if (isUsable(*this, property, val))
        share = std::clamp(val, 0.f, 1.f);
}
