// kaVelImport: turns a modelling tool's file into a model file of the game.
#include "GuardedRun.h"
#include "ImportOptions.h"
#include "ModelWriter.h"
#include "SourceScene.h"

#include <cstdio>
#include <string>
#include <vector>

namespace
{

constexpr int failed = 1, misused = 2;

int complain(const std::string &text, int code)
{
    std::fprintf(stderr, "kaVelImport: %s\n", text.c_str());
    return code;
}

int import(const ImportOptions &options)
{
    const SourceScene scene = readScene(options);
    if (!scene.fault.empty())
        return complain(options.input + ": " + scene.fault, failed);
    const WrittenModels written = writeModels(options, scene);
    if (!written.fault.empty())
        return complain(written.fault, failed);
    for (const std::string &note : scene.notes)
        std::printf("note: %s\n", note.c_str());
    for (const std::string &note : written.notes)
        std::printf("note: %s\n", note.c_str());
    for (const std::string &line : written.lines)
        std::printf("%s\n", line.c_str());
    return 0;
}

} // namespace

int main(int count, char **words)
{
    const ParsedOptions parsed = parseOptions(std::vector<std::string>(words + 1, words + count));
    if (!parsed.fault.empty())
        return complain(parsed.fault, misused);
    if (parsed.wantsHelp)
    {
        std::fputs(usage().c_str(), stdout);
        return 0;
    }

    const GuardedEnd end = runGuarded([&] { return import(parsed.options); });
    return end.fault.empty() ? end.code : complain(parsed.options.input + ": " + end.fault, failed);
}
