// TestThing: an object that records what happens to it.
#pragma once

#include "object/tree/Object.h"
#include "object/reflection/SavedArguments.h"

#include <functional>
#include <utility>
#include <vector>

/// An object of the tree that notes its moves, deaths and calls for a test to read.
class TestThing : public Object
{
    KV_REFLECTED(TestThing)
public:
    TestThing() = default;
    ~TestThing() override;

    void onMurder() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// Adds to the sum, as a handler of a message or a plain call.
    void addValue(float value) { sum += value; }
    float getSum() const { return sum; }
    void setSum(float value) { sum = value; }
    /// Takes what it is sent, with the message type in front.
    void handleValueMessage(const ReflectorPtr &messageType, float value);
    /// Fails after it has counted the call.
    ErrorCode failingHandler(const ReflectorPtr &messageType, float value);
    /// A value that can be written and not read.
    void setSecret(int value) { secret = value; }
    /// Sums four numbers, the most that a member function can take.
    int addFour(int a, int b, int c, int d) { return a + b + c + d; }

    std::function<void()> whenMurdered;
    std::function<void()> whenDestroyed;
    std::function<void()> whenCalled;
    std::vector<std::pair<Handle<Object>, Handle<Object>>> moves;
    float sum = 0;
    int calls = 0;
    int secret = 0;
};

/// Makes a TestThing under a parent, or at the top of a tree of its own.
Handle<TestThing> spawn(const char *name, const Handle<Object> &parent = Handle<Object>());
