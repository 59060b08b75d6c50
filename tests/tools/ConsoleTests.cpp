#include "platform/FakeRawInput.h"
#include "support/AllocationCount.h"
#include "support/ScriptModule.h"
#include "support/TemporaryFile.h"
#include "support/TestLevel.h"

#include "engine/debug/GlobalConfigSystem.h"
#include "physics/grid/SquareGrid.h"
#include "platform/input/InputSystem.h"
#include "rendering/drawn/QuadComponent2.h"
#include "rendering/drawn/TextComponent2.h"
#include "tools/console/ConsoleComponent.h"
#include "tools/console/ConsoleSystem.h"
#include "tools/console/TextBuffSystem.h"

#include "foundation/Logger.h"
#include "port/win32/VirtualKeys.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <utility>

namespace
{
using Lines = std::vector<std::string>;

constexpr int KEY_LEFT_OF_1 = VK_OEM_3;

/// A level with a console, in a window off-screen, and the keyboard of whoever sits before it.
class Console : public testing::Test
{
protected:
    Console() : scope(platform)
    {
        level.emplace();
        installScriptModule("loader", "def hasLevel(name): return False");
        getSystemDeref<GlobalConfigSystem>().setConsoleEnabled(true);
        system();
        typed();
        entity = level->entity("Console");
        for (const char *quad : {"EntQuad", "EntQuad2"})
            part<QuadComponent2>(quad);
        for (const char *text : {"EntText", "EntText2", "Errors", "Ways"})
            part<TextComponent2>(text);
        console = level->component<ConsoleComponent>(entity, "console");
        console.lookup()->onLoadComplete();
        lineCount = Logger().getLogCount();
    }

    template <class Component>
    void part(const char *name)
    {
        const Handle<Entity> child = level->entity(name, entity);
        level->transform(child);
        level->component<Component>(child, "graphics2");
    }
    template <class Component>
    Component &drawn(const char *name)
    {
        const auto child = handle_cast<Entity>(entity.lookup()->getChild(SCS(name))).lookup();
        return *handle_cast<Component>(child->getComponent(SCS("graphics2"))).lookup();
    }
    std::string text(const char *name) { return drawn<TextComponent2>(name).getText().toCString(); }

    ConsoleComponent &component() { return *console.lookup(); }
    ConsoleSystem &system() { return getSystemDeref<ConsoleSystem>(); }
    TextBuffSystem &typed() { return getSystemDeref<TextBuffSystem>(); }
    InputSystem &input() { return getSystemDeref<InputSystem>(); }

    void open()
    {
        component().setOpen(true);
        component().doFrame();
    }
    void key(int virtualKey, bool down = true)
    {
        platform.record = port::keyInput(static_cast<USHORT>(virtualKey), down);
        input().processWM_INPUT(RIM_INPUT, FakeRawInput::HANDLE_OF_RECORD);
    }
    void tap(int virtualKey)
    {
        key(virtualKey);
        key(virtualKey, false);
    }
    /// Types letters and digits within one frame.
    void type(const char *letters)
    {
        for (; *letters; ++letters)
            tap(std::toupper(*letters));
    }
    void frame() { component().doFrame(); }
    std::string line() { return system().getCurrentHistoryEntry().toCString(); }
    /// The lines of the log since the last call.
    Lines log()
    {
        Lines lines;
        const std::size_t kept = Logger().getHistorySize();
        for (std::size_t i = kept - (Logger().getLogCount() - std::exchange(lineCount, Logger().getLogCount()));
             i < kept; ++i)
            lines.emplace_back(Logger().getHistoryEntry(i).message.toCString());
        return lines;
    }
    Lines run(const char *commandLine)
    {
        log();
        component().executeCommand(SCS(commandLine));
        return log();
    }
    /// Adds a command that takes a text and names the child of the console by it.
    void addCommand(const char *word, const ReflectorPtr &function)
    {
        component().addCommand({SCS(word), String(), String(), function});
    }

    FakeRawInput platform;
    port::ScopedWin32Platform scope;
    std::optional<TestLevel> level;
    Handle<Entity> entity;
    Handle<ConsoleComponent> console;
    std::size_t lineCount = 0;
};
} // namespace

