// Effect: ID3DXEffect on our own effect files.
#pragma once

#include "port/d3d9/Device.h"
#include "port/d3dx9/EffectCompiler.h"
#include "port/d3dx9/EffectLayout.h"
#include "port/d3dx9/d3dx9effect.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace port
{

/// A compiled effect. All values of its parameters lie in one block, which is uploaded when a pass begins or
/// CommitChanges asks for it, and only if a value has changed.
class Effect final : public ID3DXEffect
{
public:
    Effect(Device &device, const EffectDescription &description, EffectCompiler &compiler);
    ~Effect() override;

    ULONG AddRef() override { return ++references; }
    ULONG Release() override;

    D3DXHANDLE GetParameterByName(D3DXHANDLE parent, LPCSTR name) override;
    HRESULT SetValue(D3DXHANDLE parameter, LPCVOID data, UINT bytes) override;
    D3DXHANDLE GetTechniqueByName(LPCSTR name) override;
    HRESULT SetTechnique(D3DXHANDLE technique) override;
    HRESULT Begin(UINT *passes, DWORD flags) override;
    HRESULT BeginPass(UINT pass) override;
    HRESULT CommitChanges() override;
    HRESULT EndPass() override;
    HRESULT End() override;
    HRESULT OnLostDevice() override;
    HRESULT OnResetDevice() override;

private:
    struct Parameter
    {
        std::string name;
        ParameterLayout layout;
        Texture *texture = nullptr; ///< counted
        bool isTexture = false;
    };
    struct Sampler
    {
        std::size_t parameter; ///< texture it reads from
        GLuint object;
        GLuint unfiltered; ///< for a texture of one texel: looks alike, since no border is mixed in
    };
    struct Pass
    {
        CompiledPass compiled;
        std::vector<StateAssignment> states;
    };
    struct Technique
    {
        std::string name;
        std::vector<Pass> passes;
        std::vector<D3DRENDERSTATETYPE> changedStates; ///< by any of its passes, each once
    };
    enum class Progress
    {
        IDLE,
        BEGUN,
        IN_PASS
    };

    void addParameters(const EffectDescription &description);
    void addTechniques(const EffectDescription &description, const EffectCompiler &compiler);
    Parameter *findParameter(D3DXHANDLE handle);
    void setTexture(Parameter &parameter, Texture *texture);
    void bindTextures(const Pass &pass);
    void uploadConstants();

    Device &device;
    ULONG references = 1;
    std::vector<Parameter> parameters; ///< never grows after construction: handles point into it
    std::unordered_map<std::string_view, std::size_t> parameterNames; ///< views of the names in `parameters`
    std::vector<Sampler> samplers;
    std::vector<Technique> techniques;
    std::vector<GLuint> programs;

    std::vector<std::byte> constants;
    bool constantsDirty = true;
    const Technique *technique = nullptr;
    const Pass *pass = nullptr;
    Progress progress = Progress::IDLE;
    std::vector<StateAssignment> savedStates;
};

} // namespace port
