#include "tools/bars/BarMemory.h"

#include "port/win32/WholeFile.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace
{
constexpr std::size_t LARGEST_FILE = 1 << 20;
constexpr std::size_t MOST_PLACES = 200;  ///< the bars that were moved last
constexpr std::size_t MOST_WATCHES = 200; ///< more than anybody can look at

/// The texts between tabs.
std::vector<std::string> fieldsOf(const std::string &line)
{
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');)
        fields.push_back(field);
    return fields;
}

/// Whether a text can stand in a line between tabs.
bool isPlain(const std::string &text)
{
    return !text.empty() && text.find_first_of("\t\n\r") == std::string::npos;
}
} // namespace

void BarMemory::setFile(const String &name)
{
    file = name;
    places.clear();
    watches.clear();
    std::string contents;
    if (file.empty() || !port::readWholeFile(file.toCString(), LARGEST_FILE, contents).empty())
        return; // nothing was kept yet
    std::istringstream in(contents);
    for (std::string line; std::getline(in, line);)
        readLine(line);
    isChanged = false;
}

void BarMemory::readLine(const std::string &line)
{
    const std::vector<std::string> fields = fieldsOf(line);
    if (fields.size() == 3 && fields[0] == "watch" && watches.size() < MOST_WATCHES)
        watches.push_back({fields[1], fields[2]});
    if (fields.size() != 6 || fields[0] != "bar")
        return;
    Place place{};
    std::istringstream numbers(fields[2] + ' ' + fields[3] + ' ' + fields[4] + ' ' + fields[5]);
    for (int &number : place)
        numbers >> number;
    if (numbers)
        notePlace(fields[1], place);
}

std::optional<BarMemory::Place> BarMemory::placeOf(const std::string &key) const
{
    const auto has = [&key](const auto &entry) { return entry.first == key; };
    const auto found = std::find_if(places.begin(), places.end(), has);
    return found != places.end() ? std::optional(found->second) : std::nullopt;
}

void BarMemory::notePlace(const std::string &key, const Place &place)
{
    if (place[2] <= 0 || place[3] <= 0 || !isPlain(key) || placeOf(key) == place)
        return;
    std::erase_if(places, [&key](const auto &entry) { return entry.first == key; });
    places.emplace_back(key, place);
    if (places.size() > MOST_PLACES)
        places.erase(places.begin());
    isChanged = true;
}

void BarMemory::setWatches(std::vector<Watch> val)
{
    std::erase_if(val, [](const Watch &watch) { return !isPlain(watch.path) || !isPlain(watch.property); });
    if (val.size() > MOST_WATCHES)
        val.resize(MOST_WATCHES);
    watches = std::move(val);
    isChanged = true;
    write();
}

void BarMemory::write()
{
    if (file.empty() || !isChanged)
        return;
    isChanged = false;
    std::ostringstream out;
    for (const auto &[key, place] : places)
        out << "bar\t" << key << '\t' << place[0] << '\t' << place[1] << '\t' << place[2] << '\t' << place[3] << '\n';
    for (const Watch &watch : watches)
        out << "watch\t" << watch.path << '\t' << watch.property << '\n';
    std::error_code ignored; // the file tells, too
    std::filesystem::create_directories(std::filesystem::path(file.toCString()).parent_path(), ignored);
    const std::string problem = port::writeWholeFile(file.toCString(), out.str());
    if (problem.empty())
        return;
    KV_LOGF(Logger_::I_WARNING, "Where the bars stand is not kept: %s", problem.c_str());
    file = String();
}
