// PropertyDesc: a pair of getter and setter under one name.
#pragma once

#include "object/tree/ReflectorPtr.h"

#include "foundation/KVString.h"

/// A property of a class: its name and the functions that read and write it.
///
/// A property without a getter cannot be read, one without a setter cannot be written.
class PropertyDesc : public IStringizable
{
public:
    PropertyDesc() = default;
    explicit PropertyDesc(String name, ReflectorPtr getter = nullptr, ReflectorPtr setter = nullptr)
        : name(std::move(name)), setter(std::move(setter)), getter(std::move(getter))
    {
    }

    const String &getName() const { return name; }
    const ReflectorPtr &getSetter() const { return setter; }
    const ReflectorPtr &getGetter() const { return getter; }
    void setSetter(ReflectorPtr val) { setter = std::move(val); }
    void setGetter(ReflectorPtr val) { getter = std::move(val); }

    /// The property's name and the class it belongs to, as "<property speed of Mover>".
    String toString() const;

private:
    String name;
    ReflectorPtr setter;
    ReflectorPtr getter;
};
