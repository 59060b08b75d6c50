"""The console in the running game: typed by real keys, looked at in the picture, and in a window of its own."""
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game
from png import read

LEFT_OF_1, ENTER, TAB, SHIFT, UP = 0xC0, 0x0D, 0x09, 0x10, 0x26
PUNCTUATION = {" ": (0x20, False), ".": (0xBE, False), "/": (0xBF, False), ":": (0xBA, True), ">": (0xBE, True),
               "+": (0xBB, True), "(": (ord("9"), True), ")": (ord("0"), True), "'": (0xDE, False),
               "-": (0xBD, False), "=": (0xBB, False), "_": (0xBD, True)}

#: A room with one thing in it, somebody who flies about, and what is heard of the keys.
ROOM = """
import kaVel
import objects.GameObjects as place

def build(coordinator):
    coordinator.loadMap('hall')
    place.FreeCamera(coordinator, 'camera', at=(0, 1.6, -3))
    kaVel.subscribe('KeyDownMessage', lambda message, key: kaVel.log('down %d' % key), kaVel.officeOf(coordinator))
    kaVel.subscribe('KeyUpMessage', lambda message, key: kaVel.log('up %d' % key), kaVel.officeOf(coordinator))

def hall(map):
    place.PartitioningGrid(map, size=(8, 0, 8))
    place.Box(map, 'box', at=(0, 0, 0), size=(1, 1, 1))
    place.SphereLight(map, 'lamp', at=(0, 3, -2), reach=8)
"""


class Typist:
    """Writes a recording of somebody who types."""

    def __init__(self, world, level):
        self.lines = ["input 1", f"level {level}", "seed 1", "window 1280 720"]
        self.frame = 2
        self.file = world.folder / "typed.txt"

    def key(self, code, shifted=False):
        for each, way in ((SHIFT, "down"),) * shifted + ((code, "down"), (code, "up")) + ((SHIFT, "up"),) * shifted:
            self.lines.append(f"{self.frame} key {each} {way}")

    def type(self, text):
        """Types a text within a frame."""
        for letter in text:
            if letter in PUNCTUATION:
                self.key(*PUNCTUATION[letter])
            else:
                self.key(ord(letter.upper()), letter.isupper())
        self.frame += 1

    def press(self, *codes):
        for code in codes:
            self.key(code)
            self.frame += 1

    def line(self, text):
        self.type(text)
        self.press(ENTER)

    def play(self, world, level, **words):
        self.file.write_text("\n".join([*self.lines, f"{self.frame + 1} end", ""]), encoding="utf-8")
        return world.run(level=level, frames=self.frame + 3, KAVEL_REPLAY=str(self.file), **words)


def type_lines(world, *lines, body=ROOM, **words):
    """Opens the console in the room by its key and types lines."""
    world.write("scripts/levels/Room.py", body)
    typist = Typist(world, "Room")
    typist.press(LEFT_OF_1)
    for line in lines:
        typist.line(line)
    run = typist.play(world, "Room", **words)
    run.expect_code(0)
    return run


def answers(run, line):
    """What the log says behind the echo of a line, up to the next echo or the end."""
    rows = run.log.splitlines()
    at = next(number for number, row in enumerate(rows) if row.endswith(f"Information: {line}"))
    return rows[at + 1:]


def expect_answer(run, line, text):
    found = answers(run, line)
    assert text in found[0], f"{line!r} was answered by {found[:3]}, not by {text!r}"


