#include "DrawnThing.h"

#include "assets/models/DynamicMeshAsset.h"
#include "rendering/device/BatchProxy.h"
#include "rendering/frame/RenderParams.h"

void DrawnThing::note(const char *what)
{
    if (journal)
        journal->push_back(label + " " + what);
}

GraphicsSystem2::BatchRenderParams DrawnThing::batchGetParams()
{
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = instanced ? MVT_DEFAULT_INSTANCE : MVT_NONE;
    params.mesh = getSystemDeref<GraphicsSystem2>().getFullScreenQuad();
    params.shaders.insert(SCS("Default"), GraphicsSystem2::ShaderID(effect, technique));
    if (inShadowSet)
        params.shaders.insert(SCS("Shadow"), GraphicsSystem2::ShaderID(SCS("ff.fx"), SCS("CrappyShadow")));
    return params;
}

void DrawnThing::objectDraw(BatchProxy &batch)
{
    note("draw");
    const DefaultInstanceVertex instance = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}},
                                            {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (int i = 0; i < instanceCount; ++i)
        batch.addInstanceData(instance);
}

ErrorCode DrawnThing::batchPreRender()
{
    note("prepare");
    return whenPreRendered ? whenPreRendered() : ErrorCode();
}

bool DrawnThing::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto *other = static_cast<const DrawnThing *>(rhs.lookupNoCheck());
    return group < 0 && group == other->group ? GraphicsComponent2::doBatchCompare(rhs) : group < other->group;
}
