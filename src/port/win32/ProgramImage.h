// ProgramImage: which memory belongs to the loaded program itself.
#pragma once

namespace port
{

/// Whether an address lies in the executable's code, constants or initialised data, so that a literal may be there.
bool isInProgramImage(const void *address);

} // namespace port
