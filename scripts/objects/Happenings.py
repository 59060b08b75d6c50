"""What happens in a level without code of its own: deeds, for places that are entered and things that are used.

    place.TriggerArea(house, 'onStairs', at=(2, 0, 3), size=(1.5, 1), do=[
        ('show', 'Somebody is walking overhead.'), ('wait', 2.0), ('unlock', 'cellarDoor'), ('start', 'warden')])

A deed is a word and what it is done with; `DEEDS` has all of them. Things are told by their names, or by a path such as
'house/walls/cellarDoor' where a name stands for more than one. What is not there is told in the log when the level has
been built. What lasts, as a door that was unlocked, is done again when a level is loaded in which it had happened.
"""

from __future__ import annotations

import functools
from typing import Any, Callable, NamedTuple, Sequence

import kaVel
import saves
import words
from objects import Sequences
from objects.creatures import Guest
from objects.Placing import Triple, addVolume, placed
from objects.player.Hands import handsOf
from objects.player.Pockets import Page, pocketsOf
from objects.player.Pointing import Pointer
from objects.player.Safety import Safety
from objects.player.Visitor import visitorOf
from objects.screen.Marks import marked
from objects.screen.Notice import Notice
from objects.sound.Music import Music
from objects.sound.Sounds import sounds
from objects.things.Switches import ButtonOnPost
from objects.Triggers import Trigger
from perLevel import PerLevel, levelOf
from saves import Moments

#: A word of `DEEDS` and what it is done with.
Deed = Sequence[Any]

FADE = 1.5  # seconds that the picture takes to go before another level


def told(text: str) -> words.Told:
    """A text as a level has it: the one of a key of `scripts/words`, or itself."""
    return words.said(text) if words.has(text) else text


# -- things by their names

_index: PerLevel[dict[str, kaVel.AnyEntity]] = PerLevel()


def named(level: kaVel.Coordinator, name: str) -> kaVel.AnyEntity | None:
    """The first thing of a level of a name, or the one at a path below its maps; None for none."""
    found = _index.get(level, {}).get(name)
    if found and not found.isDying() and levelOf(found) == level:
        return found
    _index[level] = index = {}
    for each in kaVel.descendants(level):
        if each._getType().isSubclassOf(kaVel.Reflection.Entity) and not each.isDying():
            index.setdefault(each.name, each)
            index.setdefault(kaVel.pathOf(each).split('/', 1)[-1], each)
    return index.get(name)


def _namesIn(level: kaVel.Coordinator) -> list[str]:
    return [name for name in _index.get(level, {}) if '/' not in name]


# -- deeds

class _Stage(NamedTuple):
    """Where deeds are done."""

    level: kaVel.Coordinator
    place: kaVel.Entity  # what they happen at

    def thing(self, name: str) -> Any:
        return named(self.level, name)

    def component(self, name: str, key: str) -> Any:
        thing = self.thing(name)
        return thing.getComponent(key) if thing else None


def _show(stage: _Stage, text: str):
    noticeOf(stage.level).show(told(text))


def _note(stage: _Stage, title: str, text: str):
    hands = handsOf(stage.place)
    if hands:
        hands.read(Page(told(title), told(text)))


def _lock(stage: _Stage, name: str, locked: bool):
    door = stage.component(name, 'physics')
    if door:
        door.locked = locked
        kaVel.persist(door, 'setLocked', locked)


def _open(stage: _Stage, name: str):
    door, player = stage.component(name, 'physics'), stage.level.getChild('Player')
    if door and player and not door.open:
        if door.locked:
            _lock(stage, name, False)
        door.interact(player.getComponent('player'))


def _close(stage: _Stage, name: str):
    door, player = stage.component(name, 'physics'), stage.level.getChild('Player')
    if door and player and door.open:
        door.interact(player.getComponent('player'))


def _shine(stage: _Stage, name: str, shines: bool | None):
    """Switches all lights of a thing; None for the other way round."""
    thing = stage.thing(name)
    for each in kaVel.descendants(thing) if thing else ():
        if each._getType().isSubclassOf(kaVel.Reflection.LightComponent):
            light: Any = each
            light.visible = not light.visible if shines is None else shines
            kaVel.persist(light, 'setVisible', light.visible)


