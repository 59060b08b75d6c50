// CursorComponent: gives what the player does to the topmost screen of a level.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "engine/time/TimeSystem.h"
#include "platform/input/TextCapture.h"

#include <vector>

class MenuComponent;

/// What the player used last.
enum MenuDevice
{
    MD_KEYS = 0,
    MD_MOUSE = 1,
    MD_PAD = 2
};

/// The pointer of a level, on its entity "Cursor".
///
/// Hears keyboard, mouse and the first pad in the level's post office, and once a frame gives what came to the topmost
/// screen: arrows, W A S D, the cross and the left stick move, and repeat while they are held; Tab steps; Enter, Space
/// and A press; Escape, B and Start go back; Q, E, page keys and shoulders turn pages. What comes in the frame in which a
/// first screen is opened belongs to the game and is left out. While there is a screen the window's cursor is free, and
/// afterwards it is held again; it is seen until keys or a pad are used, and again when the mouse moves. The player
/// takes nothing meanwhile: see `InputSystem::setScreenTakesInput`.
class CursorComponent : public SimpleComponent, public TextCapture
{
    KV_REFLECTED(CursorComponent)
public:
    CursorComponent() = default;
    ~CursorComponent() override;

    /// Begins to hear the level's input.
    void onLoadComplete() override;
    void onMurder() override;
    /// Gives what has come since the last frame to the screen.
    void doFrame() override;

    Handle<MenuComponent> getTop() const { return top; }
    /// The screen that takes input.
    void setTop(Handle<MenuComponent> val);
    /// Has no screen take input any more.
    void clearTop() { setTop(Handle<MenuComponent>()); }
    /// What the player used last.
    MenuDevice getDevice() const { return device; }

    void handleKey(const ReflectorPtr &message, int key);
    void handleMouseButton(const ReflectorPtr &message, unsigned click, float x, float y);
    void handlePointer(const ReflectorPtr &message, unsigned button, float x, float y);
    void handleWheel(const ReflectorPtr &message, int direction, float x, float y);
    void handlePadButton(const ReflectorPtr &message, int button, unsigned player);
    void handleStick(const ReflectorPtr &message, float x, float y, unsigned player);
    void handleTrigger(const ReflectorPtr &message, float position, unsigned player);

private:
    enum Kind
    {
        KEY_DOWN,
        KEY_UP,
        BUTTON_DOWN,
        BUTTON_UP,
        POINT,
        WHEEL,
        TYPED_KEY,
        TYPED_CHARACTER
    };
    struct Event
    {
        Kind kind;
        int code;
        float x, y; ///< pixels from the upper left
    };
    /// What is done again while something is held.
    struct Repeat
    {
        int x = 0, y = 0; ///< a move
        int step = 0;     ///< or a step
        int key = 0;      ///< that is held; 0: the pad
        Seconds in = 0.0; ///< until the next time
    };

    bool wantsText() const override { return capturing; }
    void add(unsigned key) override;
    void addCharacter(char32_t character) override;
    void note(Kind kind, int code, float x, float y);
    void give(MenuComponent &menu, const Event &event);
    void movePointer(MenuComponent &menu, float x, float y);
    void giveKey(MenuComponent &menu, int key);
    void givePad(MenuComponent &menu);
    void givePadButtons(MenuComponent &menu, int pressed, int moved);
    void repeat(MenuComponent &menu);
    void begin(MenuComponent &menu, const Repeat &what);
    void use(MenuDevice val);
    void followState();
    void capture(bool val);

    Handle<MenuComponent> top;
    MenuDevice device = MD_KEYS;
    bool listening = false;
    bool capturing = false; ///< typed keys come here
    TextCapture *captureBefore = nullptr;
    std::vector<Event> events; ///< since the last frame
    Repeat held;
    bool repeating = false;
    int padNow = 0, padBefore = ~0;         ///< bits of buttons, the triggers' among them
    int stickNow = 0, stickBefore = ~0;     ///< the left stick as bits of the cross
    float pointerX = -1.f, pointerY = -1.f; ///< pixels
};
