"""Reads and writes PNG files of eight bits a channel, with the standard library alone."""
import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


class Picture:
    """Rows of bytes, top first; `step` bytes a pixel: red, green, blue and perhaps opacity."""

    def __init__(self, width, height, step, rows):
        self.width = width
        self.height = height
        self.step = step
        self.rows = rows


def read(path):
    """The picture in a file without interlacing."""
    data = path.read_bytes()
    assert data[:8] == SIGNATURE, f"{path} is no PNG"
    position, chunks = 8, {}
    while position < len(data):
        size, kind = struct.unpack(">I4s", data[position:position + 8])
        chunks[kind] = chunks.get(kind, b"") + data[position + 8:position + 8 + size]
        position += size + 12
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    assert depth == 8 and colour in (2, 6) and not interlaced, f"{path}: only plain RGB and RGBA of eight bits"
    step = 3 if colour == 2 else 4
    raw, rows, previous = zlib.decompress(chunks[b"IDAT"]), [], bytes(width * step)
    for y in range(height):
        start = y * (width * step + 1)
        rows.append(_unfilter(raw[start], bytearray(raw[start + 1:start + 1 + width * step]), previous, step))
        previous = rows[-1]
    return Picture(width, height, step, rows)


def write(path, picture):
    """Writes a picture, unfiltered."""
    header = struct.pack(">IIBBBBB", picture.width, picture.height, 8, 2 if picture.step == 3 else 6, 0, 0, 0)
    raw = b"".join(b"\0" + bytes(row) for row in picture.rows)
    path.write_bytes(SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(raw)) + _chunk(b"IEND", b""))


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def _unfilter(kind, row, previous, step):
    for x in range(len(row) if kind else 0):
        left = row[x - step] if x >= step else 0
        up = previous[x]
        corner = previous[x - step] if x >= step else 0
        if kind == 1:
            row[x] = (row[x] + left) & 255
        elif kind == 2:
            row[x] = (row[x] + up) & 255
        elif kind == 3:
            row[x] = (row[x] + (left + up) // 2) & 255
        elif kind == 4:
            guess = left + up - corner
            row[x] = (row[x] + min((left, up, corner), key=lambda value: abs(guess - value))) & 255
    return bytes(row)
