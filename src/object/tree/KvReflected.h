// KV_REFLECTED: the one line that makes a class of the object tree reachable by name.
#pragma once

#include "object/tree/ReflectorPtr.h"

template <class T>
class Handle;
template <class T>
struct ARInvokers;
template <class E>
struct Enum;

/// Marks a class whose public functions are to be reflected as those of each reflected class that derives from it.
///
/// Stands as the first line of the body of a class that does not derive from Object, and leaves private access behind it.
#define KV_REFLECTED_MIXIN private:

/// Declares what the generated table needs of a class derived from Object.
///
/// Stands as the first line of the class body and leaves private access behind it. The definitions are generated
/// from the class's own header on every build: `staticType` is the class's record, usable once `initAutoReflector`
/// has run; `getType` is the record of the object's real class. Copying is ruled out by Object, and not here, so that
/// a class without constructors of its own keeps its default constructor and can be made by name.
#define KV_REFLECTED(ClassName)                                                                                        \
public:                                                                                                                \
    static const ReflectorPtr staticType;                                                                              \
    ReflectorPtr getType() const override;                                                                             \
    Handle<ClassName> getTypedHandle() const;                                                                          \
                                                                                                                       \
private:                                                                                                               \
    template <class>                                                                                                   \
    friend struct ARInvokers;                                                                                          \
    template <class>                                                                                                   \
    friend struct Enum;
