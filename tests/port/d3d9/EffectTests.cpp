#include "port/d3d9/DeviceWorld.h"
#include "port/d3dx9/d3dx9tex.h"

#include <array>
#include <chrono>
#include <cstring>

namespace
{

class Effect : public DeviceWorld
{
protected:
    /// One full-screen triangle, so that every pixel shows what the pass computes.
    Pixel colorOf(ID3DXEffect &effect, const char *technique)
    {
        if (!triangle)
        {
            makeVertices(std::vector<std::array<float, 3>>{{-1, -1, 0}, {-1, 3, 0}, {3, -1, 0}}, triangle);
            makeDeclaration({{0, 0, D3DDECLTYPE_FLOAT3, 0, D3DDECLUSAGE_POSITION, 0}}, declaration);
        }
        device->SetVertexDeclaration(declaration);
        device->SetStreamSource(0, triangle, 0, 12);
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1, 0);
        draw(effect, technique, 1);
        return pixel(30, 30);
    }

    Owned<IDirect3DVertexBuffer9> triangle;
    Owned<IDirect3DVertexDeclaration9> declaration;
};

/// Both shaders and a technique around one line of pixel code.
std::string paint(const std::string &parameters, const std::string &code, const std::string &states = "")
{
    return parameters + "\nVertexShader v { void main() { gl_Position = POSITION; } }\nPixelShader p { void main() { " +
           code + " } }\ntechnique T { pass { CullMode = None; ZEnable = False; " + states +
           " VertexShader = v; PixelShader = p; } }\n";
}

} // namespace

TEST_F(Effect, ValuesReachTheShaderWithTheirLayout)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("float a; float4 b; float c; float d[3]; float4 e[2]; float4x4 m; float last = 0.25;",
                     "COLOR0 = vec4(a + b.w, c + d[2], e[1].y + m[3][0], last + 0.5);"),
               effect);
    const auto set = [&](const char *name, const std::vector<float> &values)
    {
        const D3DXHANDLE handle = effect->GetParameterByName(nullptr, name);
        ASSERT_NE(nullptr, handle);
        EXPECT_EQ(D3D_OK, effect->SetValue(handle, values.data(), static_cast<UINT>(values.size() * 4))) << name;
    };
    set("a", {0.2f});
    set("b", {0, 0, 0, 0.2f});
    set("c", {0.1f});
    set("d", {0, 0, 0.1f});
    set("e", {0, 0, 0, 0, 0, 0.4f, 0, 0});
    // Row 3, column 0 of a row-vector matrix is the x of its translation, and GLSL's column 3, row 0.
    std::vector<float> matrix(16);
    matrix[12] = 0.4f;
    set("m", matrix);
    const Pixel color = colorOf(*effect, "T");
    EXPECT_NEAR(102, color.r, 1);
    EXPECT_NEAR(51, color.g, 1);
    EXPECT_NEAR(204, color.b, 1);
}

TEST_F(Effect, UnknownParametersAndShortValuesAreRefused)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("float4 tint; texture image_texture;", "COLOR0 = tint;"), effect);
    EXPECT_EQ(nullptr, effect->GetParameterByName(nullptr, "nowhere"));
    EXPECT_EQ(nullptr, effect->GetParameterByName(nullptr, ""));
    EXPECT_EQ(nullptr, effect->GetTechniqueByName(""));
    const std::array<float, 8> values{};
    const D3DXHANDLE tint = effect->GetParameterByName(nullptr, "tint");
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetValue(tint, values.data(), 12));
    EXPECT_EQ(D3D_OK, effect->SetValue(tint, values.data(), 32));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetValue(nullptr, values.data(), 16));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetValue(tint + 1, values.data(), 16));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetValue("tint", values.data(), 16));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetTechnique("T"));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetValue(effect->GetParameterByName(nullptr, "image_texture"), values.data(),
                                                   sizeof(void *) - 1));
}

TEST_F(Effect, ValueSetInsideAPassCountsAfterCommitChanges)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("float level = 1;", "COLOR0 = vec4(level);"), effect);
    EXPECT_EQ(255, colorOf(*effect, "T").r);
    UINT passes = 0;
    effect->Begin(&passes, 0);
    effect->BeginPass(0);
    const float half = 0.5f;
    effect->SetValue(effect->GetParameterByName(nullptr, "level"), &half, 4);
    device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, 1);
    EXPECT_EQ(255, pixel(30, 30).r);
    EXPECT_EQ(D3D_OK, effect->CommitChanges());
    device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, 1);
    EXPECT_NEAR(128, pixel(30, 30).r, 1);
    effect->EndPass();
    effect->End();
}

