"""Building kit: walls, floors and what runs along them, in steps of 2 m. Wall pieces lie on z = 0 and face +z."""

from mesh import Mesh
from models.common import (
    BOARDS,
    DOOR_HEIGHT,
    DOOR_WIDTH,
    PLASTER,
    STOREY,
    TILES,
    WALLPAPER,
    WALL_THICKNESS,
    WINDOW_HEAD,
    WINDOW_SILL,
    WINDOW_WIDTH,
    WOOD,
    raised_panel,
    wall_quad,
)


def wallPlain():
    mesh = Mesh()
    wall_quad(mesh, -1.0, 1.0, 0.0, STOREY)
    return mesh.scaled_uv(WALLPAPER)


def _wall_with_opening(width, sill, head):
    mesh = Mesh()
    half, back = width / 2, -WALL_THICKNESS
    wall_quad(mesh, -1.0, -half, 0.0, STOREY)
    wall_quad(mesh, half, 1.0, 0.0, STOREY)
    wall_quad(mesh, -half, half, head, STOREY)
    if sill > 0.0:
        wall_quad(mesh, -half, half, 0.0, sill)
        mesh.polygon(
            [(half, sill, 0), (-half, sill, 0), (-half, sill, back), (half, sill, back)],
            (0.0, 1.0, 0.0),
            [(half, 0), (-half, 0), (-half, -back), (half, -back)],
        )
    mesh.polygon(
        [(half, head, 0), (half, head, back), (-half, head, back), (-half, head, 0)],
        (0.0, -1.0, 0.0),
        [(half, 0), (half, -back), (-half, -back), (-half, 0)],
    )
    for x, sign in ((-half, 1.0), (half, -1.0)):
        mesh.polygon(
            [(x, sill, 0), (x, head, 0), (x, head, back), (x, sill, back)],
            (sign, 0.0, 0.0),
            [(0, STOREY - sill), (0, STOREY - head), (-back, STOREY - head), (-back, STOREY - sill)],
        )
    return mesh


def wallDoorway():
    return _wall_with_opening(DOOR_WIDTH, 0.0, DOOR_HEIGHT).scaled_uv(WALLPAPER)


def wallWindow():
    return _wall_with_opening(WINDOW_WIDTH, WINDOW_SILL, WINDOW_HEAD).scaled_uv(WALLPAPER)


def wallWindowShell():
    """Outer side of `wallWindow`, at the same origin: it keeps all light out that does not come through the window."""
    mesh = Mesh()
    half, back = WINDOW_WIDTH / 2, -WALL_THICKNESS - 0.01
    for x0, x1, y0, y1 in (
        (-1.0, -half, 0.0, STOREY),
        (half, 1.0, 0.0, STOREY),
        (-half, half, 0.0, WINDOW_SILL),
        (-half, half, WINDOW_HEAD, STOREY),
    ):
        mesh.facet([(x0, y1, back), (x1, y1, back), (x1, y0, back), (x0, y0, back)])
    return mesh.scaled_uv(PLASTER)


def _panelling(width, panels):
    """Wainscot: skirting, framed raised panels, chair rail."""
    mesh = Mesh()
    half = width / 2
    mesh.moulding([(0.15, 0.0), (0.15, 0.018), (0.135, 0.034), (0.11, 0.036), (0.0, 0.036)], -half, half)
    mesh.moulding(
        [(1.05, 0.0), (1.05, 0.05), (1.035, 0.056), (1.015, 0.05), (1.005, 0.034), (0.985, 0.028), (0.975, 0.016)],
        -half,
        half,
    )
    mesh.box((-half, 0.89, 0.0), (half, 0.985, 0.018), 0.004)
    mesh.box((-half, 0.14, 0.0), (half, 0.235, 0.018), 0.004)
    stile = 0.09
    step = (width - stile) / panels
    for i in range(panels + 1):
        x = -half + i * step
        mesh.box((x, 0.235, 0.0), (x + stile, 0.89, 0.018), 0.004, grain="y")
    for i in range(panels):
        x0, x1 = -half + i * step + stile, -half + (i + 1) * step
        raised_panel(mesh, x0, x1, 0.235, 0.89, 0.0, 0.016, 0.045)
    return mesh


def wainscot():
    return _panelling(2.0, 3).scaled_uv(WOOD)


def wainscotNarrow():
    return _panelling(0.40, 1).scaled_uv(WOOD)


def cornice():
    mesh = Mesh()
    top = STOREY
    mesh.moulding(
        [
            (top, 0.15),
            (top - 0.03, 0.15),
            (top - 0.04, 0.135),
            (top - 0.065, 0.125),
            (top - 0.10, 0.085),
            (top - 0.13, 0.045),
            (top - 0.14, 0.04),
            (top - 0.14, 0.028),
            (top - 0.20, 0.022),
            (top - 0.21, 0.0),
        ],
        -1.0,
        1.0,
    )
    return mesh.scaled_uv(PLASTER)


def skirting():
    mesh = Mesh()
    mesh.moulding([(0.15, 0.0), (0.15, 0.014), (0.135, 0.022), (0.0, 0.022)], -1.0, 1.0)
    return mesh.scaled_uv(WOOD)


def floor():
    mesh = Mesh()
    mesh.facet([(-1, 0, -1), (-1, 0, 1), (1, 0, 1), (1, 0, -1)])
    return mesh.scaled_uv(BOARDS)


def floorTiles():
    mesh = Mesh()
    mesh.facet([(-1.2, 0, -1.2), (-1.2, 0, 1.2), (1.2, 0, 1.2), (1.2, 0, -1.2)])
    return mesh.scaled_uv(TILES)


def ceiling():
    mesh = Mesh()
    mesh.facet([(-1, STOREY, -1), (1, STOREY, -1), (1, STOREY, 1), (-1, STOREY, 1)])
    return mesh.scaled_uv(PLASTER)


def ceilingBeam():
    mesh = Mesh()
    mesh.box((-3.0, STOREY - 0.21, -0.10), (3.0, STOREY + 0.02, 0.10), 0.014)
    return mesh.scaled_uv(WOOD)
