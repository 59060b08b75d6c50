"""Plans of walls, seen from above: lines of corners, the openings in them, and all that follows from both.

A plan is a list of lines, a line a list of corners (x, z) in metres, and a wall runs from corner to corner. Walls count
from 0 through all lines. A line whose last corner is its first one is closed; a line may end on another wall. Nothing
here knows the engine: faces are points and normals, solids are boxes, rooms are outlines.
"""

from __future__ import annotations

import math
from typing import Iterator, NamedTuple, Sequence

#: A place on the plan: x to the right and z up, metres.
Point = tuple[float, float]
#: Corners that are joined by walls.
Line = Sequence[Point]
Place = tuple[float, float, float]

#: Corners that are nearer than this are one, metres; a line that ends so near to a wall ends on it.
SAME = 0.01
#: What has to be left of a wall beside and above an opening, metres.
CLEAR = 0.02
#: Walls do not meet at a smaller angle, degrees: their corner would be a blade.
SHARPEST = 15.0
#: What bodies and looks pass; a window is closed to bodies.
PASSAGES = ('door', 'arch', 'hole')
ARC = 12  # straight parts of an arch


class Opening(NamedTuple):
    """A hole in a wall: `along` is its middle from the wall's first corner, `sill` its height above the foot."""

    kind: str
    wall: int
    along: float
    width: float
    height: float
    sill: float

    def path(self, start: float) -> list[Point]:
        """Its edge, clockwise from its lower left, in metres along from `start` and up."""
        left, top = self.along - start - self.width / 2, self.sill + self.height
        right = left + self.width
        if self.kind != 'arch':
            return [(left, self.sill), (left, top), (right, top), (right, self.sill)]
        middle, half, rise = (left + right) / 2, self.width / 2, min(self.width / 2, self.height / 2)
        turns = [math.pi * step / ARC for step in range(ARC + 1)]
        bow = [(middle - half * math.cos(turn), top - rise + rise * math.sin(turn)) for turn in turns]
        return [(left, self.sill), (left, top - rise), *bow[1:-1], (right, top - rise), (right, self.sill)]


class Wall(NamedTuple):
    """A straight wall between two corners."""

    start: Point
    end: Point

    @property
    def length(self) -> float:
        return math.dist(self.start, self.end)

    @property
    def way(self) -> Point:
        """Its direction, length 1."""
        length = self.length
        return (self.end[0] - self.start[0]) / length, (self.end[1] - self.start[1]) / length

    def at(self, along: float, left: float = 0.0) -> Point:
        """A place so far along the wall, and so far to its left."""
        (x, z), (dx, dz) = self.start, self.way
        return x + dx * along - dz * left, z + dz * along + dx * left

    def measure(self, place: Point) -> Point:
        """How far along the wall a place is, and how far to the left of it."""
        (dx, dz), x, z = self.way, place[0] - self.start[0], place[1] - self.start[1]
        return x * dx + z * dz, z * dx - x * dz


class Face(NamedTuple):
    """A flat piece of a wall's surface: its edge and the holes in it, and the direction that it looks in.

    `room` is the number of the room that it looks into, -1 for the outside.
    """

    edge: list[Place]
    holes: list[list[Place]]
    normal: Place
    room: int
    kind: str  # 'side', 'end', 'top', 'reveal' or 'threshold'


class Solid(NamedTuple):
    """An upright box: the middle of its foot, its length along the wall, its height, and the wall's turn in degrees."""

    middle: Place
    length: float
    height: float
    turn: float
    isGlass: bool


class _Edge(NamedTuple):
    """A part of a wall between two nodes."""

    first: int
    last: int
    wall: int
    start: float  # metres from the wall's first corner


