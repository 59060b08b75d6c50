#include "object/reflection/AutoReflector.h"

#include "object/tree/Object.h"

#include <algorithm>
#include <cstring>
#include <typeinfo>
#include <unordered_map>
#include <vector>

/// Numbers the classes below Object so that a class and its subclasses have consecutive numbers.
class ClassNumbering
{
public:
    /// Takes in a record; anything but a class derived from Object is ignored.
    void add(DoxyElement &record)
    {
        if (record.kind != IReflectedThing::CLASS || !record.isSubclassOf(Object::staticType))
            return;
        if (&record == Object::staticType.get())
            root = &record;
        for (int i = 0; i < record.baseCount; ++i)
        {
            const DoxyElement *base = record.bases[i].obj;
            if (base && base->isSubclassOf(Object::staticType))
                subclasses[base].push_back(&record);
        }
    }

    /// Gives every class its number; 0 stays free for things that are no object class.
    void number()
    {
        if (root)
            number(*root);
    }

private:
    void number(DoxyElement &record)
    {
        record.classNumber = ++last;
        for (DoxyElement *subclass : subclasses[&record])
            number(*subclass);
        record.classSpan = last - record.classNumber + 1;
    }

    std::unordered_map<const DoxyElement *, std::vector<DoxyElement *>> subclasses;
    DoxyElement *root = nullptr;
    ClassNumber last = 0;
};

namespace
{
// Tables enlist themselves from static constructors, in an order nobody knows: this must exist before all of them.
constinit DoxyTable *lastTable = nullptr;
} // namespace

DoxyTable::DoxyTable(const char *name_, std::span<const Part> parts_) : name(name_), parts(parts_), next(lastTable)
{
    lastTable = this;
}

ReflectorPtr AutoReflector::Provider::getType(const String &name)
{
    const auto found = types.find(name);
    return found == types.end() ? nullptr : found->second;
}

void AutoReflector::Provider::registerType(IReflectedThing &t)
{
    const IReflectedThing::Kind kind = t.getKind();
    if (kind == IReflectedThing::CLASS || kind == IReflectedThing::ENUM || kind == IReflectedThing::FUNCTION)
        types.emplace(t.getQualifiedName(), ReflectorPtr(&t));
}

std::vector<String> AutoReflector::Provider::getClassNames() const
{
    std::vector<String> names;
    for (const auto &[name, thing] : types)
    {
        if (thing->getKind() == IReflectedThing::CLASS)
            names.push_back(name);
    }
    return names;
}

AutoReflector::Provider &getAutoReflector()
{
    static auto *instance = new AutoReflector::Provider;
    return *instance;
}

void initAutoReflector()
{
    std::vector<const DoxyTable *> tables;
    for (; lastTable; lastTable = lastTable->next)
        tables.push_back(lastTable);
    if (tables.empty())
        return;
    std::sort(tables.begin(), tables.end(),
              [](const DoxyTable *a, const DoxyTable *b) { return std::strcmp(a->getName(), b->getName()) < 0; });

    ClassNumbering numbering;
    for (const DoxyTable *table : tables)
    {
        table->forEachRecord(
            [&](DoxyElement &record)
            {
                numbering.add(record);
                getAutoReflector().registerType(record);
            });
    }
    numbering.number();
}

namespace
{
/// What the table says of a thing; null where it is none of the table's.
const DoxyElement *recordOf(const ReflectorPtr &type)
{
    const IReflectedThing *const thing = type.get();
    return thing && typeid(*thing) == typeid(DoxyElement) ? static_cast<const DoxyElement *>(thing) : nullptr;
}
} // namespace

ClassNumber classNumberOf(const ReflectorPtr &type)
{
    const DoxyElement *const record = recordOf(type);
    return record ? record->getClassNumber() : 0;
}

bool isNumberOfClass(ClassNumber number, const ReflectorPtr &type)
{
    const DoxyElement *const record = recordOf(type);
    return record && record->containsClass(number);
}
