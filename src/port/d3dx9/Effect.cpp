#include "port/d3dx9/Effect.h"

#include "port/d3d9/DebugText.h"
#include "port/d3dx9/EffectParser.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <cstring>

namespace
{

/// A text for a caller, with its closing zero.
class TextBuffer final : public ID3DXBuffer
{
public:
    explicit TextBuffer(std::string text) : text(std::move(text)) {}
    ULONG AddRef() override { return ++references; }
    ULONG Release() override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }
    LPVOID GetBufferPointer() override { return text.data(); }
    DWORD GetBufferSize() override { return static_cast<DWORD>(text.size() + 1); }

private:
    ULONG references = 1;
    std::string text;
};

} // namespace

namespace port
{

Effect::Effect(Device &device, const EffectDescription &description, EffectCompiler &compiler) : device(device)
{
    device.AddRef();
    addParameters(description);
    for (const EffectSampler &sampler : description.samplers)
    {
        const SamplerStates &states = sampler.states;
        const bool bordered = states.addressU == D3DTADDRESS_BORDER || states.addressV == D3DTADDRESS_BORDER;
        samplers.push_back({parameterNames.at(sampler.texture), device.getSampler(states),
                            device.getSampler(bordered ? states : SamplerStates())});
    }
    addTechniques(description, compiler);
    programs = compiler.takePrograms();
    technique = techniques.empty() ? nullptr : &techniques.front();
}

Effect::~Effect()
{
    for (Parameter &parameter : parameters)
        setTexture(parameter, nullptr);
    if (progress != Progress::IDLE)
        device.setProgram(0);
    for (GLuint program : programs)
        glDeleteProgram(program);
    device.Release();
}

ULONG Effect::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

void Effect::addParameters(const EffectDescription &description)
{
    const EffectLayout layout(description.parameters);
    constants.resize(layout.blockSize);
    parameters.resize(description.parameters.size());
    for (std::size_t index = 0; index < parameters.size(); ++index)
    {
        const EffectParameter &source = description.parameters[index];
        Parameter &parameter = parameters[index];
        parameter.name = source.name;
        parameter.layout = layout.parameters[index];
        parameter.isTexture = source.kind == ParameterKind::TEXTURE;
        parameterNames.emplace(parameter.name, index);
        if (!source.defaults.empty())
            SetValue(reinterpret_cast<D3DXHANDLE>(&parameter), source.defaults.data(),
                     static_cast<UINT>(parameter.layout.valueBytes));
    }
}

void Effect::addTechniques(const EffectDescription &description, const EffectCompiler &compiler)
{
    for (std::size_t index = 0; index < description.techniques.size(); ++index)
    {
        const EffectTechnique &source = description.techniques[index];
        Technique added{source.name, {}, {}};
        for (std::size_t pass = 0; pass < source.passes.size(); ++pass)
        {
            added.passes.push_back({compiler.getPasses()[index][pass], source.passes[pass].states});
            for (const StateAssignment &assignment : source.passes[pass].states)
                if (std::find(added.changedStates.begin(), added.changedStates.end(), assignment.state) ==
                    added.changedStates.end())
                    added.changedStates.push_back(assignment.state);
        }
        techniques.push_back(std::move(added));
    }
}

D3DXHANDLE Effect::GetParameterByName(D3DXHANDLE parent, LPCSTR name)
{
    if (parent || !name)
        return nullptr;
    const auto found = parameterNames.find(name);
    return found == parameterNames.end() ? nullptr : reinterpret_cast<D3DXHANDLE>(&parameters[found->second]);
}

/// The parameter of a handle of ours; null for any other address.
Effect::Parameter *Effect::findParameter(D3DXHANDLE handle)
{
    const auto address = reinterpret_cast<std::uintptr_t>(handle);
    const auto first = reinterpret_cast<std::uintptr_t>(parameters.data());
    if (address < first || (address - first) % sizeof(Parameter) != 0)
        return nullptr;
    const std::uintptr_t index = (address - first) / sizeof(Parameter);
    return index < parameters.size() ? &parameters[index] : nullptr;
}

HRESULT Effect::SetValue(D3DXHANDLE handle, LPCVOID data, UINT bytes)
{
    Parameter *parameter = findParameter(handle);
    if (!parameter || !data || bytes < parameter->layout.valueBytes)
        return D3DERR_INVALIDCALL;
    if (parameter->isTexture)
    {
        IDirect3DTexture9 *texture = nullptr;
        std::memcpy(&texture, data, sizeof(texture));
        setTexture(*parameter, static_cast<Texture *>(texture));
        return D3D_OK;
    }
    const ParameterLayout &layout = parameter->layout;
    const auto *source = static_cast<const std::byte *>(data);
    std::byte *target = constants.data() + layout.offset;
    for (std::size_t element = 0; element < layout.elements; ++element)
    {
        if (std::memcmp(target, source, layout.elementSize) != 0)
        {
            std::memcpy(target, source, layout.elementSize);
            constantsDirty = true;
        }
        source += layout.elementSize;
        target += layout.stride;
    }
    return D3D_OK;
}

void Effect::setTexture(Parameter &parameter, Texture *texture)
{
    if (parameter.texture == texture)
        return;
    if (texture)
        texture->AddRef();
    if (parameter.texture)
        parameter.texture->Release();
    parameter.texture = texture;
}

D3DXHANDLE Effect::GetTechniqueByName(LPCSTR name)
{
    for (const Technique &candidate : techniques)
        if (name && candidate.name == name)
            return reinterpret_cast<D3DXHANDLE>(&candidate);
    return nullptr;
}

HRESULT Effect::SetTechnique(D3DXHANDLE handle)
{
    if (progress != Progress::IDLE)
        return D3DERR_INVALIDCALL;
    for (const Technique &candidate : techniques)
        if (handle == reinterpret_cast<D3DXHANDLE>(&candidate))
        {
            technique = &candidate;
            return D3D_OK;
        }
    return D3DERR_INVALIDCALL;
}

HRESULT Effect::Begin(UINT *passes, DWORD flags)
{
    if (progress != Progress::IDLE || !technique)
        return D3DERR_INVALIDCALL;
    savedStates.clear();
    if (!(flags & D3DXFX_DONOTSAVESTATE))
        for (D3DRENDERSTATETYPE state : technique->changedStates)
        {
            DWORD value = 0;
            device.GetRenderState(state, &value);
            savedStates.push_back({state, value});
        }
    if (passes)
        *passes = static_cast<UINT>(technique->passes.size());
    progress = Progress::BEGUN;
    return D3D_OK;
}

HRESULT Effect::BeginPass(UINT index)
{
    if (progress != Progress::BEGUN || index >= technique->passes.size())
        return D3DERR_INVALIDCALL;
    pass = &technique->passes[index];
    for (const StateAssignment &assignment : pass->states)
        device.SetRenderState(assignment.state, assignment.value);
    device.setProgram(pass->compiled.program);
    progress = Progress::IN_PASS;
    return CommitChanges();
}

HRESULT Effect::CommitChanges()
{
    if (progress != Progress::IN_PASS)
        return D3DERR_INVALIDCALL;
    bindTextures(*pass);
    uploadConstants();
    return D3D_OK;
}

void Effect::bindTextures(const Pass &current)
{
    for (UINT unit = 0; unit < samplers.size(); ++unit)
    {
        if (!(current.compiled.samplers & (1u << unit)))
            continue;
        const Sampler &sampler = samplers[unit];
        Texture *texture = parameters[sampler.parameter].texture;
        // A map that stands in for none has one texel, and software takes as long to filter it as any other.
        const bool oneTexel = texture && texture->levelWidth(0) == 1 && texture->levelHeight(0) == 1;
        device.setTexture(unit, texture, oneTexel ? sampler.unfiltered : sampler.object);
    }
}

void Effect::uploadConstants()
{
    if (constants.empty() || (!constantsDirty && device.hasEffectConstantsOf(this)))
        return;
    device.writeEffectConstants(this, constants.data(), constants.size());
    constantsDirty = false;
}

HRESULT Effect::EndPass()
{
    if (progress != Progress::IN_PASS)
        return D3DERR_INVALIDCALL;
    device.setProgram(0);
    pass = nullptr;
    progress = Progress::BEGUN;
    return D3D_OK;
}

HRESULT Effect::End()
{
    if (progress != Progress::BEGUN)
        return D3DERR_INVALIDCALL;
    for (const StateAssignment &saved : savedStates)
        device.SetRenderState(saved.state, saved.value);
    progress = Progress::IDLE;
    return D3D_OK;
}

HRESULT Effect::OnLostDevice()
{
    for (Parameter &parameter : parameters)
        if (parameter.texture && parameter.texture->getPool() == D3DPOOL_DEFAULT)
            setTexture(parameter, nullptr);
    return D3D_OK;
}

HRESULT Effect::OnResetDevice()
{
    constantsDirty = true;
    return D3D_OK;
}

} // namespace port

