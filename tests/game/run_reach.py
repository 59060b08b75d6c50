"""What a script finds in a map by cells and segments, and what it draws with a mesh of its own."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden


SEGMENTS = """
import kaVel
import objects.GameObjects as place
from kaVel import Vec4


def build(coordinator):
    map = coordinator.loadMap('cellar')
    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'hud', 'ScriptComponent', frameCallback=lambda: look(map))


def cellar(map):
    place.PartitioningGrid(map, at=(0, 0, 0), size=(16, 0, 16))
    place.Block(map, 'pillar', at=(3, 0, 1), size=(1, 2, 1))
    place.Block(map, 'behind', at=(3, 0, 4), size=(1, 2, 1))
    place.CargoCrate(map, 'crate', at=(3.75, 0, 1))


def names(volumes):
    return ' '.join(sorted(volume.parent.name for volume in volumes))


def look(map):
    if kaVel.getSystem('GameLoopSystem').frameNumber != 2:
        return
    def note(what, *values):
        kaVel.log('note: %s: %s' % (what, ' '.join(str(value) for value in values)))

    grid = map.getDescendantByPath('.MapData_partitioningGrid/partitioning')
    hit = grid.checkSegment(Vec4(3, 1, -4, 1), Vec4(0, 0, 10, 0), False)
    note('hit', bool(hit), hit.volume.parent.name, hit.point == Vec4(3, 1, 0.5, 1), hit.normal == Vec4(0, 0, -1, 0),
         '%.2f' % hit.t)
    miss = grid.checkSegment(Vec4(3, 1, -4, 1), Vec4(0, 0, 4, 0), False)
    note('miss', bool(miss), bool(miss.volume), miss.collided)
    at = grid.getCellCoords(Vec4(3, 0, 1, 1))
    x, z = int(at.x), int(at.z)
    cells = grid.rasterizeTriangle(Vec4(2.5, 0, 0.5, 1), Vec4(3, 0, 1.5, 1), Vec4(3.5, 0, 0.5, 1), 0)
    here = [cell for cell in cells if (cell.x, cell.z) == (x, z)]
    inCell = grid.castRayAgainstCell(here[0], Vec4(3, 1, 6, 1), Vec4(0, 0, -10, 0), False)
    note('cell', bool(here), inCell.volume.parent.name)
    note('stand', names(grid.getStaticGridCellList(x, z)))
    note('move', names(grid.getGridCellList(x, z)))
    note('outside', grid.getGridCellList(-1, 99))
    volume = map.getChild('crate').getComponent('boundingVolume')
    note('from above', volume.boxToLineSegmentWithInfo(Vec4(3.75, 9, 1, 1), Vec4(0, -9, 0, 0)).normal.y)
    note('touches', names(volume.colliders))
"""


def test_a_script_finds_volumes_by_segment_by_cell_and_by_what_they_touch(world):
    world.write("scripts/levels/Reach.py", SEGMENTS)
    run = world.run("Reach", frames=4)
    run.expect_code(0)
    notes = dict(line.split("note: ", 1)[1].split(": ") for line in run.log.splitlines() if "note: " in line)
    assert notes == {"hit": "True pillar True True 0.45", "miss": "False False False", "cell": "True pillar",
                     "stand": "pillar", "move": "crate", "outside": "[]", "from above": "1.0",
                     "touches": "pillar"}, notes


WALL = """
import math

import kaVel
import objects.GameObjects as place
from kaVel import MeshBuilder, Quaternion, Vec4


def build(coordinator):
    coordinator.loadMap('ruin')
    place.Camera(coordinator, 'camera', at=(-1.4, 2.1, -4.2), turn=14, pitch=7)


def wall():
    mesh = MeshBuilder()
    for wrong in (lambda: mesh.addTriangle(0, 1, 2), lambda: mesh.addSphere(1.0, 2),
                  lambda: mesh.addPlane(1, 1, 1 << 30),
                  lambda: mesh.addPolygon([(0, 0), (1, 1), (1, 0), (0, 1)])):
        try:
            wrong()
            kaVel.log('note: taken')
        except (ValueError, IndexError) as problem:
            kaVel.log('note: ' + type(problem).__name__)
    hole = [(0.8 * math.cos(a * math.pi / 12), 1.6 + 0.8 * math.sin(a * math.pi / 12)) for a in range(24)]
    outline = [(-2.4, 0), (-1.8, 0), (-1.8, 1.9), (-1.1, 1.9), (-1.1, 0), (2.4, 0), (2.4, 3), (-2.4, 3)]
    upright = Quaternion.fromAxisAngle(Vec4(1, 0, 0, 0), -math.pi / 2)
    mesh.addExtrusion(outline, 0.3, holes=[hole], turn=upright)
    mesh.addSphere(0.35, 24, 12, at=Vec4(1.7, 0.35, -0.6, 1))
    mesh.smoothNormals(0.7)
    mesh.generateTangents()
    return mesh


def ruin(map):
    place.PartitioningGrid(map, at=(0, 0, 0), size=(16, 0, 16))
    place.Built(map, 'wall', mesh=wall(), surface='brick')
    place.Box(map, 'floor', at=(0, -0.1, 0.6), size=(12, 0.1, 12), surface='concrete')
    place.Box(map, 'far', at=(0, 0, 3), size=(12, 5, 0.2), surface='concrete')
    place.ShadowSpot(map, 'lamp', at=(1.8, 3.4, -4.0), turn=-24, pitch=24, strength=2.0, reach=14, angle=80)
    place.SphereLight(map, 'behind', at=(0.6, 1.4, 1.4), strength=1.2, reach=5, color=(1.0, 0.5, 0.2))
"""


def test_a_script_draws_a_wall_with_a_hole_in_it(world):
    golden.small(world)
    world.write("scripts/levels/Reach.py", WALL)
    run = world.run("Reach", frames=4, screenshot="wall.png")
    run.expect_code(0)
    notes = [line.split("note: ", 1)[1] for line in run.log.splitlines() if "note: " in line]
    assert notes == ["IndexError", "ValueError", "ValueError", "ValueError"], notes
    golden.expect("script_wall", world.folder / "wall.png")


if __name__ == "__main__":
    game.main(dict(globals()))
