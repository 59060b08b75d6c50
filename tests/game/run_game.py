"""The executable, run headless: what it shows, what it logs, and how it meets bad content."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import png


def brightness(picture):
    """Mean and the number of different values of the green channel on a coarse grid."""
    values = [picture.rows[y][x * picture.step + 1]
              for y in range(0, picture.height, 8) for x in range(0, picture.width, 8)]
    return sum(values) / len(values), len(set(values))


def order(log, *texts):
    places = [log.find(text) for text in texts]
    assert -1 not in places and places == sorted(places), f"not in this order: {list(zip(texts, places))}"


def test_the_first_room_is_shown_and_the_game_ends_in_order(world):
    run = world.run(frames=5, screenshot="room.png", KAVEL_VERBOSE="1")
    run.expect_code(0)
    order(run.log, "System bootstrapping complete.", "Constructing system WindowSystem2.",
          "Constructing system GraphicsAdapterSystem.", "Configuring system GraphicsAdapterSystem.",
          "Starting system GraphicsAdapterSystem.", "Configuring system WindowSystem2.",
          "Starting system WindowSystem2.", "Shutting down system WindowSystem2",
          "Shutting down system GraphicsAdapterSystem", "Shutting down system SystemSystem")
    mean, values = brightness(png.read(world.folder / "room.png"))
    assert 5 < mean < 120, f"a dark room is seen, not black and not bright: mean {mean}"
    assert values > 40, f"a furnished room has many shades: {values}"


def test_two_runs_give_the_same_log_and_the_same_picture(world):
    first = world.run(frames=20, screenshot="first.png")
    second = world.run(frames=20, screenshot="second.png")
    first.expect_code(0)
    assert first.log.replace("first.png", "*") == second.log.replace("second.png", "*"), "the logs differ"
    assert (world.folder / "first.png").read_bytes() == (world.folder / "second.png").read_bytes()


def test_the_quit_value_is_the_exit_code(world):
    world.write_level("Quits", "kaVel.getSystem('GameLoopSystem').quit(7)")
    world.run(level="Quits", frames=50).expect_code(7)


def test_a_picture_that_has_nowhere_to_go_ends_the_run_at_once(world):
    run = world.run(frames=100000, screenshot="no_such_folder/room.png")
    run.expect_code(1)
    assert run.log.count("no_such_folder/room.png cannot be written") == 1, run.log[-2000:]


def test_an_unknown_level_ends_the_start_with_its_name_and_the_traceback(world):
    run = world.run(level="NoSuchLevel")
    run.expect_code(1)
    run.expect("Critical assertion failed")
    run.expect("NoSuchLevel")


def test_a_level_that_raises_names_file_and_line(world):
    world.write_level("Raises", "x = 1\nraise ValueError('broken on purpose')")
    run = world.run(level="Raises")
    run.expect_code(1)
    run.expect("broken on purpose")
    assert re.search(r"levels/Raises\.py\", line 6", run.log), run.log[-2000:]


def test_a_configuration_that_raises_names_the_system(world):
    world.write("scripts/serialization.py", "def configureSystem(system):\n    raise RuntimeError('no settings')\n")
    run = world.run()
    run.expect_code(1)
    run.expect("Error while configuring system ")
    run.expect("no settings")
    run.expect("serialization.py\", line 2")


def test_a_game_configuration_without_a_level_ends_the_start(world):
    config = (game.ROOT / "scripts" / "GameConfig.py").read_text(encoding="utf-8")
    world.write("scripts/GameConfig.py", config.replace("initialLevel = ", "levelOfOld = "))
    run = world.run()
    run.expect_code(1)
    run.expect("initialLevel")


def test_a_handler_that_raises_is_shown_once_and_the_game_goes_on(world):
    world.write_level("BadHandler", """
def bad(message, key):
    raise KeyError('handler broken')
