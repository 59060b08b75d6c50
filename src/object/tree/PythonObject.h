// PythonObject: one reference to a script object, without the interpreter's headers.
#pragma once

struct _object;

namespace boost
{
namespace python
{
namespace api
{
class object;
}
} // namespace python
} // namespace boost

/// Owner of one reference to a script object.
///
/// Stands in headers that everybody includes where a script object is kept: an object's pattern, a value. Holds null
/// for `None`, so that an empty owner costs nothing and is safe before the interpreter has started. Converts to and
/// from `boost::python::object` in both directions.
class PythonObject
{
public:
    /// The owner of `None`.
    PythonObject() = default;

    /// Shares what a Boost.Python object holds.
    PythonObject(const boost::python::api::object &shared);

    PythonObject(const PythonObject &other);
    PythonObject(PythonObject &&other) noexcept : object(other.object) { other.object = nullptr; }
    ~PythonObject()
    {
        if (object)
            release();
    }
    PythonObject &operator=(const PythonObject &other);
    PythonObject &operator=(PythonObject &&other) noexcept;

    /// An owner that takes a reference of its own; null and `None` give the empty owner.
    static PythonObject borrow(_object *borrowed);

    /// An owner that takes over the caller's reference; null and `None` give the empty owner.
    static PythonObject steal(_object *owned);

    /// The same object for Boost.Python; the empty owner gives `None`.
    operator boost::python::api::object() const;

    /// The script object, borrowed; null for `None`.
    _object *get() const { return object; }

    bool isNone() const { return !object; }

    /// Whether both hold the very same script object.
    bool operator==(const PythonObject &other) const { return object == other.object; }

private:
    void release();

    _object *object = nullptr; ///< one owned reference, or null for `None`
};
