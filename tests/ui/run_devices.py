"""What the game is seen and heard on: a second monitor and sound devices, chosen in the options, and gone again."""
import array
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game, Monitors

#: Opens a page of the options with the focus on a row, over a level with a sound that never ends.
OPTIONS = """
import kaVel
import objects.GameObjects as place
import settings
from screens import Kit as kit
from screens import OptionRows, Screens


def build(coordinator):
    place.Camera(coordinator, 'camera', at=(0, 1, 0))
    coordinator.loadMap('room')
    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    frames = []
    window = kaVel.getSystem('WindowSystem2')

    def open(*_):
        if Screens.isOpen(coordinator):
            return
        Screens.open(coordinator, 'Options')
        kit.component(coordinator.getDescendantByPath('ScreenOptions/sheet/pages/names/tab%%d')).pressed()
        page = coordinator.getDescendantByPath('ScreenOptions/sheet/pages/pages/page%%d')
        kit.focus(page.getChild('%s'))
        kaVel.log('opened: Options.')
        kaVel.log('choices: %%s %%s.' %% tuple(map(list, zip(*OptionRows.%s()))))

    kaVel.subscribe('KeyDownMessage', lambda message, key: open() if key == ord('O') else None,
                    kaVel.officeOf(coordinator))

    def look():
        if not frames:
            open()
        now = settings.get('%s'), '%%dx%%d' %% (window.width, window.height), Screens.names(coordinator)
        if frames[-1:] != [now]:
            frames.append(now)
            kaVel.log('now: %%s %%s %%s.' %% now)

    kaVel.addComponent(watch, 'menu', 'ScriptComponent', frameCallback=look)


def room(map):
    place.Sound(map, 'wind', at=(0, 1, 0.5), event='WindAtWindow')
"""


def options(page, row, choices):
    return OPTIONS.replace("tab%%d", f"tab{page}").replace("page%%d", f"page{page}") % (row, choices, row)


def test_the_window_goes_to_the_monitor_that_is_chosen_and_comes_back_unless_that_is_confirmed(world):
    world.write("scripts/levels/Sets.py", options(0, "monitor", "_monitors"))
    world.write("config/mornal/settings.txt", "windowMode = borderless\n")
    with Monitors("800x600", "1024x768") as display, Game(world, display, "Sets") as played:
        corner = lambda: re.search(r"Position: (\S+)", display.tool("getwindowgeometry", played.window))[1]
        played.until_logged("choices: [0, 1] ['1', '2'].")
        played.until_logged("now: 0 800x600 ['Options'].")
        assert corner() == "0,0"
        played.focus()
        played.press("Right")
        played.until_logged("now: 1 1024x768 ['Options', 'KeepMode'].")
        played.until(lambda: corner() == "800,0", "the window to stand on the second monitor")
        played.until_logged("now: 0 800x600 ['Options'].", times=2)
        assert corner() == "0,0", "nobody has said that it stays"
        played.focus()
        played.press("Right")
        played.until_logged("now: 1 1024x768 ['Options', 'KeepMode'].", times=2)
        played.focus()
        played.press("Left")
        played.press("Return")
        played.until_logged("now: 1 1024x768 ['Options'].")
        assert played.quit() == 0, played.log()[-2000:]


class SoundServer:
    """Two devices that make no sound, of which it can be heard what they would, between `with` and its end."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder) / "pulse"
        self.folder.mkdir()
        self.address = f"unix:{self.folder}/native"
        self.environment = {"PULSE_SERVER": self.address, "PULSE_RUNTIME_PATH": str(self.folder),
                            "ALSOFT_DRIVERS": "pulse"}

    def __enter__(self):
        modules = [f"-Lmodule-native-protocol-unix auth-anonymous=1 socket={self.folder}/native"]
        modules += [f"-Lmodule-null-sink sink_name={name} sink_properties=device.description={name}"
                    for name in ("Parlour", "Headset")]
        self.server = subprocess.Popen(["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", *modules],
                                       env=dict(os.environ, HOME=str(self.folder), **self.environment),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 30
        while "Headset" not in self.control("list", "short", "sinks") and time.monotonic() < end:
            time.sleep(0.1)
        return self

    def __exit__(self, *_):
        self.server.send_signal(signal.SIGKILL)
        self.server.wait()

    def control(self, *words):
        return subprocess.run(["pactl", *words], env=dict(os.environ, **self.environment), check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def sounds(self, device):
        """Whether something is heard at a device within half a second."""
        words = ["parec", f"--device={device}.monitor", "--raw", "--format=s16le", "--rate=16000", "--channels=1"]
        with subprocess.Popen(words, env=dict(os.environ, **self.environment), stdout=subprocess.PIPE) as listener:
            samples = array.array("h", listener.stdout.read(16000))
            listener.kill()
        return max(map(abs, samples)) > 30

    def pull(self, device):
        for line in self.control("list", "short", "modules").splitlines():
            if f"sink_name={device} " in line:
                self.control("unload-module", line.split()[0])


def test_sounds_go_to_the_device_that_is_chosen_and_to_the_usual_one_when_it_is_gone(world):
    if not shutil.which("pulseaudio") or not shutil.which("parec"):
        return print("(left out: it needs pulseaudio and its utilities)")
    world.write("scripts/levels/Sets.py", options(1, "soundDevice", "_devices"))
    world.write("config/mornal/settings.txt", "windowSize = 640x360\nsoundWithoutFocus = on\npauseWithoutFocus = off\n")
    with SoundServer(world.folder) as server, Display("800x600") as display, \
            Game(world, display, "Sets", **server.environment) as played:
        played.until_logged("choices: ['', 'Parlour', 'Headset'] ['options.usualDevice', 'Parlour', 'Headset'].")
        played.focus()
        played.press("Escape")
        played.until(lambda: server.sounds("Parlour") and not server.sounds("Headset"), "the usual device to sound")
        played.press("o")
        played.until_logged("now:  640x360 ['Options'].", times=2)
        for _ in range(2):
            time.sleep(1)
            played.press("Right")
        played.until(lambda: "soundDevice = Headset" in read(world), "the setting to be kept")
        played.press("Escape")
        played.until(lambda: server.sounds("Headset") and not server.sounds("Parlour"), "the chosen device to sound")
        server.pull("Headset")
        played.until(lambda: server.sounds("Parlour"), "the usual device to sound again")
        played.until_logged('The sound device "Headset" cannot be opened; the usual one is taken.')
        played.press("o")
        played.until_logged("['', 'Parlour', 'Headset'] ['options.usualDevice', 'Parlour', 'Headset (not there now)'].")
        assert played.quit() == 0, played.log()[-2000:]
    return None


def read(world):
    return (world.folder / "config/mornal/settings.txt").read_text(encoding="utf-8")


if __name__ == "__main__":
    game.main(dict(globals()))
