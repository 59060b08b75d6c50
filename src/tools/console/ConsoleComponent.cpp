#include "tools/console/ConsoleComponent.h"

#include "tools/console/ConsoleSystem.h"

#include "engine/debug/GlobalConfigSystem.h"
#include "engine/levels/BranchPostOffice.h"
#include "engine/levels/Coordinator.h"
#include "object/messages/PostOffice.h"
#include "object/reflection/DoxyElement.h"
#include "object/reflection/NearestName.h"
#include "object/reflection/PartialFunctionApplication.h"
#include "object/reflection/PropertyDesc.h"
#include "object/tree/WellKnownPaths.h"
#include "platform/input/InputMessages.h"
#include "tools/console/TextBuffSystem.h"

#include "foundation/Logger.h"
#include "port/win32/VirtualKeys.h"

#include <algorithm>
#include <cctype>

namespace
{
/// Lines that may run inside each other before one is taken for an alias of itself.
constexpr int DEEPEST_LINE = 16;

const CommandList &globalCommands()
{
    return getSystemDeref<ConsoleSystem>().getGlobalCommands();
}

/// The words of a text, without the blanks between them.
std::vector<String> wordsOf(const std::string &text)
{
    std::vector<String> words;
    for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != std::string::npos;)
    {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words.push_back(String::copyFrom(text.substr(at, end - at)));
        at = end;
    }
    return words;
}

const ConsoleCommand *findIn(const CommandList &commands, const String &word)
{
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&word](const ConsoleCommand &entry) { return entry.command == word; });
    return found != commands.end() ? &*found : nullptr;
}

const ConsoleCommand *findPartIn(const CommandList &commands, const String &begun)
{
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&begun](const ConsoleCommand &entry) { return entry.command.startsWith(begun); });
    return found != commands.end() ? &*found : nullptr;
}

void widen(unsigned &width, const String &text)
{
    width = std::max(width, static_cast<unsigned>(text.size()));
}

/// What a header says of a thing.
const char *commentOf(const ReflectorPtr &thing)
{
    const auto *const element = dynamic_cast<const DoxyElement *>(thing.get());
    return element ? element->getBriefDescription() : "";
}

int within(int value, int least, int most)
{
    return std::clamp(value, least, most);
}
} // namespace

Handle<ConsoleComponent> ConsoleComponent::ofCurrentLevel()
{
    return handle_cast<ConsoleComponent>(getObjectByPath(SCS("c:/Console/console")));
}

void ConsoleComponent::onLoadComplete()
{
    ConsoleCommand spawn{SCS("spawn"), SCS("'level' 'name'"), SCS("Adds object into the world."), nullptr};
    spawn.function = bind(SCS("spawnDict"));
    addCommand(spawn);

    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Handle<Object> office =
        level ? level->getDescendantByPath(WellKnownPaths::branchPostOffice) : Handle<Object>();
    if (const auto branch = handle_cast<BranchPostOffice>(office).lookup())
        branch->registerMessageHandler(KeyDownMessage, bind(SCS("handleKeyDown")));
    else
        PostOffice().registerMessageHandler(KeyDownMessage, bind(SCS("handleKeyDown")));
}

void ConsoleComponent::addCommand(const ConsoleCommand &word)
{
    localCommands.push_back(word);
    widen(max_command, word.command);
    widen(max_param, word.param);
    widen(max_description, word.description);
}

void ConsoleComponent::complain(const String &text)
{
    ++complaintCount;
    Logger().writeLine(Logger_::I_ERROR, text, SCS("ConsoleComponent"));
}

void ConsoleComponent::addAlias(const String &aliasName, const String &command)
{
    const ConsoleCommand *const present = findIn(localCommands, aliasName);
    const std::string name = aliasName.toCString();
    if (name.empty() || name.find(' ') != std::string::npos)
        return complain(String::format("alias: '%s' is no word that can be typed", name.c_str()));
    if (present && !aliases.contains(aliasName))
        return complain(String::format("alias: '%s' is a command already", name.c_str()));

    const bool replaced = !aliases.insert_or_assign(aliasName, command).second;
    if (replaced)
        std::erase_if(localCommands, [&](const ConsoleCommand &entry) { return entry.command == aliasName; });
    ConsoleCommand alias{aliasName, String(), String::format("Runs: %s", command.toCString()), nullptr};
    alias.function = PartialFunctionApplication::construct(bind(SCS("runAlias")), aliasName);
    addCommand(alias);
}

void ConsoleComponent::runAlias(const String &aliasName)
{
    if (const auto found = aliases.find(aliasName); found != aliases.end())
        executeCommand(String(found->second));
}

void ConsoleComponent::addBinding(int key, const String &command)
{
    if (command.empty())
        keyBindings.erase(key);
    else
        keyBindings[key] = command;
}

void ConsoleComponent::printHelp()
{
    Logger().writeLine(Logger_::I_INFO, "Local commands:");
    logCommands(localCommands, max_command, max_param);
}

String ConsoleComponent::getCommandTable() const
{
    std::string table;
    for (const CommandList *commands : {&localCommands, &globalCommands()})
        for (const ConsoleCommand &entry : *commands)
            table += std::string(entry.command.toCString()) + '\t' + entry.param.toCString() + '\t' +
                     entry.description.toCString() + '\n';
    return String::copyFrom(table);
}

const ConsoleCommand *ConsoleComponent::findWordInDict(const String &command) const
{
    const ConsoleCommand *const local = findIn(localCommands, command);
    return local ? local : findIn(globalCommands(), command);
}

