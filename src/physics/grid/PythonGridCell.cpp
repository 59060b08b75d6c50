// GridCell as scripts see it.
#include "physics/grid/GridCell.h"

#include "physics/grid/SquareGrid.h"
#include "object/python/PythonIntegration.h"
#include "object/python/PythonInvocation.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

#include <boost/python/stl_iterator.hpp>

namespace python = boost::python;

namespace
{

Handle<Object> gridOf(const GridCell &cell)
{
    return cell.getGrid();
}

/// A cell of a grid; any other object than a grid gives a cell of none.
GridCell *newCell(const Handle<Object> &grid, int x, int z)
{
    return new GridCell(handle_cast<SquareGrid>(grid), x, z);
}

void raiseFailure(const char *what, const ErrorCode &outcome)
{
    if (outcome.succeeded())
        return;
    raiseCallFailure(String::copyFrom(what), outcome);
    python::throw_error_already_set();
}

void setValue(const GridCell &cell, const Vec4 &value)
{
    raiseFailure("GridCell::setValue", cell.setValue(value));
}

void setFirstFloat(const GridCell &cell, float value)
{
    raiseFailure("GridCell::setFloatValue", cell.setFloatValue(value));
}

void setFloat(const GridCell &cell, std::size_t idx, float value)
{
    raiseFailure("GridCell::setFloatValue", cell.setFloatValue(idx, value));
}

GridCell neighbor(const GridCell &cell, const Variant &side)
{
    const ErrorReturn<SquareGrid::Neighbor> named = side.get<SquareGrid::Neighbor>();
    if (!named.succeeded())
    {
        PyErr_SetString(PyExc_TypeError, "a neighbour is one of SquareGrid.Neighbor, its number or its name");
        python::throw_error_already_set();
    }
    return cell.getNeighbor(named.value);
}

python::list listOf(const HexCont &cells)
{
    python::list list;
    for (const GridCell &cell : cells)
        list.append(cell);
    return list;
}

python::list validNeighbors(const GridCell &cell)
{
    return listOf(cell.getValidNeighbors());
}

python::tuple asTuple(const GridCell &cell)
{
    return python::make_tuple(gridOf(cell), cell.getX(), cell.getZ());
}

Py_hash_t hashOf(const GridCell &cell)
{
    return PyObject_Hash(asTuple(cell).ptr());
}

String show(const GridCell &cell)
{
    return String::format("<cell %d, %d%s>", cell.getX(), cell.getZ(), cell.isValid() ? "" : " outside of its grid");
}

void addDistances(python::class_<GridCell> &cell)
{
    cell.def("gridManhattanDistance", &GridCell::gridManhattanDistance, "|dx| + |dz|, cells.")
        .def("worldManhattanDistance", &GridCell::worldManhattanDistance, "|dx| + |dz| of the centres, metres.")
        .def("gridDistance", &GridCell::gridDistance, "Straight distance, cells.")
        .def("worldDistance", &GridCell::worldDistance, "Straight distance of the centres, metres.")
        .def("gridDistanceSquared", &GridCell::gridDistanceSquared, "Square of the straight distance, cells.")
        .def("worldDistanceSquared", &GridCell::worldDistanceSquared,
             "Square of the straight distance of the centres, metres.");
}

void addGridCell(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    using python::arg;
    using python::self;
    python::class_<GridCell> cell("GridCell", "The name of one cell of one grid; a default one is of no grid.");
    cell.def("__init__",
             python::make_constructor(newCell, python::default_call_policies(), (arg("grid"), arg("x"), arg("z"))))
        .def(self == self)
        .def(self != self)
        .def("__hash__", hashOf)
        .def("__repr__", show)
        .add_property("x", &GridCell::getX)
        .add_property("z", &GridCell::getZ)
        .add_property("grid", gridOf)
        .def("getX", &GridCell::getX, "Column, counted along x.")
        .def("getZ", &GridCell::getZ, "Row, counted along z.")
        .def("getGrid", gridOf, "The grid that the cell is meant in; it need not live.")
        .def("isValid", &GridCell::isValid, "Whether the grid lives and has this cell.")
        .def("getWorldCoords", &GridCell::getWorldCoords, "Centre of the cell; the zero vector if it is not valid.")
        .def("getValue", &GridCell::getValue, "The cell's value; the zero vector if it is not valid.")
        .def("setValue", setValue, "Stores a value; RuntimeError if the cell is not valid.")
        .def("getFloatValue", &GridCell::getFloatValue, (arg("idx") = 0),
             "One component of the cell's value; NaN if the cell is not valid or idx is above 3.")
        .def("setFloatValue", setFloat,
             "Stores one component of the value; RuntimeError if the cell is not valid: test isValid first.")
        .def("setFloatValue", setFirstFloat, "Stores the first component of the value; test isValid first.")
        .def("getNeighbor", neighbor, "The cell beside this one, by SquareGrid.Neighbor.")
        .def("getValidNeighbors", validNeighbors, "The cells around this one that the grid has.");
    addDistances(cell);
}

const PythonModulePart gridCellPart(addGridCell);

/// The cells of any sequence of them; raises where it cannot be walked.
bool extractCells(const python::object &sequence, HexCont &cells)
{
    HexCont found;
    for (python::stl_input_iterator<python::object> it(sequence), end; it != end; ++it)
    {
        found.emplace_back();
        if (!extractValue(*it, found.back()))
            return false;
    }
    cells.swap(found);
    return true;
}

} // namespace

void SetToVariant(Variant &v, const GridCell &cell)
{
    setScriptObject(v, [&] { return python::object(cell); });
}

bool fromVariant(const Variant &v, GridCell &cell)
{
    return readScriptObject(v, cell, extractValue<GridCell>);
}

bool fromVariant(const Variant &v, HexCont &cells)
{
    return readScriptObject(v, cells, extractCells);
}
