#include "support/TestThing.h"

TestThing::~TestThing()
{
    if (whenDestroyed)
        whenDestroyed();
}

void TestThing::onMurder()
{
    if (whenMurdered)
        whenMurdered();
}

void TestThing::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    moves.emplace_back(reparentedObject, newParent);
}

void TestThing::handleValueMessage(const ReflectorPtr &, float value)
{
    ++calls;
    sum += value;
    if (whenCalled)
        whenCalled();
}

ErrorCode TestThing::failingHandler(const ReflectorPtr &, float)
{
    ++calls;
    return ErrorCode::NOT_IMPLEMENTED;
}

Handle<TestThing> spawn(const char *name, const Handle<Object> &parent)
{
    const Handle<TestThing> h = construct<TestThing>(defaultAllocationCategory);
    auto thing = h.lookup();
    thing->setName(String::copyFrom(name));
    thing->setParent(parent);
    return h;
}
