"""Woodwork: panels, skirtings, the linings of doors, and windows."""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
from kaVel import Entity
from nightfall.Plan import KINDS, ROOMS, Hole, Room
from nightfall.Sides import HALF, SIDES, Side, onSide, turnOf, wallsOf

PANEL, CHAIR_RAIL = 0.85, 0.05  # heights, metres
PIECE = 1.6                     # length of a piece of panels, metres, about
GLASS = -0.085                  # metres off a wall's face: where the panes are


def slab(entity: Entity, room: Room, side: Side, start: float, end: float, low: float, high: float, thick: float,
         surface: str = 'wood', off: float = 0.0, castShadows: bool = False):
    """A board before a side of a room, from `start` to `end` along it; heights above the floor."""
    middle, length = (start + end) / 2, end - start
    at = onSide(room, side, middle, low, off + thick / 2)
    size = (length, high - low, thick) if side in ('north', 'south') else (thick, high - low, length)
    box = place.Box(entity, 'board', at=at, size=size, surface=surface, repeats=1.0)
    box.getComponent('graphics2').castShadows = castShadows
    return box


def skirting(entity: Entity, room: Room, side: Side, start: float, end: float, low: float):
    if low <= room.floor:
        slab(entity, room, side, start, end, 0.0, 0.11, 0.015)


def wainscot(entity: Entity, room: Room, side: Side, start: float, end: float, low: float, high: float):
    """Panels below a rail, where a wall goes down to the floor."""
    if low > room.floor or high < room.floor + PANEL or end - start < 0.12:
        return
    count = max(1, round((end - start) / PIECE))
    length = (end - start) / count
    for number in range(count):
        at = onSide(room, side, start + (number + 0.5) * length)
        panel = place.Wainscot(entity, 'panels', at=at, turn=turnOf(side), scale=(length / 2, PANEL / 1.05, 0.6))
        panel.getComponent('graphics2').castShadows = False


def openingIn(entity: Entity, room: Room, side: Side, hole: Hole):
    """What lines an opening on one side of its wall."""
    width, low, high = KINDS[hole.kind]
    if hole.kind in ('hatch', 'gate'):
        _casing(entity, room, side, hole.where, width, high)
    elif hole.kind != 'door':  # a door brings its frame
        _window(entity, room, side, hole.where, width, low, high)


def _casing(entity: Entity, room: Room, side: Side, where: float, width: float, high: float):
    left, right = where - width / 2, where + width / 2
    slab(entity, room, side, left - 0.08, left + 0.005, 0.0, high, 0.03)
    slab(entity, room, side, right - 0.005, right + 0.08, 0.0, high, 0.03)
    slab(entity, room, side, left - 0.1, right + 0.1, high - 0.005, high + 0.09, 0.035)
    # The lining of this half of the wall: it lies within the block that is the wall.
    slab(entity, room, side, left - 0.012, left + 0.004, 0.0, high, HALF, off=-HALF)
    slab(entity, room, side, right - 0.004, right + 0.012, 0.0, high, HALF, off=-HALF)
    slab(entity, room, side, left, right, high - 0.004, high + 0.012, HALF, off=-HALF)


def _window(entity: Entity, room: Room, side: Side, where: float, width: float, low: float, high: float):
    """Sill, frame and bars, which cast the shadows that one sees on the floor, and panes that let the moon through."""
    left, right = where - width / 2, where + width / 2
    slab(entity, room, side, left - 0.1, right + 0.1, low - 0.04, low, 0.08)
    slab(entity, room, side, left - 0.08, left, low, high, 0.03)
    slab(entity, room, side, right, right + 0.08, low, high, 0.03)
    slab(entity, room, side, left - 0.1, right + 0.1, high, high + 0.08, 0.035)
    inside = -HALF  # the bars stand in the middle of the wall
    for edge in (left, right - 0.04):
        slab(entity, room, side, edge, edge + 0.04, low, high, 0.04, off=inside, castShadows=True)
    rows = max(2, round((high - low) / 0.65))
    for row in range(rows + 1):
        at = low + (high - low - 0.03) * row / rows
        slab(entity, room, side, left, right, at, at + 0.03, 0.035, off=inside, castShadows=True)
    slab(entity, room, side, where - 0.018, where + 0.018, low, high, 0.035, off=inside, castShadows=True)
    _pane(entity, room, side, where, width, low, high)


def _pane(entity: Entity, room: Room, side: Side, where: float, width: float, low: float, high: float):
    mesh = kaVel.MeshBuilder()
    x, y = width / 2, (high - low) / 2
    mesh.addQuad(*(kaVel.Vec4(a, b, 0, 1) for a, b in ((x, y), (-x, y), (-x, -y), (x, -y))))
    mesh.generateTangents()
    place.Built(entity, 'pane', mesh=mesh, at=onSide(room, side, where, (low + high) / 2, GLASS),
                turn=turnOf(side), surface='nightPane', castShadows=False)


def panes() -> list[place.Pane]:
    """The glass of all windows that one can stand before."""
    found: list[place.Pane] = []
    for room in ROOMS.values():
        for side in SIDES:
            for hole in (hole for wall in wallsOf(room, side) for hole in wall.holes if hole.kind == 'window'):
                width, low, high = KINDS['window']
                found.append(place.Pane(onSide(room, side, hole.where, (low + high) / 2, GLASS), (width, high - low),
                                        turnOf(side)))
    return found
