#!/usr/bin/env python3
"""preview.py FILE.dds... -o SHEET.png: the named textures side by side, each repeated 2 x 2 to show that it tiles."""

import argparse
import struct
import zlib

import dds


def write_png(path, width, height, rows):
    """`rows` are bytes objects, three a pixel or, with alpha, four."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(path, "wb") as out:
        out.write(
            b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">2I5B", width, height, 8, 6 if len(rows[0]) == 4 * width else 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows), 6))
            + chunk(b"IEND", b"")
        )


def tile_rows(path, cell, repeat):
    """The texture as `cell` rows of RGB bytes, sampled down or up to fit."""
    width, height, texels = dds.read_first_level(path)
    rows = []
    for y in range(cell):
        source = (y * height * repeat // cell) % height * width
        row = bytearray()
        for x in range(cell):
            row += bytes(texels[source + (x * width * repeat // cell) % width])
        rows.append(bytes(row))
    return rows


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("files", nargs="+")
    parser.add_argument("-o", "--output", required=True)
    parser.add_argument("--cell", type=int, default=512, help="pixels per texture in the sheet")
    parser.add_argument("--repeat", type=int, default=2, help="how often each texture is repeated")
    parser.add_argument("--columns", type=int, default=4)
    options = parser.parse_args()

    sheet = []
    for start in range(0, len(options.files), options.columns):
        group = [
            tile_rows(name, options.cell, options.repeat) for name in options.files[start : start + options.columns]
        ]
        blank = (
            bytes(3 * options.cell * (options.columns - len(group))) if len(options.files) > options.columns else b""
        )
        sheet += [b"".join(rows[y] for rows in group) + blank for y in range(options.cell)]
    write_png(options.output, len(sheet[0]) // 3, len(sheet), sheet)


if __name__ == "__main__":
    main()
