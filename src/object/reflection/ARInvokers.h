// ARInvokers: what the generated invokers are made of. Included by generated code only.
#pragma once

#include "object/reflection/AutoReflector.h"
#include "object/reflection/EnumText.h"
#include "object/reflection/FieldSink.h"
#include "object/tree/Object.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Allocators.h"

#include <span>
#include <type_traits>
#include <vector>

/// Why a member call failed before its arguments were looked at.
ErrorReturn<Variant> failThis(const SavedArguments &args, std::size_t argCount);
/// The failure of a call with a wrong argument.
ErrorReturn<Variant> failArgument();
/// The failure of a call with a wrong count of arguments.
ErrorReturn<Variant> failCount();

/// The object a member call is meant for; null if the count is wrong or there is no object of that class.
///
/// `failThis` tells the reasons apart afterwards, so that the way of a good call stays short.
template <class T>
inline T *resolveThis(const SavedArguments &args, std::size_t argCount, const DoxyElement &type)
{
    if (args.getArgCount() != argCount || args[0].getType() != Variant::VT_HANDLE) [[unlikely]]
        return nullptr;
    const machine_word number = args[0].as<Handle<Object>>().getNumber();
    Object *object = ObjectMap_::find(number);
    if (!object || !type.containsClass(ObjectMap_::findClassNumber(number))) [[unlikely]]
        return nullptr;
    return static_cast<T *>(object);
}

/// Converts one argument; false where it does not convert.
///
/// Numbers that come as expected are read in place; every other conversion is a call.
/// @{
template <class T>
bool convertNumber(const Variant &v, T &out);

template <class T>
inline bool convertArgument(const Variant &v, T &out)
{
    if constexpr (std::is_floating_point_v<T>)
    {
        if (v.getType() != Variant::VT_FLOAT) [[unlikely]]
            return convertNumber(v, out);
        out = static_cast<T>(v.as<double>());
        return true;
    }
    else if constexpr (std::is_arithmetic_v<T>)
        return convertNumber(v, out);
    else
        return fromVariant(v, out);
}

/// A live object of another class than the handle's is a wrong argument; a dead handle passes as it is.
template <class T>
inline bool convertHandle(const Variant &v, Handle<T> &out, const DoxyElement &type)
{
    if (!fromVariant(v, out))
        return false;
    return !out.isValid() || type.containsClass(ObjectMap_::findClassNumber(out.getNumber()));
}
/// @}

/// Makes a script's list of some values; without scripts there is none, and the Variant stays empty.
void setScriptList(Variant &v, const std::vector<Variant> &entries);

/// Packs the result of a call.
/// @{
template <class T>
inline ErrorReturn<Variant> packResult(const T &value)
{
    ErrorReturn<Variant> result;
    SetToVariant(result.value, value);
    return result;
}
template <class Entry>
inline ErrorReturn<Variant> packResult(const std::span<Entry> &values)
{
    ErrorReturn<Variant> result;
    setScriptList(result.value, std::vector<Variant>(values.begin(), values.end()));
    return result;
}
template <class Entry>
inline ErrorReturn<Variant> packResult(const std::vector<Entry> &values)
{
    return packResult(std::span(values));
}
inline ErrorReturn<Variant> packResult(const ErrorCode &code)
{
    return ErrorReturn<Variant>(code);
}
template <class T>
inline ErrorReturn<Variant> packResult(const ErrorReturn<T> &returned)
{
    ErrorReturn<Variant> result(returned.code);
    if constexpr (!std::is_void_v<T>)
    {
        if (returned.succeeded())
            SetToVariant(result.value, returned.value);
    }
    return result;
}
/// @}

/// What the invokers of every class share; the generator specialises ARInvokers<T> on top of it.
template <class T>
struct ARInvokersBase
{
    using constructor_invoker_type = DoxyElement::constructor_invoker_type;
    using function_invoker_type = DoxyElement::function_invoker_type;

    /// Makes an object and registers it; an invalid handle when the allocator is out of memory.
    static Handle<Object> constructor_invoker(IAllocator &allocator, AllocationCategory &category)
    {
        static_assert(alignof(T) <= 16, "blocks are aligned to 16 bytes");
        void *block = ballocate(&allocator, category, sizeof(T));
        return block ? ObjectMap().registerPointer(::new (block) T()) : Handle<Object>();
    }

    /// The constructor invoker of a concrete class with a public default constructor; null for any other.
    static constexpr constructor_invoker_type constructor_invoker_factory()
    {
        if constexpr (std::is_default_constructible_v<T>)
            return &constructor_invoker;
        else
            return nullptr;
    }
};