def test_lines_are_typed_run_and_answered(world):
    table = (
        ("get hall/box/transform.position", "hall/box/transform.position = (0, 0.5, 0, 1)"),
        ("set hall/box/transform.position 1 2 3", "hall/box/transform.position = (1, 2, 3, 1)"),
        ("set hall/box/graphics2.visible off", "hall/box/graphics2.visible = False"),
        ("set hall/box/graphics2.visible maybe", "Error: set: 'maybe' is not on or off"),
        ("set hall/box/graphics2.layer WORLD_DEBUG", "hall/box/graphics2.layer = "),
        ("get hall/bxo", "Error: get: hall has no child 'bxo'; did you mean 'box'?"),
        ("get hall/box/transform.positoin", "has no property 'positoin'; did you mean 'position'?"),
        ("call hall/box.getName", "hall/box.getName gave 'box'"),
        ("call hall/box/transform.setScale 1", "Error: call: hall/box/transform.setScale"),
        ("find lamp", "c:/hall/lamp (Entity)"),
        ("tree hall/box 1", "box (Entity)"),
        ("select hall", "Paths begin at Room/hall (MapRootEntity)"),
        ("get box/graphics2.visible", "box/graphics2.visible = False"),
        ("timescale 0.5", "Time runs at 0.5"),
        ("set GraphicsSystem2.gamma far", "Error: set: GraphicsSystem2.gamma stays 2.2: 'far' is no number"),
        ("set hall/box/graphics2.layer nowhere", "'nowhere' is none of WORLD or WORLD_UNCONDITIONAL or "),
        ("call", "Error: call: name an object and a method"),
        ("teleport", "Error: teleport: name a place or an object"),
        ("timescale fast", "Error: timescale: 'fast' is no number"),
        ("teleport 1 2 3", "At 1.00, 2.00, 3.00"),
        ("bind nokey help", "Error: bind: 'nokey' is no key"),
        ("> level.levelName + 's'", "'Rooms'"),
        ("> x = 2", ""),
        ("> x + 1", "3"),
        ("> nothing", "Error: >: NameError: name 'nothing' is not defined"),
        ("> 1 +", "Error: >: invalid syntax at column 4 of: 1 +"),
        ("changeLevel Rom", "Error: changeLevel: there is no level 'Rom'"),
        ("reload nowhere", "Error: reload: "),
        ("spawn nowhere Chair", "Could not find the player."),
        ("reload objects.GameObjects", ""),
        ("exec no-such-file", "Error: exec: [Errno 2]"),
        ("alias where get camera/transform.position", ""),
        ("where", "camera/transform.position = (1, 2, 3, 1)"),
    )
    run = type_lines(world, *(line for line, _ in table))
    for line, answer in table:
        expect_answer(run, line, answer)
    assert not run.has("assertion failed"), run.log[-3000:]
    assert not run.has("cannot be completed"), run.log[-3000:]


def test_the_open_console_is_seen_and_the_game_hears_no_key(world):
    world.write("scripts/levels/Room.py", ROOM)
    typist = Typist(world, "Room")
    typist.frame = 3
    typist.lines.append("3 key 90 down")
    typist.frame = 4
    typist.press(LEFT_OF_1)
    typist.type("get hall/box")
    typist.lines.append(f"{typist.frame} key 90 up")
    run = typist.play(world, "Room", screenshot="open.png")
    run.expect_code(0)
    heard = [row.split("Information: ")[1] for row in run.log.splitlines() if " down " in row or " up " in row]
    assert heard == ["down 90", "down 192", "up 90", "up 192"], heard
    closed = Typist(world, "Room").play(world, "Room", screenshot="closed.png")
    closed.expect_code(0)
    shown, world_alone = (read(world.folder / name) for name in ("open.png", "closed.png"))
    differing = [share_of_change(shown, world_alone, part) for part in ((0.0, 0.7), (0.95, 1.0))]
    assert differing[0] > 0.9 and differing[1] < 0.1, differing


def share_of_change(picture, other, part):
    """Which part of the pixels differ between two heights, counted from the top."""
    rows = range(int(part[0] * picture.height), int(part[1] * picture.height), 4)
    places = [(y, x * picture.step) for y in rows for x in range(0, picture.width, 8)]
    return sum(picture.rows[y][x:x + 3] != other.rows[y][x:x + 3] for y, x in places) / len(places)


def test_what_is_watched_stays_on_the_screen_when_the_console_is_shut(world):
    world.write("scripts/levels/Room.py", ROOM)
    pictures = []
    for line in ("watch hall/box/transform.position", "get hall/box/transform.position"):
        typist = Typist(world, "Room")
        typist.press(LEFT_OF_1)
        typist.line(line)
        typist.press(LEFT_OF_1)
        typist.play(world, "Room", screenshot="shut.png").expect_code(0)
        pictures.append(read(world.folder / "shut.png"))
    corner, below = (share_of_change(*pictures, part) for part in ((0.0, 0.1), (0.1, 1.0)))
    assert corner > 0.001 and below == 0.0, (corner, below)


COMPLETING = ROOM + """
    from console.Completion import ways
    from console.Session import Session
    level = map.getAncestorOfType(kaVel.Reflection.Coordinator)

    def show():
        session = Session(level.getChild('Console'))
        for line in ('ge', 'get ', 'get hall/b', 'get hall/box/transform.pos', 'call hall/box.getN',
                     'set hall/box/graphics2.layer WORLD_', 'set hall/box/graphics2.visible ', 'changeLevel Fir',
                     'spawn objects.GameObjects Armch', 'view Hea', 'bind F7 tel', 'get nowhere/x', '>level.levelN'):
            kaVel.log('%s => %s' % (line, [way[0] + '|' + way[2] for way in ways(session, line)]))
        watcher.frameCallback = None

    watcher = kaVel.addComponent(place.Entity(map, 'watcher'), 'cursor', 'ScriptComponent', frameCallback=show)
"""


