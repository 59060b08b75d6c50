// CheckBoxComponent: a widget that is on or off.
#pragma once

#include "ui/widgets/ButtonComponent.h"

/// A text with a box behind it that pressing fills or empties, under the component key "button".
class CheckBoxComponent : public ButtonComponent
{
    KV_REFLECTED(CheckBoxComponent)
public:
    CheckBoxComponent() = default;

    bool getValue() const { return value; }
    /// Whether it is on; calls nothing.
    void setValue(bool val);
    ReflectorPtr getChanged() const { return changed; }
    /// Called with the value whenever the player changes it.
    void setChanged(ReflectorPtr val) { changed = val; }

    void press() override;
    /// Right is on, left is off.
    bool turn(int direction) override;
    bool stepsSideways() const override { return true; }

protected:
    float valueWidth() const override { return 40.f; }
    void paintValue(WidgetPainter &painter, const WidgetRect &room) override;

private:
    void change(bool val);

    bool value = false;
    ReflectorPtr changed;
};
