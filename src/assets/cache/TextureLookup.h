// TextureLookup: the file that a texture's name stands for.
#pragma once

#include "foundation/KVString.h"

/// Path of the file that a texture name stands for, as "..\assets\textures\black.dds".
///
/// The name is that of a file in the texture folder; without its extension it stands for the .dds file of that name
/// before the .png file; an absolute path stands for itself. A name that no file has is logged with the nearest one, and
/// leads to a file that is not there.
String findTextureFile(const String &name);

/// Path of the file that a texture name stands for; empty, without a word, where there is none.
String lookForTextureFile(const String &name);

/// Whether a file, told by its designed path, is one that a texture name can stand for, whether or not it is there.
bool isTextureFileOf(const String &name, const String &file);