TEST_F(Effect, TwoEffectsInTurnKeepTheirOwnValues)
{
    Owned<ID3DXEffect> first, second;
    makeEffect(paint("float level = 1;", "COLOR0 = vec4(level);"), first);
    makeEffect(paint("float level = 0.2;", "COLOR0 = vec4(level);"), second);
    for (int turn = 0; turn < 3; ++turn)
    {
        EXPECT_EQ(255, colorOf(*first, "T").r);
        EXPECT_EQ(51, colorOf(*second, "T").r);
    }
}

TEST_F(Effect, ManyChangesOfValuesOutliveTheRingTheyAreWrittenTo)
{
    // The ring holds some thousands of blocks; this goes around it.
    Owned<ID3DXEffect> effect;
    makeEffect(paint("float level = 0; float4 filler[64];", "COLOR0 = vec4(level);"), effect);
    const D3DXHANDLE level = effect->GetParameterByName(nullptr, "level");
    for (int turn = 0; turn < 3000; ++turn)
    {
        const float value = static_cast<float>(turn % 200) / 255.0f;
        effect->SetValue(level, &value, 4);
        if (turn % 500 == 499)
            EXPECT_EQ(turn % 200, colorOf(*effect, "T").r);
        else
        {
            UINT passes = 0;
            effect->Begin(&passes, 0);
            effect->BeginPass(0);
            effect->EndPass();
            effect->End();
        }
    }
}

TEST_F(Effect, EndGivesBackTheStatesThatPassesChanged)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("", "COLOR0 = vec4(1);",
                     "AlphaBlendEnable = True; SrcBlend = DestColor; DepthBias = -0.5; ColorWriteEnable = Red | Blue;"),
               effect);
    device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW);
    const auto state = [this](D3DRENDERSTATETYPE type)
    {
        DWORD value = 0;
        EXPECT_EQ(D3D_OK, device->GetRenderState(type, &value));
        return value;
    };
    UINT passes = 0;
    ASSERT_EQ(D3D_OK, effect->Begin(&passes, 0));
    ASSERT_EQ(D3D_OK, effect->BeginPass(0));
    EXPECT_EQ(DWORD(D3DCULL_NONE), state(D3DRS_CULLMODE));
    EXPECT_EQ(DWORD(D3DBLEND_DESTCOLOR), state(D3DRS_SRCBLEND));
    EXPECT_EQ(5u, state(D3DRS_COLORWRITEENABLE));
    EXPECT_EQ(0xbf000000u, state(D3DRS_DEPTHBIAS));
    effect->EndPass();
    effect->End();
    EXPECT_EQ(DWORD(D3DCULL_CW), state(D3DRS_CULLMODE));
    EXPECT_EQ(DWORD(D3DBLEND_ONE), state(D3DRS_SRCBLEND));
    EXPECT_EQ(0xfu, state(D3DRS_COLORWRITEENABLE));
}

TEST_F(Effect, CallsOutOfOrderAreRefused)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("", "COLOR0 = vec4(1);"), effect);
    UINT passes = 0;
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->BeginPass(0));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->EndPass());
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->End());
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->CommitChanges());
    ASSERT_EQ(D3D_OK, effect->Begin(&passes, 0));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->Begin(&passes, 0));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->BeginPass(passes));
    EXPECT_EQ(D3DERR_INVALIDCALL, effect->SetTechnique(effect->GetTechniqueByName("T")));
    EXPECT_EQ(D3D_OK, effect->End());
}

TEST_F(Effect, AlphaTestIsPartOfItsPass)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("float level = 0.5;", "COLOR0 = vec4(1, 1, 1, level);",
                     "AlphaTestEnable = True; AlphaFunc = GreaterEqual; AlphaRef = 128;"),
               effect);
    EXPECT_EQ(0, colorOf(*effect, "T").r);
    const float more = 0.51f;
    effect->SetValue(effect->GetParameterByName(nullptr, "level"), &more, 4);
    EXPECT_EQ(255, colorOf(*effect, "T").r);
}

