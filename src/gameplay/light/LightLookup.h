// LightLookup: the light that a flashlight carries.
#pragma once

#include "object/tree/Object.h"

class LightComponent;

/// The light under "graphics2" of an entity's child "flashlight"; null for none.
LightComponent *carriedLight(const Handle<Object> &entity);
