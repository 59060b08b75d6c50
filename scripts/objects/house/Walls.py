"""Walls that are drawn as a plan, with doors, windows and arches cut into them; and what fits into those.

    place.Walls(house, 'walls', plan=[[(0, 0), (8, 0), (8, 5), (0, 5), (0, 0)], [(4, 0), (4, 5)]],
                openings=[{'kind': 'door', 'wall': 4, 'along': 2.5, 'leaf': 'studyDoor', 'key': 'studyKey'},
                          {'kind': 'window', 'wall': 0, 'along': 2}])

The plan is lines of corners (x, z) in metres; walls count from 0 through all of them. `along` is metres from a wall's
first corner to the middle of an opening. A face wears `inside` where walls close around it, and `outside` elsewhere.
"""

from __future__ import annotations

import math
from typing import Any, Iterable, Literal, Mapping, Sequence, TypedDict

import kaVel
from objects.house.Doors import OPENING, DoorFrame, HingedDoor
from objects.house.MapSize import holdIn, mapOf
from objects.house.Plans import Face, Opening, Place, Plan, Point, area, triangles
from objects.Placing import Triple, around, placed
from objects.things.Bodies import Block
from objects.things.Drawn import Built
from objects.things.Models import mapsOf

#: What a wall may have cut into it. A window has a frame and panes, which stop bodies; what has a leaf is a door.
OpeningKind = Literal['door', 'window', 'arch', 'hole']


class Hole(TypedDict, total=False):
    """An opening of a wall: its kind, which wall, and where its middle is along it; the rest is as usual for the kind.

    `width`, `height` and the height of the `sill` are metres. A door that has a `leaf` has it under this name; with a
    `key` the leaf is locked until the player comes with it, `locked` without one waits for a happening to open it.
    `hinge` is 'left' or 'right', as seen by who has the plan's left side of the wall before him.
    """

    kind: OpeningKind
    wall: int
    along: float
    width: float
    height: float
    sill: float
    leaf: str
    key: str
    locked: bool
    hinge: Literal['left', 'right']


#: Width, height and sill of each kind, metres.
USUAL: dict[str, tuple[float, float, float]] = {
    'door': (*OPENING, 0.0), 'window': (1.1, 1.3, 0.9), 'arch': (1.4, 2.25, 0.0), 'hole': (0.8, 0.8, 0.0)}
#: What is told of a door's leaf.
LEAF = ('leaf', 'key', 'locked', 'hinge')
REPEATS = 0.5    # of a wall's texture a metre, as boxes have it
FOOT = 0.002     # metres by which a threshold stands out of the floor
BAR = 0.04       # metres that the wood of a window is thick
PANE_ROWS = 0.65  # height of a pane, metres, about
SILL = (0.05, 0.04)  # how far a window's board juts out, and how thick it is, metres


@kaVel.pattern
def Walls(parent: kaVel.Object, name: str = '', plan: Sequence[Sequence[Point]] = (((-3, 0), (3, 0)),),
          openings: Sequence[Hole] = (), height: float = 3.0, thick: float = 0.2, inside: str = 'wallpaper',
          outside: str = 'brick', rooms: Sequence[tuple[Point, str]] = (), threshold: str = 'wood',
          at: Triple = (0, 0, 0), turn: float = 0.0):
    """Walls along the lines of a plan, solid, with doors, windows, arches and holes cut into them.

    `plan` is lines of corners (x, z) around `at`; a line may close and may end on another wall, and none may cross.
    `rooms` are places on the plan and what the walls around them wear instead of `inside`. What `openings` are made of
    stands at `Hole`.
    """
    for parameter, surface in (('inside', inside), ('outside', outside), ('threshold', threshold),
                               *(('rooms', surface) for _, surface in rooms)):
        checkSurface(parameter, surface)
    drawn = Plan(plan, height, thick, [opening(number, hole) for number, hole in enumerate(openings)])
    wears = _surfacesOf(drawn, rooms)
    root = placed(parent, name, at=at, turn=turn)
    looks: dict[str, list[Face]] = {}
    for face in drawn.faces():
        looks.setdefault(threshold if face.kind == 'threshold'
                         else wears.get(face.room, inside) if face.room >= 0 else outside, []).append(face)
    for surface, faces in looks.items():
        covered(root, surface, faces, at, turn)
    for number, solid in enumerate(drawn.solids()):
        block = Block(root, 'solid%d' % number, at=around(at, turn, *solid.middle), turn=turn + solid.turn,
                      size=(solid.length, solid.height, thick))
        block.getComponent('boundingVolume').seeThrough = solid.isGlass
    for number, hole in enumerate(openings):
        _fitInto(root, drawn, number, hole, at, turn)
    holdIn(mapOf(parent), root, [around(at, turn, x, y, z) for face in drawn.faces() for x, y, z in face.edge])
    return root


