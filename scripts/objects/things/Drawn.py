"""What is drawn without a model file: decals, dust, boxes, terrain, pictures and text on the screen."""

from __future__ import annotations

from typing import Any

import kaVel
import words
from objects.Placing import Pair, Triple, addVolume, isInMap, layerFor, placed
from objects.things.Models import mapsOf

#: Which point of a picture or text lies on its place: across and up.
Anchor = tuple['kaVel.HorizontalAnchorName', 'kaVel.VerticalAnchorName']


@kaVel.pattern
def Decal(parent: kaVel.Object, name: str = '', picture: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
          pitch: float = 0.0, roll: float = 0.0, size: Pair = (1, 1), depth: float = 0.3, alpha: float = 1.0):
    """A picture thrown onto what stands at `at`, along the direction that `turn` and `pitch` look in: 90 is down.

    Surfaces within `depth` metres take it. The map's grid finds it, so it needs a map.
    """
    decal = placed(parent, name, at=at, turn=turn, pitch=pitch, roll=roll, scale=(size[0], size[1], depth))
    addVolume(decal, (max(size[0], depth), size[1], max(size)), 'BV_PARTITIONING_DUMMY')
    kaVel.addComponent(decal, 'graphics2', 'DecalComponent', layer='DECAL', textureName=picture, alpha=alpha)
    return decal


@kaVel.pattern
def Dust(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (2, 2, 2), turn: float = 0.0,
         pitch: float = 0.0, count: int = 400, mote: float = 0.005, drift: float = 0.03, strength: float = 1.0):
    """Dust that hangs in a box around `at` and shows where light falls on it."""
    cloud = placed(parent, name, at=at, turn=turn, pitch=pitch, scale=size)
    kaVel.addComponent(cloud, 'graphics2', 'DustParticleSystemComponent', layer='WORLD_DEBUG', count=count, size=mote,
                       driftSpeed=drift, color=kaVel.Vec4(0.55, 0.52, 0.45, strength))
    return cloud


@kaVel.pattern
def Box(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (1, 1, 1), turn: float = 0.0,
        surface: str = 'concrete', repeats: float = 0.5, group: kaVel.ObjectGroupComponent.GroupName = 'NONE'):
    """A block that stands on `at`; its texture lies in the world, so that blocks side by side show no seam."""
    box = placed(parent, name, at=(at[0], at[1] + size[1] / 2, at[2]), turn=turn, scale=size)
    if isInMap(box):
        addVolume(box, size)
    kaVel.addComponent(box, 'graphics2', 'WorldBasedTCBoxGraphicsComponent', layer=layerFor(box), textureScale=repeats,
                       group=group, castShadows=True, **mapsOf(surface))
    return box


@kaVel.pattern
def Built(parent: kaVel.Object, name: str = '', *, mesh: kaVel.MeshBuilder, at: Triple = (0, 0, 0), turn: float = 0.0,
          surface: str = 'concrete', castShadows: bool = True):
    """What a script has built with a `kaVel.MeshBuilder`; it is drawn as it is then, with its origin at `at`."""
    built = placed(parent, name, at=at, turn=turn)
    if isInMap(built):
        low, high = mesh.bounds
        x, y, z = (2 * max(abs(a), abs(b)) for a, b in ((low.x, high.x), (low.y, high.y), (low.z, high.z)))
        addVolume(built, (x, y, z))
    asset = kaVel.make('DynamicMeshAsset', parent=built, name='mesh')
    asset.setMeshData(mesh)
    kaVel.addComponent(built, 'graphics2', 'ModelGraphicsComponent2', layer=layerFor(built), mesh=asset,
                       castShadows=castShadows, **mapsOf(surface))
    return built


@kaVel.pattern
def Terrain(parent: kaVel.Object, name: str = '', heights: str = '', at: Triple = (0, 0, 0), size: Triple = (8, 1, 8),
            surface: str = 'earth', repeat: float = 4.0):
    """Ground from an image of heights, its middle at `at`; `size` is width, greatest height and depth."""
    ground = placed(parent, name, at=at, scale=size)
    if isInMap(ground):
        addVolume(ground, size)
    kaVel.addComponent(ground, 'graphics2', 'HeightMapGraphics', layer=layerFor(ground), heightMapName=heights,
                       textureRepeat=repeat, castShadows=True, **mapsOf(surface))
    return ground


