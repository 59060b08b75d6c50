"""How the executable starts, fails and ends: signals, crashes, boxes, its log file, its words, and what it lacks."""
import contextlib
import os
import pathlib
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display

WAIT_S = 60
# Runs until somebody ends it; the file says that the frame loop runs.
PLAYS_ON = """
def ready():
    if kaVel.getSystem('GameLoopSystem').frameNumber == 2:
        open('ready', 'w').close()
entity = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=ready)
"""


def until(condition, what):
    """Waits for something that another process does."""
    end = time.monotonic() + WAIT_S
    while not condition():
        assert time.monotonic() < end, f"in vain for {what}"
        time.sleep(0.02)


def begin(world, level, body, **environment):
    """A run of a level that says by a file `ready` when it has come to the point."""
    world.write_level(level, body)
    (world.folder / "bin" / "ready").unlink(missing_ok=True)
    process = world.begin(level=level, frames=0, **environment)
    until(lambda: (world.folder / "bin" / "ready").exists() or process.poll() is not None, "the level")
    assert process.poll() is None, process.stdout.read()
    return process


def end_of(process):
    output = process.communicate(timeout=WAIT_S)[0]
    return game.Outcome(process.returncode, output.decode("utf-8", "replace"))


def last_log(world):
    logs = world.logs()
    return logs[-1].read_text(encoding="utf-8") if logs else ""


def test_a_fatal_signal_is_told_with_its_stack_and_ends_the_process(world):
    if world.is_sanitized():
        return  # the sanitizers report faults themselves
    for number in (signal.SIGSEGV, signal.SIGBUS, signal.SIGFPE, signal.SIGILL, signal.SIGABRT):
        process = begin(world, "PlaysOn", PLAYS_ON)
        process.send_signal(number)
        run = end_of(process)
        run.expect_code(-number)
        for text in (run.log, last_log(world)):
            crash = text[text.index("Critical: The game crashed: "):]
            assert number.name in crash.split("\n", 1)[0], crash
            assert "main.cpp(" in crash and "-- End stack trace:" in crash, crash
        run.expect(str(world.logs()[-1]))


def test_a_stack_overflow_is_told_as_one_with_the_lines_of_the_script(world):
    if world.is_sanitized():
        return
    world.write_level("Deep", """
import sys
sys.setrecursionlimit(10**8)
class Deep:
    def __lt__(self, other):
        return sorted([Deep(), Deep()])
sorted([Deep(), Deep()])
""")
    run = world.run(level="Deep")
    run.expect_code(-signal.SIGSEGV)
    run.expect("Critical: The game crashed: stack overflow")
    run.expect("levels/Deep.py\", line 9 in __lt__")
    assert "stack overflow" in last_log(world)


def test_a_request_to_end_ends_the_game_in_order(world):
    for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
        process = begin(world, "PlaysOn", PLAYS_ON)
        process.send_signal(number)
        end_of(process).expect_code(128 + number)
        assert "Shutting down system SystemSystem" in last_log(world)


def test_a_second_request_ends_a_game_that_does_not_listen(world):
    process = begin(world, "Endless", "open('ready', 'w').close()\nwhile True:\n    pass")
    process.send_signal(signal.SIGTERM)
    time.sleep(0.3)
    assert process.poll() is None, "the first one asks"
    process.send_signal(signal.SIGTERM)
    end_of(process).expect_code(-signal.SIGTERM)


def test_a_reader_of_the_output_who_leaves_does_not_end_the_game(world):
    process = world.begin(frames=5)
    process.stdout.close()
    assert process.wait(WAIT_S) == 0


def test_the_last_five_logs_are_kept_and_hold_more_than_the_terminal_shows(world):
    world.write_level("Empty", "pass")
    for _ in range(6):
        run = world.run(level="Empty", frames=1)
        run.expect_code(0)
        assert "Debug:" not in run.log and "The log of this run" not in run.log, run.log
        newest = last_log(world)
        assert "Debug: Starting system " in newest and "No display: running off-screen." in newest
    assert len(world.logs()) == 5, world.logs()
    world.run(level="Empty", frames=1, KAVEL_VERBOSE="1").expect("Debug: Starting system ")


