"""Where an object stands in a tree, in a way that outlives its handle: names, and which one of those that share one."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import kaVel

if TYPE_CHECKING:
    from editor.source.Pieces import LevelPieces

#: A child's name and how many of that name stand before it; an unnamed child's name is empty.
Step = tuple[str, int]
#: Number of the piece that an object belongs to, 0 for none, and the steps down from its root or from the level.
Address = tuple[int, tuple[Step, ...]]


def stepTo(child: Any) -> Step:
    """The step from an object's parent down to it."""
    name, before = nameOf(child), 0
    for each in child.parent.children:
        if each == child:
            break
        if nameOf(each) == name and not each.isDying():
            before += 1
    return name, before


def nameOf(entity: Any) -> str:
    """An object's name; empty for one that has none but that which the engine made up."""
    name = entity.getName()
    return '' if name.startswith('unnamed__') else name


def below(root: Any, entity: Any) -> tuple[Step, ...]:
    """The steps from an object down to another one below it."""
    steps: list[Step] = []
    while entity and entity != root:
        steps.append(stepTo(entity))
        entity = entity.parent
    return tuple(reversed(steps))


def follow(root: Any, steps: tuple[Step, ...]) -> Any:
    """The object at the end of some steps, or an invalid handle."""
    for name, number in steps:
        root = next((each for count, each in enumerate(_ofName(root, name)) if count == number), None)
        if not root:
            return kaVel.Handle()
    return root


def _ofName(root: Any, name: str):
    return (each for each in root.children if nameOf(each) == name and not each.isDying())


def of(pieces: LevelPieces, entity: Any) -> Address:
    """The address of an object of a level."""
    piece = pieces.pieceOf(entity)
    return (piece.number, below(piece.root, entity)) if piece else (0, below(pieces.level, entity))


def find(pieces: LevelPieces, address: Address) -> Any:
    """The object at an address, or an invalid handle."""
    number, steps = address
    if not number:
        return follow(pieces.level, steps)
    piece = pieces.number(number)
    return follow(piece.root, steps) if piece and piece.root else kaVel.Handle()


def show(steps: tuple[Step, ...]) -> str:
    """Steps as a path: 'study/letter#2/graphics2', the second further one of that name."""
    return '/'.join(name + ('#%d' % number if number or not name else '') for name, number in steps)


def read(path: str) -> tuple[Step, ...]:
    """The steps of a path that `show` wrote; ValueError for another text."""
    steps: list[Step] = []
    for part in path.split('/') if path else ():
        name, mark, number = part.rpartition('#')
        steps.append((name, int(number)) if mark and number.isdigit() else (part, 0))
    return tuple(steps)
