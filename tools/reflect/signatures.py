"""Decides which functions a reflected call can reach, and how each value crosses."""

import re
from dataclasses import dataclass, field

from model import normalise_type, without_specifiers

# A call takes at most five values, of which a member function's object is one.
MAX_CALL_ARGS = 5

NUMBERS = {
    "bool": "bool",
    "char": "char",
    "signed char": "signed char",
    "unsigned char": "unsigned char",
    "short": "short", "short int": "short", "signed short": "short",
    "unsigned short": "unsigned short", "unsigned short int": "unsigned short",
    "int": "int", "signed": "int", "signed int": "int",
    "unsigned": "unsigned int", "unsigned int": "unsigned int",
    "long": "long", "long int": "long", "signed long": "long", "signed long int": "long",
    "unsigned long": "unsigned long", "unsigned long int": "unsigned long",
    "long long": "long long", "long long int": "long long", "signed long long": "long long",
    "unsigned long long": "unsigned long long", "unsigned long long int": "unsigned long long",
    "float": "float",
    "double": "double",
    "int8_t": "signed char", "uint8_t": "unsigned char",
    "int16_t": "short", "uint16_t": "unsigned short",
    "int32_t": "int", "uint32_t": "unsigned int",
    "int64_t": "long", "uint64_t": "unsigned long",
    "size_t": "unsigned long", "ssize_t": "long", "ptrdiff_t": "long",
    "intptr_t": "long", "uintptr_t": "unsigned long",
}

VALUES = ("String", "ReflectorPtr", "Vec4", "Quaternion", "Variant", "PythonObject", "GridCell", "PathRequest",
          "SteeringOutput", "SteeringComponent::AvoidRay", "FlockingComponent::FlockTarget", "ConsoleCommand")
# Values with a script class that functions only return, or only take.
RETURNED = ("RayCollision", "SegmentHit", "GlobalListener", "HeardSound", "HeardWay", "ReverbShare")
TAKEN = ("MeshBuilder",)
# Values that also cross as a std::vector of them.
LISTED = ("GridCell",)


@dataclass
class Crossing:
    """A type that crosses the reflection layer."""

    category: str  # number, value, handle, enum, void; for results alone code, result, answer; for arguments taken
    cpp: str  # the type in C++, fully qualified, without const and reference
    record: object = None  # class of a handle, or the enum
    inner: "Crossing" = None  # of an ErrorReturn or a list
    home: object = None  # class of a value whose header its invoker needs


@dataclass
class Signature:
    """What an invoker needs to know of a function."""

    result: Crossing
    arguments: list = field(default_factory=list)


class Signatures:
    """Resolves types in the scopes of a model."""

    def __init__(self, model):
        self.model = model
        self.notes = []  # what a programmer may want to know

    def sign(self, function):
        """The signature of a function that can be called by name; None for any other."""
        if function.kind != "function" or function.is_special or function.is_template or function.is_deleted:
            return None
        if not self._has_a_home(function):
            return None
        result = self.result(function.type, function.scope)
        arguments = [self.argument(p.type, function.scope) for p in function.parameters]
        if result is None or None in arguments:
            return None
        count = len(arguments) + (1 if function.takes_this else 0)
        if count > MAX_CALL_ARGS:
            if function.takes_this:
                self.notes.append(f"{function.place}: note: '{function.qualified}' takes {count} values with its "
                                  f"object; a call by name takes {MAX_CALL_ARGS} at most, so scripts cannot call it")
            return None
        return Signature(result, arguments)

    @staticmethod
    def _has_a_home(function):
        scope = function.class_scope
        return scope.is_reflected if scope is not None else function.scope is not None

    def argument(self, text, scope):
        """How a parameter of this type is filled; None where it cannot be."""
        bare = self._bare(text)
        crossing = self._value(bare, scope) if bare else None
        return None if crossing is None or crossing.category in ("code", "result", "answer") else crossing

    def result(self, text, scope):
        """How a result of this type is packed; None where it cannot be."""
        bare = self._bare(text)
        if bare is None:
            return None
        if bare == "void":
            return Crossing("void", "void")
        crossing = self._value(bare, scope)
        return None if crossing is None or crossing.category == "taken" else crossing

    @staticmethod
    def _bare(text):
        """The type under const and a reference to const; None for pointers and other references."""
        spelled = without_specifiers(text)
        if spelled.endswith("&&") or any(c in spelled for c in "*([") or "..." in spelled:
            return None
        if spelled.endswith("&"):
            if re.match(r"const\b", spelled) is None and not spelled.endswith("const&"):
                return None
            spelled = spelled[:-1]
        return normalise_type(re.sub(r"\b(const|struct|class|enum|typename)\b", " ", spelled))

    def _value(self, name, scope, depth=0):
        name = name.removeprefix("std::").removeprefix("::")
        if depth > 16 or "&" in name:
            return None
        template = re.fullmatch(r"(\w+)<(.*)>", name)
        if template:
            return self._template(template.group(1), template.group(2), scope)
        found = self.model.lookup_type(name, scope)
        if found is not None and found.kind == "typedef":
            bare = self._bare(found.type)
            return self._value(bare, found.scope, depth + 1) if bare else None
        if found is not None and found.kind == "enum":
            return Crossing("enum", found.qualified, found) if self._is_reachable(found, scope) else None
        if found is not None and found.qualified in VALUES:
            return Crossing("value", found.qualified)
        if name in NUMBERS:
            return Crossing("number", NUMBERS[name])
        if name in VALUES:
            return Crossing("value", name)
        if name in RETURNED:
            return Crossing("answer", name)
        if name in TAKEN:
            return Crossing("taken", name, home=found)
        if name == "ErrorCode":
            return Crossing("code", name)
        return None

    def _template(self, name, argument, scope):
        if name == "Handle":
            argument = argument or "Object"
            target = self.model.lookup_type(self._bare(argument) or "", scope)
            if target is not None and target.kind == "typedef":
                target = self.model.lookup_type(target.type, target.scope)
            if target is None or not target.is_class or not self.model.is_object_class(target):
                return None
            return Crossing("handle", f"Handle<{target.qualified}>", target)
        if name == "vector" and argument in LISTED:
            return Crossing("value", f"std::vector<{argument}>")
        if name in ("vector", "span"):
            entry = self._value(argument, scope)
            listed = entry is not None and (entry.category in ("handle", "answer") or entry.cpp == "Vec4")
            return Crossing("answer", f"std::{name}<{entry.cpp}>", inner=entry) if listed else None
        if name == "ErrorReturn":
            inner = self.result(argument, scope)
            if inner is None or inner.category in ("code", "result", "answer"):
                return None
            return Crossing("result", f"ErrorReturn<{inner.cpp}>", inner=inner)
        return None

    @staticmethod
    def _is_reachable(enum, scope):
        """Whether code inside `scope` may name an enum: a private one only its own class may."""
        owner = enum.class_scope
        if not enum.name or (owner is not None and owner.is_template):
            return False
        step = enum
        while step.class_scope is not None:
            if step.protection != "public" and step.class_scope is not scope:
                return False
            step = step.class_scope
        return True


def is_public(record):
    """Whether any code may name this thing."""
    while record is not None and record.class_scope is not None:
        if record.protection != "public":
            return False
        record = record.class_scope
    return True


def is_named_by_friends(record):
    """Whether a friend of the reflected classes may name this thing."""
    while record is not None and record.class_scope is not None:
        if record.class_scope.is_template:
            return False
        if record.protection != "public" and not record.class_scope.is_reflected:
            return False
        record = record.class_scope
    return True
