"""Models and the surfaces that they wear."""

import kaVel
from objects.Placing import addVolume, isInMap, layerFor, placed

#: Surface -> the maps it has besides the diffuse one, whose files are <surface><Map>.dds.
SURFACES = {
    'bark': ('Normal',),
    'boards': ('Normal', 'Specular'),
    'books': ('Normal', 'Specular'),
    'bottleGlass': ('Normal', 'Specular'),
    'brass': ('Normal', 'Specular'),
    'brick': ('Normal',),
    'ceramic': ('Normal', 'Specular'),
    'clockFace': ('Normal', 'Specular'),
    'cloth': ('Normal',),
    'concrete': ('Normal', 'Specular'),
    'earth': ('Normal', 'Specular'),
    'embers': ('Normal', 'Emissive'),
    'firebox': ('Normal', 'Emissive'),
    'flagstones': ('Normal', 'Specular'),
    'flame': ('Emissive',),
    'glassAmber': ('Emissive',),
    'glassBlue': ('Emissive',),
    'glassGreen': ('Emissive',),
    'glassRed': ('Emissive',),
    'hollow': (),
    'iron': ('Normal', 'Specular'),
    'lampShade': ('Normal', 'Emissive'),
    'landscape': ('Normal', 'Specular'),
    'leather': ('Normal', 'Specular'),
    'lens': ('Emissive',),
    'marble': ('Normal', 'Specular'),
    'nightCloud': ('Emissive',),
    'nightSky': ('Emissive',),
    'nightWindow': ('Normal', 'Specular', 'Emissive'),
    'paper': ('Normal',),
    'plaster': ('Normal',),
    'portrait': ('Normal', 'Specular'),
    'rug': ('Normal',),
    'rust': ('Normal', 'Specular'),
    'stone': ('Normal', 'Specular'),
    'tiles': ('Normal', 'Specular'),
    'wallpaper': ('Normal', 'Specular'),
    'wax': ('Normal', 'Specular', 'Emissive'),
    'wood': ('Normal', 'Specular'),
}


def mapsOf(surface):
    """The texture properties of a drawn component that shows a surface of SURFACES."""
    maps = {kind.lower() + 'TextureName': surface + kind + '.dds' for kind in SURFACES[surface]}
    return dict(maps, textureName=surface + 'Diffuse.dds')


_bounds = {}


def boundsOf(meshName):
    """Least and greatest corner of the box that holds a model, metres; measured once."""
    if meshName not in _bounds:
        assets = kaVel.getSystem('AssetSystem')
        mesh = assets.startLoad(kaVel.Reflection.MeshAssetLoader, meshName, None, 0)
        _bounds[meshName] = tuple((corner.x, corner.y, corner.z) for corner in (mesh.boundsMin, mesh.boundsMax))
    return _bounds[meshName]


def reachOf(meshName):
    """Full extents of the smallest box around a model's origin that holds the model, metres."""
    return tuple(2 * max(abs(low), abs(high)) for low, high in zip(*boundsOf(meshName)))


def model(entity, meshName, surface, moving=False, castShadows=True, scale=(1, 1, 1)):
    """Gives an entity the look of a model file with a surface of SURFACES, and the box that the grid finds it by."""
    if isInMap(entity):
        addVolume(entity, [side * s for side, s in zip(reachOf(meshName), scale)], 'BV_NONE' if moving else 'BV_WALL')
    return kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', meshName=meshName,
                              layer=layerFor(entity), castShadows=castShadows, **mapsOf(surface))


def thing(moving=False, castShadows=True, **parts):
    """Pattern of an object whose parts, `model='surface'`, share one place; the others hang below the first."""

    @kaVel.pattern
    def build(parent, name='', scale=(1, 1, 1), **place):
        root = None
        for meshName, surface in parts.items():
            entity = placed(root or parent, name if root is None else meshName, scale=scale, **place)
            model(entity, meshName, surface, moving, castShadows, scale)
            root = root or entity
        return root

    return build
