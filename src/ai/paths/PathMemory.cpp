#include "ai/paths/PathMemory.h"

AllocationCategory PathAllocation("PathAllocation");
