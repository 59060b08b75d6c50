"""Typed stubs of everything reflected, so that an editor completes what scripts write.

What stands here can be called: the public members that the engine finds by their names. Calls whose result depends on
a name that is passed have their types from `forms`.
"""

import keyword
import os
import textwrap

from forms import Forms, spellings
from reach import argument_list, free_enums, free_functions, given_type, got_type, methods, own_properties
from reach import reflected_classes, script_name

INDENT = "    "


def docstring(text, indent):
    """The lines of a docstring, or an ellipsis where there is no text."""
    if not text:
        return [indent + "..."]
    escaped = text.replace("\\", "\\\\").replace('"""', "'''")
    escaped += " " if escaped.endswith('"') else ""
    return textwrap.wrap(f'"""{escaped}"""', 116, initial_indent=indent, subsequent_indent=indent,
                         break_long_words=False, break_on_hyphens=False)


def method_stub(function, indent, name=None, decorator=None):
    arguments = argument_list(function)
    arguments += ["/"] if arguments else []
    lines = [indent + decorator] if decorator else []
    if function.takes_this:
        arguments.insert(0, "self")
    elif function.class_scope is not None:
        lines.append(indent + "@staticmethod")
    head = f"{indent}def {name or function.name}({', '.join(arguments)}) -> {got_type(function.signature.result)}:"
    body = docstring(function.comment.brief, indent + INDENT)
    if body == [indent + INDENT + "..."]:
        return lines + [head + " ..."]
    return lines + [head] + body


def property_stub(name, getter, setter, indent):
    lines = []
    if getter is not None:
        lines += method_stub(getter, indent, name, "@property")
    else:
        # A property that can only be written still needs a getter for the decorator to hang on.
        lines += [f"{indent}@property", f"{indent}def {name}(self) -> None: ..."]
    if setter is not None:
        lines += [f"{indent}@{name}.setter",
                  f"{indent}def {name}(self, value: {given_type(setter.signature.arguments[0])}, /) -> None: ..."]
    return lines


def enum_stub(enum, indent):
    lines = [f"{indent}class {enum.name}(int):"] + docstring(enum.comment.brief, indent + INDENT)
    for value in enum.own:
        name = value.name + ("_" if keyword.iskeyword(value.name) else "")
        lines.append(f"{indent}{INDENT}{name}: {script_name(enum)}")
    return lines + [indent + line for line in spellings(enum)]


def class_stub(record, forms, indent=""):
    bases = [base for base, _, _ in record.bases if base.is_reflected]
    lines = [f"{indent}class {record.name}({script_name(bases[0]) if bases else 'Handle_'}):"]
    lines += docstring(record.comment.brief, indent + INDENT)
    inner = indent + INDENT
    for member in record.own:
        if member.kind == "enum" and member.name:
            lines += enum_stub(member, inner)
        elif member.is_class and member.is_reflected:
            lines += class_stub(member, forms, inner)
    for name, getter, setter in own_properties(record):
        lines += property_stub(name, getter, setter, inner)
    for function in methods(record):
        lines += [inner + line for line in forms.of_method(function)] or method_stub(function, inner)
    return lines


def reflection_stub(model):
    """The register: every class of objects, every enum outside of them and every free function by name."""
    lines = ["class _ReflectionSystem:", f'{INDENT}"""Reflected things by name."""', "",
             f"{INDENT}def __getattr__(self, name: str) -> Any: ...",
             f"{INDENT}def __contains__(self, name: str) -> bool: ...",
             f"{INDENT}def has_key(self, name: str, /) -> bool: ..."]
    for record in reflected_classes(model):
        lines.append(f"{INDENT}{record.name}: _ObjectClass[{record.name}]")
    for enum in free_enums(model):
        lines.append(f"{INDENT}{enum.name}: type[{enum.name}]")
    for function in free_functions(model):
        lines += [f"{INDENT}@staticmethod"] + method_stub(function, INDENT)
    return lines


def outer_classes(model):
    """Classes that hold enums which calls use, without being objects themselves."""
    found = {}
    for enum in model.enums():
        scope = enum.class_scope
        if enum.name and scope is not None and scope.class_scope is None and not scope.is_reflected \
                and not scope.is_template and not enum.imported:
            found.setdefault(scope.name, []).append(enum)
    return found


def text(model):
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "native.pyi"), encoding="utf-8") as native:
        native_text = native.read().rstrip("\n")
    blocks = [native_text.splitlines()]
    blocks += [enum_stub(enum, "") for enum in free_enums(model)]
    native_classes = {line.split("(")[0].split(":")[0].removeprefix("class ")
                      for line in blocks[0] if line.startswith("class ")}
    for name, enums in sorted(outer_classes(model).items()):
        if name not in native_classes:
            blocks.append([f"class {name}:"] + [line for enum in enums for line in enum_stub(enum, INDENT)])
    forms = Forms(model)
    blocks += [class_stub(record, forms) for record in reflected_classes(model)]
    blocks.append(reflection_stub(model))
    blocks += forms.blocks()
    return "\n\n\n".join("\n".join(block) for block in blocks) + "\n"
