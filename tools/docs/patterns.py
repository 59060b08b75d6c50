"""The catalogue: what can be placed in a level, with its parameters, out of the modules of scripts/objects."""

import ast

INDEX = """# Patterns

What can be placed in a level: `place.{example}(map, 'name', at=(1, 0, 2), turn=90)` after
`import objects.GameObjects as place`. The first two arguments, the parent and the name, are the same for all.

| pattern | |
|---|---|
"""


class Pattern:
    """One pattern: its name, its comment, and its parameters with their types and defaults."""

    def __init__(self, name, comment, parameters=()):
        self.name, self.comment, self.parameters = name, comment, parameters

    @property
    def summary(self):
        line = " ".join(self.comment.split("\n\n")[0].split())
        end = line.find(". ")
        return line if end < 0 else line[:end + 1]


def patterns_of(path):
    """The patterns of a module in the order of its lines; those without a comment are left out."""
    tree = ast.parse(path.read_text(encoding="utf-8"))
    for statement, after in zip(tree.body, [*tree.body[1:], None]):
        if isinstance(statement, ast.FunctionDef) and any(is_pattern(mark) for mark in statement.decorator_list):
            yield Pattern(statement.name, ast.get_docstring(statement) or "", tuple(parameters_of(statement)))
        elif is_made(statement) and is_text(after):
            yield Pattern(statement.targets[0].id, after.value.value,
                          (("at", "Triple", "(0, 0, 0)"), ("turn", "float", "0.0"), ("scale", "Triple", "(1, 1, 1)")))


def is_pattern(mark):
    return isinstance(mark, ast.Attribute) and mark.attr == "pattern"


def is_made(statement):
    """Whether a statement gives a name to what a maker of patterns has made, as in `Desk = thing(desk='wood')`."""
    return (isinstance(statement, ast.Assign) and isinstance(statement.value, ast.Call)
            and isinstance(statement.targets[0], ast.Name) and statement.targets[0].id[0].isupper())


def is_text(statement):
    return isinstance(statement, ast.Expr) and isinstance(getattr(statement.value, "value", None), str)


def parameters_of(function):
    """Name, type and default of each parameter but parent and name."""
    arguments = function.args
    named = arguments.args
    defaults = [None] * (len(named) - len(arguments.defaults)) + arguments.defaults
    for argument, default in [*zip(named, defaults), *zip(arguments.kwonlyargs, arguments.kw_defaults)][2:]:
        kind = ast.unparse(argument.annotation) if argument.annotation else ""
        yield argument.arg, kind, ast.unparse(default) if default else ""
    if arguments.kwarg:
        yield "**" + arguments.kwarg.arg, "", ""


def write(root, output, pictures):
    """Writes a page a module, and an index; returns the names of the pages."""
    rows, pages = [], []
    for path in sorted((root / "scripts" / "objects").rglob("*.py")):
        found = [pattern for pattern in patterns_of(path) if pattern.comment and not pattern.name.startswith("_")]
        if not found:
            continue
        pages.append(path.stem)
        (output / f"{path.stem}.md").write_text(module_page(path, found, pictures), encoding="utf-8")
        rows += [f"| [{each.name}]({path.stem}.md#{each.name.lower()}) | {cell(each.summary)} |" for each in found]
    (output / "index.md").write_text(INDEX.format(example="Armchair") + "\n".join(sorted(rows)) + "\n"
                                     + toctree(pages + ["messages", "commands", "effects"]), encoding="utf-8")
    return pages


def module_page(path, found, pictures):
    comment = ast.get_docstring(ast.parse(path.read_text(encoding="utf-8"))) or ""
    lines = [f"# {path.stem}", "", prose(comment), ""]
    for pattern in found:
        lines += [f"## {pattern.name}", ""]
        if (pictures / f"{pattern.name}.png").is_file():
            lines += [f"![{pattern.name}]({pictures.name}/{pattern.name}.png)", ""]
        lines += [prose(pattern.comment), ""]
        if pattern.parameters:
            lines += ["| parameter | type | default |", "|---|---|---|"]
            lines += [f"| `{name}` | {code(kind)} | {code(default)} |" for name, kind, default in pattern.parameters]
            lines += [""]
    return "\n".join(lines)


def prose(comment):
    """A comment as Markdown, which reads its indented examples as code and everything else as it stands."""
    return "\n".join(line if line.startswith("    ") else line.replace("<", "&lt;").replace("*", "\\*")
                     for line in comment.split("\n"))


def code(text):
    return f"`{cell(text)}`" if text else ""


def cell(text):
    return text.replace("|", "\\|").replace("\n", " ")


def toctree(pages):
    return "\n```{toctree}\n:hidden:\n\n" + "\n".join(pages) + "\n```\n"
