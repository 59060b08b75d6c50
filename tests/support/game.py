"""Runs the built executable in a world of its own, for tests written in Python.

A world is a folder with a copy of the scripts, links to the assets and the standard library, and a `bin` to run in:
a test changes its own copy and nothing else.
"""
import atexit
import argparse
import os
import pathlib
import resource
import shutil
import subprocess
import sys

from cases import run

ROOT = pathlib.Path(__file__).resolve().parents[2]
TIMEOUT_S = 1200
LEAK_CHECK_BROKE = "LeakSanitizer has encountered a fatal error"


def place(file, target):
    """Has the same file at another place; the executable finds its content from the place where it stands."""
    try:
        os.link(file, target)
    except OSError:  # another file system
        shutil.copy2(file, target)


class Outcome:
    """How a run ended, and what it wrote."""

    def __init__(self, code, log):
        self.code = code
        self.log = log

    def has(self, text):
        return text in self.log

    def expect(self, text):
        assert text in self.log, f"the log lacks {text!r}; it ends:\n{self.log[-3000:]}"

    def expect_code(self, code):
        assert self.code == code, f"exit code {self.code} instead of {code}; the log ends:\n{self.log[-3000:]}"


class World:
    """A game folder that a test may change."""

    def __init__(self, build, folder):
        self.folder = pathlib.Path(folder)
        self.build = pathlib.Path(build)
        game = self.build / "game"
        self.executable = self.folder / "bin" / "kaVel"
        (self.folder / "bin").mkdir(parents=True)
        place(game / "bin" / "kaVel", self.executable)
        shutil.copytree(ROOT / "scripts", self.folder / "scripts")
        (self.folder / "assets").mkdir()
        for kind in ("fonts", "icons", "models", "textures", "shaders"):
            shutil.copytree(ROOT / "assets" / kind, self.folder / "assets" / kind)
        # Much, and nothing that a test writes into; one with sounds of its own puts them in its place.
        os.symlink(ROOT / "assets" / "sound", self.folder / "assets" / "sound")
        os.symlink(game / "python.zip", self.folder / "python.zip")

    def write(self, path, text):
        target = self.folder / path
        target.parent.mkdir(parents=True, exist_ok=True)
        if isinstance(text, bytes):
            target.write_bytes(text)
        else:
            target.write_text(text, encoding="utf-8")

    def write_level(self, name, body):
        """A level whose `build(coordinator)` runs these lines."""
        lines = "".join(f"    {line}\n" for line in body.strip("\n").splitlines())
        self.write(f"scripts/levels/{name}.py", f"import kaVel\n\n\ndef build(coordinator):\n{lines}")

    def variables(self, level=None, frames=5, screenshot=None, **environment):
        """The environment of a run: this world's user, no display, and the words of the run."""
        variables = {key: value for key, value in os.environ.items() if not key.startswith("KAVEL_")}
        variables.pop("DISPLAY", None)
        variables.pop("WAYLAND_DISPLAY", None)
        variables.update(KAVEL_HEADLESS="1", KAVEL_FRAMES=str(frames), HOME=str(self.folder),
                         XDG_CONFIG_HOME=str(self.folder / "config"), XDG_STATE_HOME=str(self.folder / "state"),
                         PULSE_RUNTIME_PATH=str(self.folder / "pulse"))
        variables["KAVEL_LEVEL"] = level or "FirstRoom"  # small, and soon there
        if screenshot:
            variables["KAVEL_SCREENSHOT"] = str(self.folder / screenshot)
        variables.update(environment)
        return variables

    def run(self, *words, largest_file=None, **environment):
        """Runs to the end; the arguments are those of `variables`.

        `largest_file` is the size in bytes at which the system writes no further.
        """
        variables = self.variables(*words, **environment)
        outcome = self.start(variables, largest_file)
        if outcome.has(LEAK_CHECK_BROKE):
            # The checker itself fell over the driver's threads at exit: the run counts, its leaks stay unknown.
            outcome = self.start(dict(variables, ASAN_OPTIONS="detect_leaks=0"), largest_file)
        return outcome

    def start(self, variables, largest_file=None):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, largest_file))

        # Without the signals' defaults restored, a write beyond the limit fails and does not kill.
        result = subprocess.run([str(self.executable)], cwd=self.folder / "bin", env=variables,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=TIMEOUT_S, check=False,
                                preexec_fn=limit if largest_file else None, restore_signals=not largest_file)
        return Outcome(result.returncode, result.stdout.decode("utf-8", "replace"))

    def begin(self, *words, **environment):
        """Starts a run and returns its process, whose output is a pipe; the arguments are those of `variables`."""
        process = subprocess.Popen([str(self.executable)], cwd=self.folder / "bin",
                                   env=self.variables(*words, **environment),
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        atexit.register(process.kill)  # a case that fails halfway leaves no game behind
        return process

    def is_sanitized(self):
        """Whether the executable was built with the sanitizers."""
        return "KV_SANITIZE:BOOL=ON" in (self.build / "CMakeCache.txt").read_text(encoding="utf-8")

    def logs(self):
        """The log files that there are, oldest first."""
        return sorted((self.folder / "state" / "mornal" / "logs").glob("*.log"))


def main(cases):
    """Runs the functions of a module whose names begin with `test_`, each in a world of its own."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    sys.exit(run(cases, options.names,
                 lambda folder: (World((ROOT / options.build).resolve(), folder / "game"),)))
