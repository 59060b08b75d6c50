#include "rendering/device/ShaderBank.h"

#include "assets/files/ContentOverrides.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"
#include "port/d3dx9/d3dx9effect.h"

namespace
{

/// The text of a compiler's buffer, which is given back; empty without a buffer.
String takeText(ID3DXBuffer *buffer)
{
    if (!buffer)
        return String();
    String text = String::copyFromCString(static_cast<const char *>(buffer->GetBufferPointer()));
    buffer->Release();
    return text;
}

} // namespace

ErrorCode ShaderBank::compile(const String &fxName, ID3DXEffect *&effect, String &text)
{
    const ProfilerScope scope(SCS("ShaderBank::CreateShader"), fxName);
    const String path = contentFile(SCS("shaders/") + fxName);
    constexpr DWORD flags = D3DXSHADER_SKIPVALIDATION | D3DXSHADER_OPTIMIZATION_LEVEL3;
    ID3DXBuffer *errors = nullptr;
    const ErrorCode result = dxCall(
        D3DXCreateEffectFromFileA(mainDevice, path.toCString(), nullptr, nullptr, flags, nullptr, &effect, &errors));
    text = takeText(errors);
    if (result.succeeded() && !text.empty())
        KV_LOGF(Logger_::I_WARNING, "Output from shader compiler in effect %s:\n%s", fxName.toCString(),
                text.toCString());
    if (!result.succeeded() && text.empty())
        text = result.toString();
    return result;
}

/// Has the game's own file of an effect count again, where there is another in its place.
bool ShaderBank::leaveOut(const String &fxName, const String &why)
{
    const String name = SCS("shaders/") + fxName;
    const String file = overridingFile(name);
    if (file.empty())
        return false;
    KV_LOGF(Logger_::I_ERROR, "The effect %s is left out, and the game's own is used:\n%s", file.toCString(),
            why.toCString());
    overrideContent(name, String());
    return true;
}

void ShaderBank::CreateShader(const String &fxName)
{
    ID3DXEffect *effect = nullptr;
    String text;
    ErrorCode result = compile(fxName, effect, text);
    if (!result.succeeded() && leaveOut(fxName, text))
        result = compile(fxName, effect, text);
    if (!result.succeeded())
    {
        KV_FATAL("Errors occurred while processing effect %s:\n\n%s", fxName.toCString(), text.toCString());
        return;
    }
    storeShader(fxName, effect);
}

String ShaderBank::renewShader(const String &fxName)
{
    const auto entry = vFX.find(fxName);
    if (entry == vFX.end() || !entry->second)
        return String();
    ID3DXEffect *effect = nullptr;
    String text;
    const ErrorCode result = compile(fxName, effect, text);
    if (!result.succeeded())
        return text;
    entry->second->Release();
    entry->second = effect;
    return String();
}

void ShaderBank::storeShader(const String &fxName, ID3DXEffect *effect)
{
    ID3DXEffect *&entry = vFX[fxName];
    if (!entry)
        entry = effect;
    else if (effect)
        effect->Release();
}

ID3DXEffect *ShaderBank::getShader(const String &fxName)
{
    return vFX[fxName];
}

D3DXHANDLE ShaderBank::getShaderTechnique(const String &fxName, const String &functionName)
{
    return getShaderTechnique(getShader(fxName), functionName);
}

D3DXHANDLE ShaderBank::getShaderTechnique(ID3DXEffect *mFX, const String &functionName)
{
    return mFX ? mFX->GetTechniqueByName(functionName.toCString()) : nullptr;
}

ErrorCode ShaderBank::setShaderTechnique(const String &fxName, const String &functionName)
{
    return setShaderTechnique(getShader(fxName), functionName);
}

ErrorCode ShaderBank::setShaderTechnique(ID3DXEffect *mFX, const String &functionName)
{
    const D3DXHANDLE technique = getShaderTechnique(mFX, functionName);
    return technique ? setShaderTechnique(mFX, technique) : ErrorCode(ErrorCode::UNKNOWN_KEY);
}

ErrorCode ShaderBank::setShaderTechnique(const String &fxName, const D3DXHANDLE &technique)
{
    return setShaderTechnique(getShader(fxName), technique);
}

ErrorCode ShaderBank::setShaderTechnique(ID3DXEffect *mFX, const D3DXHANDLE &technique)
{
    return mFX ? dxCall(mFX->SetTechnique(technique)) : ErrorCode(ErrorCode::UNKNOWN_KEY);
}

ID3DXEffect *ShaderBank::getShaderForVariable(const String &fxName, const String &varName)
{
    ID3DXEffect *effect = getShader(fxName);
    KV_ASSERT(effect, "Attempt to set parameter %s in unknown effect %s", varName.toCString(), fxName.toCString());
    return effect;
}

ErrorCode ShaderBank::setRawVariable(ID3DXEffect *mFX, const String &varName, const void *val, std::size_t size)
{
    const D3DXHANDLE parameter = mFX ? mFX->GetParameterByName(nullptr, varName.toCString()) : nullptr;
    if (!parameter)
        return ErrorCode::UNKNOWN_KEY;
    const ErrorCode result = dxCall(mFX->SetValue(parameter, val, static_cast<UINT>(size)));
    KV_VERIFY(result.succeeded(),
              SCS("Error setting shader parameter ") + varName + SCS(": ") + result.getErrorString());
    return result;
}

unsigned ShaderBank::BeginShader(const String &fxName)
{
    ID3DXEffect *effect = getShader(fxName);
    UINT passes = 0;
    return effect && SUCCEEDED(effect->Begin(&passes, 0)) ? passes : 0;
}

void ShaderBank::EndShader(const String &fxName)
{
    if (ID3DXEffect *effect = getShader(fxName))
        effect->End();
}

ErrorCode ShaderBank::BeginPass(const String &fxName, unsigned pass)
{
    ID3DXEffect *effect = getShader(fxName);
    return effect ? dxCall(effect->BeginPass(pass)) : ErrorCode(ErrorCode::UNKNOWN_KEY);
}

void ShaderBank::EndPass(const String &fxName)
{
    if (ID3DXEffect *effect = getShader(fxName))
        effect->EndPass();
}

void ShaderBank::onLostDevice()
{
    for (const auto &[name, effect] : vFX)
        if (effect)
            effect->OnLostDevice();
}

void ShaderBank::onResetDevice()
{
    for (const auto &[name, effect] : vFX)
        if (effect)
            effect->OnResetDevice();
}

void ShaderBank::shutdown()
{
    for (const auto &[name, effect] : vFX)
        if (effect)
            effect->Release();
    vFX.clear();
}
