#include "object/reflection/SavedArguments.h"

#include "foundation/Assertions.h"

#include <cstdlib>

void SavedArguments::refuse(std::size_t argCount)
{
    KV_FATAL("%zu arguments are to be packed for one reflected call; it takes %zu, its object among them.", argCount,
             maxCallArgs);
    std::abort(); // unreachable, which the compiler cannot know
}
