"""A pad without hardware, for a game that runs in a window: see virtualPad.c."""
import os
import pathlib
import subprocess

SOURCE = pathlib.Path(__file__).with_name("virtualPad.c")
BUTTONS = {"A": 0, "B": 1, "X": 2, "Y": 3, "Back": 4, "Start": 6, "LeftShoulder": 9, "RightShoulder": 10,
           "Up": 11, "Down": 12, "Left": 13, "Right": 14}


class VirtualPad:
    """A pad that a game finds plugged in, which has this one's `environment`."""

    def __init__(self, folder):
        self.pipe = pathlib.Path(folder) / "pad"
        library = pathlib.Path(folder) / "virtualPad.so"
        flags = subprocess.check_output(["pkg-config", "--cflags", "--libs", "sdl2"], text=True).split()
        subprocess.run(["cc", "-shared", "-fPIC", "-o", str(library), str(SOURCE), *flags], check=True)
        os.mkfifo(self.pipe)
        self.environment = {"LD_PRELOAD": str(library), "VIRTUAL_PAD": str(self.pipe),
                            "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0"}
        self.lines = None

    def press(self, name):
        """Presses a button and lets it go."""
        if not self.lines:
            self.lines = os.open(self.pipe, os.O_WRONLY)  # waits for the game
        os.write(self.lines, b"%d 1\n%d 0\n" % (BUTTONS[name], BUTTONS[name]))
