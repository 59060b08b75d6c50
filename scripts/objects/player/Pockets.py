"""What the player carries: keys, notes, and a few bolts.

    pockets = pocketsOf(coordinator)
    if pockets.has('cellarKey'):
        ...

Everything in them is an entity below the player's child 'pockets', named as what it is, so that the tree shows it. They
go with the player from level to level, and into saves. The taking itself is repeated when the thing's map is loaded
again, see `taken`.
"""

from __future__ import annotations

from typing import Any, Callable, NamedTuple

import kaVel
import words
from objects.screen.Notice import Notice
from objects.sound.Sounds import sounds
from perLevel import PerLevel
from saves.Kept import keepPart

TELLS = 2.0  # seconds that a line stays before it fades


class Page(NamedTuple):
    """What a note says."""

    title: words.Told
    text: words.Told


class Pockets:
    """What the player of one level carries; there are pockets before there is a player, and they become his."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.things: dict[str, int] = {}  # how many of each
        self.labels: dict[str, words.Told] = {}
        self.pages: dict[str, Page] = {}
        self.entity: kaVel.Entity | None = None
        self.notice: Notice | None = None
        keepPart(level, 'pockets', self.told, self.become, travels=True)

    def told(self) -> dict[str, Any]:
        """What there is, for `become`."""
        return {'things': self.things, 'labels': {name: words.kept(label) for name, label in self.labels.items()},
                'pages': {name: [words.kept(part) for part in page] for name, page in self.pages.items()}}

    def become(self, told: dict[str, Any]):
        """Has in them what other ones have told, and nothing else."""
        for name in self.names():
            while self.take(name):
                pass
        for name, count in told['things'].items():
            for _ in range(int(count)):
                self.add(name)
        self.labels = {name: words.ofKept(label) for name, label in told['labels'].items()}
        self.pages = {name: Page(*map(words.ofKept, page)) for name, page in told['pages'].items()}

    def has(self, name: str) -> bool:
        return name in self.things

    def count(self, name: str) -> int:
        """How many of a thing there are."""
        return self.things.get(name, 0)

    def names(self) -> list[str]:
        """What there is, in the order in which it came."""
        return list(self.things)

    def label(self, name: str) -> words.Told:
        """What a thing is called, as the player reads it."""
        return self.labels.get(name) or name

    def add(self, name: str, label: words.Told = '', page: Page | None = None):
        """Puts a thing in; a second one of a name is counted."""
        self.things[name] = self.count(name) + 1
        if label:
            self.labels[name] = label
        if page:
            self.pages[name] = page
        self._show(name, self.things[name])

    def take(self, name: str) -> bool:
        """Takes one out; whether there was one."""
        if not self.has(name):
            return False
        self._hide(name, self.things[name])
        self.things[name] -= 1
        if not self.things[name]:
            del self.things[name]
        return True

    def giveTo(self, player: kaVel.Entity):
        """Makes these the pockets of a player who has just been built."""
        self.entity = kaVel.make('Entity', parent=player, name='pockets')
        self.notice = Notice(self.level, 'pocketNotice', stays=TELLS)
        for name, count in self.things.items():
            for number in range(1, count + 1):
                self._show(name, number)

    def tell(self, text: words.Told):
        """Shows the player a short line."""
        if self.notice:
            self.notice.show(text)

    def _show(self, name: str, number: int):
        if self.entity:
            kaVel.make('Entity', parent=self.entity, name=_entityName(name, number))

    def _hide(self, name: str, number: int):
        thing = self.entity.getChild(_entityName(name, number)) if self.entity else None
        if thing:
            thing.murder()


def _entityName(name: str, number: int):
    return name if number == 1 else '%s%d' % (name, number)


_pockets: PerLevel[Pockets] = PerLevel()


def pocketsOf(inLevel: kaVel.Object) -> Pockets:
    """The pockets of the player of a level, which is told by its coordinator or any object in it."""
    isLevel = inLevel._getType().isSubclassOf(kaVel.Reflection.Coordinator)
    level: Any = inLevel if isLevel else inLevel.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _pockets:
        _pockets[level] = Pockets(level)
    return _pockets[level]


def pockets(player: kaVel.Entity) -> Pockets:
    """Gives a player his pockets; a second player of a level has none of his own."""
    own = pocketsOf(player)
    if not own.entity:
        own.giveTo(player)
    return own


def taken(thing: kaVel.Entity, volume: kaVel.BoundingVolume, put: Callable[[Pockets], object],
          then: Callable[[], object] = lambda: None, sound: str = '', isKept: bool = True):
    """Has the use of a thing's volume put something into the pockets and end the thing, for good.

    When the map is loaded again the taking is repeated, without `then` and the sound, which are what the player notices
    of it. Not so for what the map does not build, which `isKept` tells; a thing without a name of its own comes back.
    """

    def take(player: kaVel.AnyObject):
        pockets = pocketsOf(thing)
        put(pockets)
        if player:  # nobody, where the taking is repeated
            if isKept:
                kaVel.persist(volume, 'interactWithPlayer', kaVel.Handle())
            then()
            _play(player.parent, sound)
        thing.murder()

    volume.setInteractFunc(take)


def _play(player: kaVel.Entity, sound: str):
    """What is taken is heard from the player, since it is gone itself."""
    voice = player.getComponent('sound') if sound else None
    if voice:
        sounds(player, sound).playSoundEffect(sound)
