"""Writes the C++ of the static table: records, invokers and enum texts."""

import os
import re
import zlib

import fields
from failure import ReflectionError
from signatures import is_named_by_friends, is_public

BANNER = "// Made from the declarations and comments of the headers; made again on every build.\n"

# Enums whose enumerators are spelled without their scopes even where full names are asked for.
WITHOUT_QUALIFIED_NAMES = ("ErrorCode::Code", "Variant::ValueType", "IReflectedThing::Kind",
                           "IReflectedThing::CallFailureType")

KINDS = {"class": "CLASS", "struct": "STRUCT", "union": "STRUCT", "define": "DEFINE", "enum": "ENUM",
         "enumvalue": "ENUMVALUE", "file": "FILE", "friend": "FRIEND", "function": "FUNCTION",
         "namespace": "NAMESPACE", "typedef": "TYPEDEF", "variable": "VARIABLE"}
VIRTUAL = {"non-virtual": "NON_VIRTUAL", "virtual": "VIRTUAL", "pure-virtual": "PURE_VIRTUAL"}


def literal(text):
    """A C++ string literal."""
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("\t", " ") + '"'


def mangled(qualified):
    """An identifier made of a qualified name."""
    return re.sub(r"\W", "_", qualified.replace("::", "_"))


def is_own_record(record):
    """Things with a symbol of their own; all others stand in the array of their scope's members."""
    return record.is_class or record.kind in ("enum", "file", "namespace")


class Symbols:
    """The names under which the records stand in the generated code."""

    PREFIX = {"file": "kvFile_", "namespace": "kvNamespace_"}

    def __init__(self, model):
        self.record_symbols = {}
        self.positions = {}  # record id -> (scope, index)
        self.counts = {}  # scope id -> length of its member array
        taken = {}
        for record in model.classes() + model.enums() + model.files + model.namespaces:
            name = self.PREFIX.get(record.kind, "kvType_") + mangled(record.qualified)
            if name in taken:
                raise ReflectionError(record.place, f"'{record.qualified}' and '{taken[name].qualified}' of "
                                                    f"{taken[name].place} have names that are too much alike; "
                                                    "rename one of them")
            taken[name] = record
            self.record_symbols[record.id] = name
            listed = [m for m in record.own if not is_own_record(m)]
            self.counts[record.id] = len(listed)
            for index, member in enumerate(listed):
                self.positions[member.id] = (record, index)

    def array(self, scope):
        return "kvMembers_" + self.record_symbols[scope.id].removeprefix("kvType_")

    def address(self, record):
        if record.id in self.record_symbols:
            return "&" + self.record_symbols[record.id]
        scope, index = self.positions[record.id]
        return f"&{self.array(scope)}[{index}]"

    def declaration(self, record):
        """The extern declaration that `address` needs."""
        if record.id in self.record_symbols:
            return f"extern DoxyElement {self.record_symbols[record.id]};"
        scope, _ = self.positions[record.id]
        return f"extern DoxyElement {self.array(scope)}[{self.counts[scope.id]}];"


def slot_of(path, slots):
    """The generated source file that a header's records belong to.

    Headers spread over a folder's files by a hash of their path, so that a new header moves no other one.
    """
    folder = max((f for f in slots if path == f or path.startswith(f + "/")), key=len)
    index = zlib.crc32(path.encode()) % slots[folder]
    return f"{os.path.basename(folder)}_{index}"


