#include "platform/input/InputSystem.h"

#include "platform/input/InputMessages.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/TextCapture.h"
#include "platform/window/WindowSystem2.h"

#include "engine/systems/SystemSystem.h"
#include "object/reflection/SavedArguments.h"
#include "object/reflection/Variant.h"

#include "foundation/Assertions.h"
#include "port/win32/Cursor.h"
#include "port/win32/Messages.h"
#include "port/win32/Window.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{
/// What a bit of the button flags says.
struct ButtonTransition
{
    USHORT flag;
    unsigned click;
    bool down;
};

constexpr ButtonTransition transitions[] = {
    {RI_MOUSE_LEFT_BUTTON_DOWN, 0, true}, {RI_MOUSE_LEFT_BUTTON_UP, 0, false},    {RI_MOUSE_RIGHT_BUTTON_DOWN, 1, true},
    {RI_MOUSE_RIGHT_BUTTON_UP, 1, false}, {RI_MOUSE_MIDDLE_BUTTON_DOWN, 2, true}, {RI_MOUSE_MIDDLE_BUTTON_UP, 2, false},
    {RI_MOUSE_BUTTON_4_DOWN, 3, true},    {RI_MOUSE_BUTTON_4_UP, 3, false},       {RI_MOUSE_BUTTON_5_DOWN, 4, true},
    {RI_MOUSE_BUTTON_5_UP, 4, false},
};

WindowSystem2 &window()
{
    return getSystemDeref<WindowSystem2>();
}

bool textIsWanted()
{
    const TextCapture *const capture = TextCapture::current();
    return capture && capture->wantsText();
}

WindowCoordinate toNormalized(float x, float y)
{
    return window().convertWindowCoordinate(WindowCoordinate(x, y, WCS_PIXEL, WCS_PIXEL), WCS_NORMALIZED,
                                            WCS_NORMALIZED);
}
/// Reads the record behind a WM_INPUT; false where there is none.
bool readRawInput(LPARAM lParam, RAWINPUT &input)
{
    UINT size = sizeof(input);
    return GetRawInputData(reinterpret_cast<HRAWINPUT>(lParam), RID_INPUT, &input, &size, sizeof(RAWINPUTHEADER)) ==
           sizeof(input);
}
} // namespace

void InputSystem::systemStartup()
{
    clear();
    inDev.registerDevices();
    window().setWitness(this);
    const POINT cursor = readCursor();
    takeCursor(static_cast<float>(cursor.x), static_cast<float>(cursor.y));
}

void InputSystem::systemShutdown()
{
    window().setWitness(nullptr);
    inDev.shutdown();
}

System::DependencyList InputSystem::systemDependencies()
{
    return {SystemSystem::staticType, WindowSystem2::staticType};
}

void InputSystem::clear()
{
    std::memset(keyState, 0, sizeof(keyState));
    std::memset(mouseState, 0, sizeof(mouseState));
}

void InputSystem::letGo()
{
    for (unsigned key = 0; key < KEYS; ++key)
        if (keyState[key])
            keyUp(key);
    for (unsigned click = 0; click < BUTTONS; ++click)
        if (mouseState[click])
            mouseUp(click);
}

void InputSystem::update()
{
    inDev.update(textIsWanted());
}

bool InputSystem::isPlayed(LPARAM rawInput) const
{
    RAWINPUT input;
    return inDev.getReplay().isPlaying() && readRawInput(rawInput, input) && !input.header.hDevice;
}

void InputSystem::tellOnlooker(const RAWINPUT &input)
{
    const RAWKEYBOARD &keyboard = input.data.keyboard;
    // A copy: the callback may set another one in its own place.
    const ReflectorPtr called = onlooker;
    if (called && input.header.dwType == RIM_TYPEKEYBOARD && !(keyboard.Flags & RI_KEY_BREAK))
        called->call(static_cast<int>(keyboard.VKey)).code.ignoreError(); // a script's exception has been told
}

void InputSystem::processWM_INPUT(WPARAM, LPARAM lParam)
{
    RAWINPUT input;
    if (!readRawInput(lParam, input))
        return;

    const bool madeByDevice = input.header.hDevice != nullptr;
    if (madeByDevice && inDev.getReplay().isPlaying())
        return tellOnlooker(input);
    if (input.header.dwType == RIM_TYPEMOUSE)
        processMouse(input);
    else if (input.header.dwType == RIM_TYPEKEYBOARD)
        processKey(input);
}

