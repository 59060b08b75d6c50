#include "port/d3dx9/EffectParser.h"

#include "port/d3dx9/EffectLexer.h"
#include "port/d3dx9/EffectStates.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace
{

using namespace port;
using Kind = Token::Kind;

constexpr std::size_t maxElements = 1024; ///< of a parameter array

std::string readWhole(const std::string &path)
{
    std::error_code unknown;
    const bool isOrdinary = std::filesystem::is_regular_file(path, unknown); // a pipe would be waited for
    std::ifstream file;
    if (isOrdinary)
        file.open(path, std::ios::binary);
    if (!isOrdinary || !file)
        throw EffectError(path + ": the file cannot be read. " + explainMissingFile(path.c_str()));
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::size_t floatsIn(ParameterKind kind)
{
    switch (kind)
    {
    case ParameterKind::FLOAT:
        return 1;
    case ParameterKind::FLOAT4:
        return 4;
    case ParameterKind::FLOAT4X4:
        return 16;
    default:
        return 0;
    }
}

/// One file on its way into the description.
class FileParser
{
public:
    FileParser(EffectDescription &effect, std::size_t file)
        : effect(effect), file(file), lexer(readWhole(effect.files[file]))
    {
        take();
    }

    void parse();

private:
    // Words
    void take() { token = lexer.next(); }
    bool isMark(char mark) const { return token.kind == Kind::MARK && token.text[0] == mark; }
    bool isWord(const char *word) const { return token.kind == Kind::WORD && token.text == word; }
    void expectMark(char mark);
    std::string expectWord(const char *what);
    float expectNumber();
    ShaderCode takeCode();
    [[noreturn]] void fail(const std::string &what) const { failAt(token.line, what); }
    [[noreturn]] void failAt(int line, const std::string &what) const;
    std::string found() const;
    SourcePlace here() const { return {file, token.line}; }

    // Parts of a file
    void parseInclude();
    void parseShared();
    void parseNamedShader();
    void parseParameter(ParameterKind kind);
    void parseSampler();
    void parseTechnique();
    void parsePass(EffectTechnique &technique);
    void parsePassShader(EffectPass &pass, bool &vertexSet, bool &pixelSet);
    StateAssignment parseState(const std::string &name, int line);
    DWORD parseStateValue(D3DRENDERSTATETYPE state, const std::string &name);
    void refuseDouble(const std::string &name) const;

    EffectDescription &effect;
    std::size_t file;
    EffectLexer lexer;
    Token token;
};

void FileParser::failAt(int line, const std::string &what) const
{
    throw EffectError(effect.describe({file, line}) + ": error: " + what);
}

std::string FileParser::found() const
{
    return token.kind == Kind::END ? "the file ends" : "found '" + token.text + "'";
}

void FileParser::expectMark(char mark)
{
    if (!isMark(mark))
        fail(std::string("expected '") + mark + "', but " + found());
    take();
}

std::string FileParser::expectWord(const char *what)
{
    if (token.kind != Kind::WORD)
        fail(std::string("expected ") + what + ", but " + found());
    std::string word = std::move(token.text);
    take();
    return word;
}

float FileParser::expectNumber()
{
    float value = 0.0f;
    const std::string &text = token.text;
    const char *end = text.data() + text.size();
    const bool suffixed = !text.empty() && text.back() == 'f';
    if (token.kind != Kind::NUMBER || std::from_chars(text.data(), end, value).ptr != end - (suffixed ? 1 : 0))
        fail("expected a number, but " + found());
    take();
    return value;
}

/// The block whose opening brace is the present token.
ShaderCode FileParser::takeCode()
{
    if (!isMark('{'))
        fail("expected '{' and shader code, but " + found());
    ShaderCode code;
    const int line = token.line;
    code.place.file = file;
    if (!lexer.takeBlock(code.text, code.place.line))
        failAt(line, "the block that is opened here is never closed");
    take();
    return code;
}

void FileParser::refuseDouble(const std::string &name) const
{
    const auto named = [&name](const auto &entry) { return entry.name == name; };
    if (std::any_of(effect.parameters.begin(), effect.parameters.end(), named) ||
        std::any_of(effect.samplers.begin(), effect.samplers.end(), named))
        fail("'" + name + "' is declared twice");
}

void FileParser::parse()
{
    while (token.kind != Kind::END)
    {
        if (isMark('#'))
            parseInclude();
        else if (isWord("glsl"))
            parseShared();
        else if (isWord("VertexShader") || isWord("PixelShader"))
            parseNamedShader();
        else if (isWord("float"))
            parseParameter(ParameterKind::FLOAT);
        else if (isWord("float4"))
            parseParameter(ParameterKind::FLOAT4);
        else if (isWord("float4x4"))
            parseParameter(ParameterKind::FLOAT4X4);
        else if (isWord("texture"))
            parseParameter(ParameterKind::TEXTURE);
        else if (isWord("sampler") || isWord("sampler2D"))
            parseSampler();
        else if (isWord("technique"))
            parseTechnique();
        else
            fail("expected a parameter, sampler, shader or technique, but " + found());
    }
}

void FileParser::parseInclude()
{
    take();
    if (!isWord("include"))
        fail("expected 'include' behind '#', but " + found());
    take();
    if (token.kind != Kind::TEXT)
        fail("expected a file name in double quotes, but " + found());
    if (token.text.find("..") != std::string::npos)
        fail("expected a file beside the effect or below it, but " + found());
    const std::string path = folderOf(effect.files[file]) + hostPath(token.text.c_str());
    if (std::find(effect.files.begin(), effect.files.end(), path) == effect.files.end())
    {
        effect.files.push_back(path);
        try
        {
            FileParser(effect, effect.files.size() - 1).parse();
        }
        catch (const EffectError &error)
        {
            throw EffectError(std::string(error.what()) + "\n" + effect.describe(here()) + ": included from here");
        }
    }
    take();
}

void FileParser::parseShared()
{
    take();
    SharedCode shared;
    if (isWord("VertexShader"))
    {
        shared.forPixel = false;
        take();
    }
    else if (isWord("PixelShader"))
    {
        shared.forVertex = false;
        take();
    }
    shared.code = takeCode();
    effect.shared.push_back(std::move(shared));
}

void FileParser::parseNamedShader()
{
    NamedShader shader;
    shader.stage = isWord("VertexShader") ? ShaderStage::VERTEX : ShaderStage::PIXEL;
    take();
    shader.name = expectWord("the shader's name");
    shader.sharedCount = effect.shared.size();
    shader.code = takeCode();
    effect.shaders.push_back(std::move(shader));
}

void FileParser::parseParameter(ParameterKind kind)
{
    EffectParameter parameter;
    parameter.kind = kind;
    parameter.place = here();
    take();
    parameter.name = expectWord("the parameter's name");
    refuseDouble(parameter.name);
    if (isMark('['))
    {
        if (kind == ParameterKind::TEXTURE)
            fail("textures have no arrays");
        take();
        const float count = expectNumber();
        if (!(count >= 1.0f && count <= static_cast<float>(maxElements)))
            fail("an array has 1 to " + std::to_string(maxElements) + " elements");
        parameter.elements = static_cast<std::size_t>(count);
        expectMark(']');
    }
    if (isMark('='))
    {
        take();
        const bool braced = isMark('{');
        if (braced)
            take();
        parameter.defaults.push_back(expectNumber());
        while (braced && isMark(','))
        {
            take();
            parameter.defaults.push_back(expectNumber());
        }
        if (braced)
            expectMark('}');
        const std::size_t wanted = floatsIn(kind) * std::max<std::size_t>(1, parameter.elements);
        if (parameter.defaults.size() != wanted)
            fail("'" + parameter.name + "' takes " + std::to_string(wanted) + " numbers, not " +
                 std::to_string(parameter.defaults.size()));
    }
    expectMark(';');
    effect.parameters.push_back(std::move(parameter));
}

void FileParser::parseSampler()
{
    EffectSampler sampler;
    sampler.place = here();
    take();
    sampler.name = expectWord("the sampler's name");
    refuseDouble(sampler.name);
    expectMark('=');
    if (expectWord("'sampler_state'") != "sampler_state")
        fail("expected 'sampler_state'");
    expectMark('{');
    while (!isMark('}'))
    {
        const int line = token.line;
        const std::string name = expectWord("a sampler state");
        expectMark('=');
        const bool bracketed = isMark('<');
        if (bracketed)
            take();
        const std::string value = token.text;
        take();
        if (bracketed)
            expectMark('>');
        expectMark(';');
        if (name == "Texture")
            sampler.texture = value;
        else if (!setSamplerState(sampler.states, name, value))
            failAt(line, "unknown sampler state or value: " + name + " = " + value);
    }
    take();
    expectMark(';');
    const auto isItsTexture = [&sampler](const EffectParameter &parameter)
    { return parameter.kind == ParameterKind::TEXTURE && parameter.name == sampler.texture; };
    if (std::none_of(effect.parameters.begin(), effect.parameters.end(), isItsTexture))
        failAt(sampler.place.line,
               "sampler '" + sampler.name + "' reads '" + sampler.texture + "', which is no texture declared above it");
    effect.samplers.push_back(std::move(sampler));
}

void FileParser::parseTechnique()
{
    take();
    EffectTechnique technique;
    technique.name = expectWord("the technique's name");
    const auto named = [&technique](const EffectTechnique &other) { return other.name == technique.name; };
    if (std::any_of(effect.techniques.begin(), effect.techniques.end(), named))
        fail("technique '" + technique.name + "' is declared twice");
    expectMark('{');
    while (isWord("pass"))
        parsePass(technique);
    if (technique.passes.empty())
        fail("technique '" + technique.name + "' has no pass");
    expectMark('}');
    effect.techniques.push_back(std::move(technique));
}

void FileParser::parsePass(EffectTechnique &technique)
{
    EffectPass pass;
    pass.place = here();
    take();
    pass.name = isMark('{') ? "P" + std::to_string(technique.passes.size()) : expectWord("the pass's name");
    expectMark('{');
    bool vertexSet = false, pixelSet = false;
    while (!isMark('}'))
    {
        if (isWord("VertexShader") || isWord("PixelShader"))
        {
            parsePassShader(pass, vertexSet, pixelSet);
            continue;
        }
        const int line = token.line;
        const std::string name = expectWord("a state, a shader or '}'");
        pass.states.push_back(parseState(name, line));
    }
    if (!vertexSet || !pixelSet)
        failAt(pass.place.line, "pass '" + pass.name + "' of technique '" + technique.name + "' has no " +
                                    (vertexSet ? "pixel shader" : "vertex shader"));
    take();
    technique.passes.push_back(std::move(pass));
}

void FileParser::parsePassShader(EffectPass &pass, bool &vertexSet, bool &pixelSet)
{
    const ShaderStage stage = isWord("VertexShader") ? ShaderStage::VERTEX : ShaderStage::PIXEL;
    std::size_t index = effect.shaders.size();
    take();
    if (isMark('{'))
    {
        effect.shaders.push_back({std::string(), stage, takeCode(), effect.shared.size()});
    }
    else
    {
        expectMark('=');
        const int line = token.line;
        const std::string name = expectWord("the shader's name");
        for (index = 0; index < effect.shaders.size(); ++index)
            if (effect.shaders[index].stage == stage && effect.shaders[index].name == name)
                break;
        if (index == effect.shaders.size())
            failAt(line, std::string("no ") + (stage == ShaderStage::VERTEX ? "vertex" : "pixel") + " shader '" + name +
                             "' stands above");
        expectMark(';');
    }
    (stage == ShaderStage::VERTEX ? pass.vertexShader : pass.pixelShader) = index;
    (stage == ShaderStage::VERTEX ? vertexSet : pixelSet) = true;
}

StateAssignment FileParser::parseState(const std::string &name, int line)
{
    D3DRENDERSTATETYPE state{};
    if (!findRenderState(name, state))
        failAt(line, "unknown render state '" + name + "'");
    expectMark('=');
    DWORD value = parseStateValue(state, name);
    while (isMark('|'))
    {
        take();
        value |= parseStateValue(state, name);
    }
    expectMark(';');
    return {state, value};
}

DWORD FileParser::parseStateValue(D3DRENDERSTATETYPE state, const std::string &name)
{
    if (isFloatState(state))
        return std::bit_cast<DWORD>(expectNumber());
    DWORD value = 0;
    const std::string text = token.text;
    bool known = false;
    if (token.kind == Kind::NUMBER)
    {
        const bool hexadecimal = text.rfind("0x", 0) == 0;
        const char *end = text.data() + text.size();
        const auto result = std::from_chars(text.data() + (hexadecimal ? 2 : 0), end, value, hexadecimal ? 16 : 10);
        known = result.ec == std::errc() && result.ptr == end;
    }
    else if (token.kind == Kind::WORD)
    {
        known = findRenderStateValue(state, text, value);
    }
    if (!known)
        fail("render state '" + name + "' knows no value '" + text + "'");
    take();
    return value;
}

} // namespace

namespace port
{

std::string EffectDescription::describe(SourcePlace place) const
{
    return files[place.file] + "(" + std::to_string(place.line) + ")";
}

EffectDescription readEffectFile(const std::string &path)
{
    EffectDescription effect;
    effect.files.push_back(path);
    FileParser(effect, 0).parse();
    return effect;
}

} // namespace port
