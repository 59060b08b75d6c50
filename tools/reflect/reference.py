"""The script reference: one page a class, written from the comments in the headers."""

import os

from reach import argument_list, free_enums, free_functions, given_type, got_type, methods, own_properties, script_name
from writing import remove_others, write_if_changed


def write(model, folder):
    """Writes all pages into a folder and removes those of classes that are gone."""
    pages = {}
    for record in model.classes():
        if record.is_reflected and not record.imported:
            pages[page_name(record)] = class_page(model, record)
    pages["functions.md"] = functions_page(model)
    pages["enums.md"] = enums_page(model)
    pages["index.md"] = index_page(model)
    for name, text in pages.items():
        write_if_changed(os.path.join(folder, name), text)
    remove_others(folder, set(pages))


def page_name(record):
    return script_name(record) + ".md"


def link(record):
    if record.kind == "enum" and not is_in_reflected_class(record):
        return f"[{script_name(record)}](enums.md#{anchor(script_name(record))})"
    if record.kind == "enum":
        return f"[{script_name(record)}]({page_name(record.class_scope)}#{anchor(record.name)})"
    return f"[{script_name(record)}]({page_name(record)})"


def is_in_reflected_class(enum):
    return enum.class_scope is not None and enum.class_scope.is_reflected


def anchor(heading):
    """The anchor that Markdown gives a heading."""
    return "".join(c for c in heading.lower().replace(" ", "-") if c.isalnum() or c in "-_")


def signature(function):
    return f"{function.name}({', '.join(argument_list(function))}) -> {got_type(function.signature.result)}"


def comment_lines(comment):
    lines = []
    if comment.brief:
        lines += [comment.brief, ""]
    for paragraph in comment.paragraphs:
        lines += [paragraph, ""]
    for name, text in comment.parameters.items():
        lines.append(f"- `{name}`: {text}")
    if comment.parameters:
        lines.append("")
    if comment.returns:
        lines += [f"Returns {comment.returns}", ""]
    for title, text in comment.notes:
        lines += [f"{title}: {text}", ""]
    return lines


def place(record):
    return f"`{record.file}`, line {record.line}"


def class_page(model, record):
    lines = [f"# {script_name(record)}", ""] + comment_lines(record.comment)
    bases = [base for base in record.all_bases if base.is_reflected]
    if bases:
        lines += ["Derives from " + ", ".join(link(base) for base in bases) + ".", ""]
    derived = [c for c in model.classes() if c.is_reflected and any(b is record for b, _, _ in c.bases)]
    if derived:
        lines += ["Base of " + ", ".join(link(c) for c in sorted(derived, key=script_name)) + ".", ""]
    lines += [f"Declared in {place(record)}.", ""]
    lines += property_table(record)
    functions = methods(record)
    if functions:
        lines += ["## Methods", ""]
        for function in functions:
            lines += [f"### {function.name}", "", f"`{signature(function)}`", ""] + comment_lines(function.comment)
    enums = [m for m in record.own if m.kind == "enum" and m.name and m.protection == "public"]
    if enums:
        lines += ["## Enums", ""]
        for enum in enums:
            lines += enum_section(enum, enum.name)
    lines += inherited(record, bases)
    return "\n".join(lines).rstrip("\n") + "\n"


def property_table(record):
    rows = []
    for name, getter, setter in own_properties(record):
        shown = got_type(getter.signature.result) if getter else given_type(setter.signature.arguments[0])
        access = {(True, True): "read, write", (True, False): "read", (False, True): "write"}[
            getter is not None, setter is not None]
        text = (getter.comment.brief if getter else "") or (setter.comment.brief if setter else "")
        rows.append(f"| `{name}` | `{cell(shown)}` | {access} | {cell(text)} |")
    if not rows:
        return []
    return ["## Properties", "", "| name | type | access | |", "|---|---|---|---|"] + rows + [""]


def cell(text):
    return text.replace("|", "\\|")


def inherited(record, bases):
    lines = []
    for base in bases:
        names = sorted({m.name for m in methods(base)} & {m.name for m in record.members})
        if names:
            listed = ", ".join(f"[{n}]({page_name(base)}#{anchor(n)})" for n in names)
            lines += [f"From {link(base)}: {listed}", ""]
    return ["## Inherited methods", ""] + lines if lines else []


def enum_section(enum, title):
    lines = [f"### {title}", ""] + comment_lines(enum.comment)
    for value in enum.own:
        text = f": {value.comment.brief}" if value.comment.brief else ""
        lines.append(f"- `{value.name}`{text}")
    return lines + [""]


def functions_page(model):
    lines = ["# Functions", "", "Functions without an object; scripts find them by name in the reflection register.",
             ""]
    for function in free_functions(model):
        lines += [f"## {function.name}", "", f"`{signature(function)}`", ""] + comment_lines(function.comment)
    return "\n".join(lines).rstrip("\n") + "\n"


def enums_page(model):
    lines = ["# Enums", "", "Enums that belong to no class of objects. An argument takes an enumerator's record, its "
             "name as text, or its number.", ""]
    nested = [e for e in model.enums() if e.name and e.class_scope is not None and not is_in_reflected_class(e)
              and not e.imported]
    for enum in sorted(free_enums(model) + nested, key=script_name):
        lines += enum_section(enum, script_name(enum))
    return "\n".join(lines).rstrip("\n") + "\n"


def index_page(model):
    lines = ["# Script reference", "", "Every class, property, method and enum that scripts can reach by name, from "
             "the comments in the engine's headers. `AnyEntity` is an Entity or what derives from it; an enum's value "
             "is given as its name, and comes back as a number.", "", "- [Functions](functions.md)",
             "- [Enums](enums.md)", "", "## Classes", ""]
    children = {}
    for record in model.classes():
        if record.is_reflected and not record.imported:
            base = next((b.qualified for b, _, _ in record.bases if b.is_reflected), None)
            children.setdefault(base, []).append(record)

    def branch(base, depth):
        for record in sorted(children.get(base, []), key=script_name):
            brief = f": {record.comment.brief}" if record.comment.brief else ""
            lines.append(f"{'  ' * depth}- {link(record)}{brief}")
            branch(record.qualified, depth + 1)

    branch(None, 0)
    return "\n".join(lines) + "\n"
