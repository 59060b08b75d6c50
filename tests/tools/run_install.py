"""A copy of the game as `cmake --install` makes it: moved elsewhere, read-only, run by another user."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

NOBODY = 65534


def installed(build, folder):
    """A copy that has been moved since it was made, of which nothing may be written."""
    made, moved = folder / "made", folder / "moved to a place with spaces"
    subprocess.run(["cmake", "--install", build, "--prefix", made, "--component", "game"], check=True,
                   stdout=subprocess.DEVNULL)
    made.rename(moved)
    subprocess.run(["chmod", "-R", "a-w,a+rX", moved], check=True)
    return moved


def as_another_user():
    """What runs a command as somebody without rights, where this one has them."""
    return ["setpriv", f"--reuid={NOBODY}", "--regid=nogroup", "--clear-groups"] if os.geteuid() == 0 else []


def contents(folder):
    return {path.relative_to(folder): path.lstat().st_mtime_ns for path in folder.rglob("*")}


def test_a_copy_runs_read_only_from_wherever_it_lies(world):
    folder = pathlib.Path(tempfile.mkdtemp())
    try:
        folder.chmod(0o755)
        copy = installed(world.build, folder)
        home = folder / "home"
        home.mkdir()
        if os.geteuid() == 0:
            os.chown(home, NOBODY, NOBODY)
        before = contents(copy)
        environment = {"HOME": str(home), "PATH": "/usr/bin:/bin", "KAVEL_HEADLESS": "1", "KAVEL_LEVEL": "FirstRoom",
                       "KAVEL_FRAMES": "5", "KAVEL_SIZE": "320x180", "KAVEL_SCREENSHOT": str(home / "picture.png")}
        run = subprocess.run([*as_another_user(), copy / "bin" / "mornal"], env=environment, cwd="/",
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=game.TIMEOUT_S)
        assert run.returncode == 0, run.stdout
        assert (home / "picture.png").read_bytes().startswith(b"\x89PNG")
        assert list((home / ".local" / "state" / "mornal" / "logs").glob("*.log")), "the run left no log"
        assert contents(copy) == before, "the run wrote into its own copy"
        assert (copy / "share" / "icons" / "hicolor" / "48x48" / "apps" / "mornal.png").is_file()
    finally:
        subprocess.run(["chmod", "-R", "u+w", folder], check=True)
        shutil.rmtree(folder)


if __name__ == "__main__":
    game.main(globals())
