#include "platform/FakeRawInput.h"
#include "support/AllocationCount.h"
#include "support/ScriptModule.h"
#include "support/TestLevel.h"

#include "engine/levels/BranchPostOffice.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowSystem2.h"
#include "ui/screens/CursorComponent.h"
#include "ui/screens/FocusSearch.h"
#include "ui/screens/MenuComponent.h"
#include "ui/widgets/CheckBoxComponent.h"
#include "ui/widgets/FormComponent.h"
#include "ui/widgets/LabelComponent.h"
#include "ui/widgets/SliderComponent.h"
#include "ui/widgets/TextEntryComponent.h"

#include "port/win32/VirtualKeys.h"

#include <gtest/gtest.h>

#include <optional>

namespace
{
constexpr std::pair<int, int> WINDOWS[] = {{960, 720}, {1280, 720}, {2560, 720}, {3840, 2160}};

/// A screen in a window off-screen, and the keyboard before it.
class Screen : public testing::Test
{
protected:
    Screen() : scope(platform)
    {
        level.emplace();
        installScriptModule("loader", "def hasLevel(name): return False");
        level->component<BranchPostOffice>(level->entity("BranchPostOffice"), "postOffice");
        root = level->entity("Screen");
        menu = level->component<MenuComponent>(root, "menu");
        menu.lookup()->setFadeTime(0.f);
        menu.lookup()->setVisible(true);
        cursor = level->component<CursorComponent>(level->entity("Cursor"), "cursor");
        cursor.lookup()->onLoadComplete();
        cursor.lookup()->setTop(menu);
    }
    static void resize(int width, int height) { getSystemDeref<WindowSystem2>().setWindowedSize(width, height); }
    template <class Component>
    Component &add(const char *name, const char *key, Handle<Entity> parent)
    {
        return *level->component<Component>(level->entity(name, parent), key).lookup();
    }
    FormComponent &form(const char *name, FormKind kind, Handle<Entity> parent = Handle<Entity>())
    {
        FormComponent &made = add<FormComponent>(name, "form", parent.isValid() ? parent : root);
        made.setKind(kind);
        return made;
    }
    static Handle<Entity> entityOf(WidgetComponent &widget) { return handle_cast<Entity>(widget.getParent()); }
    ButtonComponent &button(const char *text, FormComponent &parent)
    {
        ButtonComponent &made = add<ButtonComponent>(text, "button", entityOf(parent));
        made.setText(String::copyFrom(text));
        return made;
    }
    void key(int virtualKey, bool down = true)
    {
        if (down)
            getSystemDeref<InputSystem>().keyDown(static_cast<unsigned>(virtualKey));
        else
            getSystemDeref<InputSystem>().keyUp(static_cast<unsigned>(virtualKey));
    }
    void frames(int count = 1)
    {
        for (int i = 0; i < count; ++i)
            level->frame();
    }
    void tap(int virtualKey)
    {
        key(virtualKey);
        key(virtualKey, false);
        frames();
    }
    MenuComponent &screen() { return *menu.lookup(); }
    std::string focus()
    {
        const auto widget = screen().getFocus().lookup();
        return widget ? widget->getText().toCString() : "";
    }

    FakeRawInput platform;
    port::ScopedWin32Platform scope;
    std::optional<TestLevel> level;
    Handle<Entity> root;
    Handle<MenuComponent> menu;
    Handle<CursorComponent> cursor;
};
} // namespace

TEST(FocusSearch, WhatLiesStraightAheadGoesBeforeWhatLiesAslantAndColumnsBeginAgain)
{
    // 0 1 below each other, 2 3 to the right of them, 4 below, between both columns.
    const std::vector<WidgetRect> places = {
        {0, 0, 100, 20}, {0, 30, 100, 20}, {200, 0, 100, 20}, {200, 30, 100, 20}, {80, 60, 100, 20}};
    EXPECT_EQ(findInDirection(places, 0, 1, 0), 2u);
    EXPECT_EQ(findInDirection(places, 3, -1, 0), 1u);
    EXPECT_EQ(findInDirection(places, 0, 0, 1), 1u);
    EXPECT_EQ(findInDirection(places, 1, 0, 1), 4u);
    EXPECT_EQ(findInDirection(places, 2, 0, -1), 3u) << "the last of the same column";
    EXPECT_EQ(findInDirection(places, 2, 1, 0), 2u) << "a row does not begin again";
}