def checkSurface(parameter: str, surface: str):
    """ValueError that names a parameter whose surface has no texture."""
    try:
        mapsOf(surface)
    except KeyError as unknown:
        raise ValueError('%s: %s; it is the name of a texture without its ending' % (parameter, unknown.args[0])) \
            from None


def opening(number: int, hole: Mapping[str, Any]) -> Opening:
    """An opening as the plan takes it; ValueError that says which one of a list is wrong, and how."""
    what = 'openings[%d]' % number
    unknown = [key for key in hole if key not in Hole.__annotations__]
    if unknown:
        raise ValueError('%s has a %r, which an opening has not%s'
                         % (what, unknown[0], kaVel.nearestHint(unknown[0], Hole.__annotations__)))
    kind = hole.get('kind', 'door')
    if kind not in USUAL:
        raise ValueError('%s is of the kind %r: there are %s' % (what, kind, ', '.join(USUAL)))
    sizes = [hole.get(key, usual) for key, usual in zip(('width', 'height', 'sill'), USUAL[kind])]
    numbers = [hole.get('wall'), hole.get('along'), *sizes]
    if not all(isinstance(each, (int, float)) and each == each for each in numbers):
        raise ValueError("%s needs numbers: 'wall', which one it is in, and 'along', metres from the wall's first "
                         'corner; it has %r' % (what, dict(hole)))
    if hole.get('hinge', 'left') not in ('left', 'right'):
        raise ValueError("%s has its hinge %r: it is 'left' or 'right'" % (what, hole.get('hinge')))
    hasLeaf = any(key in hole for key in LEAF)
    if hasLeaf and (kind != 'door' or not hole.get('leaf') or not _takesFrame(*sizes)):
        raise ValueError("%s: a leaf needs a name, {'leaf': 'studyDoor'}, and an opening of the kind 'door' that is "
                         '%g m wide and %g m high, or says nothing of its size' % (what, *OPENING))
    return Opening(kind, int(hole['wall']), float(hole['along']), *(float(size) for size in sizes))


def _takesFrame(width: float, height: float, sill: float) -> bool:
    return abs(width - OPENING[0]) < 0.011 and abs(height - OPENING[1]) < 0.011 and sill == 0


def _surfacesOf(plan: Plan, rooms: Sequence[tuple[Point, str]]) -> dict[int, str]:
    """The surfaces of the rooms that wear another one."""
    wears: dict[int, str] = {}
    for number, (spot, surface) in enumerate(rooms):
        room = plan.roomAt(spot)
        if room < 0:
            raise ValueError('rooms[%d]: no walls close around (%g, %g); name a place within a room'
                             % (number, *spot))
        wears[room] = surface
    return wears


# -- what is seen

def covered(parent: kaVel.Entity, surface: str, faces: Iterable[Face], at: Triple, turn: float):
    """Draws faces in one surface, whose texture lies in the world: it goes on over neighbours of the same turn."""
    faces = list(faces)
    places = [corner for face in faces for corner in face.edge]
    low, high = ([pick(place[axis] for place in places) for axis in range(3)] for pick in (min, max))
    middle = (low[0] + high[0]) / 2, low[1], (low[2] + high[2]) / 2
    mesh = kaVel.MeshBuilder()
    for face in faces:
        _addFace(mesh, face, middle, at, turn)
    mesh.generateTangents()
    return Built(parent, surface, mesh=mesh, at=around(at, turn, *middle), turn=turn, surface=surface)


def _addFace(mesh: kaVel.MeshBuilder, face: Face, middle: Triple, at: Triple, turn: float):
    nx, ny, nz = face.normal
    lies = abs(ny) > 0.7
    rise = FOOT if face.kind == 'threshold' else 0.0

    def flat(place: Place) -> Point:
        """A place in the face's own plane, as who stands before it has it: to the right and up."""
        return (place[0], place[2]) if lies else (nx * place[2] - nz * place[0], place[1])

    corners = {flat(place): place for place in (*face.edge, *(place for hole in face.holes for place in hole))}
    edge, holes = [flat(place) for place in face.edge], [[flat(place) for place in hole] for hole in face.holes]
    if area(edge) < 0:
        edge, holes = edge[::-1], [hole[::-1] for hole in holes]
    numbers: dict[Point, int] = {}
    for spot, (x, y, z) in corners.items():
        u, v = _texture((x, y, z), face.normal, at, turn)
        numbers[spot] = mesh.addVertex(kaVel.Vec4(x - middle[0], y - middle[1] + rise, z - middle[2], 1),
                                       kaVel.Vec4(nx, ny, nz, 0), u * REPEATS, v * REPEATS)
    for a, b, c in triangles(edge, holes):
        order = (a, b, c) if lies and ny < 0 else (c, b, a)  # fronts are clockwise
        mesh.addTriangle(*(numbers[spot] for spot in order))


