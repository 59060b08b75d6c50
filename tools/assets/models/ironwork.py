"""Iron things that hang and stand in the dark: cage, lantern, stage lamp."""

import math

from mesh import Mesh, add, scale, sub, turn_x, turn_z
from models.common import IRON

_CAGE = [(-0.62, 0.03), (-0.74, 0.16), (-0.92, 0.24), (-1.20, 0.25), (-1.52, 0.27), (-1.84, 0.22), (-2.06, 0.12)]


def _chain(mesh, start, end, links):
    """Links in turn across and along each other."""
    step = scale(sub(end, start), 1.0 / links)
    for i in range(links):
        middle = add(start, scale(step, i + 0.5))
        half = scale(step, 0.72)
        side = (0.013, 0.0, 0.0) if i % 2 else (0.0, 0.0, 0.013)
        top, bottom = sub(middle, half), add(middle, half)
        ring = [add(top, side), add(bottom, side), sub(bottom, side), sub(top, side), add(top, side)]
        mesh.tube(ring, 0.0045, 5, caps=False)


def _hoop(mesh, y, radius, thick, sides=28):
    ring = Mesh()
    ring.lathe(
        [
            (radius - thick, y - 0.014),
            (radius + thick, y - 0.014),
            (radius + thick, y + 0.014),
            (radius - thick, y + 0.014),
            (radius - thick, y - 0.014),
        ],
        sides,
        smooth=0.3,
        grain_down=False,
    )
    mesh.joined(ring)


def gibbet():
    """Iron cage for a standing man, on a chain; the origin is its hook, its foot hangs at -2.1 m."""
    mesh = Mesh()
    _chain(mesh, (0.0, 0.02, 0.0), (0.0, -0.60, 0.0), 9)
    for i in range(10):
        angle = math.tau * i / 10
        s, c = math.sin(angle), math.cos(angle)
        mesh.tube([(s * r, y, c * r) for y, r in _CAGE], 0.010, 6, caps=False)
    for y, r in ((-0.92, 0.24), (-1.34, 0.262), (-1.84, 0.22)):
        _hoop(mesh, y, r, 0.007)
    mesh.lathe([(0.0, -2.09), (0.125, -2.085), (0.125, -2.06), (0.0, -2.055)], 16, smooth=0.3)
    mesh.lathe([(0.0, -0.64), (0.04, -0.63), (0.045, -0.61), (0.0, -0.58)], 12)
    return mesh.scaled_uv(IRON)


def gibbetBones():
    """What is left in `gibbet`, at the same origin: skull, ribs and the long bones, slumped."""
    mesh = Mesh()
    mesh.joined(_skull().turned(turn_x, 0.45).turned(turn_z, 0.26).moved((0.04, -1.03, 0.05)))
    spine = [(0.02, -1.14, 0.0), (0.0, -1.30, -0.05), (-0.02, -1.46, -0.06), (0.0, -1.62, -0.02)]
    mesh.tube(spine, 0.020, 8)
    for i in range(7):
        y, wide = -1.20 - 0.045 * i, 0.105 + 0.035 * math.sin(math.pi * (i + 1) / 8)
        for side in (-1.0, 1.0):
            rib = [
                (0.01 + side * wide * math.sin(a), y - 0.03 * a, -0.045 + 0.115 * (1.0 - math.cos(a)))
                for a in (0.0, 0.6, 1.2, 1.8, 2.4, 2.8)
            ]
            mesh.tube(rib, 0.0075, 6)
    for side in (-1.0, 1.0):
        thigh = [(side * 0.07, -1.63, 0.0), (side * 0.13, -1.60, 0.17)]
        shin = [(side * 0.13, -1.60, 0.17), (side * 0.07, -1.98, 0.06)]
        arm = [(side * 0.15, -1.18, -0.02), (side * 0.18, -1.45, 0.03), (side * 0.09, -1.62, 0.14)]
        mesh.tube(thigh, [0.024, 0.020], 8)
        mesh.tube(shin, [0.020, 0.015], 8)
        mesh.tube(arm, [0.016, 0.014, 0.010], 8)
    mesh.tube([(-0.10, -1.63, -0.01), (0.0, -1.66, -0.05), (0.10, -1.63, -0.01)], [0.03, 0.04, 0.03], 8)
    return mesh.scaled_uv(IRON)


