"""How large a map is whose script does not say so: as large as what is built in it.

A map's grids, floor and ceiling follow from its transform. One that a script has given a size keeps it.
"""

from __future__ import annotations

import math
from typing import Any, Callable, Sequence

import kaVel
from objects.Placing import Triple
from perLevel import PerLevel, levelOf

#: Metres around what is built: who leans out of a window is still on the map.
MARGIN = 0.5
#: Edge of a cell of the path grid, metres: a doorway is a cell or two.
CELL = 0.5
#: Edge of a cell of the grid of volumes, metres: it has none but whole ones.
WHOLE = 2.0

#: Least and greatest corner of what is built, by map and by its root.
_built: PerLevel[dict[kaVel.MapRootEntity, dict[kaVel.Entity, tuple[Triple, Triple]]]] = PerLevel()

#: What the engine derives from a map's size is below the map under names that begin so.
DERIVED = '.MapData_'
#: The place and size of what was derived of a map before anything was built in it, by its name.
_bare: PerLevel[dict[kaVel.MapRootEntity, dict[str, tuple[kaVel.Vec4, kaVel.Vec4]]]] = PerLevel()


def mapOf(anything: kaVel.Object) -> kaVel.MapRootEntity | None:
    """The map that an object stands in, or that it is."""
    above: Any = anything
    isMap = anything._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)
    return above if isMap else above.getAncestorOfType(kaVel.Reflection.MapRootEntity) or None


def holdIn(map: kaVel.MapRootEntity | None, root: kaVel.Entity, places: Sequence[Triple]):
    """Has a map hold the box around some places, for as long as `root` lives."""
    if not map:
        return
    level = levelOf(map)
    if level not in _built:
        _built[level] = {}
    scale = map.getComponent('transform').scale
    if map not in _built[level] and (scale.x != 1 or scale.z != 1):
        return  # its script has said how large it is
    if map not in _built[level] and _isLoaded(map):
        _bare.setdefault(level, {})[map] = {each.name: _stand(each) for each in _derived(map)}
    low, high = ([pick(place[axis] for place in places) for axis in range(3)] for pick in (min, max))
    _built[level].setdefault(map, {})[root] = (low[0], low[1], low[2]), (high[0], high[1], high[2])
    _fit(map, _built[level][map])


#: Called after something was taken away from a level.
settled: list[Callable[[], object]] = []


def settle(level: kaVel.Coordinator):
    """Fits the maps of a level to what is left in them, after something was taken away."""
    for map, boxes in _built.get(level, {}).items():
        if map:
            _fit(map, boxes)
    for function in settled:
        function()


def _fit(map: kaVel.MapRootEntity, boxes: dict[kaVel.Entity, tuple[Triple, Triple]]):
    for gone in [root for root in boxes if not root or root.isDying()]:
        del boxes[gone]
    boxes = {root: box for root, box in boxes.items() if levelOf(root)}  # others are kept aside by an editor
    transform = map.getComponent('transform')
    if not boxes:
        kaVel.configure(transform, position=kaVel.Vec4(0, 0, 0, 1), scale=kaVel.Vec4(1, 1, 1, 0))
        _layBare(map, _bare.get(levelOf(map), {}).get(map))
        return
    low = [min(box[0][axis] for box in boxes.values()) for axis in range(3)]
    high = [max(box[1][axis] for box in boxes.values()) for axis in range(3)]
    for axis in (0, 2):
        low[axis] = math.floor((low[axis] - MARGIN) / WHOLE) * WHOLE
        high[axis] = math.ceil((high[axis] + MARGIN) / WHOLE) * WHOLE
    kaVel.configure(transform, position=kaVel.Vec4(*((a + b) / 2 for a, b in zip(low, high)), 1),
                    scale=kaVel.Vec4(*(b - a for a, b in zip(low, high)), 0))
    map.getComponent('mapData').gridCellSize = CELL
    if _isLoaded(map):
        map.getComponent('mapData').updateSize()  # a level that stands still has its floor at once, too


def _isLoaded(map: kaVel.MapRootEntity) -> bool:
    return bool(map.getChild(DERIVED + 'mainPathGrid'))


def _derived(map: kaVel.MapRootEntity) -> list[Any]:
    return [each for each in map.children if each.name.startswith(DERIVED) and not each.isDying()]


def _stand(derived: Any) -> tuple[kaVel.Vec4, kaVel.Vec4]:
    """Place and size of a grid, or of what has a transform."""
    grid, transform = derived.getComponent('partitioning'), derived.getComponent('transform')
    return (grid.position, grid.size) if grid else (transform.position, transform.scale)


def _layBare(map: kaVel.MapRootEntity, bare: dict[str, tuple[kaVel.Vec4, kaVel.Vec4]] | None):
    """Has what is derived of a map as it was before anything was built in it; None where that is not known."""
    if bare is None:
        return
    for each in _derived(map):
        if each.name not in bare:
            each.setName('.gone')
            each.murder()
            continue
        position, size = bare[each.name]
        cells, grid = each.getComponent('grid'), each.getComponent('partitioning')
        if grid:
            kaVel.configure(grid, position=position, size=size)
            grid.updateSize()
        else:
            kaVel.configure(each.getComponent('transform'), position=position, scale=size)
        if cells:
            cells.updateSize()
