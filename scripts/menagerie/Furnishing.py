"""What stands and burns in the rooms: yellow lamps, and the blue of one window."""

from __future__ import annotations

import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from menagerie.Shell import HEIGHT, NORTH, WEST

Barrel = place.solid(place.Barrel, 'barrel')
Crate = place.solid(place.Crate, 'crate')
Column = place.solid(place.Column, 'column')


def hall(room: Entity):
    """Lit at its east end; the west lies half in the dark, with a candle below the board."""
    place.HangingLamp(room, 'hallLamp', at=(3.2, HEIGHT, 0), strength=1.1, reach=6.0, glow=0.12)
    place.SphereLight(room, 'boardLight', at=(-5.2, 2.3, 0.0), strength=0.22, reach=2.6, color=place.CANDLELIGHT,
                      flicker=place.burning(3, depth=0.12))
    place.LanternAmber(room, 'boardLantern', at=(-5.2, HEIGHT, 0.0))
    for z in (-2.0, 2.0):
        place.Box(room, 'beam', at=(0, 2.86, z), size=(12.2, 0.34, 0.26), surface='wood', repeats=1.0)


def kennel(room: Entity):
    """The hound's: bones, drag marks, and hardly any light."""
    place.SphereLight(room, 'glow', at=(-2.6, 2.6, 8.8), strength=0.12, reach=3.4, color=place.MOONLIGHT)
    place.Decal(room, 'drag', picture='bloodDrag', at=(-4.0, 0, 6.4), pitch=90, roll=15, size=(1.2, 2.4), alpha=0.7)
    place.Decal(room, 'hands', picture='handprints', at=(-6, 1.0, 6.2), turn=WEST, size=(1.6, 1.2), alpha=0.8)
    Barrel(room, 'barrel', at=(-5.4, 0, 9.0), turn=30)


def court(room: Entity):
    place.HangingLamp(room, 'courtLamp', at=(3.6, HEIGHT, 6.8), strength=0.95, reach=5.5)
    for x, z in ((0.6, 9.0), (0.7, 4.2)):
        Barrel(room, 'barrel', at=(x, 0, z), turn=x * 60)


def yard(room: Entity):
    """Open to the night: moonlight falls across it, and crows turn below the roof."""
    place.ShadowSpot(room, 'moon', at=(12.2, 3.0, 9.2), turn=-128, pitch=24, color=place.MOONLIGHT, strength=0.9,
                     reach=9, angle=40, core=0.6, nearClip=0.2)
    place.SphereLight(room, 'night', at=(9.6, 2.6, 6.6), strength=0.10, reach=4.6, color=place.MOONLIGHT)
    Column(room, 'column', at=(11.6, 0, 4.5))
    place.Swarm(room, 'crows', kind='Crow', count=4, at=(9.6, 2.45, 6.6), reach=2.3, lowest=2.1, highest=2.85,
                innerRadius=0.8, cruiseSpeed=1.5, spacing=1.0, bodySize=0.6, flutter=2.6)


def store(room: Entity):
    """Rats between crates and barrels."""
    place.HangingLamp(room, 'storeLamp', at=(8.0, HEIGHT, 0.6), strength=0.9, reach=5.0, flicker=place.failing(2))
    for x, z in ((12.0, -2.4), (11.2, -2.5), (12.1, -1.6)):
        Barrel(room, 'barrel', at=(x, 0, z), turn=x * 50)
    Crate(room, 'crate', at=(7.2, 0, -2.4), turn=12)


def dark(room: Entity):
    """Nothing burns here."""
    place.DeadChandelier(room, 'chandelier', at=(-4, HEIGHT, -6.6))
    place.Mourner(room, 'statue', at=(-5.2, 0, -8.8), turn=30)
    place.Block(room, 'statueBlock', at=(-5.2, 0, -8.8), size=(0.7, 1.8, 0.7))


def gallery(room: Entity):
    """A lamp on a table, with moths of its own."""
    place.SideTable(room, 'table', at=(3.0, 0, -7.4))
    place.Block(room, 'tableBlock', at=(3.0, 0, -7.4), size=(0.6, 0.65, 0.6))
    lamp = place.LitLamp(room, 'tableLamp', at=(3.0, 0.65, -7.4), strength=0.5, reach=4.4)
    place.Swarm(room, 'tableMoths', kind='Moth', count=18, at=(3.0, 1.1, -7.4), reach=1.1)
    place.Portrait(room, 'portrait', at=(1.0, 1.7, -9.6), turn=NORTH)
    place.Landscape(room, 'landscape', at=(5.0, 1.7, -9.6), turn=NORTH)
    place.FullBookcase(room, 'books', at=(5.75, 0, -6.6), turn=WEST)
    place.Block(room, 'booksBlock', at=(5.8, 0, -6.6), size=(0.5, 2.3, 1.2))
    place.Chair(room, 'chair', at=(2.0, 0, -8.4), turn=40)
    return lamp


def rats(map: MapRootEntity, player: Entity):
    """They keep to the store's corner and to themselves."""
    return place.Swarm(map, 'rats', kind='Rat', count=9, at=(11.4, 0, -0.6), reach=1.9, feared=player,
                       fearRadius=1.8)


FURNISH = {'hall': hall, 'kennel': kennel, 'court': court, 'yard': yard, 'store': store, 'dark': dark,
           'gallery': gallery}
