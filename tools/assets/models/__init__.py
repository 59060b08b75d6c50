"""Recipes of the game's models. A recipe returns a Mesh; its name is the model's.

Walls and panels stand on the plane z = 0 and face +z. Furniture stands on y = 0 around the origin with its front
towards +z. Pieces of one thing that wear different textures are models of their own that share one origin: a lamp is
`lampBase` and `lampShade` at the same place. The last line of a recipe names the size its texture covers.
"""

from models import (
    books,
    building,
    cabinets,
    fireside,
    ironwork,
    lighting,
    openings,
    seating,
    shapes,
    statuary,
    stonework,
    storeroom,
    tableware,
    workshop,
)
from recipes import recipes_of

#: Every recipe of the package, by name.
RECIPES = recipes_of(
    building,
    openings,
    fireside,
    seating,
    cabinets,
    books,
    storeroom,
    lighting,
    tableware,
    stonework,
    statuary,
    ironwork,
    workshop,
    shapes,
)
