#!/usr/bin/env python3
"""check_sounds.py [--table FILE] [NAME...]: measures the committed sounds and names what is wrong with which.

Prints one line a finding and ends with 1 if there is any. --table writes docs/sounds.md or another file: what each
sound is, how long, how loud, and what its maker thinks of it. Needs ffmpeg.
"""

import argparse
import pathlib
import re
import subprocess
import sys

import numpy

import ogg_file
import shapes
from make_sounds import OUTPUT
from recipes import chosen

# LU; the meter looks ten times a second, so the loudest moment of a short sound can fall between two looks.
LOUDNESS_TOLERANCE = 1.5
LEAST_S = 0.03


class Measured:
    """A file as it is heard: its samples, and what ffmpeg's R 128 meter says of it."""

    def __init__(self, path, recipe):
        self.x = ogg_file.read(path)
        self.seconds = len(self.x) / shapes.RATE
        log = subprocess.run(["ffmpeg", "-nostats", "-i", str(path), "-af", "apad=pad_dur=0.5,ebur128=peak=true",
                              "-f", "null", "-"], stderr=subprocess.PIPE, text=True, check=True).stderr
        self.peak = float(re.findall(r"Peak:\s+(-?[\d.inf]+)", log)[-1])
        momentary = max(float(value) for value in re.findall(r"M:\s*(-?[\d.]+)", log))
        whole = float(re.findall(r"I:\s+(-?[\d.]+) LUFS", log)[-1])
        self.loudness = whole if recipe.long else momentary
        self.rate = int(re.search(r"(\d+) Hz", log).group(1))

    def longest_pause(self):
        """Seconds of the longest stretch, its ends left out, that stays 60 dB below the loudest 10 ms."""
        n = len(self.x) // 441 * 441
        power = numpy.square(self.x[:n].reshape(n // 441, -1)).mean(axis=1)
        loud = numpy.flatnonzero(power > power.max() * 1e-6)
        return float(numpy.diff(loud).max() - 1) * 0.01 if len(loud) > 1 else 0.0

    def silent_ends(self):
        """Seconds before the first and behind the last 10 ms that can be heard."""
        loud = numpy.flatnonzero(numpy.abs(self.x.reshape(len(self.x), -1)).max(axis=1) > 3e-4)
        return (loud[0] / shapes.RATE, self.seconds - loud[-1] / shapes.RATE) if len(loud) else (self.seconds, 0.0)

    def loop_step(self):
        """The jump from the last sample to the first, over the largest jump in the 50 ms on either side."""
        near = numpy.abs(numpy.diff(numpy.concatenate([self.x[-2205:], self.x[:2205]]), axis=0))
        own = numpy.delete(near, 2204, axis=0).max()
        return float(near[2204].max() / max(own, 1e-9))


def findings(recipe, sound):
    if sound.rate != shapes.RATE:
        yield f"runs at {sound.rate} Hz; make it again"
    if (sound.x.ndim == 2) != recipe.stereo:
        yield "has another number of channels than its recipe says; make it again"
    if sound.seconds < LEAST_S:
        yield f"is only {sound.seconds:.3f} s long"
    if abs(sound.loudness - recipe.loudness) > LOUDNESS_TOLERANCE:
        yield (f"has {sound.loudness:.1f} LUFS, {recipe.loudness} is meant; too sharp to be that loud: "
               "soften its attack, give it a longer body, or lower the target")
    if sound.peak > -1.0:
        yield f"peaks at {sound.peak:.1f} dB, -1 is the most; lower the target or choose a higher quality"
    offset = numpy.abs(sound.x.sum(axis=0)).max() / max(len(sound.x), shapes.RATE)
    if offset > 0.001:
        yield f"has a DC of {offset:.4f}; the recipe needs a high-pass"
    if sound.longest_pause() > recipe.silence:
        yield f"is silent for {sound.longest_pause():.2f} s inside; {recipe.silence} is allowed: fill it or cut it"
    before, after = sound.silent_ends()
    if not recipe.loop and (before > 0.05 or after > 0.25):
        yield f"begins after {before:.2f} s of silence and ends with {after:.2f}; cut the ends"
    if recipe.loop and sound.loop_step() > 1.0:
        yield f"steps by {sound.loop_step():.1f} times its own largest jump where it wraps; end it with loops.seamless"


def cell(low, high, digits):
    one, other = f"{low:.{digits}f}", f"{high:.{digits}f}"
    return one if one == other else f"{one} to {other}"


def row(recipe, sounds):
    kind = "loop" if recipe.loop else "long" if recipe.long else ""
    columns = [f"`{recipe.name}`", str(recipe.variants), kind]
    for values, digits in (([s.seconds for s in sounds], 2), ([s.loudness for s in sounds], 1),
                           ([s.peak for s in sounds], 1)):
        columns.append(cell(min(values), max(values), digits))
    return "| " + " | ".join([*columns, recipe.what, recipe.judgement]) + " |"


TABLE_HEAD = """# The sounds

Written by `tools/assets/sound/check_sounds.py --table docs/sounds.md`, which measures the files in
`assets/sound/fmod`; what is said of each stands beside its recipe. Nobody has listened to them through loudspeakers
yet: the judgements rest on spectrograms and measurements, held against what the thing does in the world.

Lengths are in seconds; loudness is in LUFS by R 128, of the loudest 400 ms of a sound that plays once and of the whole
of a loop or long sound; the true peak is in dB. Several files of one recipe are given as a span.
"""


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--table", type=pathlib.Path)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    wrong, kind, table = 0, None, [TABLE_HEAD]
    for recipe in sorted(chosen(options.names), key=lambda each: each.kind):
        sounds = []
        for file, _ in recipe.files():
            if not (OUTPUT / file).exists():
                print(f"{file}: is not there; make_sounds.py {recipe.kind}/{recipe.name} makes it")
                wrong += 1
                continue
            sounds.append(Measured(OUTPUT / file, recipe))
            for finding in findings(recipe, sounds[-1]):
                print(f"{file}: {finding}")
                wrong += 1
        if recipe.kind != kind:
            kind = recipe.kind
            table += [f"## {kind}\n", "| sound | files | | length | loudness | peak | what it is | judgement |",
                      "|---|---|---|---|---|---|---|---|"]
        if sounds:
            table.append(row(recipe, sounds))
    if options.table:
        options.table.write_text("\n".join(table).replace("|\n## ", "|\n\n## ") + "\n")
    print(f"{wrong} findings")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
