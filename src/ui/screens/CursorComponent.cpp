#include "ui/screens/CursorComponent.h"

#include "ui/screens/MenuComponent.h"

#include "engine/levels/BranchPostOffice.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/screen/ScreenMetrics.h"
#include "object/tree/WellKnownPaths.h"
#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowSystem2.h"
#include "rendering/drawn/ScreenPixels.h"

#include "port/win32/VirtualKeys.h"
#include "port/xinput/XInput.h"

#include <cmath>
#include <utility>

namespace
{
constexpr std::size_t MOST_EVENTS = 256;           ///< of one frame; what comes beyond is lost
constexpr Seconds FIRST_WAIT = 0.38, WAIT = 0.085; ///< before a held key is taken again
constexpr float STICK_MOVES = 0.55f;               ///< part of a stick's way
constexpr float TRIGGER_PULLED = 0.35f;            ///< part of a trigger's way
/// Triggers, as buttons beyond those that a pad tells of; `PAD_BUTTONS` of the scripts' bindings has them, too.
constexpr int LEFT_TRIGGER = 0x10000, RIGHT_TRIGGER = 0x20000;
constexpr float NOTCH = 120.f;
constexpr int LEFT_BUTTON = 0, BACK_BUTTON = 3;

/// The direction that a key means; 0 and 0 for none.
std::pair<int, int> directionOf(int key)
{
    switch (key)
    {
    case VK_LEFT:
    case 'A':
        return {-1, 0};
    case VK_RIGHT:
    case 'D':
        return {1, 0};
    case VK_UP:
    case 'W':
        return {0, -1};
    case VK_DOWN:
    case 'S':
        return {0, 1};
    default:
        return {0, 0};
    }
}

/// The direction that buttons of the cross mean; the left stick counts as them.
std::pair<int, int> crossDirection(int buttons)
{
    if (buttons & XINPUT_GAMEPAD_DPAD_UP)
        return {0, -1};
    if (buttons & XINPUT_GAMEPAD_DPAD_DOWN)
        return {0, 1};
    if (buttons & XINPUT_GAMEPAD_DPAD_LEFT)
        return {-1, 0};
    return {buttons & XINPUT_GAMEPAD_DPAD_RIGHT ? 1 : 0, 0};
}

InputSystem &input()
{
    return getSystemDeref<InputSystem>();
}

/// Pixels of the picture from the upper left, of a place as the mouse tells it: from below.
std::pair<float, float> toPixels(float x, float y)
{
    const ScreenMetrics &metrics = getScreenMetrics();
    const float pixels = getPixelsPerUnit();
    const float height = static_cast<float>(metrics.height) / metrics.normalizationFactor;
    return {x * pixels, (height - y) * pixels};
}
} // namespace

CursorComponent::~CursorComponent()
{
    capture(false);
}

void CursorComponent::onLoadComplete()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const auto office =
        level ? handle_cast<BranchPostOffice>(level->getDescendantByPath(WellKnownPaths::branchPostOffice)).lookup()
              : Handle<BranchPostOffice>::Result{};
    if (!office)
        return;
    const std::pair<ReflectorPtr, String> heard[] = {{KeyDownMessage, SCS("handleKey")},
                                                     {KeyUpMessage, SCS("handleKey")},
                                                     {MouseDownMessage, SCS("handleMouseButton")},
                                                     {MouseUpMessage, SCS("handleMouseButton")},
                                                     {MousePos, SCS("handlePointer")},
                                                     {MouseWheelMessage, SCS("handleWheel")},
                                                     {ButtonPressed, SCS("handlePadButton")},
                                                     {LeftJoyPos, SCS("handleStick")},
                                                     {LeftTriggerPos, SCS("handleTrigger")},
                                                     {RightTriggerPos, SCS("handleTrigger")}};
    for (const auto &[message, method] : heard)
        office->registerMessageHandler(message, bind(method));
    events.reserve(MOST_EVENTS);
}

void CursorComponent::onMurder()
{
    setTop(Handle<MenuComponent>());
    followState();
    SimpleComponent::onMurder();
}

void CursorComponent::setTop(Handle<MenuComponent> val)
{
    top = val;
    repeating = false;
}

