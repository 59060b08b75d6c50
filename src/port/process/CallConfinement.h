// CallConfinement: the part of the confinement that the kernel's filter of system calls holds.
#pragma once

#include <string>

namespace port
{

/// Has the kernel refuse programs, processes, sockets that lead out of this machine, signals to others, and what else no
/// game calls; for all threads.
/// @return why that is not so, as a sentence; empty where it holds
std::string confineCalls();
/// Has the kernel refuse sockets of any kind from now on, to all threads; those that are open stay. False where it does
/// not. The calls have to be confined.
bool refuseSockets();

} // namespace port
