// ObjectBar: a tweak bar of one object, with all that is known of it.
#pragma once

#include "tools/bars/PlaceLines.h"
#include "tools/bars/PropertyLine.h"

#include "object/tree/Handle.h"

#include <memory>
#include <string>
#include <vector>

class TwBar;
struct TwListRow;

/// Shows what an object is, where it comes from, what stands below it, what it hears, and its reflected properties.
///
/// An entity's bar has its place and the properties of its components, too, each under a heading. The object may die at
/// any time; the owner then drops the bar.
class ObjectBar
{
public:
    explicit ObjectBar(const Handle<Object> &object);
    ~ObjectBar();
    ObjectBar(const ObjectBar &) = delete;
    ObjectBar &operator=(const ObjectBar &) = delete;

    const Handle<Object> &getObject() const { return object; }
    /// The object's path, which stays known when it dies.
    const String &getPath() const { return path; }
    /// Finds the path of an object of a level that was still being built, and belongs to the run now.
    void followPath();
    /// Whether the user has left it open.
    bool isOpen() const;
    /// Opens it again, before the others.
    void show();
    /// Closes it, as the user would.
    void hide();
    /// Bounds a number between two ends; false if there is no such property.
    bool setRange(const String &property, double min, double max);
    /// The bar itself, for a test to look at.
    TwBar *getBar() const { return bar; }

private:
    void setText(const char *line, const char *parameter, const String &text);
    void addHead();
    void tellPath();
    void addButton(const char *name, const char *help, void (*pressed)(void *), bool beside);
    void addComponents();
    void addChildren();
    void addSubscriptions();
    void fillChild(unsigned index, TwListRow &row) const;
    void openChild(unsigned index) const;

    Handle<Object> object;
    String path;
    String origin; ///< place in the scripts; empty where it is not known
    TwBar *bar = nullptr;
    PropertyLines lines;
    std::unique_ptr<PlaceLines> place; ///< null for what stands nowhere
    std::vector<String> subscriptions;
};