void InputSystem::processMouse(const RAWINPUT &input)
{
    const RAWMOUSE &mouse = input.data.mouse;
    if (inDev.getReplay().isPlaying())
        replayedCursor = InputReplay::cursorOf(input);
    inDev.record(input, readCursor());

    if (window().getCursorMode() == WindowSystem2::CURSOR_RELATIVE)
        mouseMove(static_cast<float>(mouse.lLastX), static_cast<float>(mouse.lLastY));
    else
        mousePos(static_cast<float>(mouse.lLastX), static_cast<float>(mouse.lLastY));
    processButtons(mouse);
    if (mouse.usButtonFlags & RI_MOUSE_WHEEL)
        mouseWheel(static_cast<SHORT>(mouse.usButtonData));
}

void InputSystem::processButtons(const RAWMOUSE &mouse)
{
    for (const ButtonTransition &transition : transitions)
    {
        if (!(mouse.usButtonFlags & transition.flag))
            continue;
        heldButtons[transition.click] = transition.down;
        if (transition.down)
            mouseDown(transition.click);
        else
            mouseUp(transition.click);
    }
}

void InputSystem::processKey(const RAWINPUT &input)
{
    const RAWKEYBOARD &keyboard = input.data.keyboard;
    const unsigned key = keyboard.VKey;
    if (key >= heldKeys.size())
        return;
    inDev.record(input, POINT{0, 0});
    if (keyboard.Flags & RI_KEY_BREAK)
    {
        heldKeys.reset(key);
        keyUp(key);
        return;
    }

    const bool repeated = heldKeys[key];
    heldKeys.set(key);
    if (key == VK_CAPITAL && !repeated)
        capsLock = !capsLock;
    if (heldKeys[VK_MENU] && key == VK_F4)
        PostQuitMessage(0);

    // The key that opens or closes a text entry types nothing into it.
    const bool typing = textIsWanted();
    keyTypes = false;
    if (!repeated)
        keyDown(key);
    if (textIsWanted() != typing)
        port::forgetComposition();
    if (typing)
        captureText(key, repeated, input.header.hDevice == nullptr);
}

/// What a device's keys type is told by WM_CHAR; for one that no device pressed the US layout stands in.
void InputSystem::captureText(unsigned key, bool repeated, bool typesByTable)
{
    TextCapture *capture = TextCapture::current();
    if (!capture || !capture->wantsText() || capture->takesKey(key, repeated))
        return;
    keyTypes = true;
    unsigned code = heldKeys[VK_MENU] ? 0 : convertToAscii(key);
    if (heldKeys[VK_CONTROL])
        code = withControl(code);
    if (code == 0)
        return;
    if (!isTypedCharacter(code))
        capture->add(code);
    else if (typesByTable && !(inDev.getReplay().isPlaying() && inDev.getReplay().tellsText()))
        type(code);
}

void InputSystem::processWM_CHAR(WPARAM wParam)
{
    constexpr WPARAM firstSurrogate = 0xD800, secondSurrogate = 0xDC00, behindSurrogates = 0xE000;
    const bool isFirst = wParam >= firstSurrogate && wParam < secondSurrogate;
    const bool isSecond = wParam >= secondSurrogate && wParam < behindSurrogates;
    const char16_t first = std::exchange(firstHalf, isFirst ? static_cast<char16_t>(wParam) : char16_t(0));
    const bool isControl = wParam < 32 || wParam == 127;
    if (isFirst || isControl || !keyTypes || inDev.getReplay().isPlaying() || wParam > 0xFFFF)
        return;
    if (isSecond && first)
        type(static_cast<char32_t>(0x10000 + ((first - firstSurrogate) << 10) + (wParam - secondSurrogate)));
    else if (!isSecond)
        type(static_cast<char32_t>(wParam));
}

void InputSystem::typePlayed(unsigned character)
{
    if (inDev.getReplay().isPlaying() && character >= 32 && character != 127 && character <= 0x10FFFF)
        type(character);
}

void InputSystem::type(char32_t character)
{
    TextCapture *const capture = TextCapture::current();
    if (!capture || !capture->wantsText())
        return;
    inDev.record(RecordedInput::TEXT, static_cast<std::int64_t>(character));
    capture->addCharacter(character);
}

void InputSystem::focusChanged(bool active)
{
    inDev.record(RecordedInput::FOCUS, std::int64_t(active));
}

void InputSystem::sizeTaken(int width, int height, bool byUser)
{
    inDev.record(byUser ? RecordedInput::DRAG : RecordedInput::SIZE, width, height);
}

unsigned InputSystem::convertToAscii(unsigned key) const
{
    return typedCode(key, heldKeys[VK_SHIFT], capsLock);
}

void InputSystem::keyDown(unsigned key)
{
    KV_VERIFY(key < KEYS, "There is no key %u, only 0 to %u", key, KEYS - 1);
    if (noOp || key >= KEYS)
        return;
    keyState[key] = 1;
    sendEngineMessage(KeyDownMessage, static_cast<int>(key));
}

