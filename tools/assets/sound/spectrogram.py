#!/usr/bin/env python3
"""spectrogram.py FILE... -o SHEET.png [--columns N]: waveforms over spectrograms of Ogg files on one sheet.

Frequencies run from 40 Hz to 20 kHz, evenly by octaves, with lines at 100, 1000 and 10000 Hz; colours span 80 dB. Each
panel is as wide as its file is long, up to the width of a column, which is as many seconds as the longest file.
"""

import argparse
import pathlib
import struct
import sys
import zlib

import numpy
from scipy import signal

import ogg_file
import shapes

WAVE, BANDS, GAP = 40, 128, 6
LOW_HZ, HIGH_HZ, SPAN_DB = 40.0, 20000.0, 80.0
GLYPHS = {  # 3 x 5 dots, rows from the top, three bits each
    "a": "25755", "b": "65656", "c": "34443", "d": "65556", "e": "74647", "f": "74644", "g": "34553", "h": "55755",
    "i": "72227", "j": "11152", "k": "55655", "l": "44447", "m": "57755", "n": "65555", "o": "25552", "p": "65644",
    "q": "25573", "r": "65655", "s": "34216", "t": "72222", "u": "55557", "v": "55552", "w": "55775", "x": "55255",
    "y": "55222", "z": "71247", "0": "75557", "1": "26227", "2": "71747", "3": "71717", "4": "55711", "5": "74717",
    "6": "74757", "7": "71122", "8": "75757", "9": "75717", "_": "00007", "-": "00700", ".": "00002", "/": "11244",
}


def panel(x, width):
    """A picture (rows, columns, 3) of one sound, `width` columns wide."""
    mono = x if x.ndim == 1 else x.mean(axis=1)
    edges = numpy.linspace(0, len(mono), width + 1).astype(int)
    picture = numpy.zeros((WAVE + BANDS, width, 3))
    for column, (start, end) in enumerate(zip(edges, edges[1:])):
        piece = mono[start:max(end, start + 1)]
        top, bottom = (int((0.5 - 0.5 * value) * (WAVE - 1)) for value in (piece.max(), piece.min()))
        picture[max(top, 0):bottom + 1, column] = (0.75, 0.85, 0.75)
    picture[WAVE:] = coloured(spectrum(mono, width))
    for hz in (100.0, 1000.0, 10000.0):
        line = WAVE + BANDS - 1 - int(BANDS * numpy.log(hz / LOW_HZ) / numpy.log(HIGH_HZ / LOW_HZ))
        picture[line, ::4] = (0.5, 0.5, 0.5)
    return picture


def spectrum(mono, width):
    """Levels 0..1, rows from high to low frequencies."""
    window = 2048 if len(mono) > 8192 else 1024
    padded = numpy.concatenate([numpy.zeros(window // 2), mono, numpy.zeros(window // 2)])
    hop = max(1, len(mono) // width)
    hz, _, power = signal.spectrogram(padded, shapes.RATE, "hann", window, window - min(hop, window // 2),
                                      scaling="spectrum")
    centres = numpy.geomspace(HIGH_HZ, LOW_HZ, BANDS)
    half = (HIGH_HZ / LOW_HZ) ** (0.5 / BANDS)
    first = numpy.maximum(numpy.searchsorted(hz, centres / half), 1)
    last = numpy.maximum(numpy.searchsorted(hz, centres * half), first + 1)
    rows = numpy.array([power[low:high].max(axis=0) for low, high in zip(first, last)])
    columns = numpy.linspace(0, rows.shape[1] - 1, width).astype(int)
    level = 10.0 * numpy.log10(rows[:, columns] + 1e-14)
    return numpy.clip((level - level.max() + SPAN_DB) / SPAN_DB, 0.0, 1.0)


def coloured(level):
    stops = numpy.array([(0, 0, 0.05), (0.15, 0.05, 0.35), (0.55, 0.1, 0.45), (0.9, 0.4, 0.2), (1, 0.85, 0.4),
                         (1, 1, 1)])
    at = numpy.linspace(0.0, 1.0, len(stops))
    return numpy.stack([numpy.interp(level, at, stops[:, channel]) for channel in range(3)], axis=2)


def label(picture, text, row, column):
    for letter in text.lower():
        for y, bits in enumerate(GLYPHS.get(letter, "00000")):
            for x in range(3):
                if int(bits) >> (2 - x) & 1 and column + x < picture.shape[1]:
                    picture[row + y, column + x] = (1.0, 1.0, 0.6)
        column += 4


def sheet(named, columns, width):
    """All panels, `columns` beside one another; the longest sound fills its column."""
    longest = max(len(x) for _, x in named)
    high, wide = WAVE + BANDS + 7 + GAP, width + GAP
    rows = -(-len(named) // columns)
    picture = numpy.full((rows * high, columns * wide, 3), 0.12)
    for index, (name, x) in enumerate(named):
        top, left = index // columns * high, index % columns * wide
        made = panel(x, max(24, int(width * len(x) / longest)))
        picture[top + 7:top + 7 + WAVE + BANDS, left:left + made.shape[1]] = made
        label(picture, f"{name} {len(x) / shapes.RATE:.2f}", top + 1, left)
    return picture


def write_png(path, picture):
    height, width, _ = picture.shape
    rows = numpy.zeros((height, width * 3 + 1), numpy.uint8)
    rows[:, 1:] = (numpy.clip(picture, 0.0, 1.0) * 255).astype(numpy.uint8).reshape(height, -1)

    def chunk(tag, data):
        return struct.pack(">I", len(data)) + tag + data + struct.pack(">I", zlib.crc32(tag + data))

    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                     + chunk(b"IDAT", zlib.compress(rows.tobytes(), 6)) + chunk(b"IEND", b""))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("files", type=pathlib.Path, nargs="+")
    parser.add_argument("-o", "--output", type=pathlib.Path, required=True)
    parser.add_argument("--columns", type=int, default=4)
    parser.add_argument("--width", type=int, default=360)
    options = parser.parse_args()
    named = [(f"{path.parent.name}/{path.stem}", ogg_file.read(path)) for path in options.files]
    write_png(options.output, sheet(named, options.columns, options.width))


if __name__ == "__main__":
    sys.exit(main())
