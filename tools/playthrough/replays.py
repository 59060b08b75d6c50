"""Runs the game off-screen: a course that is recorded, or a recording that is replayed."""

import os
import pathlib
import subprocess
import tempfile
import threading

import sketches
from costs import Costs

# Longer than any course: half an hour at 60 frames a second.
MOST_FRAMES = 108000
TIMEOUT_S = 1800


class RunFailed(Exception):
    """The game did not come to the end that was asked for; the text is the end of its log."""


class Player:
    """Runs one executable with a user's folder of its own. Nothing is drawn unless that is asked for."""

    def __init__(self, executable, drawn=False):
        self.executable = pathlib.Path(executable).resolve()
        self.drawn = drawn

    @classmethod
    def of_build(cls, build, drawn=False):
        """The game of a build folder."""
        return cls(pathlib.Path(build) / "game" / "bin" / "kaVel", drawn)

    def record(self, course, level, seed, size):
        """The input and the digest of a course that is played."""
        with tempfile.TemporaryDirectory() as folder:
            self._run(folder, KAVEL_COURSE=course, KAVEL_RECORD=f"{folder}/input", KAVEL_FRAMES=str(MOST_FRAMES),
                      KAVEL_DIGEST=f"{folder}/digest", KAVEL_LEVEL=level, KAVEL_SEED=str(seed), KAVEL_SIZE=size)
            return read_text(f"{folder}/input"), read_bytes(f"{folder}/digest")

    def replay(self, recording, frames=None):
        """The digest of a replay, of all frames or the first ones."""
        with tempfile.TemporaryDirectory() as folder:
            self._replay(folder, recording, frames or sketches.frames(recording.digest),
                         KAVEL_DIGEST=f"{folder}/digest")
            return read_bytes(f"{folder}/digest")

    def dump(self, recording, frame):
        """All fields after a frame of a replay; see `sketches.read_dump`."""
        with tempfile.TemporaryDirectory() as folder:
            self._replay(folder, recording, frame, KAVEL_DUMP=f"{folder}/dump")
            return list(sketches.read_dump(read_text(f"{folder}/dump")))

    def meter(self, recording):
        """What a replay costs: its frames, and the peak of its memory in MiB."""
        with tempfile.TemporaryDirectory() as folder:
            peak = self._replay(folder, recording, sketches.frames(recording.digest), KAVEL_METER=f"{folder}/meter")
            return Costs.read(read_text(f"{folder}/meter"), peak / 1024)

    def pictures(self, recording, frames, target):
        """Writes the pictures of some frames of a replay into a folder; their files."""
        with tempfile.TemporaryDirectory() as folder:
            self._replay(folder, recording, max(frames) + 1, KAVEL_SHOTS=",".join(map(str, frames)),
                         KAVEL_SCREENSHOT=str(pathlib.Path(target).resolve() / f"{recording.course}.png"))
        return [pathlib.Path(target) / f"{recording.course}-{frame}.png" for frame in frames]

    def _replay(self, folder, recording, frames, **words):
        pathlib.Path(folder, "input").write_text(recording.input, encoding="utf-8")
        words.update(KAVEL_REPLAY=f"{folder}/input", KAVEL_FRAMES=str(frames), KAVEL_LEVEL=recording.level,
                     KAVEL_SEED=str(recording.seed), KAVEL_SIZE=recording.size)
        return self._run(folder, **words)

    def _run(self, folder, **words):
        """Runs to the end; returns the peak of the game's memory, KiB."""
        environment = {key: value for key, value in os.environ.items()
                       if not key.startswith("KAVEL_") and key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment.update(words, KAVEL_HEADLESS="1", HOME=folder, XDG_CONFIG_HOME=f"{folder}/config",
                           XDG_STATE_HOME=f"{folder}/state")
        if not self.drawn:
            environment["KAVEL_UNDRAWN"] = "1"
        log = pathlib.Path(folder, "log")
        with log.open("wb") as output:
            game = subprocess.Popen([str(self.executable)], cwd=self.executable.parent, env=environment,
                                    stdout=output, stderr=subprocess.STDOUT)
            watchdog = threading.Timer(TIMEOUT_S, game.kill)
            watchdog.start()
            _, status, usage = os.wait4(game.pid, 0)
            watchdog.cancel()
            game.returncode = os.waitstatus_to_exitcode(status)
        if game.returncode != 0:
            text = log.read_text(encoding="utf-8", errors="replace")
            raise RunFailed(f"the game ended with exit code {game.returncode}:\n{text[-3000:]}")
        return usage.ru_maxrss


def read_text(path):
    return pathlib.Path(path).read_text(encoding="utf-8")


def read_bytes(path):
    return pathlib.Path(path).read_bytes()
