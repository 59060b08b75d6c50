// ObjectMap: the table from object numbers to objects.
#pragma once

#include <cstddef>
#include <cstdint>

class Object;
template <class T>
class Handle;

/// A number of the object table: 32 bits, never reused in a run, 0 for no object.
using machine_word = std::uint32_t;

/// Every registered object by its number.
///
/// Numbers ascend and are never reused, so the table is a directory of pages indexed by the number itself: a lookup
/// is two loads, and a page whose objects have all died gives its memory back. Main thread only. Never destroyed.
class ObjectMap_
{
public:
    /// The object of a number, or null if it died or never was. Neither class nor dying state is looked at.
    static Object *find(machine_word number)
    {
        const machine_word page = number >> pageBits;
        return page < pageCount ? pages[page]->objects[number & pageMask] : nullptr;
    }

    /// The depth-first number of the object's class (see DoxyElement::getClassNumber); only for a live object.
    static std::uint32_t findClassNumber(machine_word number)
    {
        return pages[number >> pageBits]->classNumbers[number & pageMask];
    }

    Object *lookup(const Handle<Object> &h) const;

    /// Gives a new object its number; the object learns its own handle by it.
    Handle<Object> registerPointer(Object *o);

    /// Logs every live object with its number, class and name at the debug level.
    void dumpActiveObjects() const;

    /// Count of live objects.
    std::size_t getObjectCount() const { return liveCount; }
    /// Count of births and deaths so far: while it stands still, no handle has changed its meaning.
    std::uint64_t getChangeCount() const { return changeCount; }

private:
    friend ObjectMap_ &ObjectMap();
    friend void cremateDeadObjects();

    static constexpr machine_word pageBits = 10;
    static constexpr machine_word pageSize = machine_word(1) << pageBits;
    static constexpr machine_word pageMask = pageSize - 1;

    struct Page
    {
        Object *objects[pageSize];
        std::uint32_t classNumbers[pageSize];
        std::uint32_t liveCount;
    };

    ObjectMap_() = default;
    void deregisterHandle(const Handle<Object> &h);
    void addPage();

    static Page emptyPage;
    static inline constinit Page **pages = nullptr;
    static inline constinit machine_word pageCount = 0;

    machine_word pageCapacity = 0;
    machine_word nextID = 1;
    std::size_t liveCount = 0;
    std::uint64_t changeCount = 0;
};

/// The one object table, made at first use.
ObjectMap_ &ObjectMap();
