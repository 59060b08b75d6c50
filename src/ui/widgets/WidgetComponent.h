// WidgetComponent: a part of a screen that has a place among others.
#pragma once

#include "ui/widgets/WidgetRect.h"
#include "ui/widgets/WidgetStyle.h"

#include "engine/entities/SimpleComponent.h"

class FontAsset;
class WidgetPainter;

/// Where a widget stands in the room that its container has for it, on one axis.
enum WidgetAlign
{
    WA_FILL = 0,   ///< takes all of it
    WA_START = 1,  ///< at the left or the top
    WA_CENTER = 2, ///< in the middle
    WA_END = 3     ///< at the right or the bottom
};

/// Base of all widgets: what containers need to know, under the component key "form" or "button".
///
/// The tree of widgets is that of their entities, below one with a `MenuComponent`, which lays out, paints and gives
/// input; a widget has no step of its own. Lengths are in 1/1080 of the height of the largest 16:9 picture that fits
/// the window. Any property may change at any time, also by interpolation; the screen is then laid out anew, once a
/// frame. What is no finite number counts as 0, and what is out of all reason is limited.
class WidgetComponent : public SimpleComponent
{
    KV_REFLECTED(WidgetComponent)
public:
    /// Does nothing: the screen does all at once.
    void doFrame() override {}
    void onMurder() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;

    /// Whether the widget is there at all; one that is not takes no room.
    bool getShown() const { return shown; }
    void setShown(bool val);
    float getLeastWidth() const { return leastWidth; }
    /// The least width.
    void setLeastWidth(float val);
    float getLeastHeight() const { return leastHeight; }
    /// The least height.
    void setLeastHeight(float val);
    float getMostWidth() const { return mostWidth; }
    /// The most width; 0 for any.
    void setMostWidth(float val);
    float getGrowX() const { return growX; }
    /// The share of a row's spare width that the widget takes; 0 for none.
    void setGrowX(float val);
    float getGrowY() const { return growY; }
    /// The share of a column's spare height that the widget takes; 0 for none.
    void setGrowY(float val);
    WidgetAlign getAlignX() const { return alignX; }
    /// Where it stands in the width that it is given; below a screen, in the window's.
    void setAlignX(WidgetAlign val);
    WidgetAlign getAlignY() const { return alignY; }
    /// Where it stands in the height that it is given; below a screen, in the window's.
    void setAlignY(WidgetAlign val);
    Vec4 getMargin() const { return margin; }
    /// Room that is kept free around it: left, top, right, bottom.
    void setMargin(const Vec4 &val);
    Vec4 getShift() const { return shift; }
    /// How far it is drawn from its place, right and down, without moving others: for what moves.
    void setShift(const Vec4 &val);
    float getOpacity() const { return opacity; }
    /// How much is seen of it and of what is in it: 0 nothing, 1 all.
    void setOpacity(float val);

    /// Place in the picture as it was laid out last: left, top, width and height in pixels.
    Vec4 getPlacePixels() const { return Vec4(place.left, place.top, place.width, place.height); }
    const WidgetRect &getPlace() const { return place; }

    /// Width with margins that the widget would like, pixels.
    float widthWanted(const WidgetStyle &style);
    /// Height with margins that it needs in a width with margins, pixels.
    float heightWanted(const WidgetStyle &style, float width);
    /// The width with margins that it takes of what it is given, pixels.
    float widthTaken(const WidgetStyle &style, float given);
    /// Puts it into a rectangle, by its alignments.
    void layOut(const WidgetStyle &style, const WidgetRect &room);
    /// Draws it and what is in it.
    void draw(WidgetPainter &painter);
    /// How much of a height it can do without, pixels.
    virtual float heightToSpare(const WidgetStyle &style, float width);
    /// Moves what was laid out, as a container that scrolls does.
    virtual void slide(float x, float y);

protected:
    WidgetComponent() = default;

    /// Width of the content, pixels.
    virtual float measureWidth(const WidgetStyle &style) = 0;
    /// Height of the content in a width, pixels.
    virtual float measureHeight(const WidgetStyle &style, float width) = 0;
    /// Places what is in it, after its own place has changed.
    virtual void arrange(const WidgetStyle &style) {}
    virtual void paint(WidgetPainter &painter) = 0;

    /// Has the screen laid out anew before it is drawn next.
    void touch();
    /// Has the screen painted anew; no place has changed.
    void touchPaint();
    /// Takes a number over; what is no finite one counts as 0.
    /// @return whether it differs
    static bool take(float &field, float val, float least, float most);
    /// Takes all four parts over.
    /// @return whether one differs
    static bool take(Vec4 &field, const Vec4 &val, float least, float most);
    static constexpr float MOST = 20000.f; ///< of a length

private:
    void tellMenu(bool places);
    float marginX(const WidgetStyle &style) const { return (margin.x + margin.z) * style.unit; }
    float marginY(const WidgetStyle &style) const { return (margin.y + margin.w) * style.unit; }
    float limitWidth(const WidgetStyle &style, float width) const;

    bool shown = true;
    float leastWidth = 0.f;
    float leastHeight = 0.f;
    float mostWidth = 0.f; ///< 0: any
    float growX = 0.f;
    float growY = 0.f;
    WidgetAlign alignX = WA_FILL;
    WidgetAlign alignY = WA_FILL;
    Vec4 margin; ///< left, top, right, bottom
    Vec4 shift;  ///< right, down
    float opacity = 1.f;
    WidgetRect place; ///< pixels
};

/// The widget of an entity; null where it has none, or is dying.
WidgetComponent *widgetOf(const Handle<Object> &entity);
/// The pixels of a text of a size in 1/1080.
int textPixels(const WidgetStyle &style, float size);