TEST_F(Screen, TextsStayInTheirBoxesAndTheWindowInEveryShapeOfIt)
{
    FormComponent &column = form("column", FK_COLUMN);
    column.setAlignX(WA_START);
    column.setMostWidth(700.f);
    LabelComponent &label = add<LabelComponent>("label", "form", entityOf(column));
    label.setText(SCS("A sentence that is much longer than seven hundred units can be, and is wrapped."));
    button("Bildschirmhelligkeitsanpassungseinstellungen und mehr", column);
    FormComponent &scroll = form("scroll", FK_SCROLL, entityOf(column));
    for (int i = 0; i < 60; ++i)
        button("Row", scroll);
    for (const auto &[width, height] : WINDOWS)
    {
        resize(width, height);
        screen().doFrame();
        EXPECT_STREQ(screen().findings().toCString(), "") << width << "x" << height;
        const Vec4 place = column.getPlacePixels();
        const float unit = std::min(static_cast<float>(height), static_cast<float>(width) * 9.f / 16.f) / 1080.f;
        EXPECT_NEAR(place.z, 700.f * unit, 1.f);
        EXPECT_GE(place.x, 53.f * unit);
        EXPECT_LE(place.y + place.w, static_cast<float>(height) - 53.f * unit);
    }
}

TEST_F(Screen, WhatIsWrongWithItIsFound)
{
    FormComponent &pages = form("pages", FK_PAGES);
    for (const char *text : {"One over", "another"})
        add<LabelComponent>(text, "form", entityOf(pages)).setText(String::copyFrom(text));
    FormComponent &narrow = form("narrow", FK_COLUMN);
    narrow.setMostWidth(60.f);
    narrow.setAlignX(WA_END);
    narrow.setAlignY(WA_START);
    add<LabelComponent>("broken", "form", entityOf(narrow)).setText(SCS("Incomprehensibilities"));
    const std::string shown = "xäääääääääääääääääääääää"; // the next one lies across the 48th byte
    add<LabelComponent>("long", "form", entityOf(narrow)).setText(String::copyFrom(shown + "äääää"));
    FormComponent &corner = form("corner", FK_COLUMN);
    corner.setAlignX(WA_START);
    corner.setAlignY(WA_END);
    add<LabelComponent>("key", "form", entityOf(corner)).setText(SCS("menu.nowhere"));
    frames();
    const std::string found = screen().findings().toCString();
    for (const std::string &text :
         {std::string("'One over' overlaps 'another'"),
          std::string("'Incomprehensibilities' has a word that is broken"),
          "'" + shown + "...' has a word that is broken", std::string("'menu.nowhere' is a key and no text")})
        EXPECT_NE(found.find(text), std::string::npos) << text << "\n" << found;
}

TEST_F(Screen, NothingIsDoneInAFrameInWhichNothingChanges)
{
    FormComponent &scroll = form("scroll", FK_SCROLL);
    for (int i = 0; i < 200; ++i)
        button(("Row " + std::to_string(i)).c_str(), scroll);
    frames(2);
    const int layouts = screen().getLayoutCount(), paints = screen().getPaintCount();
    EXPECT_EQ(allocationsOf([&] { screen().doFrame(); }, 10), 0u);
    EXPECT_EQ(screen().getLayoutCount(), layouts);
    EXPECT_EQ(screen().getPaintCount(), paints);
    scroll.setOpacity(0.5f);
    frames();
    EXPECT_EQ(screen().getLayoutCount(), layouts);
    EXPECT_EQ(screen().getPaintCount(), paints + 1);
}

