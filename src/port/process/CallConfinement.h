// CallConfinement: the part of the confinement that the kernel's filter of system calls holds.
#pragma once

#include <string>

namespace port
{

/// Has the kernel refuse programs, sockets that lead out of this machine, and other calls that no game makes; for all
/// threads.
/// @return why that is not so, as a sentence; empty where it holds
std::string confineCalls();

} // namespace port
