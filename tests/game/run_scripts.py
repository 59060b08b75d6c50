"""The game's own scripts, run in the engine: settings, the loader, the free camera, the first room."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game


def numbers(log, label):
    """The floats of the one log line that holds `label`."""
    lines = [line.split(label, 1)[1] for line in log.splitlines() if label in line]
    assert len(lines) == 1, (label, lines)
    return [float(text) for text in re.findall(r"-?\d+\.?\d*(?:e-?\d+)?", lines[0])]


def test_the_first_room_is_furnished_and_every_asset_of_it_loads(world):
    world.write("scripts/levels/Inventory.py", """
import kaVel
from levels.FirstRoom import villa
def build(coordinator):
    coordinator.loadMap('villa')
    models = kaVel.Reflection.ModelGraphicsComponent2
    drawn = [h for h in kaVel.descendants(coordinator) if h._getType().isSubclassOf(models)]
    kaVel.log('inventory: %d %d' % (len(drawn), len({h.meshName for h in drawn})))
    kaVel.log('without normal map: %s' % [h.meshName for h in drawn if not h.normalTextureName])
""")
    run = world.run(level="Inventory", frames=2)
    run.expect_code(0)
    objects, models = numbers(run.log, "inventory: ")
    assert objects >= 30 and models >= 6, (objects, models)
    run.expect("without normal map: ['candleFlame'")
    for failure in ("error opening file", "Upload of texture asset", "failed to load"):
        assert not run.has(failure), failure


def test_a_missing_level_names_the_levels_that_there_are(world):
    run = world.run(level="FirstRom")
    run.expect_code(1)
    run.expect("there is no level 'FirstRom'; scripts/levels has: Bestiary, Dawn, FirstRoom")


def test_the_level_of_the_readme_works_as_it_stands(world):
    readme = (game.ROOT / "README.md").read_text(encoding="utf-8")
    world.write("scripts/levels/MyRoom.py", readme.split("```python\n", 1)[1].split("```", 1)[0])
    run = world.run(level="MyRoom", frames=2)
    run.expect_code(0)
    assert numbers(run.log, "Object tree: ")[0] > 30, "it stands furnished"
    assert not run.has("Error:"), run.log[-2000:]


def test_a_missing_map_names_the_file_that_lacks_it(world):
    world.write_level("NoMap", "coordinator.loadMap('cellar')")
    run = world.run(level="NoMap")
    run.expect_code(1)
    run.expect("level 'NoMap' has no map 'cellar': scripts/levels/NoMap.py has no function of that name")


def test_a_level_without_a_build_function_is_told_so(world):
    world.write("scripts/levels/Hollow.py", "import kaVel\n")
    run = world.run(level="Hollow")
    run.expect_code(1)
    run.expect("scripts/levels/Hollow.py has no function build(coordinator)")


def test_a_screenshot_without_a_number_of_frames_is_taken_and_ends_the_run(world):
    run = world.run(frames="", screenshot="room.png")
    run.expect_code(0)
    assert (world.folder / "room.png").stat().st_size > 10000


def test_an_object_that_fails_to_load_is_named_and_the_rest_loads_on(world):
    world.write_level("HalfBroken", """
def fails():
    raise ValueError('no such spell')
for name, callback in (('first', fails), ('second', lambda: kaVel.log('second is loaded'))):
    entity = kaVel.make('Entity', parent=coordinator, name=name)
    kaVel.addComponent(entity, 'director', 'ScriptComponent', loadCallback=callback)
""")
    run = world.run(level="HalfBroken")
    run.expect_code(0)
    run.expect("no such spell")
    run.expect("second is loaded")


def test_what_is_built_in_a_running_level_is_complete_after_finishLoad(world):
    world.write_level("Spawns", """
import objects.GameObjects as place
def spawn():
    if kaVel.getSystem('GameLoopSystem').frameNumber != 2:
        return
    table = place.placed(coordinator, 'table', turn=90)
    table.getComponent('transform').angle = 1.0
    before = table.getComponent('transform').angle
    kaVel.finishLoad(table)
    table.getComponent('transform').angle = 1.0
    kaVel.log('angles: %f %f' % (before, table.getComponent('transform').angle))
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=spawn)
""")
    run = world.run(level="Spawns")
    run.expect_code(0)
    before, after = numbers(run.log, "angles: ")
    assert abs(before) < 0.01 and abs(after - 1.0) < 0.01, "an angle is taken once the load is complete"


def test_a_level_is_read_anew_from_its_file_at_each_load(world):
    world.write_level("Changing", """
