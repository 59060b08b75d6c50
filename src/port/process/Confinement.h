// Confinement: what the process gives up for good before it runs what strangers wrote.
#pragma once

#include <string>
#include <vector>

namespace port
{

/// Where a confined process may still write.
struct WritablePlaces
{
    std::vector<std::string> folders; ///< with all that is below them; those that there are not are passed over
    std::vector<std::string> files;   ///< that stand already
};

/// Gives up, for this process and all that it starts, what a game does not need. There is no way back.
///
/// From then on files are made, changed and removed only in the given places (and devices of picture and sound are
/// used), no program and no process is started, no other process gets signals, and of sockets there are only those within
/// this machine. What whoever started the game left open is closed, and message buses are not found. Reading stays as it
/// was. What is refused fails with EACCES or EPERM. Message boxes are shown by a process that is started before. Call it
/// while there is one thread: others would keep the right to write.
/// @return a sentence for each part that this kernel does not have; none where all of it holds
std::vector<std::string> confineProcess(const WritablePlaces &places);

/// Gives up sockets of any kind, those within this machine, too, once a process that is confined has what it needs; what
/// is open stays. False where the kernel does not hold it.
bool confineSockets();

/// From now on it is too late to confine the process: the threads of drivers begin.
void endConfinementTime();

} // namespace port
