#include "port/d3d9/DeviceWorld.h"

#include <string>
#include <vector>

namespace
{

const std::string shaders = std::string(KV_SOURCE_DIR) + "/assets/shaders/";

const std::vector<const char *> automaticConstants = {
    "worldToView", "viewToWorld",   "worldToViewInverseTranspose", "viewToProjection", "camFOV", "camNear",
    "camFar",      "viewportPixels"};

class ShippedEffects : public DeviceWorld
{
protected:
    /// Compiles without a warning and offers these techniques and, besides the automatic ones, these parameters.
    void expect(const char *name, const std::vector<const char *> &techniques,
                const std::vector<const char *> &parameters)
    {
        Owned<ID3DXEffect> effect;
        Owned<ID3DXBuffer> errors;
        const HRESULT result = D3DXCreateEffectFromFileA(device, (shaders + name).c_str(), nullptr, nullptr, 0, nullptr,
                                                         effect.out(), errors.out());
        EXPECT_EQ(nullptr, errors.get()) << static_cast<const char *>(errors->GetBufferPointer());
        ASSERT_EQ(D3D_OK, result);
        for (const char *technique : techniques)
        {
            ASSERT_NE(nullptr, effect->GetTechniqueByName(technique)) << technique;
            EXPECT_EQ(D3D_OK, effect->SetTechnique(effect->GetTechniqueByName(technique)));
            UINT passes = 0;
            EXPECT_EQ(D3D_OK, effect->Begin(&passes, 0));
            EXPECT_EQ(1u, passes) << technique;
            EXPECT_EQ(D3D_OK, effect->BeginPass(0));
            EXPECT_EQ(D3D_OK, effect->EndPass());
            EXPECT_EQ(D3D_OK, effect->End());
        }
        for (const char *parameter : automaticConstants)
            EXPECT_NE(nullptr, effect->GetParameterByName(nullptr, parameter)) << parameter;
        for (const char *parameter : parameters)
            EXPECT_NE(nullptr, effect->GetParameterByName(nullptr, parameter)) << parameter;
    }
};

} // namespace

TEST_F(ShippedEffects, WorldEffectOffersWhatDrawnComponentsName)
{
    expect("ff.fx",
           {"Crappy", "CrappyShadow", "CrappyZPrePass", "CrappyTexturedQuads", "CrappyTexturedQuadsShadow",
            "CrappyTexturedQuadsZPrePass", "CrappyWorldSpaceTriangles", "CrappyWorldSpaceTrianglesShadow",
            "CrappyWorldSpaceTrianglesZPrePass", "NonInstancedObject", "NonInstancedObjectShadow", "CrappyLines"},
           {"diffuseMap_texture", "normalMap_texture", "emissiveMap_texture", "specularMap_texture", "modelToWorld",
            "worldToLightView", "lightViewToLightProjection"});
}

TEST_F(ShippedEffects, LightEffectOffersWhatLightsSet)
{
    expect("lights.fx", {"SpotLight", "SpotShadowsLight", "SpotShadowsLens", "SphereLight"},
           {"modelToWorld", "spotInnerAngleCos", "spotOuterAngleCos", "lightDiffuseColor", "lightSpecularColor",
            "spotFalloff", "lightFalloffBegin", "lightFalloffEnd", "lightPosition_ViewSpace", "spotDirection_ViewSpace",
            "worldToLightView", "lightViewToLightProjection", "GBuffer1_texture", "GBuffer2_texture",
            "GBuffer3_texture", "ShadowMap_texture", "lens_texture"});
}

TEST_F(ShippedEffects, FrameEffectOffersCombinationDecalsAndDust)
{
    expect("test.fx",
           {"Occlusion", "OcclusionMean", "CombineTest", "CombineSteps", "Unsettle", "Projective_texture",
            "PointParticles"},
           {"sceneAmbient", "dissolveAmount", "dissolveColor", "time", "insanityAmount", "GBuffer1_texture",
            "GBuffer2_texture", "GBuffer3_texture", "LBuffer_texture", "Occlusion_texture", "unsettling", "starts",
            "Picture_texture"});
}