class Plan:
    """The walls of a plan, of one height and thickness, and what follows from them.

    ValueError that names the walls and says what to do, for what cannot be built.
    """

    def __init__(self, lines: Sequence[Line], height: float = 3.0, thick: float = 0.2,
                 openings: Sequence[Opening] = ()):
        for name, value in (('height', height), ('thick', thick)):
            if not 0.01 <= value <= 1000:
                raise ValueError('%s is %r: walls are between 0.01 and 1000 m; give a number of metres' % (name, value))
        self.height, self.thick, self.half = height, thick, thick / 2
        self.walls = wallsOf(lines)
        self.openings = list(openings)
        self._checkCrossings()
        self.nodes: list[Point] = []
        self.edges = self._split()
        self._corners = self._mitre()  # (node, edge) -> its corners to the left and right, seen from the node
        self._checkLengths()
        self.rooms, self._sides = self._trace()
        self._checkOpenings()

    # -- from lines to edges that meet in nodes

    def _checkCrossings(self):
        for second, other in enumerate(self.walls):
            for first in range(second):
                meets = crossing(self.walls[first], other)
                if meets:
                    raise ValueError('walls %d and %d of the plan cross at (%.2f, %.2f): end one of them there, or '
                                     'give both a corner at that place' % (first, second, *meets))

    def _split(self) -> list[_Edge]:
        edges: list[_Edge] = []
        for wall in self.walls:
            for corner in wall:
                self._nodeAt(corner)
        for number, wall in enumerate(self.walls):
            stops = sorted((wall.measure(node)[0], index) for index, node in enumerate(self.nodes) if isOn(wall, node))
            edges += [_Edge(a, b, number, start) for (start, a), (_, b) in zip(stops, stops[1:])]
        seen: dict[tuple[int, int], int] = {}
        for edge in edges:
            key = min(edge.first, edge.last), max(edge.first, edge.last)
            if key in seen:
                raise ValueError('walls %d and %d of the plan lie on each other: leave one of them out, or shorten it'
                                 % (seen[key], edge.wall))
            seen[key] = edge.wall
        return edges

    def _nodeAt(self, corner: Point) -> int:
        for number, node in enumerate(self.nodes):
            if math.dist(node, corner) < SAME:
                return number
        self.nodes.append(corner)
        return len(self.nodes) - 1

    def line(self, edge: _Edge) -> Wall:
        """An edge as a wall of its own."""
        return Wall(self.nodes[edge.first], self.nodes[edge.last])

    # -- corners

    def _around(self, node: int) -> list[tuple[float, int]]:
        """The edges at a node by the angle at which they leave it, anticlockwise."""
        leaving: list[tuple[float, int]] = []
        for number, edge in enumerate(self.edges):
            if node in (edge.first, edge.last):
                (x, z), far = self.nodes[node], self.nodes[edge.last if edge.first == node else edge.first]
                leaving.append((math.atan2(far[1] - z, far[0] - x), number))
        return sorted(leaving)

    def _mitre(self) -> dict[tuple[int, int], tuple[Point, Point]]:
        corners: dict[tuple[int, int], tuple[Point, Point]] = {}
        self._stars = [self._around(node) for node in range(len(self.nodes))]
        for node, star in enumerate(self._stars):
            between = [self._corner(node, star, number) for number in range(len(star))]
            for number, (angle, edge) in enumerate(star):
                left, right = between[number], between[number - 1]
                if len(star) == 1:
                    right = self._off(node, angle, -self.half)
                corners[node, edge] = left, right
        return corners

    def _checkLengths(self):
        for number, edge in enumerate(self.edges):
            start, end = self._span(number)
            if end - start < CLEAR:
                raise ValueError('wall %d of the plan is too short there (%.2f m) for walls %.2f m thick: draw it '
                                 'longer, or the walls thinner' % (edge.wall, self.line(edge).length, self.thick))

    def _off(self, node: int, angle: float, left: float, along: float = 0.0) -> Point:
        (x, z), c, s = self.nodes[node], math.cos(angle), math.sin(angle)
        return x + c * along - s * left, z + s * along + c * left

    def _corner(self, node: int, star: list[tuple[float, int]], number: int) -> Point:
        """Where the left face of an edge meets the right face of the next one around a node."""
        (angle, edge), (after, other) = star[number], star[(number + 1) % len(star)]
        if len(star) == 1:
            return self._off(node, angle, self.half)
        gap = (after - angle) % math.tau
        if gap < math.radians(SHARPEST):
            raise ValueError('walls %d and %d of the plan meet at only %.0f degrees: %.0f is the least; move a corner'
                             % (self.edges[edge].wall, self.edges[other].wall, math.degrees(gap), SHARPEST))
        return self._off(node, angle, self.half, self.half / math.tan(gap / 2))

    def ends(self, number: int) -> tuple[tuple[Point, Point], tuple[Point, Point]]:
        """First and last corner of the left side of an edge, and of its right side, both along the edge."""
        edge = self.edges[number]
        (left, right), (otherRight, otherLeft) = self._corners[edge.first, number], self._corners[edge.last, number]
        return (left, otherLeft), (right, otherRight)

    def _span(self, number: int) -> tuple[float, float]:
        """From where to where along an edge both of its sides are there."""
        line = self.line(self.edges[number])
        (left, otherLeft), (right, otherRight) = self.ends(number)
        return (max(line.measure(left)[0], line.measure(right)[0]),
                min(line.measure(otherLeft)[0], line.measure(otherRight)[0]))

    # -- rooms

    def _trace(self) -> tuple[list[list[Point]], dict[tuple[int, int], int]]:
        """The outlines that walls close around rooms, and the room by the edge and its side: 1 left, -1 right."""
        rooms: list[list[Point]] = []
        sides: dict[tuple[int, int], int] = {}
        outer: list[tuple[list[Point], list[tuple[int, int]]]] = []
        for number in range(len(self.edges)):
            for side in (1, -1):
                if (number, side) in sides:
                    continue
                passed, outline = self._follow(number, side)
                isRoom = area(outline) > 0
                sides.update((each, len(rooms) if isRoom else -1) for each in passed)
                if isRoom:
                    rooms.append(outline)
                else:
                    outer.append((outline, passed))
        for outline, passed in outer:  # what stands free within a room
            around = [number for number, room in enumerate(rooms) if all(holds(room, corner) for corner in outline)]
            if around:
                smallest = min(around, key=lambda number: area(rooms[number]))
                sides.update((each, smallest) for each in passed)
        return rooms, sides

    def _follow(self, number: int, side: int) -> tuple[list[tuple[int, int]], list[Point]]:
        """The sides of edges that follow one another, what they enclose to their left, and its corners."""
        passed: list[tuple[int, int]] = []
        outline: list[Point] = []
        while (number, side) not in passed:
            passed.append((number, side))
            (left, otherLeft), (right, otherRight) = self.ends(number)
            outline += [left, otherLeft] if side > 0 else [otherRight, right]
            node = self.edges[number].last if side > 0 else self.edges[number].first
            star = [edge for _, edge in self._stars[node]]
            number = star[star.index(number) - 1]
            side = 1 if self.edges[number].first == node else -1
        return passed, [corner for before, corner in zip(outline[-1:] + outline, outline) if corner != before]

    def roomAt(self, place: Point) -> int:
        """The number of the room that a place lies in; -1 for none."""
        return next((number for number, room in enumerate(self.rooms) if holds(room, place)), -1)

    # -- openings

    def _checkOpenings(self):
        for number, opening in enumerate(self.openings):
            what = 'openings[%d], the %s,' % (number, opening.kind)
            if not 0 <= opening.wall < len(self.walls):
                raise ValueError('%s is in wall %d, and the plan has walls 0 to %d'
                                 % (what, opening.wall, len(self.walls) - 1))
            if not (opening.width >= 0.05 and opening.height >= 0.05 and opening.sill >= 0):
                raise ValueError('%s is %g by %g m at %g m: width and height are 0.05 or more, the sill 0 or more'
                                 % (what, opening.width, opening.height, opening.sill))
            if opening.sill + opening.height > self.height - CLEAR:
                raise ValueError('%s reaches up to %.2f m in a wall of %.2f m: make it lower, or the wall higher'
                                 % (what, opening.sill + opening.height, self.height))
            if not any(self._fits(edge, opening) for edge in self._edgesOf(opening.wall)):
                raise ValueError('%s takes wall %d from %.2f to %.2f m, and the wall is clear %s: move it, or make it '
                                 'narrower' % (what, opening.wall, opening.along - opening.width / 2,
                                               opening.along + opening.width / 2, self._clearText(opening.wall)))
            for other, before in enumerate(self.openings[:number]):
                apart = abs(before.along - opening.along) - (before.width + opening.width) / 2
                if before.wall == opening.wall and apart < CLEAR:
                    raise ValueError('%s meets openings[%d] in wall %d: move one of them by %.2f m'
                                     % (what, other, opening.wall, CLEAR - apart))

    def _edgesOf(self, wall: int) -> list[int]:
        return [number for number, edge in enumerate(self.edges) if edge.wall == wall]

    def clear(self, wall: int) -> list[tuple[float, float]]:
        """From where to where along a wall there is room for openings."""
        spans = ((self.edges[number].start, self._span(number)) for number in self._edgesOf(wall))
        return [(start + low + CLEAR, start + high - CLEAR) for start, (low, high) in spans]

    def _clearText(self, wall: int) -> str:
        return ' and '.join('from %.2f to %.2f m' % span for span in self.clear(wall))

    def _fits(self, number: int, opening: Opening) -> bool:
        edge, (low, high) = self.edges[number], self._span(number)
        start, half = opening.along - edge.start, opening.width / 2
        return low + CLEAR <= start - half + 1e-6 and start + half <= high - CLEAR + 1e-6

    def openingsOf(self, number: int) -> list[Opening]:
        """The openings of an edge, from its first node on."""
        edge = self.edges[number]
        found = [each for each in self.openings if each.wall == edge.wall and self._fits(number, each)]
        return sorted(found, key=lambda each: each.along)

    # -- faces

    def faces(self) -> Iterator[Face]:
        """All that is seen of the walls; neighbours share their corners to the last bit."""
        for number in range(len(self.edges)):
            yield from self._facesOf(number)
        for node, star in enumerate(self._stars):
            if len(star) == 1:
                yield self._end(node, star[0][1])

    def _facesOf(self, number: int) -> Iterator[Face]:
        edge = self.edges[number]
        line, holes = self.line(edge), self.openingsOf(number)
        (dx, dz) = line.way
        for side, (first, last) in zip((1, -1), self.ends(number)):
            low, rings = [], []
            for hole in holes:
                path = [self._onSide(line, side, *each) for each in hole.path(edge.start)]
                if hole.sill == 0:
                    low += path
                else:
                    rings.append(path)
            outline = [up(first, 0.0), *low, up(last, 0.0), up(last, self.height), up(first, self.height)]
            yield Face(outline, rings, (-side * dz, 0.0, side * dx), self._sides[number, side], 'side')
        for hole in holes:
            yield from self._reveals(number, line, hole)
        (left, otherLeft), (right, otherRight) = self.ends(number)
        around = [left, otherLeft, *self._knot(edge.last), otherRight, right, *self._knot(edge.first)]
        yield Face([up(corner, self.height) for corner in around], [], (0.0, 1.0, 0.0), -1, 'top')

    def _knot(self, node: int) -> list[Point]:
        """The middle of a node where edges meet, for those have their tops to it."""
        return [self.nodes[node]] if len(self._stars[node]) > 1 else []

    def _onSide(self, line: Wall, side: int, along: float, height: float) -> Place:
        return up(line.at(along, side * self.half), height)

    def _reveals(self, number: int, line: Wall, hole: Opening) -> Iterator[Face]:
        """What is seen of the wall's inside in an opening."""
        path, (dx, dz), room = hole.path(self.edges[number].start), line.way, self._sides[number, 1]
        for (along, height), (after, higher) in zip(path, path[1:] + path[:1]):
            corners = [self._onSide(line, side, a, h) for side, a, h in
                       ((1, along, height), (1, after, higher), (-1, after, higher), (-1, along, height))]
            length = math.hypot(after - along, higher - height)
            forth, rise = (higher - height) / length, (along - after) / length
            isFoot = hole.sill == 0 and height == higher == 0
            yield Face(corners, [], (forth * dx, rise, forth * dz), room, 'threshold' if isFoot else 'reveal')

    def _end(self, node: int, number: int) -> Face:
        """The end of a wall that stands free."""
        left, right = self._corners[node, number]
        edge = self.edges[number]
        (dx, dz), out = self.line(edge).way, -1.0 if edge.first == node else 1.0
        corners = [up(left, 0.0), up(left, self.height), up(right, self.height), up(right, 0.0)]
        return Face(corners, [], (out * dx, 0.0, out * dz), self._sides[number, 1], 'end')

    # -- solids

    def solids(self) -> Iterator[Solid]:
        """Boxes that stop bodies: one for each stretch of a wall without openings, and what is below and above them."""
        for number, wall in enumerate(self.walls):
            edges = self._edgesOf(number)
            low = min(0.0, *self._reach(edges[0]))
            high = max(wall.length, *(self.edges[edges[-1]].start + reach for reach in self._reach(edges[-1], True)))
            low, high = max(low, -self.half), min(high, wall.length + self.half)
            for hole in sorted((each for each in self.openings if each.wall == number), key=lambda each: each.along):
                left, right = hole.along - hole.width / 2, hole.along + hole.width / 2
                yield self._solid(wall, low, left, 0.0, self.height)
                if hole.sill > 0:
                    yield self._solid(wall, left, right, 0.0, hole.sill)
                if hole.kind not in PASSAGES:
                    yield self._solid(wall, left, right, hole.sill, hole.sill + hole.height, True)
                yield self._solid(wall, left, right, hole.sill + hole.height, self.height)
                low = right
            yield self._solid(wall, low, high, 0.0, self.height)

    def _reach(self, number: int, atEnd: bool = False) -> tuple[float, float]:
        """Where both sides of an edge begin or end along it."""
        line = self.line(self.edges[number])
        (left, otherLeft), (right, otherRight) = self.ends(number)
        one, other = (otherLeft, otherRight) if atEnd else (left, right)
        return line.measure(one)[0], line.measure(other)[0]

    def _solid(self, wall: Wall, start: float, end: float, low: float, high: float, isGlass: bool = False) -> Solid:
        (dx, dz), (x, z) = wall.way, wall.at((start + end) / 2)
        return Solid((x, low, z), end - start, high - low, math.degrees(math.atan2(-dz, dx)), isGlass)