void CursorComponent::note(Kind kind, int code, float x, float y)
{
    if (!listening || events.size() >= MOST_EVENTS)
        return;
    const auto [left, down] = toPixels(x, y);
    if (std::isfinite(left) && std::isfinite(down))
        events.push_back({kind, code, left, down});
}

void CursorComponent::handleKey(const ReflectorPtr &message, int key)
{
    note(message == KeyDownMessage ? KEY_DOWN : KEY_UP, key, 0.f, 0.f);
}

void CursorComponent::handleMouseButton(const ReflectorPtr &message, unsigned click, float x, float y)
{
    note(message == MouseDownMessage ? BUTTON_DOWN : BUTTON_UP, static_cast<int>(click), x, y);
}

void CursorComponent::handlePointer(const ReflectorPtr &, unsigned, float x, float y)
{
    note(POINT, 0, x, y);
}

void CursorComponent::handleWheel(const ReflectorPtr &, int direction, float x, float y)
{
    note(WHEEL, direction, x, y);
}

void CursorComponent::handlePadButton(const ReflectorPtr &, int button, unsigned player)
{
    if (player == 0)
        padNow |= button;
}

void CursorComponent::handleStick(const ReflectorPtr &, float x, float y, unsigned player)
{
    if (player != 0)
        return;
    if (std::fabs(y) >= STICK_MOVES && std::fabs(y) >= std::fabs(x))
        stickNow |= y > 0.f ? XINPUT_GAMEPAD_DPAD_UP : XINPUT_GAMEPAD_DPAD_DOWN;
    else if (std::fabs(x) >= STICK_MOVES)
        stickNow |= x > 0.f ? XINPUT_GAMEPAD_DPAD_RIGHT : XINPUT_GAMEPAD_DPAD_LEFT;
}

void CursorComponent::handleTrigger(const ReflectorPtr &message, float position, unsigned player)
{
    if (player == 0 && position > TRIGGER_PULLED)
        padNow |= message == LeftTriggerPos ? LEFT_TRIGGER : RIGHT_TRIGGER;
}

void CursorComponent::add(unsigned key)
{
    note(TYPED_KEY, static_cast<int>(key), 0.f, 0.f);
}

void CursorComponent::addCharacter(char32_t character)
{
    note(TYPED_CHARACTER, static_cast<int>(character), 0.f, 0.f);
}

void CursorComponent::doFrame()
{
    for (std::size_t i = 0; i < events.size(); ++i)
        if (const auto menu = top.lookup())
            give(*menu, Event(events[i]));
    events.clear();
    if (const auto menu = top.lookup(); menu && listening)
    {
        givePad(*menu);
        repeat(*menu);
    }
    padBefore = padNow;
    stickBefore = stickNow;
    padNow = stickNow = 0;
    followState();
}

/// Takes over what has become of the screens: whom the input belongs to, and whether it is typed.
void CursorComponent::followState()
{
    const auto menu = top.lookup();
    const bool wanted = menu && menu->getVisible();
    if (wanted || listening)
        input().setScreenTakesInput(wanted);
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    const bool dropped = input().getNoOp();
    if (wanted && !dropped)
        window.setCursorMode(WindowSystem2::CURSOR_ABSOLUTE);
    else if (listening && !wanted && !dropped)
        window.setCursorMode(WindowSystem2::CURSOR_RELATIVE);
    if (wanted && !listening)
    {
        window.setPointerShown(true);
        padBefore = stickBefore = ~0; // what is held already has been pressed for the game
        pointerX = -1.f;
    }
    listening = wanted;
    if (!wanted)
        repeating = false;
    capture(wanted && menu->wantsText() && !dropped);
}

void CursorComponent::capture(bool val)
{
    if (capturing == val)
        return;
    capturing = val;
    // That of the console, not of another level's cursor, which may go before this one.
    const auto *const other = dynamic_cast<const CursorComponent *>(current());
    if (val)
        captureBefore = other ? other->captureBefore : current();
    if (val || current() == this)
        setCurrent(val ? this : captureBefore);
}

void CursorComponent::use(MenuDevice val)
{
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    if (device == val && window.getPointerShown() == (val == MD_MOUSE))
        return;
    device = val;
    window.setPointerShown(val == MD_MOUSE);
}

