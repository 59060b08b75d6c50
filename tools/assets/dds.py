"""DDS files: with full mip chains uncompressed (A8R8G8B8), DXT1 or DXT5, and one level of floats (R32F).

What this module wrote is read back for previews, but for floats.
"""

import array
import struct
import sys

_FLAGS = 0x1 | 0x2 | 0x4 | 0x1000 | 0x20000
_CAPS = 0x8 | 0x1000 | 0x400000


def write(path, picture, kind):
    """Writes `picture`; `kind` is "DXT1", "DXT5", "A8R8G8B8", or "R32F" for heights: red alone, without mip levels."""
    size = picture.n
    encode = {"DXT1": encode_dxt1, "DXT5": encode_dxt5, "A8R8G8B8": encode_plain, "R32F": encode_floats}[kind]
    levels = []
    level = picture
    while True:
        levels.append(encode(level))
        if level.n == 1 or kind == "R32F":
            break
        level = level.halved()
    with open(path, "wb") as out:
        out.write(_header(size, len(levels), kind, len(levels[0])))
        for data in levels:
            out.write(data)


def _header(size, level_count, kind, first_level_bytes):
    if kind == "A8R8G8B8":
        size_flag, size_value = 0x8, size * 4
        pixel_format = struct.pack("<8I", 32, 0x41, 0, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    elif kind == "R32F":
        size_flag, size_value = 0x8, size * 4
        pixel_format = struct.pack("<8I", 32, 0x4, 114, 0, 0, 0, 0, 0)
    else:
        size_flag, size_value = 0x80000, first_level_bytes
        pixel_format = struct.pack("<2I4s5I", 32, 0x4, kind.encode("ascii"), 0, 0, 0, 0, 0)
    return (
        b"DDS "
        + struct.pack("<7I", 124, _FLAGS | size_flag, size, size, size_value, 0, level_count)
        + bytes(44)
        + pixel_format
        + struct.pack("<5I", _CAPS, 0, 0, 0, 0)
    )


def encode_plain(picture):
    channels = picture.rows_of_bytes()
    alpha = channels[3] if len(channels) == 4 else [255] * (picture.n * picture.n)
    out = bytearray(4 * picture.n * picture.n)
    out[0::4], out[1::4], out[2::4], out[3::4] = (
        bytes(channels[2]),
        bytes(channels[1]),
        bytes(channels[0]),
        bytes(alpha),
    )
    return bytes(out)


def encode_floats(picture):
    values = array.array("f", picture.channels[0].v)
    if sys.byteorder == "big":
        values.byteswap()
    return values.tobytes()


def _blocks(n):
    """Texel indices of each 4x4 block, row by row; levels smaller than a block repeat their texels."""
    last = n - 1
    for by in range(0, n, 4):
        for bx in range(0, n, 4):
            yield [min(by + y, last) * n + min(bx + x, last) for y in range(4) for x in range(4)]


def encode_dxt1(picture):
    reds, greens, blues = picture.rows_of_bytes()[:3]
    return b"".join(
        _colour_block([reds[i] for i in block], [greens[i] for i in block], [blues[i] for i in block])
        for block in _blocks(picture.n)
    )


def encode_dxt5(picture):
    reds, greens, blues, alphas = picture.rows_of_bytes()
    out = []
    for block in _blocks(picture.n):
        out.append(_alpha_block([alphas[i] for i in block]))
        out.append(_colour_block([reds[i] for i in block], [greens[i] for i in block], [blues[i] for i in block]))
    return b"".join(out)


def _to_565(r, g, b):
    return (int(r * 31 / 255 + 0.5) << 11) | (int(g * 63 / 255 + 0.5) << 5) | int(b * 31 / 255 + 0.5)


def _from_565(c):
    r, g, b = c >> 11, (c >> 5) & 63, c & 31
    return (r << 3) | (r >> 2), (g << 2) | (g >> 4), (b << 3) | (b >> 2)


_INDEX_ALONG_LINE = (1, 3, 2, 0)


def _colour_block(reds, greens, blues):
    """Range fit along the widest channel, with the signs of the other two taken from their correlation with it."""
    channels = [reds, greens, blues]
    lows, highs = [min(c) for c in channels], [max(c) for c in channels]
    spans = [h - l for h, l in zip(highs, lows)]
    widest = spans.index(max(spans))
    if spans[widest] < 3:
        colour = _to_565(sum(reds) / 16, sum(greens) / 16, sum(blues) / 16)
        return struct.pack("<HHI", colour, colour, 0)
    main = channels[widest]
    mean = sum(main) / 16
    start, end = [0, 0, 0], [0, 0, 0]
    for index in range(3):
        channel = channels[index]
        covariance = sum((m - mean) * c for m, c in zip(main, channel))
        inset = spans[index] / 16
        low, high = lows[index] + inset, highs[index] - inset
        start[index], end[index] = (low, high) if covariance >= 0 else (high, low)
    first, second = _to_565(*end), _to_565(*start)
    if first < second:
        first, second = second, first
    if first == second:
        return struct.pack("<HHI", first, second, 0)
    (r1, g1, b1), (r0, g0, b0) = _from_565(first), _from_565(second)
    dr, dg, db = r1 - r0, g1 - g0, b1 - b0
    scale = 3.0 / (dr * dr + dg * dg + db * db)
    bits = 0
    for i in range(16):
        along = ((reds[i] - r0) * dr + (greens[i] - g0) * dg + (blues[i] - b0) * db) * scale
        step = 0 if along < 0.5 else 3 if along >= 2.5 else 1 if along < 1.5 else 2
        bits |= _INDEX_ALONG_LINE[step] << (2 * i)
    return struct.pack("<HHI", first, second, bits)


def _alpha_block(alphas):
    high, low = max(alphas), min(alphas)
    bits = 0
    if high > low:
        scale = 7.0 / (high - low)
        for i, alpha in enumerate(alphas):
            step = 7 - int((alpha - low) * scale + 0.5)
            bits |= (0 if step == 0 else 1 if step == 7 else step + 1) << (3 * i)
    return struct.pack("<BB", high, low) + bits.to_bytes(6, "little")


def read_first_level(path):
    """Size and the rows of (r, g, b) of the largest mip level of a file this module wrote."""
    with open(path, "rb") as source:
        data = source.read()
    height, width = struct.unpack_from("<2I", data, 12)
    four = data[84:88]
    body = data[128:]
    if four == b"\0\0\0\0":
        texels = [tuple(body[i + 2 - k] for k in range(3)) for i in range(0, width * height * 4, 4)]
        return width, height, texels
    stride, skip = (8, 0) if four == b"DXT1" else (16, 8)
    texels = [None] * (width * height)
    position = 0
    for block in _blocks(width):
        first, second, bits = struct.unpack_from("<HHI", body, position + skip)
        a, b = _from_565(first), _from_565(second)
        palette = (a, b, tuple((2 * p + q) // 3 for p, q in zip(a, b)), tuple((p + 2 * q) // 3 for p, q in zip(a, b)))
        for i, index in enumerate(block):
            texels[index] = palette[(bits >> (2 * i)) & 3]
        position += stride
    return width, height, texels
