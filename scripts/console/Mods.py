"""The command that tells of mods."""

from __future__ import annotations

import mods
import words
from console.Session import Session, command
from mods import Holding


@command('mods')
def listed(session: Session, line: str) -> str:
    """Shows the mods in the order of loading, those that are left out, what they bring twice, what they wanted."""
    order = mods.loaded()
    rows = ['%2d. %-24s %-8s %s' % (number, mod.name, mod.version, 'program' if mod.isScript else 'data')
            for number, mod in enumerate(order, 1)]
    rows += ['  - %-24s %s' % (mod.name, mod.fault or ('waits to be allowed' if mod.waits else 'off'))
             for mod in mods.installed() if not mod.isOn]
    rows += ['    ' + str(each) for each in mods.conflicts()]
    rows += ['    not held back: ' + each for each in Holding.lacking or ()]
    rows += ['    ' + str(each) for each in Holding.attempts]
    return '\n'.join(rows) or words.text('mods.none', folder=mods.folder())
