"""Typed stubs of everything reflected, so that an editor completes what scripts write."""

import keyword
import os
import textwrap

SCRIPT_TYPES = {"bool": "bool", "float": "float", "double": "float", "String": "str", "Vec4": "Vec4",
                "Quaternion": "Quaternion", "Variant": "Any", "PythonObject": "Any", "GridCell": "GridCell",
                "std::vector<GridCell>": "list[GridCell]"}
INDENT = "    "


def properties(record):
    """The properties of a class as the table collects them: (name, getter, setter) in order of appearance."""
    found = {}
    for member in record.members:
        if not member.takes_this or len(member.name) <= 3 or member.signature is None:
            continue
        slot = {("get", 0): 1, ("set", 1): 2}.get((member.name[:3], len(member.parameters)))
        if slot is None:
            continue
        name = member.name[3].lower() + member.name[4:]
        entry = found.setdefault(name, [name, None, None])
        if entry[slot] is None:
            entry[slot] = member
    return [tuple(entry) for entry in found.values()]


def methods(record):
    """The functions that a class itself declares and scripts can call, the first of each name."""
    found = {}
    for member in record.own:
        if member.signature is not None:
            found.setdefault(member.name, member)
    return list(found.values())


def script_name(record):
    """How stubs and documents name a class or an enum."""
    return record.qualified.replace("::", ".")


def given_type(crossing):
    """What a script passes for an argument."""
    if crossing.category == "enum":
        return f"{script_name(crossing.record)} | int | str"
    if crossing.cpp == "ReflectorPtr":
        return "_Callable"
    return got_type(crossing)


def got_type(crossing):
    """What a script gets as a result."""
    if crossing.category in ("void", "code"):
        return "None"
    if crossing.category == "result":
        return got_type(crossing.inner)
    if crossing.category == "handle":
        return script_name(crossing.record)
    if crossing.category == "enum":
        return "int"
    if crossing.cpp == "ReflectorPtr":
        return "IReflectedThing | None"
    return SCRIPT_TYPES.get(crossing.cpp, "int")


def argument_list(function):
    """The parameters of a function as a script sees them, without self."""
    names = []
    for index, (parameter, crossing) in enumerate(zip(function.parameters, function.signature.arguments)):
        name = parameter.name or f"value{index}"
        name += "_" if keyword.iskeyword(name) else ""
        names.append(f"{name}: {given_type(crossing)}")
    return names


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
    return lines


def class_stub(record, indent=""):
    bases = [base for base, _, _ in record.bases if base.is_reflected]
    lines = [f"{indent}class {record.name}({script_name(bases[0]) if bases else 'Handle_'}):"]
    lines += docstring(record.comment.brief, indent + INDENT)
    inner = indent + INDENT
    for member in record.own:
        if member.kind == "enum" and member.name:
            lines += enum_stub(member, inner)
        elif member.is_class and member.is_reflected:
            lines += class_stub(member, inner)
    own = methods(record)
    taken = {m.name for m in record.members if m.kind == "function"}
    declared = {id(m) for m in record.own}
    for name, getter, setter in properties(record):
        if name not in taken and not keyword.iskeyword(name) and (id(getter) in declared or id(setter) in declared):
            lines += property_stub(name, getter, setter, inner)
    for function in own:
        lines += method_stub(function, inner)
    return lines


def reflection_stub(model):
    """The register: every class of objects, every enum outside of them and every free function by name."""
    lines = ["class _ReflectionSystem:", f'{INDENT}"""Reflected things by name."""', "",
             f"{INDENT}def __getattr__(self, name: str) -> Any: ...",
             f"{INDENT}def __contains__(self, name: str) -> bool: ...",
             f"{INDENT}def has_key(self, name: str, /) -> bool: ..."]
    for record in model.classes():
        if record.is_reflected and record.class_scope is None and not record.imported:
            lines.append(f"{INDENT}{record.name}: _ObjectClass[{record.name}]")
    for enum in free_enums(model):
        lines.append(f"{INDENT}{enum.name}: type[{enum.name}]")
    for function in free_functions(model):
        lines += [f"{INDENT}@staticmethod"] + method_stub(function, INDENT)
    return lines


def free_enums(model):
    """Enums that stand in no class, by name."""
    return sorted((e for e in model.enums() if e.name and e.scope.kind == "file" and not e.imported),
                  key=lambda e: e.name)


def free_functions(model):
    """Callable functions that stand in no class or namespace, the first of each name."""
    found = {}
    for scope in sorted((f for f in model.files if not f.imported), key=lambda f: f.file):
        for member in scope.own:
            if member.signature is not None:
                found.setdefault(member.name, member)
    return [found[name] for name in sorted(found)]


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
    for record in model.classes():
        if record.is_reflected and record.class_scope is None and not record.imported:
            blocks.append(class_stub(record))
    blocks.append(reflection_stub(model))
    return "\n\n\n".join("\n".join(block) for block in blocks) + "\n"
