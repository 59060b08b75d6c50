// MenuComponent: a screen: its widgets, which of them has the focus, and what is seen of it.
#pragma once

#include "ui/widgets/ButtonComponent.h"
#include "ui/widgets/IWidgetHost.h"
#include "ui/widgets/WidgetPainter.h"

#include "engine/entities/SimpleComponent.h"

#include <vector>

class FontAsset;
class FormComponent;

/// What a screen did last, for who makes it heard.
enum MenuEvent
{
    ME_FOCUS = 0,  ///< another widget has the focus
    ME_PRESS = 1,  ///< a widget was pressed
    ME_CHANGE = 2, ///< a value was stepped or dragged
    ME_BACK = 3,   ///< it was asked to go back
    ME_REFUSED = 4 ///< a value has no step to go any more
};

/// A screen, under the component key "menu"; its widgets stand on the entities below its own.
///
/// Runs in a stopped level. Widgets right below it stand by their alignments in the window less a margin; the rest is
/// their containers' affair. Everything is laid out and painted anew only when something has changed. Input comes from
/// the level's `CursorComponent`, which gives it to the topmost screen; scripts may give it, too. A screen that is not
/// visible does nothing.
class MenuComponent : public SimpleComponent, public IWidgetHost, private WidgetPainter::Sheets
{
    KV_REFLECTED(MenuComponent)
public:
    MenuComponent();

    /// Lays the screen out and paints it, where anything has changed.
    void doFrame() override;
    void widgetChanged(bool places) override;

    bool getVisible() const { return visible; }
    /// Whether the screen is seen; it comes within `fadeTime` and goes at once.
    void setVisible(bool val);
    int getOrder() const { return order; }
    /// Screens of a higher order lie over those of a lower one, 0 to 60.
    void setOrder(int val);
    float getVeil() const { return veil; }
    /// How far the world behind is hidden: 0 not at all, 1 wholly.
    void setVeil(float val);
    float getFadeTime() const { return fadeTime; }
    /// Seconds in which it comes.
    void setFadeTime(float val);
    float getSafeMargin() const { return safeMargin; }
    /// Room that is kept free at the window's edges, in 1/1080.
    void setSafeMargin(float val);
    float getWidest() const { return widest; }
    /// Width by height of the widest place that widgets take; a wider window leaves room at its sides. 1 to 8.
    void setWidest(float val);
    String getFontName() const { return fontName; }
    /// Font file of "..\assets\fonts\", with its extension.
    void setFontName(const String &val);
    float getTextScale() const { return textScale; }
    /// What all texts are enlarged by, 0.5 to 2.
    void setTextScale(float val);
    ReflectorPtr getBackCalled() const { return backCalled; }
    /// Called without arguments when the player wants to go back.
    void setBackCalled(ReflectorPtr val) { backCalled = val; }
    ReflectorPtr getPageTurned() const { return pageTurned; }
    /// Called with 1 or -1 when the player wants the next page, or the one before.
    void setPageTurned(ReflectorPtr val) { pageTurned = val; }
    ReflectorPtr getEventHeard() const { return eventHeard; }
    /// Called with the number of a `MenuEvent` whenever there is one.
    void setEventHeard(ReflectorPtr val) { eventHeard = val; }
    ReflectorPtr getInputTaken() const { return inputTaken; }
    /// Called with what was pressed in the place of all that the screen would do with it, as long as it is set.
    ///
    /// The arguments are "key" and a virtual-key code, "button" and a button of the mouse, or "pad" and a button's bit.
    void setInputTaken(ReflectorPtr val) { inputTaken = val; }
    /// Gives something that was pressed to `inputTaken`; false where there is none.
    bool giveRaw(const String &kind, int code);

