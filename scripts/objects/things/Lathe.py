"""Round bodies: what a profile leaves when it is turned, and limbs from place to place."""

from __future__ import annotations

import functools
import math
from typing import Sequence

import kaVel
from objects.Placing import Triple, turned


@functools.cache
def _circle(segments: int) -> list[tuple[float, float, float]]:
    """The angles of the steps around a circle, radians, the last as the first, with their cosines and sines."""
    angles = [math.tau * step / segments for step in range(segments + 1)]
    return [(angle, math.cos(angle), math.sin(angle)) for angle in angles]


def lathe(mesh: kaVel.MeshBuilder, profile: Sequence[tuple[float, float]], at: Triple = (0, 0, 0), segments: int = 14,
          depth: float = 1.0):
    """Appends what a profile of radii and heights, from below, leaves when it goes round; flattened along z."""
    rings: list[list[int]] = []
    for number, (radius, height) in enumerate(profile):
        before, after = profile[max(number - 1, 0)], profile[min(number + 1, len(profile) - 1)]
        slope = math.atan2(before[0] - after[0], after[1] - before[1])
        out, up = math.cos(slope), math.sin(slope)
        rings.append([mesh.addVertex(kaVel.Vec4(at[0] + radius * c, at[1] + height, at[2] + radius * s * depth, 1),
                                     kaVel.Vec4(c * out, up, s * out, 0), 2.0 * step / segments, -height)
                      for step, (_, c, s) in enumerate(_circle(segments))])
    for below, above in zip(rings, rings[1:]):
        for step in range(segments):
            mesh.addQuad(above[step], above[step + 1], below[step + 1], below[step])


def limb(mesh: kaVel.MeshBuilder, radius: float, start: Triple, end: Triple, segments: int = 8):
    """Appends a round limb from place to place."""
    x, y, z = (b - a for a, b in zip(start, end))
    length = math.hypot(x, y, z)
    turn = math.degrees(math.atan2(x, z))
    pitch = math.degrees(math.acos(y / length))
    middle = [(a + b) / 2 for a, b in zip(start, end)]
    mesh.addCylinder(radius, length, segments, at=kaVel.Vec4(*middle, 1), turn=turned(turn, pitch=pitch))


#: Radii of a limb as it is turned, shares of its thickness by shares of its length: fullest a third of the way down.
_LIMB = ((0.0, 0.45), (0.05, 0.80), (0.30, 1.0), (0.72, 0.80), (0.95, 0.62), (1.0, 0.35))


def spindle(mesh: kaVel.MeshBuilder, profile: Sequence[tuple[float, float]], start: Triple, end: Triple,
            segments: int = 10, flat: float = 1.0, front: Triple = (0, 0, 1)):
    """Appends what a profile of shares of the length and radii leaves when it goes round the way from place to place.

    `flat` is a factor of its extent towards `front`.
    """
    span = [b - a for a, b in zip(start, end)]
    length = math.hypot(*span)
    along = [part / length for part in span]
    aside = _crossed(along, front) if abs(sum(a * f for a, f in zip(along, front))) < 0.95 else _across(along)
    other = _crossed(aside, along)
    ways: list[tuple[Sequence[float], kaVel.Vec4]] = []  # out of the middle, and the normal there
    for _, c, s in _circle(segments):
        out = [c * flat * n + s * o for n, o in zip(aside, other)]
        size = math.hypot(*out)
        ways.append(([c * n + s * flat * o for n, o in zip(aside, other)],
                     kaVel.Vec4(*(part / size for part in out), 0)))
    rings: list[list[int]] = []
    for share, radius in profile:
        x, y, z = (a + share * w for a, w in zip(start, span))
        rings.append([mesh.addVertex(kaVel.Vec4(x + radius * way[0], y + radius * way[1], z + radius * way[2], 1),
                                     normal, 2 * step / segments, 2 * share * length)
                      for step, (way, normal) in enumerate(ways)])
    for first, second in zip(rings, rings[1:]):
        for step in range(segments):
            mesh.addQuad(second[step], second[step + 1], first[step + 1], first[step])


def bone(mesh: kaVel.MeshBuilder, thickness: float, start: Triple, end: Triple, segments: int = 10):
    """Appends a limb as a wooden figure has them, from joint to joint."""
    spindle(mesh, [(share, thickness * radius) for share, radius in _LIMB], start, end, segments)


def drape(mesh: kaVel.MeshBuilder, profile: Sequence[tuple[float, float]], folds: int, depth: float,
          flat: float = 1.0, segments: int = 48, lean: float = 0.0):
    """Appends cloth that hangs round the y axis in folds: radii and heights, from below; seen from both sides.

    `depth` is how far the folds go in at the bottom, metres; `lean` shifts it to +z for each metre of height.
    """
    low, high = profile[0][1], profile[-1][1]
    circle = _circle(segments)
    waves = [math.cos(folds * angle + 0.7 * math.sin(3 * angle)) * depth for angle, _, _ in circle]
    slopes = [-math.sin(folds * angle) for angle, _, _ in circle]
    for side in (1.0, -1.0):
        rings: list[list[int]] = []
        for radius, height in profile:
            share = (height - low) / (high - low)
            fall, steepest = (1 - share) ** 1.3, min(1.0, folds * depth * (1 - share) / max(radius, 0.05))
            ring: list[int] = []
            for step, (angle, c, s) in enumerate(circle):
                out = radius + waves[step] * fall - 0.004 * (side < 0)
                facing = angle + 0.8 * (slopes[step] * steepest) * side
                ring.append(mesh.addVertex(
                    kaVel.Vec4(out * c, height, out * s * flat + lean * height, 1),
                    kaVel.Vec4(side * math.cos(facing), 0.15, side * math.sin(facing), 0),
                    3.0 * step / segments, -height))
            rings.append(ring)
        for below, above in zip(rings, rings[1:]):
            for step in range(segments):
                quad = (above[step], above[step + 1], below[step + 1], below[step])
                mesh.addQuad(*(quad if side > 0 else quad[::-1]))


def _crossed(a: Sequence[float], b: Sequence[float]) -> list[float]:
    """The direction of length 1 that stands square to two others."""
    x, y, z = a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]
    length = math.hypot(x, y, z)
    return [x / length, y / length, z / length]


def _across(along: Sequence[float]) -> list[float]:
    """Some direction of length 1 that stands square to another."""
    x, y, z = (0.0, along[2], -along[1]) if abs(along[0]) < 0.7 else (-along[2], 0.0, along[0])
    length = math.hypot(x, y, z)
    return [x / length, y / length, z / length]
