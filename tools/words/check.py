#!/usr/bin/env python3
"""What the tables of texts in scripts/words lack and have too much of, and which texts are too long for their place.

    tools/words/check.py [--whole german hindi]

Ends with 1 where a key that scripts ask for has no text, where placeholders differ, where a text is too long, or where
a language that is to be whole (English and those of --whole) lacks one. Keys that no script asks for are only listed.
"""
import argparse
import ast
import importlib.util
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEY = re.compile(r"[a-z]\w*(\.[\w ]+)+")
#: Functions and arguments that take a key.
TAKERS, ARGUMENTS = ("text", "said", "count", "has"), ("words", "help")
#: What keys begin with -> letters that their texts may have.
LONGEST = {"menu.": 28, "caption.": 64, "teach.": 80, "nightfall.note.": 620, "nightfall.chart.": 12, "key.": 40}


def tables(root):
    spec = importlib.util.spec_from_file_location("tables", root / "scripts" / "words" / "Tables.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def asked(root):
    """The keys that scripts ask for with their places, and patterns of those that they put together."""
    keys, patterns = {}, []
    for path in sorted((root / "scripts").rglob("*.py")):
        if path.parent.name == "words" and path.name != "__init__.py":
            continue
        place = path.relative_to(root)
        tree = ast.parse(path.read_text(encoding="utf-8"))
        for node in ast.walk(tree):
            if isinstance(node, ast.Constant) and isinstance(node.value, str):
                literal = node.value
                if KEY.fullmatch(literal) or literal == "counter":
                    keys.setdefault(literal, (f"{place}:{node.lineno}", False))
                elif re.fullmatch(r"[a-z]\w*\.([\w.]|%s|%d)*", literal) and (literal.endswith(".") or "%" in literal):
                    made = re.escape(literal).replace("%s", ".*").replace("%d", r"\d+")
                    patterns.append(re.compile(made + (".*" if literal.endswith(".") else "")))
        for node in ast.walk(tree):
            for literal in certain(node):
                keys[literal] = (f"{place}:{node.lineno}", True)
    return keys, patterns


def certain(node):
    """The literals of a call that can be nothing but keys."""
    if not isinstance(node, ast.Call):
        return
    name = node.func.attr if isinstance(node.func, ast.Attribute) else ""
    owner = node.func.value.id if name and isinstance(node.func.value, ast.Name) else ""
    given = [node.args[0]] if owner in ("words", "tables") and name in TAKERS and node.args else []
    if owner in ("kit", "Screens"):
        given += [each.value for each in node.keywords if each.arg in ARGUMENTS]
    for value in given:
        if isinstance(value, ast.Constant) and isinstance(value.value, str) and value.value:
            yield value.value


def findings(root, whole):
    """What is wrong, and what is only worth a look: two lists of lines."""
    read = tables(root)
    first = read.read(read.FIRST)
    keys, patterns = asked(root)
    wrong = list(first.faults)
    for key, (place, is_certain) in sorted(keys.items()):
        if is_certain and key not in first.texts and f"{key}.other" not in first.texts:
            wrong.append(f"{place}: {key!r} has no text in scripts/words/{read.FIRST}.py")
    for name in read.names():
        table = first if name == read.FIRST else read.compared(read.read(name), first)
        lacks = [fault for fault in table.faults if " lacks " in fault]
        wrong += [fault for fault in table.faults if name in whole or fault not in lacks] if table is not first else []
        for key, text in table.texts.items():
            most = next((most for start, most in LONGEST.items() if key.startswith(start)), None)
            if most and len(text) > most:
                wrong.append(f"scripts/words/{name}.py:{table.lines[key]}: {key!r} has {len(text)} letters, "
                             f"where {most} have room")
    known = set(first.texts)
    unused = [f"{key!r} is asked for by no script" for key in sorted(known)
              if key not in keys and key.rpartition(".")[0] not in keys and not key.startswith("language.")
              and not any(pattern.fullmatch(key) for pattern in patterns)]
    return wrong, unused


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--whole", nargs="*", default=["german", "hindi"])
    parser.add_argument("--root", type=pathlib.Path, default=ROOT)
    options = parser.parse_args()
    wrong, unused = findings(options.root, options.whole)
    for line in wrong + unused:
        print(line)
    print(f"{len(wrong)} wrong, {len(unused)} not asked for")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
