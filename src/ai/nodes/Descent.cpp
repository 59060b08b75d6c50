#include "ai/nodes/Descent.h"

String Descent::describe()
{
    return String::format(
        "stands deeper than %d nodes below its root and is not followed: a tree takes branches rather "
        "than a chain, and may not stand within itself",
        BTTask::MAX_DEPTH);
}