void CursorComponent::give(MenuComponent &menu, const Event &event)
{
    static const String key = SCS("key"), button = SCS("button");
    switch (event.kind)
    {
    case KEY_DOWN:
        use(MD_KEYS);
        if (!menu.wantsText() && !menu.giveRaw(key, event.code))
            giveKey(menu, event.code);
        return;
    case KEY_UP:
        repeating &= held.key != event.code;
        return;
    case TYPED_KEY:
        return menu.type(static_cast<unsigned>(event.code), false);
    case TYPED_CHARACTER:
        return menu.type(static_cast<unsigned>(event.code), true);
    case WHEEL:
        return menu.wheel(event.x, event.y, static_cast<float>(event.code) / NOTCH);
    case BUTTON_DOWN:
        use(MD_MOUSE);
        if (menu.giveRaw(button, event.code))
            return;
        if (event.code == BACK_BUTTON)
            menu.goBack();
        if (event.code == LEFT_BUTTON)
            menu.pointerDown(event.x, event.y);
        return;
    case BUTTON_UP:
        if (event.code == LEFT_BUTTON)
            menu.pointerUp(event.x, event.y);
        return;
    case POINT:
        if (pointerX == event.x && pointerY == event.y)
            return;
        return movePointer(menu, event.x, event.y);
    }
}

/// The first place after a screen has come is where the pointer was put, and says nothing of the player's hand.
void CursorComponent::movePointer(MenuComponent &menu, float x, float y)
{
    const bool first = pointerX < 0.f;
    pointerX = x;
    pointerY = y;
    if (first)
        return;
    use(MD_MOUSE);
    menu.pointerDrag(x, y);
}

void CursorComponent::giveKey(MenuComponent &menu, int key)
{
    if (const auto [x, y] = directionOf(key); x || y)
        return begin(menu, {x, y, 0, key, FIRST_WAIT});
    const bool withAlt = input().isKeyDown(VK_MENU);
    switch (key)
    {
    case VK_TAB:
        return begin(menu, {0, 0, input().isKeyDown(VK_SHIFT) ? -1 : 1, key, FIRST_WAIT});
    case VK_RETURN:
    case VK_SPACE:
        return withAlt ? void() : menu.press();
    case VK_ESCAPE:
        return menu.goBack();
    case 'Q':
    case VK_PRIOR:
        return menu.turnPage(-1);
    case 'E':
    case VK_NEXT:
        return menu.turnPage(1);
    default:
        return;
    }
}

void CursorComponent::givePad(MenuComponent &menu)
{
    const int pressed = padNow & ~padBefore;
    const int moved = (padNow | stickNow) & ~(padBefore | stickBefore);
    const auto [heldX, heldY] = crossDirection(padNow | stickNow);
    if (repeating && held.key == 0 && (heldX != held.x || heldY != held.y))
        repeating = false;
    if (!pressed && !moved)
        return;
    use(MD_PAD);
    static const String pad = SCS("pad");
    for (int bit = 1; bit <= RIGHT_TRIGGER; bit <<= 1)
        if ((pressed & bit) && menu.giveRaw(pad, bit))
            return;
    if (!menu.getInputTaken())
        givePadButtons(menu, pressed, moved);
}

void CursorComponent::givePadButtons(MenuComponent &menu, int pressed, int moved)
{
    if (const auto [x, y] = crossDirection(moved); x || y)
        begin(menu, {x, y, 0, 0, FIRST_WAIT});
    if (pressed & (XINPUT_GAMEPAD_LEFT_SHOULDER | XINPUT_GAMEPAD_RIGHT_SHOULDER))
        menu.turnPage(pressed & XINPUT_GAMEPAD_RIGHT_SHOULDER ? 1 : -1);
    if (pressed & XINPUT_GAMEPAD_A)
        menu.press();
    else if (pressed & (XINPUT_GAMEPAD_B | XINPUT_GAMEPAD_START))
        menu.goBack();
}

void CursorComponent::begin(MenuComponent &menu, const Repeat &what)
{
    held = what;
    repeating = true;
    if (what.step)
        menu.step(what.step);
    else
        menu.move(what.x, what.y);
}

void CursorComponent::repeat(MenuComponent &menu)
{
    const auto time = getSystemDeref<GameLoopSystem>().getTime().lookup();
    if (!repeating || !time)
        return;
    held.in -= time->getFrameTimeSeconds();
    if (held.in > 0.0)
        return;
    Repeat again = held;
    again.in = WAIT;
    begin(menu, again);
}
