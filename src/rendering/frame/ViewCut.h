// ViewCut: a height above which one camera's view shows nothing.
#pragma once

#include "object/tree/Handle.h"

class Entity;

/// Where the view of whoever looks at rooms from above is cut off; one for the process, as there is one such looker.
///
/// World space, metres. It is no part of a level's state. Shadows are thrown and light shines as if nothing were cut off;
/// a camera below the height, or with a parallel projection, shows all.
struct ViewCut
{
    Handle<Entity> camera; ///< invalid: no view is cut off
    float height = 0.f;

    /// The one that counts; change it to cut a view off.
    static ViewCut &present()
    {
        static ViewCut cut;
        return cut;
    }
};
