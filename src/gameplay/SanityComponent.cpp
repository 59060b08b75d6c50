#include "gameplay/SanityComponent.h"

void SanityComponent::doFrame() {}
