// Entry of every test program that links the engine: the reflection table is usable before the first test.
#include "object/reflection/AutoReflector.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    initAutoReflector();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
