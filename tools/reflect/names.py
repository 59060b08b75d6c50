"""The list of everything that scripts can reach by name, one line each, for a review to see."""

from model import pretty_type
from reach import properties


def text(model):
    lines = []
    for record in model.classes():
        if not record.imported and record.is_reflected:
            lines += class_lines(record)
    for enum in model.enums():
        if not enum.imported and enum.name:
            lines.append(f"enum {enum.qualified}: " + " ".join(v.name for v in enum.own))
    for scope in model.files + model.namespaces:
        if not scope.imported:
            lines += [f"function {signature(m)}" for m in scope.own if m.signature is not None]
    return "".join(line + "\n" for line in sorted(set(lines)))


def class_lines(record):
    bases = ", ".join(base.qualified for base, _, _ in record.bases)
    yield f"class {record.qualified}: {bases}"
    for member in record.own:
        if member.signature is not None:
            yield f"{'static' if member.is_static else 'method'} {signature(member)}"
    own = {id(m) for m in record.own}
    for name, getter, setter in properties(record):
        if id(getter) in own or id(setter) in own:
            access = "/".join(a for a, f in (("get", getter), ("set", setter)) if f is not None)
            yield f"property {record.qualified}.{name} ({access})"


def signature(function):
    arguments = ", ".join(pretty_type(p.type) for p in function.parameters)
    return f"{function.qualified}({arguments}) -> {pretty_type(function.type) or 'void'}"
