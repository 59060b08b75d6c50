#!/usr/bin/env python3
"""Tells in what two saves differ, by path: a line for each value that one has and the other has not, or another one.

    tools/saves/diff.py game1.7.save game1.8.save

A save of an older version is brought to the present one first. Exit code 0 for no difference, 1 for some, 2 for what is
no save.
"""
import pathlib
import runpy
import sys

from rooms import SCRIPTS, Document


def leaves(value, path=""):
    """Path and value of all that a value is made of."""
    inner = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    found = [leaf for name, each in inner for leaf in leaves(each, f"{path}/{name}" if path else str(name))]
    return found or [(path, value)]


def differences(old, new):
    """Lines that tell what `new` has otherwise than `old`, in the order of their paths."""
    before, after = dict(leaves(old)), dict(leaves(new))
    lines = []
    for path in sorted({*before, *after}):
        if path not in after:
            lines.append(f"- {path} = {before[path]!r}")
        elif path not in before:
            lines.append(f"+ {path} = {after[path]!r}")
        elif before[path] != after[path]:
            lines.append(f"  {path}: {before[path]!r} -> {after[path]!r}")
    return lines


def read(file):
    try:
        return Document.read(pathlib.Path(file).read_bytes())
    except OSError as error:
        print(f"{file}: {error.strerror}", file=sys.stderr)
        sys.exit(2)
    except Document.Fault as fault:
        texts = runpy.run_path(str(SCRIPTS / "words" / "english.py"))["TEXTS"]
        print(f"{file}: {texts[fault.key].format(**fault.values)}", file=sys.stderr)
        sys.exit(2)


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    lines = differences(*(read(file) for file in sys.argv[1:]))
    print("\n".join(lines) if lines else "no difference")
    sys.exit(bool(lines))


if __name__ == "__main__":
    main()