def test_lines_are_completed_with_a_sentence_on_each_way(world):
    world.write("scripts/levels/Room.py", COMPLETING)
    run = world.run(level="Room", frames=3)
    run.expect_code(0)
    for line, way in (
            ("ge", "get|Shows a property of an object, or all of them."),
            ("get ", "get c:/|The level"),
            ("get hall/b", "get hall/box|Entity"),
            ("get hall/box/transform.pos", "get hall/box/transform.position|"),
            ("call hall/box.getN", "call hall/box.getName|The object's name; the first read"),
            ("set hall/box/graphics2.layer WORLD_", "layer WORLD_UNCONDITIONAL|"),
            ("set hall/box/graphics2.visible ", "visible off|"),
            ("changeLevel Fir", "changeLevel FirstRoom|"),
            ("spawn objects.GameObjects Armch", "spawn objects.GameObjects Armchair|"),
            ("view Hea", "view Heard|"),
            ("bind F7 tel", "bind F7 teleport|Puts the feet of whoever looks"),
            (">level.levelN", ">level.levelName")):
        found = next(row for row in run.log.splitlines() if f" {line} => " in row)
        assert way in found, found
    run.expect("get nowhere/x => []")


def test_a_handle_of_what_is_gone_tells_what_it_was_and_how_it_ended(world):
    run = type_lines(world, "> box = at('hall/box/transform')", "> at('hall/box').murder()", "> 0", "> box.position",
                     "> box.getName()", "> kaVel.make('Entity').children")
    for line in ("> box.position", "> box.getName()"):
        told = answers(run, line)[1]
        assert "It was the TransformComponent Room/hall/box/transform, gone in frame " in told, told
        assert told.endswith(", when Room/hall/box was murdered at <console>:1"), told


def test_a_file_of_lines_stops_at_the_one_that_fails(world):
    world.write("bin/lines.txt", "# a comment\n\ntimescale 0.5\nget nowhere\ntimescale 1\n")
    run = type_lines(world, "exec lines.txt")
    run.expect("Error: exec: lines.txt, line 4 failed, and the rest is left out: get nowhere")
    assert not run.has("Time runs at 1\n")


def test_the_console_goes_with_its_lines_into_another_level(world):
    world.write_level("Next", "kaVel.log('arrived')")
    run = type_lines(world, "alias here > level.levelName", "here", "changeLevel Next", "here")
    told = [row.rpartition(" ")[2] for row in run.log.splitlines() if row.endswith(("'Room'", "'Next'"))]
    assert told == ["'Room'", "'Next'"], told


def test_a_script_of_commands_that_is_wrong_costs_its_commands_only(world):
    world.write("scripts/console/World.py", "import nowhere\n")
    run = type_lines(world, "> 1 + 1")
    run.expect("The commands of console.World are missing:")
    expect_answer(run, "> 1 + 1", "2")


#: The code of the key left of 1, whatever stands on it.
LEFT_OF_1_HOST = "49"

#: A layout -> a line, and the codes of the keys that it is typed by.
LAYOUTS = {
    "us": ("help", ("43", "26", "46", "33")),
    "de": ("h\u00e4lp", ("43", "48", "46", "33")),
    "fr": ("aide", ("24", "31", "40", "26")),  # its a stands where q does elsewhere
}


def test_the_key_left_of_1_opens_it_on_any_layout_and_types_what_stands_on_the_keys(world):
    world.write("scripts/levels/Room.py", ROOM)
    state = {"XDG_STATE_HOME": str(world.folder / "state")}
    lines = []
    with Display() as display:
        for layout, (line, keys) in LAYOUTS.items():
            os.system(f"DISPLAY={display.name} setxkbmap {layout}")
            with Game(world, display, "Room", **state) as running:
                running.focus()
                running.press(LEFT_OF_1_HOST)  # whatever stands on it: a dead accent waits for no letter
                running.until_logged("down 192")
                for key in (*keys, "36"):
                    running.press(key)
                running.until_logged(f"Information: {line}")
                running.press(LEFT_OF_1_HOST)
                running.press("43")
                running.until_logged("down 72")
                assert running.quit() == 0
            lines.append(line)
    history = world.folder / "state" / "mornal" / "consoleHistory"
    assert history.read_text(encoding="utf-8") == "".join(line + "\n" for line in lines)


if __name__ == "__main__":
    game.main(dict(globals()))
