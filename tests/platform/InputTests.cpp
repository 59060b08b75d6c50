#include "platform/FakeRawInput.h"
#include "platform/InputEar.h"
#include "support/TestLevel.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "platform/input/InputSystem.h"
#include "platform/input/TextCapture.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/Logger.h"
#include "port/xinput/XInputPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string_view>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace
{
using Lines = std::vector<std::string>;

struct FakePads : port::XInputPlatform
{
    FakePads() { port::installXInputPlatform(this); }
    ~FakePads() override { port::installXInputPlatform(nullptr); }

    DWORD XInputGetState(DWORD player, XINPUT_STATE *state) override
    {
        if (!plugged[player])
            return ERROR_DEVICE_NOT_CONNECTED;
        state->Gamepad = pads[player];
        return ERROR_SUCCESS;
    }
    DWORD XInputSetState(DWORD player, XINPUT_VIBRATION *vibration) override
    {
        vibrations[player] = *vibration;
        return ERROR_SUCCESS;
    }

    bool plugged[XUSER_MAX_COUNT] = {};
    XINPUT_GAMEPAD pads[XUSER_MAX_COUNT];
    XINPUT_VIBRATION vibrations[XUSER_MAX_COUNT];
};

struct Typewriter : TextCapture
{
    Typewriter() { TextCapture::setCurrent(this); }
    ~Typewriter() override { TextCapture::setCurrent(nullptr); }

    bool wantsText() const override { return on; }
    void add(unsigned key) override { typed.push_back(key); }
    void addCharacter(char32_t character) override
    {
        text.push_back(character);
        TextCapture::addCharacter(character);
    }

    bool on = true;
    std::vector<char32_t> text;
    std::vector<unsigned> typed;
};

/// The input system with a window of 800 x 400 off-screen, made-up pads and an ear for its messages.
class Input : public testing::Test
{
protected:
    Input() : scope(platform)
    {
        SystemSystem::bootstrap();
        platform.cursor = {400, 100};
        window().setWindowedSize(800, 400);
        input = getSystem<InputSystem>();
        ear = construct<InputEar>(defaultAllocationCategory);
        ear.lookup()->listen();
    }
    ~Input() override
    {
        ear.lookup()->murder();
        SystemSystem::shutdown();
    }

    InputSystem &system() { return *input.lookup(); }
    WindowSystem2 &window() { return getSystemDeref<WindowSystem2>(); }
    void holdCursor(bool hold)
    {
        window().setCursorMode(hold ? WindowSystem2::CURSOR_RELATIVE : WindowSystem2::CURSOR_ABSOLUTE);
    }
    bool cursorIsHeld() { return window().getCursorMode() == WindowSystem2::CURSOR_RELATIVE; }

    void send(RAWINPUT record, bool fromDevice = true)
    {
        record.header.hDevice = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(fromDevice));
        platform.record = record;
        system().processWM_INPUT(RIM_INPUT, FakeRawInput::HANDLE_OF_RECORD);
    }
    void key(USHORT virtualKey, bool down = true) { send(port::keyInput(virtualKey, down)); }

    /// A key that no device pressed, which types as on a US keyboard.
    void strike(USHORT virtualKey, bool down = true) { send(port::keyInput(virtualKey, down), false); }
    /// A key of the keyboard with the text that its layout gives it, in UTF-16.
    void press(USHORT virtualKey, std::u16string_view text)
    {
        key(virtualKey);
        for (const char16_t unit : text)
            system().processWM_CHAR(unit);
        key(virtualKey, false);
    }

    /// Runs a frame: what a replay posts arrives in it.
    void frame()
    {
        system().update();
        const std::vector<RAWINPUT> posted = std::exchange(platform.posted, {});
        for (const RAWINPUT &record : posted)
            send(record, record.header.hDevice != nullptr);
    }

    /// What was heard since the last call.
    Lines heard() { return std::exchange(ear.lookup()->heard, {}); }

    FakeRawInput platform;
    port::ScopedWin32Platform scope;
    FakePads pads;
    Handle<InputSystem> input;
    Handle<InputEar> ear;
};
} // namespace

TEST_F(Input, StartReadsTheCursorAndRegistersTheDevices)
{
    EXPECT_FLOAT_EQ(system().getMouseX(), 0.5f);
    EXPECT_FLOAT_EQ(system().getMouseY(), 0.125f);
    ASSERT_EQ(platform.registered.size(), 3u);
    EXPECT_EQ(platform.registered[Rawx::KEYBOARD].usUsage, HID_USAGE_GENERIC_KEYBOARD);
    EXPECT_EQ(platform.registered[Rawx::MOUSE].usUsage, HID_USAGE_GENERIC_MOUSE);
}