# -- walls and points

def wallsOf(lines: Sequence[Line]) -> list[Wall]:
    """The walls of a plan's lines, in their order; ValueError for a line that is none."""
    walls: list[Wall] = []
    for number, line in enumerate(lines):
        corners = [_point(corner, 'corner %d of line %d' % (each, number)) for each, corner in enumerate(line)]
        if len(corners) < 2:
            raise ValueError('line %d of the plan has %d corners: a wall needs two' % (number, len(corners)))
        for start, end in zip(corners, corners[1:]):
            if math.dist(start, end) < SAME:
                raise ValueError('wall %d of the plan has no length: leave out one of its corners, which are both '
                                 '(%.2f, %.2f)' % (len(walls), *start))
            walls.append(Wall(start, end))
    if not walls:
        raise ValueError('the plan has no walls: give it a line of two corners or more')
    return walls


def _point(corner: Sequence[float], what: str) -> Point:
    try:
        x, z = corner
        if math.isfinite(x) and math.isfinite(z) and max(abs(x), abs(z)) <= 1e5:
            return float(x), float(z)
    except (TypeError, ValueError):
        pass
    raise ValueError('%s is %r: a corner is a pair of metres, (x, z)' % (what, corner))


def up(corner: Point, height: float) -> Place:
    """A corner at a height."""
    return corner[0], height, corner[1]


