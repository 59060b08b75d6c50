"""Whether a game can be saved just now: at once, as soon as the moment has passed, or not at all.

| the player | a save |
|---|---|
| walks, stands, reads, hides, is hunted, while the level runs or is paused | at once |
| falls; a scene has his hands, or the picture is not there yet | is put off until he stands and has them |
| is dead | is refused, with a sentence; but of one who leaves then, what he did so far is kept |
| the level has ended; nobody walks in it; another level is on its way | is refused, with a sentence |

What he held, read or led stands as it did before he took it, and he has his hands free.

Where he comes back to: where he stands; but where he was last safe, if he is dead or hunted, or crouches below
something that he could not stand under.
"""

from __future__ import annotations

import math
from typing import Any, Callable, NamedTuple

import kaVel
import standing
from perLevel import PerLevel, levelOf

#: How much of the picture may be dissolved in a moment that counts as seen.
FAINT = 0.05
#: Metres: how high one who stands reaches, from his feet, and half of how broad he is.
HEAD, KNEES, HALF = 1.75, 0.3, 0.24


class Verdict(NamedTuple):
    """What becomes of a save: `when` is 'now', 'later', 'leaving' (by whoever leaves, nobody else) or 'never'.

    `why` is the key of the sentence that tells.
    """

    when: str
    why: str = ''


#: Where feet stand, metres.
Feet = tuple[float, float, float]

NOW = Verdict('now')

_forbidden: PerLevel[Verdict] = PerLevel()
_shelters: PerLevel[Callable[[], standing.Standing]] = PerLevel()
_hunters: PerLevel[list[Callable[[], object]]] = PerLevel()
_places: PerLevel[Callable[[Feet], str]] = PerLevel()


# What a level says of itself

def forbid(inLevel: kaVel.Object, why: str, mayLeave: bool = False):
    """Has no save made in a level until `allow`, but for one who may leave it; `why` is the key of what tells why."""
    _forbidden[levelOf(inLevel)] = Verdict('leaving' if mayLeave else 'never', why)


def allow(inLevel: kaVel.Object):
    _forbidden.pop(levelOf(inLevel), None)


def shelter(inLevel: kaVel.Object, where: Callable[[], standing.Standing]):
    """Says where the player of a level was last safe."""
    _shelters[levelOf(inLevel)] = where


def hunts(inLevel: kaVel.Object, isHunting: Callable[[], object]):
    """Says of somebody in a level how to ask whether he is after the player."""
    level = levelOf(inLevel)
    _hunters[level] = [*_hunters.get(level, []), isHunting]


def namePlaces(inLevel: kaVel.Object, name: Callable[[Feet], str]):
    """Says what the places of a level are called: the key of the name of where feet stand."""
    _places[levelOf(inLevel)] = name


# What is asked

def verdict(level: Any) -> Verdict:
    """Whether the game of a level can be saved in this moment."""
    player = level.getChild('Player') if level and not level.isDying() else None
    viewer = standing.viewerIn(level) if player else None
    if not player or viewer is None:
        return Verdict('never', 'saves.no.nobody')
    body, mind = player.getComponent('physics'), player.getComponent('player')
    if not body or not mind or not math.isfinite(sum(viewer.standing()[0])):
        return Verdict('never', 'saves.no.nobody')
    if level in _forbidden:
        return _forbidden[level]
    if body.dead:
        return Verdict('never', 'saves.no.dead')
    if body.opening or level.getManager('graphics2').dissolveAmount > FAINT:
        return Verdict('later', 'saves.later.scene')
    if not mind.useInput and not _isReading(player):
        return Verdict('later', 'saves.later.scene')
    if body.surefooted and not body.isOnGround():
        return Verdict('later', 'saves.later.falling')
    return NOW


def _isReading(player: kaVel.Entity) -> bool:
    from objects.player.Hands import handsOf
    hands = handsOf(player)
    return bool(hands and hands.isReading())


def isHunted(level: kaVel.Coordinator) -> bool:
    return any(isHunting() for isHunting in _hunters.get(level, []))


def placeToStand(level: kaVel.Coordinator, isAwkward: bool = False) -> standing.Standing | None:
    """Where the player is to stand when the save is loaded."""
    safe = _shelters.get(level)
    if safe and (isAwkward or isHunted(level) or _isBelowSomething(level)):
        return safe()
    return standing.of(level)


def placeName(level: kaVel.Coordinator, stand: standing.Standing | None = None, isSafePlace: bool = False) -> str:
    """The key of the name of a place: where the player is, or the safe one that he has just come to; empty for none."""
    name, safe = _places.get(level), _shelters.get(level)
    where = safe() if isSafePlace and safe else stand or standing.of(level)
    return name(where[0]) if name and where else ''


def _isBelowSomething(level: kaVel.Coordinator) -> bool:
    """Whether one who crouches has something above him."""
    player, where = level.getChild('Player'), standing.of(level)
    hasMap = any(child._getType().isSubclassOf(kaVel.Reflection.MapRootEntity) for child in level.children)
    if not where or not hasMap or not player.getComponent('player').isCrouched():
        return False
    x, y, z = where[0]
    map = level.findMap(kaVel.Vec4(x, y, z, 1))
    return any(not kaVel.Reflection.isLineFree(map, kaVel.Vec4(x + right, y + KNEES, z + ahead, 1),
                                               kaVel.Vec4(x + right, y + HEAD, z + ahead, 1))
               for right, ahead in ((0, 0), (-HALF, -HALF), (HALF, -HALF), (-HALF, HALF), (HALF, HALF)))
