"""Title: the room that one sees under the main menu, where the game begins and comes back to."""

from __future__ import annotations

import GameConfig
import kaVel
import mods
import session
from kaVel import Coordinator, MapRootEntity, ScriptComponent
from objects.sound.Music import Music
from screens import Screens
from title import Room
from title.Eye import Eye
from title.Lamp import Lamp
from title.Splash import Splash


def build(coordinator: Coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.018)
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    Eye(Room.camera(coordinator), *Room.LOOKING)
    coordinator.loadMap('room')
    Splash(coordinator)
    entity = kaVel.make('Entity', parent=coordinator, name='firstFrames')
    frames = kaVel.addComponent(entity, 'cursor', 'ScriptComponent')
    frames.frameCallback = lambda: begin(coordinator, frames)


def room(map: MapRootEntity):
    Room.night(map)
    Lamp(map)


def begin(coordinator: Coordinator, frames: ScriptComponent):
    """Opens the menu, in the first frame."""
    Screens.open(coordinator, 'Main')
    if mods.isAsking():
        Screens.open(coordinator, 'Mods')
    Music(coordinator).play('TitleMusic')
    frames.frameCallback = lambda: tellOfStart(frames)


def tellOfStart(frames: ScriptComponent):
    """Tells how long the start took, once the menu has been seen."""
    frames.frameCallback = None
    if not GameConfig.headless and not session.menuShown:
        session.menuShown = True
        kaVel.log('The main menu stands %.2f s after the start.' % session.secondsSinceStart())
