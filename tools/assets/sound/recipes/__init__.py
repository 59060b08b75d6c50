"""The recipes of all sounds: one module a kind, one public function a sound, entered by `take.sound`."""

import importlib
import pathlib

from take import RECIPES

for module in sorted(pathlib.Path(__file__).parent.glob("[a-z]*.py")):
    importlib.import_module("recipes." + module.stem)


def chosen(names):
    """The recipes of these kinds ("steps"), sounds ("steps/wood_walk") or bare names; all without a name."""
    found = {}
    for name in names:
        matching = {key: recipe for key, recipe in RECIPES.items() if name in (key[0], key[1], "/".join(key))}
        if not matching:
            kinds = ", ".join(sorted({kind for kind, _ in RECIPES}))
            raise SystemExit(f"no sound and no kind is named '{name}'; the kinds are {kinds}")
        found.update(matching)
    return list((found if names else RECIPES).values())
