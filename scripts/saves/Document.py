"""What stands in a save: readable text with a version and a checksum, and what is wrong with one that is not so.

    Mornal save, version 2
    sha256 6f1e...

    { ... }

The checksum is that of all that follows its line. What follows is JSON: `level`, `place` (a key of the tables of
words), `made` (UTC), `played` (seconds), `why`, `stand` (feet, turn and pitch), `calls` (what has become of the objects
of all levels), `objects` (properties by path), `parts` (what is no property, by name) and `mods` (versions by name).
"""

from __future__ import annotations

import hashlib
import json
import math
import re
from typing import Any, Callable

from saves import Migrations

Document = dict[str, Any]

VERSION = 4
#: Metres and degrees beyond which nobody stands and looks.
FARTHEST = 1e5

_HEAD = re.compile(rb'Mornal save, version ([0-9]{1,9})\nsha256 ([0-9a-f]{64})\n')

#: Numbers of a list, a line each.
_NUMBERS = re.compile(r'\[\n([-+0-9.eE,\s]*)\n *\]')


class Fault(Exception):
    """What is wrong with a save: the key of a sentence, and its values."""

    def __init__(self, key: str, **values: object):
        super().__init__(key, values)
        self.key, self.values = key, values


def write(document: Document) -> bytes:
    """The text of a document; Fault where something in it is no finite number."""
    _checkNumbers(document, '')
    text = json.dumps(document, ensure_ascii=False, indent=1, allow_nan=False)
    return sealed(VERSION, _NUMBERS.sub(lambda rows: '[%s]' % ' '.join(rows[1].split()), text) + '\n')


def sealed(version: int, body: str) -> bytes:
    """A text with the head that its version and its content ask for."""
    content = b'\n' + body.encode('utf-8')
    return b'Mornal save, version %d\nsha256 %s\n' % (version, hashlib.sha256(content).hexdigest().encode()) + content


def read(text: bytes) -> Document:
    """The document of a text, brought to the present version; Fault where it is none."""
    version, body = opened(text)
    try:
        document = Migrations.migrate(body, version, VERSION)
    except (KeyError, TypeError, ValueError, AttributeError) as error:
        raise Fault('saves.fault.migration', version=version, cause=error) from None
    check(document)
    return document


def opened(text: bytes) -> tuple[int, Document]:
    """Version and content of a text as it stands there; Fault where it is damaged or from the future."""
    if not text:
        raise Fault('saves.fault.empty')
    head = _HEAD.match(text)
    if not head:
        raise Fault('saves.fault.none')
    version = int(head[1])
    if version > VERSION:
        raise Fault('saves.fault.future', version=version, known=VERSION)
    content = text[head.end():]
    if hashlib.sha256(content).hexdigest().encode() != head[2]:
        raise Fault('saves.fault.checksum')
    if version < 1:
        raise Fault('saves.fault.none')
    try:
        body = json.loads(content.decode('utf-8'), parse_constant=_refuseConstant)
    except (ValueError, RecursionError):
        raise Fault('saves.fault.text') from None
    if not isinstance(body, dict):
        raise Fault('saves.fault.text')
    _checkNumbers(body, '')
    return version, body


def _refuseConstant(constant: str):
    raise Fault('saves.fault.number', where=constant)


def _checkNumbers(value: Any, where: str):
    if isinstance(value, float) and not math.isfinite(value):
        raise Fault('saves.fault.number', where=where)
    inner = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for name, each in inner:
        _checkNumbers(each, '%s/%s' % (where, name) if where else str(name))


# What stands where

def _isText(value: Any) -> bool:
    return isinstance(value, str)


def isNumber(value: Any) -> bool:
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def _isStanding(value: Any) -> bool:
    if value is None:
        return True
    at = value.get('at') if isinstance(value, dict) else None
    return (isinstance(at, list) and len(at) == 3
            and all(isNumber(each) and abs(each) < FARTHEST for each in [*at, value.get('turn'), value.get('pitch')]))


def _areCalls(value: Any) -> bool:
    return isinstance(value, dict) and all(
        isinstance(calls, list) and all(isinstance(call, list) and 1 <= len(call) <= 3 and isinstance(call[0], str)
                                        for call in calls) for calls in value.values())


def _areObjects(value: Any) -> bool:
    return isinstance(value, dict) and all(isinstance(each, dict) for each in value.values())


_FIELDS: dict[str, Callable[[Any], bool]] = {
    'level': _isText, 'place': _isText, 'made': _isText, 'why': _isText,
    'played': lambda value: isNumber(value) and value >= 0,
    'mods': lambda value: isinstance(value, dict) and all(map(_isText, value.values())),
    'stand': _isStanding, 'calls': _areCalls, 'objects': _areObjects,
    'parts': lambda value: isinstance(value, dict)}


def check(document: Document):
    """Fault that names the first field that is missing or is something else."""
    for name, isRight in _FIELDS.items():
        if not isRight(document.get(name)):
            raise Fault('saves.fault.field', where=name)
