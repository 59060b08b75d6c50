// Variant: the one value type that crosses the reflection layer.
#pragma once

#include "object/tree/Handle.h"
#include "object/tree/PythonObject.h"
#include "object/tree/ReflectorPtr.h"

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

/// The empty alternative of a Variant.
struct invalid_variant_tag
{
};

/// A value of any type that a reflected call can take or give.
///
/// Fixed size with inline storage: numbers, vectors and handles are copied, strings, reflectors and script objects are
/// shared by count. Each native type maps to one alternative; every conversion that is not listed with `fromVariant`
/// fails with NOT_CONVERTIBLE.
class Variant : public IStringizable
{
public:
    /// Which alternative is held; the number is the alternative's index.
    enum ValueType
    {
        VT_INVALID = 0,
        VT_NONE = 0,
        VT_INT64 = 1,
        VT_BOOL = 2,
        VT_FLOAT = 3,
        VT_REFLECTOR = 4,
        VT_HANDLE = 5,
        VT_STRING = 6,
        VT_VECTOR = 7,
        VT_PYTHON = 8,
        VT_QUATERNION = 9,
        VT_NUM_TYPES = 10
    };

    constexpr Variant() noexcept : type(VT_INVALID) {}
    // The bytes of an empty Variant are never set and copied as they stand: looking first would cost more.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
    Variant(const Variant &rhs) : type(rhs.type), storage(rhs.storage)
    {
        if (isCounted())
            copyCounted(rhs);
    }
    Variant(Variant &&rhs) noexcept : type(rhs.type), storage(rhs.storage)
    {
        rhs.type = VT_INVALID;
    }
#pragma GCC diagnostic pop
    template <class T>
    requires(!std::is_same_v<std::remove_cvref_t<T>, Variant>) Variant(const T &value);
    ~Variant()
    {
        if (isCounted())
            destroyCounted();
    }

    Variant &operator=(const Variant &rhs)
    {
        if (!isCounted() && !rhs.isCounted())
        {
            type = rhs.type;
            storage = rhs.storage;
            return *this;
        }
        Variant copy(rhs);
        return *this = std::move(copy);
    }
    Variant &operator=(Variant &&rhs) noexcept
    {
        if (this == &rhs)
            return *this;
        unset();
        type = rhs.type;
        storage = rhs.storage;
        rhs.type = VT_INVALID;
        return *this;
    }

    /// Replaces the value; the type decides the alternative.
    template <class T>
    void set(const T &value)
    {
        *this = Variant(value);
    }
    /// The value as a T, or NOT_CONVERTIBLE.
    template <class T>
    ErrorReturn<T> get() const;
    ValueType getType() const
    {
        return ValueType(type);
    }
    /// Returns to the empty alternative.
    void unset()
    {
        if (isCounted())
            destroyCounted();
        type = VT_INVALID;
    }

    /// "<variant>" whatever the content.
    String toString() const;

    /// The alternative itself, for code that has looked at the type.
    template <class Alternative>
    const Alternative &as() const
    {
        return *std::launder(reinterpret_cast<const Alternative *>(storage.bytes));
    }

    /// Fills an empty Variant with an alternative as it stands.
    template <class Alternative>
    void emplace(ValueType alternativeType, const Alternative &value)
    {
        static_assert(sizeof(Alternative) <= sizeof(StorageType));
        unset();
        new (storage.bytes) Alternative(value);
        type = alternativeType;
    }

private:
    struct StorageType
    {
        alignas(8) unsigned char bytes[16];
    };

    static constexpr std::uint32_t countedMask = 1u << VT_REFLECTOR | 1u << VT_STRING | 1u << VT_PYTHON;

    bool isCounted() const
    {
        return (countedMask >> type) & 1u;
    }
    void copyCounted(const Variant &rhs);
    void destroyCounted();

    std::uint32_t type;
    StorageType storage;
};

static_assert(sizeof(Variant) == 24, "five of these live on the stack of every reflected call");

/// Builds the alternative for a native value.
/// @{
inline void SetToVariant(Variant &v, const Variant &value)
{
    v = value;
}
inline void SetToVariant(Variant &v, bool value)
{
    v.emplace(Variant::VT_BOOL, value);
}
template <class T>
requires((std::is_integral_v<T> && !std::is_same_v<T, bool>) || std::is_enum_v<T>) inline void SetToVariant(Variant &v,
                                                                                                            T value)
{
    v.emplace(Variant::VT_INT64, static_cast<std::int64_t>(value));
}
template <class T>
requires std::is_floating_point_v<T>
inline void SetToVariant(Variant &v, T value)
{
    v.emplace(Variant::VT_FLOAT, static_cast<double>(value));
}
inline void SetToVariant(Variant &v, const PythonObject &value)
{
    v.emplace(Variant::VT_PYTHON, value);
}
inline void SetToVariant(Variant &v, const String &value)
{
    v.emplace(Variant::VT_STRING, value);
}
template <class T>
inline void SetToVariant(Variant &v, const Handle<T> &value)
{
    v.emplace(Variant::VT_HANDLE, Handle<Object>(value));
}
inline void SetToVariant(Variant &v, const ReflectorPtr &value)
{
    v.emplace(Variant::VT_REFLECTOR, value);
}
inline void SetToVariant(Variant &v, const Vec4 &value)
{
    v.emplace(Variant::VT_VECTOR, value);
}
inline void SetToVariant(Variant &v, const Quaternion &value)
{
    v.emplace(Variant::VT_QUATERNION, value);
}
/// @}