def isOn(wall: Wall, place: Point) -> bool:
    """Whether a place lies on a wall, its ends among it."""
    along, left = wall.measure(place)
    return abs(left) < SAME and -SAME < along < wall.length + SAME


def crossing(one: Wall, other: Wall) -> Point | None:
    """Where two walls cross each other away from their ends."""
    (a, leftA), (b, leftB) = (one.measure(corner) for corner in other)
    if (leftA < 0) == (leftB < 0) or abs(leftA) < SAME or abs(leftB) < SAME:
        return None
    along = a + (b - a) * leftA / (leftA - leftB)
    return one.at(along) if SAME < along < one.length - SAME else None


def area(outline: Sequence[Point]) -> float:
    """Area of an outline, square metres; below 0 for one that runs clockwise."""
    return sum(x * nextZ - nextX * z for (x, z), (nextX, nextZ) in zip(outline, [*outline[1:], outline[0]])) / 2


def holds(outline: Sequence[Point], place: Point) -> bool:
    """Whether a place lies within an outline."""
    x, z = place
    inside = False
    for (x0, z0), (x1, z1) in zip(outline, [*outline[1:], outline[0]]):
        if (z0 > z) != (z1 > z) and x < x0 + (x1 - x0) * (z - z0) / (z1 - z0):
            inside = not inside
    return inside