def _start(stage: _Stage, name: str):
    thing = stage.thing(name)
    if thing:
        startOf(thing)(True)


def _stop(stage: _Stage, name: str):
    thing = stage.thing(name)
    if thing:
        startOf(thing)(False)


def _play(stage: _Stage, event: str, at: str = ''):
    source = stage.thing(at) if at else stage.place
    if source:
        sounds(source, event).playSoundEffect(event)


def _goTo(stage: _Stage, levelName: str):
    Moments.forbid(stage.level, 'saves.no.over')
    kaVel.interpolate(stage.level.getManager('graphics2'), 'dissolveAmount', 1.0, FADE)
    Sequences.play(stage.level, FADE, lambda: kaVel.getSystem('GameLoopSystem').queueLoadLevel(levelName))


def _save(stage: _Stage):
    safety, visitor = safetyOf(stage.level), visitorOf(stage.level)
    at, turn, _ = visitor.standing()
    if safety:
        safety.stand = at, turn
    saves.atSafePlace()


class Kind(NamedTuple):
    """A deed: what does it, what it is done with, in words, whether that is a thing of the level, and if it lasts."""

    act: Callable[..., object]
    takes: tuple[str, ...]
    isThing: bool = False
    lasts: bool = False


#: All deeds by their words.
DEEDS: dict[str, Kind] = {
    'show': Kind(_show, ('a text',)),
    'note': Kind(_note, ('a title', 'a text')),
    'wait': Kind(lambda stage, seconds: None, ('seconds',)),
    'open': Kind(_open, ('a door',), True, True),
    'close': Kind(_close, ('a door',), True, True),
    'lock': Kind(functools.partial(_lock, locked=True), ('a door',), True, True),
    'unlock': Kind(functools.partial(_lock, locked=False), ('a door',), True, True),
    'light': Kind(functools.partial(_shine, shines=True), ('a lamp',), True, True),
    'darken': Kind(functools.partial(_shine, shines=False), ('a lamp',), True, True),
    'switch': Kind(functools.partial(_shine, shines=None), ('a lamp',), True),
    'start': Kind(_start, ('a creature or spawner',), True, True),
    'stop': Kind(_stop, ('a creature or spawner',), True, True),
    'play': Kind(_play, ('a sound event', 'a thing that it comes from, or nothing')),
    'level': Kind(_goTo, ('a level',)),
    'save': Kind(_save, ()),
}


class Deeds:
    """A list of deeds that a place or a thing does; ValueError that names the wrong one when it is made."""

    def __init__(self, owner: kaVel.Entity, deeds: Sequence[Deed]):
        self.owner = owner
        self.deeds = [self._checked(number, deed) for number, deed in enumerate(deeds)]
        kaVel.addComponent(owner, 'form', 'ScriptComponent', loadCallback=self._look)

    @staticmethod
    def _checked(number: int, deed: Deed) -> tuple[str, tuple[Any, ...]]:
        whole: tuple[Any, ...] = (deed,) if isinstance(deed, str) else tuple(deed)
        word, given = (whole[0] if whole else ''), whole[1:]
        if word not in DEEDS:
            raise ValueError('do[%d] is %r: it begins with one of the words %s%s'
                             % (number, deed, ', '.join(DEEDS), kaVel.nearestHint(str(word), DEEDS)))
        takes = DEEDS[word].takes
        if not (len(takes) - (word == 'play') <= len(given) <= len(takes)):
            raise ValueError('do[%d], %r, is done with %s; give it as (%s)'
                             % (number, deed, ' and '.join(takes) or 'nothing more',
                                ', '.join([repr(word), *('...' for _ in takes)])))
        if word == 'wait' and not (isinstance(given[0], (int, float)) and 0 <= given[0] <= 3600):
            raise ValueError('do[%d] waits for %r: give it seconds, 0 to 3600' % (number, given[0]))
        wrong = [each for each in given if not isinstance(each, str)] if word != 'wait' else []
        if wrong:
            raise ValueError('do[%d], %r, has %r where a name or a text is wanted' % (number, deed, wrong[0]))
        return word, given

    def _look(self):
        """Tells of things that the level has not."""
        import loader
        level = levelOf(self.owner)
        for word, given in self.deeds:
            if DEEDS[word].isThing and not named(level, given[0]):
                kaVel.log('Warning: %s does %r to %r, and nothing in the level has that name%s'
                          % (kaVel.pathOf(self.owner), word, given[0], kaVel.nearestHint(given[0], _namesIn(level))))
            if word == 'level' and not loader.hasLevel(given[0]):
                kaVel.log('Warning: %s goes to the level %r, and there is none%s'
                          % (kaVel.pathOf(self.owner), given[0], kaVel.nearestHint(given[0], loader.levelNames())))

    def do(self):
        """Does all of them, one after another; waits pass on the level's clock."""
        stage = _Stage(levelOf(self.owner), self.owner)
        Sequences.play(self.owner, *(given[0] if word == 'wait' else self._step(stage, word, given)
                                     for word, given in self.deeds))

    def last(self):
        """Does what lasts of them, as after a load of the level."""
        stage = _Stage(levelOf(self.owner), self.owner)
        for word, given in self.deeds:
            if DEEDS[word].lasts:
                DEEDS[word].act(stage, *given)

    @staticmethod
    def _step(stage: _Stage, word: str, given: tuple[Any, ...]) -> Callable[[], object]:
        return lambda: DEEDS[word].act(stage, *given) if stage.place else None