    /// The widget with the focus; invalid where nothing can have it.
    Handle<ButtonComponent> getFocus();
    /// Gives the focus to a widget of this screen that can have it, and shows it.
    void setFocus(Handle<ButtonComponent> val);
    /// Moves the focus to what lies in a direction, or steps what has it: right 1, left -1; down 1, up -1.
    void move(int x, int y);
    /// Moves the focus to the next widget, or the one before, in order.
    void step(int direction);
    /// Presses what has the focus.
    void press();
    /// Goes back.
    void goBack();
    /// Turns to the next page, or the one before.
    void turnPage(int direction);
    /// Takes the pointer's place, pixels from the upper left: the widget there gets the focus.
    void pointAt(float x, float y);
    /// Takes the pointer's button going down, and what is held is dragged; pixels.
    void pointerDown(float x, float y);
    /// Follows the pointer while its button is held, pixels.
    void pointerDrag(float x, float y);
    /// Takes the pointer's button going up: what it went down on is pressed if it is still there.
    void pointerUp(float x, float y);
    /// Scrolls what scrolls under the pointer by some notches, away from the player 1.
    void wheel(float x, float y, float notches);
    /// The widget at a place in pixels that can have the focus; invalid where there is none.
    Handle<ButtonComponent> widgetAt(float x, float y);
    /// Whether keys are typed into a widget now.
    bool wantsText();
    /// Takes a typed key, as `TextCapture::add` has them, or a character by its number in Unicode.
    void type(unsigned code, bool isCharacter);

    /// What is wrong with the screen as it stands, one thing a line; empty where nothing is.
    ///
    /// Texts that overlap, are broken within a word, or leave their box or the window; widgets that no way of the focus
    /// leads to. What is scrolled out of sight is judged as if it were seen.
    String findings();
    /// The texts as they stand, one a line, from the first to the last.
    String texts();
    /// How often the screen has been laid out.
    int getLayoutCount() const { return layoutCount; }
    /// How often the screen has been painted.
    int getPaintCount() const { return paintCount; }
    /// How many widgets can have the focus.
    int getStopCount();

private:
    struct Sheet
    {
        Handle<SheetGraphics> graphics;
        Handle<TextureAsset> texture;
    };

    SheetGraphics *colorSheet() override;
    SheetGraphics *letterSheet() override;
    SheetGraphics *pictureSheet(const Handle<TextureAsset> &texture) override;
    SheetGraphics *makeSheet(std::size_t place);
    void followWindow();
    void fadeIn();
    void gather();
    void gatherBelow(WidgetComponent &widget);
    void layOut();
    void paint();
    void draw(WidgetPainter &painter);
    void showSheets(bool shown);
    WidgetRect safeArea() const;
    bool bringUpToDate();
    void keepFocus();
    void giveFocus(ButtonComponent *to, bool told);
    void scrollToFocus();
    FormComponent *scrollerOf(const ButtonComponent &widget) const;
    std::vector<WidgetRect> stopPlaces() const;
    ButtonComponent *focused();
    void tell(MenuEvent event);
    std::vector<PaintedText> paintedTexts();
    void addUnreachable(std::string &found);
    FontAsset *readyFont() const;

    bool visible = false;
    int order = 0;
    float veil = 0.f;
    float fadeTime = 0.15f;  ///< seconds
    float safeMargin = 54.f; ///< 1/1080
    float widest = 2.4f;     ///< width by height
    String fontName;
    float textScale = 1.f;
    ReflectorPtr backCalled;
    ReflectorPtr pageTurned;
    ReflectorPtr eventHeard;
    ReflectorPtr inputTaken;

    Handle<FontAsset> font;
    Handle<ButtonComponent> focus;
    Handle<ButtonComponent> held; ///< the pointer went down on it
    bool dragging = false;        ///< what is held follows the pointer
    WidgetStyle style;
    WidgetRect window; ///< pixels
    float seen = 0.f;  ///< how far it has come, 0 to 1
    bool placesAreStale = true;
    bool paintIsStale = true;
    int layoutCount = 0;
    int paintCount = 0;
    std::vector<Sheet> sheets;                  ///< colour, letters, pictures
    std::size_t picturesUsed = 0;               ///< of this painting
    std::vector<Handle<WidgetComponent>> roots; ///< right below, as laid out last
    std::vector<Handle<ButtonComponent>> stops; ///< that can have the focus, in order, as laid out last
};
