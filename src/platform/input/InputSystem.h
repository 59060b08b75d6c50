// InputSystem: turns raw input and pad states into messages of the engine.
#pragma once

#include "platform/input/InputDevices.h"
#include "platform/window/PlayedWindow.h"

#include "engine/systems/System.h"
#include "object/tree/ReflectorPtr.h"

#include <bitset>

/// The one place where the game hears of keyboard, mouse and pads.
///
/// Sends the messages of InputMessages.h through the post office as the input arrives, and remembers what is down.
/// Positions are normalised window coordinates. Text that is typed goes to the TextCapture as well.
class InputSystem : public System, private WindowWitness
{
    KV_REFLECTED(InputSystem)
public:
    static constexpr unsigned KEYS = 65536;
    static constexpr unsigned BUTTONS = 6;
    static constexpr unsigned NO_BUTTON = 5; ///< in MousePos while no button is held

    InputSystem() = default;

    /// Takes the record behind a WM_INPUT message: key and button transitions, wheel and motion. Anything that is no
    /// full record is dropped, and so are the devices' records while recorded input is played back.
    void processWM_INPUT(WPARAM wParam, LPARAM lParam);
    /// Takes the text behind a WM_CHAR message, a unit of UTF-16, to whoever captures text; control characters come as
    /// keys. The text of a key that opened or closed the capture is dropped.
    void processWM_CHAR(WPARAM wParam);
    /// Takes a character of a recording to whoever captures text.
    void typePlayed(unsigned character);
    /// Begins a frame of the pads, which rest while text is entered, and of recorded input; see InputDevices::update.
    void update();
    /// Forgets every key and button that is down, without a message.
    void clear();

    /// Notes everything that is down as up and sends its messages, as when the player takes his hands away.
    void letGo();

    /// Notes a key as down and sends KeyDownMessage, unless input is dropped.
    /// @param key  virtual-key code, below 65536
    void keyDown(unsigned key);
    /// Notes a key as up and sends KeyUpMessage, unless input is dropped.
    void keyUp(unsigned key);
    /// Notes a button as down and sends MouseDownMessage, unless input is dropped.
    /// @param click  0 left, 1 right, 2 middle, 3 and 4 the side buttons
    void mouseDown(unsigned click);
    /// Notes a button as up and sends MouseUpMessage, unless input is dropped.
    void mouseUp(unsigned click);
    /// Sends MouseWheelMessage, unless input is dropped.
    /// @param direction  120 a notch away from the player, -120 a notch towards him
    void mouseWheel(int direction);
    /// Sends MouseMove with a motion in pixels, and takes over the cursor's position, unless input is dropped.
    void mouseMove(float x, float y);
    /// Takes over the cursor's position, counted from the lower edge, and sends MousePos, unless input is dropped. The
    /// arguments, the motion in pixels, play no part.
    void mousePos(float x, float y);

    /// Puts a key's transition among the input that the window brings next, as if the keyboard had told it: a
    /// recording takes it.
    /// @param key  virtual-key code; one above 255 is no key, and nothing comes
    void postKey(unsigned key, bool down);
    /// Puts a mouse record among the input that the window brings next, as if the mouse had told it.
    /// @param x            motion to the right, pixels
    /// @param y            motion downwards, pixels
    /// @param transitions  of buttons: bit 0 left down, bit 1 left up, and so on for right, middle and the side buttons
    /// @param wheel        120 a notch away from the player
    void postMouse(int x, int y, unsigned transitions = 0, int wheel = 0);

