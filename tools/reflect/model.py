"""What the headers declare: records of classes, members, enums, files, and how they hang together."""

import re
from dataclasses import dataclass, field, replace

from failure import ReflectionError

CLASS_KINDS = ("class", "struct", "union")
TYPE_KINDS = CLASS_KINDS + ("enum", "typedef")

SPECIFIERS = re.compile(r"\b(virtual|static|constexpr|inline|explicit|extern|friend|noexcept)\b|\[\[[^\]]*\]\]"
                        r"|__attribute__\s*\(\([^()]*(\([^()]*\))?\)\)")

# Classes that the object tree, and with it every invoker, rests on.
ROOT_CLASS = "Object"


@dataclass
class Parameter:
    """One declared parameter of a function."""

    type: str
    name: str
    default: str = ""


@dataclass
class Comment:
    """A documentation comment, taken apart."""

    brief: str = ""
    paragraphs: list = field(default_factory=list)
    parameters: dict = field(default_factory=dict)
    returns: str = ""
    notes: list = field(default_factory=list)  # (title, text)
    in_body: str = ""


@dataclass(eq=False)
class Record:
    """One declared thing."""

    id: str
    kind: str
    name: str
    qualified: str
    comment: Comment
    file: str = ""
    line: int = 0
    column: int = 0
    body_file: str = ""
    body_start: int = 0
    body_end: int = 0
    protection: str = "public"
    is_static: bool = False
    is_const: bool = False
    is_explicit: bool = False
    is_inline: bool = False
    is_mutable: bool = False
    is_strong: bool = False
    is_bitfield: bool = False
    is_template: bool = False
    virtual: str = "non-virtual"
    type: str = ""
    argsstring: str = ""
    initializer: str = ""
    parameters: list = field(default_factory=list)
    base_names: list = field(default_factory=list)  # (name, protection, virtual)
    inner: list = field(default_factory=list)  # ids of nested classes
    includes: list = field(default_factory=list)  # of a file, as written
    own: list = field(default_factory=list)  # members declared here, in declaration order
    is_reflected: bool = False
    is_mixin: bool = False  # its public functions are those of every reflected class that derives from it
    shows_fields: bool = False  # its private fields may be read
    holds_union: bool = False  # one without a name, of whose members one alone is there
    reflected_line: int = 0
    scope: "Record" = None
    # Filled in by Model.connect.
    bases: list = field(default_factory=list)  # (Record, protection, virtual)
    all_bases: list = field(default_factory=list)
    members: list = field(default_factory=list)  # own, then inherited
    derived: list = field(default_factory=list)  # reflected classes with this one among their bases
    overridden: "Record" = None
    # Filled in by the signatures.
    signature: object = None
    imported: bool = False

    @property
    def place(self):
        return f"{self.file}:{self.line}"

    @property
    def is_class(self):
        return self.kind in CLASS_KINDS

    @property
    def class_scope(self):
        return self.scope if self.scope is not None and self.scope.is_class else None

    @property
    def takes_this(self):
        return self.kind == "function" and self.class_scope is not None and not self.is_static

    @property
    def is_special(self):
        """Constructors, destructors and operators: described, never called by name."""
        scope_name = strip_template(self.class_scope.name) if self.class_scope else None
        return (self.name == scope_name or self.name.startswith("~")
                or re.match(r"operator\b", self.name) is not None)

    @property
    def is_deleted(self):
        return re.search(r"=\s*delete$", self.argsstring) is not None

    @property
    def is_abstract(self):
        """Whether a class has no objects of its own."""
        return any(m.virtual == "pure-virtual" for m in self.members)

    def arguments_key(self):
        """What two declarations of one virtual function have in common."""
        constness = self.is_const
        return (self.name, constness, tuple(normalise_type(p.type) for p in self.parameters))


def strip_template(name):
    """A class name without its template arguments."""
    return name.split("<", 1)[0].strip()


