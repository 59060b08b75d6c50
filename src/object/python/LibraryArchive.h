// LibraryArchive: whether the archive of Python's library is whole, told before the interpreter stumbles over it.
#pragma once

#include "foundation/KVString.h"

/// Why an archive cannot serve as the interpreter's library, as a sentence with the remedy; empty where it can.
///
/// Looks at its end, which a file that was cut short lacks, and at where its list of files begins; not at the files.
String faultOfLibraryArchive(const char *path);
