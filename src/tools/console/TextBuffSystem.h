// TextBuffSystem: turns the keys that are typed into editing tokens.
#pragma once

#include "engine/systems/System.h"

#include "foundation/KVString.h"

#include <deque>
#include <memory>

/// Text typed since it was last cleared, while the console is open.
///
/// The buffer holds either one token ("UP", "DOWN", "TAB", a newline, a backspace, and "LEFT", "RIGHT", "HOME", "END",
/// "WORDLEFT", "WORDRIGHT", "DELETE", which only a keyboard makes) or plain text in UTF-8, as long as its reader keeps up. What was typed faster than that waits behind it, in order, and comes with `refill`. While it captures, keys
/// and buttons are dropped for the game, and pads rest: see `InputSystem::setNoOp`.
class TextBuffSystem : public System
{
    KV_REFLECTED(TextBuffSystem)
public:
    TextBuffSystem();
    ~TextBuffSystem() override;

    /// Takes one typed key: 501 stores "UP", 503 stores "DOWN", 13 stores a newline as the whole buffer, 8 appends a
    /// backspace, 9 appends "TAB", 32 to 126 append themselves. Any other is ignored.
    void add(unsigned key);
    /// What was typed since the last `clear`.
    String getText() const { return buffer; }
    void clear() { buffer = String(); }
    /// Takes on what waited for the buffer to be cleared; false where nothing did.
    bool refill();

    /// Opens or closes the console; it is open only while GlobalConfigSystem's consoleEnabled is set, too.
    void setOnOff(bool val);
    bool getOnOff() const { return onOff; }
    /// Whether text is being entered now.
    bool isCapturing() const;
    /// Takes the keys from the game, or gives them back, if either switch has changed. The console's frame step.
    void followSwitches();

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;

private:
    class Keys;

    void type(unsigned key);
    void take(unsigned key);
    bool isTakenWhole(unsigned key) const;

    String buffer;
    bool onOff = false;
    bool capturing = false;       ///< keys are taken from the game
    bool inputWasDropped = false; ///< before they were taken
    std::deque<unsigned> waiting; ///< typed behind what the buffer holds
    std::unique_ptr<Keys> keys;   ///< installed as the capture of the input system
};