def _texture(place: Place, normal: Triple, at: Triple, turn: float) -> Point:
    """Where a place of a face lies on its texture, in metres of the world: to the right and down."""
    x, y, z = around(at, turn, *place)
    if abs(normal[1]) > 0.7:
        return x, -z
    nx, _, nz = around((0, 0, 0), turn, *normal)
    return nx * z - nz * x, -y


# -- what fits into openings

def _fitInto(root: kaVel.Entity, plan: Plan, number: int, hole: Hole, at: Triple, turn: float):
    """Builds what belongs into an opening: the frame of a door and its leaf, or a window."""
    cut = plan.openings[number]
    wall = plan.walls[cut.wall]
    x, z = wall.at(cut.along)
    foot, way = around(at, turn, x, cut.sill, z), turn + wallTurn(wall.way)
    if cut.kind == 'window':
        Window(root, 'window%d' % number, at=foot, turn=way, width=cut.width, height=cut.height, deep=plan.thick)
    elif cut.kind == 'door' and 'leaf' in hole:
        HingedDoor(root, hole['leaf'], at=foot, turn=way, key=hole.get('key') or None, frame=plan.thick,
                   locked=hole.get('locked', False), leftHanded=hole.get('hinge', 'left') == 'left')
    elif cut.kind == 'door' and _takesFrame(cut.width, cut.height, cut.sill):
        DoorFrame(root, 'frame%d' % number, at=foot, turn=way, deep=plan.thick)


def wallTurn(way: Point) -> float:
    """The turn of what stands along a wall of some direction, degrees: its right is where the wall goes."""
    return math.degrees(math.atan2(-way[1], way[0]))


@kaVel.pattern
def Window(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, width: float = 1.1,
           height: float = 1.3, deep: float = 0.2, surface: str = 'wood', pane: str = 'nightWindow'):
    """A window's frame, bars, board and panes for an opening of this size; `at` is the middle of the opening's foot.

    The wall is `deep` metres thick. Without a `pane`, '', there is nothing between the bars.
    """
    mesh = kaVel.MeshBuilder()

    def bar(x: float, y: float, wide: float, high: float, thick: float = BAR, z: float = 0.0):
        piece = kaVel.MeshBuilder()
        piece.addBox(kaVel.Vec4(wide / 2, high / 2, thick / 2, 0))
        piece.applyWorldTextureCoordinates(1.0)
        mesh.merge(piece, at=kaVel.Vec4(x, y, z, 1))

    for side in (-1.0, 1.0):
        bar(side * (width - BAR) / 2, height / 2, BAR, height, deep / 2)
        bar(0, height / 2 + side * (height - BAR) / 2, width - 2 * BAR, BAR, deep / 2)
        bar(0, -SILL[1] / 2 + 0.012, width + 2 * SILL[0], SILL[1], SILL[0] + 0.02, side * (deep + SILL[0] - 0.02) / 2)
    bar(0, height / 2, BAR * 0.9, height - 2 * BAR)
    rows = max(2, round(height / PANE_ROWS))
    for row in range(1, rows):
        bar(0, height * row / rows, width - 2 * BAR, BAR * 0.8, BAR * 0.9)
    mesh.generateTangents()
    window = Built(parent, name, mesh=mesh, at=at, turn=turn, surface=surface)
    if pane:
        _glaze(window, at, turn, width - 2 * BAR, height, pane)
    return window


def _glaze(window: kaVel.Entity, at: Triple, turn: float, width: float, height: float, surface: str):
    """Panes that are seen from both sides and let the moon through."""
    mesh = kaVel.MeshBuilder()
    x, top = width / 2, height - BAR
    corners = [kaVel.Vec4(a, b, 0, 1) for a, b in ((-x, top), (x, top), (x, BAR), (-x, BAR))]
    mesh.addQuad(*corners)
    mesh.addQuad(*(corners[index] for index in (1, 0, 3, 2)))
    mesh.generateTangents()
    Built(window, 'pane', mesh=mesh, at=at, turn=turn, surface=surface, castShadows=False)