def checkedOutline(outline: Line, what: str) -> list[Point]:
    """The corners of an area, anticlockwise; ValueError that names it for one that crosses itself or has no area."""
    corners = [_point(corner, 'corner %d of %s' % (number, what)) for number, corner in enumerate(outline)]
    if len(corners) > 1 and math.dist(corners[0], corners[-1]) < SAME:
        corners.pop()
    if len(corners) < 3:
        raise ValueError('%s has %d corners: an area needs three' % (what, len(corners)))
    sides = [Wall(a, b) for a, b in zip(corners, corners[1:] + corners[:1])]
    for second, other in enumerate(sides):
        if other.length < SAME:
            raise ValueError('corners %d and %d of %s are one: leave one of them out'
                             % (second, (second + 1) % len(sides), what))
        for first in range(second):
            meets = crossing(sides[first], other)
            if meets:
                raise ValueError('%s crosses itself: its sides %d and %d meet at (%.2f, %.2f); move a corner'
                                 % (what, first, second, *meets))
    if abs(area(corners)) < SAME * SAME:
        raise ValueError('%s has no area: its corners lie on a line; move one of them' % what)
    return corners if area(corners) > 0 else corners[::-1]


# -- triangles

def triangles(outline: Sequence[Point], holes: Sequence[Sequence[Point]] = ()) -> list[tuple[Point, Point, Point]]:
    """The triangles of an anticlockwise outline with clockwise holes, without corners but those that were given."""
    ring = list(outline)
    for number, hole in sorted(enumerate(holes), key=lambda each: -max(point[0] for point in each[1])):
        others = [other for index, other in enumerate(holes) if index != number]
        ring = _bridged(ring, list(hole), others)
    found: list[tuple[Point, Point, Point]] = []
    while len(ring) > 3:
        ear = next((index for index in range(len(ring)) if _isEar(ring, index)), None)
        if ear is None:  # only what has no area is left
            break
        found.append((ring[ear - 1], ring[ear], ring[(ear + 1) % len(ring)]))
        del ring[ear]
    if len(ring) == 3 and _twice(*ring) > 0:
        found.append((ring[0], ring[1], ring[2]))
    return found


