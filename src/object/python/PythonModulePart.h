// PythonModulePart: what folders above this one bring to the native module `_kaVel`.
#pragma once

#include "object/python/PythonRef.h"

/// Has a function add classes to the module when it is defined; one stands at file scope in the source that has them.
class PythonModulePart
{
public:
    typedef void (*Adder)(PyObject *module);

    explicit PythonModulePart(Adder add);
};
