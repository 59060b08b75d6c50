"""Viewers of the world and of the screen."""

import math
from typing import Any

import kaVel
from objects.Placing import Triple, placed
from objects.player.FreeCamera import FreeCameraControl


@kaVel.pattern
def ScreenViewer(parent: kaVel.Object, name: str = ''):
    """The viewer of the screen-space layers: the renderer asks for it when a level begins to draw."""
    viewer = placed(parent, name)
    kaVel.addComponent(viewer, 'viewer', 'ViewerComponent', projectionType='PARALLEL')
    return viewer


@kaVel.pattern
def Camera(parent: kaVel.Object, name: str = '', at: Triple = (0, 1.7, 0), turn: float = 0.0, pitch: float = 0.0,
           fieldOfView: float = 45.0, farClip: float = 50.0):
    """A camera that nothing moves, and the level's current one from now on."""
    camera = placed(parent, name, at=at, turn=turn, pitch=pitch)
    kaVel.addComponent(camera, 'viewer', 'ViewerComponent', verticalFieldOfViewAngle=math.radians(fieldOfView),
                       nearClipDistance=0.05, farClipDistance=farClip)
    camera.getAncestorOfType(kaVel.Reflection.Coordinator).getManager('graphics2').pushCamera(camera)
    return camera


@kaVel.pattern
def FreeCamera(parent: kaVel.Object, name: str = '', turn: float = 0.0, pitch: float = 0.0, **options: Any):
    """A camera that flies by keyboard and mouse, and the level's current camera from now on."""
    camera = Camera(parent, name, turn=turn, pitch=pitch, **options)
    FreeCameraControl(camera, turn, pitch)
    return camera
