#include "tools/console/ConsoleSystem.h"

#include "tools/console/ConsoleComponent.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace
{
Handle<Coordinator> currentLevel()
{
    return getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator();
}

void writeLine(const char *text)
{
    Logger().writeLine(Logger_::I_INFO, text);
}

/// Whether the scripts have a level of this name; says so where they have none.
bool isLevel(const String &levelName)
{
    Variant known;
    if (!pythonCall("loader", "hasLevel", SavedArguments::of(levelName), known))
    {
        getCurrentPythonTraceback(); // the load tells what is wrong with the scripts
        return true;
    }
    if (known.get<bool>().value)
        return true;
    KV_LOGF(Logger_::I_ERROR, "changeLevel: there is no level '%s'", levelName.toCString());
    return false;
}

/// The module that has "reload", by its name of old or the present one.
bool reloadModule(const Variant &module, Variant &result)
{
    constexpr const char *homes[] = {"__builtin__", "importlib"};
    for (const char *home : homes)
    {
        Variant found;
        if (pythonAttribute(home, "reload", found))
            return pythonCall(home, "reload", SavedArguments::of(module), result);
        getCurrentPythonTraceback(); // not that one
    }
    return false;
}

std::size_t widest(const CommandList &commands, String ConsoleCommand::*member)
{
    std::size_t width = 0;
    for (const ConsoleCommand &entry : commands)
        width = std::max(width, (entry.*member).size());
    return width;
}
} // namespace

System::DependencyList ConsoleSystem::systemDependencies()
{
    return {SystemSystem::staticType, GameLoopSystem::staticType};
}

void ConsoleSystem::systemStartup()
{
    const auto add = [this](const char *command, const char *param, const char *description, const char *method) {
        globalCommands.push_back({SCS(command), SCS(param), SCS(description), bind(SCS(method))});
    };
    add("clear", "", "Clears the screen.", "clear");
    add("help", "", "Displays all commands.", "printHelp");
    add("ls", "path to object", "List the children of an object.", "listChildrenCommand");
    add("changeLevel", "level name", "Discard the current coordinator and load a new level in its place",
        "changeLevelCommand");
    add("reload", "python module", "reload the specified module. WARNING: some references may not be updated.",
        "reloadCommand");
}

void ConsoleSystem::setCurrentEntryLine(const String &entryLine)
{
    currentHistoryIndex = -1;
    currentEntryLine = entryLine;
}

String ConsoleSystem::getCurrentHistoryEntry() const
{
    if (currentHistoryIndex < 0 || entryHistory.empty())
        return currentEntryLine;
    return entryHistory[static_cast<std::size_t>(currentHistoryIndex) % entryHistory.size()];
}

void ConsoleSystem::nextHistoryEntry()
{
    if (currentHistoryIndex >= 0)
        currentHistoryIndex = currentHistoryIndex + 1 < getHistorySize() ? currentHistoryIndex + 1 : -1;
}

void ConsoleSystem::prevHistoryEntry()
{
    currentHistoryIndex = (currentHistoryIndex > 0 ? currentHistoryIndex : getHistorySize()) - 1;
}

void ConsoleSystem::commitEntryLine()
{
    const String line = getCurrentHistoryEntry();
    entryHistory.push_back(line);
    keepLine(line);
    setCurrentEntryLine(String());
}

void ConsoleSystem::setHistoryFile(const String &file)
{
    historyFile = file;
    entryHistory.clear();
    currentHistoryIndex = -1;
    if (!file.empty())
        readHistory();
}

void ConsoleSystem::readHistory()
{
    std::ifstream in(historyFile.toCString());
    std::size_t count = 0;
    for (std::string line; std::getline(in, line); ++count)
        entryHistory.push_back(String::copyFrom(line));
    in.close();
    if (count <= HISTORY_CAPACITY)
        return;
    std::ofstream out(historyFile.toCString(), std::ios::trunc);
    for (const String &line : entryHistory)
        out << line.toCString() << '\n';
}

void ConsoleSystem::keepLine(const String &line)
{
    if (historyFile.empty() || line.empty())
        return;
    std::error_code ignored; // the file tells, too
    fs::create_directories(fs::path(historyFile.toCString()).parent_path(), ignored);
    std::ofstream out(historyFile.toCString(), std::ios::app);
    out << line.toCString() << '\n' << std::flush;
    if (out)
        return;
    KV_LOGF(Logger_::I_WARNING, "The console's history is not kept: %s cannot be written", historyFile.toCString());
    historyFile = String();
}

void ConsoleSystem::clear()
{
    clearedCount = Logger().getLogCount();
}

void ConsoleSystem::printHelp()
{
    writeLine("== COMMAND LIST ==");
    writeLine("Global Commands:");
    logCommands(globalCommands, widest(globalCommands, &ConsoleCommand::command),
                widest(globalCommands, &ConsoleCommand::param));
    const auto level = currentLevel().lookup();
    if (!level)
        return writeLine("No coordinator available.");
    const auto local = handle_cast<ConsoleComponent>(level->getDescendantByPath(SCS("Console/console"))).lookup();
    if (!local)
        return writeLine("No local console available.");
    local->printHelp();
}

void ConsoleSystem::listChildrenCommand(const String &object)
{
    const auto found = getObjectByPath(object, currentLevel()).lookup();
    KV_ASSERT(found, "Unable to find object to list children.");
    if (!found)
        return;
    for (auto child = found->children_begin(); child != found->children_end(); ++child)
        if (const auto listed = child->lookup())
            Logger().writeLine(Logger_::I_INFO, listed->getName());
}

void ConsoleSystem::changeLevelCommand(const String &levelName)
{
    if (!isLevel(levelName))
        return;
    // What the level keeps leaves it before the next one asks for it; the level itself stays whole until the frame ends.
    GameLoopSystem &gameLoop = getSystemDeref<GameLoopSystem>();
    gameLoop.retireLevel(currentLevel());
    gameLoop.setCurrentlyActiveCoordinator(loadLevel(levelName));
}

ErrorCode ConsoleSystem::reloadCommand(const String &moduleName)
{
    Variant module;
    Variant reloaded;
    if (pythonCall("importlib", "import_module", SavedArguments::of(moduleName), module) &&
        reloadModule(module, reloaded))
        return ErrorCode::SUCCESS;
    KV_LOGF(Logger_::I_ERROR, "reload: %s", getCurrentPythonTraceback().toCString());
    return ErrorCode::PYTHON_EXCEPTION;
}
