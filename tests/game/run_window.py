"""The game in a window that somebody uses: its size and mode, what is kept for the next game, when it stands still."""
import pathlib
import re
import signal
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game

#: Logs the window whenever it is another one than in the frame before.
WATCHED = """
window = kaVel.getSystem('WindowSystem2')
seen = []

def look():
    now = 'window %dx%d%s' % (window.width, window.height, ' away' if window.minimised else '')
    if seen[-1:] != [now]:
        seen.append(now)
        kaVel.log('%s #' % now)

entity = kaVel.make('Entity', parent=coordinator, name='watcher')
kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=look)
kaVel.subscribe('WindowFocusMessage', lambda message, active: kaVel.log(
    'active %s, loop %d' % (active, coordinator.loopState)))
"""


#: Two floors, a player on the upper one, and how high he stands every half a second.
STOOD_ON = """
import objects.GameObjects as place

def build(coordinator):
    coordinator.loadMap('floor')

def floor(map):
    kaVel.configure(map.getComponent('transform'), scale=kaVel.Vec4(12, 12, 12, 0))
    for height in (-3.2, 0.0):
        place.Block(map, at=(0, height, 0), size=(8, 0.2, 8))
    player = place.Player(map.getAncestorOfType(kaVel.Reflection.Coordinator), at=(0, 0.2, 0))
    frames = []

    def tell():
        frames.append(1)
        if len(frames) % 10 == 0:
            kaVel.log('stands at %.2f #' % player.getComponent('transform').position.y)

    entity = kaVel.make('Entity', parent=map, name='watcher')
    kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=tell)
"""


def settings_of(world):
    return world.folder / "config" / "mornal" / "settings.txt"


def read(path):
    return path.read_text(encoding="utf-8") if path.exists() else ""


def run_on_display(world, level):
    """A few frames of a game that somebody might watch."""
    with Display() as display:
        run = world.run(level=level, frames=2, DISPLAY=display.name, KAVEL_HEADLESS="")
    run.expect_code(0)
    return run


def test_size_and_mode_are_the_players_and_kept_for_the_next_game(world):
    world.write_level("Watched", WATCHED)
    with Display() as display:
        with Game(world, display, "Watched") as played:
            played.until_logged("window 1280x720 #")
            played.resize(900, 500)
            played.until_logged("window 900x500 #")
            played.until(lambda: "windowSize = 900x500" in read(settings_of(world)), "the size in the settings")
            played.focus()
            played.press("F11")
            played.until_logged("window 1600x900 #")
            played.press("alt+Return")
            played.until_logged("window 900x500 #", times=2)
            played.press("F11")
            played.until_logged("window 1600x900 #", times=2)
            assert played.quit() == 0, played.log()[-2000:]
        assert "windowMode = fullScreen" in read(settings_of(world))
        with Game(world, display, "Watched") as played:
            played.until_logged("window 1600x900 #")


def test_nobody_falls_through_the_floor_while_the_process_stands_still(world):
    world.write("scripts/levels/Floor.py", "import kaVel\n" + STOOD_ON)
    with Display("640x360") as display, Game(world, display, "Floor") as played:
        heights = lambda: re.findall(r"stands at (\S+) #", played.log())
        played.until(lambda: len(heights()) > 3, "the player to stand")
        before = heights()[-1]
        played.process.send_signal(signal.SIGSTOP)
        time.sleep(2.5)
        played.process.send_signal(signal.SIGCONT)
        told = len(heights())
        played.until(lambda: len(heights()) > told + 3, "the game to go on")
        assert heights()[-1] == before, heights()


def test_behind_another_window_the_game_stands_still_unless_the_player_wants_otherwise(world):
    world.write_level("Watched", WATCHED)
    with Display() as display:
        for line, behind in (("", 1), ("pauseWithoutFocus = off\n", 3)):
            world.write("config/mornal/settings.txt", line)
            with Game(world, display, "Watched") as played:
                played.until_logged("window 1280x720 #")
                played.focus()
                display.tool("windowfocus", display.tool("search", "--maxdepth", 0, "--name", ""))
                played.until_logged(f"active False, loop {behind}")
                played.focus()
                played.until(lambda: played.log().rstrip().endswith("active True, loop 3"), "the game to go on")


