"""Models and the surfaces that they wear."""

import os
from typing import Any

import kaVel
import mods
from objects.Placing import Triple, addVolume, isInMap, layerFor, placed

#: What the names of a surface's maps end with, besides the diffuse one.
MAPS = ('Normal', 'Specular', 'Emissive')
TEXTURES = os.path.join('..', 'assets', 'textures')

_textures: set[str] = set()


def _mapsThere(surface: str) -> list[str]:
    """What the names of the files of a surface end with, of which '' is a picture of its bare name."""
    return [kind for kind in ('Diffuse', '', *MAPS) if surface + kind in _textures]


def mapsOf(surface: str) -> dict[str, Any]:
    """The texture properties of a drawn component that shows a surface.

    A surface is the files in the texture folder that begin with its name, .dds or .png: woodDiffuse and what there is
    of woodNormal, woodSpecular and woodEmissive make the surface 'wood'. A picture named just 'wood' does for the
    diffuse map. KeyError that names the nearest surface if there is none.
    """
    if not _mapsThere(surface):
        files = os.listdir(TEXTURES) + mods.textures()
        _textures.update(os.path.splitext(file)[0] for file in files if file.endswith(('.dds', '.png')))
    there = _mapsThere(surface)
    if not there:
        known = {name.removesuffix('Diffuse') for name in _textures if not name.endswith(MAPS)}
        raise KeyError('no surface %r%s' % (surface, kaVel.nearestHint(surface, known)))
    maps = {kind.lower() + 'TextureName': surface + kind for kind in MAPS if kind in there}
    # A surface that has lost its diffuse map asks for it all the same, so that the log names it.
    return dict(maps, textureName=surface if there[0] == '' else surface + 'Diffuse')


_bounds: dict[str, tuple[Triple, Triple]] = {}


def boundsOf(meshName: str) -> tuple[Triple, Triple]:
    """Least and greatest corner of the box that holds a model, metres; measured once."""
    if meshName not in _bounds:
        assets = kaVel.getSystem('AssetSystem')
        mesh = assets.startLoad(kaVel.Reflection.MeshAssetLoader, meshName, None, 0)
        low, high = mesh.boundsMin, mesh.boundsMax
        _bounds[meshName] = (low.x, low.y, low.z), (high.x, high.y, high.z)
    return _bounds[meshName]


def reachOf(meshName: str) -> Triple:
    """Full extents of the smallest box around a model's origin that holds the model, metres."""
    (x0, y0, z0), (x1, y1, z1) = boundsOf(meshName)
    return 2 * max(abs(x0), abs(x1)), 2 * max(abs(y0), abs(y1)), 2 * max(abs(z0), abs(z1))


def model(entity: kaVel.Entity, meshName: str, surface: str, moving: bool = False, castShadows: bool = True,
          scale: Triple = (1, 1, 1)):
    """Gives an entity the look of a model file with a surface, and the box that the grid finds it by."""
    if isInMap(entity):
        x, y, z = reachOf(meshName)
        sides = x * scale[0], y * scale[1], z * scale[2]
        addVolume(entity, sides, 'BV_NONE' if moving else 'BV_WALL')
    return kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', meshName=meshName,
                              layer=layerFor(entity), castShadows=castShadows, **mapsOf(surface))


def thing(moving: bool = False, castShadows: bool = True, **parts: str):
    """Pattern of an object whose parts, `model='surface'`, share one place; the others hang below the first."""

    @kaVel.pattern
    def build(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, pitch: float = 0.0,
              roll: float = 0.0, scale: Triple = (1, 1, 1)) -> kaVel.Entity:
        """An object of one or more models, which stands on `at`; angles in degrees."""
        root: kaVel.Entity | None = None
        for meshName, surface in parts.items():
            entity = placed(root or parent, meshName if root else name, at, turn, pitch, roll, scale)
            model(entity, meshName, surface, moving, castShadows, scale)
            root = root or entity
        assert root, 'a thing has at least one model'
        return root

    return build
