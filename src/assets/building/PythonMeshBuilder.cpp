// MeshBuilder as scripts see it.
#include "assets/building/MeshBuilder.h"

#include "foundation/Quaternion.h"
#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

#include <boost/python/stl_iterator.hpp>

namespace python = boost::python;

namespace
{

/// The most parts of one shape, and vertices of one mesh, that a script can mean.
constexpr long long MOST_PARTS = 1 << 20;

[[noreturn]] void raise(PyObject *type, const char *text)
{
    PyErr_SetString(type, text);
    python::throw_error_already_set();
    std::abort(); // not reached
}

void raiseFailure(const ErrorCode &outcome)
{
    if (outcome.succeeded())
        return;
    raise(PyExc_ValueError,
          outcome.getCode() == ErrorCode::OUT_OF_BOUNDS
              ? "a coordinate is no number or beyond 1e6 metres, a height is not above 0, or there is one station only"
              : "the outline or a hole crosses itself or another, lies outside, or has no area");
}

int parts(int least, long long given, long long times = 1)
{
    if (given < least || given * times > MOST_PARTS)
        raise(PyExc_ValueError, "a shape has too few parts, or more than a million");
    return static_cast<int>(given);
}

Matrix4 placementOf(const Vec4 &at, const Quaternion &turn)
{
    return turn.generateRotation(at);
}

MeshPolygon::Outline outlineOf(const python::object &points)
{
    MeshPolygon::Outline outline;
    for (python::stl_input_iterator<python::object> it(points), end; it != end; ++it)
        outline.push_back({python::extract<float>((*it)[0]), python::extract<float>((*it)[1])});
    return outline;
}

MeshPolygon polygonOf(const python::object &outline, const python::object &holes)
{
    MeshPolygon polygon;
    polygon.outline = outlineOf(outline);
    for (python::stl_input_iterator<python::object> it(holes), end; it != end; ++it)
        polygon.holes.push_back(outlineOf(*it));
    return polygon;
}

MeshBuilder::Index addVertex(MeshBuilder &mesh, const Vec4 &position, const Vec4 &normal, float u, float v)
{
    return mesh.addVertex(position, normal, {u, v});
}

void expectVertices(const MeshBuilder &mesh, std::initializer_list<MeshBuilder::Index> numbers)
{
    for (const MeshBuilder::Index number : numbers)
        if (number >= mesh.getVertices().size())
            raise(PyExc_IndexError, "the mesh has no vertex of that number");
}

void addTriangle(MeshBuilder &mesh, MeshBuilder::Index a, MeshBuilder::Index b, MeshBuilder::Index c)
{
    expectVertices(mesh, {a, b, c});
    mesh.addTriangle(a, b, c);
}

void addQuad(MeshBuilder &mesh, MeshBuilder::Index a, MeshBuilder::Index b, MeshBuilder::Index c, MeshBuilder::Index d)
{
    expectVertices(mesh, {a, b, c, d});
    mesh.addQuad(a, b, c, d);
}

void addPolygon(MeshBuilder &mesh, const python::object &outline, const python::object &holes, const Vec4 &at,
                const Quaternion &turn)
{
    raiseFailure(mesh.addPolygon(polygonOf(outline, holes), placementOf(at, turn)));
}

void addExtrusion(MeshBuilder &mesh, const python::object &outline, float height, const python::object &holes,
                  const Vec4 &at, const Quaternion &turn)
{
    raiseFailure(mesh.addExtrusion(polygonOf(outline, holes), height, placementOf(at, turn)));
}

void addSweep(MeshBuilder &mesh, const python::object &outline, const python::object &stations,
              const python::object &holes)
{
    std::vector<Matrix4> places;
    for (python::stl_input_iterator<python::object> it(stations), end; it != end; ++it)
        places.push_back(placementOf(python::extract<Vec4>((*it)[0]), python::extract<Quaternion>((*it)[1])));
    raiseFailure(mesh.addExtrusion(polygonOf(outline, holes), places));
}

void addBox(MeshBuilder &mesh, const Vec4 &halfSizes, const Vec4 &at, const Quaternion &turn)
{
    mesh.addBox(halfSizes, placementOf(at, turn));
}

void addPlane(MeshBuilder &mesh, float width, float depth, int columns, int rows, const Vec4 &at,
              const Quaternion &turn)
{
    mesh.addPlane(width, depth, parts(1, columns, rows), parts(1, rows), placementOf(at, turn));
}

void addCylinder(MeshBuilder &mesh, float radius, float height, int segments, const Vec4 &at, const Quaternion &turn)
{
    mesh.addCylinder(radius, height, parts(3, segments), placementOf(at, turn));
}

void addSphere(MeshBuilder &mesh, float radius, int segments, int rings, const Vec4 &at, const Quaternion &turn)
{
    mesh.addSphere(radius, parts(3, segments, rings), parts(2, rings), placementOf(at, turn));
}

void merge(MeshBuilder &mesh, const MeshBuilder &other, const Vec4 &at, const Quaternion &turn)
{
    mesh.merge(other, placementOf(at, turn));
}

void transform(MeshBuilder &mesh, const Vec4 &at, const Quaternion &turn)
{
    mesh.transform(placementOf(at, turn));
}

void applyWorldTextureCoordinates(MeshBuilder &mesh, float scale, const Vec4 &at, const Quaternion &turn)
{
    mesh.applyWorldTextureCoordinates(scale, placementOf(at, turn));
}

std::size_t vertexCount(const MeshBuilder &mesh)
{
    return mesh.getVertices().size();
}

python::tuple bounds(const MeshBuilder &mesh)
{
    const MeshBounds box = mesh.getBounds();
    return python::make_tuple(box.minimum, box.maximum);
}

const auto AT = [] { return python::arg("at") = Vec4(0.f, 0.f, 0.f, 1.f); };
const auto TURN = [] { return python::arg("turn") = Quaternion(); };

void addShapes(python::class_<MeshBuilder> &builder)
{
    using python::arg;
    const auto holes = arg("holes") = python::tuple();
    builder
        .def("addPolygon", addPolygon, (arg("outline"), holes, AT(), TURN()),
             "Appends a flat area that faces +y, a plan of x and z with holes; ValueError where it crosses itself.")
        .def("addExtrusion", addExtrusion, (arg("outline"), arg("height"), holes, AT(), TURN()),
             "Appends the solid between a plan and the same plan higher up; ValueError where it crosses itself.")
        .def("addSweep", addSweep, (arg("outline"), arg("stations"), holes),
             "Appends the solid that a plan sweeps over from station to station, each a place and an orientation.")
        .def("addBox", addBox, (arg("halfSizes"), AT(), TURN()), "Appends a box, the whole texture on each face.")
        .def("addPlane", addPlane, (arg("width"), arg("depth"), arg("columns") = 1, arg("rows") = 1, AT(), TURN()),
             "Appends a rectangle that faces +y, in cells.")
        .def("addCylinder", addCylinder, (arg("radius"), arg("height"), arg("segments") = 16, AT(), TURN()),
             "Appends a capped cylinder around the y axis.")
        .def("addSphere", addSphere, (arg("radius"), arg("segments") = 16, arg("rings") = 8, AT(), TURN()),
             "Appends a sphere.");
}

void addWork(python::class_<MeshBuilder> &builder)
{
    using python::arg;
    builder.def("merge", merge, (arg("other"), AT(), TURN()), "Appends a copy of another mesh.")
        .def("transform", transform, (AT(), TURN()), "Turns every vertex, then moves it.")
        .def("flip", &MeshBuilder::flip, "Turns the mesh inside out: every triangle and every normal.")
        .def("weld", &MeshBuilder::weld, (arg("tolerance") = 1e-5f), "Makes one vertex of those that are the same.")
        .def("dropFlatTriangles", &MeshBuilder::dropFlatTriangles, (arg("leastArea") = 1e-9f),
             "Drops the triangles that have hardly an area, square metres.")
        .def("flattenNormals", &MeshBuilder::flattenNormals, "Gives each triangle its own normal.")
        .def("smoothNormals", &MeshBuilder::smoothNormals, (arg("creaseAngle") = PI),
             "Smooths the edges that turn off by at most an angle, radians.")
        .def("generateTangents", &MeshBuilder::generateTangents,
             "Makes tangents from normals and texture coordinates; what is lit needs them, last of all.")
        .def("applyWorldTextureCoordinates", applyWorldTextureCoordinates, (arg("scale") = 1.f, AT(), TURN()),
             "Replaces texture coordinates by places in the world, with some repeats a metre.");
}

void addMeshBuilder(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    using python::arg;
    using Corner = const Vec4 &;
    python::class_<MeshBuilder> builder("MeshBuilder", "Gathers vertices and triangles, shapes and polygons, into one "
                                                       "mesh; metres, front faces clockwise.");
    builder.def("clear", &MeshBuilder::clear, "Drops everything.")
        .def("addVertex", addVertex, (arg("position"), arg("normal"), arg("u") = 0.f, arg("v") = 0.f),
             "Appends a vertex and returns its number.")
        .def("addTriangle", addTriangle, "Appends a triangle of vertices by their numbers, clockwise from its front.")
        .def("addTriangle", static_cast<void (MeshBuilder::*)(Corner, Corner, Corner)>(&MeshBuilder::addTriangle),
             "Appends three vertices as a triangle with its own normal.")
        .def("addQuad", addQuad, "Appends two triangles of vertices by their numbers: a, b, c and a, c, d.")
        .def("addQuad", static_cast<void (MeshBuilder::*)(Corner, Corner, Corner, Corner)>(&MeshBuilder::addQuad),
             "Appends a flat quad with the whole texture: top left, top right, bottom right, bottom left.")
        .add_property("vertexCount", vertexCount)
        .add_property("triangleCount", &MeshBuilder::getTriangleCount)
        .add_property("bounds", bounds);
    addShapes(builder);
    addWork(builder);
}

const PythonModulePart meshBuilderPart(addMeshBuilder);

} // namespace

bool fromVariant(const Variant &v, MeshBuilder &builder)
{
    return readScriptObject(v, builder, extractValue<MeshBuilder>);
}
