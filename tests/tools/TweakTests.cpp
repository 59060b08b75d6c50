#include "support/Probe.h"

#include "support/TemporaryFile.h"
#include "support/TestLevel.h"

#include "platform/input/InputSystem.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/tweakbar/Bars.h"
#include "port/win32/Messages.h"
#include "port/win32/RawInput.h"
#include "rendering/device/GraphicsSystem2.h"
#include "platform/window/WindowSystem2.h"
#include "tools/bars/ObjectBar.h"
#include "tools/bars/ObjectBrowser.h"
#include "tools/bars/TweakSystem.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace
{
/// A level in a window without a display, with one object whose bar is open.
class TweakBars : public testing::Test
{
protected:
    TweakBars()
    {
        setenv("KAVEL_HEADLESS", "1", 1);
        getSystemDeref<WindowSystem2>().setWindowedSize(1280, 720);
        getSystemDeref<InputSystem>();
        thing = construct<Probe>(defaultAllocationCategory);
        thing.lookup()->setName(SCS("stalker"));
        thing.lookup()->setParent(level.level);
        tweaks().setEdited(nullptr); // no bar of scripts that another test has loaded comes before this one
        tweaks().showObject(SCS("c:/stalker"));
        const int place[] = {400, 8, 400, 700}; // high enough for all of its lines
        TwSetParam(bar(), nullptr, "place", TW_PARAM_INT32, 4, place);
        frames(3);
    }

    TweakSystem &tweaks() { return getSystemDeref<TweakSystem>(); }
    Probe &stalker() { return *thing.lookup(); }
    HWND window() { return getSystemDeref<WindowSystem2>().getWindowHandle(); }
    TwBar *bar() { return tweaks().findBar(thing)->getBar(); }

    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            level.frame();
    }
    bool send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return TwEventWin(window(), message, wParam, lParam) != 0;
    }
    void move(int x, int y)
    {
        pointer = MAKELPARAM(x, y);
        send(WM_MOUSEMOVE, 0, pointer);
        frames(2);
    }
    void press() { send(WM_LBUTTONDOWN, 0, pointer); }
    void letGo() { send(WM_LBUTTONUP, 0, pointer); }
    /// Presses at one place and lets go at another.
    void drag(int x, int y, int dx)
    {
        move(x, y);
        press();
        frames(1);
        move(x + dx, y);
        letGo();
        frames(1);
    }
    void click(int x, int y) { drag(x, y, 0); }
    port::TweakVar &line(const char *property) { return *bar()->find(property); }
    /// Middle of a property's control.
    POINT control(const char *property)
    {
        const port::TweakPlace place = line(property).place;
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    void clickControl(const char *property)
    {
        const POINT at = control(property);
        click(at.x, at.y);
    }
    void pumpRaw(const RAWINPUT &input)
    {
        port::postRawInput(input);
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&msg);
    }

    TestLevel level;
    Handle<Probe> thing;
    LPARAM pointer = 0;
};
} // namespace

TEST_F(TweakBars, TheMouseAndTheKeyboardEditTheObject)
{
    const POINT speed = control("speed");
    drag(speed.x, speed.y, 60);
    const float dragged = stalker().speed;
    EXPECT_GT(dragged, 1.1f);
    drag(speed.x + 40, speed.y, -90); // elsewhere: two clicks on one place would begin to type
    EXPECT_LT(stalker().speed, dragged);

    click(line("awake").place.left + 6, control("awake").y);
    EXPECT_TRUE(stalker().awake);

    // The list hangs below its control, a line a value.
    const port::TweakPlace gait = line("gait").place;
    const int height = gait.bottom - gait.top;
    click(gait.left + 20, control("gait").y);
    click(gait.left + 20, gait.bottom + 3 * height);
    EXPECT_EQ(Probe::RUNS, stalker().gait);

    clickControl("name");
    for (const char key : {'A', 'b'})
        EXPECT_TRUE(send(WM_CHAR, static_cast<WPARAM>(key))) << "the text has the keyboard";
    frames(2);
    EXPECT_EQ(SCS("stalker"), stalker().getName()) << "half a name is not set";
    send(WM_KEYDOWN, VK_RETURN);
    frames(1);
    send(WM_KEYUP, VK_RETURN);
    frames(1);
    EXPECT_NE(nullptr, std::strstr(stalker().getName().toCString(), "Ab"));
    clickControl("name");
    send(WM_CHAR, 'Z');
    frames(1);
    clickControl("speed");
    EXPECT_NE(nullptr, std::strchr(stalker().getName().toCString(), 'Z')) << "a click elsewhere ends it too";
    EXPECT_EQ(0, stalker().reads) << "a getter that changes its object is not called";
}

TEST_F(TweakBars, AnEditThatFailsIsToldAndAScriptedChangeShows)
{
    const POINT limit = control("limit");
    drag(limit.x, limit.y, -200);
    EXPECT_GT(stalker().limit, 0);
    EXPECT_NE(std::string::npos, line("limit").error.find("not set: OUT_OF_BOUNDS"));
    tweaks().setRange(thing, SCS("limit"), 1, 9);
    stalker().limit = 3;
    frames(1);
    click(line("limit").place.right - 4, limit.y);
    EXPECT_EQ(9, stalker().limit) << "now a slider, pressed at its end";
    EXPECT_EQ("", line("limit").error);
    tweaks().setRange(thing, SCS("limi"), 1, 9);
    EXPECT_EQ(1u, countLogLines("the bar of 'c:/stalker' has no property 'limi'"));
    tweaks().setRange(thing, SCS("limit"), -1e300, 1e300);
    tweaks().setRange(thing, SCS("limit"), 9, std::nan(""));
    frames(1);
    EXPECT_EQ(2u, countLogLines("is no range of 'limit'"));
    EXPECT_EQ(9, line("limit").max) << "the range it had";
}

