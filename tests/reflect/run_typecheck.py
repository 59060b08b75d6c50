"""The type check of the scripts: what it finds in a level, and what it says where its tools are missing."""
import argparse
import os
import pathlib
import shutil
import sys
import unittest.mock

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "check"), str(ROOT / "tests" / "support")]
import node_tools
import script_types
from cases import run

LEVEL = """import kaVel
import objects.GameObjects as place
from kaVel import Coordinator


def build(coordinator: Coordinator):
    kaVel.getSystem('WindowSystem')
    kaVel.addComponent(place.Entity(coordinator), 'transfrm', 'TransformComponent')
    kaVel.make('Entity').getComponent('transform').positon
    kaVel.addComponent(place.Entity(coordinator), 'transform', 'TransformComponent', positon=kaVel.Vec4())
    place.Desk(coordinator, 'desk', at=(0, 0))
    coordinator.getManager('graphics2').sceneAmbient = kaVel.Vec4(*(1, 2, 3), 1)
    place.Desk(coordinator, 'desk', at=(0, 0, 1), turn=90).getComponent('graphics2').visible = False
    coordinator.getChild('desk').getComponent('graphics2').textureName = 'wood'


def helper(untyped):
    pass
"""
FAULTY = {7, 8, 9, 10, 11, 12, 17}


def test_faults_of_a_level_are_found_at_their_lines_and_nothing_else(folder):
    shutil.copytree(ROOT / "scripts", folder / "scripts", ignore=shutil.ignore_patterns("__pycache__"))
    shutil.copy(ROOT / "pyrightconfig.json", folder)
    node_tools.program(ROOT, "pyright")
    (folder / "build").mkdir()
    (folder / "build" / "node").symlink_to(ROOT / "build" / "node")
    (folder / "scripts" / "levels" / "Faulty.py").write_text(LEVEL, encoding="utf-8")
    found = [line for line in script_types.findings(folder) if "levels/Faulty.py" in line]
    assert {int(line.split(":")[1]) for line in found} == FAULTY, "\n".join(found)


def test_a_missing_tool_is_named_with_what_brings_it(folder):
    with unittest.mock.patch.dict(os.environ, PATH=str(folder)):
        assert "node is missing: install the Debian packages" in refusal(folder)
    # A registry that nobody answers at.
    with unittest.mock.patch.dict(os.environ, npm_config_registry="http://127.0.0.1:9/", npm_config_fetch_retries="0",
                                  npm_config_cache=str(folder / "cache")):
        assert "is there a network?" in refusal(folder)
    assert not (folder / "package-lock.json").exists(), "the next run tries again"


def refusal(folder):
    try:
        node_tools.install(folder)
    except node_tools.MissingTool as missing:
        return str(missing)
    raise AssertionError("it was installed")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("names", nargs="*")
    sys.exit(run(globals(), parser.parse_args().names))


if __name__ == "__main__":
    main()
