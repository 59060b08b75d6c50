"""Ways through a map in the game: what scripts ask of the path manager, and creatures among doors and crates."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

HEAD = """
import kaVel
import objects.GameObjects as place

def at(coordinator, frame, step):
    def doFrame():
        if kaVel.getSystem('GameLoopSystem').frameNumber == frame:
            step()
    place.onFrame(kaVel.make('Entity', parent=coordinator, name='clock%d' % frame), doFrame)

def sized(map):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 2, 0, 1), scale=kaVel.Vec4(12, 4, 12, 0))
"""


def run(world, name, text, frames):
    world.write(f"scripts/levels/{name}.py", HEAD + text)
    outcome = world.run(level=name, frames=frames)
    outcome.expect_code(0)
    for failure in ("Error:", "Critical:", "Traceback", "Warning: "):
        assert not outcome.has(failure), outcome.log[-3000:]
    return outcome


def test_scripts_ask_for_paths_and_read_requests(world):
    run(world, "Asking", """
def build(coordinator):
    map = coordinator.loadMap('hall')
    creature = place.placed(map, 'creature', at=(-4, 0, -4))
    path = kaVel.addComponent(creature, 'path', 'PathComponent')
    at(coordinator, 1, lambda: ask(map, creature, path))
    at(coordinator, 5, lambda: report(map, path))

def hall(map):
    sized(map)

def ask(map, creature, path):
    grid = map.getDescendantByPath('.MapData_mainPathGrid/grid')
    request = kaVel.PathRequest(creature, grid.getCell(9, 2), priority='RP_High', saturation=False)
    assert (request.hEntity, request.priority, request.rubberbanding, request.saturation) == (creature, 1, True, False)
    request.rubberbanding, request.timeInQueue = False, 0.25
    request.priority = kaVel.Reflection.RequestPriority.RP_Urgent
    assert (request.rubberbanding, request.priority, request.timeInQueue) == (False, 2, 0.25)
    for wrong in (lambda: kaVel.PathRequest(creature, grid.getCell(0, 0), priority='soon'),
                  lambda: setattr(request, 'timeInQueue', float('nan'))):
        try:
            wrong()
        except ValueError:
            continue
        raise AssertionError('it passed')
    path.submitPathRequest(request)
    assert path.isRequestPending() and path.getManager().getRequest(0).timeInQueue == 0.25

def report(map, path):
    assert path.requestStatus() == kaVel.Reflection.PathStatus.PS_Succeeded
    cells = [(cell.x, cell.z) for cell in path.path]
    assert cells[0] == (9, 2) and cells[-1] == (2, 2) and len(cells) == 8, cells
    assert path.getNextPathStep().x == 2 and all(kaVel.isWalkable(cell) for cell in path.path)
    kaVel.log('the path is right')
""", 6).expect("the path is right")


def test_a_creature_opens_the_iron_door_and_goes_around_what_is_put_in_its_way(world):
    outcome = run(world, "Errand", """
def build(coordinator):
    map = coordinator.loadMap('hall')
    creature = place.placed(map, 'creature', at=(-3, 0.9, -4))
    place.addVolume(creature, (0.6, 1.8, 0.6), 'BV_BOX')
    place.addBody(creature, 60)
    follower = kaVel.addComponent(creature, 'pathFollower', 'PathFollower', opensDoors=True, closesDoors=True, speed=2)
    follower.addKey('cellarDoor')
    said = set()
    place.onFrame(creature, lambda: said.add(follower.tell()))
    at(coordinator, 2, lambda: follower.goTo(kaVel.Vec4(-3, 0, 4, 1)))
    at(coordinator, 60, lambda: place.CargoCrate(map, 'crate', at=(-3, 0, 3), edge=1.0))
    at(coordinator, 600, lambda: report(map, creature, follower, said))

def hall(map):
    sized(map)
    place.Block(map, 'left', at=(-4.16, 0, 0), size=(4, 3, 0.2))
    place.Block(map, 'right', at=(2.6, 0, 0), size=(7, 3, 0.2))
    place.IronDoor(map, 'cellarDoor', at=(-1.5, 0, 0), locked=True)

def report(map, creature, follower, said):
    place = creature.getComponent('transform').position
    door = map.getChild('cellarDoor').getComponent('physics')
    ways = map.getComponent('walkways')
    cell = map.getDescendantByPath('.MapData_mainPathGrid/grid').getCellFromPoint(kaVel.Vec4(-3, 0, 3, 1), 0)
    assert follower.arrived and abs(place.x + 3) < 0.5 and abs(place.z - 4) < 0.5, (place, follower.tell(), said)
    assert 'waits for the door cellarDoor to open' in said and follower.tell() == 'has come to (-3, 4)', said
    assert not door.open and not door.locked and not kaVel.isWalkable(cell) and not ways.hasRoom(cell, 0.3)
    kaVel.log('it is there')
""", 601)
    outcome.expect("it is there")


if __name__ == "__main__":
    game.main(dict(globals()))