# -- what a level has one of

_notices: PerLevel[Notice] = PerLevel()
_pointers: PerLevel[Pointer] = PerLevel()
_safeties: PerLevel[Safety] = PerLevel()


def noticeOf(level: kaVel.Coordinator) -> Notice:
    """The line of text that a level's happenings show, made when it is first wanted."""
    if level not in _notices:
        _notices[level] = notice = Notice(level, 'happening')
        kaVel.finishLoad(notice.graphics.parent)
        kaVel.finishLoad(notice.shade.parent)
    return _notices[level]


def safetyOf(level: kaVel.Coordinator) -> Safety | None:
    """What has the player of a level come back after a death; None before there is a player."""
    player = level.getChild('Player')
    if level not in _safeties and player:
        _safeties[level] = Safety(level, player, Music(level))
    return _safeties.get(level)


def pointerOf(level: kaVel.Coordinator) -> Pointer | None:
    """What tells the names of things that are pointed at; None before there is a player."""
    if level not in _pointers and level.getChild('Player'):
        _pointers[level] = Pointer(visitorOf(level))
    return _pointers.get(level)


#: What can be started and stopped, besides what has a behaviour.
_startable: PerLevel[dict[kaVel.Entity, Callable[[bool], object]]] = PerLevel()


def startable(entity: kaVel.Entity, start: Callable[[bool], object]):
    """Says how an entity is started and stopped by deeds: by a function that is given which."""
    _startable.setdefault(levelOf(entity), {})[entity] = start


def startOf(entity: kaVel.AnyEntity) -> Callable[[bool], object]:
    """What starts, or stops, a creature."""
    known = _startable.get(levelOf(entity), {}).get(entity)
    return known or functools.partial(_rouse, entity)


def _rouse(entity: kaVel.AnyEntity, goes: bool):
    dummy, mind = entity.getComponent('dummy'), entity.getComponent('behaviors')
    if dummy and mind and 'Guest' in mind.behaviors:
        points = dummy.savedPoints if hasattr(dummy, 'savedPoints') else ()
        if not goes:
            Guest.dismiss(entity)
        elif points:
            Guest.bring(entity, (points[0].x, points[0].y - Guest.HEIGHT, points[0].z))
    elif mind:
        mind.activeBehavior = (mind.defaultBehavior or next(iter(mind.behaviors), '')) if goes else ''
        follower = entity.getComponent('pathFollower')
        if follower and not goes:
            follower.stop()


# -- patterns

