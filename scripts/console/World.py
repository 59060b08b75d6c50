"""Commands that change the run of the game."""

from __future__ import annotations

import importlib
import os
from typing import Any

import kaVel
import standing
import stillness
from console import Values
from console.Session import Session, Wrong, command
from reports import Keeping, Timeline


@command('timescale', 'factor', 'text')
def timescale(session: Session, line: str) -> str:
    """Has the level's time run faster or slower: 1 is as usual, 0.25 a quarter, 0 stands still."""
    if not line:
        raise Wrong('name a factor, as in: timescale 0.25')
    factor = _number(line, 0.0, 100.0)
    stillness.scale(session.level, factor)
    return 'Time runs at %g' % factor


def _number(text: str, least: float, most: float) -> float:
    try:
        value = float(text)
    except ValueError:
        raise Wrong('%r is no number' % text) from None
    if not least <= value <= most:
        raise Wrong('%g is not between %g and %g' % (value, least, most))
    return value


@command('pause')
def pause(session: Session, line: str) -> str:
    """Stops the level, or has it go on."""
    stopped = session.level.loopState == kaVel.Coordinator.LoopControlState.LOOP_STOP
    (stillness.goOn if stopped else stillness.stop)(session.level)
    return 'The level goes on' if stopped else 'The level stands still'


@command('timeline', 'object property', 'object')
def timeline(session: Session, line: str) -> str:
    """Opens the bar with the last minutes, and records them from now on; with a path and a property watches that."""
    path, _, name = line.partition(' ')
    try:
        if name:
            Timeline.watch(Values.resolve(session, path), name.strip())
    except (AttributeError, TypeError, ValueError) as problem:
        raise Wrong(str(problem)) from None
    Timeline.record(True)
    Timeline.open()
    return 'The timeline records'


@command('teleport', 'x y z, or path', 'object')
def teleport(session: Session, line: str) -> str:
    """Puts the feet of whoever looks around in the level at a place, or where an object stands."""
    viewer = _viewer(session)
    _, turn, pitch = viewer.standing()
    words = line.replace(',', ' ').split()
    if len(words) == 3:
        at = [_number(word, -1e5, 1e5) for word in words]
    elif not line:
        raise Wrong('name a place or an object, as in: teleport 0 0 2')
    else:
        transform = Values.resolve(session, line).getChild('transform')
        if not transform:
            raise Wrong('%s has no place' % line)
        at = [transform.position.x, transform.position.y, transform.position.z]
    viewer.goTo((at[0], at[1], at[2]), turn, pitch)
    return 'At %.2f, %.2f, %.2f' % (at[0], at[1], at[2])


def _viewer(session: Session) -> Any:
    viewer = standing.viewerIn(session.level)
    if viewer is None:
        raise Wrong('nobody looks around in this level')
    return viewer


@command('noclip')
def noclip(session: Session, line: str) -> str:
    """Leaves the player's body for a camera that flies through everything, or comes back into it."""
    fly = getattr(_viewer(session), 'fly', None)
    if fly is None:
        raise Wrong('there is no body to leave: the camera of this level flies already')
    fly()
    return 'Again for the other way'


@command('give', 'what', 'gift')
def give(session: Session, line: str) -> str:
    """Gives the player life, sanity, or a thing of this name in his pockets."""
    player = session.level.getChild('Player')
    if not line or not player:
        raise Wrong('there is no player' if line else 'what is to be given?')
    if line == 'sanity':
        player.getComponent('player').sanity = 100.0
    elif line == 'life':
        _module('objects.player.Life').lifeOf(session.level).restore()
    else:
        _module('objects.player.Pockets').pocketsOf(session.level).add(line)
    return 'Given: %s' % line


def _module(name: str) -> Any:
    try:
        return importlib.import_module(name)
    except ImportError as error:
        raise Wrong(str(error)) from None


@command('screenshot', 'file', 'text')
def screenshot(session: Session, line: str) -> str:
    """Writes the picture to a file, as out.png; without a name one by the number of the frame."""
    name = line or 'mornal-%06d.png' % kaVel.getSystem('GameLoopSystem').frameNumber
    file = os.path.join(kaVel.Reflection.getUserFolder(), name if name.endswith('.png') else name + '.png')
    if not os.path.isdir(os.path.dirname(file)):
        raise Wrong('there is no folder %s' % os.path.dirname(file))
    kaVel.getSystem('GraphicsSystem2').captureScreen(file)
    return 'The picture of this frame goes to %s' % file


@command('report', 'words', 'text')
def report(session: Session, line: str) -> str:
    """Writes a report of this moment, which can be played again; what is said goes into it."""
    Keeping.ask(line)
    return 'A report of this moment is written'


@command('quit')
def quit_(session: Session, line: str) -> None:
    """Ends the game."""
    kaVel.getSystem('GameLoopSystem').quit(0)
