// DrawnThing: a drawn component that a test can look into.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"

#include <functional>
#include <string>
#include <vector>

/// Draws the full-screen quad as a batch of its group, and notes what the scene graph asks of it.
class DrawnThing : public GraphicsComponent2
{
    KV_REFLECTED(DrawnThing)
public:
    DrawnThing() = default;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    int objectGetInstanceCount() override { return instanceCount; }
    ErrorCode batchPreRender() override;
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;

    std::vector<std::string> *journal = nullptr;
    std::string label;
    int group = 0; ///< things of one group share a draw call; below 0 each is alone
    int instanceCount = 1;
    bool instanced = true;
    bool inShadowSet = true;
    String effect = SCS("ff.fx");
    String technique = SCS("Crappy");
    std::function<ErrorCode()> whenPreRendered;

private:
    void note(const char *what);
};
