"""Building kits: pieces 2 m wide, storeys 3.2 m high. Walls and panels stand on the plane that they face from."""

from objects.Models import thing

# The villa

WallPlain = thing(wallPlain='wallpaper')
WallDoorway = thing(wallDoorway='wallpaper', doorFrame='wood')
WallWindow = thing(wallWindow='wallpaper', wallWindowShell='plaster', windowFrame='wood', windowPane='nightWindow')
PlasterWall = thing(wallPlain='plaster')
PlasterDoorway = thing(wallDoorway='plaster')
Wainscot = thing(wainscot='wood')
WainscotNarrow = thing(wainscotNarrow='wood')
Cornice = thing(cornice='plaster')
Skirting = thing(skirting='wood')
FloorBoards = thing(floor='boards')
FloorTiles = thing(floorTiles='tiles')
PlasterCeiling = thing(ceiling='plaster')
CeilingBeam = thing(ceilingBeam='wood')
Door = thing(door='wood', doorHandle='brass')
Fireplace = thing(fireplace='brick', firebox='firebox', mantel='wood', hearth='tiles', grate='iron',
                  fireLogs='embers')

# The crypt: walls have a thickness and keep light out from both sides

StoneWall = thing(stoneWall='stone')
StoneDoorway = thing(stoneDoorway='stone')
StoneArch = thing(stoneArch='stone')
StoneTunnel = thing(stoneTunnel='stone')
StoneGrille = thing(stoneGrilleWall='stone', grilleBars='iron')
StoneFloor = thing(stoneFloor='flagstones')
StoneCeiling = thing(stoneCeiling='stone')
VaultRib = thing(vaultRib='stone')
Column = thing(column='stone')
StoneStep = thing(stoneStep='flagstones')
Pedestal = thing(pedestal='marble')
TiledFloor = thing(stoneFloor='tiles')
ConcreteWall = thing(stoneWall='concrete')
ConcreteDoorway = thing(stoneDoorway='concrete')
ConcreteArch = thing(stoneArch='concrete')
ConcreteCeiling = thing(stoneCeiling='concrete')
ConcreteFloor = thing(stoneFloor='concrete')
IronDoorFrame = thing(ironDoorFrame='iron')
DoorRail = thing(doorRail='iron')
FloatBed = thing(castShadows=False, floatBedA='leather', floatBedB='rust', floatBedC='ceramic')
