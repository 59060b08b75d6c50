#include "Subjects.h"

void BenchListener::handleValueMessage(const ReflectorPtr &, float v)
{
    sum += v;
}
