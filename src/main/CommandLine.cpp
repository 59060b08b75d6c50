#include "main/CommandLine.h"

#include <cstdio>
#include <cstring>

namespace
{

constexpr int BAD_WORD = 2;
constexpr const char *HELP =
    "usage: kaVel [--help | --version]\n"
    "\n"
    "Starts the game, from whatever folder it is called. Its scripts, assets and python.zip stand beside the folder "
    "of\n"
    "the executable. What a run is asked to do stands in the environment: KAVEL_LEVEL, KAVEL_HEADLESS, KAVEL_FRAMES,\n"
    "KAVEL_MOD, KAVEL_SCREENSHOT, KAVEL_VIEWS, KAVEL_SIZE, KAVEL_REPLAY, KAVEL_RECORD, KAVEL_REPORT, KAVEL_SEED and\n"
    "KAVEL_VERBOSE mean what the\n"
    "words of ./play mean; ./play --help tells of each. The log of a run is kept in mornal/logs below XDG_STATE_HOME,\n"
    "or ~/.local/state.\n";

} // namespace

const char *versionText()
{
    return "Mornal " KV_VERSION;
}

std::optional<int> runCommandLine(int argc, char **argv)
{
    if (argc < 2)
        return std::nullopt;
    const bool asksForHelp = std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0;
    if (argc == 2 && asksForHelp)
        return std::fputs(HELP, stdout) < 0;
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0)
        return std::puts(versionText()) < 0;
    std::fprintf(stderr, "kaVel: unknown word '%s' (kaVel --help lists them; ./play has more)\n",
                 argv[argc > 2 && (asksForHelp || std::strcmp(argv[1], "--version") == 0) ? 2 : 1]);
    return BAD_WORD;
}
