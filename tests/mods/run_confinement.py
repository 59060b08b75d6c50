"""What a run with mods gives up: a mod that wants more gets an error and is told, and the game goes on."""
import ctypes
import errno
import os
import pathlib
import signal
import struct
import subprocess
import sys
import time

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parents[1] / "support"), str(pathlib.Path(__file__).parent)]
import game
import mods_world as mods
from display import Display, Game

# What a script of a mod tries, each on a line of its own, so that the log can name it.
ATTEMPTS = """
import errno
import fcntl
import os
import socket
import subprocess
import threading

import kaVel


def tried(name, function):
    try:
        function()
    except OSError as error:
        kaVel.log('TRIED %s: %s %s' % (name, type(error).__name__, errno.errorcode.get(error.errno)))
    else:
        kaVel.log('TRIED %s: done' % name)


def attempt(home):
    tried('write', lambda: open(home + '/evil', 'w'))
    tried('mod', lambda: open(home + '/.local/share/mornal/mods/thief/mod.toml', 'a'))
    tried('consent', lambda: open(home + '/config/mornal-consent/mods.txt', 'a'))
    tried('rename', lambda: os.rename(home + '/precious', home + '/gone'))
    tried('truncate', lambda: os.truncate(home + '/precious', 0))
    tried('chmod', lambda: os.chmod(home + '/precious', 0o777))
    tried('link', lambda: os.symlink(home, home + '/state/mornal/link'))
    tried('memory', lambda: open('/proc/self/mem', 'wb'))
    tried('socket', lambda: socket.socket(socket.AF_INET))
    tried('socket6', lambda: socket.socket(socket.AF_INET6))
    tried('run', lambda: subprocess.run(['/bin/true']))
    tried('spawn', lambda: os.posix_spawn('/bin/true', ['true'], {}))
    tried('shell', lambda: os.system('touch ' + home + '/evil'))
    tried('local', lambda: socket.socket(socket.AF_UNIX))
    tried('pair', lambda: socket.socketpair())
    tried('fork', lambda: os.fork() or os._exit(0))
    tried('kill', lambda: os.kill(os.getppid(), 0))
    tried('group', lambda: os.kill(0, 0))
    with open(home + '/precious') as kept:
        tried('owner', lambda: fcntl.fcntl(kept, 8, os.getppid()))  # F_SETOWN: who gets its signals
        tried('cut', lambda: os.open(home + '/precious', os.O_RDONLY | os.O_TRUNC))
    tried('inherited', lambda: os.write(77, b'brass'))
    threading.Thread(target=lambda: tried('thread', lambda: None)).start()
    tried('own', lambda: open(home + '/state/mornal/notes', 'w').close())
"""
LEVEL = """
import os

import kaVel
import mod_thief.Attempts as attempts
import objects.GameObjects as place
import saves


def build(coordinator):
    attempts.attempt(os.environ['HOME'])
    coordinator.loadMap('room')
    place.Player(coordinator, at=(0, 0, 0))
    place.onFrame(place.placed(coordinator, 'saver'), save)


def room(map):
    place.PartitioningGrid(map, size=(8, 0, 8))
    place.Block(map, 'ground', at=(0, -1, 0), size=(8, 1, 8))
    place.Sound(map, 'hum', event='Fire')


def save():
    if kaVel.getSystem('GameLoopSystem').frameNumber == 20:
        kaVel.log('SAVED %s' % saves.save().done)
"""


def thief(world):
    """A mod that tries all of it."""
    mods.write(world, "thief", kind="script", files={"scripts/Attempts.py": ATTEMPTS, "levels/Theft.py": LEVEL})
    world.write("precious", "gold")


BOXES = """
import kaVel


def build(coordinator):
    def bad(message, key):
        raise KeyError('a handler that is wrong')
    kaVel.subscribe('KeyDownMessage', bad)
    kaVel.send('KeyDownMessage', 65)
    kaVel.log('ANSWERED')
"""

REFUSED = ("write", "mod", "consent", "rename", "truncate", "chmod", "link", "memory", "socket", "socket6", "run",
           "spawn", "shell", "local", "pair", "fork", "kill", "group", "owner", "cut")


def test_what_a_mod_may_not_fails_and_is_told_while_the_game_goes_on_with_sound_and_saves(world):
    thief(world)
    outcome = mods.run(world, "thief", level="Theft", frames=40, answer="yes", screenshot="picture.png",
                       KAVEL_SOUND=str(world.folder / "heard.wav"), KAVEL_SAVES=str(world.folder / "saves"))
    outcome.expect_code(0)
    for name in REFUSED:
        outcome.expect(f"TRIED {name}: PermissionError")
    outcome.expect("TRIED own: done")
    outcome.expect("TRIED thread: done")
    outcome.expect("Mods: The mod thief wanted to use the network, which no mod may (thief/scripts/Attempts.py:30).")
    outcome.expect("wanted to start the program")
    outcome.expect("SAVED True")
    assert outcome.log.count("wanted to") == 17, outcome.log  # and nothing of what it may
    assert (world.folder / "precious").read_text() == "gold"
    assert not (world.folder / "evil").exists() and not (world.folder / "gone").exists()
    assert (world.folder / "picture.png").stat().st_size > 1000
    assert (world.folder / "heard.wav").stat().st_size > 100000
    assert list((world.folder / "saves").glob("*.save"))