TEST_F(Screen, TheFocusPassesOverWhatCannotBePressedAndGoesOnWhereItsWidgetIsGone)
{
    FormComponent &column = form("column", FK_COLUMN);
    button("first", column);
    ButtonComponent &second = button("second", column);
    ButtonComponent &third = button("third", column);
    second.setEnabled(false);
    frames();
    EXPECT_EQ(focus(), "first");
    screen().move(0, 1);
    EXPECT_EQ(focus(), "third");
    entityOf(third).lookup()->murder();
    frames(2);
    EXPECT_EQ(focus(), "first");
}

TEST_F(Screen, AHeldKeyGoesOnAndTheFocusStaysInSight)
{
    FormComponent &scroll = form("scroll", FK_SCROLL);
    for (int i = 0; i < 60; ++i)
        button(("Row " + std::to_string(i)).c_str(), scroll);
    frames(2);
    key(VK_DOWN);
    frames(2);
    EXPECT_EQ(focus(), "Row 1");
    frames(200);
    key(VK_DOWN, false);
    const auto widget = screen().getFocus().lookup();
    EXPECT_GT(std::stoi(focus().substr(4)), 25);
    EXPECT_GT(scroll.getScroll(), 0.f);
    const WidgetRect seen = widget->getPlace().common(scroll.getPlace());
    EXPECT_FLOAT_EQ(seen.height, widget->getPlace().height);
    const std::string resting = focus();
    frames(60);
    EXPECT_EQ(focus(), resting);
}

TEST_F(Screen, InputOfTheFrameThatOpensItIsNotForItAndThePlayerTakesNoneMeanwhile)
{
    FormComponent &column = form("column", FK_COLUMN);
    CheckBoxComponent &box = add<CheckBoxComponent>("box", "button", entityOf(column));
    tap(VK_RETURN);
    EXPECT_FALSE(box.getValue());
    EXPECT_TRUE(getSystemDeref<InputSystem>().getScreenTakesInput());
    tap(VK_RETURN);
    EXPECT_TRUE(box.getValue());
    sendEngineMessage(ButtonPressed, 0x1000, 0u);
    frames();
    EXPECT_FALSE(box.getValue()) << "A of the pad";
    screen().setVisible(false);
    frames();
    EXPECT_FALSE(getSystemDeref<InputSystem>().getScreenTakesInput());
}

TEST_F(Screen, ASliderGoesBySteps)
{
    FormComponent &column = form("column", FK_COLUMN);
    SliderComponent &slider = add<SliderComponent>("slider", "button", entityOf(column));
    slider.setText(SCS("Sound"));
    slider.setMost(10.0);
    slider.setStep(2.5);
    frames(2);
    tap(VK_RIGHT);
    EXPECT_EQ(slider.getValue(), 2.5);
    tap(VK_LEFT);
    tap(VK_LEFT);
    EXPECT_EQ(slider.getValue(), 0.0);
    const Vec4 place = slider.getPlacePixels();
    screen().pointerDown(place.x + place.z - 30.f, place.y + 4.f);
    EXPECT_EQ(slider.getValue(), 10.0);
    screen().pointerDrag(0.f, 0.f);
    EXPECT_EQ(slider.getValue(), 0.0);
    screen().pointerUp(0.f, 0.f);
}

TEST_F(Screen, WhatIsTypedKeepsItsCharactersWhole)
{
    FormComponent &column = form("column", FK_COLUMN);
    TextEntryComponent &entry = add<TextEntryComponent>("entry", "button", entityOf(column));
    entry.setMost(4);
    entry.setValue(SCS("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F too long"));
    EXPECT_STREQ(entry.getValue().toCString(), "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F");
    frames(2);
    screen().press();
    screen().type(8, false);
    screen().type(0x20AC, true);
    screen().type('y', true);
    EXPECT_STREQ(entry.getValue().toCString(), "\xC3\xA4\xC3\xB6\xC3\xBC\xE2\x82\xAC");
    screen().type(27, false);
    EXPECT_STREQ(entry.getValue().toCString(), "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F");
    EXPECT_FALSE(screen().wantsText());
}
