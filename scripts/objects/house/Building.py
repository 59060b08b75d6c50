"""Building kits: pieces 2 m wide, storeys 3.2 m high. Walls and panels stand on the plane that they face from."""

from typing import Sequence

import kaVel
from objects.Placing import Pattern
from objects.things.Models import thing

# The villa

WallPlain = thing(wallPlain='wallpaper')
"""A papered wall."""
WallDoorway = thing(wallDoorway='wallpaper', doorFrame='wood')
"""A papered wall with a doorway and its wooden frame; the door is `Door`."""
WallWindow = thing(wallWindow='wallpaper', wallWindowShell='plaster', windowFrame='wood', windowPane='nightWindow')
"""A papered wall with a window of two columns of panes; light comes in through the window alone."""
PlasterWall = thing(wallPlain='plaster')
"""A plastered wall."""
PlasterDoorway = thing(wallDoorway='plaster')
"""A plastered wall with a doorway, which has no frame."""
Wainscot = thing(wainscot='wood')
"""Wooden panels on a wall's lower part."""
WainscotNarrow = thing(wainscotNarrow='wood')
"""A narrow piece of panels, as beside a doorway."""
Cornice = thing(cornice='plaster')
"""The plaster moulding between a wall and the ceiling."""
Skirting = thing(skirting='wood')
"""The board along a wall's foot."""
FloorBoards = thing(floor='boards')
"""A floor of boards."""
FloorTiles = thing(floorTiles='tiles')
"""A floor of tiles."""
PlasterCeiling = thing(ceiling='plaster')
"""A plastered ceiling."""
CeilingBeam = thing(ceilingBeam='wood')
"""A wooden beam under the ceiling, across a room of 6 m."""
Door = thing(door='wood', doorHandle='brass')
"""A door of four panels that only stands there; `at` is its hinge, the leaf lies to the right of it."""
Fireplace = thing(fireplace='brick', firebox='firebox', mantel='wood', hearth='tiles', grate='iron',
                  fireLogs='embers')
"""A chimney breast with a mantel, an iron grate and coals; it stands against a wall."""

# The crypt: walls have a thickness and keep light out from both sides

StoneWall = thing(stoneWall='stone')
"""A wall of masonry."""
StoneDoorway = thing(stoneDoorway='stone')
"""A wall of masonry with a square doorway, 1.2 m wide and 2.2 m high."""
StoneArch = thing(stoneArch='stone')
"""A wall of masonry with a round-arched doorway, 1.4 m wide and 2.25 m high."""
StoneTunnel = thing(stoneTunnel='stone')
"""A vaulted passage 2 m long, which leads away from the wall that it begins at."""
StoneGrille = thing(stoneGrilleWall='stone', grilleBars='iron')
"""A wall of masonry with a barred opening high up."""
StoneFloor = thing(stoneFloor='flagstones')
"""A floor of flagstones."""
StoneCeiling = thing(stoneCeiling='stone')
"""A ceiling of masonry; its back keeps the sky's light out."""
VaultRib = thing(vaultRib='stone')
"""A flat stone arch across a room of 6 m."""
Column = thing(column='stone')
"""A round column from floor to ceiling."""
StoneStep = thing(stoneStep='flagstones')
"""A worn step, 2.4 m wide and 0.3 m high."""
Pedestal = thing(pedestal='marble')
"""A marble pedestal, 0.85 m high."""
TiledFloor = thing(stoneFloor='tiles')
"""A floor of tiles for a room of masonry."""
ConcreteWall = thing(stoneWall='concrete')
"""A wall of concrete."""
ConcreteDoorway = thing(stoneDoorway='concrete')
"""A wall of concrete with a square doorway, 1.2 m wide and 2.2 m high."""
ConcreteArch = thing(stoneArch='concrete')
"""A wall of concrete with a round-arched doorway."""
ConcreteCeiling = thing(stoneCeiling='concrete')
"""A ceiling of concrete."""
ConcreteFloor = thing(stoneFloor='concrete')
"""A floor of concrete."""
IronDoorFrame = thing(ironDoorFrame='iron')
"""The lining of a stone doorway, which an `IronDoor` hangs in."""
DoorRail = thing(doorRail='iron')
"""The rail that a `SlidingDoor` hangs from, 3.6 m long."""
FloatBed = thing(castShadows=False, floatBedA='leather', floatBedB='rust', floatBedC='ceramic')
"""Balls that only lie there, under those that roll."""


def tiled(room: kaVel.Entity, pattern: Pattern, name: str, xs: Sequence[float], zs: Sequence[float]):
    """A floor or ceiling of pieces of 2 m."""
    for x in xs:
        for z in zs:
            pattern(room, name, at=(x, 0, z))


def wall(room: kaVel.Entity, name: str, xs: Sequence[float], zs: Sequence[float], turn: float, plain: Pattern,
         opening: Pattern | None = None, where: float | None = None):
    """A row of wall pieces of 2 m; the one at `where` along it is the opening."""
    for x in xs:
        for z in zs:
            along = x if len(xs) > 1 else z
            (opening if opening and along == where else plain)(room, name, at=(x, 0, z), turn=turn)
