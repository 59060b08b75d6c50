// ObjectQuery: which objects somebody searches for.
#pragma once

#include "object/tree/Handle.h"

#include <string>
#include <vector>

class DoxyElement;
class Object;
class PropertyDesc;

/// A search of words, all of which an object has to meet, in any case of letters.
///
/// A plain word stands in its name, class or path. "class:light" asks for the class or one that it derives from,
/// "path:villa/" for the path, "value:0.5" for any property that reads so, and "mass:0.5", "mass:>2" or "gait:runs" for a
/// property whose name begins so. Reading properties takes time: ask few objects in a frame.
class ObjectQuery
{
public:
    explicit ObjectQuery(const std::string &text);

    bool isEmpty() const { return terms.empty(); }
    /// Whether it reads properties.
    bool readsValues() const;
    /// Whether an object meets it.
    /// @param shown  of what was found by its value: "mass = 0.5"
    bool matches(const Object &object, std::string &shown) const;

private:
    enum Kind
    {
        ANYWHERE,
        CLASS,
        PATH,
        VALUE
    };

    struct Term
    {
        Kind kind = ANYWHERE;
        std::string property; ///< lower case; empty: any
        std::string text;     ///< lower case
    };

    static Term parse(const std::string &word);
    static bool isOfClass(const Object &object, const std::string &text);
    static bool hasValue(const Object &object, const Term &term, std::string &shown);
    static bool reads(const Object &object, const PropertyDesc &desc, const Term &term, std::string &shown);

    std::vector<Term> terms;
};