import loader, os
path = '../scripts/levels/Other.py'
open(path, 'w').write('import kaVel\\ndef build(coordinator):\\n    kaVel.log("one")\\n')
loader.loadLevel('Other').murder()
open(path, 'w').write('import kaVel\\ndef build(coordinator):\\n    kaVel.log("two, and longer")\\n')
loader.loadLevel('Other').murder()
""")
    run = world.run(level="Changing")
    run.expect_code(0)
    run.expect("one")
    run.expect("two, and longer")


def test_the_free_camera_goes_the_same_way_at_every_frame_rate(world):
    world.write_level("Walk", """
import GameConfig
import objects.GameObjects as place
camera = place.FreeCamera(coordinator, 'camera', at=(1, 1.7, 2), turn=90)
def begin():
    if kaVel.getSystem('GameLoopSystem').frameNumber == 2:
        kaVel.send('KeyDownMessage', ord('W'))
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=begin)
""")
    ways = {}
    for rate in (32, 64):  # rates that 4096 ticks divide into without a rest
        config = (game.ROOT / "scripts" / "GameConfig.py").read_text(encoding="utf-8")
        world.write("scripts/GameConfig.py", config.replace("fixedFrameRate = 60", f"fixedFrameRate = {rate}"))
        run = world.run(level="Walk", frames=rate + 2)
        run.expect_code(0)
        ways[rate] = numbers(run.log, "camera at Vec4")[:3]
    assert all(abs(a - b) < 1e-3 for a, b in zip(ways[32], ways[64])), ways
    x, y, z = ways[64]
    assert 2.0 < x < 2.8 and abs(y - 1.7) < 1e-4 and abs(z - 2) < 1e-3, "about 1.65 m east in one second"


def test_mouse_and_escape_reach_the_free_camera(world):
    world.write_level("Look", """
import objects.GameObjects as place
camera = place.FreeCamera(coordinator, 'camera')
def frame():
    number = kaVel.getSystem('GameLoopSystem').frameNumber
    if number == 2:
        kaVel.send('MouseMove', 0.25, 5.0)
    if number == 3:
        q = camera.getComponent('transform').orientation
        kaVel.log('looking: %f %f %f %f' % (q.r, q.i, q.j, q.k))
        kaVel.send('KeyDownMessage', 0x1B)
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=frame)
""")
    run = world.run(level="Look", frames=1000)
    run.expect_code(0)
    r, i, j, k = numbers(run.log, "looking: ")
    assert i > 0.6 and j > 0.1, "pitched down and turned to the right"
    assert not run.has("After 1000 frames"), "Escape ended the game"


def test_an_action_answers_to_each_of_its_keys_and_buttons_and_an_unknown_one_is_told(world):
    world.write_level("Binds", """
import bindings
bindings.ACTIONS['wave'] = ('F9', 'G', 'Middle button')
bindings.ACTIONS['broken'] = ('Entr',)
kaVel.onKey(kaVel.make('Entity', parent=coordinator), 'wave', lambda: kaVel.log('waved'))
for action in ('wav', 'broken'):
    try:
        kaVel.onKey(coordinator, action, print)
    except Exception as error:
        kaVel.log('%s: %s' % (type(error).__name__, error))
def frame():
    if kaVel.getSystem('GameLoopSystem').frameNumber == 2:
        for key in (0x78, ord('G'), ord('H')):
            kaVel.send('KeyDownMessage', key)
        for button in (0, 2):
            kaVel.send('MouseDownMessage', button, 0.0, 0.0)
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=frame)
""")
    run = world.run(level="Binds")
    run.expect_code(0)
    assert run.log.count("waved") == 3, run.log[-2000:]
    run.expect("no action 'wav' in bindings.ACTIONS; did you mean 'wave'?")
    run.expect("bindings.ACTIONS['broken'] has 'Entr', which is no key")


def test_the_developers_keys_draw_what_was_asked_for_and_no_more(world):
    world.write_level("Keys", """
import objects.GameObjects as place
place.FreeCamera(coordinator, 'camera')
config, profiler = kaVel.getSystem('GlobalConfigSystem'), kaVel.getSystem('ProfilerSystem')
def frame():
    number = kaVel.getSystem('GameLoopSystem').frameNumber
    if number in (2, 3, 4, 5):
        kaVel.send('KeyDownMessage', {2: 0x72, 3: 0x73, 4: 0x72, 5: 0x73}[number])
        kaVel.log('keys: %d %d %d %d %d' % (profiler.showResults, config.debugDrawHitBoxes,
                  config.debugDrawLightVolumes, config.debugDrawEnabled, config.debugDrawSystemsOnly))
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=frame)
""")
    run = world.run(level="Keys", frames=8)
    run.expect_code(0)
    seen = re.findall(r"keys: (.*)", run.log)
    assert seen == ["1 0 0 1 1", "1 1 1 1 0", "0 1 1 1 0", "0 0 0 0 1"], seen
    assert not run.has("Error:"), run.log[-2000:]


if __name__ == "__main__":
    game.main(dict(globals()))