def without_the_kernels_help():
    """Makes this process and what it starts one of a kernel that knows neither Landlock nor filters."""
    missing = (444, 317)  # landlock_create_ruleset, seccomp
    lines = [(0x20, 0, 0, 0), *((0x15, len(missing) - number, 0, call) for number, call in enumerate(missing)),
             (0x06, 0, 0, 0x7FFF0000), (0x06, 0, 0, 0x00050000 | errno.ENOSYS)]
    text = b"".join(struct.pack("HBBI", *line) for line in lines)
    filters = ctypes.create_string_buffer(text, len(text))
    program = ctypes.create_string_buffer(struct.pack("HxxxxxxP", len(lines), ctypes.addressof(filters)))
    libc = ctypes.CDLL(None)
    assert libc.prctl(38, 1, 0, 0, 0) == 0 and libc.prctl(22, 2, program) == 0


def test_what_the_kernel_does_not_have_is_told_and_the_game_goes_on(world):
    mods.write(world, "quiet")
    variables = world.variables(None, 3, KAVEL_MOD="quiet", KAVEL_SIZE="320x180",
                                ASAN_OPTIONS="detect_leaks=0")
    result = subprocess.run([str(world.executable)], cwd=world.folder / "bin", env=variables, check=False,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, preexec_fn=without_the_kernels_help)
    outcome = game.Outcome(result.returncode, result.stdout.decode("utf-8", "replace"))
    outcome.expect_code(0)
    outcome.expect("Mods: Warning: files outside the user's folders are not protected: this system's kernel has no "
                   "Landlock")
    outcome.expect("Mods: Warning: programs, processes and the network are not held back: this system's "
                   "kernel does not filter")


def test_the_kernel_holds_what_the_interpreter_does_not_see(world):
    thief(world)
    # As if nobody looked: what stands in the way then is the kernel.
    looking = (world.folder / "scripts" / "mods" / "Holding.py").read_text()
    world.write("scripts/mods/Holding.py", looking.replace("sys.addaudithook(look)", "pass"))
    left_open = os.open(world.folder / "brass", os.O_CREAT | os.O_WRONLY)
    os.dup2(left_open, 77)
    outcome = mods.run(world, "thief", level="Theft", answer="yes", inherited=(77,))
    os.close(77)
    outcome.expect_code(0)
    outcome.expect("TRIED inherited: OSError EBADF")
    for name in REFUSED:
        if name != "shell":  # which starts, and then cannot start anything
            outcome.expect(f"TRIED {name}: PermissionError")
    assert not (world.folder / "evil").exists()
    assert (world.folder / "precious").read_text() == "gold"


def windows(display, title):
    """The windows of a display that are called so."""
    return [each for each in display.tool("search", "").split() if display.tool("getwindowname", each) == title]


def press_ok(display):
    """Clicks the button of the boxes that are open."""
    for box in windows(display, "Assertion failed!"):
        shape = dict(line.split("=") for line in display.tool("getwindowgeometry", "--shell", box).split())
        if "WIDTH" in shape:
            display.tool("mousemove", "--window", box, int(shape["WIDTH"]) // 2, int(shape["HEIGHT"]) - 35,
                         "sleep", "0.1", "click", "1", "sleep", "0.5")


def test_a_window_stays_beside_a_mod_and_boxes_are_answered_and_left_behind_by_a_crash(world):
    thief(world)
    world.write("scripts/levels/Boxes.py", BOXES)
    mods.run(world, "thief", answer="yes").expect_code(0)
    with Display("1280x800") as display:
        with Game(world, display, "Boxes", KAVEL_MOD="thief", XDG_STATE_HOME=str(world.folder / "state")) as play:
            play.until(lambda: press_ok(display) or "ANSWERED" in play.log(), "the answer to a box")
            play.until_logged("starts no programs")
            if world.is_sanitized():
                return
            play.process.send_signal(signal.SIGSEGV)
            play.process.wait(60)
        end = time.monotonic() + 60
        while not windows(display, "Mornal crashed") and time.monotonic() < end:
            time.sleep(0.1)
        assert windows(display, "Mornal crashed")


if __name__ == "__main__":
    game.main(globals())
