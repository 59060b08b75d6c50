"""Title: the room that one sees under the main menu, where the game begins and comes back to."""

from __future__ import annotations

import GameConfig
import kaVel
import mods
import session
from kaVel import Coordinator, MapRootEntity
from objects.Music import Music
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
    Splash(coordinator, lambda: begin(coordinator))


def room(map: MapRootEntity):
    Room.night(map)
    Lamp(map)


def begin(coordinator: Coordinator):
    Screens.open(coordinator, 'Main')
    if mods.isAsking():
        Screens.open(coordinator, 'Mods')
    Music(coordinator).play('TitleMusic')
    if not GameConfig.headless and not session.menuShown:
        session.menuShown = True
        kaVel.log('The main menu stands %.2f s after the start.' % session.secondsSinceStart())