class PartWriter:
    """Writes one source file of a table."""

    def __init__(self, name, records, symbols, include_of, parts):
        self.name = name
        self.parts = parts  # what the fields of the records' objects are made of
        self.records = records  # classes, enums, files and namespaces, in order
        self.symbols = symbols
        self.include_of = include_of
        self.externs = set()
        self.headers = set()
        self.blocks = []

    def text(self):
        enums = [r for r in self.records if r.kind == "enum"]
        classes = [r for r in self.records if r.is_class]
        body = [self._enum_table(e) for e in enums if e.name and is_named_by_friends(e)]
        body += [self._part(p) for p in self.parts]
        body += [self._invokers(c) for c in classes if c.is_reflected]
        body += [self._free_invokers()]
        body += [self._record_group(r) for r in self.records]
        body += [self._class_definitions(c) for c in classes if c.is_reflected]
        includes = ['#include "object/reflection/ARInvokers.h"\n\n']
        includes += [f'#include "{h}"\n' for h in sorted(self.headers)]
        externs = sorted(self.externs)
        return (BANNER + "".join(includes) + "\n" + "".join(e + "\n" for e in externs) + "\n"
                + "\n".join(part for part in body if part) + "\n" + self._blocks())

    # -- texts of enums

    def _enum_table(self, enum):
        self._needs(enum)
        entries = "".join(
            f"        {{{literal(v.name)}, {literal(v.qualified)}, "
            f"static_cast<std::int64_t>({enum.qualified}::{v.name})}},\n"
            for v in enum.own)
        qualified = "false" if enum.qualified in WITHOUT_QUALIFIED_NAMES else "true"
        array = f"    static constexpr EnumEntry entries[] = {{\n{entries}    }};\n" if entries else ""
        start = "entries" if entries else "nullptr"
        return (f"template <> const EnumTable &Enum<{enum.qualified}>::table()\n{{\n{array}"
                f"    static constexpr EnumTable texts{{{start}, {len(enum.own)}, {qualified}}};\n"
                f"    return texts;\n}}\n")

    # -- fields of objects

    def _part(self, part):
        self._needs(part)
        return fields.reader_of_part(part)

    # -- invokers

    def _invokers(self, record):
        self._needs(record)
        functions = [m for m in record.own if m.signature is not None]
        bodies = [self._invoker(f, name) for f, name in numbered(functions)]
        values = [self._private_values(e) for e in record.own if e.kind == "enum"]
        return (f"template <> struct ARInvokers<{record.qualified}> : ARInvokersBase<{record.qualified}>\n{{\n"
                + "".join(values) + "".join(map(fields.reader_of_field, fields.fields(record)))
                + "\n".join(bodies) + "};\n")

    def _free_invokers(self):
        free = [m for r in self.records if r.kind in ("file", "namespace") for m in r.own if m.signature is not None]
        if not free:
            return ""
        for function in free:
            self._needs(function)
        return "namespace\n{\n" + "\n".join(self._invoker(f, n) for f, n in numbered(free)) + "}\n"

    def _invoker(self, function, name):
        this = 1 if function.takes_this else 0
        count = len(function.parameters) + this
        lines = []
        if this:
            scope = function.class_scope.qualified
            lines.append(f"{scope} *self = resolveThis<{scope}>(args, {count}, {self._value(function.class_scope)});")
            lines.append("if (!self) [[unlikely]]")
            lines.append(f"    return failThis(args, {count});")
        else:
            lines.append(f"if (args.getArgCount() != {count}) [[unlikely]]")
            lines.append("    return failCount();")
        passed = []
        for index, crossing in enumerate(function.signature.arguments):
            local = f"a{index}"
            passed.append(local)
            if crossing.home is not None:
                self._needs(crossing.home)
            lines.append(f"{crossing.cpp} {local}{{}};")
            lines.append(f"if (!{self._conversion(crossing, f'args[{index + this}]', local)}) [[unlikely]]")
            lines.append("    return failArgument();")
        target = "self->" + function.name if this else function.qualified
        call = f"{target}({', '.join(passed)})"
        if function.signature.result.category == "void":
            lines += [call + ";", "return {};"]
        else:
            lines.append(f"return packResult({call});")
        body = "".join(f"        {line}\n" for line in lines)
        return f"    static ErrorReturn<Variant> {name}(SavedArguments &args)\n    {{\n{body}    }}\n"

    def _conversion(self, crossing, source, local):
        if crossing.category == "handle" and crossing.record.qualified != "Object":
            return f"convertHandle({source}, {local}, {self._value(crossing.record)})"
        return f"convertArgument({source}, {local})"

    def _private_values(self, enum):
        """Numbers of a private enum's enumerators, which only a friend can write down."""
        if is_public(enum):
            return ""
        return "".join(f"    static constexpr std::int64_t {self._value_name(v)} = static_cast<std::int64_t>("
                       f"{enumerator_expression(v)});\n" for v in enum.own)

    @staticmethod
    def _value_name(enumerator):
        return "value_" + mangled(f"{enumerator.scope.name}_{enumerator.name}")

    def _enum_value(self, enumerator):
        enum = enumerator.scope
        if is_public(enum) and not (enum.class_scope and enum.class_scope.is_template):
            self._needs(enum)
            return f"static_cast<std::int64_t>({enumerator_expression(enumerator)})"
        if enum.class_scope is not None and enum.class_scope.is_reflected:
            return f"ARInvokers<{enum.class_scope.qualified}>::{self._value_name(enumerator)}"
        return str(computed_value(enumerator))

    # -- records

    def _record_group(self, record):
        """A class, enum, file or namespace with its references, and the array of its members."""
        symbol = self.symbols.record_symbols[record.id]
        own = [m for m in record.own if not is_own_record(m)]
        lines = []
        lines.append(self._references(f"members_{symbol}", [(m, m.protection, m.virtual) for m in record.members]))
        if record.is_class:
            lines.append(self._references(f"bases_{symbol}", record.bases))
            lines.append(self._references(f"allBases_{symbol}",
                                          [(b, "public", "non-virtual") for b in record.all_bases]))
        lines.append(f"constinit DoxyElement {symbol}({self._record(record, symbol)});\n")
        self._extern(record)
        self.blocks.append(f"{{&{symbol}, 1}}")
        if own:
            lines += [self._argument_types(m) for m in own]
            array = self.symbols.array(record)
            names = dict((id(f), n) for f, n in numbered([m for m in record.own if m.signature is not None]))
            entries = "".join(f"    DoxyElement({self._record(m, None, names.get(id(m)))}),\n" for m in own)
            lines.append(f"constinit DoxyElement {array}[{len(own)}] = {{\n{entries}}};\n")
            self._extern(own[0])
            self.blocks.append(f"{{{array}, {len(own)}}}")
        return "".join(lines)

    def _references(self, name, entries):
        if not entries:
            return ""
        lines = []
        for target, protection, virtual in entries:
            flags = ", ".join("true" if flag else "false" for flag in (
                target.is_static, target.is_const, target.is_explicit, target.is_inline, target.is_mutable))
            lines.append(f"    {{{self._address(target)}, {literal(target.name)}, "
                         f"IReflectedThing::{protection.upper()}, {flags}, IReflectedThing::{VIRTUAL[virtual]}}},\n")
        return f"static constexpr DoxyRef {name}[] = {{\n{''.join(lines)}}};\n"

    def _record(self, record, symbol, invoker=None):
        members = f"members_{symbol}, {len(record.members)}" if symbol and record.members else "nullptr, 0"
        bases = f"bases_{symbol}, {len(record.bases)}" if record.bases else "nullptr, 0"
        all_bases = f"allBases_{symbol}, {len(record.all_bases)}" if record.all_bases else "nullptr, 0"
        constructor = "nullptr"
        if record.is_class and record.is_reflected:
            constructor = f"ARInvokers<{record.qualified}>::constructor_invoker_factory()"
        function = self._invoker_address(record, invoker) if invoker else "nullptr"
        value = self._enum_value(record) if record.kind == "enumvalue" else "0"
        include = self.include_of(record.file) if record.is_class else ""
        return ", ".join([
            literal(record.id), literal(record.name), literal(record.qualified),
            f"IReflectedThing::{KINDS[record.kind]}", literal(record.comment.brief), literal(record.comment.in_body),
            literal(include), literal(record.argsstring), members, bases, all_bases,
            literal(f"{record.file}({record.line})"), constructor, function, value,
            str(len(record.parameters)), self._context(record)])

    @staticmethod
    def _invoker_address(record, name):
        scope = record.class_scope
        return f"&ARInvokers<{scope.qualified}>::{name}" if scope is not None else f"&{name}"

    def _context(self, record):
        scope = self._address(record.scope) if record.scope is not None else "nullptr"
        overridden = self._address(record.overridden) if record.overridden is not None else "nullptr"
        returned = self._type_address(record.signature.result) if record.signature else "nullptr"
        types = self._argument_array(record) if self._has_argument_types(record) else "nullptr"
        body = literal(record.body_file) if record.body_file else "nullptr"
        return (f"{{{scope}, {overridden}, {returned}, {types}, {'true' if record.takes_this else 'false'}, "
                f"{{{literal(record.file)}, {record.line}, {body}, {record.body_start}, {record.body_end}}}"
                f"{self._field_reader(record)}}}")

    @staticmethod
    def _field_reader(record):
        scope = record.class_scope
        if scope is None or not scope.is_reflected or record not in fields.fields(scope):
            return ""
        return f", ARInvokers<{scope.qualified}>::{fields.reader_name(record)}"

    def _type_address(self, crossing):
        record = crossing.inner.record if crossing.inner is not None else crossing.record
        return self._address(record) if record is not None else "nullptr"

    @staticmethod
    def _has_argument_types(record):
        return record.signature is not None and any(a.record is not None for a in record.signature.arguments)

    def _argument_array(self, record):
        scope, index = self.symbols.positions[record.id]
        return f"types_{self.symbols.array(scope)}_{index}"

    def _argument_types(self, record):
        if not self._has_argument_types(record):
            return ""
        types = ", ".join(self._type_address(a) for a in record.signature.arguments)
        return f"static constexpr const DoxyElement *{self._argument_array(record)}[] = {{{types}}};\n"

    # -- what the macro in the class declares

    def _class_definitions(self, record):
        name = record.qualified
        return (f"constinit const ReflectorPtr {name}::staticType{{StaticThing(), {self._address(record)}}};\n"
                f"ReflectorPtr {name}::getType() const\n{{\n"
                f"    return ReflectorPtr(StaticThing(), {self._address(record)});\n}}\n"
                f"Handle<{name}> {name}::getTypedHandle() const\n{{\n"
                f"    return unchecked_handle_cast<{name}>(getHandle());\n}}\n")

    def _blocks(self):
        entries = "".join(f"    {b},\n" for b in self.blocks)
        array = f"static constexpr DoxyBlock blocks[] = {{\n{entries}}};\n" if entries else ""
        result = "blocks" if entries else "{}"
        return f"{array}std::span<const DoxyBlock> kvPart_{self.name}()\n{{\n    return {result};\n}}\n"

    # -- what the file refers to

    def _extern(self, record):
        self.externs.add(self.symbols.declaration(record))

    def _address(self, record):
        self._extern(record)
        return self.symbols.address(record)

    def _value(self, record):
        self._extern(record)
        return self.symbols.record_symbols[record.id]

    def _needs(self, record):
        self.headers.add(self.include_of(record.file))


