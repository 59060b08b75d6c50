"""Pages that list what the sources declare: messages, commands of the console, parameters of effects."""

import ast
import re

from patterns import cell

COMMANDS = """# Commands of the console

The key left of 1 opens the console. A command is a word and what it works on; Tab completes both, Up brings earlier
lines back, `help` lists what there is.

| command | | |
|---|---|---|
"""
MESSAGES = """# Messages

`kaVel.subscribe('KeyDownMessage', handler)` has `handler(message, ...)` called with the payload;
`kaVel.send(name, ...)` sends one.

| message | payload, and when it is sent |
|---|---|
"""
EFFECTS = """# Parameters of effects

What a drawn component or a pass gives to the effects of `assets/shaders`. Types are those of the effect's language;
what an effect is given by itself stands in `automatic.fxh`.
"""
MESSAGE = re.compile(r"((?:///[^\n]*\n)*)extern const ReflectorPtr\s+(\w+);[ ]*(?:///<([^\n]*))?")
PARAMETER = re.compile(r"^(float\dx\d|float\d?|int|bool|texture)\s+(\w+)\s*(?:=\s*([^;]*))?;[ \t]*(?://[ ]?(.*))?$",
                       re.MULTILINE)


def write(root, output):
    (output / "messages.md").write_text(MESSAGES + "".join(messages(root)), encoding="utf-8")
    (output / "commands.md").write_text(COMMANDS + "".join(commands(root)), encoding="utf-8")
    (output / "effects.md").write_text(EFFECTS + "".join(effects(root)), encoding="utf-8")


def messages(root):
    for path in sorted((root / "src").rglob("*Messages.h")):
        for above, name, behind in MESSAGE.findall(path.read_text(encoding="utf-8")):
            told = behind or " ".join(line.lstrip("/ ") for line in above.splitlines())
            yield f"| `{name}` | {cell(told.strip())} |\n"


def commands(root):
    rows = [("spawn", "'level' 'name'", "Adds object into the world.")]
    for path in sorted((root / "scripts" / "console").glob("*.py")):
        for function in ast.walk(ast.parse(path.read_text(encoding="utf-8"))):
            for mark in getattr(function, "decorator_list", ()):
                if isinstance(mark, ast.Call) and getattr(mark.func, "id", "") == "command":
                    word, *rest = [argument.value for argument in mark.args]
                    told = (ast.get_docstring(function) or "").replace("\n", " ")
                    rows.append((word, rest[0] if rest else "", told))
    for word, takes, told in sorted(rows):
        yield f"| `{word}` | {f'`{takes}`' if takes else ''} | {cell(told)} |\n"


def effects(root):
    for path in sorted((root / "assets" / "shaders").glob("*.fx*")):
        text = path.read_text(encoding="utf-8")
        found = PARAMETER.findall(text)
        if not found:
            continue
        head = [line[2:].strip() for line in text.split("\n\n")[0].splitlines() if line.startswith("//")]
        yield f"\n## {path.name}\n\n{' '.join(head)}\n\n| parameter | type | at first | |\n|---|---|---|---|\n"
        for kind, name, value, told in found:
            yield f"| `{name}` | {kind} | {f'`{cell(value)}`' if value else ''} | {cell(told)} |\n"
