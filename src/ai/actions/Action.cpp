#include "ai/actions/Action.h"

void Action::reset()
{
    percentDone = 0.0;
    elapsedTime = 0.0;
    currentStatus = AS_InProgress;
}

void Action::terminate()
{
    reset();
}

ActionName Action::name() const
{
    return actionName;
}

void Action::incrementTime(double increment)
{
    elapsedTime += increment;
}

double Action::timeLeft()
{
    return duration - elapsedTime;
}

Handle<Action> Action::cloneAction() const
{
    const Handle<Action> made = unchecked_handle_cast<Action>(getType()->construct(BTAllocation));
    if (auto action = made.lookup())
        action->setName(getType()->getName());
    return made;
}
