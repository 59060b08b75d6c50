#include "object/tree/ObjectMap.h"

#include "object/reflection/AutoReflector.h"
#include "object/tree/Object.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cstring>

ObjectMap_::Page ObjectMap_::emptyPage;

ObjectMap_ &ObjectMap()
{
    static ObjectMap_ *map = new ObjectMap_;
    return *map;
}

Object *ObjectMap_::lookup(const Handle<Object> &h) const
{
    return find(h.getNumber());
}

Handle<Object> ObjectMap_::registerPointer(Object *o)
{
    const machine_word number = nextID++;
    if ((number >> pageBits) >= pageCount)
        addPage();

    Page &page = *pages[number >> pageBits];
    page.objects[number & pageMask] = o;
    page.classNumbers[number & pageMask] = classNumberOf(o->getType());
    ++page.liveCount;
    ++liveCount;
    ++changeCount;
    o->this_ = Handle<Object>(number);
    return o->this_;
}

void ObjectMap_::deregisterHandle(const Handle<Object> &h)
{
    const machine_word index = h.getNumber() >> pageBits;
    Page *page = pages[index];
    page->objects[h.getNumber() & pageMask] = nullptr;
    --liveCount;
    ++changeCount;
    // The page that still hands out numbers stays; any other one is of no more use once it is empty.
    if (--page->liveCount == 0 && (nextID >> pageBits) != index)
    {
        pages[index] = &emptyPage;
        delete page;
    }
}

void ObjectMap_::addPage()
{
    if (pageCount == pageCapacity)
    {
        const machine_word capacity = std::max<machine_word>(64, pageCapacity * 2);
        Page **grown = new Page *[capacity];
        std::copy_n(pages, pageCount, grown);
        delete[] pages;
        pages = grown;
        pageCapacity = capacity;
    }
    pages[pageCount] = new Page();
    ++pageCount;
}

void ObjectMap_::dumpActiveObjects() const
{
    KV_LOG(Logger_::I_DEBUG, "==== dumpActiveObjects() ====");
    for (machine_word number = 1; number < nextID; ++number)
    {
        if (Object *o = find(number))
        {
            KV_LOG(Logger_::I_DEBUG, String::format("handle %i: %s", int(number), o->getType()->getName().toCString()));
            KV_LOG(Logger_::I_DEBUG, String::format("    name: %s", o->getName().toCString()));
        }
    }
    KV_LOG(Logger_::I_DEBUG, "==== end dumpActiveObjects() ====");
}