@kaVel.pattern
def TriggerArea(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: tuple[float, float] = (1.5, 1.5),
                do: Sequence[Deed] = (), once: bool = True, needs: str = ''):
    """An area of the floor that does a list of things when the player comes onto it.

    `do` is a list of deeds, ('show', 'a text'), ('open', 'studyDoor'), ('start', 'warden') and so on: see
    `objects.Happenings`. It happens `once`, or at each entry; with `needs` only to who has that in his pockets.
    """
    _checkSize(size)
    deeds: list[Deeds] = []
    done: list[bool] = []

    def enter():
        if (needs and not pocketsOf(area).has(needs)) or (once and done):
            return
        done.append(True)
        deeds[0].do()

    area = Trigger(parent, name, at=at, size=size, enter=enter, once=once and not needs,
                   again=lambda: deeds[0].last())
    area.getComponent('boundingVolume').seeThrough = True  # what lies within is seen, and can be used
    deeds.append(Deeds(area, do))
    return area


def _checkSize(size: Sequence[float]):
    if not all(0.05 <= side <= 1000 for side in size):
        raise ValueError('size is %r: give metres, 0.05 to 1000 each' % (size,))


@kaVel.pattern
def UsePlace(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (0.4, 0.4, 0.4),
             label: str = '', hint: str = '', do: Sequence[Deed] = (), once: bool = False, needs: str = ''):
    """An invisible box around `at` that the player can use, and what it does then; lay it over what is to be used.

    `label` is what it is called on the screen while he points at it, `hint` what E does. `do` is as for `TriggerArea`.
    Who lacks what it `needs` is told so.
    """
    _checkSize(size)
    spot = placed(parent, name, at=at)
    volume = addVolume(spot, size, 'BV_NONE')
    deeds = Deeds(spot, do)
    _usable(spot, volume, deeds, once, needs)
    if label:
        named = placed(spot, 'label', at=at)
        kaVel.addComponent(named, 'form', 'ScriptComponent',
                           loadCallback=lambda: _label(spot, told(label), told(hint) if hint else None))
    return spot


def _label(spot: kaVel.Entity, label: words.Told, hint: words.Told | None):
    pointer = pointerOf(levelOf(spot))
    if pointer:
        pointer.name(spot, label, hint)


def _usable(spot: kaVel.Entity, volume: kaVel.BoundingVolume, deeds: Deeds, once: bool, needs: str):
    used: list[bool] = []

    def use(player: kaVel.Object):
        if needs and not pocketsOf(spot).has(needs):
            pocketsOf(spot).tell(words.said('keys.locked'))
        elif not (once and used):
            used.append(True)
            deeds.do()

    volume.setInteractFunc(use)
    marked(spot, 'use')


@kaVel.pattern
def ButtonThatDoes(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
                   do: Sequence[Deed] = (), once: bool = False, needs: str = ''):
    """A red button on a post that stands on `at`, and what happens when it is pressed."""
    post = ButtonOnPost(parent, name, at=at, turn=turn)
    block: Any = post.getChild('block')
    sounds(post, 'LampSwitch')
    deeds = Deeds(post, [('play', 'LampSwitch'), *do])
    _usable(block, block.getComponent('boundingVolume'), deeds, once, needs)
    return post


@kaVel.pattern
def SafePlace(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0),
              size: tuple[float, float] = (1.5, 1.5), turn: float = 0.0):
    """An area where the game is saved, and where who dies stands again, turned to `turn`."""
    _checkSize(size)
    spot = placed(parent, name, at=at)

    def reach(saved: bool):
        safety = safetyOf(levelOf(spot))
        if safety:
            safety.stand = at, turn
            if saved:
                saves.atSafePlace()

    area = Trigger(spot, 'area', at=at, size=size, enter=lambda: reach(True), again=lambda: reach(False))
    area.getComponent('boundingVolume').seeThrough = True
    kaVel.addComponent(spot, 'form', 'ScriptComponent', loadCallback=lambda: safetyOf(levelOf(spot)))
    return spot


@kaVel.pattern
def Exit(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: tuple[float, float] = (1.5, 1.5),
         level: str = 'Title', show: str = '', needs: str = ''):
    """An area that leads to another level: the picture goes, with a line to `show`, and the other one begins.

    With `needs` it leads only who has that in his pockets.
    """
    line: list[Deed] = [('show', show), ('wait', 2.0)] if show else []
    return TriggerArea(parent, name, at=at, size=size, do=[*line, ('level', level)], needs=needs)