TEST_F(TweakBars, AClickBetweenTwoFramesCountsAtThePlaceThatItTells)
{
    send(WM_MOUSEMOVE, 0, MAKELPARAM(1, 1)); // the last motion that came
    pointer = MAKELPARAM(line("awake").place.left + 6, control("awake").y);
    press();
    letGo();
    frames(3);
    EXPECT_TRUE(stalker().awake);
}

TEST_F(TweakBars, OnlyABarKeepsInputFromTheGame)
{
    const POINT speed = control("speed");
    const InputSystem &game = getSystemDeref<InputSystem>();
    move(speed.x, speed.y);
    EXPECT_TRUE(send(WM_MOUSEMOVE, 0, MAKELPARAM(speed.x, speed.y)));
    pumpRaw(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_DOWN));
    EXPECT_FALSE(game.isMouseDown(0));
    pumpRaw(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_UP));
    pumpRaw(port::keyInput('W', true));
    EXPECT_TRUE(game.isKeyDown('W')) << "nobody types: the game has the keyboard";

    move(1270, 710);
    EXPECT_FALSE(send(WM_MOUSEMOVE, 0, MAKELPARAM(1270, 710)));
    pumpRaw(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_DOWN));
    EXPECT_TRUE(game.isMouseDown(0));
    move(speed.x, speed.y);
    pumpRaw(port::mouseInput(0, 0, RI_MOUSE_LEFT_BUTTON_UP));
    EXPECT_FALSE(game.isMouseDown(0)) << "what was pressed in the game is let go in the game";

    tweaks().setShown(false);
    frames(2);
    EXPECT_FALSE(send(WM_MOUSEMOVE, 0, MAKELPARAM(speed.x, speed.y))) << "bars that are not shown hear nothing";
}

TEST_F(TweakBars, TheCursorIsFreeWhileTheyAreShown)
{
    WindowSystem2 &screen = getSystemDeref<WindowSystem2>();
    EXPECT_EQ(WindowSystem2::CURSOR_ABSOLUTE, screen.getCursorMode());
    getSystemDeref<GraphicsSystem2>().setShowAntTweakBar(false);
    frames(1);
    EXPECT_EQ(WindowSystem2::CURSOR_RELATIVE, screen.getCursorMode());
}

TEST_F(TweakBars, TheBarOfADeadObjectGoesAndALinkOpensAnother)
{
    stalker().prey = level.entity("victim");
    frames(1);
    click(line("prey").place.left + 12, control("prey").y);
    EXPECT_NE(nullptr, tweaks().findBar(stalker().prey));
    EXPECT_EQ(2, tweaks().getBarCount());
    stalker().murder();
    frames(2);
    EXPECT_EQ(nullptr, tweaks().findBar(thing));
    EXPECT_EQ(1, tweaks().getBarCount());
}

TEST_F(TweakBars, AnEditMayTakeItsOwnBarAway)
{
    stalker().onLimit = [this] { tweaks().removeBar(thing); };
    const POINT limit = control("limit");
    drag(limit.x, limit.y, 40);
    EXPECT_EQ(0, tweaks().getBarCount());
    tweaks().addBar(thing);
    frames(2);
    EXPECT_EQ(1, tweaks().getBarCount());
}

TEST_F(TweakBars, ObjectsAreFoundByNameByClassAndByPath)
{
    tweaks().search(SCS("TALK"));
    frames(1);
    EXPECT_EQ(std::vector<Handle<Object>>{thing}, tweaks().getBrowser().getObjects());
    tweaks().search(SCS("robe"));
    frames(1);
    EXPECT_EQ(std::vector<Handle<Object>>{thing}, tweaks().getBrowser().getObjects());
    tweaks().search(String());
    frames(1);
    EXPECT_GT(tweaks().getBrowser().getObjects().size(), 4u) << "the tree, with the systems";

    tweaks().showObject(SCS("c:/stalkr/eye"));
    EXPECT_EQ(1u, countLogLines("showObject('c:/stalkr/eye'): 'c:/' has no child 'stalkr'; did you mean 'stalker'?"));
    tweaks().showObject(SCS("s:/WindowSystem2"));
    EXPECT_EQ(2, tweaks().getBarCount());
}

TEST_F(TweakBars, ALostDeviceTakesNothingWithIt)
{
    IDirect3DDevice9 *device = getSystemDeref<GraphicsSystem2>().getDevice();
    const TemporaryFile picture("tweakbars.png");
    port::setDeviceLost(device, true);
    tweaks().captureScreen(picture.name());
    frames(2);
    EXPECT_FALSE(std::filesystem::exists(picture.path)) << "nothing is presented";
    port::setDeviceLost(device, false);
    frames(3);
    EXPECT_GT(std::filesystem::file_size(picture.path), 2000u);
    const POINT speed = control("speed");
    drag(speed.x, speed.y, 60);
    EXPECT_GT(stalker().speed, 1.1f);
}