TEST_F(Input, HeldKeyIsToldOnceAndTypesAgainAndAgain)
{
    Typewriter typewriter;
    strike('W');
    strike('W');
    strike('W');
    EXPECT_TRUE(system().isKeyDown('W'));
    strike('W', false);

    EXPECT_THAT(heard(), ElementsAre("KeyDownMessage 87", "KeyUpMessage 87"));
    EXPECT_THAT(typewriter.typed, ElementsAre('w', 'w', 'w'));
    EXPECT_FALSE(system().isKeyDown('W'));
}

TEST_F(Input, RecordThatIsNotWholeIsDropped)
{
    platform.missingBytes = 1;
    key('W');
    system().processWM_INPUT(RIM_INPUT, 12345);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Input, AltAndF4EndTheGameAlsoWhileInputIsDropped)
{
    key(VK_F4);
    EXPECT_EQ(platform.quitValue, -1);
    key(VK_F4, false);

    system().setNoOp(true);
    key(VK_MENU);
    key(VK_F4);
    EXPECT_EQ(platform.quitValue, 0);
}

TEST_F(Input, TypingFollowsShiftAndCapsLockAndSkipsCommands)
{
    Typewriter typewriter;
    strike(VK_SHIFT);
    strike('A');
    strike('1');
    strike(VK_SHIFT, false);
    strike(VK_CAPITAL);
    strike(VK_CAPITAL, false);
    strike('A');
    strike('1');
    strike(VK_CONTROL);
    strike('C');
    strike(VK_CONTROL, false);
    for (const USHORT special : {VK_UP, VK_DOWN, VK_RETURN, VK_BACK, VK_TAB, VK_F1})
        strike(special);
    EXPECT_THAT(typewriter.typed, ElementsAre('A', '!', 'A', '1', 501, 503, 13, 8, 9));
}

TEST_F(Input, KeyThatOpensATextEntryTypesNothingIntoIt)
{
    Typewriter typewriter;
    typewriter.on = false;
    strike(VK_OEM_3);
    typewriter.on = true;
    strike('X');
    EXPECT_THAT(typewriter.typed, ElementsAre('x'));
}

TEST_F(Input, TextComesAsTheLayoutGivesIt)
{
    Typewriter typewriter;
    typewriter.on = false;
    key(VK_OEM_3);
    typewriter.on = true;
    system().processWM_CHAR(u'`');
    EXPECT_THAT(typewriter.text, IsEmpty()) << "its key opened the entry";
    press('Q', u"a");
    press(VK_OEM_7, u"\u00E4");
    press('G', u"\U0001F56F");
    press(VK_BACK, u"\b");
    EXPECT_THAT(typewriter.text, ElementsAre(U'a', U'\u00E4', U'\U0001F56F'));
    EXPECT_THAT(typewriter.typed, ElementsAre('a', 8));
}

TEST_F(Input, HeldCursorTellsMotionAndAFreeOneItsPlaceFromBelow)
{
    send(port::mouseInput(80, -40));
    EXPECT_THAT(heard(), ElementsAre("MouseMove 0.100 -0.050"));
    EXPECT_FLOAT_EQ(system().getMouseY(), 0.125f);

    holdCursor(false);
    send(port::mouseInput(80, -40));
    EXPECT_THAT(heard(), ElementsAre("MousePos 5 0.500 0.375"));
    EXPECT_FLOAT_EQ(system().getMouseY(), 0.375f);
}

TEST_F(Input, EveryButtonOfARecordIsToldByItself)
{
    send(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_DOWN | RI_MOUSE_BUTTON_5_DOWN, -120));
    EXPECT_TRUE(system().isMouseDown(0));
    EXPECT_TRUE(system().isMouseDown(4));
    send(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_UP | RI_MOUSE_MIDDLE_BUTTON_DOWN));
    EXPECT_FALSE(system().isMouseDown(0));

    EXPECT_THAT(heard(),
                ElementsAre("MouseMove 0.000 0.000", "MouseDownMessage 0 0.500 0.125", "MouseDownMessage 4 0.500 0.125",
                            "MouseWheelMessage -120 0.500 0.125", "MouseMove 0.000 0.000",
                            "MouseUpMessage 0 0.500 0.125", "MouseDownMessage 2 0.500 0.125"));
}

TEST_F(Input, DroppedInputLeavesTheStateAsItWasButThePlaceGoesOn)
{
    key('A');
    heard();
    system().setNoOp(true);
    EXPECT_FALSE(cursorIsHeld()) << "the cursor is free meanwhile";
    platform.cursor = {80, 400};
    key('B');
    key('A', false);
    send(port::mouseInput(5, 5, RI_MOUSE_LEFT_BUTTON_DOWN, 120));

    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(system().isKeyDown('A'));
    EXPECT_FALSE(system().isKeyDown('B'));
    EXPECT_FALSE(system().isMouseDown(0));
    EXPECT_FLOAT_EQ(system().getMouseX(), 0.1f);
    EXPECT_FLOAT_EQ(system().getMouseY(), 0.0f);

    system().setNoOp(false);
    EXPECT_THAT(heard(), ElementsAre("KeyUpMessage 65")) << "a key let go meanwhile must not stay down";
    EXPECT_TRUE(cursorIsHeld());
}