HRESULT D3DXCreateEffectFromFileA(IDirect3DDevice9 *device, LPCSTR file, const D3DXMACRO *defines,
                                  ID3DXInclude *include, DWORD, ID3DXEffectPool *pool, ID3DXEffect **effect,
                                  ID3DXBuffer **errors)
{
    if (errors)
        *errors = nullptr;
    port::Device *ours = port::Device::from(device);
    if (!ours || !file || !effect || include || pool)
        return D3DERR_INVALIDCALL;
    *effect = nullptr;
    const auto tell = [errors](const std::string &text)
    {
        if (errors && !text.empty())
            *errors = new TextBuffer(text);
    };
    try
    {
        port::EffectDescription description = port::readEffectFile(port::hostPath(file));
        if (description.samplers.size() > port::maxTextureUnits)
            throw port::EffectError(description.describe(description.samplers[port::maxTextureUnits].place) +
                                    ": error: an effect has at most " + std::to_string(port::maxTextureUnits) +
                                    " samplers");
        port::EffectCompiler compiler(description, defines);
        const bool compiled = compiler.compileAll();
        tell(compiler.getOutput());
        if (!compiled)
            return D3DXERR_INVALIDDATA;
        *effect = new port::Effect(*ours, description, compiler);
        return D3D_OK;
    }
    catch (const port::EffectError &error)
    {
        tell(error.what());
        return D3DXERR_INVALIDDATA;
    }
}
