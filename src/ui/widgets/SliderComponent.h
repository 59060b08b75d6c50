// SliderComponent: a number between two others.
#pragma once

#include "ui/widgets/ButtonComponent.h"

/// A text with a rail behind it whose piece of brass moves by left and right, and by the pointer; key "button".
class SliderComponent : public ButtonComponent
{
    KV_REFLECTED(SliderComponent)
public:
    SliderComponent() = default;

    double getLeast() const { return least; }
    void setLeast(double val);
    double getMost() const { return most; }
    void setMost(double val);
    double getStep() const { return step; }
    /// What left and right change the value by, and what it is a multiple of from the least one on; 0 for any.
    void setStep(double val);
    double getValue() const { return value; }
    /// The number, within least and most; calls nothing.
    void setValue(double val);
    String getValueText() const { return valueText.get(); }
    /// What stands behind the rail: the value in words.
    void setValueText(const String &val);
    ReflectorPtr getChanged() const { return changed; }
    /// Called with the value whenever the player changes it.
    void setChanged(ReflectorPtr val) { changed = val; }

    bool turn(int direction) override;
    bool stepsSideways() const override { return true; }
    bool grabs(float x, float y) const override;
    void drag(float x, float y) override;

protected:
    float valueWidth() const override { return 420.f; }
    void paintValue(WidgetPainter &painter, const WidgetRect &room) override;

private:
    WidgetRect rail() const;
    double nearestStep(double wanted) const;
    void change(double wanted);

    double least = 0.0;
    double most = 1.0;
    double step = 0.0;
    double value = 0.0;
    WidgetText valueText;
    ReflectorPtr changed;
    float lastUnit = 1.f; ///< pixels, of the last painting
};
