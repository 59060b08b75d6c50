// PythonPostOffice: messages and the global post office, for scripts.
#pragma once

#include "object/python/PythonRef.h"

/// Adds `PostOffice`, with registerMessageHandler and submitMessage, and `messageTypes`, every message by its name.
void addPostOffice(PyObject *module);