TEST_F(Console, KeysBecomeTokens)
{
    const auto bufferAfter = [this](std::initializer_list<unsigned> keys)
    {
        typed().clear();
        for (const unsigned each : keys)
            typed().add(each);
        return std::string(typed().getText().toCString());
    };
    EXPECT_EQ(bufferAfter({'a', ' ', '~'}), "a ~");
    EXPECT_EQ(bufferAfter({'a', 501}), "UP");
    EXPECT_EQ(bufferAfter({'a', 503}), "DOWN");
    EXPECT_EQ(bufferAfter({'a', 13}), "\n");
    EXPECT_EQ(bufferAfter({'a', 8}), "a\b");
    EXPECT_EQ(bufferAfter({'a', 9}), "aTAB");
    EXPECT_EQ(bufferAfter({27, 31, 127, 500, 502, 0, 65536}), "");
}

TEST_F(Console, WhatIsTypedWithinOneFrameArrivesWhole)
{
    open();
    type("up");
    key(VK_SHIFT);
    type("tab");
    key(VK_SHIFT, false);
    tap(VK_BACK);
    type("x");
    frame();
    EXPECT_EQ(line(), "upTAx");

    log();
    tap(VK_RETURN);
    type("ls");
    frame();
    EXPECT_EQ(log().front(), "upTAx");
    EXPECT_EQ(line(), "ls");
}

TEST_F(Console, LineIsEditedWhereItsCursorStands)
{
    open();
    type("one two");
    const auto after = [this](std::initializer_list<int> keys)
    {
        for (const int each : keys)
            tap(each);
        frame();
        return line();
    };
    EXPECT_EQ(after({VK_LEFT, VK_LEFT, 'X'}), "one txwo") << "in the order in which it was typed";
    EXPECT_EQ(after({VK_HOME, VK_DELETE, 'S'}), "sne txwo");
    EXPECT_EQ(after({VK_BACK, VK_BACK, 'O'}), "one txwo") << "nothing stands before the first one";
    key(VK_CONTROL);
    tap(VK_RIGHT);
    key(VK_CONTROL, false);
    EXPECT_EQ(after({'S', VK_END, VK_BACK}), "ones txw");
    EXPECT_EQ(after({VK_LEFT, VK_ESCAPE, 'A', 'B'}), "ab");

    system().setCurrentEntryLine(SCS("\xC3\xA4\xE2\x82\xAC"));
    EXPECT_EQ(after({VK_LEFT, VK_BACK, VK_DELETE, VK_DELETE, 'C'}), "c") << "whole characters go";
    const std::string shown = text("EntText2");
    frame();
    EXPECT_EQ(std::set<std::string>({shown, text("EntText2")}), std::set<std::string>({"c", "c|"}));
    after({VK_LEFT});
    EXPECT_TRUE(text("EntText2") == "|c" || text("EntText2") == " c") << text("EntText2");
}

TEST_F(Console, UpGivesTheNewestLineFirstAndDownTheLiveLineLast)
{
    for (const char *each : {"one", "two", "three"})
    {
        system().setCurrentEntryLine(SCS(each));
        system().commitEntryLine();
    }
    system().setCurrentEntryLine(SCS("live"));
    open();
    const auto after = [this](int virtualKey)
    {
        tap(virtualKey);
        frame();
        return line();
    };
    EXPECT_EQ(after(VK_DOWN), "live");
    EXPECT_EQ(after(VK_UP), "three");
    EXPECT_EQ(after(VK_UP), "two");
    EXPECT_EQ(after(VK_UP), "one");
    EXPECT_EQ(after(VK_UP), "three") << "it goes round";
    EXPECT_EQ(after(VK_DOWN), "live");
    EXPECT_EQ(after(VK_UP), "three");
    EXPECT_EQ(after('X'), "threex") << "typing makes it the live line";
    EXPECT_EQ(system().getCurrentEntryLine(), SCS("threex"));
    EXPECT_EQ(after(VK_BACK), "three");
    EXPECT_EQ(after(VK_UP), "three") << "and the newest one comes first again";
}

TEST_F(Console, HistoryWithoutLinesHasTheLiveLineOnly)
{
    system().setCurrentEntryLine(SCS("live"));
    system().prevHistoryEntry();
    EXPECT_EQ(line(), "live");
    system().nextHistoryEntry();
    EXPECT_EQ(line(), "live");
}

TEST_F(Console, HistoryIsKeptInItsFile)
{
    const TemporaryFile file("history");
    system().setHistoryFile(SCS(file.path.c_str()));
    for (std::size_t i = 0; i < ConsoleSystem::HISTORY_CAPACITY + 5; ++i)
    {
        system().setCurrentEntryLine(String::format("line %d", static_cast<int>(i)));
        system().commitEntryLine();
    }
    system().setHistoryFile(String());
    EXPECT_EQ(system().getHistorySize(), 0);
    system().setHistoryFile(SCS(file.path.c_str()));
    EXPECT_EQ(system().getHistorySize(), static_cast<int>(ConsoleSystem::HISTORY_CAPACITY));
    system().prevHistoryEntry();
    EXPECT_EQ(line(), "line 204");
}

