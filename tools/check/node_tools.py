"""The tools that run on Node, by tools/check/node/package.json: installs them below build/ once for each lock file."""
import pathlib
import shutil
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
TIMEOUT_S = 300


class MissingTool(Exception):
    """Says what is missing and how to get it."""


def program(root, name):
    """The path of an installed tool; MissingTool if it neither is there nor can be fetched."""
    folder = root / "build" / "node"
    lock = HERE / "node" / "package-lock.json"
    kept = folder / "package-lock.json"
    found = folder / "node_modules" / ".bin" / name
    if not (found.exists() and kept.exists() and kept.read_bytes() == lock.read_bytes()):
        install(folder)
    return found


def install(folder):
    for each in ("node", "npm"):
        if shutil.which(each) is None:
            raise MissingTool(f"{each} is missing: install the Debian packages nodejs and npm, or Node from elsewhere")
    folder.mkdir(parents=True, exist_ok=True)
    lock = folder / "package-lock.json"
    lock.unlink(missing_ok=True)  # stands only beside what was installed by it
    shutil.copy(HERE / "node" / "package.json", folder)
    shutil.copy(HERE / "node" / "package-lock.json", lock)
    command = ["npm", "ci", "--omit=optional", "--no-audit", "--no-fund", "--loglevel=error"]
    try:
        result = subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=TIMEOUT_S, check=False)
        failure = result.stderr.strip() if result.returncode else ""
    except subprocess.TimeoutExpired:
        failure = f"npm did not end within {TIMEOUT_S} s"
    if failure:
        lock.unlink()
        raise MissingTool(f"npm cannot fetch what tools/check/node/package.json lists; is there a network?\n{failure}")
