#!/usr/bin/env python3
"""make_sounds.py [NAME...]: makes the named sounds or kinds (all, without a name) into assets/sound/fmod."""

import concurrent.futures
import pathlib
import sys

import numpy

import loudness
import ogg_file
import shapes
from recipes import chosen

OUTPUT = pathlib.Path(__file__).resolve().parents[3] / "assets" / "sound" / "fmod"


def make(job):
    recipe, file, take = job
    x = recipe.make(take)
    if not numpy.all(numpy.isfinite(x)):
        raise ValueError(f"{file}: the recipe gives numbers that are not finite")
    if (x.ndim == 2) != recipe.stereo:
        raise ValueError(f"{file}: the recipe gives {x.shape} samples, its entry says stereo={recipe.stereo}")
    if recipe.loop:
        x = loudness.without_rumble(x)
    else:
        x = shapes.trimmed(loudness.without_rumble(shapes.cut(x, len(x) / shapes.RATE + 1.0)))
    ogg_file.write(OUTPUT / file, loudness.finished(x, recipe.loudness, recipe.long), recipe.quality)
    return file


def main():
    jobs = [(recipe, file, take) for recipe in chosen(sys.argv[1:]) for file, take in recipe.files()]
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        for file in pool.map(make, jobs):
            print(file)


if __name__ == "__main__":
    main()
