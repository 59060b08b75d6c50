// DoxyElement: one record of the static reflection table.
#pragma once

#include "object/tree/Handle.h"
#include "object/tree/IReflectedThing.h"
#include "object/reflection/PropertyDesc.h"
#include "object/tree/ReflectorPtr.h"

#include "foundation/NameMap.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class DoxyElement;
class FieldSink;

/// Hands the value of one field of an object to a sink; see FieldSink.h.
using FieldReader = void (*)(const Object &object, FieldSink &sink);

/// Place of a class in the depth-first order of the object classes; 0 for anything else.
using ClassNumber = std::uint32_t;

/// Where a thing is declared and where its body stands; lines count from 1, 0 and null where there is none.
struct DoxyLocation
{
    const char *file = nullptr;
    int line = 0;
    const char *bodyFile = nullptr;
    int bodyStart = 0;
    int bodyEnd = 0;
};

/// One entry of a record's members, bases or flattened bases.
struct DoxyRef
{
    const DoxyElement *obj;
    const char *refText;
    IReflectedThing::ProtectionMode prot;
    bool isStatic;
    bool isConst;
    bool isExplicit;
    bool isInline;
    bool isMutable;
    IReflectedThing::VirtualMode virt;
};

/// What a record says beyond its own text: where it belongs and which reflected types it takes and gives.
struct DoxyContext
{
    const DoxyElement *scope = nullptr;           ///< class, namespace or file that declares it; null at the top
    const DoxyElement *overridden = nullptr;      ///< function of a base class that this one overrides, or null
    const DoxyElement *returnType = nullptr;      ///< reflected class or enum of the result, or null
    const DoxyElement *const *argTypes = nullptr; ///< one entry a declared parameter, each may be null; null for none
    bool takesThis = false;                       ///< a member function that is not static
    DoxyLocation location;
    FieldReader readField = nullptr; ///< of a field that can be read: of an object's class, and of a known type
};

/// One class, member, enum, enumerator, typedef, define, file or namespace of the program, as a static object.
///
/// The text, the references and the invokers are constant data written by the generator. What is derived from them
/// (member list, properties, the hash index of the names) is built on first demand, so that a class that nobody looks
/// at costs nothing. Never counted, never destroyed before the process ends.
class DoxyElement final : public IReflectedThing
{
public:
    using constructor_invoker_type = Handle<Object> (*)(IAllocator &allocator, AllocationCategory &category);
    using function_invoker_type = ErrorReturn<Variant> (*)(SavedArguments &args);
    using PropertyMap = NameMap<std::size_t>;

    constexpr DoxyElement(const char *id_, const char *name_, const char *qualifiedName_, Kind kind_,
                          const char *briefDescription_, const char *inBodyDescription_, const char *includeFile_,
                          const char *argsstring_, const DoxyRef *members_, int memberCount_, const DoxyRef *bases_,
                          int baseCount_, const DoxyRef *allBases_, int allBaseCount_, const char *locationstr_,
                          constructor_invoker_type constructor_invoker_, function_invoker_type function_invoker_,
                          std::int64_t enumValue_, int paramCount_, const DoxyContext &context_)
        : id(id_), name(name_), qualifiedName(qualifiedName_), kind(kind_), briefDescription(briefDescription_),
          inBodyDescription(inBodyDescription_), includeFile(includeFile_), argsstring(argsstring_), members(members_),
          memberCount(memberCount_), bases(bases_), baseCount(baseCount_), allBases(allBases_),
          allBaseCount(allBaseCount_), locationstr(locationstr_), constructor_invoker(constructor_invoker_),
          function_invoker(function_invoker_), enumValue(enumValue_), paramCount(paramCount_), context(context_)
    {
    }

    /// The qualified name.
    String toString() const override;
    String getName() const override;
    String getQualifiedName() const override;
    Kind getKind() const override;
    IReflectionProvider *getReflectionProvider() const override;
    ReflectorPtr getEnclosingScope() const override;
    String getDefinitionLocation() const override;
    /// The first member of this name; own members come before inherited ones.
    ReflectorPtr getMember(String memberName) const override;
    MemberList getMemberList() const override;
    /// Properties in the order in which their getters and setters appear among the members.
    PropertyList getPropertyList() const override;
    ErrorReturn<PropertyDesc> getProperty(const String &propertyName) const override;
    std::int64_t getEnumValue() const override;
    ReflectorPtr getOverriddenThing() const override;
    std::size_t getArgCount() const override;
    ReflectorPtr getReturnType() const override;
    ReflectorPtr getArgType(std::size_t arg) const override;
    ErrorReturn<Variant> do_call(SavedArguments &args) const override;
    Handle<Object> construct_a(IAllocator &allocator, AllocationCategory &category) const override;
    bool isSubclassOf(const ReflectorPtr &possibleSuperclass) const override;
    void acquireRef() const override {}
    void releaseRef() const override {}

