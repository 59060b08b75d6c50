"""What stands or hangs along the walls: cases, a clock, pictures; and the rug."""

import math

from mesh import Mesh, turn_x, turn_z
from models.common import BRASS, WOOD, fitted_quad, raised_panel

SHELF_HEIGHTS = (0.10, 0.50, 0.88, 1.24, 1.58, 1.90)


def bookshelf():
    """Open bookcase, 1.2 x 2.3 x 0.34 m; the shelf tops stand at SHELF_HEIGHTS."""
    mesh = Mesh()
    for x0, x1 in ((-0.60, -0.57), (0.57, 0.60)):
        mesh.box((x0, 0.0, -0.17), (x1, 2.22, 0.16), 0.004, "y")
    for x0, x1 in ((-0.61, -0.55), (0.55, 0.61)):
        mesh.box((x0, 0.0, 0.14), (x1, 2.22, 0.172), 0.006, "y")
    mesh.box((-0.57, 0.05, -0.17), (0.57, 2.22, -0.155), 0.002, "y")
    for y in SHELF_HEIGHTS:
        mesh.box((-0.57, y - 0.025, -0.155), (0.57, y, 0.15), 0.004)
    mesh.box((-0.62, 0.0, -0.17), (0.62, 0.08, 0.185), 0.008)
    mesh.box((-0.63, 2.20, -0.17), (0.63, 2.24, 0.19), 0.010)
    mesh.box((-0.66, 2.24, -0.17), (0.66, 2.29, 0.215), 0.014)
    return mesh.scaled_uv(WOOD)


def cabinet():
    """Two-door cupboard with a cornice, 1.1 x 1.9 x 0.5 m."""
    mesh = Mesh()
    mesh.box((-0.55, 0.10, -0.25), (0.55, 1.80, 0.225), 0.006, "y")
    mesh.box((-0.57, 0.0, -0.26), (0.57, 0.11, 0.25), 0.012)
    mesh.box((-0.57, 1.78, -0.26), (0.57, 1.82, 0.26), 0.010)
    mesh.box((-0.60, 1.82, -0.27), (0.60, 1.88, 0.29), 0.018)
    for x0, x1 in ((-0.525, -0.004), (0.004, 0.525)):
        for a, b in ((x0, x0 + 0.085), (x1 - 0.085, x1)):
            mesh.box((a, 0.135, 0.222), (b, 1.76, 0.247), 0.005, "y")
        for y0, y1 in ((0.135, 0.24), (0.88, 0.97), (1.66, 1.76)):
            mesh.box((x0 + 0.085, y0, 0.222), (x1 - 0.085, y1, 0.247), 0.005)
        for y0, y1 in ((0.24, 0.88), (0.97, 1.66)):
            raised_panel(mesh, x0 + 0.085, x1 - 0.085, y0, y1, 0.2255, 0.014, 0.05)
    return mesh.scaled_uv(WOOD)


def cabinetFittings():
    mesh = Mesh()
    for x in (-0.045, 0.045):
        knob = Mesh()
        knob.lathe([(0.010, 0.0), (0.007, 0.014), (0.017, 0.024), (0.018, 0.033), (0.0, 0.040)], 12)
        mesh.joined(knob.turned(turn_x, math.pi / 2).moved((x, 0.93, 0.247)))
    for x in (-0.528, 0.528):
        for y in (0.35, 1.55):
            mesh.tube([(x, y - 0.035, 0.247), (x, y + 0.035, 0.247)], 0.007, 8)
    return mesh.scaled_uv(BRASS)


def clockCase():
    """Longcase clock, 2.15 m; the dial is `clockDial`."""
    mesh = Mesh()
    mesh.box((-0.25, 0.0, -0.15), (0.25, 0.10, 0.15), 0.012)
    mesh.box((-0.23, 0.10, -0.14), (0.23, 0.52, 0.13), 0.008, "y")
    mesh.box((-0.25, 0.52, -0.15), (0.25, 0.56, 0.15), 0.012)
    mesh.box((-0.17, 0.56, -0.12), (0.17, 1.42, 0.09), 0.008, "y")
    raised_panel(mesh, -0.13, 0.13, 0.62, 1.36, 0.0905, 0.012, 0.03)
    raised_panel(mesh, -0.18, 0.18, 0.15, 0.47, 0.1305, 0.012, 0.03)
    mesh.box((-0.25, 1.42, -0.15), (0.25, 1.46, 0.15), 0.012)
    mesh.box((-0.23, 1.46, -0.14), (0.23, 1.98, 0.095), 0.008, "y")
    for x0, x1 in ((-0.235, -0.185), (0.185, 0.235)):
        mesh.box((x0, 1.46, 0.09), (x1, 1.98, 0.145), 0.008, "y")
    mesh.box((-0.235, 1.925, 0.09), (0.235, 1.98, 0.145), 0.008)
    mesh.box((-0.235, 1.46, 0.09), (0.235, 1.505, 0.145), 0.008)
    mesh.box((-0.27, 1.98, -0.15), (0.27, 2.03, 0.18), 0.014)
    mesh.box((-0.17, 2.03, -0.13), (0.17, 2.10, 0.12), 0.020)
    return mesh.scaled_uv(WOOD)


def clockDial():
    mesh = Mesh()
    z = 0.0985
    fitted_quad(mesh, [(0.185, 1.90, z), (-0.185, 1.90, z), (-0.185, 1.53, z), (0.185, 1.53, z)])
    return mesh


def pictureFrame():
    """Carved frame around 0.62 x 0.78 m, centred on the origin; it hangs on the plane z = 0."""
    mesh = Mesh()
    profile = [
        (0.0, 0.0),
        (0.0, 0.030),
        (-0.012, 0.040),
        (-0.030, 0.036),
        (-0.042, 0.022),
        (-0.055, 0.026),
        (-0.066, 0.018),
        (-0.075, 0.008),
    ]
    half_w, half_h = 0.31 + 0.07, 0.39 + 0.07
    for length, reach, angle in (
        (half_w, half_h, 0.0),
        (half_h, half_w, math.pi / 2),
        (half_w, half_h, math.pi),
        (half_h, half_w, -math.pi / 2),
    ):
        bar = Mesh()
        bar.moulding(profile, -length, length, 1.0, 1.0)
        mesh.joined(bar.moved((0.0, reach, 0.0)).turned(turn_z, angle))
    return mesh.scaled_uv(BRASS)


def pictureCanvas():
    """Canvas of `pictureFrame`, the whole texture."""
    mesh = Mesh()
    fitted_quad(mesh, [(0.315, 0.395, 0.009), (-0.315, 0.395, 0.009), (-0.315, -0.395, 0.009), (0.315, -0.395, 0.009)])
    return mesh


def rug():
    """Carpet, 2.2 x 3.2 m, with a few waves and curling edges; v runs along z."""
    mesh = Mesh()

    def pile(s, t):
        x, z = (s - 0.5) * 2.2, (t - 0.5) * 3.2
        wave = 0.010 * math.exp(-(((z - 0.9 - 0.25 * x) / 0.09) ** 2)) + 0.007 * math.exp(
            -(((z + 1.1 + 0.4 * x) / 0.07) ** 2)
        )
        edge = 1.0 - min(1.0, min(s, 1 - s, t, 1 - t) * 60)
        return (x, 0.012 - 0.009 * edge + wave, z), (s, t)

    mesh.surface(pile, 16, 44)
    return mesh
