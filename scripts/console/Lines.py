"""Commands that run other lines: by a key, under a name, out of a file."""

from __future__ import annotations

import os

import bindings
import kaVel
import session as lasting
from console.Session import Session, Wrong, command


@command('bind', 'key line', 'key', 'line')
def bind(session: Session, line: str) -> str:
    """Has a key run a line while the console is closed; without a line the key is free again."""
    key, _, bound = line.partition(' ')
    if not key:
        raise Wrong('name a key and the line that it runs, as in: bind F7 noclip')
    session.console.addBinding(keyCode(key), bound.strip())
    lasting.boundLines[key] = bound.strip()
    return '%s runs: %s' % (key, bound.strip()) if bound.strip() else '%s is free' % key


def keyCode(name: str) -> int:
    """The virtual-key code of a key by its name in `bindings`, or of a letter or digit."""
    for known, code in bindings.KEYS.items():
        if known.lower() == name.lower():
            return code
    if len(name) == 1 and name.isalnum() and name.isascii():
        return ord(name.upper())
    raise Wrong('%r is no key%s' % (name, kaVel.nearestHint(name, bindings.KEYS)))


@command('alias', 'name line', 'text', 'line')
def alias(session: Session, line: str) -> str | None:
    """Gives a line a name, under which it is a command like any other."""
    name, _, meant = line.partition(' ')
    if not meant.strip():
        raise Wrong('name a word and the line that it runs, as in: alias slow timescale 0.25')
    before = session.console.complaintCount
    session.console.addAlias(name, meant.strip())
    if session.console.complaintCount == before:
        lasting.aliases[name] = meant.strip()
    return None


def bringAlong(session: Session):
    """Gives the console of another level what was bound and named before."""
    for key, line in lasting.boundLines.items():
        session.console.addBinding(keyCode(key), line)
    for name, line in lasting.aliases.items():
        session.console.addAlias(name, line)


@command('exec', 'file', 'text')
def exec_(session: Session, line: str) -> str:
    """Runs the lines of a file; empty ones and those that begin with # are left out."""
    file = os.path.join(kaVel.Reflection.getUserFolder(), line)
    try:
        with open(file, encoding='utf-8') as source:
            lines = source.read().splitlines()
    except (OSError, UnicodeError) as error:
        raise Wrong(str(error)) from None
    ran = 0
    for number, each in enumerate(lines, 1):
        if each.strip() and not each.lstrip().startswith('#'):
            ran += 1
            if not session.execute(each.strip()):
                raise Wrong('%s, line %d failed, and the rest is left out: %s' % (line, number, each.strip()))
    return '%s: %d lines' % (line, ran)
