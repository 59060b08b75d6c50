"""What the creatures look like: bodies turned on a lathe, without faces. Each stands on the origin, facing +z."""

from __future__ import annotations

import kaVel
from objects.things.Lathe import lathe, limb

#: How high above its feet a creature's own place is, the middle of the ball that it goes on, metres.
MIDDLE = 0.25


def _finished(mesh: kaVel.MeshBuilder):
    """The mesh about the place of its creature."""
    mesh.transform(at=kaVel.Vec4(0, -MIDDLE, 0, 1))
    return mesh


def stroller() -> kaVel.MeshBuilder:
    """A robe 1.75 m high, and a head like an egg, bent a little."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.30, 0.0), (0.27, 0.08), (0.22, 0.55), (0.19, 0.95), (0.23, 1.28), (0.21, 1.38), (0.10, 1.46),
                 (0.05, 1.50), (0.0, 1.50)), depth=0.8)
    mesh.addSphere(0.11, 14, 10, at=kaVel.Vec4(0, 1.60, 0.05, 1))
    mesh.addSphere(0.085, 12, 8, at=kaVel.Vec4(0, 1.55, 0.11, 1))
    for side in (-1.0, 1.0):
        limb(mesh, 0.045, (0.21 * side, 1.33, 0.0), (0.25 * side, 0.95, 0.06))
        limb(mesh, 0.035, (0.25 * side, 0.95, 0.06), (0.20 * side, 0.72, 0.20))
    return _finished(mesh)


def hound() -> kaVel.MeshBuilder:
    """A low wet heap that leans forward on arms too long for it."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.36, 0.0), (0.42, 0.10), (0.40, 0.28), (0.30, 0.52), (0.16, 0.68), (0.0, 0.72)), (0, 0, -0.08))
    mesh.addSphere(0.24, 12, 8, at=kaVel.Vec4(0.05, 0.55, 0.16, 1))
    mesh.addSphere(0.15, 12, 8, at=kaVel.Vec4(-0.02, 0.66, 0.36, 1))
    for side in (-1.0, 1.0):
        limb(mesh, 0.06, (0.22 * side, 0.58, 0.14), (0.44 * side, 0.42, 0.36))
        limb(mesh, 0.05, (0.44 * side, 0.42, 0.36), (0.34 * side, 0.03, 0.56))
    return _finished(mesh)


def shade() -> kaVel.MeshBuilder:
    """2.1 m of something thin, whose hands reach its knees."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.16, 0.0), (0.11, 0.5), (0.10, 1.0), (0.15, 1.5), (0.17, 1.72), (0.06, 1.82), (0.04, 1.88),
                 (0.09, 1.95), (0.10, 2.05), (0.05, 2.14), (0.0, 2.15)), segments=10, depth=0.7)
    for side in (-1.0, 1.0):
        limb(mesh, 0.03, (0.16 * side, 1.70, 0.0), (0.24 * side, 1.15, -0.04))
        limb(mesh, 0.022, (0.24 * side, 1.15, -0.04), (0.19 * side, 0.52, 0.08))
    return _finished(mesh)


def warden() -> kaVel.MeshBuilder:
    """A coat and a broad hat, with an arm held out for a lantern."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.28, 0.04), (0.25, 0.5), (0.22, 0.95), (0.28, 1.32), (0.26, 1.44), (0.12, 1.52), (0.09, 1.56),
                 (0.0, 1.56)), depth=0.75)
    mesh.addSphere(0.11, 12, 8, at=kaVel.Vec4(0, 1.64, 0.02, 1))
    lathe(mesh, ((0.29, 1.69), (0.28, 1.71), (0.13, 1.73), (0.11, 1.86), (0.0, 1.88)))
    lathe(mesh, ((0.0, 1.68), (0.29, 1.69)))
    limb(mesh, 0.05, (0.26, 1.36, 0.0), (0.33, 1.12, 0.16))
    limb(mesh, 0.04, (0.33, 1.12, 0.16), (0.31, 1.08, 0.42))
    limb(mesh, 0.05, (-0.26, 1.36, 0.0), (-0.31, 0.92, 0.02))
    return _finished(mesh)


def child() -> kaVel.MeshBuilder:
    """A little cone of cloth with a head too large for it, 0.95 m high."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.21, 0.0), (0.18, 0.2), (0.12, 0.5), (0.11, 0.62), (0.05, 0.70), (0.0, 0.70)), segments=10)
    mesh.addSphere(0.14, 10, 8, at=kaVel.Vec4(0, 0.80, 0.02, 1))
    return _finished(mesh)
