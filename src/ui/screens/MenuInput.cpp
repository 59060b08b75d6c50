// MenuComponent: what the player does with a screen.
#include "ui/screens/FocusSearch.h"
#include "ui/screens/MenuComponent.h"

#include "ui/widgets/FormComponent.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float NOTCH = 90.f; ///< 1/1080 that a notch of the wheel scrolls
}

ButtonComponent *MenuComponent::focused()
{
    return focus.lookup().ptr;
}

Handle<ButtonComponent> MenuComponent::getFocus()
{
    bringUpToDate();
    return focus;
}

void MenuComponent::setFocus(Handle<ButtonComponent> val)
{
    bringUpToDate();
    const auto widget = val.lookup();
    if (widget && std::find(stops.begin(), stops.end(), val) != stops.end())
        giveFocus(widget.ptr, false);
}

/// Where what had the focus cannot have it any more, the first one that can gets it.
void MenuComponent::keepFocus()
{
    if (std::find(stops.begin(), stops.end(), focus) != stops.end())
        return;
    if (ButtonComponent *const before = focused())
        before->takeFocus(false);
    focus = Handle<ButtonComponent>();
    for (const Handle<ButtonComponent> &stop : stops)
        if (const auto widget = stop.lookup())
            return giveFocus(widget.ptr, false);
}

void MenuComponent::giveFocus(ButtonComponent *to, bool told)
{
    ButtonComponent *const before = focused();
    if (before == to)
        return;
    focus = getHandle(to);
    if (before)
        before->takeFocus(false);
    to->takeFocus(true);
    if (told)
        tell(ME_FOCUS);
}

void MenuComponent::tell(MenuEvent event)
{
    const ReflectorPtr heard = eventHeard;
    SavedArguments arguments = SavedArguments::of(static_cast<int>(event));
    if (heard && !callOrReport(heard, arguments, *this, "event handler") && heard == eventHeard)
        eventHeard = nullptr;
}

std::vector<WidgetRect> MenuComponent::stopPlaces() const
{
    std::vector<WidgetRect> places;
    for (const Handle<ButtonComponent> &stop : stops)
    {
        const auto widget = stop.lookup();
        places.push_back(widget ? widget->getPlace() : WidgetRect());
    }
    return places;
}

void MenuComponent::move(int x, int y)
{
    if (!bringUpToDate() || stops.empty())
        return;
    const auto widget = focus.lookup();
    if (widget && x != 0 && widget->stepsSideways())
    {
        const bool turned = widget->turn(x > 0 ? 1 : -1);
        return tell(turned ? ME_CHANGE : ME_REFUSED);
    }
    const auto at = static_cast<std::size_t>(std::find(stops.begin(), stops.end(), focus) - stops.begin());
    const int across = x > 0 ? 1 : x < 0 ? -1 : 0, down = y > 0 ? 1 : y < 0 ? -1 : 0;
    const std::size_t next = findInDirection(stopPlaces(), at, across, across ? 0 : down);
    if (next < stops.size() && next != at)
        if (const auto to = stops[next].lookup())
        {
            giveFocus(to.ptr, true);
            scrollToFocus();
        }
}