def test_a_run_that_fails_tells_where_its_log_is(world):
    world.write_level("Quits", "kaVel.getSystem('GameLoopSystem').quit(7)")
    for level, code in (("Quits", 7), ("NoSuchLevel", 1)):
        run = world.run(level=level, frames=2)
        run.expect_code(code)
        run.expect(f"Information: The log of this run: {world.logs()[-1]}")
    assert "there is no level 'NoSuchLevel'" in last_log(world)
    assert "-- End stack trace:" in last_log(world) and "main.cpp(" in last_log(world), "the frames are kept, too"


def test_without_a_place_for_logs_the_game_says_so_once_and_goes_on(world):
    world.write_level("Empty", "pass")
    for state, home, told in (("", "", "neither XDG_STATE_HOME nor HOME"), ("/dev/null", "/", "/dev/null/mornal/logs")):
        run = world.run(level="Empty", frames=1, XDG_STATE_HOME=state, HOME=home)
        run.expect_code(0)
        run.expect(told)
        assert run.log.count("No log file") == 1


def test_the_game_starts_from_any_folder_and_the_users_paths_count_from_there(world):
    elsewhere = world.folder / "elsewhere"
    elsewhere.mkdir()
    variables = world.variables(frames=2, KAVEL_SCREENSHOT="room.png")
    result = subprocess.run([str(world.executable)], cwd=elsewhere, env=variables, capture_output=True, check=False,
                            timeout=game.TIMEOUT_S)
    assert result.returncode == 0, result.stderr
    assert (elsewhere / "room.png").stat().st_size > 10000


