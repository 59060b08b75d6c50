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


if __name__ == "__main__":
    game.main(dict(globals()))
