// IStringizable: what everything with a text form derives from.
#pragma once

#include <concepts>

class String;

/// Base of the classes that have a text form, which `toString()` yields.
///
/// It is empty and has no virtual function, so that strings and handles stay as small as their one field. What
/// accepts any text form is a template over the concept Stringizable.
class IStringizable
{
};

template <class T>
concept Stringizable = std::derived_from<T, IStringizable> && requires(const T &thing)
{
    {
        thing.toString()
        } -> std::convertible_to<const String &>;
};
