"""Field: a square, tileable grid of floats, and the noises that fill one.

Everything wraps at the borders, so whatever is built from fields tiles. Plain lists and comprehensions
keep the whole texture set within two minutes without any library beyond Python's own.
"""

import math
import random


class Field:
    """`n` x `n` floats, row by row, rows downwards as in the texture image."""

    __slots__ = ("n", "v")

    def __init__(self, n, values):
        self.n = n
        self.v = values

    @staticmethod
    def constant(n, value):
        return Field(n, [value] * (n * n))

    def __add__(self, other):
        if isinstance(other, Field):
            return Field(self.n, [a + b for a, b in zip(self.v, other.v)])
        return Field(self.n, [a + other for a in self.v])

    def __sub__(self, other):
        if isinstance(other, Field):
            return Field(self.n, [a - b for a, b in zip(self.v, other.v)])
        return Field(self.n, [a - other for a in self.v])

    def __mul__(self, other):
        if isinstance(other, Field):
            return Field(self.n, [a * b for a, b in zip(self.v, other.v)])
        return Field(self.n, [a * other for a in self.v])

    def __rsub__(self, other):
        return Field(self.n, [other - a for a in self.v])

    __radd__ = __add__
    __rmul__ = __mul__

    def map(self, fn):
        return Field(self.n, [fn(a) for a in self.v])

    def abs(self):
        return Field(self.n, [a if a >= 0.0 else -a for a in self.v])

    def clamp(self, low=0.0, high=1.0):
        return Field(self.n, [low if a < low else high if a > high else a for a in self.v])

    def smoothstep(self, low, high):
        """0 below `low`, 1 above `high`, smooth between; `low` may be the larger one."""
        scale = 1.0 / (high - low)
        t = [(a - low) * scale for a in self.v]
        return Field(self.n, [0.0 if a <= 0.0 else 1.0 if a >= 1.0 else a * a * (3.0 - 2.0 * a) for a in t])

    def power(self, exponent):
        return Field(self.n, [a**exponent if a > 0.0 else 0.0 for a in self.v])

    def mix(self, other, t):
        """This field where `t` is 0, `other` (field or number) where it is 1."""
        if isinstance(other, Field):
            return Field(self.n, [a + (b - a) * c for a, b, c in zip(self.v, other.v, t.v)])
        return Field(self.n, [a + (other - a) * c for a, c in zip(self.v, t.v)])

    def transposed(self):
        n, v = self.n, self.v
        return Field(n, [value for x in range(n) for value in v[x::n]])

    def blurred(self, radius):
        """Mean over a square of `2 * radius + 1` texels, twice: close to a Gaussian."""
        return self._box(radius)._box(radius)

    def _box(self, radius):
        return self._box_rows(radius).transposed()._box_rows(radius).transposed()

    def _box_rows(self, radius):
        n = self.n
        scale = 1.0 / (2 * radius + 1)
        out = []
        for y in range(n):
            row = self.v[y * n : y * n + n]
            padded = row[-radius:] + row + row[: radius + 1]
            total = sum(padded[: 2 * radius + 1])
            for x in range(n):
                out.append(total * scale)
                total += padded[x + 2 * radius + 1] - padded[x]
        return Field(n, out)

    def warped(self, dx, dy, amount):
        """Each texel read from `amount` texels away along the offset fields, wrapping, nearest."""
        n, v = self.n, self.v
        mask = n - 1
        return Field(
            n,
            [
                v[((i // n + int(b * amount)) & mask) * n + ((i + int(a * amount)) & mask)]
                for i, (a, b) in enumerate(zip(dx.v, dy.v))
            ],
        )

    def halved(self):
        """Half the size, each texel the mean of four."""
        n, v = self.n, self.v
        out = []
        for y in range(0, n, 2):
            top, bottom = v[y * n : y * n + n], v[(y + 1) * n : (y + 1) * n + n]
            out += [(a + b + c + d) * 0.25 for a, b, c, d in zip(top[0::2], top[1::2], bottom[0::2], bottom[1::2])]
        return Field(n // 2, out)

    def resized(self, n):
        """Halved until it has `n` rows."""
        out = self
        while out.n > n:
            out = out.halved()
        return out


def from_function(n, fn):
    """Field of `fn(u, v)` at the texel centres, u and v in 0..1."""
    centres = [(i + 0.5) / n for i in range(n)]
    return Field(n, [fn(u, v) for v in centres for u in centres])


def _spline_weights(n, cells):
    """For each of `n` samples over `cells` lattice cells: lattice index and four cubic B-spline weights."""
    table = []
    for i in range(n):
        x = i * cells / n
        base = int(x)
        t = x - base
        table.append(
            (
                base,
                (1 - t) ** 3 / 6,
                (3 * t**3 - 6 * t * t + 4) / 6,
                (-3 * t**3 + 3 * t * t + 3 * t + 1) / 6,
                t**3 / 6,
            )
        )
    return table


def value_noise(n, cells_u, cells_v, seed):
    """Smooth noise of about 0..1 with the given number of bumps along u and v."""
    rng = random.Random(seed)
    lattice = [[rng.random() for _ in range(cells_u)] for _ in range(cells_v)]
    weights_u = _spline_weights(n, cells_u)
    rows = []
    for line in lattice:
        row = []
        for base, w0, w1, w2, w3 in weights_u:
            row.append(
                line[base - 1] * w0
                + line[base] * w1
                + line[(base + 1) % cells_u] * w2
                + line[(base + 2) % cells_u] * w3
            )
        rows.append(row)
    out = []
    for base, w0, w1, w2, w3 in _spline_weights(n, cells_v):
        out += [
            a * w0 + b * w1 + c * w2 + d * w3
            for a, b, c, d in zip(rows[base - 1], rows[base], rows[(base + 1) % cells_v], rows[(base + 2) % cells_v])
        ]
    # The spline averages the lattice, which narrows its range: widen it again around the middle.
    return Field(n, [(a - 0.5) * 1.8 + 0.5 for a in out])


def fbm(n, cells_u, cells_v, octaves, seed, gain=0.5):
    """Octaves of `value_noise`, each twice as fine and `gain` as strong, about 0..1."""
    total = Field.constant(n, 0.0)
    amplitude, sum_of = 1.0, 0.0
    for octave in range(octaves):
        if min(cells_u, cells_v) << octave > n // 2:
            break
        total = (
            total
            + value_noise(n, min(cells_u << octave, n // 2), min(cells_v << octave, n // 2), f"{seed}/{octave}")
            * amplitude
        )
        sum_of += amplitude
        amplitude *= gain
    return total * (1.0 / sum_of)


def white(n, seed):
    """Independent random values in 0..1."""
    rng = random.Random(seed)
    return Field(n, [rng.random() for _ in range(n * n)])


def cells(n, count, seed, jitter=0.9):
    """Voronoi cells, `count` x `count` of them: distance to the nearest border (in cells) and a value per cell."""
    rng = random.Random(seed)
    points = [
        [
            (cx + 0.5 + (rng.random() - 0.5) * jitter, cy + 0.5 + (rng.random() - 0.5) * jitter, rng.random())
            for cx in range(count)
        ]
        for cy in range(count)
    ]
    border, value = [], []
    scale = count / n
    for y in range(n):
        py = (y + 0.5) * scale
        cy = int(py)
        for start in range(count):
            near = [(points[(cy + dy) % count][(start + dx) % count], dx, dy) for dy in (-1, 0, 1) for dx in (-1, 0, 1)]
            near = [
                (p[0] + (start + dx - (start + dx) % count), p[1] + (cy + dy - (cy + dy) % count), p[2])
                for p, dx, dy in near
            ]
            for x in range(start * n // count, (start + 1) * n // count):
                px = (x + 0.5) * scale
                first, second, owner = 9.0, 9.0, 0.0
                for qx, qy, tone in near:
                    d = (qx - px) * (qx - px) + (qy - py) * (qy - py)
                    if d < first:
                        first, second, owner = d, first, tone
                    elif d < second:
                        second = d
                border.append(math.sqrt(second) - math.sqrt(first))
                value.append(owner)
    return Field(n, border), Field(n, value)


def strokes(n, paths, width):
    """Coverage 0..1 of polylines drawn with a soft round pen; `paths` hold (u, v, pressure) in texture units."""
    out = [0.0] * (n * n)
    for path in paths:
        for (u0, v0, p0), (u1, v1, p1) in zip(path, path[1:]):
            length = math.hypot(u1 - u0, v1 - v0) * n
            steps = max(1, int(length))
            for step in range(steps):
                t = step / steps
                _dab(out, n, (u0 + (u1 - u0) * t) * n, (v0 + (v1 - v0) * t) * n, width * (p0 + (p1 - p0) * t))
    return Field(n, out)


def _dab(out, n, x, y, radius):
    reach = int(radius + 1.5)
    centre_x, centre_y = int(x), int(y)
    for py in range(centre_y - reach, centre_y + reach + 1):
        row = (py % n) * n
        for px in range(centre_x - reach, centre_x + reach + 1):
            cover = radius + 0.5 - math.hypot(px + 0.5 - x, py + 0.5 - y)
            if cover > 0.0:
                index = row + px % n
                cover = min(cover, 1.0) * min(1.0, radius * 1.4)
                if cover > out[index]:
                    out[index] = cover


def wandering_paths(count, seed, length, wander, branch=0.0, step=0.012):
    """Meandering, branching, thinning polylines: cracks, veins and drips."""
    rng = random.Random(seed)
    paths = []
    pending = [(rng.random(), rng.random(), rng.random() * math.tau, 1.0, length) for _ in range(count)]
    while pending:
        u, v, angle, pressure, left = pending.pop()
        path = [(u, v, pressure)]
        while left > 0.0 and pressure > 0.12:
            angle += rng.gauss(0.0, wander)
            u, v = u + math.cos(angle) * step, v + math.sin(angle) * step
            left -= step
            pressure *= 1.0 - step * 1.6 / length
            path.append((u, v, pressure))
            if rng.random() < branch:
                pending.append((u, v, angle + rng.choice((-1, 1)) * rng.uniform(0.5, 1.1), pressure * 0.7, left * 0.6))
        paths.append(path)
    return paths
