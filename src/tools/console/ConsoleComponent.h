// ConsoleComponent: the console of one level, which runs what is typed and draws it over the world.
#pragma once

#include "tools/console/ConsoleCommand.h"
#include "tools/console/ConsoleRows.h"
#include "tools/console/ConsoleScreen.h"
#include "tools/console/LineCaret.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"

#include <map>
#include <string>
#include <vector>

class ConsoleSystem;
class TextBuffSystem;

/// The console of a level, under the component key "console" of its entity "Console".
///
/// Open while `TextBuffSystem` captures. The level goes on meanwhile; a stopped one has a console, too. Its entity has
/// the children that `ConsoleScreen` draws with. A line is one command: its first word, and arguments with blanks
/// between them. Whatever fails is a line of the log at an error's importance; nothing ends by it.
class ConsoleComponent : public SimpleComponent
{
    KV_REFLECTED(ConsoleComponent)
public:
    /// Virtual-key code -> the line that the key runs.
    typedef std::map<int, String> BindingMap;

    ConsoleComponent() = default;

    /// Adds the command "spawn" and begins to hear keys.
    void onLoadComplete() override;
    /// Runs what was typed, and shows the log and the line.
    void doFrame() override;

    /// Runs one line: finds the command and calls its function with the words behind it.
    ///
    /// A command whose word is one mark, as ">", needs no blank behind it.
    void executeCommand(const String &commandString);
    /// Adds a command behind those that this level has.
    void addCommand(const ConsoleCommand &word);
    /// Gives a line a name of its own, which is a command like any other; an alias of that name is replaced.
    ///
    /// A name that a command of the level has already, or with a blank in it, is refused.
    void addAlias(const String &aliasName, const String &command);
    /// Has a key run a line while the console is closed; an empty line frees the key.
    ///
    /// A key bound to the command "console" closes the console, too.
    /// @param key  virtual-key code
    void addBinding(int key, const String &command);
    /// Writes the commands of this level to the log.
    void printHelp();
    /// Writes what is wrong with a line to the log, as an error of the console's own.
    void complain(const String &text);
    /// How often something has been wrong with a line so far.
    int getComplaintCount() const { return complaintCount; }
    /// Builds an object by its pattern and puts it in the cell of the main path grid in which the player stands.
    /// @param first_arg   a level, or a module of patterns as "objects.GameObjects"
    /// @param second_arg  the pattern's name in it
    void spawnDict(const String &first_arg, const String &second_arg);

    /// Opens the console, or closes it; only one that GlobalConfigSystem's consoleEnabled allows opens.
    void setOpen(bool val);
    bool getOpen() const;
    /// Runs the line that a key is bound to. Message handler.
    void handleKeyDown(const ReflectorPtr &message, int key);
    /// Takes a key while the console is open: those that close it, scroll it and empty the line.
    bool takesKey(int key, bool repeated);

    /// Characters of a row before a line goes on in the next one, 8 or more.
    int getCharsPerRow() const { return charsPerRow; }
    void setCharsPerRow(int val);
    /// Rows of the log that are shown, 1 to 60.
    int getRows() const { return rows; }
    void setRows(int val);
    /// How much the console hides of the world: 0 nothing, 255 all.
    int getAlpha() const { return alpha; }
    void setAlpha(int val);
    /// The least important lines of the log that are shown.
    Logger_::Importance getShownImportance() const { return choice.least; }
    void setShownImportance(Logger_::Importance val);
    /// What lines of the log must have in them to be shown, in letters of either case; empty for all lines.
    String getShownWords() const { return String::copyFrom(choice.words); }
    void setShownWords(const String &val);
    /// What stands in the console's upper right corner, as values that are watched.
    String getWatchText() const { return watchText; }
    void setWatchText(const String &val) { watchText = val; }
    /// A function that completes lines: it takes the line, and gives a text with one way to go on in each of its lines.
    ///
    /// A way is the whole line as it would be, what to show of it, and a sentence on it, with tabs between them.
    ReflectorPtr getCompleter() const { return completer; }
    void setCompleter(ReflectorPtr val) { completer = val; }
    /// All commands of the level and the game, in the order in which they are looked for.
    ///
    /// One a line: the word, the arguments and the description, with tabs between them.
    String getCommandTable() const;
    /// The values that a property of an object may have, if it is an enum.
    ///
    /// One a line: the name and its comment, with a tab between them.
    String enumNames(Handle<Object> object, const String &property) const;
    /// The command that a line begins to be, by its first letters; empty if there is none.
    String completeWord(const String &begun) const;

    /// The command of exactly this word: the level's first, then the game's; null if there is none.
    const ConsoleCommand *findWordInDict(const String &command) const;
    /// The first command that begins with this text, in the order of `findWordInDict`; null if there is none.
    const ConsoleCommand *findPartWordInDict(const String &command) const;

    /// The console of the level in charge; invalid where it has none.
    static Handle<ConsoleComponent> ofCurrentLevel();

private:
    /// A way to go on with the line.
    struct Way
    {
        std::string line;
        std::string shown;
        std::string sentence;
    };

    void callCommand(const ConsoleCommand &entry, const std::vector<String> &words);
    void runAlias(const String &aliasName);
    void tellUnknown(const String &word);
    Handle<Object> construct(const String &module, const String &pattern, const Handle<Object> &map, Vec4 place);

    void takeToken(const String &token, ConsoleSystem &console);
    bool moveCaret(const String &token, const String &line);
    void takeLine(ConsoleSystem &console);
    void complete(ConsoleSystem &console);
    void findWays(const String &line);
    void scroll(int by);
    void showLog(const ConsoleSystem &console);
    String describeWays() const;

    BindingMap keyBindings;
    CommandList localCommands;
    unsigned max_command = 0;     ///< widest entry seen, characters
    unsigned max_param = 0;       ///< widest entry seen, characters
    unsigned max_description = 0; ///< widest entry seen, characters
    int charsPerRow = 80;
    int rows = 20;
    int alpha = 200;           ///< 0..255
    unsigned lastLogCount = 0; ///< lines of the log that the text on screen knows

    std::map<String, String> aliases; ///< name -> line
    int depth = 0;                    ///< lines that are being run inside each other
    int complaintCount = 0;
    int spawned = 0; ///< objects, for their names
    bool cursorShown = false;
    LineCaret caret;        ///< of the input row
    bool logIsStale = true; ///< another part of the log is to be shown
    std::size_t back = 0;   ///< rows that the text on screen ends above the log's end
    ConsoleRows::Choice choice;
    ConsoleRows logRows;
    ConsoleScreen screen;
    String watchText;
    ReflectorPtr completer;
    std::vector<Way> ways; ///< to go on with `completed`
    String completed;      ///< the line that the ways were found for
    int chosenWay = -1;    ///< that the line shows; -1: none yet
};