def _twice(a: Point, b: Point, c: Point) -> float:
    return (b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1])


def _isEar(ring: list[Point], index: int) -> bool:
    a, b, c = ring[index - 1], ring[index], ring[(index + 1) % len(ring)]
    if _twice(a, b, c) <= 1e-12:
        return False
    return not any(point not in (a, b, c) and _twice(a, b, point) >= 0 and _twice(b, c, point) >= 0
                   and _twice(c, a, point) >= 0 for point in ring)


def _bridged(ring: list[Point], hole: list[Point], others: list[Sequence[Point]]) -> list[Point]:
    """A ring that takes in a hole, by a way to it and back that meets nothing."""
    edges = [*zip(ring, ring[1:] + ring[:1]), *zip(hole, hole[1:] + hole[:1])]
    for other in others:
        edges += zip(other, [*other[1:], other[0]])
    ways = sorted((math.dist(ring[there], hole[here]), there, here) for there in range(len(ring))
                  for here in range(len(hole)))
    for _, there, here in ways:
        if not any(_meet(ring[there], hole[here], *edge) for edge in edges):
            return ring[:there + 1] + hole[here:] + hole[:here + 1] + ring[there:]
    raise ValueError('an opening has no way to the edge of its wall')


def _meet(a: Point, b: Point, c: Point, d: Point) -> bool:
    """Whether two stretches cross or touch other than at common ends."""
    if a in (c, d) or b in (c, d):
        return False
    sides = _twice(a, b, c), _twice(a, b, d), _twice(c, d, a), _twice(c, d, b)
    return sides[0] * sides[1] <= 0 and sides[2] * sides[3] <= 0


