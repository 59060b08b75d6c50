"""What is wrong with the ways of a level: where nobody comes, where it is dark for too long, who has no floor."""

from __future__ import annotations

import math
from typing import Any, Iterator

import kaVel
from editor.lint.Findings import Finding, rule
from editor.lint.Scene import Ground, Scene, isKind, tripleOf
from objects.Placing import Triple

#: Square metres of a floor from which on it matters that nobody reaches it.
LEAST_ISLAND = 1.5
#: Luminance below which creatures and nerves take a place for dark.
DARKEST = 0.008
#: Half of what a player is across, and his height, metres.
HALF, TALL = 0.25, 1.75
#: Degrees from which on a slope is stairs, and what it must be long, metres.
STEEP, LONG = 18.0, 1.2
#: Where the light of a slope is looked at, parts of its length.
TREADS = (-0.4, -0.2, 0.0, 0.2, 0.4)
#: Components of those that find their way by themselves.
WALKERS = ('path', 'pathFollower')


@rule
def unreachable(scene: Scene) -> Iterator[Finding]:
    """Floors that somebody has made, and on which the player never stands."""
    if scene.feet() is None:
        return
    for map in scene.maps:
        survey = scene.ground(map).survey
        for island in range(survey.findIslands(LEAST_ISLAND)):
            at = survey.getSpot(survey.getAreaBegin(island))
            yield Finding('unreachable', scene.placeIn(map, at), tripleOf(at),
                          '%.1f square metres of floor that the player cannot come to' % survey.getAreaSize(island),
                          'open a way to it, or take the floor away')


@rule
def stretches(scene: Scene) -> Iterator[Finding]:
    """Stretches of dark floor that are longer than a battery lasts."""
    lasting = batteryWay(scene.player)
    if scene.feet() is None or lasting is None:
        return
    for map in scene.maps:
        ground = scene.ground(map)
        ground.shine()
        survey = ground.survey
        for stretch in range(survey.findStretches(DARKEST)):
            length = survey.getAreaSize(stretch)
            if length <= lasting:
                break
            begin, end = (tripleOf(survey.getSpot(spot)) for spot in (survey.getAreaBegin(stretch),
                                                                      survey.getAreaEnd(stretch)))
            yield Finding('dark', scene.placeIn(map, kaVel.Vec4(*begin, 1)), begin,
                          'it is dark for %.0f m on, as far as (%.1f, %.1f, %.1f), and a battery lasts for %.0f m'
                          % (length, *end, lasting), 'set a light on the way')


def batteryWay(player: Any) -> float | None:
    """How far one walks by the light of one battery, metres; None for who has no use for one."""
    mind = player.getComponent('player') if player else None
    if not mind:
        return None
    return mind.batteryLifetime * walkingSpeed(player)


def walkingSpeed(player: Any) -> float:
    """How fast a player walks who holds the key down, metres a second."""
    mind, body = player.getComponent('player'), player.getComponent('physics')
    return mind.movementSpeed * body.inverseMass / -math.log(min(max(mind.mobileDamping, 1e-6), 0.999))


@rule
def stairs(scene: Scene) -> Iterator[Finding]:
    """Stairs on which it is dark."""
    for map in scene.maps:
        for entity in scene.entities(map):
            steps = slopeOf(entity)
            lights = [kaVel.Reflection.lightAt(map, kaVel.Vec4(*step, 1)) for step in steps]
            dark = sum(light < DARKEST for light in lights)
            if dark * 2 > len(lights):
                yield Finding('stairs', scene.pathOf(entity), steps[0],
                              'stairs in the dark: %.3f at most' % max(lights), 'set a light at their head or foot')


