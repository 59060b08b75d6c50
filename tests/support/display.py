"""A display of a test's own, and the game played in a window on it.

The display is a virtual screen without a window manager; keys, focus and sizes come from `xdotool` as from a player.
"""
import atexit
import os
import pathlib
import subprocess
import tempfile
import time

PATIENCE_S = 120

#: Outputs without hardware, as many as are plugged in by `Monitors`.
OUTPUTS = """
Section "ServerFlags"
    Option "AutoAddDevices" "false"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
EndSection
"""


class Display:
    """A virtual screen, up between `with` and its end."""

    def __init__(self, size="1600x900"):
        self.size = size

    def __enter__(self):
        read, write = os.pipe()
        # Without the repeats of held keys: on a busy machine each key is one.
        self.server = subprocess.Popen(
            [*self.command(), "-displayfd", str(write), "-nolisten", "tcp", "-noreset", "-r"],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        atexit.register(self.server.kill)  # a case that fails before the end of its `with` leaves no screen behind
        os.close(write)
        with os.fdopen(read) as pipe:
            self.name = ":" + pipe.readline().strip()
        assert self.name != ":", f"{self.command()[0]} did not start"
        return self

    def command(self):
        """The server's name and what it is told of its screens."""
        return ["Xvfb", "-screen", "0", self.size + "x24"]

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def tool(self, *words):
        """What `xdotool` says to some words; empty where it fails."""
        result = subprocess.run(["xdotool", *map(str, words)], env=dict(os.environ, DISPLAY=self.name),
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        return result.stdout.decode().strip()


class Monitors(Display):
    """A screen over several monitors side by side."""

    def __init__(self, *sizes):
        super().__init__(sizes[0])
        self.sizes = sizes
        self.folder = tempfile.TemporaryDirectory()
        (pathlib.Path(self.folder.name) / "xorg.conf").write_text(OUTPUTS, encoding="ascii")

    def __enter__(self):
        super().__enter__()
        for number, size in enumerate(self.sizes):
            self.plug(number, size)
        return self

    def __exit__(self, *words):
        super().__exit__(*words)
        self.folder.cleanup()

    def command(self):
        return ["Xorg", "-config", self.folder.name + "/xorg.conf", "-logfile", self.folder.name + "/log",
                "-novtswitch", "-sharevts"]

    def plug(self, number, size):
        """Has a monitor stand to the right of the one before it."""
        name = f"DUMMY{number}"
        self.randr("--addmode", name, size)
        self.randr("--output", name, "--mode", size, *(["--right-of", f"DUMMY{number - 1}"] if number else []))

    def randr(self, *words):
        subprocess.run(["xrandr", *words], env=dict(os.environ, DISPLAY=self.name), check=False,
                       stderr=subprocess.DEVNULL)


class Game:
    """A game that runs in a window, between `with` and its end."""

    def __init__(self, world, display, level, **environment):
        self.world = world
        self.display = display
        self.log_file = pathlib.Path(world.folder) / "window.log"
        variables = {key: value for key, value in os.environ.items() if not key.startswith("KAVEL_")}
        variables.pop("WAYLAND_DISPLAY", None)
        self.variables = {**variables, "DISPLAY": display.name, "KAVEL_LEVEL": level, "HOME": str(world.folder),
                          "XDG_CONFIG_HOME": str(world.folder / "config"),
                          "PULSE_RUNTIME_PATH": str(world.folder / "pulse"), **environment}

    def __enter__(self):
        with open(self.log_file, "wb") as log:
            self.process = subprocess.Popen([str(self.world.executable)], cwd=self.world.folder / "bin",
                                            env=self.variables, stdout=log, stderr=log)
        atexit.register(self.process.kill)
        self.window = self.until(lambda: self.display.tool("search", "--onlyvisible", "--name", "^Mornal$"),
                                 "a window").split()[-1]
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def log(self):
        return self.log_file.read_text(encoding="utf-8", errors="replace")

    def until(self, condition, what):
        """Waits until a condition holds, and returns what it gave."""
        end = time.monotonic() + PATIENCE_S
        while time.monotonic() < end:
            found = condition()
            if found:
                return found
            if self.process.poll() is not None:
                break
            time.sleep(0.05)
        raise AssertionError(f"waited in vain for {what}; the log ends:\n{self.log()[-3000:]}")

    def until_logged(self, text, times=1):
        self.until(lambda: self.log().count(text) >= times, f"{text!r} in the log")

    def focus(self):
        self.display.tool("windowfocus", "--sync", self.window)

    def press(self, keys):
        self.display.tool("key", keys)

    def resize(self, width, height):
        self.display.tool("windowsize", self.window, width, height)

    def quit(self):
        """Ends the game in order, and returns its exit code."""
        self.process.terminate()
        return self.process.wait(PATIENCE_S)

    def memory_mb(self):
        """What the process has in memory."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return int(status.split("VmRSS:")[1].split()[0]) / 1024
