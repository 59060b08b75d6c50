// PythonReflectionProvider: classes of the scripts as a source of named reflected things.
#pragma once

#include "object/reflection/IReflectionProvider.h"

/// Finds the classes of modules that scripts have imported.
class PythonReflectionProvider final : public IReflectionProvider
{
public:
    /// The reflector of the script class of this name, or null.
    ///
    /// A name is "module::Class" or "module.Class"; one without a module is looked up in `__main__`. Modules are not
    /// imported for the sake of a look-up.
    ReflectorPtr getType(const String &classname) override;
};

/// The one provider, which `initPython` adds behind the static table.
PythonReflectionProvider &getPythonReflectionProvider();
