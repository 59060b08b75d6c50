#include "engine/systems/Confinement.h"

#include "foundation/TextLines.h"
#include "port/process/Confinement.h"

String confine(const String &folders, const String &files)
{
    std::string lacking;
    for (const std::string &sentence : port::confineProcess({linesOf(folders), linesOf(files)}))
        lacking += (lacking.empty() ? "" : "\n") + sentence;
    return String::copyFrom(lacking);
}

bool confineSockets()
{
    return port::confineSockets();
}
