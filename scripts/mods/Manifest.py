"""The manifest of a mod, `mod.toml`: what it is called, what it needs, and whether it is data or a program.

    name = "lantern-cellar"          # small letters, digits and '-'
    version = "1.0"
    title = "The Lantern Cellar"
    description = "A cellar, and what hangs in it."
    licence = "CC-BY-4.0"
    kind = "data"                    # or "script", whose Python runs once the player has allowed it

    [needs]
    old-lamps = "1.2"                # that version or a later one; "==1.2" or ">=1.2, <2" say it otherwise
"""

from __future__ import annotations

import os
import re
from typing import NamedTuple

import kaVel
from mods.Tomls import Fault, Toml

FILE = 'mod.toml'
KINDS = ('data', 'script')
NAME = re.compile(r'[a-z0-9][a-z0-9-]{0,39}')

_VERSION = re.compile(r'[0-9]{1,6}(\.[0-9]{1,6}){0,3}')
_NEED = re.compile(r'(>=|<=|==|<|>|)\s*([0-9.]+)')
_LONGEST = {'title': 80, 'description': 600, 'licence': 80}
_WANTED = ('name', 'version', 'title', 'licence', 'kind')
_FIELDS = (*_WANTED, 'description', 'needs')


class Manifest(NamedTuple):
    """What a manifest says. `needs` are names of mods with what is asked of their versions."""

    name: str
    version: str
    title: str
    licence: str
    kind: str
    description: str
    needs: dict[str, str]


def read(folder: str) -> Manifest:
    """The manifest of the mod in a folder; Fault where it is missing, or says what cannot be meant."""
    toml = Toml(os.path.join(folder, FILE), '%s/%s' % (os.path.basename(folder), FILE))
    for key in toml.values:
        if key not in _FIELDS:
            raise toml.fault('there is no field %r%s' % (key, kaVel.nearestHint(key, _FIELDS)), key,
                             key if isinstance(toml.values[key], dict) else '')
    for key in _WANTED:
        if key not in toml.values:
            raise Fault(toml.shown, 0, 'the field %r is missing; it has to have: %s' % (key, ', '.join(_WANTED)))
    texts = {key: _text(toml, key) for key in (*_WANTED, 'description')}
    if not NAME.fullmatch(texts['name']):
        raise toml.fault('%r is no name: up to forty small letters, digits and "-"' % texts['name'], 'name')
    if not _VERSION.fullmatch(texts['version']):
        raise toml.fault('%r is no version: numbers with dots between them, as in "1.2"' % texts['version'], 'version')
    if texts['kind'] not in KINDS:
        raise toml.fault('%r is no kind; it is "data" or "script"' % texts['kind'], 'kind')
    return Manifest(needs=_needs(toml), **texts)


def _text(toml: Toml, key: str) -> str:
    value = toml.values.get(key, '')
    if not isinstance(value, str) or (not value.strip() and key in _WANTED):
        raise toml.fault('%r has to be a text' % key, key)
    if len(value) > _LONGEST.get(key, 40) or not value.replace('\n', '').isprintable():
        raise toml.fault('%r has to be a text of up to %d letters' % (key, _LONGEST.get(key, 40)), key)
    return value.strip()


def _needs(toml: Toml) -> dict[str, str]:
    needs = toml.values.get('needs', {})
    if not isinstance(needs, dict):
        raise toml.fault('"needs" has to be a table of names and versions', 'needs')
    for name, wanted in needs.items():
        if not NAME.fullmatch(name):
            raise toml.fault('%r is no name of a mod' % name, name, 'needs')
        if not isinstance(wanted, str) or not all(_NEED.fullmatch(part.strip()) and _VERSION.fullmatch(
                part.strip(' <>=')) for part in wanted.split(',')):
            raise toml.fault('%r needs a version, as "1.2" or ">=1.2, <2"' % name, name, 'needs')
    return needs


def satisfies(version: str, wanted: str) -> bool:
    """Whether a version is one that is asked for, as by "1.2" (that or later), "==1.2" or ">=1.2, <2"."""
    have = _numbers(version)
    for part in wanted.split(','):
        found = _NEED.fullmatch(part.strip())
        assert found
        asked = _numbers(found[2])
        if not {'': have >= asked, '>=': have >= asked, '<=': have <= asked, '==': have == asked, '<': have < asked,
                '>': have > asked}[found[1]]:
            return False
    return True


def _numbers(version: str) -> list[int]:
    return ([int(part) for part in version.split('.')] + [0, 0, 0])[:4]
