"""Sounds that matter and are written nowhere: who cannot hear them learns nothing of them."""

from __future__ import annotations

import os
from typing import Iterator

import kaVel
import words
from editor.lint.Findings import Finding, rule
from editor.lint.Scene import Scene, tripleOf

PROJECT = os.path.join('..', 'assets', 'sound', 'fmod', 'kaVel.fev')
#: Categories of what tells nothing: the air of a place, music, the screens' own, and what the player's hands do.
TELL_NOTHING = ('sfx/ambience', 'sfx/player', 'interface', 'music')


@rule
def captions(scene: Scene) -> Iterator[Finding]:
    """Things in a map that make sounds without a caption."""
    events = {name: told for name, told in _events().items() if not told[0].startswith(TELL_NOTHING)}
    for map in scene.maps:
        for entity in scene.entities(map):
            component = entity.getComponent('sound')
            if not component or not component._getType().isSubclassOf(kaVel.Reflection.SoundComponent):
                continue
            for name, (_, hasCaption) in events.items():
                if component.hasSoundEffect(name) and not (hasCaption and words.has('caption.' + name)):
                    yield _told(scene, entity, name, hasCaption)


def _told(scene: Scene, entity: kaVel.Entity, event: str, hasCaption: bool) -> Finding:
    transform = entity.getComponent('transform')
    at = tripleOf(transform.position) if transform else None
    if not hasCaption:
        return Finding('caption', scene.pathOf(entity), at, 'its sound %r has no caption' % event,
                       'give the event a `caption` in assets/sound/fmod/kaVel.fev')
    return Finding('caption', scene.pathOf(entity), at, 'the caption of its sound %r has no words' % event,
                   "write 'caption.%s' in scripts/words/english.py" % event)


def _events() -> dict[str, tuple[str, bool]]:
    """The events of the project of sounds: name -> category, and whether it has a caption."""
    events: dict[str, tuple[str, bool]] = {}
    name = ''
    with open(PROJECT, encoding='utf-8') as lines:
        for line in lines:
            first, _, rest = line.strip().partition(' ')
            if line.startswith('event '):
                name = rest
                events[name] = '', False
            elif name and first == 'category':
                events[name] = rest, events[name][1]
            elif name and first == 'caption':
                events[name] = events[name][0], True
    return events
