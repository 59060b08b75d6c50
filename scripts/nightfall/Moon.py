"""The moon: the one way that its light falls, and its disc, which stands in whichever window it is seen through."""

from __future__ import annotations

import math
from typing import Mapping

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Plan import ROOMS, roomAt
from nightfall.Sides import Side, plane, wallsOf
from objects.Placing import Triple, onFrame
from objects.player.Visitor import Visitor

TURN, PITCH = 147.0, 29.0  # the way of its light, degrees: it stands in the north-west
WIDE = math.radians(2.6)   # its disc, larger than life, as one remembers it
PANE = 0.078               # metres from a room's wall to just before the glass
CORNERS = 20

#: Rooms from which one sees the windows of another.
ACROSS = {'landing': 'hall'}

_level = math.cos(math.radians(PITCH))
#: The way to it, of length 1.
TOWARDS: Triple = (-math.sin(math.radians(TURN)) * _level, math.sin(math.radians(PITCH)),
                   -math.cos(math.radians(TURN)) * _level)


def shine(room: Entity, window: Triple, away: float, strength: float, reach: float, angle: float, core: float):
    """Moonlight that comes into a room about the middle of its windows, from so many metres outside."""
    at = tuple(middle + away * part for middle, part in zip(window, TOWARDS))
    place.ShadowSpot(room, 'moon', at=(at[0], at[1], at[2]), turn=TURN, pitch=PITCH, color=place.MOONLIGHT,
                     strength=strength, reach=reach, angle=angle, core=core, nearClip=away * 0.4)


class Disc:
    """What is seen of it. It is drawn on the glass, where the line from the eye to it goes through."""

    def __init__(self, map: MapRootEntity, visitor: Visitor):
        self.visitor = visitor
        self.windows = {name: _glass(name) for name in ROOMS}
        self.discs: Mapping[Side, Entity] = {side: _disc(map, side) for side in ('north', 'west')}
        self.shown: Side | None = None
        for disc in self.discs.values():
            disc.getComponent('graphics2').visible = False
        onFrame(self.discs['north'], self.follow)

    def follow(self):
        eye = self.visitor.eye.position
        room = roomAt(eye.x, eye.z)
        side, at = self.windows.get(ACROSS.get(room, room)) or (None, 0.0)
        if side != self.shown:
            for each, disc in self.discs.items():
                disc.getComponent('graphics2').visible = each == side
            self.shown = side
        if side is None:
            return
        axis, middle = (2, eye.z) if side == 'north' else (0, eye.x)
        far = max((at - middle) / TOWARDS[axis], 0.0)
        transform = self.discs[side].getComponent('transform')
        transform.position = kaVel.Vec4(*(a + far * b for a, b in zip((eye.x, eye.y, eye.z), TOWARDS)), 1)
        transform.scale = kaVel.Vec4(far, far, far, 0)


def _glass(name: str) -> tuple[Side, float] | None:
    """The side of a room whose windows look towards the moon, and where their glass is across."""
    sides: tuple[Side, ...] = ('north', 'west')
    for side in sides:
        if any(hole.kind in ('window', 'tall') for wall in wallsOf(ROOMS[name], side) for hole in wall.holes):
            _, face, out = plane(ROOMS[name], side)
            return side, face + out * PANE
    return None


def _disc(map: MapRootEntity, side: Side) -> Entity:
    """It as it falls on the glass of a side of a room, one metre away along the line of sight."""
    x, y, z = TOWARDS
    across = (z / _level, 0.0, -x / _level)
    up = (-x * y / _level, _level, -z * y / _level)
    axis, radius = 2 if side == 'north' else 0, math.tan(WIDE / 2)
    normal = kaVel.Vec4(0, 0, -1, 0) if side == 'north' else kaVel.Vec4(1, 0, 0, 0)
    mesh = kaVel.MeshBuilder()
    middle = mesh.addVertex(kaVel.Vec4(0, 0, 0, 1), normal, 0.5, 0.5)
    rim: list[int] = []
    for corner in range(CORNERS):
        right, high = math.cos(math.tau * corner / CORNERS), math.sin(math.tau * corner / CORNERS)
        ray = [a + radius * (right * b + high * c) for a, b, c in zip(TOWARDS, across, up)]
        length = TOWARDS[axis] / ray[axis]
        rim.append(mesh.addVertex(kaVel.Vec4(*(a * length - b for a, b in zip(ray, TOWARDS)), 1), normal,
                                  0.5 + 0.5 * right, 0.5 - 0.5 * high))
    for one, other in zip(rim, rim[1:] + rim[:1]):
        mesh.addTriangle(middle, one, other)
        mesh.addTriangle(middle, other, one)
    mesh.generateTangents()
    return place.Built(map, 'moon' + side, mesh=mesh, surface='moonDisc', castShadows=False)
