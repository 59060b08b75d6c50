"""Picture: the colour, normal and mask images that a texture recipe returns."""

import math

from field import Field


class Picture:
    """Three or four fields of 0..1: red, green, blue and optionally alpha."""

    def __init__(self, channels):
        self.channels = channels

    @property
    def n(self):
        return self.channels[0].n

    @staticmethod
    def flat(n, colour):
        return Picture([Field.constant(n, c) for c in colour])

    @staticmethod
    def grey(field):
        field = field.clamp()
        return Picture([field, field, field])

    @staticmethod
    def ramp(field, stops):
        """Colours along `field`: `stops` is a list of (position, (r, g, b)), linear between."""
        channels = []
        for channel in range(3):
            table = []
            for i in range(257):
                table.append(_ramp_value(i / 256, stops, channel))
            channels.append(
                Field(field.n, [table[0 if a <= 0.0 else 256 if a >= 1.0 else int(a * 256)] for a in field.v])
            )
        return Picture(channels)

    def blend(self, colour, mask):
        """`colour` (a tuple or another picture) laid over this where `mask` is 1."""
        layers = colour.channels if isinstance(colour, Picture) else colour
        return Picture([own.mix(layer, mask) for own, layer in zip(self.channels, layers)])

    def shade(self, factor):
        """Every channel multiplied by a field or a number."""
        return Picture([channel * factor for channel in self.channels])

    def halved(self):
        return Picture([channel.halved() for channel in self.channels])

    def resized(self, n):
        return Picture([channel.resized(n) for channel in self.channels])

    def rows_of_bytes(self):
        """Per channel a list of 0..255 integers."""
        return [
            [0 if a <= 0.0 else 255 if a >= 1.0 else int(a * 255.0 + 0.5) for a in channel.v]
            for channel in self.channels
        ]


def _ramp_value(x, stops, channel):
    for (x0, c0), (x1, c1) in zip(stops, stops[1:]):
        if x <= x1:
            t = 0.0 if x <= x0 or x1 == x0 else (x - x0) / (x1 - x0)
            return c0[channel] + (c1[channel] - c0[channel]) * t
    return stops[-1][1][channel]


def normals_from_height(height, strength):
    """Tangent-space normal map of a height field: red along +u, green along +v (down), blue outwards.

    `strength` is the rise in texels of a height of 1.
    """
    n, v = height.n, height.v
    half = strength * 0.5
    reds, greens, blues = [], [], []
    for y in range(n):
        row = v[y * n : y * n + n]
        above = v[((y - 1) % n) * n : ((y - 1) % n) * n + n]
        below = v[((y + 1) % n) * n : ((y + 1) % n) * n + n]
        left = row[-1:] + row[:-1]
        right = row[1:] + row[:1]
        for a, b, c, d in zip(left, right, above, below):
            x, y_slope = (a - b) * half, (c - d) * half
            scale = 0.5 / math.sqrt(x * x + y_slope * y_slope + 1.0)
            reds.append(x * scale + 0.5)
            greens.append(y_slope * scale + 0.5)
            blues.append(scale + 0.5)
    return Picture([Field(n, reds), Field(n, greens), Field(n, blues)])


def cavity(height, radius, amount):
    """Soft self-shadowing of a height field: below 1 in hollows, slightly above it on ridges."""
    return ((height - height.blurred(radius)) * amount + 1.0).clamp(0.25, 1.2)
