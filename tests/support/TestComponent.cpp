#include "support/TestComponent.h"

void TestComponent::doFrame()
{
    if (journal)
        journal->push_back(label);
    if (whenRun)
        whenRun();
}
