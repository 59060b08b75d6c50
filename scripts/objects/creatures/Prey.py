"""The player as creatures meet him: where he is, how his light falls, and what it costs him to be touched."""

from __future__ import annotations

import kaVel
import words
from objects.Placing import LevelClock
from objects.player.Life import Life, lifeOf
from objects.player.Nerves import nervesOf


#: How far from his hand his own body ends, metres.
BODY = 0.55


class Prey:
    """The player of a level; asked again in each frame, since he may come late or be gone."""

    def __init__(self, creature: kaVel.Entity):
        self.level = creature.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.map = creature.getAncestorOfType(kaVel.Reflection.MapRootEntity)
        self.clock = LevelClock(creature)
        self._player: kaVel.Entity | None = None
        self._torch: kaVel.LightComponent | None = None

    @property
    def entity(self) -> kaVel.Entity | None:
        if not self._player:
            self._player = self.level.getChild('Player')
        return self._player

    @property
    def component(self) -> kaVel.PlayerComponent | None:
        """What keys and mouse make of him; None for a player who is only stood there."""
        return self.entity.getComponent('player') if self.entity else None

    @property
    def life(self) -> Life:
        return lifeOf(self.level)

    def place(self) -> kaVel.Vec4 | None:
        """Where he is; None where there is nobody, or he is dead."""
        transform = self.entity.getComponent('transform') if self.entity else None
        return None if not transform or self.life.isDead else transform.position

    def distance(self, place: kaVel.Vec4) -> float:
        """Metres over the ground; far off where there is nobody, or he is on another floor."""
        own = self.place()
        if own is None or abs(own.y - place.y) > 2.2:
            return 1e6
        return ((own.x - place.x) ** 2 + (own.z - place.z) ** 2) ** 0.5

    def torch(self) -> kaVel.LightComponent | None:
        """The light of the flashlight in his hand while it burns."""
        component = self.component
        if not component or not component.isFlashlightOn():
            return None
        if not self._torch:
            camera = self.entity.getChild('camera') if self.entity else None
            bulb = camera.getDescendantByPath('flashlight/flashlight') if camera else None
            self._torch = bulb.getComponent('graphics2') if bulb else None
        return self._torch

    def beamOn(self, place: kaVel.Vec4) -> float:
        """How much of the flashlight's beam falls on a place, 0 to 1; walls and things keep it off."""
        torch = self.torch()
        share = torch.shareAt(place) if torch else 0.0
        return share if torch and share > 0 and self.isFreeFrom(torch.place, place) else 0.0

    def shinesOn(self, place: kaVel.Vec4, reach: float) -> bool:
        """Whether his lamp burns within sight of a place."""
        torch = self.torch()
        return bool(torch) and (torch.place - place).magnitude() < reach and self.isFreeFrom(torch.place, place)

    def isFreeFrom(self, hand: kaVel.Vec4, place: kaVel.Vec4) -> bool:
        """Whether nothing stands between his hand and a place; he does not stand in his own way."""
        way = place - hand
        length = way.magnitude()
        return length < BODY or kaVel.Reflection.isLineFree(self.map, hand + way * (BODY / length), place)

    def frighten(self, amount: float, cause: str):
        """Gives him a fright: 5 is a start, 15 a fright, 30 a blow."""
        nerves = nervesOf(self.level)
        if nerves:
            nerves.frighten(amount, cause)
        else:
            self.wear(amount)

    def wear(self, amount: float):
        """Takes so many percent of his mind."""
        component = self.component
        if component:
            component.audioSanity = max(component.audioSanity - amount, 0.0)

    def touched(self, amount: float, cause: words.Told):
        """Takes so much of his life."""
        self.life.hurt(amount, cause)