TEST_F(Console, LinesThatRunNothingSayWhy)
{
    addCommand("hollow", nullptr);
    addCommand("name", entity.lookup()->bind(SCS("setName")));
    const struct
    {
        const char *typed;
        Lines answer;
    } table[] = {
        {"", {"Command not recognized."}},
        {"   ", {"Command not recognized."}},
        {" help", {"Command not recognized."}},
        {"hel", {"Command not recognized.", "'hel' is no command; did you mean 'help'?"}},
        {"hollow", {"Command found, but cannot be called."}},
        {"hollow 1 2", {"Command found, but cannot be called."}},
        {"name", {"Wrong number of args in name, try again. Should be 1, you passed 0"}},
        {"name a  b", {"Wrong number of args in name, try again. Should be 1, you passed 2"}},
        {"name   Console  ", {}},
    };
    for (const auto &row : table)
        EXPECT_EQ(run(row.typed), row.answer) << row.typed;
    EXPECT_EQ(Logger().getHistoryEntry(Logger().getHistorySize() - 1).file, SCS("ConsoleComponent"));
    EXPECT_EQ(entity.lookup()->getName(), SCS("Console")) << "called with one word, and only then";
}

TEST_F(Console, FailedCallTellsItsCode)
{
    const Handle<Entity> gone = level->entity("gone");
    addCommand("late", gone.lookup()->bind(SCS("getName")));
    gone.lookup()->murder();
    level->frame();
    const Lines answer = run("late");
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_EQ(answer[0].find("Function call failed. "), 0u) << answer[0];
    EXPECT_GT(answer[0].size(), sizeof "Function call failed. ");
}

TEST_F(Console, LineCommandGetsTheRestOfItsLine)
{
    component().addCommand({SCS(">"), String(), String(), entity.lookup()->bind(SCS("setName")), true});
    EXPECT_EQ(run(">two words "), Lines());
    EXPECT_EQ(entity.lookup()->getName(), SCS("two words "));
    EXPECT_EQ(run(">   Console"), Lines());
    EXPECT_EQ(entity.lookup()->getName(), SCS("Console"));
}