    /// What `getMember` finds, without a reference; null if there is none. Cost: one probe of the class's name index.
    const DoxyElement *findMember(const String &memberName) const
    {
        if (!caches || !caches->membersIndexed) [[unlikely]]
            indexMembers();
        const DoxyElement *const *found = caches->memberIndex.find(memberName);
        return found ? *found : nullptr;
    }
    /// What `getProperty` finds, borrowed for as long as the process lives; null if there is none.
    const PropertyDesc *findProperty(const String &propertyName) const
    {
        if (!caches || !caches->propertiesCollected) [[unlikely]]
            collectProperties();
        const std::size_t *at = caches->properties.find(propertyName);
        return at ? &caches->propertyListCache[*at] : nullptr;
    }

    /// Whether a call can reach the function behind this record.
    bool isCallable() const { return function_invoker != nullptr; }

    /// Hands the value of this field of an object to a sink; null for what is no field, and for one of a type that
    /// nobody can read. The object has to be of the field's class.
    FieldReader getFieldReader() const { return context.readField; }
    /// The members with their access and dispatch, in the order of `getMemberList`.
    std::span<const DoxyRef> getMemberRefs() const { return {members, static_cast<std::size_t>(memberCount)}; }
    /// Name with its scopes, as "Object::getName".
    const char *getQualifiedText() const { return qualifiedName; }
    /// First sentences of the comment.
    const char *getBriefDescription() const { return briefDescription; }
    /// Parameters as written, as "(const String &name)"; empty for what takes none.
    const char *getArgsString() const { return argsstring; }
    const DoxyLocation &getLocation() const { return context.location; }
    /// Whether the function is called with an object as its first argument.
    bool takesThis() const { return context.takesThis; }
    /// Direct bases in declaration order.
    std::span<const DoxyRef> getBases() const { return {bases, std::size_t(baseCount)}; }

    /// Number in the depth-first order of the object classes, given by `initAutoReflector`.
    ClassNumber getClassNumber() const { return classNumber; }
    /// Whether an object of the class with that number is one of this class. Two instructions, any depth.
    bool containsClass(ClassNumber number) const { return number - classNumber < classSpan; }

private:
    friend class ClassNumbering;

    /// What is derived from the table. Never destroyed: static objects of any module may hold records to the very end.
    struct Caches
    {
        MemberList memberListCache;
        PropertyMap properties; ///< name to index in propertyListCache
        PropertyList propertyListCache;
        NameMap<const DoxyElement *> memberIndex; ///< the first member of each name
        bool membersIndexed = false;
        bool propertiesCollected = false;
    };

    Caches &getCaches() const;
    void collectProperties() const;
    std::size_t ensurePropertyDescCreated(const String &propertyName) const;
    void indexMembers() const;

    const char *id;            ///< Doxygen's unique id
    const char *name;          ///< short name
    const char *qualifiedName; ///< name with its scopes
    Kind kind;
    const char *briefDescription; ///< shown by tools
    const char *inBodyDescription;
    const char *includeFile; ///< header to include for a class
    const char *argsstring;
    const DoxyRef *members; ///< declaration order, then what is inherited
    int memberCount;
    const DoxyRef *bases; ///< direct bases
    int baseCount;
    const DoxyRef *allBases; ///< transitive bases, flattened
    int allBaseCount;
    const char *locationstr;                      ///< file(line)
    constructor_invoker_type constructor_invoker; ///< concrete reflected classes only
    function_invoker_type function_invoker;       ///< functions whose types are convertible only
    std::int64_t enumValue;                       ///< of an enumerator
    int paramCount;                               ///< declared parameters, without the object
    mutable Caches *caches = nullptr;             ///< made on first demand, kept to the end of the process
    DoxyContext context;
    ClassNumber classNumber = 0;
    ClassNumber classSpan = 0; ///< count of classes derived from this one, itself included; 0 for other things
};
