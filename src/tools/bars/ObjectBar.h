// ObjectBar: a tweak bar with the properties of one object.
#pragma once

#include "object/tree/Handle.h"
#include "object/reflection/PropertyDesc.h"
#include "object/reflection/Variant.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class DoxyElement;
class TwBar;

/// Shows the reflected properties of an object, and sets them as they are edited.
///
/// Values are read through the getters with every frame that shows the bar. Only getters that promise to change nothing
/// are called, or that have a setter beside them. The object may die at any time; the owner then drops the bar.
class ObjectBar
{
public:
    using Opener = std::function<void(const Handle<Object> &)>;

    /// @param open  called with the object of a link that was pressed
    ObjectBar(const Handle<Object> &object, Opener open);
    ~ObjectBar();
    ObjectBar(const ObjectBar &) = delete;
    ObjectBar &operator=(const ObjectBar &) = delete;

    const Handle<Object> &getObject() const { return object; }
    /// Whether the user has left it open.
    bool isOpen() const;
    /// Opens it again.
    void show();
    /// Closes it, as the user would.
    void hide();
    /// Bounds a number between two ends; false if there is no such property.
    bool setRange(const String &property, double min, double max);
    /// The bar itself, for a test to look at.
    TwBar *getBar() const { return bar; }

private:
    struct Property
    {
        ObjectBar *owner;
        PropertyDesc desc;
        std::string name; ///< under which the bar knows it
        String failure;   ///< of the last edit; empty when it succeeded

        ErrorReturn<Variant> read() const;
        void write(const Variant &value);
    };

    void setVisible(bool val);
    void addProperty(const DoxyElement &type, const PropertyDesc &desc);
    bool addVariable(Property &property, const Variant &value);
    void describe(const Property &property, const Variant &value);
    void setText(const Property &property, const char *parameter, const String &text);

    template <class T>
    static void getValue(void *value, void *clientData);
    template <class T>
    static void setValue(const void *value, void *clientData);
    static void getDescription(void *value, void *clientData);
    static void followLink(void *clientData);

    Handle<Object> object;
    Opener open;
    TwBar *bar = nullptr;
    std::vector<std::unique_ptr<Property>> properties;
};