TEST_F(Console, HelpListsWhatTheGameAndTheLevelHave)
{
    component().addCommand({SCS("fall"), SCS("metres"), SCS("Drops the player."), nullptr});
    const Lines global = {
        "== COMMAND LIST ==",
        "Global Commands:",
        "  clear                        Clears the screen.",
        "  help                         Displays all commands.",
        "  ls           path to object  List the children of an object.",
        "  changeLevel  level name      Discard the current coordinator and load a new level in its place",
        "  reload       python module   reload the specified module. WARNING: some references may not be updated.",
    };
    const auto with = [&global](const Lines &more)
    {
        Lines all = global;
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    EXPECT_EQ(run("help"), with({"Local commands:", "  spawn  'level' 'name'  Adds object into the world.",
                                 "  fall   metres          Drops the player."}));
    entity.lookup()->setName(SCS("Cupboard"));
    EXPECT_EQ(run("help"), with({"No local console available."}));
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(Handle<Coordinator>());
    EXPECT_EQ(run("help"), with({"No coordinator available."}));
}

TEST_F(Console, ListsChildrenAndAssertsThatThePathLeadsSomewhere)
{
    const Handle<Entity> shelf = level->entity("shelf");
    level->entity("cup", shelf);
    level->entity("jug", shelf);
    EXPECT_EQ(run("ls c:/shelf"), (Lines{"cup", "jug"}));
    EXPECT_EQ(run("ls shelf"), (Lines{"cup", "jug"}));
    const std::size_t before = countLogLines("Unable to find object to list children.");
    run("ls c:/shlef");
    EXPECT_EQ(countLogLines("Unable to find object to list children."), before + 1);
}

TEST_F(Console, CommandsOfTheLevelGoBeforeThoseOfTheGame)
{
    component().addCommand({SCS("clearance"), String(), SCS("of the level"), nullptr});
    EXPECT_EQ(component().findWordInDict(SCS("clear"))->description, SCS("Clears the screen."));
    EXPECT_EQ(component().findPartWordInDict(SCS("clear"))->command, SCS("clearance"));
    component().addCommand({SCS("clear"), String(), SCS("of the level"), nullptr});
    EXPECT_EQ(component().findWordInDict(SCS("clear"))->description, SCS("of the level"));
    EXPECT_EQ(component().findWordInDict(SCS("clea")), nullptr);
    EXPECT_EQ(component().findPartWordInDict(SCS("x")), nullptr);
}

TEST_F(Console, TabTakesTheFirstCommandThatTheLineBegins)
{
    open();
    type("ch");
    tap(VK_TAB);
    frame();
    EXPECT_EQ(line(), "changeLevel");
    system().setCurrentEntryLine(SCS("xy"));
    tap(VK_TAB);
    frame();
    EXPECT_EQ(line(), "xy");
}

TEST_F(Console, AliasIsACommandLikeAnyOther)
{
    component().addAlias(SCS("kids"), SCS("ls c:/Console"));
    EXPECT_EQ(run("kids").front(), "EntQuad");
    EXPECT_EQ(run("kids now"), Lines{"Wrong number of args in kids, try again. Should be 0, you passed 1"});
    EXPECT_NE(component().findPartWordInDict(SCS("ki")), nullptr);
    component().addAlias(SCS("kids"), SCS("ls c:/"));
    EXPECT_EQ(run("kids").front(), "Console");
    component().addAlias(SCS("ping"), SCS("pong"));
    component().addAlias(SCS("pong"), SCS("ping"));
    EXPECT_EQ(run("ping"), Lines{"'ping' runs itself without an end"});
    log();
    component().addAlias(SCS("spawn"), SCS("help"));
    component().addAlias(SCS("two words"), SCS("help"));
    EXPECT_EQ(log(), (Lines{"alias: 'spawn' is a command already", "alias: 'two words' is no word that can be typed"}));
}

TEST_F(Console, OpenConsoleTakesTheKeysFromTheGame)
{
    component().addBinding('K', SCS("ls c:/Console"));
    key('W');
    open();
    EXPECT_FALSE(input().isKeyDown('W')) << "what was held is let go";
    key('A');
    EXPECT_FALSE(input().isKeyDown('A'));
    type("k");
    log();
    frame();
    EXPECT_EQ(line(), "ak");
    EXPECT_EQ(log(), Lines()) << "a bound key types while the console is open";

    component().setOpen(false);
    frame();
    type("k");
    EXPECT_EQ(log().front(), "EntQuad");
    tap('W');
    key('W');
    EXPECT_TRUE(input().isKeyDown('W'));
}

TEST_F(Console, KeyThatOpensItClosesItOnceAndTypesNothing)
{
    component().addBinding(KEY_LEFT_OF_1, SCS("console"));
    open();
    key(KEY_LEFT_OF_1, false);
    key(KEY_LEFT_OF_1);
    EXPECT_FALSE(component().getOpen());
    open();
    key(KEY_LEFT_OF_1); // still held: a repeat
    frame();
    EXPECT_TRUE(component().getOpen());
    EXPECT_EQ(line(), "");
}

TEST_F(Console, StaysClosedWhereItIsNotEnabled)
{
    getSystemDeref<GlobalConfigSystem>().setConsoleEnabled(false);
    component().setOpen(true);
    EXPECT_FALSE(component().getOpen());
    typed().setOnOff(true);
    frame();
    EXPECT_FALSE(drawn<QuadComponent2>("EntQuad").getVisible());
    EXPECT_FALSE(input().getNoOp()) << "the game keeps its keys";

    getSystemDeref<GlobalConfigSystem>().setConsoleEnabled(true);
    frame();
    EXPECT_TRUE(drawn<QuadComponent2>("EntQuad").getVisible());
    EXPECT_TRUE(input().getNoOp());
}

TEST_F(Console, ShowsTheLogAndTheLineWithABlinkingCursor)
{
    component().setRows(3);
    open();
    Logger().writeLine(Logger_::I_INFO, "first");
    Logger().writeLine(Logger_::I_ERROR, "second");
    Logger().writeLine(Logger_::I_DEBUG, "not shown");
    Logger().writeLine(Logger_::I_WARNING, "third");
    type("ls");
    frame();
    EXPECT_EQ(text("EntText"), "Information: first\nError: second\nWarning: third\n");
    EXPECT_EQ(text("Errors"), "\nError: second\n\n");
    const std::string first = text("EntText2");
    frame();
    EXPECT_EQ(std::set<std::string>({first, text("EntText2")}), std::set<std::string>({"ls", "ls|"}));

    component().setCharsPerRow(20);
    Logger().writeLine(Logger_::I_INFO, "words that need rows\n\xC3\xA4\xC3\xA4");
    frame();
    EXPECT_EQ(text("EntText"), "Information: words\n    that need rows\n    \xC3\xA4\xC3\xA4\n");
}

TEST_F(Console, ClearEmptiesTheTextOnScreenAndNotTheLog)
{
    open();
    Logger().writeLine(Logger_::I_INFO, "before");
    frame();
    const std::size_t kept = Logger().getHistorySize();
    run("clear");
    frame();
    EXPECT_EQ(text("EntText"), "");
    EXPECT_GE(Logger().getHistorySize(), kept);
    Logger().writeLine(Logger_::I_INFO, "after");
    frame();
    EXPECT_EQ(text("EntText"), "Information: after\n");
}

TEST_F(Console, LogIsScrolledAndSearched)
{
    component().setRows(2);
    open();
    run("clear");
    for (const char *each : {"one", "two", "THREE", "four"})
        Logger().writeLine(Logger_::I_INFO, each);
    tap(VK_PRIOR);
    frame();
    EXPECT_EQ(text("EntText"), "Information: two\nInformation: THREE\n");
    for (int i = 0; i < 9; ++i)
        tap(VK_PRIOR);
    frame();
    EXPECT_EQ(text("EntText"), "Information: one\nInformation: two\n") << "no farther than the first line";
    tap(VK_END);
    component().setShownWords(SCS("three"));
    frame();
    EXPECT_EQ(text("EntText"), "Information: THREE\n");
    component().setShownWords(String());
    component().setShownImportance(Logger_::I_ERROR);
    frame();
    EXPECT_EQ(text("EntText"), "");
}

TEST_F(Console, ClosedConsoleTakesNoMemoryInAFrame)
{
    open();
    component().setOpen(false);
    frame();
    EXPECT_EQ(allocationsOf([this] { frame(); }), 0u);
}

/// A level in which things can be built by patterns of the module "wares".
class Spawning : public Console
{
protected:
    Spawning()
    {
        installScriptModule("wares",
                            "import kaVel\n"
                            "def Bare(parent, name): return kaVel.make('Entity', parent=parent, name=name)\n"
                            "def Timer(parent, name): return kaVel.make('TimeKeeper', parent=parent, name=name)\n"
                            "def Box(parent, name):\n"
                            "    box = Bare(parent, name)\n"
                            "    kaVel.addComponent(box, 'transform', 'TransformComponent')\n"
                            "    return box\n");
    }

    std::string answerTo(const char *commandLine) { return run(commandLine).back(); }
};

TEST_F(Spawning, SaysWhatIsMissingInItsOrder)
{
    EXPECT_EQ(answerTo("spawn wares Box"), "Could not find the player.");
    const Handle<Entity> player = level->entity("Player");
    EXPECT_EQ(answerTo("spawn wares Box"), "The player does not have a transform component");
    level->transform(player, Vec4(2.2f, 0.f, 1.3f, 1.f));
    EXPECT_EQ(answerTo("spawn wares Box"), "Could not find current map");
    const Handle<MapRootEntity> map = level->map("cellar", Vec4(0, 0, 0, 1), Vec4(20, 4, 20, 0));
    EXPECT_EQ(answerTo("spawn wares Timer"), "spawned object was not an Entity");
    EXPECT_EQ(answerTo("spawn wares Bare"), "spawned object had no transform component");
    EXPECT_EQ(answerTo("spawn wares Box"), "Could not look up the player's grid coordinates.");
    level->frame();
    EXPECT_FALSE(map.lookup()->getChild(SCS("Box_spawned3")).isValid()) << "what has no place goes again";

    const Handle<Entity> grid = level->entity(".MapData_mainPathGrid", map);
    level->transform(grid).lookup()->setScale(Vec4(20, 1, 20, 0));
    const auto cells = level->component<SquareGrid>(grid, "grid").lookup();
    cells->onLoadComplete();
    run("spawn wares Box");
    const auto box = handle_cast<Entity>(map.lookup()->getChild(SCS("Box_spawned4"))).lookup();
    ASSERT_TRUE(box);
    const auto stance = handle_cast<TransformComponent>(box->getComponent(SCS("transform"))).lookup();
    const Vec4 place = cells->getCellFromPoint(Vec4(2.2f, 0.f, 1.3f, 1.f)).getWorldCoords();
    EXPECT_EQ(stance->getPosition().x, place.x);
    EXPECT_EQ(stance->getPosition().z, place.z);
}
