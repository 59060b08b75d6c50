#include "RenderingWorld.h"

#include "rendering/frame/RenderParams.h"
#include "rendering/device/ShaderBank.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/entities/Entity.h"
#include "engine/transforms/TransformComponent.h"
#include "port/d3dx9/d3dx9effect.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>

namespace
{

/// Keeps what its parameters are set to; it has every parameter but those it is told to lack, and no passes.
class KeepingEffect final : public ID3DXEffect
{
public:
    std::map<std::string, std::vector<float>> values;
    std::set<std::string> lacks;
    HRESULT setResult = D3D_OK;

    ULONG AddRef() override { return ++references; }
    ULONG Release() override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }
    D3DXHANDLE GetParameterByName(D3DXHANDLE, LPCSTR name) override
    {
        return lacks.contains(name) ? nullptr : values.try_emplace(name).first->first.c_str();
    }
    HRESULT SetValue(D3DXHANDLE parameter, LPCVOID data, UINT bytes) override
    {
        std::vector<float> &value = values[parameter];
        value.resize(bytes / sizeof(float));
        std::memcpy(value.data(), data, bytes);
        return setResult;
    }
    D3DXHANDLE GetTechniqueByName(LPCSTR name) override { return std::strcmp(name, "Only") == 0 ? "Only" : nullptr; }
    HRESULT SetTechnique(D3DXHANDLE) override { return D3D_OK; }
    HRESULT Begin(UINT *passes, DWORD) override
    {
        *passes = 0;
        return D3D_OK;
    }
    HRESULT BeginPass(UINT) override { return D3D_OK; }
    HRESULT CommitChanges() override { return D3D_OK; }
    HRESULT EndPass() override { return D3D_OK; }
    HRESULT End() override { return D3D_OK; }
    HRESULT OnLostDevice() override { return D3D_OK; }
    HRESULT OnResetDevice() override { return D3D_OK; }

private:
    ~KeepingEffect() = default;
    ULONG references = 1;
};

class Shaders : public testing::Test, public RenderingWorld
{
protected:
    /// A point or direction times a matrix as the effect got it: row vector on the left.
    static Vec4 times(const Vec4 &v, const std::vector<float> &m)
    {
        Vec4 result(0, 0, 0, 0);
        for (int column = 0; column < 4; ++column)
            result[column] = v.x * m[column] + v.y * m[4 + column] + v.z * m[8 + column] + v.w * m[12 + column];
        return result;
    }
    static void expectNear(const Vec4 &found, const Vec4 &wanted)
    {
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(found[i], wanted[i], 1e-4f) << "component " << i;
    }
};

} // namespace

TEST_F(Shaders, AutomaticConstantsDescribeTheViewerInRowVectorForm)
{
    auto *effect = new KeepingEffect;
    effect->AddRef();
    graphics().getShaders().storeShader(SCS("keeping.fx"), effect);
    TransformComponent &eye =
        *handle_cast<TransformComponent>(camera.lookup()->getComponent(SCS("transform"))).lookup();
    eye.setPosition(Vec4(1, 2, 3, 1));
    const float half = 0.70710678f;
    eye.setOrientation(Quaternion(half, 0, half, 0)); // a quarter turn about the vertical
    eye.setScale(Vec4(5, 5, 5, 0));                   // no camera is larger than another
    const Matrix4 turn = Quaternion(half, 0, half, 0).generateRotation();

    GraphicsSystem2::SceneRenderParams params;
    params.viewer = camera;
    params.layer = SceneGraph::POST;
    params.viewport = Vec4(0.5f, 0, 0.251f, 1);
    GraphicsSystem2::BatchRenderParams batch;
    batch.mesh = graphics().getFullScreenQuad();
    batch.shaders.insert(SCS("Default"), GraphicsSystem2::ShaderID(SCS("keeping.fx"), SCS("Only")));
    ASSERT_TRUE(sceneGraph().renderOneObject(params, batch).succeeded());

    auto &set = effect->values;
    const Vec4 ahead = turn * Vec4(0, 0, 1, 0);
    expectNear(times(Vec4(1, 2, 3, 1), set["worldToView"]), Vec4(0, 0, 0, 1));
    expectNear(times(ahead, set["worldToView"]), Vec4(0, 0, 1, 0));
    expectNear(times(Vec4(0, 0, 0, 1), set["viewToWorld"]), Vec4(1, 2, 3, 1));
    expectNear(times(Vec4(0, 0, 1, 0), set["viewToWorld"]), ahead);
    // The projection goes up as it comes: w is the depth, and the near plane is at 0.
    expectNear(times(Vec4(0, 0, 0.01f, 1), set["viewToProjection"]), Vec4(0, 0, 0, 0.01f));
    EXPECT_FLOAT_EQ(set["camFOV"].at(1), 0.785398f);
    EXPECT_EQ(set["camNear"], std::vector<float>{0.01f});
    EXPECT_EQ(set["camFar"], std::vector<float>{50.0f});
    EXPECT_EQ(set["viewportPixels"], (std::vector<float>{80, 0, 41, 90})) << "sizes are rounded up";
    effect->Release();
}

TEST(ShaderBank, MissingParameterIsToldByItsCodeAloneAndAFailureWithItsName)
{
    ShaderBank bank;
    auto *effect = new KeepingEffect;
    bank.storeShader(SCS("a.fx"), effect);
    effect->lacks = {"absent"};
    const std::size_t logged = countLogLines("Assertion failed");
    EXPECT_EQ(bank.setVariable(SCS("a.fx"), SCS("absent"), 1.0f).getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_EQ(countLogLines("Assertion failed"), logged);

    effect->setResult = D3DERR_INVALIDCALL;
    const ErrorCode failed = bank.setVariable(SCS("a.fx"), SCS("present"), 1.0f);
    EXPECT_EQ(failed.getCode(), ErrorCode::DX_ERROR);
    EXPECT_EQ(failed.getHRESULT(), D3DERR_INVALIDCALL);
    EXPECT_EQ(countLogLines("Error setting shader parameter present: "), 1u);

    EXPECT_EQ(bank.setVariable(SCS("b.fx"), SCS("present"), 1.0f).getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_EQ(countLogLines("Attempt to set parameter present in unknown effect b.fx"), 1u);
    EXPECT_EQ(bank.setShaderTechnique(SCS("a.fx"), SCS("Other")).getCode(), ErrorCode::UNKNOWN_KEY);
    EXPECT_TRUE(bank.setShaderTechnique(SCS("a.fx"), SCS("Only")).succeeded());
}
