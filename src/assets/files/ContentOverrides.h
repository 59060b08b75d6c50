// ContentOverrides: files that stand in for the game's own, or beside them.
#pragma once

#include "foundation/KVString.h"

/// Has a file stand in for one of the folder `assets`, or beside those that are there; an empty path ends that.
///
/// Whoever asks for it from now on gets it: what has been loaded stays as it is.
/// @param name  below `assets`, with slashes, as "textures/rugDiffuse.png"; also that of a file that is not there
/// @param file  a path of the host
void overrideContent(const String &name, const String &file);

/// The file that stands in for one of the folder `assets`, by its name below that; empty where none does.
String overridingFile(const String &name);

/// Path of a file of the folder `assets` by its name below that, as "models/chair.kaVelModel": the one that stands in
/// for it, or its own in the designed form, "..\\assets\\models\\chair.kaVelModel".
String contentFile(const String &name);
