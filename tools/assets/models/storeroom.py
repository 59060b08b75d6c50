"""Store-room things and heating."""

import math
import random

from mesh import Mesh, turn_z
from models.common import IRON, RUST, STOREY, WOOD


def crate():
    """Nailed plank crate, 0.7 x 0.5 x 0.5 m."""
    mesh = Mesh()
    rng = random.Random("crate")
    w, h, d, t = 0.35, 0.50, 0.25, 0.018
    for i in range(4):
        y0, y1 = h * i / 4 + 0.003, h * (i + 1) / 4 - 0.003
        for z0, z1 in ((d - t, d), (-d, -d + t)):
            shift = rng.uniform(-0.003, 0.003)
            mesh.box((-w, y0, z0 + shift), (w, y1, z1 + shift), 0.005)
        for x0, x1 in ((w - t, w), (-w, -w + t)):
            shift = rng.uniform(-0.002, 0.002)
            mesh.box((x0 + shift, y0, -d + t), (x1 + shift, y1, d - t), 0.005, "z")
        z0, z1 = -d + 2 * d * i / 4 + 0.003, -d + 2 * d * (i + 1) / 4 - 0.003
        mesh.box((-w, h - 0.001, z0), (w, h + t, z1), 0.005)
    for z0, z1 in ((d, d + t), (-d - t, -d)):
        for x0, x1 in ((-w, -w + 0.075), (w - 0.075, w)):
            mesh.box((x0, 0.0, z0), (x1, h + t, z1), 0.005, "y")
        brace = Mesh()
        brace.box((-0.36, -0.036, z0 + 0.001), (0.36, 0.036, z1 - 0.004), 0.005)
        mesh.joined(
            brace.turned(turn_z, math.atan2(h - 0.07, 2 * w - 0.15) * (1 if z0 > 0 else -1)).bent(
                lambda p: (max(-w + 0.07, min(w - 0.07, p[0])), max(0.004, min(h, p[1] + h / 2)), p[2])
            )
        )
    for x0, x1 in ((-0.30, -0.22), (0.22, 0.30)):
        mesh.box((x0, h + t, -d), (x1, h + 2 * t, d), 0.005, "z")
    return mesh.scaled_uv(WOOD)


def barrel():
    """Oak barrel of sixteen staves, 0.9 m high."""
    mesh = Mesh()
    staves, height = 16, 0.90
    for i in range(staves):

        def stave(s, t):
            y = height * (1.0 - t)
            radius = 0.255 + 0.075 * math.sin(math.pi * (0.08 + 0.84 * t))
            across = (s - 0.5) * 0.985
            rise = 1.0 - 0.020 * (2 * across) ** 6
            angle = math.tau * (i + 0.5 + across) / staves
            return (
                (math.sin(angle) * radius * rise, y, math.cos(angle) * radius * rise),
                (t * height + i * 0.37, across * 0.11 + i * 0.113),
            )

        mesh.surface(stave, 4, 10)
    # What shows between the staves is wood in shadow, not the room behind.
    girth = [0.08 + 0.84 * i / 10 for i in range(11)]
    mesh.lathe([(0.246 + 0.075 * math.sin(math.pi * g), height * (g - 0.08) / 0.84) for g in girth], 16)
    rim = 0.255 + 0.075 * math.sin(math.pi * 0.08)
    # Up the outside, over the top and down to a floor below the head's planks, which closes what they leave open. A
    # profile that started inside would face the wood.
    top, inner = height, rim - 0.028
    lip = [(rim - 0.006, top - 0.051), (rim + 0.001, top), (rim - 0.025, top), (inner, top - 0.05), (0.0, top - 0.05)]
    mesh.lathe(lip, 32, smooth=0.3)
    for i in range(6):
        x0 = -rim + 0.05 + i * (2 * rim - 0.10) / 6
        x1 = x0 + (2 * rim - 0.10) / 6 - 0.003
        reach = math.sqrt(max(0.0, (rim - 0.026) ** 2 - max(abs(x0), abs(x1)) ** 2)) + 0.03
        mesh.box((x0, height - 0.055, -reach), (x1, height - 0.035, reach), 0.004, "z")
    return mesh.scaled_uv(WOOD)


def barrelHoops():
    mesh = Mesh()
    for t in (0.06, 0.26, 0.74, 0.94):
        y = 0.90 * (1.0 - t)
        profile = []
        for dy in (-0.022, 0.022):
            k = 1.0 - (y + dy) / 0.90
            profile.append((0.255 + 0.075 * math.sin(math.pi * (0.08 + 0.84 * k)) + 0.004, y + dy))
        (r0, y0), (r1, y1) = profile
        mesh.lathe([(r0 - 0.006, y0), (r0, y0), (r1, y1), (r1 - 0.006, y1)], 40, smooth=0.3, grain_down=False)
    return mesh.scaled_uv(IRON)


def radiator():
    """Cast-iron radiator of ten columns, 0.75 m high; it stands 6 cm off the wall at z = 0."""
    mesh = Mesh()
    for i in range(10):
        x = -0.27 + i * 0.06
        for z in (0.09, 0.17):
            mesh.tube([(x, 0.14, z), (x, 0.66, z)], 0.019, 9, caps=False)
        for y in (0.13, 0.67):
            mesh.tube([(x, y, 0.06), (x, y, 0.20)], 0.026, 9)
    for y in (0.13, 0.67):
        mesh.tube([(-0.31, y, 0.13), (0.31, y, 0.13)], 0.030, 10)
    for x in (-0.27, 0.27):
        mesh.tube([(x, 0.0, 0.09), (x, 0.12, 0.09)], 0.018, 8)
        mesh.tube([(x, 0.0, 0.17), (x, 0.12, 0.17)], 0.018, 8)
    return mesh.scaled_uv(RUST)


def pipe():
    """Heating pipe up a wall, floor to ceiling, with flanges and a valve."""
    mesh = Mesh()
    mesh.tube([(0.0, 0.0, 0.06), (0.0, STOREY, 0.06)], 0.026, 12, caps=False)
    for y in (0.05, 0.95, 2.0, 3.05):
        collar = Mesh()
        collar.lathe([(0.026, -0.016), (0.042, -0.013), (0.042, 0.013), (0.026, 0.016)], 16, smooth=0.3)
        mesh.joined(collar.moved((0.0, y, 0.06)))
    mesh.tube([(0.0, 0.55, 0.06), (0.0, 0.55, 0.15)], 0.012, 8)
    wheel = [(0.055 * math.cos(math.tau * i / 16), 0.55 + 0.055 * math.sin(math.tau * i / 16), 0.15) for i in range(17)]
    mesh.tube(wheel, 0.008, 6, caps=False)
    for i in range(3):
        a = math.tau * i / 6
        mesh.tube(
            [
                (0.055 * math.cos(a), 0.55 + 0.055 * math.sin(a), 0.15),
                (-0.055 * math.cos(a), 0.55 - 0.055 * math.sin(a), 0.15),
            ],
            0.006,
            6,
        )
    return mesh.scaled_uv(RUST)
