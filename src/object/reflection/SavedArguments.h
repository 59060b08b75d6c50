// SavedArguments: the packed arguments of one reflected call.
#pragma once

#include "object/reflection/Variant.h"

#include <new>
#include <utility>

/// The most arguments a reflected call can take; a member function's object counts as one.
inline constexpr std::size_t maxCallArgs = 5;

/// Arguments of a reflected call, kept inline so that a call allocates nothing.
///
/// A count above maxCallArgs ends the process in every build, since there is no room for it; who packs what a script or
/// a file gives looks at the count first. An index is not checked. Only the counted arguments are made and destroyed,
/// since most calls have one or two.
class SavedArguments
{
public:
    explicit SavedArguments(std::size_t argCount_ = 0) : argCount(argCount_)
    {
        if (argCount > maxCallArgs) [[unlikely]]
            refuse(argCount);
        for (std::size_t i = 0; i < argCount; ++i)
            new (&args[i]) Variant;
    }
    SavedArguments(const SavedArguments &rhs) : argCount(rhs.argCount)
    {
        for (std::size_t i = 0; i < argCount; ++i)
            new (&args[i]) Variant(rhs.args[i]);
    }
    SavedArguments(SavedArguments &&rhs) noexcept : argCount(rhs.argCount)
    {
        for (std::size_t i = 0; i < argCount; ++i)
            new (&args[i]) Variant(std::move(rhs.args[i]));
    }
    SavedArguments &operator=(SavedArguments rhs) noexcept
    {
        this->~SavedArguments();
        return *new (this) SavedArguments(std::move(rhs));
    }
    ~SavedArguments()
    {
        for (std::size_t i = 0; i < argCount; ++i)
            args[i].~Variant();
    }

    Variant &operator[](std::size_t index) { return args[index]; }
    const Variant &operator[](std::size_t index) const { return args[index]; }
    std::size_t getArgCount() const { return argCount; }

    /// Packs native values in order.
    template <class... Arguments>
    static SavedArguments of(const Arguments &...arguments)
    {
        static_assert(sizeof...(Arguments) <= maxCallArgs, "a reflected call takes at most maxCallArgs arguments");
        return SavedArguments(Packed(), arguments...);
    }

private:
    struct Packed
    {
    };

    [[noreturn]] static void refuse(std::size_t argCount);

    template <class... Arguments>
    explicit SavedArguments(Packed, const Arguments &...arguments) : argCount(sizeof...(Arguments))
    {
        [[maybe_unused]] std::size_t index = 0;
        (new (&args[index++]) Variant(arguments), ...);
    }

    std::size_t argCount;
    union
    {
        Variant args[maxCallArgs];
    };
};

template <class... Arguments>
ErrorReturn<Variant> IReflectedThing::call(const Arguments &...arguments) const
{
    SavedArguments packed = SavedArguments::of(arguments...);
    return do_call(packed);
}
