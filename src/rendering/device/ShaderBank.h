// ShaderBank: the compiled effects by file name.
#pragma once

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"

#include <cstddef>
#include <map>

struct ID3DXEffect;
struct IDirect3DDevice9;

/// Name of a parameter or technique inside one effect, as the effect library hands it out.
typedef const char *D3DXHANDLE;

/// Named store of effects, owned by GraphicsSystem2.
///
/// Everything above speaks of an effect by its file name ("ff.fx") and of techniques and parameters by their names.
/// Owns one reference to each effect and borrows the device.
class ShaderBank
{
public:
    ShaderBank() = default;
    explicit ShaderBank(IDirect3DDevice9 *mainDevice_) : mainDevice(mainDevice_) {}
    ~ShaderBank() { shutdown(); }

    ShaderBank(const ShaderBank &) = delete;
    ShaderBank &operator=(const ShaderBank &) = delete;

    void setDirectDevice(IDirect3DDevice9 *mainDevice_) { mainDevice = mainDevice_; }

    /// Compiles an effect file of "..\assets\shaders\" and stores it under its file name; what stands in for it and does
    /// not compile is told and left out.
    ///
    /// A file that does not compile is a critical assertion with the compiler's text: file, line, technique.
    /// Warnings are logged. A name that is there already keeps its first effect.
    void CreateShader(const String &fxName);

    /// Compiles the file of an effect that is there anew, and puts it in the old one's place.
    ///
    /// Where it does not compile, the old one stays. Not for within BeginShader and EndShader.
    /// @return the compiler's text; empty on success, and for an effect that is not there
    String renewShader(const String &fxName);

    /// Stores a compiled effect and takes over the caller's reference; the first effect of a name stays.
    void storeShader(const String &fxName, ID3DXEffect *effect);

    /// The effect, or null for an unknown name (which leaves a null entry behind).
    ID3DXEffect *getShader(const String &fxName);

    /// Technique of that name, or null.
    D3DXHANDLE getShaderTechnique(const String &fxName, const String &functionName);
    D3DXHANDLE getShaderTechnique(ID3DXEffect *mFX, const String &functionName);

    /// Makes a technique the current one; UNKNOWN_KEY if effect or technique are missing.
    ErrorCode setShaderTechnique(const String &fxName, const String &functionName);
    ErrorCode setShaderTechnique(ID3DXEffect *mFX, const String &functionName);
    ErrorCode setShaderTechnique(const String &fxName, const D3DXHANDLE &technique);
    ErrorCode setShaderTechnique(ID3DXEffect *mFX, const D3DXHANDLE &technique);

    /// Sets a parameter to the bytes of `var`; UNKNOWN_KEY, without a message, if the effect has none of that name.
    template <class T>
    ErrorCode setVariable(const String &fxName, const String &varName, const T &var)
    {
        ID3DXEffect *effect = getShaderForVariable(fxName, varName);
        return effect ? setRawVariable(effect, varName, &var, sizeof(T)) : ErrorCode(ErrorCode::UNKNOWN_KEY);
    }
    template <class T>
    ErrorCode setVariable(ID3DXEffect *mFX, const String &varName, const T &var)
    {
        return setRawVariable(mFX, varName, &var, sizeof(T));
    }
    /// Sets a parameter to `size` bytes; a failure other than an unknown name is also an assertion with its text.
    ErrorCode setRawVariable(ID3DXEffect *mFX, const String &varName, const void *val, std::size_t size);

    /// Begins the current technique; tells its number of passes, 0 if it could not begin.
    unsigned BeginShader(const String &fxName);
    void EndShader(const String &fxName);
    ErrorCode BeginPass(const String &fxName, unsigned pass);
    void EndPass(const String &fxName);

    void onLostDevice();
    void onResetDevice();
    /// Releases every effect.
    void shutdown();

    /// The effect that a parameter is about to be set in; an unknown one is an assertion and null.
    ID3DXEffect *getShaderForVariable(const String &fxName, const String &varName);

private:
    typedef std::map<String, ID3DXEffect *> vectorFX;

    ErrorCode compile(const String &fxName, ID3DXEffect *&effect, String &text);
    bool leaveOut(const String &fxName, const String &why);

    IDirect3DDevice9 *mainDevice = nullptr; ///< borrowed
    vectorFX vFX;
};