template <class T>
requires(!std::is_same_v<std::remove_cvref_t<T>, Variant>) Variant::Variant(const T &value) : type(VT_INVALID)
{
    SetToVariant(*this, value);
}

/// How script objects turn into native values; the script layer installs its functions when Python starts.
///
/// Each returns false where the object does not convert. Null until then: no script object converts.
struct PythonConversions
{
    bool (*toInt64)(const PythonObject &, std::int64_t &) = nullptr;
    bool (*toDouble)(const PythonObject &, double &) = nullptr;
    bool (*toString)(const PythonObject &, String &) = nullptr;
    bool (*toReflector)(const PythonObject &, ReflectorPtr &) = nullptr;
    bool (*toVector)(const PythonObject &, Vec4 &) = nullptr;
    bool (*toQuaternion)(const PythonObject &, Quaternion &) = nullptr;
    /// Builds the script object of a value of another alternative than VT_PYTHON and VT_INVALID.
    bool (*fromVariant)(const Variant &, PythonObject &) = nullptr;
    /// Calls `_editedProps.add(name)` on a pattern; false, with the exception cleared, where that raises.
    bool (*markPropertyEdited)(const PythonObject &pattern, const String &propertyName) = nullptr;
};
extern PythonConversions pythonConversions;

/// A number cast as it stands; what does not fit an integer ends at its bounds, and no number becomes 0.
template <class T>
T castNumber(double value)
{
    if constexpr (std::is_same_v<T, bool>)
        return value != 0.0;
    else if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(value);
    else
    {
        if (value != value)
            return 0;
        if (value <= static_cast<double>(std::numeric_limits<T>::min()))
            return std::numeric_limits<T>::min();
        if (value >= static_cast<double>(std::numeric_limits<T>::max()))
            return std::numeric_limits<T>::max();
        return static_cast<T>(value);
    }
}

bool scriptInteger(const Variant &v, std::int64_t &out);
bool scriptFloat(const Variant &v, double &out);

/// Numbers of script objects, out of line, since numbers mostly come as numbers. One that an integer cannot hold fails.
template <class T>
bool scriptNumber(const Variant &v, T &out)
{
    std::conditional_t<std::is_floating_point_v<T>, double, std::int64_t> number{};
    if constexpr (std::is_floating_point_v<T>)
    {
        if (!scriptFloat(v, number))
            return false;
    }
    else if (!scriptInteger(v, number))
        return false;
    out = static_cast<T>(number);
    return true;
}

/// Converts a number, bool or character out of any of the number alternatives.
///
/// Numbers, bools and integers convert freely into each other with a plain cast; no range is tested.
template <class T>
struct SimpleVariantConversionHelper
{
    using ActualReturnType = ErrorReturn<T>;

    static bool convert(const Variant &v, T &out)
    {
        switch (v.getType())
        {
        case Variant::VT_INT64:
            out = static_cast<T>(v.as<std::int64_t>());
            return true;
        case Variant::VT_FLOAT:
            out = castNumber<T>(v.as<double>());
            return true;
        case Variant::VT_BOOL:
            out = static_cast<T>(v.as<bool>());
            return true;
        default:
            return scriptNumber(v, out);
        }
    }
};

/// Writes the value of a Variant into a native one; false where it does not convert.
/// @{
template <class T>
requires std::is_arithmetic_v<T>
inline bool fromVariant(const Variant &v, T &out)
{
    return SimpleVariantConversionHelper<T>::convert(v, out);
}
template <class T>
inline bool fromVariant(const Variant &v, Handle<T> &out)
{
    if (v.getType() != Variant::VT_HANDLE)
        return false;
    out = unchecked_handle_cast<T>(v.as<Handle<Object>>());
    return true;
}
inline bool fromVariant(const Variant &v, Variant &out)
{
    out = v;
    return true;
}
bool fromVariant(const Variant &v, String &out);
bool reflectorFromScript(const Variant &v, ReflectorPtr &out);
inline bool fromVariant(const Variant &v, ReflectorPtr &out)
{
    if (v.getType() != Variant::VT_REFLECTOR) [[unlikely]]
        return reflectorFromScript(v, out);
    out = v.as<ReflectorPtr>();
    return true;
}
bool fromVariant(const Variant &v, Vec4 &out);
bool fromVariant(const Variant &v, Quaternion &out);
bool fromVariant(const Variant &v, PythonObject &out);
/// An enumerator: from its number, its name (short or qualified), or its record.
template <class E>
requires std::is_enum_v<E>
bool fromVariant(const Variant &v, E &out);
/// @}

/// Reads a Variant as a T; the form of `fromVariant` that tells the failure.
template <class T>
struct GetFromVariant
{
    ErrorReturn<T> operator()(const Variant &v) const
    {
        ErrorReturn<T> result;
        result.code = fromVariant(v, result.value) ? ErrorCode::SUCCESS : ErrorCode::NOT_CONVERTIBLE;
        return result;
    }
};

template <class T>
ErrorReturn<T> Variant::get() const
{
    return GetFromVariant<T>()(*this);
}

#include "object/reflection/EnumText.h"

template <class E>
requires std::is_enum_v<E>
bool fromVariant(const Variant &v, E &out)
{
    return enumFromVariant(v, out);
}
