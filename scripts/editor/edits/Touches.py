"""What a level does to a piece behind the back of its pattern, so that it is done again when the piece is built anew.

`Joinery` has its panels shed no shadow, `makeSolid` gives furniture blocks: nothing of that stands in the call. What is
told of it here are texts and switches of the piece's objects and the sizes of its volumes, which nothing changes while
a level runs but its scripts.
"""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any

import kaVel
from editor.edits import Address

if TYPE_CHECKING:
    from editor.source.Pieces import Piece

#: Address below the root, property and value.
Touch = tuple[tuple[Address.Step, ...], str, Any]

#: Properties that are no mark of a script's: who is seen from where is found anew in each frame.
_PASSING = frozenset(('name', 'visible', 'active', 'playing', 'mapName'))
#: Classes whose numbers nothing changes either while a level runs.
_STEADY = frozenset(('BoundingVolume',))

#: Classes of components by which scripts have an object do something.
_GIVEN = frozenset(('ScriptComponent', 'SoundComponent'))

_names: dict[type, list[str]] = {}


def find(piece: Piece, root: Any = None, parent: Any = None):
    """Finds what the level has done to a piece, once, by having its pattern build another one for comparison.

    `root` and `parent` are those that the piece had, where it was taken out of the level.
    """
    if piece.touches is not None or piece.source is None or piece.stand.isKept:
        return
    piece.touches = []
    root, parent = root or piece.root, parent or piece.parent
    made, before = None, parent.childCount
    try:
        made = piece.pattern(parent, **piece.given, **({'name': piece.name} if piece.takesName else {}))
        pairs = _pairs(root, made)
        piece.touches = _differences(pairs)
        piece.stand.isKept = _hasMore(pairs)
    except Exception:
        pass  # it will fail in the same way when it is built, and be told then
    for child in (made,) if made and parent.childCount == before + 1 else list(parent.children)[before:]:
        child.setName('.gone')
        child.murder()


#: Steps down from the roots of two objects that the same pattern has built, and what stands there below each.
Pair = tuple[tuple[Address.Step, ...], Any, Any]


def _pairs(old: Any, new: Any) -> list[Pair]:
    """All that stands below two objects at the same place of their trees, parents before children."""
    found: list[Pair] = [((), old, new)]
    for steps, one, other in found:
        ones = _byStep(one)
        found += [((*steps, step), ones[step], child) for step, child in _byStep(other).items() if step in ones]
    return found


def _byStep(parent: Any) -> dict[Address.Step, Any]:
    counts: dict[str, int] = {}
    found: dict[Address.Step, Any] = {}
    for child in parent.children:
        if not child.isDying():
            name = Address.nameOf(child)
            found[name, counts.get(name, 0)] = child
            counts[name] = counts.get(name, 0) + 1
    return found


def _differences(pairs: list[Pair]) -> list[Touch]:
    found: list[Touch] = []
    for steps, present, made in pairs:
        if type(present) is type(made):
            values = [(name, getattr(present, name), getattr(made, name)) for name in _marks(made)]
            found += [(steps, name, value) for name, value, before in values if value != before]
    return found


def _hasMore(pairs: list[Pair]) -> bool:
    """Whether a script of the level has given something to a part of a piece, and may hold on to it."""
    for _, present, made in pairs:
        if present.childCount and any(each._getType().name in _GIVEN and not made.getChild(each.getName())
                                      for each in present.children):
            kaVel.log('%s is held by a script of the level: what has changed of it, but for its place, shows when the '
                      'level is loaded' % pairs[0][1].getName())
            return True
    return False


def _marks(handle: Any) -> list[str]:
    """The properties of an object's class that a script alone sets, and can set."""
    kind = type(handle)
    if kind not in _names:
        names = {name for each in kind.__mro__ for name, member in vars(each).items()
                 if type(member).__name__ == 'reflected_property' and name not in _PASSING
                 and hasattr(handle, 'set' + name[:1].upper() + name[1:])}
        isSteady = handle._getType().name in _STEADY
        _names[kind] = sorted(name for name in names if _isMark(handle, name, isSteady))
    return _names[kind]


def _isMark(handle: Any, name: str, isSteady: bool) -> bool:
    try:
        return isinstance(getattr(handle, name), (bool, str, float, kaVel.Vec4) if isSteady else (bool, str))
    except Exception:
        return False


def again(piece: Piece, root: Any):
    """Does to a piece that was just built what the level had done to the one before."""
    for steps, name, value in piece.touches or ():
        handle = Address.follow(root, steps)
        if handle:
            setattr(handle, name, value)
    if piece.stand.isFenced:
        importlib.import_module('objects.things.Bodies').makeSolid(root)
