// ButtonComponent: a widget that can be chosen and pressed.
#pragma once

#include "ui/widgets/WidgetComponent.h"
#include "ui/widgets/WidgetText.h"

#include "object/tree/ReflectorPtr.h"

class SavedArguments;

/// What a button looks like.
enum ButtonLook
{
    BL_LINE = 0, ///< a line of text
    BL_TAB = 1,  ///< one of several in a row, underlined where it is the selected one
    BL_ROW = 2   ///< a row of a list or of settings, with a thin line below
};

/// A text that can have the focus and be pressed, under the component key "button".
///
/// Base of all that takes input. The one with the focus bears a mark of candlelight. What scripts give it to call is
/// called again even if it has failed: a player presses once more, and each failure is told.
class ButtonComponent : public WidgetComponent
{
    KV_REFLECTED(ButtonComponent)
public:
    ButtonComponent() = default;

    String getText() const { return text.get(); }
    /// What stands on it.
    void setText(const String &val);
    float getTextSize() const { return textSize; }
    /// Em of the font.
    void setTextSize(float val);
    ButtonLook getLook() const { return look; }
    void setLook(ButtonLook val);
    TextAlignment getAlignment() const { return alignment; }
    /// Where its text stands between its sides.
    void setAlignment(TextAlignment val);
    bool getEnabled() const { return enabled; }
    /// Whether it can be pressed; one that cannot is passed over by the focus.
    void setEnabled(bool val);
    bool getSelected() const { return selected; }
    /// Whether it stands for what is chosen among several, as a tab does.
    void setSelected(bool val);
    String getHelp() const { return help; }
    /// A sentence on it, for the line that shows what has the focus.
    void setHelp(const String &val);
    ReflectorPtr getPressed() const { return pressed; }
    /// Called without arguments when it is pressed.
    void setPressed(ReflectorPtr val) { pressed = val; }
    ReflectorPtr getFocused() const { return focused; }
    /// Called without arguments when it gets the focus.
    void setFocused(ReflectorPtr val) { focused = val; }

    /// Whether it has the focus of its screen.
    bool hasFocus() const { return focus; }
    /// Takes the focus, or loses it; the screen's business.
    void takeFocus(bool val);
    /// Whether the focus may come here: it is enabled and there.
    virtual bool takesFocus() const { return getEnabled(); }
    /// Does what pressing it does.
    virtual void press();
    /// Does what a press of the pointer at a place does, pixels.
    virtual void pressAt(float x, float y) { press(); }
    /// Goes one step to the right (1) or to the left (-1), for one that steps sideways; false where there is none to go.
    virtual bool turn(int direction) { return false; }
    /// Whether left and right step through its values, and do not move the focus.
    virtual bool stepsSideways() const { return false; }
    /// Whether the pointer that goes down at a place drags its value, pixels.
    virtual bool grabs(float x, float y) const { return false; }
    /// Follows the pointer that has grabbed it, pixels.
    virtual void drag(float x, float y) {}
    /// Ends what has been begun with it, as typing.
    virtual void leave() {}
    /// Whether keys are typed into it now.
    virtual bool wantsText() const { return false; }
    /// Takes a typed key, as `TextCapture::add` has them, or a character by its number in Unicode.
    virtual void type(unsigned code, bool isCharacter) {}

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void paint(WidgetPainter &painter) override;

    /// Width that the value at the right takes, in 1/1080; 0 for none.
    virtual float valueWidth() const { return 0.f; }
    /// Height that the value needs, pixels.
    virtual float valueHeight(const WidgetStyle &style) { return 0.f; }
    /// Draws the value.
    virtual void paintValue(WidgetPainter &painter, const WidgetRect &room) {}
    /// The colour of its texts, by focus and whether it can be pressed.
    Vec4 textColor() const;
    /// The part of its place that the value takes, pixels.
    WidgetRect valuePlace(float unit) const;
    /// Calls what a script gave it; a failure is told.
    void call(ReflectorPtr function, SavedArguments &arguments, const char *role) const;

private:
    WidgetRect textPlace(float unit) const;
    void paintMark(WidgetPainter &painter) const;
    void paintFlame(WidgetPainter &painter) const;

    WidgetText text;
    float textSize = 30.f;
    ButtonLook look = BL_LINE;
    TextAlignment alignment = TA_LEFT;
    bool enabled = true;
    bool selected = false;
    bool focus = false;
    String help;
    ReflectorPtr pressed;
    ReflectorPtr focused;
};
