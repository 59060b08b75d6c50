"""Books, singly and in rows, and paper. Spines are cut from the books texture."""

import math
import random

from mesh import Mesh, turn_y, turn_z
from textures.paper import BOOK_SPINES, BOOK_SPINE_PART


def _book(mesh, rng, place, turn=0.0, lean=0.0, flat=False, size=None):
    """One closed book: bound boards, page block and a rounded spine cut from the books texture."""
    thick, tall, deep = size or (rng.uniform(0.018, 0.052), rng.uniform(0.19, 0.29), rng.uniform(0.14, 0.19))
    binding = rng.randrange(BOOK_SPINES)
    u0, u1 = (binding + 0.04) / BOOK_SPINES, (binding + 0.96) / BOOK_SPINES
    book = Mesh()
    half, board = thick / 2, 0.003
    cover_u = (u0 + u1) / 2

    def cover(corners, normal):
        # Covers take a narrow, unlettered stripe of their own spine, so that book and back are of one leather.
        v_low = 0.72
        book.polygon(
            corners, normal, [(cover_u + 0.004 * (i in (1, 2)), v_low + 0.022 * (i in (2, 3))) for i in range(4)]
        )

    def pages(corners, normal):
        book.polygon(corners, normal, [(0.56, 0.78), (0.96, 0.78), (0.96, 0.97), (0.56, 0.97)])

    for sign in (-1.0, 1.0):
        x_out, x_in = sign * half, sign * (half - board)
        n = (sign, 0.0, 0.0)
        cover([(x_out, 0, -deep), (x_out, tall, -deep), (x_out, tall, 0), (x_out, 0, 0)], n)
        cover([(x_in, 0, -deep), (x_in, tall, -deep), (x_in, tall, 0), (x_in, 0, 0)], (-sign, 0.0, 0.0))
        cover([(x_out, tall, -deep), (x_out, tall, 0), (x_in, tall, 0), (x_in, tall, -deep)], (0.0, 1.0, 0.0))
        cover([(x_out, 0, -deep), (x_out, tall, -deep), (x_in, tall, -deep), (x_in, 0, -deep)], (0.0, 0.0, -1.0))
    low, high, front = 0.004, tall - 0.005, -deep + 0.006
    inner = half - board
    pages([(-inner, high, 0), (inner, high, 0), (inner, high, front), (-inner, high, front)], (0.0, 1.0, 0.0))
    pages([(-inner, low, 0), (inner, low, 0), (inner, low, front), (-inner, low, front)], (0.0, -1.0, 0.0))
    pages([(-inner, high, front), (inner, high, front), (inner, low, front), (-inner, low, front)], (0.0, 0.0, -1.0))
    rings = []
    for y, v in ((0.0, BOOK_SPINE_PART - 0.004), (tall, 0.004)):
        ring = []
        for i in range(7):
            angle = math.pi * (i / 6 - 0.5) * 0.72
            s, c = math.sin(angle), math.cos(angle)
            spread = half / math.sin(math.pi * 0.36)
            ring.append(
                book.vertex(
                    (-s * spread, y, (c - math.cos(math.pi * 0.36)) * spread * 0.55),
                    (-s, 0.0, c),
                    (u0 + (u1 - u0) * i / 6, v),
                )
            )
        rings.append(ring)
    book.stitch(rings)
    top = [book.vertices[i][0] for i in rings[1]]
    book.polygon(top, (0.0, 1.0, 0.0), [(cover_u, 0.73)] * 3 + [(cover_u + 0.003, 0.735)] * 4)
    if flat:
        book.turned(turn_z, math.pi / 2).moved((tall / 2, half, 0.0))
    elif lean:
        book.turned(turn_z, lean)
    mesh.joined(book.turned(turn_y, turn).moved(place))
    return thick, tall, deep


def _book_row(seed, width, gap_at=None):
    """Books on a shelf, spines to +z, between x = -width / 2 and width / 2."""
    rng = random.Random(seed)
    mesh = Mesh()
    x = -width / 2
    while True:
        thick, tall = rng.uniform(0.018, 0.050), rng.choice((rng.uniform(0.19, 0.24), rng.uniform(0.22, 0.285)))
        deep = rng.uniform(0.15, 0.19)
        if x + thick > width / 2:
            return mesh
        lean = 0.0
        if gap_at and gap_at[0] < x < gap_at[1]:
            lean = 0.24
            x += tall * math.sin(lean)
            gap_at = (gap_at[1] + 9, gap_at[1] + 9)
            if x + thick > width / 2:
                return mesh
        pushed = rng.uniform(-0.028, 0.012)
        foot = thick / 2 * math.sin(abs(lean))
        _book(mesh, rng, (x + thick / 2, foot, 0.085 + pushed), lean=lean, size=(thick, tall, deep))
        x += thick * (1.0 / math.cos(lean)) + rng.choice((0.0006, 0.0006, 0.002))
        if gap_at and rng.random() < 0.04:
            x += 0.05


def bookRowA():
    return _book_row("row a", 1.12)


def bookRowB():
    return _book_row("row b", 1.10, (0.05, 0.3))


def bookRowC():
    return _book_row("row c", 0.70, (0.0, 0.2))


def bookStack():
    """Six books lying on one another, not quite square."""
    rng = random.Random("stack")
    mesh = Mesh()
    y = 0.0
    for _ in range(6):
        size = (rng.uniform(0.022, 0.05), rng.uniform(0.21, 0.27), rng.uniform(0.15, 0.19))
        _book(
            mesh,
            rng,
            (rng.uniform(-0.012, 0.012), y, 0.085 + rng.uniform(-0.01, 0.01)),
            turn=rng.uniform(-0.28, 0.28),
            flat=True,
            size=size,
        )
        y += size[0] + 0.0005
    return mesh


def bookSingle():
    mesh = Mesh()
    _book(mesh, random.Random("single 3"), (0.0, 0.0, 0.08), flat=True, size=(0.038, 0.25, 0.17))
    return mesh


def openBook():
    """A book lying open: two swelling halves of pages, each showing one written sheet."""
    mesh = Mesh()
    for side in (-1.0, 1.0):

        def page(s, t, side=side):
            # The reader sits at +z, so the right page lies towards -x and its inner edge is its left one.
            swell = max(0.0, math.sin(min(1.0, s * 1.25 + 0.1) * math.pi)) ** 0.8
            z = 0.14 - 0.28 * (t if side > 0 else 1.0 - t)
            return (-side * s * 0.19, 0.012 + 0.030 * swell * (1.0 - 0.35 * s), z), (
                s if side > 0 else 1.0 - s,
                0.5 + z / 0.28,
            )

        mesh.surface(page, 12, 2)
    for z, sign in ((0.14, 1.0), (-0.14, -1.0)):
        mesh.box((-0.195, 0.0, min(z, z - sign * 0.004)), (0.195, 0.012, max(z, z - sign * 0.004)), 0.001)
    for x in (-0.19, 0.19):
        mesh.box((x - 0.003, 0.0, -0.14), (x + 0.003, 0.016, 0.14), 0.001, "z")
    return mesh


def paperSheet():
    """One written sheet with a curled corner, readable from +z, lying on y = 0."""
    mesh = Mesh()

    def sheet(s, t):
        x, z = 0.105 - 0.21 * s, -0.1485 + 0.297 * t
        curl = max(0.0, s + t - 1.45) ** 2 * 0.06 + max(0.0, 0.35 - s - t) ** 2 * 0.10
        return (x, 0.0012 + curl, z), (s, t)

    mesh.surface(lambda s, t: sheet(1.0 - s, t), 8, 8)
    return mesh
