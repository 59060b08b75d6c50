"""Floors and ceilings of any outline, and whole rooms in one call.

    place.Room(house, 'flat', size=(8, 5), partitions=[[(1, -2.5), (1, 2.5)]],
               openings=[{'kind': 'door', 'wall': 4, 'along': 2, 'leaf': 'bedroomDoor'},
                         {'kind': 'window', 'wall': 0, 'along': 2.5}])
"""

from __future__ import annotations

from typing import Any, Mapping, Sequence

import kaVel
from objects.house.MapSize import holdIn, mapOf
from objects.house.Plans import Line, Plan, Point, checkedOutline, holds, slab, strips
from objects.house.Walls import Hole, Walls, checkSurface, covered
from objects.Placing import Pair, Triple, around, placed
from objects.things.Bodies import Block

THICK = 0.12  # metres, of floors and ceilings

#: An outline of 4 by 4 m, anticlockwise from the south-west.
SQUARE: Line = ((-2, -2), (2, -2), (2, 2), (-2, 2))


def _area(parent: kaVel.Object, name: str, outline: Sequence[Point], at: Triple, turn: float, low: float, high: float,
          surface: str, solid: bool):
    """A board of an outline between two heights above `at`."""
    checkSurface('surface', surface)
    corners = checkedOutline(outline, 'the outline')
    root = placed(parent, name, at=at, turn=turn)
    covered(root, surface, slab(corners, low, high), at, turn)
    if solid:
        for number, (left, right, near, far) in enumerate(strips(corners)):
            Block(root, 'solid%d' % number, at=around(at, turn, (left + right) / 2, low, (near + far) / 2), turn=turn,
                  size=(right - left, high - low, far - near))
    holdIn(mapOf(parent), root, [around(at, turn, x, 0.0, z) for x, z in corners])
    return root


@kaVel.pattern
def FloorArea(parent: kaVel.Object, name: str = '', outline: Sequence[Point] = SQUARE, surface: str = 'boards',
              at: Triple = (0, 0, 0), turn: float = 0.0, solid: bool = True):
    """A floor of any outline, its corners (x, z) around `at`; one walks on it at the height of `at`.

    The surface says what steps sound like. A floor that only lies on another one need not be `solid`.
    """
    return _area(parent, name, outline, at, turn, -THICK, 0.0, surface, solid)


@kaVel.pattern
def CeilingArea(parent: kaVel.Object, name: str = '', outline: Sequence[Point] = SQUARE, surface: str = 'plaster',
                at: Triple = (0, 3.0, 0), turn: float = 0.0, solid: bool = True):
    """A ceiling of any outline, its corners (x, z) around `at`; its underside is at the height of `at`."""
    return _area(parent, name, outline, at, turn, 0.0, THICK, surface, solid)


@kaVel.pattern
def Room(parent: kaVel.Object, name: str = '', size: Pair = (5, 4), outline: Sequence[Point] = (),
         partitions: Sequence[Sequence[Point]] = (), openings: Sequence[Hole] = (), height: float = 3.0,
         thick: float = 0.2, floor: str = 'boards', inside: str = 'wallpaper', outside: str = 'brick',
         ceiling: str = 'plaster', rooms: Sequence[tuple[Point, str]] = (), floors: Sequence[tuple[Point, str]] = (),
         without: Sequence[int] = (), threshold: str = 'wood', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A room, or a whole floor of them: walls, floor and ceiling in one call.

    It is a rectangle of `size` around `at`, or has an `outline` of corners (x, z). Its sides are the walls 0, 1, 2 ...
    from the first corner on, of a rectangle south, east, north, west; `partitions` are lines of walls within, which
    count on. `openings` are cut as into `Walls`. `rooms` and `floors` are places and what the walls around them and the
    floors below them wear instead of `inside` and `floor`; a surface of '' is left out. `without` are sides that have
    no wall, since the room goes on there.
    """
    corners = checkedOutline(outline or _rectangle(size), 'outline')
    lines, numbers = _sides(corners, partitions, without)
    root = placed(parent, name, at=at, turn=turn)
    Walls(root, 'walls', plan=lines, openings=[_renumbered(each, hole, numbers) for each, hole in enumerate(openings)],
          height=height, thick=thick, inside=inside, outside=outside, rooms=rooms, threshold=threshold, at=at,
          turn=turn)
    if floor:
        _floors(root, corners, Plan(lines, height, thick), floor, floors, at, turn)
    if ceiling:
        CeilingArea(root, 'ceiling', outline=corners, surface=ceiling, at=(at[0], at[1] + height, at[2]), turn=turn)
    holdIn(mapOf(parent), root, [around(at, turn, x, y, z) for x, z in corners for y in (0.0, height)])
    return root


def _rectangle(size: Pair) -> Line:
    x, z = size[0] / 2, size[1] / 2
    return (-x, -z), (x, -z), (x, z), (-x, z)


def _sides(corners: list[Point], partitions: Sequence[Sequence[Point]],
           without: Sequence[int]) -> tuple[list[Sequence[Point]], dict[int, int]]:
    """The lines of a room's walls, and the number in those by a wall's number in the room."""
    count = len(corners)
    wrong = [side for side in without if not 0 <= side < count]
    if wrong:
        raise ValueError('without names side %r, and the room has sides 0 to %d' % (wrong[0], count - 1))
    kept = [side for side in range(count) if side not in without]
    lines: list[Sequence[Point]] = [(corners[side], corners[(side + 1) % count]) for side in kept]
    numbers = {side: number for number, side in enumerate(kept)}
    inner = sum(max(len(line) - 1, 0) for line in partitions)
    numbers.update((count + number, len(kept) + number) for number in range(inner))
    return [*lines, *partitions], numbers


def _renumbered(number: int, hole: Hole, numbers: dict[int, int]) -> Hole:
    if 'wall' in hole and hole['wall'] not in numbers:
        raise ValueError('openings[%d] is in wall %r, and the room has the walls %s'
                         % (number, hole['wall'], ', '.join(map(str, numbers))))
    return {**hole, 'wall': numbers[hole['wall']]} if 'wall' in hole else hole


def planOf(pattern: str, arguments: Mapping[str, Any]) -> tuple[Plan, dict[int, int]]:
    """The plan of `Walls` or a `Room`, without openings, and the numbers of its walls by those of the piece."""
    lines, numbers = arguments.get('plan', ()), None
    if pattern == 'Room':
        corners = checkedOutline(arguments['outline'] or _rectangle(arguments['size']), 'outline')
        lines, numbers = _sides(corners, arguments['partitions'], arguments['without'])
    plan = Plan(lines, arguments['height'], arguments['thick'])
    return plan, numbers or {number: number for number in range(len(plan.walls))}


def _floors(root: kaVel.Entity, corners: list[Point], plan: Plan, surface: str, others: Sequence[tuple[Point, str]],
            at: Triple, turn: float):
    """One floor below all, and on it those of rooms that wear another one."""
    FloorArea(root, 'floor', outline=corners, surface=surface, at=at, turn=turn)
    for number, (spot, other) in enumerate(others):
        room = next((room for room in plan.rooms if holds(room, spot)), None)
        if room is None:
            raise ValueError('floors[%d]: no walls close around (%g, %g); name a place within a room' % (number, *spot))
        FloorArea(root, 'floor%d' % number, outline=room, surface=other, at=(at[0], at[1] + 0.003, at[2]), turn=turn,
                  solid=False)