    /// Sets both motors of a player's pad, 0 still to 65535 full.
    void setVibration(unsigned player, WORD vib);
    /// Sets them by a part of their strength, 0 still to 1 full: `setVibration` for scripts.
    void shakePad(unsigned player, float strength);
    /// Drops key and mouse events while set, and lets the cursor go meanwhile.
    ///
    /// What is released during that time is released for the game when it ends.
    void setNoOp(bool drop);
    /// Says whether a screen is before the player, who takes no input then: whoever plays asks for it.
    ///
    /// Messages are sent as ever, since screens live by them. What is down when it begins is let go.
    void setScreenTakesInput(bool val);
    bool getScreenTakesInput() const { return screenTakesInput; }
    /// Plays a recording back from the next frame on in the place of all devices, up to its end; see InputReplay. An
    /// empty name stops it.
    void setReplayFile(const String &file);
    /// Records all input from the next frame on, in a file that setReplayFile takes. An empty name stops it.
    void setRecordFile(const String &file);
    /// Records all input beside that, as is kept of every run; what cannot be kept costs a warning. An empty name stops
    /// it.
    void setRunFile(const String &file);

    /// Sets how far the left stick of a pad has to be moved before it counts, as a part of its way, 0 to 0.9.
    void setWalkDeadZone(float part) { inDev.setDeadZone(Rawx::LEFT, part); }
    float getWalkDeadZone() const { return inDev.getDeadZone(Rawx::LEFT); }
    /// Sets how far the right stick of a pad has to be moved before it counts, as a part of its way, 0 to 0.9.
    void setLookDeadZone(float part) { inDev.setDeadZone(Rawx::RIGHT, part); }
    float getLookDeadZone() const { return inDev.getDeadZone(Rawx::RIGHT); }

    bool isKeyDown(unsigned key) const { return key < KEYS && keyState[key]; }
    bool isMouseDown(unsigned click) const { return click < BUTTONS && mouseState[click]; }
    float getMouseX() const { return mouseX; }
    float getMouseY() const { return mouseY; }
    bool getNoOp() const { return noOp; }
    String getReplayFile() const { return replayFile; }
    /// Whether recorded input stands in for the devices.
    bool getReplaying() const { return inDev.getReplay().isPlaying(); }
    /// Whether a message is of recorded input that plays; those the game had heard, whatever stands on the screen now.
    bool isPlayed(LPARAM rawInput) const;
    ReflectorPtr getOnlooker() const { return onlooker; }
    /// Sets what is called with the virtual key of each key that is pressed while recorded input plays, of which the game
    /// hears nothing.
    void setOnlooker(ReflectorPtr val) { onlooker = val; }
    String getRecordFile() const { return recordFile; }
    String getRunFile() const { return runFile; }
    /// The code that a key types, for TextCapture::add, with shift and caps lock as they are; 0 for none.
    unsigned convertToAscii(unsigned key) const;
    /// The devices themselves, for the process's main loop.
    InputDevices &getInputDevices() { return inDev; }

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;

private:
    void tellOnlooker(const RAWINPUT &input);
    void processMouse(const RAWINPUT &input);
    void processButtons(const RAWMOUSE &mouse);
    void processKey(const RAWINPUT &input);
    void captureText(unsigned key, bool repeated, bool typesByTable);
    void type(char32_t character);
    void focusChanged(bool active) override;
    void sizeTaken(int width, int height, bool byUser) override;
    void releaseWhatWasLetGo();
    POINT readCursor() const;
    void takeCursor(float x, float y);
    unsigned lowestButtonDown() const;

    float mouseX = 0.0f;           ///< normalised
    float mouseY = 0.0f;           ///< normalised
    BYTE keyState[KEYS] = {};      ///< 1: down, as the game was told
    BYTE mouseState[BUTTONS] = {}; ///< 1: down, as the game was told
    bool noOp = false;
    bool screenTakesInput = false;
    bool cursorWasHeld = false; ///< when noOp was set
    InputDevices inDev;

    std::bitset<256> heldKeys;        ///< down on the keyboard, told to the game or not
    std::bitset<BUTTONS> heldButtons; ///< down on the mouse, told to the game or not
    bool capsLock = false;
    POINT replayedCursor{0, 0}; ///< of the last mouse record of a recording, client pixels
    String replayFile;
    ReflectorPtr onlooker; ///< of recorded input that plays
    String recordFile;
    String runFile;
    bool keyTypes = false;  ///< whether the text of the key that was pressed last is to be taken
    char16_t firstHalf = 0; ///< of a character of two units; 0: none
};
