#!/usr/bin/env python3
"""make_models.py [NAME...]: writes the named models (all, without a name) into assets/models."""

import pathlib
import sys

import model_file
from models import RECIPES
from recipes import chosen

OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "assets" / "models"


def main():
    OUTPUT.mkdir(parents=True, exist_ok=True)
    for recipe in chosen(RECIPES, sys.argv[1:]):
        model_file.write(OUTPUT / (recipe.__name__ + ".kaVelModel"), recipe())


if __name__ == "__main__":
    main()
