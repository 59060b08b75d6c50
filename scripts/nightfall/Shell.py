"""Floors, ceilings and walls of the house, what makes them solid, and which rooms are drawn.

A room has its own half of every wall around it, drawn under the room's entity; the blocks that stop who walks are whole
walls.
"""

from __future__ import annotations

import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall import Joinery
from nightfall.Plan import ROOMS, THICK, TOP, UP, WALLS, Room, Wall
from nightfall.Sides import HALF, SIDES, Piece, Side, pieces, plane, wallsOf

#: Middle and extents of the map; its floor is the hall's.
MIDDLE, EXTENT = (10.25, TOP / 2, 10.25), (24.0, TOP, 33.0)
CELL = 0.5

LAP = 0.1  # metres by which pieces go on into the walls

#: Surfaces of a kit: floor, walls, ceiling.
KITS = {
    'papered': ('boards', 'wallpaper', 'plaster'),
    'plain': ('boards', 'plaster', 'plaster'),
    'tiled': ('tiles', 'tiles', 'plaster'),
    'stone': ('flagstones', 'brick', 'plaster'),
    'shaft': ('rust', 'rust', 'rust'),
}
#: Rooms with panels, and rooms without a floor or a ceiling of their own.
PANELLED = ('corridor', 'passage', 'landing')
FLOORS = {'hall': 'tiles', 'landing': 'boards'}


def build(map: MapRootEntity):
    """All rooms under their entities, by name."""
    rooms = {name: place.Entity(map, name) for name in ROOMS}
    for name, room in ROOMS.items():
        _surfaces(rooms[name], name, room)
    _blocks(map)
    return rooms


def _surfaces(entity: Entity, name: str, room: Room):
    floor, wall, ceiling = KITS[room.kit]
    floor = FLOORS.get(name, floor)
    x, z = room.middle()
    wide, deep = room.east - room.west + 2 * LAP, room.north - room.south + 2 * LAP
    place.Box(entity, 'floor', at=(x, room.floor - 0.1, z), size=(wide, 0.1, deep), surface=floor)
    place.Box(entity, 'ceiling', at=(x, room.ceiling, z), size=(wide, 0.1, deep), surface=ceiling)
    for side in SIDES:
        for part in wallsOf(room, side):
            for piece in pieces(part):
                _panel(entity, room, side, piece, wall)
            for hole in part.holes:
                Joinery.openingIn(entity, room, side, hole)
        if name in PANELLED:
            for part in wallsOf(room, side):
                for piece in pieces(part):
                    Joinery.wainscot(entity, room, side, piece.start, piece.end, piece.low, piece.high)
        elif room.kit in ('papered', 'plain'):
            for part in wallsOf(room, side):
                for piece in pieces(part):
                    Joinery.skirting(entity, room, side, piece.start, piece.end, piece.low)


def _panel(entity: Entity, room: Room, side: Side, piece: Piece, surface: str):
    """One piece of a room's half of a wall; at the room's corners it goes on into the wall."""
    along, face, out = plane(room, side)
    least, most = (room.west, room.east) if along == 'x' else (room.south, room.north)
    start = piece.start - LAP if piece.start == least else piece.start
    end = piece.end + LAP if piece.end == most else piece.end
    middle, across = (start + end) / 2, face + out * HALF / 2
    at = (middle, piece.low, across) if along == 'x' else (across, piece.low, middle)
    size = (end - start, piece.high - piece.low, HALF) if along == 'x' else (HALF, piece.high - piece.low, end - start)
    place.Box(entity, 'wall', at=at, size=size, surface=surface)


def _blocks(map: MapRootEntity):
    """What walkers and bodies meet. Windows are closed to them; outer walls reach a metre out."""
    for number, wall in enumerate(WALLS):
        doors = tuple(hole for hole in wall.holes if hole.kind in ('door', 'hatch', 'gate'))
        for piece in pieces(wall._replace(holes=doors)):
            _block(map, 'wall%d' % number, wall, piece)
    place.Block(map, 'guestFloor', at=(10.25, UP - 1.0, 5.7), size=(23.5, 1.0, 22.6))


def _block(map: MapRootEntity, name: str, wall: Wall, piece: Piece):
    middle, thick, across = (piece.start + piece.end) / 2, THICK, wall.at
    if not wall.one or not wall.other:
        thick = 0.6
        across += 0.2 if not wall.other else -0.2
    length, height = piece.end - piece.start, piece.high - piece.low
    if length < 0.01 or height < 0.01:
        return
    at = (middle, piece.low, across) if wall.along == 'x' else (across, piece.low, middle)
    size = (length, height, thick) if wall.along == 'x' else (thick, height, length)
    place.Block(map, name, at=at, size=size)