def numbered(functions):
    """Pairs each function with the name of its invoker; overloads are counted from the second on."""
    counts = {}
    pairs = []
    for function in functions:
        count = counts[function.name] = counts.get(function.name, 0) + 1
        pairs.append((function, f"rf_{function.name}" + (f"_{count}" if count > 1 else "")))
    return pairs


def enumerator_expression(enumerator):
    enum = enumerator.scope
    if enum.name:
        return f"{enum.qualified}::{enumerator.name}"
    return enumerator.qualified


def computed_value(enumerator):
    """The number of an enumerator that no other code may name, from its own text."""
    value = -1
    known = {}
    for entry in enumerator.scope.own:
        text = entry.initializer
        if text:
            text = re.sub(r"[A-Za-z_]\w*", lambda m: str(known.get(m.group(), m.group())), text)
            is_number = re.fullmatch(r"[\dxXa-fA-F\s()|&+\-*<>~^]+", text)
            value = int(eval(text, {"__builtins__": {}})) if is_number else value + 1
        else:
            value += 1
        known[entry.name] = value
        if entry is enumerator:
            break
    return value


def write_table(table, parts):
    """The source file that enlists a table with its parts."""
    declarations = "".join(f"std::span<const DoxyBlock> kvPart_{name}();\n" for name in parts)
    entries = ", ".join(f"&kvPart_{name}" for name in parts)
    return (BANNER + '#include "object/reflection/AutoReflector.h"\n\n' + declarations
            + f"\nnamespace\n{{\nconstexpr DoxyTable::Part parts[] = {{{entries}}};\n"
              f"DoxyTable table({literal(table)}, parts);\n}} // namespace\n")
