"""Sounds that matter and are written nowhere: who cannot hear them learns nothing of them."""

from __future__ import annotations

import os
from typing import Iterator, NamedTuple

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
    telling = {name: event for name, event in events().items() if not event.category.startswith(TELL_NOTHING)}
    for map in scene.maps:
        for entity in scene.entities(map):
            component = entity.getComponent('sound')
            if not component or not component._getType().isSubclassOf(kaVel.Reflection.SoundComponent):
                continue
            for name, event in telling.items():
                if component.hasSoundEffect(name) and not (event.hasCaption and words.has('caption.' + name)):
                    yield _told(scene, entity, name, event.hasCaption)


def _told(scene: Scene, entity: kaVel.Entity, event: str, hasCaption: bool) -> Finding:
    transform = entity.getComponent('transform')
    at = tripleOf(transform.position) if transform else None
    if not hasCaption:
        return Finding('caption', scene.pathOf(entity), at, 'its sound %r has no caption' % event,
                       'give the event a `caption` in assets/sound/fmod/kaVel.fev')
    return Finding('caption', scene.pathOf(entity), at, 'the caption of its sound %r has no words' % event,
                   "write 'caption.%s' in scripts/words/english.py" % event)


class Event(NamedTuple):
    """What the project of sounds says of an event: its category, whether it has a caption, decibels a metre away."""

    category: str = ''
    hasCaption: bool = False
    loudness: float = 0.0


def events() -> dict[str, Event]:
    """The events of the project of sounds by name."""
    found: dict[str, Event] = {}
    name = ''
    with open(PROJECT, encoding='utf-8') as lines:
        for line in lines:
            first, _, rest = line.strip().partition(' ')
            if line.startswith('event '):
                name = rest
                found[name] = Event()
            elif name and first == 'category':
                found[name] = found[name]._replace(category=rest)
            elif name and first == 'caption':
                found[name] = found[name]._replace(hasCaption=True)
            elif name and first == 'loudness':
                found[name] = found[name]._replace(loudness=float(rest.split()[0]))
    return found