const ConsoleCommand *ConsoleComponent::findPartWordInDict(const String &command) const
{
    const ConsoleCommand *const local = findPartIn(localCommands, command);
    return local ? local : findPartIn(globalCommands(), command);
}

String ConsoleComponent::enumNames(Handle<Object> object, const String &property) const
{
    const auto owner = object.lookup();
    const ReflectorPtr setter = owner ? owner->getType()->getProperty(property).value.getSetter() : ReflectorPtr();
    // Behind the object that a member function is called with.
    const ReflectorPtr type = setter && setter->getArgCount() > 1 ? setter->getArgType(1) : ReflectorPtr();
    std::string names;
    if (type && type->getKind() == IReflectedThing::ENUM)
        for (const ReflectorPtr &value : type->getMemberList())
            names += std::string(value->getName().toCString()) + '\t' + commentOf(value) + '\n';
    return String::copyFrom(names);
}

String ConsoleComponent::completeWord(const String &begun) const
{
    const ConsoleCommand *const found = findPartWordInDict(begun);
    return found ? found->command : String();
}

void ConsoleComponent::executeCommand(const String &commandString)
{
    const std::string line = commandString.toCString();
    std::size_t end = std::min(line.find(' '), line.size());
    if (end > 1 && std::ispunct(static_cast<unsigned char>(line[0])) &&
        findWordInDict(String::copyFrom(line.substr(0, 1))))
        end = 1;
    const String word = String::copyFrom(line.substr(0, end));
    const ConsoleCommand *const found = findWordInDict(word);
    if (!found)
        return tellUnknown(word);
    if (!found->function)
        return complain(SCS("Command found, but cannot be called."));
    if (depth >= DEEPEST_LINE)
        return complain(String::format("'%s' runs itself without an end", word.toCString()));

    const ConsoleCommand entry = *found; // what it calls may add commands
    const std::string rest = line.substr(std::min(line.find_first_not_of(' ', end), line.size()));
    ++depth;
    callCommand(entry, entry.takesLine ? std::vector<String>{String::copyFrom(rest)} : wordsOf(rest));
    --depth;
}

void ConsoleComponent::callCommand(const ConsoleCommand &entry, const std::vector<String> &words)
{
    const std::size_t expected = entry.function->getArgCount();
    if (expected != words.size())
        return complain(String::format("Wrong number of args in %s, try again. Should be %d, you passed %d",
                                       entry.command.toCString(), static_cast<int>(expected),
                                       static_cast<int>(words.size())));
    ErrorCode outcome(ErrorCode::CALL_FAILURE, IReflectedThing::WRONG_ARGUMENT_COUNT);
    if (words.size() <= maxCallArgs)
    {
        SavedArguments arguments(words.size());
        for (std::size_t i = 0; i < words.size(); ++i)
            arguments[i].set(words[i]);
        outcome = entry.function->do_call(arguments).code;
    }
    if (!outcome.succeeded())
        complain(String::format("Function call failed. %s", outcome.toString().toCString()));
}

void ConsoleComponent::tellUnknown(const String &word)
{
    complain(SCS("Command not recognized."));
    NearestName nearest(word);
    for (const CommandList *commands : {&std::as_const(localCommands), &globalCommands()})
        for (const ConsoleCommand &entry : *commands)
            nearest.consider(entry.command);
    if (!nearest.get().empty())
        Logger().writeLine(Logger_::I_INFO,
                           String::format("'%s' is no command%s", word.toCString(), nearest.hint().toCString()));
}

void ConsoleComponent::setOpen(bool val)
{
    getSystemDeref<TextBuffSystem>().setOnOff(val && getSystemDeref<GlobalConfigSystem>().getConsoleEnabled());
}

bool ConsoleComponent::getOpen() const
{
    return getSystemDeref<TextBuffSystem>().isCapturing();
}

void ConsoleComponent::handleKeyDown(const ReflectorPtr &, int key)
{
    const auto bound = keyBindings.find(key);
    if (bound != keyBindings.end() && !getOpen() && getSystemDeref<GlobalConfigSystem>().getConsoleEnabled())
        executeCommand(String(bound->second));
}

bool ConsoleComponent::takesKey(int key, bool repeated)
{
    const auto bound = keyBindings.find(key);
    if (bound != keyBindings.end() && bound->second == SCS("console"))
    {
        if (!repeated)
            setOpen(false);
        return true;
    }
    switch (key)
    {
    case VK_PRIOR:
        scroll(rows / 2);
        return true;
    case VK_NEXT:
        scroll(-rows / 2);
        return true;
    case VK_ESCAPE:
        caret.toEnd();
        getSystemDeref<ConsoleSystem>().setCurrentEntryLine(String());
        return true;
    default:
        return false;
    }
}

void ConsoleComponent::scroll(int by)
{
    back = static_cast<std::size_t>(std::max(0, static_cast<int>(back) + by));
    logIsStale = true;
}

void ConsoleComponent::setCharsPerRow(int val)
{
    charsPerRow = within(val, 8, 400);
    logIsStale = true;
}

void ConsoleComponent::setRows(int val)
{
    rows = within(val, 1, 60);
    logIsStale = true;
}

void ConsoleComponent::setAlpha(int val)
{
    alpha = within(val, 0, 255);
}

void ConsoleComponent::setShownImportance(Logger_::Importance val)
{
    choice.least = val;
    logIsStale = true;
}

void ConsoleComponent::setShownWords(const String &val)
{
    choice.words = val.toCString();
    logIsStale = true;
}
