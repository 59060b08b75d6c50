// TestComponent: a component that notes its frames in a journal.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include <functional>
#include <string>
#include <vector>

/// Notes the label of every frame step in a journal that the test owns, and then does what the test wants.
class TestComponent : public SimpleComponent
{
    KV_REFLECTED(TestComponent)
public:
    TestComponent() = default;

    void doFrame() override;

    std::vector<std::string> *journal = nullptr;
    std::string label;
    std::function<void()> whenRun;
};
