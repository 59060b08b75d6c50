"""Reports of runs: written by their key in a window and in real time, and played again in another process."""
import os
import pathlib
import signal
import sys
import time
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game

F12 = 0x7B
SAME = "The end is as in the report: "

#: Somebody who walks about among things that fall, by a seed.
ROOM = """
import kaVel
import objects.GameObjects as place

def build(coordinator):
    coordinator.loadMap('hall')
    place.Player(coordinator, 'Player', at=(0, 0, -3), turn=0)
    steps = iter(range(5))
    walker = kaVel.addComponent(place.Entity(coordinator, 'steps'), 'cursor', 'ScriptComponent')
    walker.frameCallback = lambda: next(steps, 0) == 4 and kaVel.log('it goes on')
    kaVel.subscribe('KeyDownMessage', lambda message, key: kaVel.log('down %d' % key), kaVel.officeOf(coordinator))

def hall(map):
    place.PartitioningGrid(map, size=(16, 0, 16))
    place.Box(map, 'floor', at=(0, -1, 0), size=(16, 1, 16))
    place.SphereLight(map, 'lamp', at=(0, 3, -2), reach=8)
"""


def reports(world, state="state"):
    return sorted((world.folder / state / "mornal" / "reports").glob("*.report"), key=lambda path: path.stat().st_mtime)


def played(world, report, **words):
    """Plays a report unseen, in another place than it was made in."""
    elsewhere = {"HOME": str(world.folder / "elsewhere"), "XDG_CONFIG_HOME": "", "XDG_STATE_HOME": ""}
    variables = dict(world.variables(), **elsewhere, **words, KAVEL_REPORT=str(report))
    for asked in ("KAVEL_LEVEL", "KAVEL_FRAMES"):
        variables.pop(asked)
    return world.start(variables)


def headless_report(world):
    """A report that a run made of its frame 20, and its members."""
    world.write("scripts/levels/Room.py", ROOM)
    world.write("keys.txt", "input 1\nlevel Room\nseed 1\nwindow 640 360\n3 key 87 down\n20 key 123 down\n"
                            "21 key 123 up\n30 end\n")
    run = world.run(level="Room", frames=30, KAVEL_SIZE="640x360", KAVEL_REPLAY=str(world.folder / "keys.txt"))
    run.expect_code(0)
    return reports(world)[0]


def rewritten(report, target, **members):
    """A copy of a report with other contents of some members; None leaves one out."""
    with zipfile.ZipFile(report) as old, zipfile.ZipFile(target, "w") as new:
        for name in old.namelist():
            content = members.pop(name.split(".")[0], old.read(name))
            if content is not None:
                new.writestr(name, content)
    return target


def test_a_run_in_a_window_is_played_again_to_the_last_bit(world):
    world.write("scripts/levels/Room.py", ROOM)
    with Display() as display, Game(world, display, "Room", XDG_STATE_HOME=str(world.folder / "state")) as running:
        running.focus()
        running.until_logged("it goes on")
        for keys in ("keydown w", "mousemove_relative 60 5", "keyup w", "keydown a", "mousemove_relative -- -90 -8"):
            display.tool(*keys.split())
            time.sleep(0.2)
        running.resize(900, 700)
        running.until_logged("down 65")
        display.tool("mousemove_relative", "35", "0")
        display.tool("keyup", "a")
        running.press("F12")
        running.until_logged("The report of frame")
        running.press("s")
        running.press("F12")
        running.until_logged("The report of frame", 2)
        display.tool("mousemove_relative", "35", "0")
        assert running.quit() == 0
    with zipfile.ZipFile(reports(world)[1]) as archive:
        told = archive.read("input.txt").decode()
        assert " drag " in told and " time " in told and " mouse " in told, told[:2000]
        assert archive.read("picture.png").startswith(b"\x89PNG")
        assert str(world.folder) not in archive.read("log.txt").decode()
    for report in reports(world):
        run = played(world, report)
        run.expect_code(0)
        run.expect(SAME)


def test_a_report_that_goes_another_way_names_the_first_field(world):
    report = headless_report(world)
    played(world, report).expect(SAME)
    with zipfile.ZipFile(report) as archive:
        keys = archive.read("input.txt").decode().replace("3 key 87", "4 key 87")
    run = played(world, rewritten(report, world.folder / "other.report", input=keys))
    run.expect_code(1)
    run.expect("The end is not as in the report.")
    assert "; the first is " in run.log and " in the report " in run.log, run.log[-2000:]


