// EffectParser: reads effect files into a description.
#pragma once

#include "port/d3dx9/EffectDescription.h"

#include <string>

namespace port
{

/// Reads an effect file and what it includes.
///
/// Included files are sought beside the file that names them; a file that was read already is not read again.
/// @param path  a host path
/// @throws EffectError at the first thing that cannot be understood
EffectDescription readEffectFile(const std::string &path);

} // namespace port