def normalise_type(text):
    """One spelling for a type however it is spaced."""
    text = " ".join(text.split())
    text = re.sub(r"\s*([<>,&*()\[\]])\s*", r"\1", text)
    return re.sub(r"\s*::\s*", "::", text)


def without_specifiers(text):
    """A type without what a declaration may put in front of it."""
    return normalise_type(SPECIFIERS.sub(" ", text))


def pretty_type(text):
    """A type as a person writes it: `const Handle<Object> &`."""
    text = without_specifiers(text).replace(",", ", ")
    text = re.sub(r"([&*]+)", r" \1", text)
    return re.sub(r">(?=\w)", "> ", text).strip()


class Model:
    """All records of one or several Doxygen runs."""

    def __init__(self):
        self.by_id = {}
        self.types = {}  # qualified name -> Record
        self.files = []
        self.namespaces = []

    # -- construction

    def add(self, record):
        self.by_id[record.id] = record
        if record.kind == "file":
            self.files.append(record)
        elif record.kind == "namespace":
            self.namespaces.append(record)
        if record.kind in TYPE_KINDS and record.name:
            self._add_type(record)
        for member in record.own:
            self.by_id[member.id] = member
            member.scope = record
            if member.kind in TYPE_KINDS and member.name:
                self._add_type(member)
            for enumerator in member.own:
                enumerator.scope = member

    def _add_type(self, record):
        other = self.types.get(record.qualified)
        if other is not None and other is not record and other.place != record.place:
            if record.is_class and other.is_class:
                raise ReflectionError(record.place, f"class '{record.qualified}' is defined at {other.place} too; "
                                                    "give one of them another name")
            return
        self.types[record.qualified] = record

    def import_from(self, other):
        """Takes in the records of another model, as things that are described elsewhere."""
        for record in other.by_id.values():
            record.imported = True
            for enumerator in record.own:
                enumerator.imported = True
        self.by_id.update(other.by_id)
        self.types.update(other.types)
        self.files.extend(other.files)
        self.namespaces.extend(other.namespaces)

    def connect(self):
        """Resolves scopes, bases, inherited members and overridden functions."""
        self._place_in_scopes()
        for record in self.classes():
            if not record.imported:
                self._check_one_definition(record)
                record.bases = [(base, prot, virt) for name, prot, virt in record.base_names
                                if (base := self._base(name, record)) is not None]
        for record in self.classes():
            if not record.imported:
                record.all_bases = self._flatten_bases(record)
                self._check_reflected(record)
                for base in record.all_bases if record.is_reflected else ():
                    base.derived.append(record)
                self._take_in_mixins(record)
        done = set()
        for record in self.classes():
            self._inherit(record, done)
        for scope in self.files + self.namespaces:
            if not scope.imported:
                scope.own.sort(key=declaration_order)
                scope.members = list(scope.own)
        for enum in self.enums():
            enum.members = list(enum.own)

    # -- queries

    def classes(self):
        return sorted((r for r in self.by_id.values() if r.is_class), key=lambda r: (r.file, r.line, r.qualified))

    def enums(self):
        return sorted((r for r in self.by_id.values() if r.kind == "enum"), key=lambda r: (r.file, r.line, r.column))

    def is_object_class(self, record):
        return record.qualified == ROOT_CLASS or any(b.qualified == ROOT_CLASS for b in record.all_bases)

    def lookup_type(self, name, scope):
        """The type that a name means inside a scope, by C++'s rules as far as headers need them."""
        name = name.removeprefix("::")
        while scope is not None:
            if scope.kind in CLASS_KINDS + ("namespace",):
                for level in [scope] + scope.all_bases:
                    found = self.types.get(f"{level.qualified}::{name}")
                    if found is not None:
                        return found
                if scope.is_class and name == strip_template(scope.name):
                    return scope
            scope = scope.scope
        return self.types.get(name)

    def files_that_include(self, prefixes):
        """Paths of the headers that include an outside header of these prefixes, directly or through others."""
        found = {r.file for r in self.files if any(i.startswith(prefixes) for i in r.includes)}
        grown = True
        while grown:
            grown = False
            for record in self.files:
                if record.file not in found and any(path.endswith("/" + i) for i in record.includes for path in found):
                    found.add(record.file)
                    grown = True
        return found

    # -- steps of connect

    def _place_in_scopes(self):
        for scope in list(self.by_id.values()):
            for inner_id in scope.inner:
                inner = self.by_id.get(inner_id)
                if inner is None:
                    continue
                # A file lists the nested classes too; the innermost scope is the one that declares it.
                if inner.scope is None or scope.is_class or (scope.kind == "namespace" and inner.scope.kind == "file"):
                    inner.scope = scope
        for record in list(self.by_id.values()):
            scope = record.scope
            if record.is_class and scope is not None and record not in scope.own and not record.imported:
                scope.own.append(record)

    def _base(self, name, record):
        return self.lookup_type(strip_template(name), record.scope) or self.types.get(strip_template(name))

    def _check_one_definition(self, record):
        for member in record.own:
            if not member.is_class and member.file and member.file != record.file:
                raise ReflectionError(member.place, f"'{member.qualified}' belongs to the class '{record.qualified}' "
                                                    f"of {record.place}; give one of the two classes another name")

    def _flatten_bases(self, record):
        flat = []
        for base, _, _ in record.bases:
            for entry in [base] + self._flatten_bases(base):
                if entry not in flat:
                    flat.append(entry)
        return flat

    def _check_reflected(self, record):
        if not record.is_reflected:
            return
        place = f"{record.file}:{record.reflected_line}"
        if not self.is_object_class(record):
            raise ReflectionError(place, f"class '{record.qualified}' has KV_REFLECTED but does not derive from "
                                         "Object; derive it, or remove the macro")
        if record.is_template:
            raise ReflectionError(place, f"class template '{record.qualified}' cannot be reflected; remove "
                                         "KV_REFLECTED")
        if sum(1 for base, _, _ in record.bases if self.is_object_class(base)) > 1:
            raise ReflectionError(place, f"class '{record.qualified}' derives from Object twice; keep one of the bases")
        scope = record
        while scope.class_scope is not None:
            if scope.protection != "public":
                raise ReflectionError(place, f"class '{record.qualified}' has KV_REFLECTED but is not public; move it "
                                             "to the public part of its class")
            scope = scope.class_scope

    def _take_in_mixins(self, record):
        """Gives a reflected class the public functions of its mixins as its own."""
        mixins = [base for base, _, _ in record.bases if base.is_mixin] if record.is_reflected else []
        for member in (m for mixin in mixins for m in mixin.own):
            if member.kind == "function" and member.protection == "public" and not member.is_special:
                copy = replace(member, id=f"{record.id}_{member.id}", qualified=f"{record.qualified}::{member.name}",
                               scope=record)
                record.own.append(copy)
                self.by_id[copy.id] = copy

    def _inherit(self, record, done):
        if record.id in done or record.imported:
            return
        done.add(record.id)
        record.own.sort(key=declaration_order)
        record.members = list(record.own)
        overriding = {m.arguments_key(): m for m in record.own if m.kind == "function"}
        seen = {m.id for m in record.members}
        for base, _, _ in record.bases:
            self._inherit(base, done)
            for member in base.members if not (base.is_mixin and record.is_reflected) else ():
                override = overriding.get(member.arguments_key()) if member.virtual != "non-virtual" else None
                if override is not None:
                    if override.overridden is None:
                        override.overridden = member
                        override.virtual = "virtual" if override.virtual == "non-virtual" else override.virtual
                        if not override.comment.brief:
                            override.comment = member.comment
                elif member.id not in seen and member.kind != "friend" and not member.is_special:
                    seen.add(member.id)
                    record.members.append(member)


def declaration_order(record):
    return (record.line, record.column, record.qualified, record.id)
