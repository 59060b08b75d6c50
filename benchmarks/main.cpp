// The engine's benchmark program: the table is usable and Python runs before the first workload.
#include "engine/systems/SystemSystem.h"
#include "object/python/PythonCalls.h"

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    SystemSystem::bootstrap();
    initPython();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
