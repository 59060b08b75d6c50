#include "ImportOptions.h"

#include "port/win32/HostPath.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iterator>

namespace
{

constexpr const char *extension = ".kaVelModel";

std::optional<SourceAxis> parseAxis(const std::string &word)
{
    const bool negative = word.size() == 2 && word[0] == '-';
    const bool positive = word.size() == 1 || (word.size() == 2 && word[0] == '+');
    if (!negative && !positive)
        return std::nullopt;
    const int axis = word.back() - 'x';
    if (axis < 0 || axis > 2)
        return std::nullopt;
    return SourceAxis{axis, negative ? -1.0f : 1.0f};
}

std::optional<float> parseNumber(const std::string &word)
{
    char *end = nullptr;
    const float number = std::strtof(word.c_str(), &end);
    if (word.empty() || *end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

/// Takes a word that needs a value; returns what is wrong with the value.
std::string takeValue(ImportOptions &options, const std::string &word, const std::string &value)
{
    if (word == "--up" || word == "--front")
    {
        const std::optional<SourceAxis> axis = parseAxis(value);
        (word == "--up" ? options.up : options.front) = axis;
        return axis ? "" : word + " takes x, y or z, with a - in front for the other way; not '" + value + "'.";
    }
    if (word == "--output" || word == "--textures")
    {
        (word == "--output" ? options.output : options.textures) = value;
        return "";
    }
    const std::optional<float> number = parseNumber(value);
    if (word == "--crease" && number && *number >= 0 && *number <= 180)
        options.creaseAngle = *number * PI / 180;
    else if (word == "--crease")
        return "--crease takes degrees from 0 to 180; not '" + value + "'.";
    else if (number && *number > 0)
        options.scale = *number;
    else
        return "--scale takes a number above 0; not '" + value + "'.";
    return "";
}

/// Takes a word that stands alone; false for one that there is not.
bool takeFlag(ParsedOptions &parsed, const std::string &word)
{
    if (word == "--flip-v")
        return parsed.options.flipV = true;
    if (word == "--flip-winding")
        return parsed.options.flipWinding = true;
    if (word == "--flip-green")
        return parsed.options.flipGreen = true;
    if (word == "--no-textures")
        return !(parsed.options.withTextures = false);
    if (word == "--split")
        return parsed.options.split = true;
    if (word == "--help" || word == "-h")
        return parsed.wantsHelp = true;
    return false;
}

bool needsValue(const std::string &word)
{
    constexpr const char *words[] = {"--output", "--textures", "--scale", "--up", "--front", "--crease"};
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

/// Where a model's textures go unless told: to the folder 'textures' beside its own, as the game has them, if there is
/// one.
std::filesystem::path usualTextures(const std::filesystem::path &output)
{
    const std::filesystem::path folder = output.parent_path();
    std::error_code ignored;
    const std::filesystem::path absolute = std::filesystem::absolute(output, ignored).parent_path();
    if (absolute.filename() == "models" && std::filesystem::is_directory(folder / ".." / "textures", ignored))
        return (folder / ".." / "textures").lexically_normal();
    return folder;
}

/// Paths in the host's form, and a whole name for the output: in a folder, or without an output, the input's.
void completePaths(ImportOptions &options)
{
    options.input = port::hostPath(options.input.c_str());
    const std::filesystem::path input = options.input;
    std::filesystem::path output = port::hostPath(options.output.c_str());
    std::error_code ignored;
    if (output.empty())
        output = input.parent_path() / input.stem();
    else if (!output.has_filename() || std::filesystem::is_directory(output, ignored))
        output /= input.stem();
    if (output.extension() != extension)
        output += extension;
    options.output = output.string();
    options.textures =
        options.textures.empty() ? usualTextures(output).string() : port::hostPath(options.textures.c_str());
}

} // namespace

Vec4 SourceAxis::direction() const
{
    Vec4 direction;
    direction[axis] = sign;
    return direction;
}

bool ImportOptions::isGltf() const
{
    std::string extension = std::filesystem::path(input).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension == ".gltf" || extension == ".glb";
}

ParsedOptions parseOptions(const std::vector<std::string> &words)
{
    ParsedOptions parsed;
    for (std::size_t i = 0; i < words.size() && parsed.fault.empty(); ++i)
    {
        const std::string &word = words[i];
        if (needsValue(word) && i + 1 == words.size())
            parsed.fault = word + " needs a value after it.";
        else if (needsValue(word))
            parsed.fault = takeValue(parsed.options, word, words[++i]);
        else if (word.empty() || word[0] == '-')
            parsed.fault = takeFlag(parsed, word) ? "" : "There is no option '" + word + "'; --help lists them.";
        else if (parsed.options.input.empty())
            parsed.options.input = word;
        else
            parsed.fault = "One file at a time: '" + parsed.options.input + "' and '" + word + "' were given.";
    }
    if (parsed.fault.empty() && !parsed.wantsHelp && parsed.options.input.empty())
        parsed.fault = "No file was given; --help shows how.";
    completePaths(parsed.options);
    return parsed;
}

std::string usage()
{
    // A raw text in a file of its own, which ./import-model prints without a build.
    constexpr const char *text =
#include "Usage.inc"
        ;
    return text + 1; // behind the line break that follows the opening
}

std::optional<Matrix4> axesToEngine(const SourceAxis &up, const SourceAxis &front)
{
    if (up.axis == front.axis)
        return std::nullopt;
    // In right-handed axes this is the model's right hand: it stands along `up` and looks along `front`.
    const Vec4 right = front.direction().cross(up.direction());
    const Vec4 rows[] = {right, up.direction(), front.direction()};
    Matrix4 axes;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            axes[row][column] = rows[row][column];
    return axes;
}

SourceAxis usualFront(const SourceAxis &up)
{
    return up.axis == 2 ? SourceAxis{1, -up.sign} : SourceAxis{2, 1};
}
