// LeafCall: what the calls of reflected functions by leaves have in common.
#pragma once

#include "object/reflection/Variant.h"

class Object;

/// Calls a leaf's function with the entity as its one argument, as long as which nothing is cremated; NOT_CALLABLE for none.
/// @param cause  why the call failed, with the traceback of what a script raised
ErrorReturn<Variant> callLeaf(const ReflectorPtr &function, const Object &leaf, String &cause);

/// What a leaf's function gave as an enumerator, from its record, its number or its name; false for anything else.
///
/// A bool is none of them, though it converts to numbers: a script that says False means no success.
template <class Status>
bool readLeafResult(const Variant &given, Status &out)
{
    const Variant::ValueType type = given.getType();
    const bool mayBe = type == Variant::VT_INT64 || type == Variant::VT_REFLECTOR || type == Variant::VT_STRING;
    return mayBe && fromVariant(given, out);
}

/// What is wrong where a leaf's function says that something it needs does not exist, with what is known of that.
String describeNeed(const ReflectorPtr &function);

/// What a leaf's function gave, for an error text.
String describeLeafResult(const Variant &given);
