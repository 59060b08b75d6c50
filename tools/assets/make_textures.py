#!/usr/bin/env python3
"""make_textures.py [NAME...]: writes the named textures (all, without a name) into assets/textures."""

import multiprocessing
import pathlib
import sys
import time

import dds
from recipes import chosen
from textures import RECIPES, defaults

OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "assets" / "textures"


def make(recipe):
    """Writes every map of one recipe and returns a line that says so."""
    started = time.time()
    maps = recipe()
    for name, (picture, kind) in maps.items():
        stem = name if recipe is defaults.flat else recipe.__name__ + name
        dds.write(OUTPUT / (stem + ".dds"), picture, kind)
    return f"{recipe.__name__}: {', '.join(maps)} in {time.time() - started:.1f} s"


def main():
    wanted = chosen(RECIPES, sys.argv[1:])
    OUTPUT.mkdir(parents=True, exist_ok=True)
    with multiprocessing.Pool(2) as pool:
        for line in pool.imap_unordered(make, wanted):
            print(line, flush=True)


if __name__ == "__main__":
    main()