def slopeOf(entity: kaVel.Entity) -> list[Triple]:
    """Places just above a slope that somebody goes up and down; none for anything else."""
    volume, transform = entity.getComponent('boundingVolume'), entity.getComponent('transform')
    if not volume or not transform or not entity.getComponent('physics') or volume.trigger:
        return []
    box, turn = volume.hitBox, transform.orientation
    along = _turned(turn, (0, 0, 1))
    up = _turned(turn, (0, 1, 0))
    rise = math.degrees(math.asin(max(-1.0, min(1.0, along[1]))))
    if box.z < LONG or not STEEP <= abs(rise) <= 50.0:
        return []
    middle = transform.position
    return [(middle.x + along[0] * part * box.z + up[0] * box.y / 2,
             middle.y + along[1] * part * box.z + up[1] * box.y / 2 + 0.05,
             middle.z + along[2] * part * box.z + up[2] * box.y / 2) for part in TREADS]


def _turned(turn: kaVel.Quaternion, direction: Triple) -> Triple:
    way = turn * kaVel.Quaternion(0, *direction) * turn.inverse()
    return way.i, way.j, way.k


@rule
def triggers(scene: Scene) -> Iterator[Finding]:
    """Triggers that the player never touches."""
    if scene.feet() is None:
        return
    for map in scene.maps:
        for entity in scene.entities(map):
            volume, transform = entity.getComponent('boundingVolume'), entity.getComponent('transform')
            if volume and transform and volume.trigger and not _isTouched(scene.ground(map), volume, transform):
                yield Finding('trigger', scene.pathOf(entity), tripleOf(transform.position),
                              'nobody touches this trigger: the player comes to no place that it holds',
                              'set it where he walks, 0.7 to 1.7 m above the floor')


def _isTouched(ground: Ground, volume: kaVel.BoundingVolume, transform: kaVel.TransformComponent) -> bool:
    at, reach = tripleOf(transform.position), reachOf(volume, transform)
    return any(abs(x - at[0]) < reach[0] + HALF and abs(z - at[2]) < reach[2] + HALF
               and y < at[1] + reach[1] and y + TALL > at[1] - reach[1]
               for x, y, z in ground.near(at, max(reach[0], reach[2]) + HALF))


def reachOf(volume: kaVel.BoundingVolume, transform: kaVel.TransformComponent) -> Triple:
    """How far a volume reaches from its middle along x, y and z, metres."""
    box, turn = volume.hitBox, transform.orientation
    axes = [_turned(turn, axis) for axis in ((1, 0, 0), (0, 1, 0), (0, 0, 1))]
    halves = box.x / 2, box.y / 2, box.z / 2
    x, y, z = (sum(abs(axis[side]) * half for axis, half in zip(axes, halves)) for side in range(3))
    return x, y, z


@rule
def creatures(scene: Scene) -> Iterator[Finding]:
    """Who goes his own ways and stands where there is no floor, or no way."""
    for map in scene.maps:
        for entity in scene.entities(map):
            transform = entity.getComponent('transform')
            if not transform or not any(entity.getComponent(key) for key in WALKERS):
                continue
            at = tripleOf(transform.position)
            if not _hasFloor(scene.ground(map).survey, at):
                yield Finding('creature', scene.pathOf(entity), at, 'there is no floor under it within 2 m',
                              'stand it on a floor')
            elif not _hasWay(map, transform.position):
                yield Finding('creature', scene.pathOf(entity), at, 'the path grid leaves it no room to go anywhere',
                              'stand it away from what is solid, or look at the cells that the level blocks')


def _hasFloor(survey: kaVel.FloorSurvey, at: Triple) -> bool:
    return any(survey.findSpot(kaVel.Vec4(at[0], at[1] - down, at[2], 1)) >= 0 for down in (0.0, 0.9, 1.8))


def _hasWay(map: kaVel.MapRootEntity, at: kaVel.Vec4) -> bool:
    ways: Any = map.getComponent('walkways')
    if not isKind(ways, 'Walkways'):
        return True
    cell = ways.findFreeCell(at, 0.2)
    return cell.isValid() and math.dist(tripleOf(ways.getStation(cell))[::2], tripleOf(at)[::2]) < 1.0
