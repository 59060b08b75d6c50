// ChoiceComponent: one of several things.
#pragma once

#include "ui/widgets/ButtonComponent.h"

#include <vector>

/// A text with the chosen one of several others behind it, under the component key "button".
///
/// Left and right go through them and end at the ends; pressing goes on, and from the last one to the first.
class ChoiceComponent : public ButtonComponent
{
    KV_REFLECTED(ChoiceComponent)
public:
    ChoiceComponent() = default;

    /// Adds one more behind those that there are.
    void addChoice(const String &words);
    void clearChoices();
    int getCount() const { return static_cast<int>(choices.size()); }
    int getChosen() const { return chosen; }
    /// Which one is chosen, from 0; calls nothing, and keeps to those that there are.
    void setChosen(int val);
    ReflectorPtr getChanged() const { return changed; }
    /// Called with the number of the one that the player has chosen, from 0.
    void setChanged(ReflectorPtr val) { changed = val; }

    void press() override;
    bool turn(int direction) override;
    bool stepsSideways() const override { return true; }
    /// Goes back where the pointer is left of the middle of what is chosen.
    void pressAt(float x, float y) override;

protected:
    float valueWidth() const override { return 420.f; }
    /// That of the longest choice, so that stepping moves nothing.
    float valueHeight(const WidgetStyle &style) override;
    void paintValue(WidgetPainter &painter, const WidgetRect &room) override;

private:
    void change(int wanted);
    void paintArrow(WidgetPainter &painter, const WidgetRect &room, bool right) const;

    std::vector<String> choices;
    int chosen = 0;
    WidgetText shownChoice;
    ReflectorPtr changed;
    float lastUnit = 1.f; ///< pixels, of the last painting
};
