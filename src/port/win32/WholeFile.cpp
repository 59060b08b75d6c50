#include "port/win32/WholeFile.h"

#include "port/win32/HostPath.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace port
{

namespace
{
namespace fs = std::filesystem;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

constexpr std::size_t PIECE = 16384; ///< bytes that are read at a time
constexpr const char *NOT_ORDINARY = "It is no ordinary file.";

std::string systemReason()
{
    return std::string(std::strerror(errno)) + ".";
}

/// The file lies on the disk when this returns true: the last bytes may be refused as late as here.
bool writeAndClose(File file, std::string_view contents)
{
    const bool written = std::fwrite(contents.data(), 1, contents.size(), file.get()) == contents.size();
    const int reason = errno;
    const bool closed = std::fclose(file.release()) == 0;
    if (!written)
        errno = reason;
    return written && closed;
}

std::string writeOver(const std::string &path, std::string_view contents)
{
    File file(std::fopen(path.c_str(), "wb"), &std::fclose);
    return file && writeAndClose(std::move(file), contents) ? std::string() : systemReason();
}
} // namespace

std::string readWholeFile(const char *designed, std::size_t most, std::string &contents)
{
    const std::string path = hostPath(designed);
    std::error_code missing;
    const fs::file_status status = fs::status(path, missing);
    if (!fs::exists(status))
        return explainMissingFile(designed);
    if (!fs::is_regular_file(status))
        return NOT_ORDINARY;

    const File file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file)
        return systemReason();
    contents.clear();
    char piece[PIECE];
    std::size_t count = 0;
    while (contents.size() <= most && (count = std::fread(piece, 1, PIECE, file.get())) > 0)
        contents.append(piece, count);
    if (std::ferror(file.get()))
        return systemReason();
    if (contents.size() > most)
        return "It has more than " + std::to_string(most) + " bytes.";
    return std::string();
}

std::string writeWholeFile(const char *designed, std::string_view contents)
{
    const std::string path = hostPath(designed);
    const std::string fresh = path + ".new";
    std::error_code unknown;
    const fs::file_status status = fs::status(path, unknown);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return NOT_ORDINARY;

    File file(std::fopen(fresh.c_str(), "wb"), &std::fclose);
    if (!file && errno == EACCES && fs::is_regular_file(status))
        return writeOver(path, contents);
    if (!file)
        return systemReason();
    if (writeAndClose(std::move(file), contents) && std::rename(fresh.c_str(), path.c_str()) == 0)
        return std::string();
    std::string reason = systemReason();
    fs::remove(fresh, unknown);
    return reason;
}

} // namespace port
