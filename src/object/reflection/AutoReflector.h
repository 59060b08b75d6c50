// AutoReflector: the static reflection table as a provider of classes, enums and functions.
#pragma once

#include "object/reflection/DoxyElement.h"
#include "object/reflection/IReflectionProvider.h"
#include "object/tree/KvReflected.h"

#include "foundation/KVString.h"

#include <cstddef>
#include <span>
#include <unordered_map>
#include <vector>

/// The static table's side of the reflection layer.
class AutoReflector
{
public:
    /// Knows every class, struct, enum and function of the table by its qualified name.
    class Provider final : public IReflectionProvider
    {
    public:
        /// The thing of this qualified name; null if unknown. Of several overloads the first declared.
        ReflectorPtr getType(const String &name) override;
        /// Enters a class, enum or function under its qualified name and ignores every other kind.
        void registerType(IReflectedThing &t);
        /// Qualified names of every class known here, for error texts; in no meaningful order.
        std::vector<String> getClassNames() const;

    private:
        using TypeMap = std::unordered_map<String, ReflectorPtr>;

        TypeMap types;
    };
};

/// A run of records that stand behind each other in memory.
struct DoxyBlock
{
    DoxyElement *first;
    std::size_t count;
};

/// One generated table: the engine's, or that of a program with reflected classes of its own.
///
/// A static object enlists itself when the program is loaded; `initAutoReflector` takes in whatever is enlisted.
class DoxyTable
{
public:
    /// The records that one generated source file holds.
    using Part = std::span<const DoxyBlock> (*)();

    /// @param name_   of the build target; tables are taken in by name, so that no link order changes anything
    /// @param parts_  static array
    DoxyTable(const char *name_, std::span<const Part> parts_);
    DoxyTable(const DoxyTable &) = delete;
    DoxyTable &operator=(const DoxyTable &) = delete;

    const char *getName() const { return name; }

    /// Calls `visit` with each record of the table, in an order that only the sources decide.
    template <class Visit>
    void forEachRecord(const Visit &visit) const
    {
        for (Part part : parts)
            for (const DoxyBlock &block : part())
                for (std::size_t i = 0; i < block.count; ++i)
                    visit(block.first[i]);
    }

private:
    friend void initAutoReflector();

    const char *name;
    std::span<const Part> parts;
    DoxyTable *next; ///< enlisted before this one
};

/// The provider of the static table.
AutoReflector::Provider &getAutoReflector();

/// Makes the table usable: numbers the object classes in depth-first order and registers the records by name.
///
/// Runs first at start-up, before any object is made. Later calls do nothing.
void initAutoReflector();

/// The depth-first number of an object's class; 0 for a thing that is no class of the table.
ClassNumber classNumberOf(const ReflectorPtr &type);
/// Whether an object of the class with that number is one of a class; false for a thing that is no class of the table.
bool isNumberOfClass(ClassNumber number, const ReflectorPtr &type);
