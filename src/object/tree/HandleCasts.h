// Handle casts that look at the object's class. Included by Handle.h.
#pragma once

#include "object/tree/Handle.h"
#include "object/tree/ReflectorPtr.h"

#include "foundation/Assertions.h"

/// Whether the object behind a handle is of a class; false where it does not resolve.
bool isHandleOfType(const Handle<Object> &h, const ReflectorPtr &type);

/// The same object under another static class, or an invalid handle if the object is gone or of another class.
template <class To, class From>
Handle<To> handle_cast(const Handle<From> &h)
{
    return isHandleOfType(h, To::staticType) ? unchecked_handle_cast<To>(h) : Handle<To>();
}

/// The same object under another static class, for callers that know it.
///
/// A live object of another class is a wrong caller: an assertion of category AC_HANDLES, and the invalid handle.
template <class To, class From>
Handle<To> checked_handle_cast(const Handle<From> &h)
{
    if (!h.isValid() || isHandleOfType(h, To::staticType))
        return unchecked_handle_cast<To>(h);
    ASSERT_CHECK_(AM_ASSERT, AC_HANDLES, isHandleOfType(h, To::staticType), "%s is no %s",
                  handleToString(SCS("Object"), h).toCString(), To::staticType->getName().toCString());
    return Handle<To>();
}

template <class T>
String Handle<T>::toString() const
{
    return handleToString(std::remove_const_t<T>::staticType->getName(), Handle<Object>(*this));
}

template <>
String Handle<Object>::toString() const;
