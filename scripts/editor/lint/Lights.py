"""Lights that shine through walls: what casts no shadow lights what is behind a wall, too."""

from __future__ import annotations

import math
from typing import Iterator

import kaVel
from editor.lint.Findings import Finding, rule
from editor.lint.Scene import EDGE, Scene, isKind, tripleOf
from objects.Placing import Triple

#: Luminance from which on one sees that there is a light, and square metres of floor on which it is so.
SEEN, LEAST = 0.02, 1.0
#: Heights above a floor of which one has to be free for a light to come there by right, metres.
HEIGHTS = (0.3, 1.2, 1.9)
#: What a wall is long at least, metres.
WALL = 2.0


@rule
def leaks(scene: Scene) -> Iterator[Finding]:
    """Lights without shadows that are seen on the floor behind a wall."""
    for map in scene.maps:
        for entity in scene.entities(map):
            light = entity.getComponent('graphics2')
            if not isKind(light, 'LightComponent') or not light.visible or light.drawsShadows() or light.isAmbient:
                continue
            at = tripleOf(light.place)
            walls = list(_behindWalls(scene, map, light, at))
            if len(walls) * EDGE * EDGE >= LEAST:
                wall = max(set(walls), key=walls.count)
                yield Finding('leaks', scene.pathOf(entity), at, 'it lights %.1f square metres of floor behind %s'
                              % (len(walls) * EDGE * EDGE, wall), 'lessen its reach, or let it cast shadows')


def _behindWalls(scene: Scene, map: kaVel.MapRootEntity, light: kaVel.LightComponent, at: Triple) -> Iterator[str]:
    """For each spot of floor that a light reaches through something solid, the path of that."""
    color, reach = light.diffuseColor, light.lightFalloffEnd
    luminance = 0.2126 * color.x + 0.7152 * color.y + 0.0722 * color.z
    for x, y, z in scene.ground(map).near(at, reach):
        if math.dist((x, z), at[::2]) > reach or luminance * light.shareAt(kaVel.Vec4(x, y + 0.3, z, 1)) < SEEN:
            continue
        wall = ''
        for height in HEIGHTS:
            hit = kaVel.Reflection.findSolidBetween(map, kaVel.Vec4(*at, 1), kaVel.Vec4(x, y + height, z, 1),
                                                    light.parent, scene.player)
            if not _isWall(hit.volume) or hit.volume.boxToPoint(kaVel.Vec4(*at, 1)):  # it may hold the light
                break
            wall = scene.pathOf(hit.volume.parent)
        else:
            yield wall


def _isWall(volume: kaVel.BoundingVolume) -> bool:
    """Whether there is a volume, which divides rooms: nothing that walks, and no piece of furniture."""
    return bool(volume) and volume.volumeType == kaVel.BoundingVolume.VolumeType.BV_WALL and (
        max(volume.hitBox.x, volume.hitBox.z) >= WALL)
