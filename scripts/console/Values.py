"""Objects by path, and values of properties as they are typed."""

from __future__ import annotations

import ast
from typing import Any

import kaVel
from console.Session import Session, Wrong
from objects.Placing import turned

#: Words that stand for true and false.
SWITCHES = {'on': True, 'true': True, 'yes': True, '1': True, 'off': False, 'false': False, 'no': False, '0': False}


def systems() -> kaVel.Object:
    """The object below which all systems stand."""
    return kaVel.getSystem('GameLoopSystem').parent


def beginning(session: Session, path: str) -> tuple[Any, str, str]:
    """Where a path begins, the text that says so, and the rest of it."""
    for prefix, root in (('c:/', session.level), ('s:/', systems())):
        if path.startswith(prefix):
            return root, prefix, path[len(prefix):]
    start = session.start()
    first = path.partition('/')[0]
    if first not in ('', '.', '..') and first not in start.children:
        for root in (session.level, systems()):
            if first in root.children:
                return root, '', path
    return start, '', path


def resolve(session: Session, path: str) -> Any:
    """The object at a path; Wrong names the step that is missing.

    One without a prefix begins at the selected object or the level, or else at the systems.
    """
    at, walked, rest = beginning(session, path)
    for step in rest.split('/') if rest else ():
        found = at.getChild(step)
        if not found:
            raise Wrong('%s has no child %r%s' % (walked.rstrip('/') or kaVel.pathOf(at), step,
                                                  kaVel.nearestHint(step, childNames(at))))
        at, walked = found, walked + step + '/'
    return at


def childNames(parent: Any) -> list[str]:
    return [child.getName() for child in parent.children]


def split(text: str) -> tuple[str, str]:
    """Path and member of 'lamp/graphics2.alpha'; the member is empty where none is named."""
    folder, slash, last = text.rpartition('/')
    dot = last.find('.', 1)
    if dot < 0:
        return text, ''
    return folder + slash + last[:dot], last[dot + 1:]


def properties(handle: Any) -> dict[str, str]:
    """The properties that can be read of an object, with their comments."""
    return _reflected(handle, 'reflected_property')


def methods(handle: Any) -> dict[str, str]:
    """The methods of an object, with their comments."""
    return _reflected(handle, 'reflected_function')


def _reflected(handle: Any, kind: str) -> dict[str, str]:
    """The members of a kind, with their comments: own ones before those of its base classes."""
    found: dict[str, str] = {}
    for each in type(handle).__mro__:
        for name, member in sorted(vars(each).items()):
            if type(member).__name__ == kind:
                found.setdefault(name, member.__doc__ or '')
    return found


def member(session: Session, text: str) -> tuple[Any, str]:
    """The object and the property that 'path.property' means."""
    path, name = split(text)
    if not path:
        raise Wrong('name an object and a property, as in Player/transform.position')
    handle = resolve(session, path)
    if name and not hasattr(handle, name):
        raise Wrong('%s (%s) has no property %r%s' % (path, classOf(handle), name,
                                                      kaVel.nearestHint(name, properties(handle))))
    return handle, name


def classOf(handle: Any) -> str:
    return handle._getType().name


def show(value: Any) -> str:
    """A value as the console shows it."""
    if isinstance(value, float):
        return '%.6g' % value
    if isinstance(value, kaVel.Vec4):
        return '(%.6g, %.6g, %.6g, %.6g)' % (value.x, value.y, value.z, value.w)
    if isinstance(value, kaVel.Quaternion):
        return '(%.6g, %.6g, %.6g, %.6g)' % (value.r, value.i, value.j, value.k)
    if isinstance(value, kaVel.Handle):
        return '%s (%s)' % (kaVel.pathOf(value), classOf(value)) if value else 'nothing'  # type: ignore
    return repr(value) if isinstance(value, str) else str(value)


def read(session: Session, text: str, present: Any) -> Any:
    """The value that a text means for a property whose present value is known; Wrong says what may stand there."""
    if isinstance(present, bool):
        if text.lower() not in SWITCHES:
            raise Wrong('%r is not on or off' % text)
        return SWITCHES[text.lower()]
    if isinstance(present, str):
        return text
    if isinstance(present, kaVel.Vec4):
        numbers = _numbers(text, (1, 3, 4))
        if len(numbers) == 1:
            numbers *= 3
        return kaVel.Vec4(*numbers, present.w) if len(numbers) == 3 else kaVel.Vec4(*numbers)
    if isinstance(present, kaVel.Quaternion):
        numbers = _numbers(text, (1, 2, 3, 4))
        return kaVel.Quaternion(*numbers) if len(numbers) == 4 else turned(*numbers)
    if isinstance(present, (int, float)):
        try:
            return type(present)(text)
        except ValueError:
            return text  # perhaps a name of an enum, which the engine knows
    if isinstance(present, kaVel.Handle):
        return resolve(session, text)
    return literal(text)


def _numbers(text: str, counts: tuple[int, ...]) -> list[float]:
    try:
        numbers = [float(part) for part in text.strip('()').replace(',', ' ').split()]
    except ValueError as error:
        raise Wrong(str(error)) from None
    if len(numbers) not in counts:
        raise Wrong('%r has %d numbers, where %s are wanted' % (text, len(numbers), ' or '.join(map(str, counts))))
    return numbers


def literal(text: str) -> Any:
    """A text as a number, a list and the like, or as it stands."""
    try:
        return ast.literal_eval(text)
    except (ValueError, SyntaxError):
        return text
