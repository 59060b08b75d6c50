// SavedArguments: the packed arguments of one reflected call.
#pragma once

#include "object/Variant.h"

#include <array>

/// The most arguments a reflected call can take; a member function's object counts as one.
inline constexpr std::size_t maxCallArgs = 5;

/// Arguments of a reflected call, kept inline so that a call allocates nothing.
///
/// The count must not exceed maxCallArgs; nothing beyond it is checked.
class SavedArguments
{
public:
    explicit SavedArguments(std::size_t argCount_ = 0) : argCount(argCount_) {}

    Variant &operator[](std::size_t index) { return args[index]; }
    const Variant &operator[](std::size_t index) const { return args[index]; }
    std::size_t getArgCount() const { return argCount; }

    /// Packs native values in order.
    template <class... Arguments>
    static SavedArguments of(const Arguments &...arguments)
    {
        static_assert(sizeof...(Arguments) <= maxCallArgs, "a reflected call takes at most maxCallArgs arguments");
        SavedArguments packed(sizeof...(Arguments));
        [[maybe_unused]] std::size_t index = 0;
        (SetToVariant(packed.args[index++], arguments), ...);
        return packed;
    }

private:
    std::size_t argCount;
    std::array<Variant, maxCallArgs> args;
};

template <class... Arguments>
ErrorReturn<Variant> IReflectedThing::call(const Arguments &...arguments) const
{
    SavedArguments packed = SavedArguments::of(arguments...);
    return do_call(packed);
}