TEST_F(Effect, TextureThatIsNotSetReadsAsBlackAndALostDeviceTakesTargetsOnly)
{
    Owned<ID3DXEffect> effect;
    makeEffect(paint("texture t; sampler s = sampler_state { Texture = <t>; };",
                     "COLOR0 = texture(s, vec2(0.5)) + vec4(0.2, 0, 0, 0);"),
               effect);
    EXPECT_EQ(51, colorOf(*effect, "T").r);

    Owned<IDirect3DTexture9> white, target;
    ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, 1, 1, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, white.out()));
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3D_OK, white->LockRect(0, &locked, nullptr, 0));
    std::memset(locked.pBits, 255, 1);
    white->UnlockRect(0);
    ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, 1, 1, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A16B16G16R16F, D3DPOOL_DEFAULT,
                                        target.out()));
    const auto set = [&](IDirect3DTexture9 *texture)
    { effect->SetValue(effect->GetParameterByName(nullptr, "t"), &texture, sizeof(texture)); };
    const auto references = [](IDirect3DTexture9 *texture)
    {
        texture->AddRef();
        return texture->Release();
    };
    set(white);
    EXPECT_EQ(255, colorOf(*effect, "T").g);
    EXPECT_EQ(2u, references(white));
    effect->OnLostDevice();
    EXPECT_EQ(2u, references(white));
    set(target);
    EXPECT_EQ(1u, references(white));
    EXPECT_EQ(2u, references(target));
    effect->OnLostDevice();
    EXPECT_EQ(1u, references(target));
    effect->OnResetDevice();
    EXPECT_EQ(51, colorOf(*effect, "T").r);
}

TEST_F(Effect, DefinitionsReachEveryShader)
{
    const std::string file = write("defined.fx", paint("", "COLOR0 = vec4(LEVEL);"));
    const D3DXMACRO defines[] = {{"LEVEL", "0.4"}, {nullptr, nullptr}};
    Owned<ID3DXEffect> effect;
    ASSERT_EQ(D3D_OK,
              D3DXCreateEffectFromFileA(device, file.c_str(), defines, nullptr, 0, nullptr, effect.out(), nullptr));
    EXPECT_EQ(102, colorOf(*effect, "T").r);
}

TEST_F(Effect, CompileErrorNamesFileLineTechniqueAndPass)
{
    HRESULT result = D3D_OK;
    const std::string output = compilerOutput(R"(float4 tint;
VertexShader v { void main() { gl_Position = POSITION; } }
PixelShader good { void main() { COLOR0 = tint; } }
PixelShader bad
{
    void main()
    {
        COLOR0 = tint * missing;
    }
}
technique Fine { pass Only { VertexShader = v; PixelShader = good; } }
technique Broken { pass First { VertexShader = v; PixelShader = good; } pass Second { VertexShader = v; PixelShader = bad; } }
)",
                                              result);
    EXPECT_EQ(D3DXERR_INVALIDDATA, result);
    EXPECT_EQ(0u, output.find("test.fx(8): technique Broken, pass Second, pixel shader: error: ")) << output;
    EXPECT_NE(std::string::npos, output.find("missing")) << output;
    EXPECT_EQ(std::string::npos, output.find("Fine")) << output;
}

TEST_F(Effect, CompileErrorInIncludedSharedCodeNamesThatFileOnce)
{
    write("shared.fxh", "glsl PixelShader\n{\n    float broken() { return nothing; }\n}\n");
    HRESULT result = D3D_OK;
    const std::string text =
        "#include \"shared.fxh\"\n#include \"shared.fxh\"\n" + paint("", "COLOR0 = vec4(broken());");
    const std::string output = compilerOutput(text, result);
    EXPECT_EQ(D3DXERR_INVALIDDATA, result);
    EXPECT_EQ(0u, output.find("shared.fxh(3): technique T, pass P0, pixel shader: error: ")) << output;
}

TEST_F(Effect, ShadersThatDoNotFitEachOtherFailWhenLinked)
{
    HRESULT result = D3D_OK;
    const std::string output =
        compilerOutput(R"(VertexShader v { out vec2 uv; void main() { uv = vec2(0); gl_Position = POSITION; } }
PixelShader p { in vec3 uv; void main() { COLOR0 = vec4(uv, 1); } }
technique T
{
    pass Odd { VertexShader = v; PixelShader = p; }
})",
                       result);
    EXPECT_EQ(D3DXERR_INVALIDDATA, result);
    EXPECT_EQ(0u, output.find("test.fx(5): technique T, pass Odd, linking: error: ")) << output;
}

