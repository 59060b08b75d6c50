// FileConfinement: the part of the confinement that the kernel's Landlock holds.
#pragma once

#include "port/process/Confinement.h"

namespace port
{

/// Takes the right to write anywhere but in some places from the calling thread and what it starts.
/// @param cutsAreRefused  whether calls that cut files to nothing are refused already, which an early Landlock does not
/// @return why that is not so, as a sentence; empty where it holds
std::string confineFiles(const WritablePlaces &places, bool cutsAreRefused);

} // namespace port
