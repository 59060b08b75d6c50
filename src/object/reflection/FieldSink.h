// FieldSink: takes what the data members of objects hold, as a hash and as text.
#pragma once

#include "object/reflection/DoxyElement.h"
#include "object/reflection/Variant.h"
#include "object/tree/Handle.h"
#include "object/tree/ReflectorPtr.h"

#include "foundation/KVString.h"
#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

#include <array>
#include <bitset>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Reads the fields of a part, a class that is no object; the generator specialises it for those whose fields it may
/// name.
template <class T>
struct FieldsOf;

/// Tells which types of fields can be read.
template <class T>
struct FieldTraits
{
    static constexpr bool isNumber = std::is_arithmetic_v<T> || std::is_enum_v<T>;
    static constexpr bool isReadable = isNumber || requires { sizeof(FieldsOf<T>); };
};
template <>
struct FieldTraits<String>
{
    static constexpr bool isNumber = false;
    static constexpr bool isReadable = true;
};
template <>
struct FieldTraits<Vec4> : FieldTraits<String>
{
};
template <>
struct FieldTraits<Quaternion> : FieldTraits<String>
{
};
template <>
struct FieldTraits<Matrix4> : FieldTraits<String>
{
};
template <>
struct FieldTraits<Variant> : FieldTraits<String>
{
};
template <>
struct FieldTraits<ReflectorPtr> : FieldTraits<String>
{
};
template <class T>
struct FieldTraits<Handle<T>> : FieldTraits<String>
{
};
template <std::size_t N>
struct FieldTraits<std::bitset<N>> : FieldTraits<String>
{
};
template <class T, std::size_t N>
struct FieldTraits<T[N]>
{
    static constexpr bool isNumber = false;
    static constexpr bool isReadable = FieldTraits<T>::isReadable;
};
template <class T, std::size_t N>
struct FieldTraits<std::array<T, N>> : FieldTraits<T[1]>
{
};
template <class T>
struct FieldTraits<std::vector<T>> : FieldTraits<T[1]>
{
};
template <class T>
struct FieldTraits<std::optional<T>> : FieldTraits<T[1]>
{
};
template <class A, class B>
struct FieldTraits<std::pair<A, B>>
{
    static constexpr bool isNumber = false;
    static constexpr bool isReadable = FieldTraits<A>::isReadable && FieldTraits<B>::isReadable;
};

/// Takes the values of one field after another, each in the words that it is made of.
///
/// Equal values give equal hashes in every run: addresses, the numbers of objects and the order of hash tables never
/// count. A handle counts as what its owner makes of its number (`handleWord`), a reflector as there or not. Takes no
/// memory unless text is asked for.
class FieldSink
{
public:
    virtual ~FieldSink() = default;

    /// Begins a field.
    /// @param asText  also write the values down; borrowed
    void begin(std::uint64_t seed, std::string *asText = nullptr)
    {
        hash = seed;
        text = asText;
    }
    /// Hash of all values since `begin`.
    std::uint64_t getHash() const { return hash; }

    template <class T>
    void put(const T &value)
    {
        if constexpr (std::is_floating_point_v<T>)
            putReal(static_cast<double>(value));
        else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
            putWord(static_cast<std::int64_t>(value));
        else if constexpr (FieldTraits<T>::isReadable)
            FieldsOf<T>::read(value, *this);
    }
    /// Takes a field of a part, unless its type is one that cannot be read.
    template <class T>
    void putIfReadable(const T &value)
    {
        if constexpr (FieldTraits<T>::isReadable)
            put(value);
    }
    void put(const String &value);
    void put(const Vec4 &value) { put(value.v); }
    void put(const Quaternion &value) { putAll(&value.r, 4); }
    void put(const Matrix4 &value) { putAll(value[0], 16); }
    void put(const Variant &value);
    void put(const ReflectorPtr &value) { putWord(value ? 1 : 0); }
    template <class T>
    void put(const Handle<T> &value)
    {
        putHandle(value.getNumber());
    }
    template <std::size_t N>
    void put(const std::bitset<N> &value)
    {
        for (std::size_t i = 0; i < N; ++i)
            putWord(value[i]);
    }
    template <class T, std::size_t N>
    void put(const T (&values)[N])
    {
        putAll(values, N);
    }
    template <class T, std::size_t N>
    void put(const std::array<T, N> &values)
    {
        putAll(values.data(), N);
    }
    template <class T>
    void put(const std::vector<T> &values)
    {
        putWord(static_cast<std::int64_t>(values.size()));
        putAll(values.data(), values.size());
    }
    void put(const std::vector<bool> &values);
    template <class T>
    void put(const std::optional<T> &value)
    {
        putWord(value.has_value());
        if (value)
            put(*value);
    }
    template <class A, class B>
    void put(const std::pair<A, B> &value)
    {
        put(value.first);
        put(value.second);
    }

protected:
    /// What the handle of this number counts as: the same for the same object in every run.
    virtual std::uint64_t handleWord(machine_word number) const = 0;
    /// The object of this number as text.
    virtual std::string handleText(machine_word number) const = 0;

private:
    static constexpr std::uint64_t MULTIPLIER = 0x9E3779B97F4A7C15;

    void mix(std::uint64_t word)
    {
        const auto product = static_cast<unsigned __int128>(hash ^ word) * MULTIPLIER;
        hash = static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }
    void putWord(std::int64_t word)
    {
        mix(static_cast<std::uint64_t>(word));
        if (text) [[unlikely]]
            *text += std::to_string(word) + ' ';
    }
    void putReal(double value)
    {
        mix(std::bit_cast<std::uint64_t>(value));
        if (text) [[unlikely]]
            writeReal(value);
    }
    void putHandle(machine_word number);
    void writeReal(double value);
    void mixBytes(const void *bytes, std::size_t size);

    template <class T>
    void putAll(const T *values, std::size_t count)
    {
        if constexpr (std::is_arithmetic_v<T>)
        {
            mixBytes(values, count * sizeof(T));
            for (std::size_t i = 0; text && i < count; ++i)
                writeReal(static_cast<double>(values[i]));
        }
        else
            for (std::size_t i = 0; i < count; ++i)
                put(values[i]);
    }

    std::uint64_t hash = 0;
    std::string *text = nullptr; ///< where values are written down; null for nowhere
};

/// The reader of a field; null where its type cannot be read.
template <class T, auto field>
consteval FieldReader fieldReader()
{
    using Value = std::remove_cvref_t<decltype(std::declval<const T &>().*field)>;
    if constexpr (FieldTraits<std::remove_cv_t<Value>>::isReadable)
        return [](const Object &object, FieldSink &sink) { sink.put(static_cast<const T &>(object).*field); };
    else
        return nullptr;
}