TEST_F(Input, NumbersOutOfRangeAreReportedAndHarmless)
{
    const std::size_t before = countLogLines("There is no");
    system().keyDown(InputSystem::KEYS);
    system().mouseUp(InputSystem::BUTTONS);
    system().setVibration(4, 1000);
    EXPECT_EQ(countLogLines("There is no"), before + 3);
    EXPECT_FALSE(system().isKeyDown(4000000000u));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Input, StickInsideItsDeadZoneReadsZero)
{
    pads.plugged[1] = true;
    pads.pads[1].sThumbRX = 8000;
    pads.pads[1].sThumbLX = 8000;
    pads.pads[1].sThumbRY = 3000;
    frame();
    EXPECT_THAT(heard(), ElementsAre("LeftJoyPos 0.244 0.000 1", "RightJoyPos 0.000 0.000 1", "LeftTriggerPos 0.000 1",
                                     "RightTriggerPos 0.000 1"));
}

TEST_F(Input, DeadZonesAreThePlayersOwn)
{
    pads.plugged[1] = true;
    pads.pads[1].sThumbRX = 8000;
    pads.pads[1].sThumbLX = 8000;
    InputSystem &system = getSystemDeref<InputSystem>();
    system.setWalkDeadZone(0.3f);
    system.setLookDeadZone(0.1f);
    frame();
    EXPECT_THAT(heard(), IsSupersetOf({"LeftJoyPos 0.000 0.000 1", "RightJoyPos 0.244 0.000 1"}));
}

TEST_F(Input, PadTellsItsButtonsEachFrameUntilItIsPulledOut)
{
    pads.plugged[0] = true;
    pads.pads[0].wButtons = XINPUT_GAMEPAD_A | XINPUT_GAMEPAD_DPAD_UP;
    pads.pads[0].sThumbLY = -32768;
    pads.pads[0].bRightTrigger = 255;
    const Lines told = {"ButtonPressed 0x1 0",       "ButtonPressed 0x1000 0", "LeftJoyPos 0.000 -1.000 0",
                        "RightJoyPos 0.000 0.000 0", "LeftTriggerPos 0.000 0", "RightTriggerPos 1.000 0"};
    frame();
    EXPECT_EQ(heard(), told);
    frame();
    EXPECT_EQ(heard(), told);

    pads.plugged[0] = false;
    frame();
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(system().getInputDevices().getState(0).Gamepad.wButtons, 0);
}

TEST_F(Input, MotorsStopWhenTheGameEnds)
{
    system().setVibration(2, 40000);
    EXPECT_EQ(pads.vibrations[2].wLeftMotorSpeed, 40000);
    EXPECT_EQ(pads.vibrations[2].wRightMotorSpeed, 40000);
    system().getInputDevices().shutdown();
    EXPECT_EQ(pads.vibrations[2].wLeftMotorSpeed, 0);
}

namespace
{
/// Input with a file that is gone at the end.
class Recording : public Input
{
protected:
    Recording()
        : path(std::filesystem::temp_directory_path() / ("kavel_input_" + std::to_string(::getpid()) + ".txt")),
          file(String::copyFrom(path.string()))
    {
    }
    ~Recording() override { std::filesystem::remove(path); }

    void write(const std::string &text) const { std::ofstream(path, std::ios::binary) << text; }

    std::filesystem::path path;
    String file;
};
} // namespace

TEST_F(Recording, PlaysBackWhatWasHeardFrameByFrame)
{
    const auto session = [this](int number)
    {
        if (number == 0)
            key('W');
        if (number == 1)
            send(port::mouseInput(16, -8, RI_MOUSE_RIGHT_BUTTON_DOWN, 120));
        holdCursor(number < 2);
        platform.cursor = {40 * number, 8};
        if (number == 2)
            send(port::mouseInput(-4, 4, RI_MOUSE_RIGHT_BUTTON_UP));
        pads.plugged[3] = number == 1 || number == 2;
        pads.pads[3].wButtons = number == 2 ? XINPUT_GAMEPAD_B : 0;
        if (number == 3)
            key('W', false);
    };
    system().setRecordFile(file);
    std::vector<Lines> live;
    for (int number = 0; number < 5; ++number)
    {
        frame();
        session(number);
        live.push_back(heard());
    }
    system().setRecordFile(String());

    pads.plugged[3] = false;
    system().setReplayFile(file);
    for (int number = 0; number < 5; ++number)
    {
        holdCursor(number < 2);
        platform.cursor = {799, 399};
        frame();
        key('Q');
        EXPECT_EQ(heard(), live[number]) << "frame " << number + 1;
    }
    EXPECT_TRUE(system().getInputDevices().getReplay().isPlaying());
    frame();
    EXPECT_FALSE(system().getInputDevices().getReplay().isPlaying());
    key('Q', false);
    EXPECT_THAT(heard(), ElementsAre("KeyUpMessage 81")) << "the player has the devices back";
}

