"""Which fields of objects and of their parts the table can read, and the C++ that reads them.

The compiler decides by a field's type whether its value can be read. What stands here is which fields may be named, and
of which classes that are no objects (the parts) a value may be made.
"""

import re

from signatures import is_named_by_friends

NAMES = re.compile(r"[A-Za-z_]\w*(?:::\w+)*")
# Read by functions of their own.
KNOWN = ("Handle", "Matrix4", "Quaternion", "ReflectorPtr", "String", "Variant", "Vec4")


def fields(record):
    """The data members of a class's objects that a pointer to member can name."""
    return [m for m in record.own if m.kind == "variable" and not m.is_static and not m.is_bitfield and m.name
            and not m.type.endswith("&")]


def parts_below(model, records):
    """The parts that the fields of some classes are made of, each behind those that it holds itself."""
    found = {}
    for record in records:
        _find_parts(model, record, found)
    return [part for part, is_readable in found.items() if is_readable]


def _find_parts(model, record, found):
    for field in fields(record):
        for part in _classes_named(model, field.type, field.scope):
            if part not in found:
                found[part] = False  # met on the way down, so that a part of itself ends the search
                _find_parts(model, part, found)
                del found[part]
                found[part] = _may_be_read(part)


def _classes_named(model, text, scope, depth=0):
    for name in NAMES.findall(text) if depth < 16 else ():
        record = model.lookup_type(name, scope)
        if record is None or record.qualified in KNOWN:
            continue
        if record.kind == "typedef":
            yield from _classes_named(model, record.type, record.scope, depth + 1)
        elif record.is_class and not model.is_object_class(record):
            yield record


def _may_be_read(part):
    """Whether the generated code may name the part and all of its fields; unions have none that is sure to hold."""
    if part.is_template or part.kind == "union" or not part.file or not is_named_by_friends(part):
        return False
    own = fields(part)
    is_open = part.shows_fields or all(f.protection == "public" for f in own)
    return bool(own) and is_open and not part.holds_union


def reader_of_part(part):
    """The specialisation that reads a part's fields."""
    lines = "".join(f"        sink.putIfReadable(part.{field.name});\n" for field in fields(part))
    return (f"template <> struct FieldsOf<{part.qualified}>\n{{\n"
            f"    static void read(const auto &part, FieldSink &sink)\n    {{\n{lines}    }}\n}};\n")


def reader_of_field(field):
    """The line of a class's invokers that makes the reader of one of its fields."""
    scope = field.class_scope.qualified
    return f"    static constexpr FieldReader {reader_name(field)} = fieldReader<{scope}, &{scope}::{field.name}>();\n"


def reader_name(field):
    return f"field_{field.name}"
