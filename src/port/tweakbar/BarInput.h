// BarInput: window messages as input of the debug bars.
#pragma once

#include "port/tweakbar/Bars.h"

#include <bitset>
#include <vector>

namespace port
{

/// Decides which messages are for a bar, and hands these on.
///
/// A release goes where the press went, so that neither the game nor a bar is left with a key that seems held.
class BarInput
{
public:
    /// Whether a bar takes the message, and with it the raw record of the same input.
    bool event(UINT msg, WPARAM wParam, LPARAM lParam);
    /// Hands what arrived since the last frame to the library, a press that was let go meanwhile included.
    void beginFrame();
    /// Tells where bars stand, from the next message on.
    void setBars(std::vector<TweakPlace> places) { bars = std::move(places); }
    /// Whether there is a cursor to hear: a mouse that turns the player's head is nowhere.
    void setHearsMouse(bool val) { hearsMouse = val; }
    /// Takes the next press of the left button that is on no bar, for `takePick`, or no longer.
    void setPicking(bool val) { picking = val; }
    /// Where the press was that was taken, once.
    bool takePick(int &x, int &y);
    /// Lets go of everything.
    void clear();
    /// Whether the mouse is on a bar, or drags something on one.
    bool wantsMouse() const;
    /// Whether a text is being typed.
    bool wantsKeyboard() const;

private:
    static constexpr std::size_t BUTTONS = 3;

    bool button(std::size_t index, bool down);
    bool key(std::size_t virtualKey, bool down);
    bool rawInput(LPARAM lParam);
    bool rawMouse(unsigned flags);

    std::vector<TweakPlace> bars;
    bool hearsMouse = true;
    bool picking = false;
    bool picked = false;
    int pickX = 0;
    int pickY = 0;
    int mouseX = -1; ///< client pixels
    int mouseY = -1;
    std::bitset<BUTTONS> held;     ///< buttons that are down, wherever they were pressed
    std::bitset<BUTTONS> taken;    ///< buttons whose press a bar took
    std::bitset<BUTTONS> clicked;  ///< taken since the last frame
    std::bitset<BUTTONS> rawTaken; ///< as taken, of the raw records, which come first
    std::bitset<256> keysTaken;    ///< keys whose press a bar took
    std::bitset<256> keysPressed;  ///< taken since the last frame
    std::bitset<256> rawKeysTaken; ///< as keysTaken, of the raw records
};

} // namespace port
