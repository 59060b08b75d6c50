"""The rooms of the scripts' package `saves` that need no engine, for programs without one."""
import pathlib
import sys
import types

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"

_package = types.ModuleType("saves")
_package.__path__ = [str(SCRIPTS / "saves")]
sys.modules["saves"] = _package

from saves import Document, Folder  # noqa: E402

__all__ = ["Document", "Folder", "SCRIPTS"]