def test_a_window_that_was_put_away_is_known_to_be(world):
    world.write_level("Watched", WATCHED)
    with Display() as display, Game(world, display, "Watched") as played:
        played.until_logged("window 1280x720 #")
        display.tool("windowunmap", played.window)
        played.until_logged("window 1280x720 away #")
        display.tool("windowmap", played.window)
        played.until_logged("window 1280x720 #", times=2)


def test_two_hundred_sizes_cost_no_memory(world):
    if world.is_sanitized():
        return  # the sanitizer keeps what was freed
    world.write_level("Watched", WATCHED)
    with Display() as display, Game(world, display, "Watched") as played:
        played.until_logged("window 1280x720 #")

        def drag(steps, last):
            for step in range(steps):
                played.resize(400 + 7 * (step % 50), 300 + 5 * (step % 40))
            played.resize(*last)
            played.until_logged("window %dx%d #" % last)
            return played.memory_mb()

        first = drag(50, (801, 601))
        last = drag(200, (803, 603))
        assert last < first + 24, f"{first:.0f} MB after 50 sizes, {last:.0f} MB after 200 more"


def test_the_settings_file_keeps_what_it_does_not_know_and_names_what_it_does_not_take(world):
    world.write_level("Sets", """
import settings
kaVel.log('gamma is %s' % kaVel.getSystem('GraphicsSystem2').gamma)
kaVel.log('limit is %s' % kaVel.getSystem('FramePacingSystem').frameLimit)
settings.set('gamma', '1.5')
settings.set('vsync', True)
kaVel.log('gamma becomes %s' % kaVel.getSystem('GraphicsSystem2').gamma)
for name, value in (('gama', 2), ('gamma', 9), ('windowSize', 'large')):
    try:
        settings.set(name, value)
    except ValueError as problem:
        kaVel.log('refused: %s' % problem)
""")
    world.write("config/mornal/settings.txt", "# mine\ngamma = 3\nframeLimit = fast\nfromTheFuture = 7\n")
    log = run_on_display(world, "Sets").log
    for text in ("gamma is 3.0", "limit is 0.0", "gamma becomes 1.5", "did you mean 'gamma'",
                 "gamma is '9', but has to be a number from 1 to 4", "'large', but has to be a size like 1280x720",
                 "settings.txt:3: frameLimit is 'fast', but has to be a number from 0 to 1000"):
        assert text in log, f"the log lacks {text!r}:\n{log[-3000:]}"
    assert read(settings_of(world)) == ("# mine\ngamma = 1.5\nframeLimit = fast\nfromTheFuture = 7\nvsync = on\n")
    assert [path.name for path in settings_of(world).parent.iterdir()] == ["settings.txt"], "nothing else is left"


def test_a_settings_file_that_is_none_stands_aside_and_a_new_one_explains_itself(world):
    world.write_level("Sets", "import settings\nsettings.set('frameLimit', 50)")
    nonsense = b"\xff\xfe\x00not ours"
    world.write("config/mornal/settings.txt", nonsense)
    run_on_display(world, "Sets").expect("stands aside as")
    assert (settings_of(world).parent / "settings.txt.broken").read_bytes() == nonsense
    text = read(settings_of(world))
    assert text.endswith("frameLimit = 50\n") and "#renderScale = automatic" in text, text


def test_a_headless_run_has_no_player(world):
    world.write_level("Sets", "import settings\nsettings.set('gamma', 3)\nkaVel.log('kept %s' % settings.get('gamma'))")
    world.write("config/mornal/settings.txt", "gamma = 1\nwindowSize = 320x180\n")
    run = world.run(level="Sets", frames=2)
    run.expect_code(0)
    run.expect("kept 3.0")
    assert not run.has("FramePacingSystem"), "the render scale is left alone"
    assert read(settings_of(world)) == "gamma = 1\nwindowSize = 320x180\n"


if __name__ == "__main__":
    game.main(dict(globals()))