def _skull():
    """A skull around its middle, 0.22 m high, that looks along +z: sockets, nose and jaw are pressed into one sheet."""
    mesh = Mesh()

    def dent(x, y, cx, cy, wide, tall):
        return math.exp(-(((x - cx) / wide) ** 2) - ((y - cy) / tall) ** 2)

    def bone(s, t):
        angle, y = math.tau * (s - 0.5), 0.115 - 0.225 * t
        dome = math.sqrt(max(0.0, 1.0 - (max(0.0, y - 0.01) / 0.106) ** 2))
        jaw = 1.0 - 0.36 * min(1.0, max(0.0, 0.01 - y) / 0.075)
        radius = 0.082 * dome * jaw if y > -0.105 else 0.082 * 0.64 * max(0.0, (y + 0.11) / 0.005)
        x, z = math.sin(angle) * radius * 0.90, math.cos(angle) * radius * 1.16
        if z > 0.0:
            press = 0.030 * (dent(x, y, -0.030, 0.004, 0.017, 0.018) + dent(x, y, 0.030, 0.004, 0.017, 0.018))
            press += 0.018 * dent(x, y, 0.0, -0.036, 0.010, 0.014) + 0.006 * dent(abs(x), y, 0.05, -0.05, 0.016, 0.022)
            press += 0.005 * (0.5 + 0.5 * math.cos(x * 620)) * dent(x, y, 0.0, -0.074, 0.034, 0.010)
            z -= press - 0.007 * dent(abs(x), y, 0.030, 0.030, 0.022, 0.007)
        return (x, y, z + 0.012), (s * 0.5, t * 0.25)

    mesh.surface(bone, 44, 36)
    return mesh


def lantern():
    """Six-sided lantern on a chain of 0.5 m; the origin is its hook, the glass is `lanternGlass`."""
    mesh = Mesh()
    _chain(mesh, (0.0, 0.02, 0.0), (0.0, -0.46, 0.0), 7)
    for y, r in ((-0.60, 0.105), (-0.86, 0.085)):
        corners = [(r * math.sin(math.tau * i / 6), y, r * math.cos(math.tau * i / 6)) for i in range(7)]
        mesh.tube(corners, 0.009, 6, caps=False)
    for i in range(6):
        s, c = math.sin(math.tau * i / 6), math.cos(math.tau * i / 6)
        mesh.tube([(0.105 * s, -0.60, 0.105 * c), (0.085 * s, -0.86, 0.085 * c)], 0.007, 6, caps=False)
    mesh.lathe(
        [(0.118, -0.60), (0.112, -0.585), (0.06, -0.52), (0.022, -0.49), (0.014, -0.45), (0.0, -0.45)], 6, smooth=0.2
    )
    mesh.lathe(
        [(0.0, -0.905), (0.02, -0.895), (0.05, -0.875), (0.092, -0.868), (0.092, -0.86), (0.0, -0.86)], 6, smooth=0.2
    )
    return mesh.scaled_uv(IRON)


def lanternGlass():
    mesh = Mesh()
    mesh.lathe([(0.080, -0.858), (0.100, -0.602)], 6, smooth=0.2, closed_uv=1.0)
    return mesh


def tripod():
    """Stand of `lampHead`, whose pivot is 1.35 m above the ground."""
    mesh = Mesh()
    for i in range(3):
        angle = math.tau * i / 3 + 0.5
        s, c = math.sin(angle), math.cos(angle)
        mesh.tube([(0.03 * s, 0.95, 0.03 * c), (0.42 * s, 0.012, 0.42 * c)], 0.014, 8)
        mesh.tube([(0.0, 0.55, 0.0), (0.20 * s, 0.54, 0.20 * c)], 0.008, 6)
    mesh.tube([(0.0, 0.50, 0.0), (0.0, 1.20, 0.0)], 0.018, 10)
    mesh.lathe([(0.0, 0.90), (0.038, 0.905), (0.042, 0.95), (0.036, 1.0), (0.0, 1.005)], 14)
    for side in (-1.0, 1.0):
        mesh.tube(
            [(0.0, 1.20, 0.0), (side * 0.12, 1.21, 0.0), (side * 0.145, 1.26, 0.0), (side * 0.145, 1.36, 0.0)], 0.011, 8
        )
    return mesh.scaled_uv(IRON)


def lampHead():
    """Drum of a stage lamp around its pivot; it shines along +z and its lens is `lampLens`."""
    mesh = Mesh()
    drum = Mesh()
    drum.lathe(
        [
            (0.0, -0.17),
            (0.05, -0.168),
            (0.10, -0.14),
            (0.125, -0.09),
            (0.125, 0.10),
            (0.135, 0.11),
            (0.135, 0.15),
            (0.118, 0.15),
            (0.112, 0.118),
            (0.0, 0.118),
        ],
        26,
        smooth=0.5,
        grain_down=False,
    )
    mesh.joined(drum.turned(turn_x, math.pi / 2))
    for i in range(4):
        flap = Mesh()
        flap.box((-0.10, 0.0, 0.0), (0.10, 0.006, 0.14), 0.002)
        flap.turned(turn_x, -0.35).moved((0.0, 0.125, 0.14))
        mesh.joined(flap.turned(turn_z, math.tau * i / 4))
    for i in range(5):
        _rib(mesh, -0.08 + i * 0.032)
    return mesh.scaled_uv(IRON)


def _rib(mesh, z):
    ring = Mesh()
    ring.lathe([(0.124, z - 0.006), (0.134, z - 0.004), (0.134, z + 0.004), (0.124, z + 0.006)], 26, smooth=0.3)
    mesh.joined(ring.turned(turn_x, math.pi / 2))


def lampLens():
    mesh = Mesh()
    mesh.lathe([(0.112, 0.119), (0.08, 0.132), (0.04, 0.138), (0.0, 0.14)], 24, smooth=1.0, closed_uv=1.0)
    return mesh.turned(turn_x, math.pi / 2)
