#include "TestTasks.h"

#include <algorithm>

StatusCode PlayedTask::run()
{
    if (journal)
        *journal += journalName;
    const char step = part[std::min(played++, part.size() - 1)];
    if ((step == 'x' || step == 'n') && root.isValid())
        root.lookup()->terminate();
    switch (step)
    {
    case 'S':
    case 'x':
        return SC_Success;
    case 'F':
        return SC_Failure;
    case 'N':
    case 'n':
        return SC_NeedMoreTime;
    case 'I':
        return SC_InvalidHandle;
    default:
        return SC_Undefined;
    }
}

void PlayedTask::terminate()
{
    if (journal)
        *journal += "~" + journalName;
}

ErrorReturn<Handle<BTTask>> PlayedTask::clone()
{
    const Handle<BTTask> copy = makeNode(staticType);
    auto task = unchecked_handle_cast<PlayedTask>(copy).lookup();
    task->part = part;
    task->journalName = journalName;
    task->journal = journal;
    return copy;
}

ActionStatus PlayedAction::update(Seconds frameTime)
{
    time += frameTime;
    journal += "u";
    switch (part[std::min(played++, part.size() - 1)])
    {
    case 'C':
        return AS_Complete;
    case 'F':
        return AS_Failed;
    case 'I':
        return AS_InvalidHandle;
    default:
        return AS_InProgress;
    }
}

void PlayedAction::reset()
{
    journal += "r";
    Action::reset();
}

void PlayedAction::terminate()
{
    journal += "t";
    Action::terminate();
}
