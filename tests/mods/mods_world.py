"""Mods as a test writes them, into the folders of a world of its own."""
import os
import pty
import shutil
import subprocess

import game

MANIFEST = 'name = "{name}"\nversion = "{version}"\ntitle = "A mod"\nlicence = "CC0-1.0"\nkind = "{kind}"\n'


def folder(world, name):
    return world.folder / ".local" / "share" / "mornal" / "mods" / name


def write(world, name, kind="data", version="1.0", needs=(), files=()):
    """A mod of this name with its manifest, its needs (pairs) and its files (name: text or bytes)."""
    text = MANIFEST.format(name=name, version=version, kind=kind)
    if needs:
        text += "[needs]\n" + "".join(f'{need} = "{wanted}"\n' for need, wanted in dict(needs).items())
    for path, content in {"mod.toml": text, **dict(files)}.items():
        world.write(folder(world, name).relative_to(world.folder) / path, content)


def example(world, name):
    """An example of ours, put where a player puts it."""
    shutil.copytree(game.ROOT / "examples" / name, folder(world, name))


def run(world, *names, level=None, **environment):
    """Runs with these mods; `answer` is what is typed at a terminal, which it has none of otherwise.

    With an answer, `inherited` are descriptors that whoever starts it has left open.
    """
    answer, inherited = environment.pop("answer", None), environment.pop("inherited", ())
    environment = {"frames": 3, **environment}
    # A run with mods may not be traced, as the check for leaks at its end would.
    environment.setdefault("ASAN_OPTIONS", "detect_leaks=0")
    variables = world.variables(level, KAVEL_MOD=",".join(names), KAVEL_SIZE="320x180", **environment)
    if answer is None:
        return world.start(variables)
    ours, theirs = pty.openpty()
    os.write(ours, answer.encode() + b"\n")
    result = subprocess.run([str(world.executable)], cwd=world.folder / "bin", env=variables, stdin=theirs,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, pass_fds=inherited,
                            timeout=game.TIMEOUT_S, check=False)
    os.close(ours)
    os.close(theirs)
    return game.Outcome(result.returncode, result.stdout.decode("utf-8", "replace"))