TEST_F(Recording, WrittenByHandMayBeCommentedAndOutOfOrder)
{
    write("# a comment\n\ninput 1\nlevel \nseed 0x1\nwindow 800 400\n2 key 87 up\n1 key 0x57 down\n2 end");
    system().setReplayFile(file);
    frame();
    frame();
    EXPECT_THAT(heard(), ElementsAre("KeyDownMessage 87", "KeyUpMessage 87"));
}

TEST_F(Recording, ThatIsNotWholeIsNamedWithItsLineAndNotPlayed)
{
    getSystemDeref<GameLoopSystem>().setUnattended(true);
    const std::string head = "input 1\nlevel\nseed 1\nwindow 1 1\n1 key 87 down\n";
    const std::tuple<std::string, long, const char *> cases[] = {
        {"", 0, "it is empty"},
        {std::string(100000, '\0'), 1, "stands where \"input\" is wanted"},
        {"1 key 87 down\n1 end\n", 1, "\"1\" stands where \"input\" is wanted"},
        {"input 3\n" + head, 1, "it is of version 3, and only 1 to 2 are known"},
        {"input 1\nlevel Hall\nseed\n", 3, "the seed is missing"},
        {head, 5, "it is cut off: its last line has to be \"FRAME end\""},
        {head + "2 key W down\n2 end", 6, "the virtual-key code is \"W\", not a number from 0 to 65535"},
        {head + "2 jump 5\n2 end", 6, "\"jump\" is no kind of event"},
        {head + "2 pad 9 0 0 0 0 0 0 0\n2 end", 6, "there is no player 9"},
        {head + "2 mouse 1 2 3 4 5\n2 end", 6, "the cursor's y is missing"},
        {head + "2 key 87 up extra\n2 end", 6, "\"extra\" is one word too many"},
    };
    for (const auto &[text, line, problem] : cases)
    {
        platform.quitValue = -1;
        write(text);
        system().setReplayFile(file);
        const Logger_::HistoryEntry &last = Logger().getHistoryEntry(Logger().getHistorySize() - 1);
        EXPECT_THAT(last.message.toCString(), testing::HasSubstr(problem));
        EXPECT_EQ(last.line, line) << problem;
        EXPECT_EQ(last.file, file);
        EXPECT_FALSE(system().getInputDevices().getReplay().isPlaying()) << problem;
        EXPECT_EQ(platform.quitValue, 1) << problem;
    }
}

TEST_F(Recording, OfAnotherRunIsNotPlayed)
{
    write("input 1\nlevel Hall\nseed 5\nwindow 640 360\n1 key 87 down\n1 end\n");
    system().setReplayFile(file);
    frame();
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(countLogLines("it belongs to the level \"Hall\", and this is \"\""), 1u);
    EXPECT_EQ(countLogLines("it belongs to a run of seed 5, and this one has 1"), 1u);
    EXPECT_EQ(countLogLines("it belongs to a window of 640x360, and this one is 800x400"), 1u);
    EXPECT_EQ(platform.quitValue, -1) << "a player's game goes on";
}

TEST_F(Recording, IsReadFromAnOrdinaryFileOnly)
{
    for (const char *special : {"/dev/zero", "/dev"})
    {
        const std::size_t before = countLogLines("It is no ordinary file");
        system().setReplayFile(SCS(special));
        EXPECT_EQ(countLogLines("It is no ordinary file"), before + 1) << special;
    }
}

TEST_F(Recording, ThatCannotBeMadeEndsAGameThatNobodyWatches)
{
    getSystemDeref<GameLoopSystem>().setUnattended(true);
    system().setRecordFile(SCS("/no such folder/input.txt"));
    EXPECT_EQ(countLogLines("/no such folder/input.txt: No such file or directory"), 1u);
    EXPECT_EQ(platform.quitValue, 1);
}

TEST_F(Recording, FileThatIsNotThereIsNamed)
{
    system().setReplayFile(SCS("..\\no such folder\\input.txt"));
    EXPECT_EQ(countLogLines("input.txt cannot be read: There is no \"no such folder\""), 1u);
    EXPECT_FALSE(system().getInputDevices().getReplay().isPlaying());
    key('W');
    EXPECT_THAT(heard(), ElementsAre("KeyDownMessage 87"));
}
