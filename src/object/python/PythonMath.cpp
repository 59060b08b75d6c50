#include "object/python/PythonMath.h"

#include "object/python/PythonInvocation.h"

#include <boost/python.hpp>

namespace python = boost::python;

namespace
{

template <class T>
PyObject *newPythonValue(const T &value)
{
    try
    {
        return python::incref(python::object(value).ptr());
    }
    catch (...)
    {
        return raiseCaughtException();
    }
}

template <class T>
const T *valueOf(PyObject *o)
{
    return static_cast<const T *>(
        python::converter::get_lvalue_from_python(o, python::converter::registered<T>::converters));
}

template <class T>
String showValue(const T &value)
{
    return value.toString();
}

String showQuaternion(const Quaternion &q)
{
    return String::format("Quaternion(%g, %g, %g, %g)", double(q.r), double(q.i), double(q.j), double(q.k));
}

/// Copies are new values, so that `a = copy(b)` and a pattern's deep copy do not share a vector.
template <class T>
T copyValue(const T &value)
{
    return value;
}

template <class T>
T deepCopyValue(const T &value, const python::object &)
{
    return value;
}

/// Constructor arguments, so that a value can be pickled with a script's own data.
struct Vec4Pickling : python::pickle_suite
{
    static python::tuple getinitargs(const Vec4 &value)
    {
        return python::make_tuple(value.x, value.y, value.z, value.w);
    }
};

struct QuaternionPickling : python::pickle_suite
{
    static python::tuple getinitargs(const Quaternion &value)
    {
        return python::make_tuple(value.r, value.i, value.j, value.k);
    }
};

/// Every component under its three names.
void addComponents(python::class_<Vec4> &vec4)
{
    vec4.def_readwrite("x", &Vec4::x).def_readwrite("y", &Vec4::y).def_readwrite("z", &Vec4::z);
    vec4.def_readwrite("w", &Vec4::w);
    vec4.def_readwrite("r", &Vec4::r).def_readwrite("g", &Vec4::g).def_readwrite("b", &Vec4::b);
    vec4.def_readwrite("a", &Vec4::a);
    vec4.def_readwrite("s", &Vec4::s).def_readwrite("t", &Vec4::t).def_readwrite("p", &Vec4::p);
    vec4.def_readwrite("q", &Vec4::q);
}

void addVec4()
{
    using python::arg;
    using python::self;
    python::class_<Vec4> vec4(
        "Vec4", "A vector of four components; w is 0 for directions, 1 for positions.",
        python::init<float, float, float, float>((arg("x") = 0.0f, arg("y") = 0.0f, arg("z") = 0.0f, arg("w") = 0.0f)));
    vec4.def(python::init<const Vec4 &>())
        .def(self + self)
        .def(self - self)
        .def(self * self)
        .def(self * float())
        .def(float() * self)
        .def(self / float())
        .def(self += self)
        .def(self -= python::other<Vec4>())
        .def(-self)
        .def(self == self)
        .def(self != self)
        .def(
            "__rmul__", +[](const Vec4 &right, const Vec4 &left) { return left * right; })
        .def("__repr__", showValue<Vec4>)
        .def("__copy__", copyValue<Vec4>)
        .def("__deepcopy__", deepCopyValue<Vec4>)
        .def_pickle(Vec4Pickling())
        .def("cross", &Vec4::cross, "Cross product, with w 0.")
        .def("dot", &Vec4::dot, "Dot product of x, y and z.")
        .def("magnitude", &Vec4::magnitude, "Length over all four components.")
        .def("magnitudeSquared", &Vec4::magnitudeSquared, "Square of the length over all four components.")
        .def("normalize", &Vec4::normalize, "Makes the length 1, unless it is 1e-6 or less.")
        .def("reset", &Vec4::reset, "Makes all components 0.")
        .def("clamp", &Vec4::clamp, "Makes components that are nearly 0 exactly 0.");
    addComponents(vec4);
    // Equality allows for rounding, which no hash can follow.
    vec4.setattr("__hash__", python::object());
}

void addQuaternion()
{
    using python::arg;
    using python::self;
    python::class_<Quaternion> quaternion(
        "Quaternion", "A rotation; r is the real part.",
        python::init<float, float, float, float>((arg("r") = 1.0f, arg("i") = 0.0f, arg("j") = 0.0f, arg("k") = 0.0f)));
    quaternion.def(python::init<const Quaternion &>())
        .def(self * self)
        .def(self *= self)
        .def(self == self)
        .def(self != self)
        .def("__repr__", showQuaternion)
        .def("__copy__", copyValue<Quaternion>)
        .def("__deepcopy__", deepCopyValue<Quaternion>)
        .def_pickle(QuaternionPickling())
        .def("normalize", &Quaternion::normalize, "Makes the length 1.")
        .def("clamp", &Quaternion::clamp, "Makes components that are nearly 0 exactly 0.")
        .def("inverse", &Quaternion::inverse, "The opposite rotation.")
        .def("update", &Quaternion::update, "Turns by an angular velocity over a time in seconds.")
        .def("fromAxisAngle", &Quaternion::fromAxisAngle, "Rotation around an axis by an angle in radians.")
        .staticmethod("fromAxisAngle")
        .def(
            "fromDirection", +[](const Vec4 &direction) { return Quaternion(direction); },
            "Rotation that faces along a direction.")
        .staticmethod("fromDirection")
        .def("fromDirectionWithAdaptingUpVector", &Quaternion::fromDirectionWithAdaptingUpVector,
             "Rotation that faces along a direction, also nearly straight up or down.")
        .staticmethod("fromDirectionWithAdaptingUpVector")
        .def_readwrite("r", &Quaternion::r)
        .def_readwrite("i", &Quaternion::i)
        .def_readwrite("j", &Quaternion::j)
        .def_readwrite("k", &Quaternion::k);
    quaternion.setattr("__hash__", python::object());
}

} // namespace

void addPythonMath(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    addVec4();
    addQuaternion();
}

PyObject *newPythonVec4(const Vec4 &value)
{
    return newPythonValue(value);
}

PyObject *newPythonQuaternion(const Quaternion &value)
{
    return newPythonValue(value);
}

const Vec4 *vec4Of(PyObject *o)
{
    return valueOf<Vec4>(o);
}

const Quaternion *quaternionOf(PyObject *o)
{
    return valueOf<Quaternion>(o);
}
