// FormComponent: a container that gives the widgets below it their places.
#pragma once

#include "ui/widgets/WidgetComponent.h"

#include <vector>

/// What a container does with the widgets in it.
enum FormKind
{
    FK_COLUMN = 0, ///< one below the other
    FK_ROW = 1,    ///< side by side
    FK_GRID = 2,   ///< in columns of the same width, row by row
    FK_SCROLL = 3, ///< one below the other, in less height than they take
    FK_PAGES = 4   ///< all in the same place; those that are not the chosen page are away
};

/// What a container itself looks like.
enum FormLook
{
    FL_BARE = 0,  ///< nothing is seen of it
    FL_INK = 1,   ///< dark, with a thin line of brass around
    FL_RULED = 2, ///< a line of brass below
    FL_VEIL = 3   ///< dark, without a line
};

/// A container, under the component key "form".
///
/// Its widgets are those of the entities below its own, in their order. A container that scrolls, or holds one that
/// does, gives up height where there is too little.
class FormComponent : public WidgetComponent
{
    KV_REFLECTED(FormComponent)
public:
    FormComponent() = default;

    FormKind getKind() const { return kind; }
    void setKind(FormKind val);
    FormLook getLook() const { return look; }
    void setLook(FormLook val);
    int getColumns() const { return columns; }
    /// How many widgets stand side by side in a grid, 1 to 64.
    void setColumns(int val);
    float getGap() const { return gap; }
    /// Room between two neighbours.
    void setGap(float val);
    Vec4 getPadding() const { return padding; }
    /// Room within its edges: left, top, right, bottom.
    void setPadding(const Vec4 &val);
    int getPage() const { return page; }
    /// Which of its widgets is seen in FK_PAGES; -1 for all.
    void setPage(int val);
    /// How many widgets there are.
    int getWidgetCount();
    /// How far it is scrolled, pixels.
    float getScroll() const { return scroll; }
    /// Scrolls by some 1/1080, as far as there is something to see; false where nothing moves.
    bool scrollBy(float distance);
    /// Scrolls as little as shows a rectangle in pixels.
    void scrollTo(const WidgetRect &target);

    float heightToSpare(const WidgetStyle &style, float width) override;
    void slide(float x, float y) override;
    /// The widgets that are there, in order; borrowed until the tree changes.
    const std::vector<WidgetComponent *> &widgets();

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void arrange(const WidgetStyle &style) override;
    void paint(WidgetPainter &painter) override;

private:
    WidgetRect inner(const WidgetStyle &style) const;
    float gaps(const WidgetStyle &style, std::size_t count) const;
    float paddingX(const WidgetStyle &style) const { return (padding.x + padding.z) * style.unit; }
    float paddingY(const WidgetStyle &style) const { return (padding.y + padding.w) * style.unit; }
    void divideWidth(const WidgetStyle &style, float width, std::vector<float> &widths);
    void gridHeights(const WidgetStyle &style, float width, std::vector<float> &heights);
    void arrangeColumn(const WidgetStyle &style, const WidgetRect &room, bool scrolls);
    void arrangeRow(const WidgetStyle &style, const WidgetRect &room);
    void arrangeGrid(const WidgetStyle &style, const WidgetRect &room);
    void paintScrollBar(WidgetPainter &painter) const;

    FormKind kind = FK_COLUMN;
    FormLook look = FL_BARE;
    int columns = 2;
    float gap = 0.f;
    Vec4 padding;
    int page = -1;
    float scroll = 0.f;        ///< pixels
    float contentHeight = 0.f; ///< pixels, of what scrolls
    float lastUnit = 1.f;      ///< pixels, of the layout
    std::vector<WidgetComponent *> found;
};