def test_the_executable_answers_for_itself(world):
    def answer(*words):
        result = subprocess.run([str(world.executable), *words], cwd="/", env={}, capture_output=True, text=True,
                                check=False, timeout=WAIT_S)
        return result.returncode, result.stdout, result.stderr

    code, text, _ = answer("--help")
    assert code == 0 and "./play" in text and "KAVEL_LEVEL" in text, text
    project = (game.ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    version = project.split("VERSION ", 2)[2].split(" ", 1)[0]
    assert answer("--version") == (0, f"Mornal {version}\n", "")
    code, _, complaint = answer("--levl", "Gallery")
    assert code == 2 and "'--levl'" in complaint, complaint


def test_a_missing_or_halved_library_is_named_in_one_line(world):
    library = world.folder / "python.zip"
    whole = library.read_bytes()
    library.unlink()
    for halved, fault in ((False, "is missing"), (True, "is damaged or cut short")):
        if halved:
            library.write_bytes(whole[:len(whole) // 2])
        run = world.run()
        run.expect_code(1)
        lines = [line for line in run.log.splitlines() if "The log of this run" not in line]
        assert len(lines) == 1 and f"{library} {fault}" in lines[0], run.log


def test_a_word_that_cannot_be_meant_is_named_with_its_value_and_what_is_allowed(world):
    for word, value, allowed in (
            ("KAVEL_FRAMES", "-5", "a whole number from 0"), ("KAVEL_FRAMES", "5x", "a whole number from 0"),
            ("KAVEL_SEED", "9" * 5000, "a whole number from 0 to 4294967295"), ("KAVEL_HEADLESS", "yes", "0 or 1"),
            ("KAVEL_SIZE", "0x5", "a size like 640x360"), ("KAVEL_SIZE", "640", "a size like 640x360"),
            ("KAVEL_VERBOSE", "all", "0 or 1"), ("KAVEL_FRAME", "5", "did you mean KAVEL_FRAMES")):
        run = world.run(**{word: value})
        run.expect_code(1)
        told = next(line for line in run.log.splitlines() if line.startswith("ValueError: "))
        assert word in told and allowed in told and len(told) < 480, told
        assert value[:80] in told or word == "KAVEL_FRAME", told


def test_a_device_that_cannot_be_made_is_told_in_the_log(world):
    run = world.run(MESA_GL_VERSION_OVERRIDE="3.0", frames=2)
    run.expect_code(1)
    run.expect("Critical: The Direct3D device could not be created.")


@contextlib.contextmanager
def display():
    """A display of its own, by name."""
    with Display("1280x800") as shown:
        yield shown.name


def on(name):
    return {"DISPLAY": name, "KAVEL_HEADLESS": "0"}


def xdotool(name, *words):
    return subprocess.run(["xdotool", *words], env=dict(os.environ, DISPLAY=name), capture_output=True, text=True,
                          check=False).stdout


def windows(name):
    return set(xdotool(name, "search", "").split())


def box_on(name, before):
    """Waits for a window that was not there before."""
    until(lambda: windows(name) - before, "the box")
    return (windows(name) - before).pop()


def click(name, box, aside):
    """Clicks a button of the row at a box's lower edge, so many pixels right of its middle, and lets the box go."""
    geometry = dict(line.split("=") for line in xdotool(name, "getwindowgeometry", "--shell", box).split())
    if "WIDTH" in geometry:
        x, y = int(geometry["WIDTH"]) // 2 + aside, int(geometry["HEIGHT"]) - 35
        xdotool(name, "mousemove", "--window", box, str(x), str(y), "sleep", "0.1", "click", "1", "sleep", "1")


def test_a_failure_before_the_window_shows_a_box_that_a_request_to_end_closes(world):
    world.write("scripts/GameConfig.py", "raise ValueError('settings from hell')\n")
    with display() as name:
        empty = windows(name)
        process = world.begin(**on(name))
        box_on(name, empty)
        assert "settings from hell" in last_log(world), "the cause is logged before the box is shown"
        assert process.poll() is None
        process.send_signal(signal.SIGTERM)
        run = end_of(process)
        run.expect_code(1)
        until(lambda: windows(name) == empty, "the box to go")
        assert not run.has("The game will now abort"), "what a box shows is not printed again"


def test_a_crash_leaves_a_box_and_a_request_to_end_closes_the_window(world):
    with display() as name:
        process = begin(world, "PlaysOn", PLAYS_ON, **on(name))
        process.send_signal(signal.SIGTERM)
        end_of(process).expect_code(0)
        if world.is_sanitized():
            return
        process = begin(world, "PlaysOn", PLAYS_ON, **on(name))
        process.send_signal(signal.SIGSEGV)
        end_of(process).expect_code(-signal.SIGSEGV)
        # By its title: its number may be one that a window of the game had.
        until(lambda: "Mornal crashed" in {xdotool(name, "getwindowname", each).strip() for each in windows(name)},
              "the box")


def test_the_fourth_box_lets_the_player_quit(world):
    world.write_level("Boxes", """
def bad(number):
    raise KeyError('handler %d broken' % number)
for number in range(5):
    kaVel.subscribe('KeyDownMessage', lambda message, key, number=number: bad(number))
kaVel.send('KeyDownMessage', 65)
""")
    with display() as name:
        before = windows(name)
        process = world.begin(level="Boxes", frames=0, **on(name))
        for told, aside in enumerate((0, 0, 0, 130), 1):  # OK three times, then the third of three buttons

            def is_answered():
                if process.poll() is not None or last_log(world).count("Assertion failed: [") > told:
                    return True
                for box in windows(name) - before:
                    click(name, box, aside)
                return False

            until(lambda: last_log(world).count("Assertion failed: [") >= told, f"assertion {told}")
            box_on(name, before)
            until(is_answered, f"the answer to box {told}")
        end_of(process).expect_code(1)
    assert "handler 4 broken" in last_log(world), "what comes after the answer is in the log alone"


if __name__ == "__main__":
    game.main(dict(globals()))
