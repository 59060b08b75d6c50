// PythonReflectedThing: a script object where the engine expects a reflected thing.
#pragma once

#include "object/tree/IReflectedThing.h"
#include "object/tree/PythonObject.h"

/// Lets a script's callable, class or module stand wherever a ReflectorPtr stands.
///
/// Made by `getReflectorForPythonObject` only, so that a script object has one reflector. Counted: dies with its last
/// ReflectorPtr. It keeps the object alive, and the object keeps the script's view of it; the interpreter's collector
/// frees such a pair once the engine has let go of it. A script object still held at the end of the process is not
/// destroyed, since the interpreter is never shut down.
class PythonReflectedThing final : public IReflectedThing
{
public:
    explicit PythonReflectedThing(PythonObject object);
    PythonReflectedThing(const PythonReflectedThing &) = delete;
    PythonReflectedThing &operator=(const PythonReflectedThing &) = delete;

    /// The script object; `None` once the collector has freed it.
    const PythonObject &getObject() const { return pyObj; }
    /// Whether one reference alone is left.
    bool hasOneReference() const { return refCount == 1; }
    /// Drops the script object; for the collector, when nobody can reach it any more.
    void letGo() const;

    /// What the script object shows as itself.
    String toString() const override;
    /// Its `__name__`, or the name of its class.
    String getName() const override;
    /// Its `__module__`, "::", its `__name__`.
    String getQualifiedName() const override;
    /// CLASS for a class, FUNCTION for what can be called, NAMESPACE for a module, VARIABLE for the rest.
    Kind getKind() const override;
    IReflectionProvider *getReflectionProvider() const override;
    /// Always null.
    ReflectorPtr getEnclosingScope() const override { return nullptr; }
    /// File and line of a function's code, "<unknown>(0)" for anything else.
    String getDefinitionLocation() const override;
    /// The reflector of an attribute.
    ReflectorPtr getMember(String name) const override;
    /// The reflectors of the attributes of a class or module, without those that begin with two underscores.
    MemberList getMemberList() const override;
    PropertyList getPropertyList() const override;
    ErrorReturn<PropertyDesc> getProperty(const String &name) const override;
    std::int64_t getEnumValue() const override;
    ReflectorPtr getOverriddenThing() const override { return nullptr; }
    /// Positional arguments of a function, without the object that a bound method brings; 0 where nothing tells.
    std::size_t getArgCount() const override;
    ReflectorPtr getReturnType() const override { return nullptr; }
    ReflectorPtr getArgType(std::size_t) const override { return nullptr; }
    /// Calls the script object.
    ///
    /// An exception is raised as an assertion that shows the traceback, and the call fails with PYTHON_EXCEPTION.
    ErrorReturn<Variant> do_call(SavedArguments &args) const override;
    /// Calls a script class without arguments; valid if that gives a handle. An exception is shown as by `do_call`.
    Handle<Object> construct_a(IAllocator &allocator, AllocationCategory &category) const override;
    /// Whether both are script classes and this one derives from the other.
    bool isSubclassOf(const ReflectorPtr &possibleSuperclass) const override;
    void acquireRef() const override { ++refCount; }
    void releaseRef() const override;

private:
    ~PythonReflectedThing() override;

    mutable PythonObject pyObj;
    mutable int refCount = 0;
};
