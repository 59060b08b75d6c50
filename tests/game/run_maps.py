"""Maps in the game: what they derive from their size, what outlives them, what their objects do over time."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

HEAD = """
import kaVel
import objects.GameObjects as place

def sized(map, height):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(3, height, 5, 1), scale=kaVel.Vec4(8, 4, 6, 0))

def at(coordinator, frame, step):
    def doFrame():
        if kaVel.getSystem('GameLoopSystem').frameNumber == frame:
            step()
    place.onFrame(kaVel.make('Entity', parent=coordinator, name='clock'), doFrame)
"""


def run(world, name, text, frames=3, clean=True):
    world.write(f"scripts/levels/{name}.py", HEAD + text)
    outcome = world.run(level=name, frames=frames)
    outcome.expect_code(0)
    for failure in ("Error:", "Critical:", "Traceback", "Warning: ") if clean else ():
        assert not outcome.has(failure), outcome.log[-3000:]
    return outcome


def test_a_map_with_a_size_has_a_floor_and_a_ceiling_that_keep_bodies_in(world):
    box = run(world, "Box", """
def build(coordinator):
    map = coordinator.loadMap('box')
    at(coordinator, 120, lambda: report(map))

def box(map):
    sized(map, 8)
    for name, x, velocity in (('falling', 3, -2), ('rising', 5, 9)):
        ball = place.Ball(map, name, at=(x, 8, 5), diameter=0.5)
        ball.getComponent('physics').velocity = kaVel.Vec4(0, velocity, 0, 0)

def report(map):
    heights = [map.getChild(name).getComponent('transform').position.y for name in ('falling', 'rising')]
    kaVel.log('both rest %s' % all(abs(height - 6.25) < 0.1 for height in heights))
    for name in ('floor', 'ceiling'):
        slab = map.getChild('.MapData_' + name)
        kaVel.log('%s at %g, %s' % (name, slab.getComponent('transform').position.y,
                                    slab.getComponent('boundingVolume').hitBox))
""", frames=121)
    box.expect("both rest True")
    box.expect("floor at 5.5, Vec4(8, 1, 6, 0)")
    box.expect("ceiling at 10.5, Vec4(8, 1, 6, 0)")


def test_scripts_hold_cells(world):
    run(world, "Cells", """
import math

def build(coordinator):
    map = coordinator.loadMap('hall')
    at(coordinator, 2, lambda: report(map))

def hall(map):
    sized(map, 2)
    place.placed(map, 'Player', at=(4.1, 0, 5))

def report(map):
    grid = map.getDescendantByPath('.MapData_mainPathGrid/grid')
    data = map.getComponent('mapData')
    cell = data.getPlayerHex()
    assert (cell.x, cell.z, cell.grid) == (5, 3, grid) and cell == grid.getCell(5, 3) and cell.isValid(), cell
    assert cell in {kaVel.GridCell(grid, 5, 3)} and cell != grid.getCell(5, 2)
    cell.setFloatValue(3, 1.0)
    assert [(c.x, c.z) for c in grid.getCell(0, 0).getValidNeighbors()] == [(1, 0), (0, 1), (1, 1)]
    assert cell.getNeighbor(kaVel.Reflection.SquareGrid.Neighbor.LEFT) == grid.getCell(4, 3)
    data.setGuideWaypoints((cell, grid.getCell(0, 0)))
    assert data.getNextWaypoint() == cell
    off = kaVel.GridCell()
    assert not off.isValid() and math.isnan(off.getFloatValue())
    for wrong in (lambda: off.setFloatValue(1.0), lambda: data.setGuideWaypoints([cell, 7]),
                  lambda: data.setGuideWaypoints(7), lambda: grid.getCellFromPoint(cell, 0)):
        try:
            wrong()
        except RuntimeError:
            continue
        raise AssertionError('it passed')
    kaVel.log('all cells are right')
""").expect("all cells are right")


def test_what_became_of_objects_outlives_the_reload_of_their_level_and_others_between(world):
    level = """
def build(coordinator):
    if kaVel.getSystem('GameLoopSystem').frameNumber > 7:
        kaVel.forgetPersistentState()
    map = coordinator.loadMap('hall')
    lamp, key = map.getChild('lamp').getComponent('transform'), map.getChild('key')
    kaVel.log('%s: key %s, lamp %g' % (coordinator.levelName, not key.isDying(), lamp.position.y))
    frame = kaVel.getSystem('GameLoopSystem').frameNumber
    if not frame:
        at(coordinator, 1, lambda: change(lamp, key))
    at(coordinator, frame + 2, lambda: go(frame + 2, map))