def _isOnScreen(parent: kaVel.Object) -> bool:
    """Whether an object has its place on the screen, so that what hangs below keeps to it."""
    isEntity = parent._getType().isSubclassOf(kaVel.Reflection.Entity)
    return isEntity and 'screenSpaceHelper' in parent.children


def _onScreen(parent: kaVel.Object, name: str, at: Pair, scale: Triple, anchor: Anchor,
              depth: float) -> tuple[kaVel.Entity, dict[str, Any]]:
    """An entity whose place is in shares of the window, from its lower left corner; deeper ones are drawn first.

    Below another one it keeps to that one's place, and `at` is in shares of the window's longer side.
    """
    isPart = _isOnScreen(parent)
    units: kaVel.WindowCoordinateSystemName = 'WCS_NORMALIZED_NOWRAP' if isPart else 'WCS_PERCENT'
    entity = placed(parent, name, scale=scale)
    kaVel.addComponent(entity, 'screenSpaceHelper', 'ScreenSpaceHelperComponent', windowCoordinateSystemX=units,
                       windowCoordinateSystemY=units, windowPosition=kaVel.Vec4(at[0], at[1], depth, 1),
                       relToParent=isPart)
    return entity, {'horizontalAnchorPoint': anchor[0], 'verticalAnchorPoint': anchor[1]}


@kaVel.pattern
def Picture(parent: kaVel.Object, name: str = '', picture: str = '', at: Pair = (0.5, 0.5), size: Pair = (0.1, 0.1),
            anchor: Anchor = ('H_CENTER', 'V_CENTER'), depth: float = 1.0):
    """A picture on the screen; `at` in shares of the window, `size` in shares of the window's longer side."""
    quad, anchors = _onScreen(parent, name, at, (size[0], size[1], 1), anchor, depth)
    kaVel.addComponent(quad, 'graphics2', 'QuadComponent2', layer='SCREEN', textureName=picture, **anchors)
    return quad


@kaVel.pattern
def ScreenFrame(parent: kaVel.Object, name: str = '', picture: str = 'vignetteFrame', depth: float = 5.0):
    """A picture stretched over the whole screen, whatever the window's size."""
    frame = Picture(parent, name, picture=picture, size=(1, 1), depth=depth)
    window, transform = kaVel.getSystem('WindowSystem2'), frame.getComponent('transform')

    def fit():
        width, height = window.width, window.height
        longer = max(width, height) / 1.004  # a little more than the window, so that no edge shows
        transform.scale = kaVel.Vec4(width / longer, height / longer, 1, 0)

    fit()
    kaVel.addComponent(frame, 'cursor', 'ScriptComponent', frameCallback=fit)
    return frame


@kaVel.pattern
def Text(parent: kaVel.Object, name: str = '', *, text: str = '', at: Pair = (0.05, 0.95), size: float = 0.022,
         color: tuple[float, float, float, float] = (1, 1, 1, 1), wrapWidth: float = 0.0,
         align: kaVel.TextAlignmentName = 'TA_LEFT', anchor: Anchor = ('H_LEFT', 'V_TOP'), depth: float = 0.5,
         font: str = ''):
    """Text on the screen; `at` in shares of the window, `size` and `wrapWidth` in shares of its longer side.

    Without a font of its own it stands in the one that the player reads in.
    """
    block, anchors = _onScreen(parent, name, at, (1, 1, 1), anchor, depth)
    kaVel.addComponent(block, 'graphics2', 'TextComponent2', layer='SCREEN', text=text,
                       fontName=font or words.font(), fontSize=size if font else words.fontSize(size),
                       wrapWidth=wrapWidth, color=kaVel.Vec4(*color), alignment=align, **anchors)
    return block


def write(graphics: kaVel.TextComponent2, text: words.Told, size: float):
    """Gives a text of the screen what it says now, in the language and the font of the moment."""
    kaVel.configure(graphics, text=str(text), fontName=words.font(), fontSize=words.fontSize(size))