# -- areas

#: Breadth of the strips that the solid of an area with slanting sides is made of, metres.
STRIP = 0.25


def strips(outline: Sequence[Point]) -> list[tuple[float, float, float, float]]:
    """Rectangles that cover an area: least and greatest x, least and greatest z. Exact where its sides are straight."""
    cuts = sorted({z for _, z in outline})
    covered: list[tuple[float, float, float, float]] = []
    for low, high in zip(cuts, cuts[1:]):
        ends = _between(outline, low, high)
        slants = any(abs(bottom - top) > SAME for bottom, top in ends)
        count = max(1, math.ceil((high - low) / STRIP)) if slants else 1
        for step in range(count):
            a, b = (low + (high - low) * part / count for part in (step, step + 1))
            shares = step / count, (step + 1) / count
            xs = [[bottom + (top - bottom) * share for share in shares] for bottom, top in ends]
            covered += [(min(left), max(right), a, b) for left, right in zip(xs[::2], xs[1::2])]
    return _joined(covered)


def _between(outline: Sequence[Point], low: float, high: float) -> list[tuple[float, float]]:
    """Where the sides are that pass between two heights of the plan: their x at the lower and at the upper one."""
    found: list[tuple[float, float]] = []
    for (x0, z0), (x1, z1) in zip(outline, [*outline[1:], outline[0]]):
        if min(z0, z1) <= low and max(z0, z1) >= high:
            slope = (x1 - x0) / (z1 - z0)
            found.append((x0 + slope * (low - z0), x0 + slope * (high - z0)))
    return sorted(found, key=lambda ends: ends[0] + ends[1])


def _joined(boxes: list[tuple[float, float, float, float]]) -> list[tuple[float, float, float, float]]:
    """Rectangles of the same breadth that stand on one another as one."""
    joined: list[tuple[float, float, float, float]] = []
    for left, right, low, high in boxes:
        for number, (a, b, bottom, top) in enumerate(joined):
            if abs(a - left) + abs(b - right) + abs(top - low) < SAME:
                joined[number] = a, b, bottom, high
                break
        else:
            joined.append((left, right, low, high))
    return joined


def slab(outline: Sequence[Point], low: float, high: float) -> Iterator[Face]:
    """All sides of a board that lies between two heights; the outline runs anticlockwise."""
    yield Face([up(corner, high) for corner in outline], [], (0.0, 1.0, 0.0), -1, 'top')
    yield Face([up(corner, low) for corner in outline], [], (0.0, -1.0, 0.0), -1, 'side')
    for start, end in zip(outline, [*outline[1:], outline[0]]):
        dx, dz = Wall(start, end).way
        corners = [up(start, low), up(start, high), up(end, high), up(end, low)]
        yield Face(corners, [], (dz, 0.0, -dx), -1, 'side')
