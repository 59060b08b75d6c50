"""Dawn: the room of the title when the night is over, under the credits; behind them is the title."""

from __future__ import annotations

import kaVel
from kaVel import Coordinator, MapRootEntity
from objects import Sequences
from objects.sound.Music import Music
from screens import Screens, Ways
from title import Room
from title.Eye import Eye

GROWS_LIGHT = 4.0  # seconds


def build(coordinator: Coordinator):
    picture = coordinator.getManager('graphics2')
    kaVel.configure(picture, sceneAmbient=0.07, dissolveAmount=1.0)
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    Eye(Room.camera(coordinator), *Room.LOOKING)
    coordinator.loadMap('room')
    Music(coordinator).play('EndMusic')
    kaVel.interpolate(picture, 'dissolveAmount', 0.0, GROWS_LIGHT)
    Sequences.play(coordinator, GROWS_LIGHT, lambda: Screens.open(coordinator, 'Credits', leave=leave))


def room(map: MapRootEntity):
    Room.dawn(map)


def leave():
    Ways.goTo(Ways.TITLE)
