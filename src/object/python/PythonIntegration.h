// PythonIntegration: the native module `_kaVel`, for the files that define it and for hosts that load it.
#pragma once

#include "object/python/PythonCalls.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonRef.h"

#include <boost/python.hpp>

extern "C"
{
    /// Defines the module `_kaVel`; the program's one export, so that a Python host can load it too.
    PyObject *init_kaVel();
    /// The same under the name by which an importing host looks for it.
    PyObject *PyInit__kaVel();
}
