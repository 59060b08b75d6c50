#include "gameplay/player/SanityComponent.h"

void SanityComponent::doFrame() {}