void InputSystem::keyUp(unsigned key)
{
    KV_VERIFY(key < KEYS, "There is no key %u, only 0 to %u", key, KEYS - 1);
    if (noOp || key >= KEYS)
        return;
    keyState[key] = 0;
    sendEngineMessage(KeyUpMessage, static_cast<int>(key));
}

void InputSystem::mouseDown(unsigned click)
{
    KV_VERIFY(click < BUTTONS, "There is no mouse button %u, only 0 to %u", click, BUTTONS - 1);
    if (noOp || click >= BUTTONS)
        return;
    mouseState[click] = 1;
    sendEngineMessage(MouseDownMessage, click, mouseX, mouseY);
}

void InputSystem::mouseUp(unsigned click)
{
    KV_VERIFY(click < BUTTONS, "There is no mouse button %u, only 0 to %u", click, BUTTONS - 1);
    if (noOp || click >= BUTTONS)
        return;
    mouseState[click] = 0;
    sendEngineMessage(MouseUpMessage, click, mouseX, mouseY);
}

void InputSystem::mouseWheel(int direction)
{
    if (!noOp)
        sendEngineMessage(MouseWheelMessage, direction, mouseX, mouseY);
}

void InputSystem::mouseMove(float x, float y)
{
    if (noOp)
        return;
    const POINT cursor = readCursor();
    takeCursor(static_cast<float>(cursor.x), static_cast<float>(cursor.y));
    const WindowCoordinate motion = toNormalized(x, y);
    sendEngineMessage(MouseMove, motion.x, motion.y);
}

void InputSystem::mousePos(float, float)
{
    const POINT cursor = readCursor();
    takeCursor(static_cast<float>(cursor.x), static_cast<float>(window().getHeight() - cursor.y));
    if (!noOp)
        sendEngineMessage(MousePos, lowestButtonDown(), mouseX, mouseY);
}

void InputSystem::takeCursor(float x, float y)
{
    const WindowCoordinate place = toNormalized(x, y);
    mouseX = place.x;
    mouseY = place.y;
}

POINT InputSystem::readCursor() const
{
    if (inDev.getReplay().isPlaying())
        return replayedCursor;
    // The window first: one that starts now takes the cursor to its centre.
    const HWND client = window().getWindowHandle();
    POINT cursor{0, 0};
    if (GetCursorPos(&cursor))
        ScreenToClient(client, &cursor);
    return cursor;
}

unsigned InputSystem::lowestButtonDown() const
{
    unsigned click = 0;
    while (click < NO_BUTTON && !mouseState[click])
        ++click;
    return click;
}

void InputSystem::postKey(unsigned key, bool down)
{
    if (key < heldKeys.size())
        port::postRawInput(port::keyInput(static_cast<USHORT>(key), down));
}

void InputSystem::postMouse(int x, int y, unsigned transitions, int wheel)
{
    constexpr unsigned allTransitions = 0x3FF;
    const int turned = std::clamp(wheel, -32768, 32767);
    port::postRawInput(
        port::mouseInput(x, y, static_cast<USHORT>(transitions & allTransitions), static_cast<SHORT>(turned)));
}

void InputSystem::setVibration(unsigned player, WORD vib)
{
    inDev.setVibration(player, vib);
}

void InputSystem::shakePad(unsigned player, float strength)
{
    constexpr float full = 65535.f;
    const float part = strength > 0.f ? std::min(strength, 1.f) : 0.f;
    setVibration(player, static_cast<WORD>(part * full));
}

void InputSystem::setNoOp(bool drop)
{
    if (noOp == drop)
        return;
    noOp = drop;
    if (drop)
        cursorWasHeld = window().getCursorMode() == WindowSystem2::CURSOR_RELATIVE;
    window().setCursorMode(!drop && cursorWasHeld ? WindowSystem2::CURSOR_RELATIVE : WindowSystem2::CURSOR_ABSOLUTE);
    if (!drop)
        releaseWhatWasLetGo();
}

void InputSystem::setScreenTakesInput(bool val)
{
    if (screenTakesInput == val)
        return;
    screenTakesInput = val;
    if (val)
        letGo();
}

void InputSystem::releaseWhatWasLetGo()
{
    for (unsigned key = 0; key < heldKeys.size(); ++key)
        if (keyState[key] && !heldKeys[key])
            keyUp(key);
    for (unsigned click = 0; click < BUTTONS; ++click)
        if (mouseState[click] && !heldButtons[click])
            mouseUp(click);
}

void InputSystem::setReplayFile(const String &file)
{
    replayFile = file;
    inDev.getReplay().start(file);
}

void InputSystem::setRecordFile(const String &file)
{
    recordFile = file;
    inDev.getRecorder().start(file);
}

void InputSystem::setRunFile(const String &file)
{
    runFile = file;
    inDev.getRunRecorder().start(file);
}