TEST_F(Effect, WarningsComeBackFromAnEffectThatCompiles)
{
    HRESULT result = D3D_OK;
    // A driver that has seen a text before may take the result from its cache and say nothing: make it a new one.
    const std::string fresh =
        "/* " + std::to_string(std::chrono::system_clock::now().time_since_epoch().count()) + " */ ";
    const std::string output = compilerOutput(paint("", fresh + "float unset; COLOR0 = vec4(unset);"), result);
    EXPECT_EQ(D3D_OK, result);
    EXPECT_NE(std::string::npos, output.find("warning")) << output;
    EXPECT_NE(std::string::npos, output.find("test.fx(3): technique T, pass P0, pixel shader")) << output;
}

TEST_F(Effect, TextThatCannotBeUnderstoodIsRefusedWithItsLine)
{
    struct Case
    {
        const char *text;
        const char *expected;
    };
    const Case cases[] = {
        {"float a\nfloat b;", "test.fx(2): error: expected ';', but found 'float'"},
        {"float a;\nfloat4 a;", "test.fx(2): error: 'a' is declared twice"},
        {"float4 a = { 1, 2 };", "test.fx(1): error: 'a' takes 4 numbers, not 2"},
        {"float a[0];", "test.fx(1): error: an array has 1 to 1024 elements"},
        {"float a = 1.2.3;", "test.fx(1): error: expected a number, but found '1.2.3'"},
        {"matrix m;", "test.fx(1): error: expected a parameter, sampler, shader or technique, but found 'matrix'"},
        {"texture t;\nsampler s = sampler_state { Texture = <u>; };",
         "test.fx(2): error: sampler 's' reads 'u', which is no texture declared above it"},
        {"texture t;\nsampler s = sampler_state { Texture = <t>;\nMinFilter = Blurry; };",
         "test.fx(3): error: unknown sampler state or value: MinFilter = Blurry"},
        {"VertexShader v\n{ void main() { }", "test.fx(2): error: the block that is opened here is never closed"},
        {"technique T { }", "test.fx(1): error: technique 'T' has no pass"},
        {"technique T {\npass P { VertexShader = v;", "test.fx(2): error: no vertex shader 'v' stands above"},
        {"VertexShader v { }\ntechnique T { pass P { VertexShader = v; } }",
         "test.fx(2): error: pass 'P' of technique 'T' has no pixel shader"},
        {"technique T { pass P {\nZFunk = Less; } }", "test.fx(2): error: unknown render state 'ZFunk'"},
        {"technique T { pass P {\nZFunc = Lesser; } }",
         "test.fx(2): error: render state 'ZFunc' knows no value 'Lesser'"},
        {"technique T { pass P {\nStencilRef = 0xfg; } }",
         "test.fx(2): error: render state 'StencilRef' knows no value '0xfg'"},
        {"// no\n/* such\nfile */ #include \"nothing.fxh\"", "nothing.fxh: the file cannot be read."},
    };
    for (const Case &entry : cases)
    {
        HRESULT result = D3D_OK;
        const std::string output = compilerOutput(entry.text, result);
        EXPECT_EQ(D3DXERR_INVALIDDATA, result) << entry.text;
        EXPECT_EQ(0u, output.find(entry.expected)) << entry.text << "\n" << output;
    }
}

TEST_F(Effect, MissingFileSaysWhichOneDiffersInLetterCaseOnly)
{
    write("Present.fx", "float a;");
    Owned<ID3DXEffect> effect;
    Owned<ID3DXBuffer> errors;
    const std::string wanted = (folder / "present.fx").string();
    EXPECT_EQ(D3DXERR_INVALIDDATA, D3DXCreateEffectFromFileA(device, wanted.c_str(), nullptr, nullptr, 0, nullptr,
                                                             effect.out(), errors.out()));
    ASSERT_NE(nullptr, errors.get());
    const std::string text = static_cast<const char *>(errors->GetBufferPointer());
    EXPECT_NE(std::string::npos, text.find("Present.fx")) << text;
    EXPECT_EQ(nullptr, effect.get());
}
