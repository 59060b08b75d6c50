"""Sizes that models agree on, and faces that several of them have."""

from mesh import cross, sub, unit

# Metres that one repeat of a surface covers.
PLASTER = WALLPAPER = BOARDS = STONE = 2.0
TILES = 1.2
WOOD = BRICK = RUST = 1.0
IRON = BRASS = LEATHER = CLOTH = 0.5
CERAMIC = 0.4
GLASS = 0.25
FITTED = 1.0  # texture coordinates already run over the whole texture

STOREY = 3.2  # floor to ceiling
WALL_THICKNESS = 0.18
DOOR_WIDTH, DOOR_HEIGHT = 1.0, 2.15
WINDOW_WIDTH, WINDOW_SILL, WINDOW_HEAD = 1.2, 1.08, 2.78


def wall_quad(mesh, x0, x1, y0, y1, z=0.0):
    """Upright rectangle that faces +z; u runs to the viewer's right, v down from the ceiling."""
    corners = [(x1, y1, z), (x0, y1, z), (x0, y0, z), (x1, y0, z)]
    mesh.polygon(corners, (0.0, 0.0, 1.0), [(1.0 - x, STOREY - y) for x, y, _ in corners])


def fitted_quad(mesh, corners):
    """Rectangle that shows a whole texture: corners clockwise from the top left as the viewer sees it."""
    normal = unit(cross(sub(corners[1], corners[0]), sub(corners[2], corners[0])))
    mesh.polygon(corners, normal, [(0.0, 0.0), (1.0, 0.0), (1.0, 1.0), (0.0, 1.0)])


def raised_panel(mesh, x0, x1, y0, y1, z, rise, slope):
    """Fielded panel: a sunk margin that slopes up to a flat middle."""
    outer = [(x1, y1, z), (x0, y1, z), (x0, y0, z), (x1, y0, z)]
    inner = [
        (x1 - slope, y1 - slope, z + rise),
        (x0 + slope, y1 - slope, z + rise),
        (x0 + slope, y0 + slope, z + rise),
        (x1 - slope, y0 + slope, z + rise),
    ]
    mesh.facet(inner, "y")
    for i in range(4):
        j = (i + 1) % 4
        mesh.facet([outer[i], outer[j], inner[j], inner[i]], "y" if i % 2 else "x")
