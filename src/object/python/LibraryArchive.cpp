#include "object/python/LibraryArchive.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

constexpr std::string_view END_MARK("PK\5\6", 4);
constexpr std::string_view LIST_MARK("PK\1\2", 4);
constexpr std::size_t END_SIZE = 22; ///< bytes of the record at the end, which has no comment behind it
constexpr std::size_t LIST_PLACE = 16;

std::string readAt(std::ifstream &file, std::uint64_t offset, std::size_t size)
{
    std::string bytes(size, '\0');
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

bool isWhole(std::ifstream &file, std::uint64_t size)
{
    const std::string end = size < END_SIZE ? std::string() : readAt(file, size - END_SIZE, END_SIZE);
    if (!end.starts_with(END_MARK) || end.size() != END_SIZE)
        return false;
    std::uint32_t list = 0;
    for (std::size_t byte = 4; byte-- > 0;)
        list = list << 8 | static_cast<unsigned char>(end[LIST_PLACE + byte]);
    return readAt(file, list, LIST_MARK.size()) == LIST_MARK;
}

String remedyFor(const std::filesystem::path &path, const char *fault)
{
    return String::format("%s %s: it is Python's library, without which no script runs. ./play makes it anew.",
                          path.c_str(), fault);
}

} // namespace

String faultOfLibraryArchive(const char *path)
{
    namespace fs = std::filesystem;
    std::error_code failure;
    const fs::path place = fs::weakly_canonical(path, failure);
    if (!fs::is_regular_file(path, failure))
        return remedyFor(place, "is missing");
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return remedyFor(place, "cannot be read");
    const std::uintmax_t size = fs::file_size(path, failure);
    return isWhole(file, size) ? String() : remedyFor(place, "is damaged or cut short");
}
