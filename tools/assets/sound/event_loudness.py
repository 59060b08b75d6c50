#!/usr/bin/env python3
"""event_loudness.py: writes into kaVel.fev how loud each event with a place in the world is, a metre away.

Creatures hear by it. It follows from the recipes' loudness, the volumes of the layers and those of the categories.
"""
import pathlib
import re

import committed

ROOT = pathlib.Path(__file__).resolve().parents[3]
LINE = re.compile(r"^    loudness .*\n", re.MULTILINE)


def main():
    project = ROOT / "assets" / "sound" / "fmod" / "kaVel.fev"
    loudness = committed.loudness_of_events(ROOT)
    pieces = re.split(r"(?m)^(?=event )", LINE.sub("", project.read_text(encoding="utf-8")))
    for number, piece in enumerate(pieces):
        name = piece.split(maxsplit=2)[1] if piece.startswith("event ") else ""
        if name in loudness:
            head, rest = piece.split("\n", 1)
            category, rest = rest.split("\n", 1)
            pieces[number] = f"{head}\n{category}\n    loudness {loudness[name][0]:.0f}\n{rest}"
    project.write_text("".join(pieces), encoding="utf-8")


if __name__ == "__main__":
    main()
