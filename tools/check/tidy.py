"""Runs clang-tidy over every source file of the build. Prints its warnings, one line each.

What it said of a file is kept in the user's cache, under a sum of all that goes into it: the file and its headers, its
flags, the checks, and the program. Only what is new to it takes time, in another checkout of the same sources, too.
"""
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import tempfile
import time

KEPT_DAYS = 60


def findings(root, build):
    kept = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "kaVel-tidy"
    kept.mkdir(parents=True, exist_ok=True)
    sums = Sums(root, build)
    files = sorted(str(path) for path in (root / "src").rglob("*.cpp"))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for lines in pool.map(lambda name: told(root, build, name, kept, sums), files):
            yield from lines
    forget_old(kept)


def told(root, build, name, kept, sums):
    """What there is to say of a file, from the cache where it has been said before."""
    key = sums.of(name)
    if key and (kept / key).exists():
        os.utime(kept / key)
        return (kept / key).read_text().splitlines()
    lines = tidy(root, build, name)
    if key:
        with tempfile.NamedTemporaryFile("w", dir=kept, delete=False) as file:
            file.write("\n".join(lines))
        os.replace(file.name, kept / key)
    return lines


def tidy(root, build, name):
    # The build's flags are those of its compiler, which may know warnings that clang does not.
    command = ["clang-tidy", "-p", str(build), "--quiet", "--extra-arg=-Wno-unknown-warning-option", name]
    result = subprocess.run(command, cwd=root, capture_output=True, text=True, check=False)
    lines = [line.replace(f"{root}/", "") for line in result.stdout.splitlines()
             if "warning:" in line or "error:" in line]
    if result.returncode and not lines:
        raise RuntimeError(f"clang-tidy ended with {result.returncode} at {name}: {result.stderr.strip()[-500:]}")
    return lines


class Sums:
    """A sum of all that clang-tidy goes by, for each source file that has been built."""

    def __init__(self, root, build):
        self.root, self.build = root, build
        program = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout
        self.common = program + (root / ".clang-tidy").read_text()
        commands = json.loads((build / "compile_commands.json").read_text())
        self.built = {each["file"]: each for each in commands}
        self.read = self.files_read()

    def files_read(self):
        """The files that each object was compiled from, by its path in the build."""
        listing = subprocess.run(["ninja", "-C", str(self.build), "-t", "deps"], capture_output=True, text=True,
                                 check=False).stdout
        read, now = {}, []
        for line in listing.splitlines():
            if line.startswith(" "):
                now.append(line.strip())
            elif ": #deps" in line:
                now = read[line.split(": #deps")[0]] = []
        return read

    def of(self, name):
        """None for a file of which the build does not know yet what it reads."""
        entry = self.built.get(name)
        made = re.search(r" -o (\S+)", entry["command"]) if entry else None
        paths = self.read.get(made[1]) if made else None
        if not paths:
            return None
        total = hashlib.sha256((self.common + self.shown(entry["command"])).encode())
        for path in paths:
            whole = os.path.normpath(os.path.join(self.build, path))
            content = content_sum(whole)
            if content is None:
                return None
            total.update(f"{self.shown(whole)} {content}\n".encode())
        return total.hexdigest()

    def shown(self, text):
        return text.replace(str(self.root), ".")


@functools.cache
def content_sum(path):
    try:
        with open(path, "rb") as file:
            return hashlib.file_digest(file, "sha256").hexdigest()
    except OSError:
        return None


def forget_old(kept):
    limit = time.time() - KEPT_DAYS * 86400
    for path in kept.iterdir():
        if path.stat().st_mtime < limit:
            path.unlink(missing_ok=True)