void MenuComponent::step(int direction)
{
    if (!bringUpToDate() || stops.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    const std::ptrdiff_t at = std::find(stops.begin(), stops.end(), focus) - stops.begin();
    const std::ptrdiff_t next = (at + (direction > 0 ? 1 : count - 1)) % count;
    if (const auto to = stops[static_cast<std::size_t>(next)].lookup())
    {
        giveFocus(to.ptr, true);
        scrollToFocus();
    }
}

FormComponent *MenuComponent::scrollerOf(const ButtonComponent &widget) const
{
    const auto entity = widget.getParent().lookup();
    for (auto above = entity ? entity->getParent().lookup() : entity; above && above->getHandle() != getParent();
         above = above->getParent().lookup())
    {
        auto *const form = dynamic_cast<FormComponent *>(widgetOf(above->getHandle()));
        if (form && form->getKind() == FK_SCROLL)
            return form;
    }
    return nullptr;
}

void MenuComponent::scrollToFocus()
{
    const auto widget = focus.lookup();
    if (FormComponent *const scroller = widget ? scrollerOf(*widget) : nullptr)
        scroller->scrollTo(widget->getPlace());
}

void MenuComponent::press()
{
    bringUpToDate();
    const auto widget = focus.lookup();
    if (!widget || !widget->takesFocus())
        return;
    tell(ME_PRESS);
    widget->press();
}

void MenuComponent::goBack()
{
    tell(ME_BACK);
    const ReflectorPtr called = backCalled;
    SavedArguments none(0);
    if (called)
        callOrReport(called, none, *this, "way back");
}

void MenuComponent::turnPage(int direction)
{
    const ReflectorPtr called = pageTurned;
    SavedArguments arguments = SavedArguments::of(direction > 0 ? 1 : -1);
    if (called)
        callOrReport(called, arguments, *this, "page turner");
}

bool MenuComponent::giveRaw(const String &kind, int code)
{
    const ReflectorPtr called = inputTaken;
    if (!called)
        return false;
    SavedArguments arguments = SavedArguments::of(kind, code);
    if (!callOrReport(called, arguments, *this, "input taker") && called == inputTaken)
        inputTaken = nullptr;
    return true;
}

Handle<ButtonComponent> MenuComponent::widgetAt(float x, float y)
{
    if (!bringUpToDate())
        return Handle<ButtonComponent>();
    for (const Handle<ButtonComponent> &stop : stops)
    {
        const auto widget = stop.lookup();
        if (!widget || !widget->getPlace().contains(x, y))
            continue;
        const FormComponent *const scroller = scrollerOf(*widget);
        if (!scroller || scroller->getPlace().contains(x, y))
            return stop;
    }
    return Handle<ButtonComponent>();
}

void MenuComponent::pointAt(float x, float y)
{
    const auto widget = widgetAt(x, y).lookup();
    if (widget && !wantsText())
        giveFocus(widget.ptr, true);
}

void MenuComponent::pointerDown(float x, float y)
{
    held = widgetAt(x, y);
    const auto widget = held.lookup();
    dragging = widget && widget->grabs(x, y);
    if (!widget)
        return;
    giveFocus(widget.ptr, false);
    if (dragging)
        widget->drag(x, y);
}

void MenuComponent::pointerDrag(float x, float y)
{
    const auto widget = held.lookup();
    if (!widget || !dragging)
        return pointAt(x, y);
    widget->drag(x, y);
}

void MenuComponent::pointerUp(float x, float y)
{
    const auto widget = held.lookup();
    const bool dragged = dragging;
    const bool pressedHere = widget && !dragged && widgetAt(x, y) == held;
    held = Handle<ButtonComponent>();
    dragging = false;
    if (dragged)
        return tell(ME_CHANGE);
    if (!pressedHere)
        return;
    tell(ME_PRESS);
    widget->pressAt(x, y);
}

void MenuComponent::wheel(float x, float y, float notches)
{
    if (!bringUpToDate())
        return;
    std::vector<WidgetComponent *> open;
    for (const Handle<WidgetComponent> &root : roots)
        open.push_back(root.lookup().ptr);
    while (!open.empty())
    {
        auto *const form = dynamic_cast<FormComponent *>(open.back());
        open.pop_back();
        if (!form)
            continue;
        if (form->getKind() == FK_SCROLL && form->getPlace().contains(x, y) && form->scrollBy(-notches * NOTCH))
            return pointAt(x, y); // what has come under the pointer, so that the focus stays in sight
        const std::vector<WidgetComponent *> &below = form->widgets();
        open.insert(open.end(), below.begin(), below.end());
    }
}

bool MenuComponent::wantsText()
{
    const auto widget = focus.lookup();
    return visible && widget && widget->wantsText();
}

void MenuComponent::type(unsigned code, bool isCharacter)
{
    if (const auto widget = focus.lookup())
        widget->type(code, isCharacter);
}

int MenuComponent::getStopCount()
{
    bringUpToDate();
    return static_cast<int>(stops.size());
}
