// TextEntryComponent: a line that is typed.
#pragma once

#include "ui/widgets/ButtonComponent.h"

/// A text with a line behind it that takes what is typed, under the component key "button".
///
/// Pressing it begins, Enter ends and tells the text, Escape ends and leaves it as it was. Characters are kept whole.
class TextEntryComponent : public ButtonComponent
{
    KV_REFLECTED(TextEntryComponent)
public:
    TextEntryComponent() = default;

    String getValue() const { return value; }
    /// What stands in it, cut to the most characters; calls nothing.
    void setValue(const String &val);
    int getMost() const { return most; }
    /// The most characters, 1 to 1000.
    void setMost(int val);
    ReflectorPtr getEntered() const { return entered; }
    /// Called with the text when the player has ended it.
    void setEntered(ReflectorPtr val) { entered = val; }
    /// Whether it is being typed into.
    bool getTyping() const { return typing; }

    void press() override;
    void leave() override;
    bool wantsText() const override { return typing; }
    void type(unsigned code, bool isCharacter) override;

protected:
    float valueWidth() const override { return 420.f; }
    void paintValue(WidgetPainter &painter, const WidgetRect &room) override;

private:
    void end(bool keep);
    void takeOffLast();
    void show();
    int countCharacters() const;

    String value;
    String before; ///< the typing began
    int most = 40;
    bool typing = false;
    WidgetText shownValue;
    ReflectorPtr entered;
};
