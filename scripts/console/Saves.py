"""Commands that save the game and load it."""

from __future__ import annotations

import saves
import words
from console.Session import Session, Wrong, command


@command('save', 'slot', 'text')
def save(session: Session, line: str) -> str:
    """Saves the game, into its own slot or one of this name."""
    return _answer(saves.save(line))


@command('load', 'save', 'save')
def load(session: Session, line: str) -> str | None:
    """Loads a save: "game1.7", the newest of the slot "game1", or without a name the newest of all."""
    newest = None if line else saves.newest()
    if not line and not newest:
        raise Wrong(words.text('saves.none'))
    return _answer(saves.load(newest.name if newest else line)) or None


@command('saves')
def listed(session: Session, line: str) -> str:
    """Shows all saves, the newest first."""
    rows = [each.fault or '%-12s %s  %s  %s' % (each.name, each.made[:16].replace('T', ' '),
                                                words.duration(each.played), saves.placeOf(each))
            for each in saves.listed()]
    return '\n'.join(rows) or words.text('saves.none')


def _answer(outcome: saves.Outcome) -> str:
    if outcome.done or outcome.waits:
        return ' '.join(filter(None, (outcome.said, outcome.name)))
    before = words.text('saves.ask.before', fault=outcome.said, before=outcome.before) if outcome.before else ''
    raise Wrong(before or outcome.said)