def change(lamp, key):
    kaVel.persist(key, 'murder')
    key.murder()
    for height in (1, 7):
        kaVel.persist(lamp, 'setPosition', kaVel.Vec4(0, height, 0, 1))

def go(frame, map):
    kaVel.log('there is %s' % sorted(child.name for child in map.children if child.name in ('key', 'lamp')))
    kaVel.getSystem('GameLoopSystem').queueLoadLevel('Cellar' if frame == 2 else 'Manor')

def hall(map):
    place.placed(map, 'key')
    place.placed(map, 'lamp')
    gone = place.SphereLight(map, 'gone')
    gone.murder()
    kaVel.finishLoad(gone)
    assert not gone.getChild('.partitioningDummy'), 'a dead light got a place in the grid'
"""
    world.write("scripts/levels/Cellar.py", HEAD + level)
    log = run(world, "Manor", level, frames=11).log
    told = [line.split(": ", 1)[1] for line in log.splitlines() if "lamp" in line]
    assert told == ["Manor: key True, lamp 0", "there is ['lamp']", "Cellar: key True, lamp 0",
                    "there is ['key', 'lamp']", "Manor: key False, lamp 7", "there is ['lamp']",
                    "Manor: key True, lamp 0", "there is ['key', 'lamp']"], told


def test_a_spawner_makes_one_object_each_time_it_is_armed(world):
    spawn = run(world, "Spawn", """
def build(coordinator):
    coordinator.loadMap('hall')

Post = place.solid(place.ButtonPost, 'buttonPost')

def Broken(parent, name):
    place.placed(parent, name)
    raise ValueError('no lantern today')

def hall(map):
    chute = place.placed(map, 'chute')
    spawner = kaVel.addComponent(chute, 'trigger', 'ObjectSpawner', objectType='Ball', position=kaVel.Vec4(1, 2, 3, 1))
    body = kaVel.addComponent(chute, 'physics', 'RigidBody')
    first = spawner.spawnObject(body)
    kaVel.log('made %s at %s' % (kaVel.pathOf(first), first.getComponent('transform').position))
    body.useObjectSpawner(body)
    kaVel.configure(spawner, active=True, level='Spawn', objectType='Post')
    post = spawner.spawnObject(body)
    block = post.getChild('block').getComponent('transform').position
    kaVel.log('then %s, its block at %g, %g' % (post.name, block.x, block.z))
    kaVel.configure(spawner, active=True, objectType='Broken')
    kaVel.log('last %s, half dead %s' % (bool(spawner.spawnObject(body)), map.getChild('chuteBroken3').isDying()))
""", clean=False)
    for text in ("made Spawn/hall/chuteBall1 at Vec4(1, 2, 3, 1)", "then chutePost2, its block at 1, 3",
                 "last False, half dead True",
                 "chuteBroken3 is not built below Spawn/hall: the pattern Broken of the module levels.Spawn Traceback",
                 "ValueError: no lantern today"):
        spawn.expect(text)


def test_a_script_moves_a_property_over_time_and_is_told_its_own_line_when_that_fails(world):
    text = """
def build(coordinator):
    transform = place.placed(coordinator, 'lamp').getComponent('transform')
    graphics = coordinator.getManager('graphics2')
    kaVel.interpolate(transform, 'position', kaVel.Vec4(0, 6, 0, 1), seconds=1)
    kaVel.interpolate(graphics, 'sceneAmbient', 1, seconds=0.5, start=0)
    kaVel.interpolate(transform, 'scale', 3, seconds=1)
    at(coordinator, 31, lambda: kaVel.log('y %.0f, ambient %g' % (transform.position.y, graphics.sceneAmbient)))
"""
    fade = run(world, "Fade", text, frames=32, clean=False)
    line = (HEAD + text).split("'scale'")[0].count("\n") + 1
    fade.expect("y 3, ambient 1")
    fade.expect(f"Fade.py({line}): Error: Error while interpolating property `scale' of object `Fade/lamp/transform': "
                "NOT_LERPABLE")


if __name__ == "__main__":
    game.main(dict(globals()))