kaVel.subscribe('KeyDownMessage', bad)
kaVel.send('KeyDownMessage', 65)
kaVel.send('KeyDownMessage', 65)
kaVel.log('still here')
""")
    run = world.run(level="BadHandler")
    run.expect_code(0)
    run.expect("still here")
    run.expect("handler broken")
    assert run.log.count("Assertion failed: [") == 1, "the handler fell out after its first failure"


def test_a_callback_that_raises_is_one_entry_with_its_line_and_the_path_of_its_object(world):
    world.write_level("Lamp", """
def flicker():
    raise ValueError('the lamp is broken')
room = kaVel.make('Entity', parent=coordinator, name='room')
lamp = kaVel.make('Entity', parent=room, name='lamp')
kaVel.addComponent(lamp, 'player', 'ScriptComponent', frameCallback=flicker)
""")
    run = world.run(level="Lamp")
    run.expect_code(0)
    assert re.search(r"scripts/levels/Lamp\.py\(6\): Error: .* Lamp/room/lamp/player: the frame callback "
                     r"levels\.Lamp::flicker failed: ValueError: the lamp is broken\. It is not called again", run.log)
    assert run.log.count("Traceback (most recent") == 1 and len(re.findall(r"\): Error: ", run.log)) == 1
    assert not run.has("stack trace"), "the engine's own stack tells nothing"


def test_unknown_names_are_told_with_the_nearest_one(world):
    world.write_level("Typos", """
entity = kaVel.make('Entity', parent=coordinator, name='thing')
for attempt in (lambda: kaVel.getSystem('TimeSystm'),
                lambda: kaVel.addComponent(entity, 'transform', 'TransformComponet'),
                lambda: entity.addComponent('transform', 'NoSuchComponent'),
                lambda: entity.addComponent('noSuchKey', 'TransformComponent'),
                lambda: entity.nme,
                lambda: kaVel.messageType('KeyDwnMessage')):
    try:
        attempt()
    except Exception as error:
        kaVel.log('%s: %s' % (type(error).__name__, error))
""")
    run = world.run(level="Typos")
    run.expect_code(0)
    for text in ("did you mean 'TimeSystem'", "did you mean 'TransformComponent'", "NoSuchComponent", "noSuchKey",
                 "did you mean 'KeyDownMessage'"):
        run.expect(text)


def test_a_missing_and_a_broken_model_leave_a_gap_and_the_room_stands(world):
    models = world.folder / "assets" / "models"
    names = sorted(path.stem for path in models.glob("*.kaVelModel"))
    (models / "chair.kaVelModel").unlink()
    (models / "desk.kaVelModel").write_bytes(b"nonsense that is no model at all")
    run = world.run(frames=3, screenshot="room.png")
    run.expect_code(0)
    run.expect("chair.kaVelModel!")
    run.expect("Invalid magic in file")
    assert brightness(png.read(world.folder / "room.png"))[1] > 40
    assert len(names) > 6


def test_a_missing_and_a_broken_texture_are_named_and_the_room_stands(world):
    victims = [world.folder / "assets" / "textures" / name for name in ("boardsDiffuse.dds", "wallpaperDiffuse.dds")]
    victims[0].unlink()
    victims[1].write_bytes(b"DDS not really")
    run = world.run(frames=3)
    run.expect_code(0)
    run.expect("Upload of texture asset")


def test_a_broken_effect_ends_the_start_with_file_and_line(world):
    effect = world.folder / "assets" / "shaders" / "ff.fx"
    effect.write_text(effect.read_text(encoding="utf-8") + "\ntechnique Broken { pass P0 { nonsense } }\n",
                      encoding="utf-8")
    run = world.run()
    run.expect_code(1)
    run.expect("Errors occurred while processing effect ff.fx")
    assert re.search(r"ff\.fx[(:]\d+", run.log), run.log[-2000:]


if __name__ == "__main__":
    game.main(dict(globals()))
