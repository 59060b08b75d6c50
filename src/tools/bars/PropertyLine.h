// PropertyLine: one reflected property of an object, as a line of a bar.
#pragma once

#include "object/reflection/PropertyDesc.h"
#include "object/reflection/Variant.h"
#include "object/tree/Handle.h"

#include <memory>
#include <string>
#include <vector>

class DoxyElement;
class TwBar;

/// Shows a property with the control for its type, and sets it as it is edited.
///
/// The value is read through the getter with every frame that shows the line, and written through the setter; what
/// either says against it stands below the control. A right click on the name watches the property or copies it as
/// Python. The object may die at any time: the line then shows nothing. Stays where it is: the bar knows it by address.
class PropertyLine
{
public:
    /// @param name  under which the bar knows it
    PropertyLine(const Handle<Object> &object, const PropertyDesc &desc, std::string name);
    PropertyLine(const PropertyLine &) = delete;
    PropertyLine &operator=(const PropertyLine &) = delete;

    /// Puts it on a bar; false for what no control can show.
    bool addTo(TwBar *bar);
    void setLabel(const String &text) { setText("label", text); }
    void setGroup(const String &heading, bool closed);

    const Handle<Object> &getObject() const { return object; }
    /// The value, by its getter.
    ErrorReturn<Variant> read() const;
    /// "level.getDescendantByPath('lamp/light').color = kaVel.Vec4(1, 1, 0.5, 1)".
    String toPython() const;

    /// Whether calling the getter leaves the object as it is, as far as its declaration promises.
    static bool isSafeToRead(const DoxyElement &type, const PropertyDesc &desc);

private:
    bool addVariable(const Variant &value);
    bool addNumber(const ReflectorPtr &type);
    void describe(const Variant &value);
    void setText(const char *parameter, const String &text);
    void showFailure();
    void write(const Variant &value);
    void finishEdit();
    void choose(int line);

    template <class T>
    bool add(int type);
    template <class T>
    static void getValue(void *value, void *self);
    template <class T>
    static void setValue(const void *value, void *self);
    static void getDescription(void *value, void *self);
    static void followLink(void *self);

    Handle<Object> object;
    PropertyDesc desc;
    std::string name;
    TwBar *bar = nullptr;
    Variant before;        ///< the value when the present edit began
    bool isEdited = false; ///< the setter has taken a value since then
    bool isBegun = false;  ///< an edit is under way
    String readFailure;    ///< of the last frame; empty where it could be read
    String failure;        ///< of the last edit; empty where it succeeded
    String shownFailure;
};

using PropertyLines = std::vector<std::unique_ptr<PropertyLine>>;

/// Puts all properties of an object that can be shown on a bar.
///
/// @param prefix   before their names on the bar, so that several objects have room on it
/// @param heading  they stand under; empty: each under its class
void addPropertyLines(TwBar *bar, const Handle<Object> &object, const std::string &prefix, const String &heading,
                      PropertyLines &lines);
