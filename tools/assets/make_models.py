#!/usr/bin/env python3
"""make_models.py [NAME...]: writes the named models (all, without a name) into assets/models."""

import pathlib
import sys

import model_file
import models

OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "assets" / "models"


def main():
    unknown = set(sys.argv[1:]) - {recipe.__name__ for recipe in models.RECIPES}
    if unknown:
        sys.exit(
            f"no model named {', '.join(sorted(unknown))}; there are: {', '.join(r.__name__ for r in models.RECIPES)}"
        )
    OUTPUT.mkdir(parents=True, exist_ok=True)
    for recipe in models.RECIPES:
        if len(sys.argv) == 1 or recipe.__name__ in sys.argv[1:]:
            model_file.write(OUTPUT / (recipe.__name__ + ".kaVelModel"), recipe())


if __name__ == "__main__":
    main()
