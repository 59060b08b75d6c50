// KV_FIELDS: the one line that lets the table read the private fields of what objects are made of.
#pragma once

template <class T>
struct FieldsOf;

/// Lets the generated table read the private fields of a class that is a part of objects and does not derive from Object.
///
/// Stands as the first line of the class body and leaves private access behind it. Parts whose fields are all public are
/// read without it.
#define KV_FIELDS                                                                                                      \
private:                                                                                                               \
    template <class>                                                                                                   \
    friend struct FieldsOf;
