"""Pictures of patterns for the catalogue: a run of the built game takes one of each that can be placed."""

import os
import pathlib
import shutil
import subprocess
import tempfile

#: Width and height, pixels.
SIZE = "216x162"
#: File that says when the pictures were taken.
MARK = "taken"


def take(build, scripts, folder):
    """Takes the pictures into a folder, unless no pattern's script has changed since; whether they are there."""
    game, mark = build / "game" / "bin" / "kaVel", folder / MARK
    newest = max(path.stat().st_mtime for path in scripts.rglob("*.py"))
    if mark.is_file() and mark.stat().st_mtime >= newest:
        return True
    if not game.is_file():
        return False
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as work:
        variables = {key: value for key, value in os.environ.items() if not key.startswith("KAVEL_")}
        variables.update(KAVEL_LEVEL="Stand", KAVEL_HEADLESS="1", KAVEL_FRAMES="2", KAVEL_SIZE=SIZE, HOME=work,
                         KAVEL_SCREENSHOT=os.path.join(work, "of.png"), XDG_STATE_HOME=work, XDG_CONFIG_HOME=work,
                         XDG_DATA_HOME=work)
        ran = subprocess.run([game], cwd=game.parent, env=variables, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, check=False)
        for picture in pathlib.Path(work).glob("of-*.png"):
            shutil.move(picture, folder / picture.name[len("of-"):])
    if ran.returncode == 0:
        mark.touch()
    return ran.returncode == 0
