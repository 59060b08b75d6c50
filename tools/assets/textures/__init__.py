"""Recipes of the game's textures. A recipe returns {map name: (picture, file kind)}.

Every recipe starts from a height field, because light, dirt and wear all follow the relief: the normal map
is its slope, hollows are darkened by `cavity`, and stains collect where it is low. A comment gives the size in
metres that one repeat covers; the models lay their texture coordinates out to match.
"""

from recipes import recipes_of
from textures import building, decals, defaults, fire, lenses, materials, paper, pictures, screen, stone

#: Every recipe of the package, by name.
RECIPES = recipes_of(building, stone, materials, paper, pictures, fire, decals, lenses, screen, defaults)
