#include "port/process/FileConfinement.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace port
{

namespace
{

// The kernel's interface, of which the headers of an older system know only the beginning.
constexpr long CREATE_RULESET = 444, ADD_RULE = 445, RESTRICT_SELF = 446;
constexpr unsigned ASK_VERSION = 1;
constexpr int BELOW_PATH = 1;

struct RulesetAttributes
{
    std::uint64_t files;
    std::uint64_t network; ///< from version 4 on
    std::uint64_t scoped;  ///< from version 6 on
};

struct [[gnu::packed]] PathAttributes
{
    std::uint64_t allowed;
    std::int32_t parent;
};

// What may be done to files, by the version that brought it.
constexpr std::uint64_t WRITE_FILE = 1 << 1, REMOVE_FOLDER = 1 << 4, REMOVE_FILE = 1 << 5, MAKE_DEVICE = 1 << 6,
                        MAKE_FOLDER = 1 << 7, MAKE_FILE = 1 << 8, MAKE_SOCKET = 1 << 9, MAKE_PIPE = 1 << 10,
                        MAKE_BLOCK = 1 << 11, MAKE_LINK = 1 << 12;
constexpr std::uint64_t MOVE_BETWEEN = 1 << 13; ///< 2
constexpr std::uint64_t TRUNCATE = 1 << 14;     ///< 3
constexpr std::uint64_t SIGNALS = 1 << 1;       ///< 6; of those scoped: no signals to processes outside

constexpr int MOVES = 2, TRUNCATES = 3, SCOPES = 6;

/// What drivers of picture and sound, and whoever wants no answer, open for writing.
constexpr const char *DEVICES[] = {"/dev/null", "/dev/zero", "/dev/dri", "/dev/snd", "/dev/input"};
constexpr const char *DEVICE_FOLDER = "/dev";
constexpr const char *MAKERS_DEVICES = "nvidia"; // what the names of a maker's own devices begin with

std::uint64_t handledBy(int version)
{
    std::uint64_t handled = WRITE_FILE | REMOVE_FOLDER | REMOVE_FILE | MAKE_DEVICE | MAKE_FOLDER | MAKE_FILE |
                            MAKE_SOCKET | MAKE_PIPE | MAKE_BLOCK | MAKE_LINK;
    if (version >= MOVES)
        handled |= MOVE_BETWEEN;
    if (version >= TRUNCATES)
        handled |= TRUNCATE;
    return handled;
}

/// Rules that are being put together; closed with it.
class Ruleset
{
public:
    explicit Ruleset(int version) : handled(handledBy(version))
    {
        const RulesetAttributes attributes{handled, 0, version >= SCOPES ? SIGNALS : 0};
        const std::size_t known = version >= SCOPES ? sizeof attributes : sizeof attributes.files;
        descriptor = static_cast<int>(syscall(CREATE_RULESET, &attributes, known, 0));
    }
    ~Ruleset()
    {
        if (descriptor >= 0)
            close(descriptor);
    }
    Ruleset(const Ruleset &) = delete;
    Ruleset &operator=(const Ruleset &) = delete;

    /// Allows something at a place and below it, as far as the rules speak of it; a place that there is not is none.
    void allow(const std::string &place, std::uint64_t what) const
    {
        const int path = open(place.c_str(), O_PATH | O_CLOEXEC);
        if (path < 0)
            return;
        const PathAttributes attributes{what & handled, path};
        syscall(ADD_RULE, descriptor, BELOW_PATH, &attributes, 0);
        close(path);
    }

    bool enforce() const { return descriptor >= 0 && syscall(RESTRICT_SELF, descriptor, 0) == 0; }

private:
    const std::uint64_t handled;
    int descriptor = -1;
};

void allowDevices(const Ruleset &rules)
{
    for (const char *device : DEVICES)
        rules.allow(device, WRITE_FILE);
    std::error_code none;
    for (const auto &entry : std::filesystem::directory_iterator(DEVICE_FOLDER, none))
        if (entry.path().filename().string().starts_with(MAKERS_DEVICES))
            rules.allow(entry.path().string(), WRITE_FILE);
}

} // namespace

std::string confineFiles(const WritablePlaces &places, bool cutsAreRefused)
{
    const long version = syscall(CREATE_RULESET, nullptr, 0, ASK_VERSION);
    if (version < 1)
        return "files outside the user's folders are not protected: this system's kernel has no Landlock (" +
               std::string(std::strerror(errno)) + ").";
    const Ruleset rules(static_cast<int>(version));
    allowDevices(rules);
    // Neither links nor devices: what follows a link later on is not confined.
    for (const std::string &folder : places.folders)
        rules.allow(folder,
                    WRITE_FILE | REMOVE_FOLDER | REMOVE_FILE | MAKE_FOLDER | MAKE_FILE | MOVE_BETWEEN | TRUNCATE);
    for (const std::string &file : places.files)
        rules.allow(file, WRITE_FILE | TRUNCATE);
    if (!rules.enforce())
        return "files outside the user's folders are not protected: " + std::string(std::strerror(errno)) + ".";
    if (version < TRUNCATES && !cutsAreRefused)
        return "files outside the user's folders can still be cut to nothing: this system's kernel has an early "
               "Landlock.";
    return {};
}

} // namespace port