def test_a_file_that_is_no_report_is_named_with_cause_and_remedy(world):
    report = headless_report(world)
    whole = report.read_bytes()
    about = zipfile.ZipFile(report).read("about.json").decode()
    folder = world.folder / "faulty"
    folder.mkdir()
    (folder / "empty").write_bytes(b"")
    (folder / "junk").write_bytes(os.urandom(1 << 20))
    (folder / "cut").write_bytes(whole[:len(whole) // 2])
    (folder / "flipped").write_bytes(whole[:2000] + bytes(255 - byte for byte in whole[2000:2400]) + whole[2400:])
    rewritten(report, folder / "future", about=about.replace('"report": 1', '"report": 9'))
    rewritten(report, folder / "wrongAbout", about=about.replace('"frame": 20', '"frame": "x"'))
    rewritten(report, folder / "noInput", input=None)
    rewritten(report, folder / "badInput", input="input 2\nlevel Room\nseed 1\nwindow 640 360\nclock 60\n1 jump\n")
    os.mkfifo(folder / "fifo")
    for name, cause in (("empty", "damaged or no report"), ("junk", "damaged or no report"),
                        ("cut", "damaged or no report"), ("flipped", "damaged or no report"),
                        ("future", "it is of version 9"), ("wrongAbout", "about.json says 'x' of frame"),
                        ("noInput", "it has no input"), ("badInput", "is no kind of event"),
                        ("fifo", "it is no ordinary file"), (".", "it is no ordinary file"),
                        ("nowhere", "No such file or directory")):
        run = played(world, folder / name)
        run.expect_code(1)
        run.expect(cause)
    run = played(world, report, KAVEL_SEED="3")
    run.expect_code(1)
    run.expect("KAVEL_SEED is '3', where nothing may stand")


def test_what_keeps_a_report_from_being_written_is_told_and_the_game_goes_on(world):
    (world.folder / "state" / "mornal").mkdir(parents=True)
    (world.folder / "state" / "mornal" / "reports").write_text("in the way", encoding="ascii")
    world.write("scripts/levels/Room.py", ROOM)
    world.write("keys.txt", "input 1\nlevel Room\nseed 1\nwindow 640 360\n3 key 123 down\n9 end\n")
    keys = str(world.folder / "keys.txt")
    run = world.run(level="Room", frames=9, KAVEL_SIZE="640x360", KAVEL_REPLAY=keys)
    run.expect_code(0)
    run.expect("cannot be written: File exists")
    full = world.run(level="Room", frames=9, KAVEL_SIZE="640x360", KAVEL_REPLAY=keys, largest_file=50000,
                     XDG_STATE_HOME=str(world.folder / "full"))
    full.expect_code(1)  # nobody watches
    full.expect("could not be written: File too large")


def test_only_the_last_five_reports_are_kept(world):
    world.write("scripts/levels/Room.py", ROOM)
    presses = "".join(f"{frame} key 123 down\n{frame + 1} key 123 up\n" for frame in range(5, 40, 5))
    world.write("keys.txt", f"input 1\nlevel Room\nseed 1\nwindow 640 360\n{presses}45 end\n")
    world.run(level="Room", frames=45, KAVEL_SIZE="640x360",
              KAVEL_REPLAY=str(world.folder / "keys.txt")).expect_code(0)
    frames = [int(path.stem.rsplit("-", 1)[1]) for path in reports(world)]
    assert frames == [15, 20, 25, 30, 35], frames


def test_a_run_that_was_killed_or_has_crashed_leaves_a_report(world):
    world.write("scripts/levels/Room.py", ROOM)
    world.write("config/mornal/settings.txt", "windowSize = 320x180\n")
    for number, end in enumerate((signal.SIGKILL, signal.SIGSEGV, signal.SIGABRT)):
        state = f"state{number}"
        words = {"XDG_STATE_HOME": str(world.folder / state)}
        with Display() as display:
            with Game(world, display, "Room", **words) as running:
                running.focus()
                running.press("w")
                running.until_logged("down 87")
                running.press("x")
                running.until_logged("down 88")
                running.process.send_signal(end)
                # A sanitizer answers signals of a crash itself, and ends the process with a number of its own.
                assert running.process.wait() == -end or world.is_sanitized()
            with Game(world, display, "Room", **words) as running:
                running.until_logged("A run ended badly; its report is")
                assert running.quit() == 0
        run = played(world, reports(world, state)[0])
        run.expect_code(0)
        run.expect("down 87")
        run.expect("The report has no state to compare with")


if __name__ == "__main__":
    game.main(dict(globals()))
