"""Runs of a set length: pictures on the way, and in the last frame the picture and the state, which is logged.

A level may have views, pairs of a name and a function that turns the camera to something. They share the frames, and
each is written to a file of its own: with the screenshot out.png and a view '1-spot' that is out-1-spot.png. In place
of views there may be frames whose pictures are wanted, the shots: those of a playthrough, in which nobody turns the
camera. A run that is not drawn draws them, and a few frames before each.

What is to be done hangs on the game loop and on no object of a level, so that a level cannot lose it. A step that
raises ends the run with exit code 1.
"""

import hashlib
import os
from typing import Callable, Sequence

import courseDriver
import GameConfig
import kaVel
import settings
import troubleScreen
from mods import Holding
from perLevel import PerLevel

#: A view needs a frame to arrive in and one whose picture is written.
LEAST_FRAMES = 2
#: Frames drawn up to a shot in a run that is not drawn: what follows the picture before, as the eye does, has come up.
SETTLING = 8

#: Name, and the function that turns the camera.
View = tuple[str, Callable[[], object]]

#: What is to be done while a level is in charge: frame -> steps in order.
_plans: PerLevel[dict[int, list[Callable[[], object]]]] = PerLevel()


def watch(coordinator: kaVel.Coordinator, views: Sequence[View] = ()):
    """Plans what a run does in a level that was just built: its views, from the present frame to the last one.

    A run whose pictures or sound have nowhere to go ends at once, with exit code 1: better than when all its frames
    have run.
    """
    views = [] if GameConfig.shots else _wanted(views)
    results = [('screenshot', _pictureFile(suffix)) for suffix in _suffixes(views)] + [('sound', GameConfig.sound)]
    closed = [result for result in results if result[1] and not _isWritable(result[1])]
    if closed:
        kaVel.log('The game quits: the %s %s cannot be written; is there such a folder, and may it be written to?%s'
                  % (*closed[0], '' if Holding.mayWrite(closed[0][1]) else ' A run with mods writes pictures of those '
                     'views alone that KAVEL_VIEWS names.'))
        kaVel.getSystem('GameLoopSystem').quit(1)
        return
    if GameConfig.sound:
        kaVel.getSystem('SoundSystem')  # from the first frame on, whether or not anything sounds
    if GameConfig.digest or GameConfig.dump:
        kaVel.getSystem('StateDigest')
    if GameConfig.meter:
        kaVel.getSystem('FrameMeter')
    gameLoop = kaVel.getSystem('GameLoopSystem')
    first = max(gameLoop.frameNumber, 1)
    gameLoop.frameLimit = max(gameLoop.frameLimit, first - 1 + LEAST_FRAMES * len(views))
    gameLoop.frameCallback = _doFrame
    _plans[coordinator] = _plan(views, first, gameLoop.frameLimit)


def _wanted(views: Sequence[View]) -> list[View]:
    """The views that the run is to show; ValueError if one is asked for that is not there, or one shows nothing."""
    names = [name for name, _ in views]
    unknown = [name for name in GameConfig.views if name not in names]
    if unknown:
        raise ValueError('no view %s in this level; it has: %s' % (', '.join(unknown), ', '.join(names) or 'none'))
    for name, show in views:
        if not callable(show):
            raise ValueError('the view %r of this level is %r, where a function is wanted' % (name, show))
    if GameConfig.course or GameConfig.replay:
        return []  # who plays looks where he wants
    return [view for view in views if not GameConfig.views or view[0] in GameConfig.views]


def _suffixes(views: Sequence[View]):
    """What the files of the run's pictures have behind the stem of their name."""
    return ['-' + name for name, _ in views] or ['-%d' % shot for shot in GameConfig.shots] or ['']


def _pictureFile(suffix: str):
    """The file of one picture; empty if none is wanted."""
    stem, extension = os.path.splitext(GameConfig.screenshot)
    return GameConfig.screenshot and stem + suffix + extension


def _isWritable(file: str):
    folder = os.path.dirname(file) or '.'
    return (os.path.isdir(folder) and os.access(folder, os.W_OK)
            and (os.path.isfile(file) or not os.path.exists(file)) and Holding.mayWrite(file))


def _plan(views: Sequence[View], first: int, last: int):
    """Frame -> what is to be done at its start, in order. Each view has its share of the frames from first to last."""
    steps: dict[int, list[Callable[[], object]]] = {}
    frames = last - first + 1
    for number, (name, show) in enumerate(views):
        arrival, picture = first + number * frames // len(views), first - 1 + (number + 1) * frames // len(views)
        steps.setdefault(arrival, []).append(show)
        steps.setdefault(picture, []).append(lambda name=name: _capture('-' + name))
    if GameConfig.shots:
        _planShots(steps, first)
    elif not views:
        steps[last] = [_capture]
    return steps


def _planShots(steps: dict[int, list[Callable[[], object]]], first: int):
    """Adds the pictures of single frames, and what has them drawn where no others are."""
    drawn = {frame for shot in GameConfig.shots for frame in range(max(first, shot - SETTLING), shot + 1)}
    for frame in sorted(drawn) if GameConfig.undrawn else ():
        if frame - 1 not in drawn:
            steps.setdefault(frame, []).append(lambda: _draw(True))
        if frame + 1 not in drawn:
            steps.setdefault(frame + 1, []).append(lambda: _draw(False))
    for shot in GameConfig.shots:
        steps.setdefault(shot, []).append(lambda shot=shot: _capture('-%d' % shot))


def _draw(isDrawn: bool):
    kaVel.getSystem('GraphicsSystem2').withoutDrawing = not isDrawn


def _doFrame():
    settings.doFrame()
    if GameConfig.course:
        courseDriver.doFrame(GameConfig.course)
    gameLoop = kaVel.getSystem('GameLoopSystem')
    level, frame = gameLoop.currentlyActiveCoordinator, gameLoop.frameNumber
    for step in _plans.get(level, {gameLoop.frameLimit: [_capture]}).pop(frame, ()):
        step()
    if level and frame == gameLoop.frameLimit:
        kaVel.log('After %d frames: %s' % (frame, _cameraText(level)))
        kaVel.log('Object tree: %s' % treeDigest(level))
        if troubleScreen.of(level):
            gameLoop.quit(1)
        elif GameConfig.lint:
            _lint(level)


def _lint(level: kaVel.Coordinator):
    from editor.lint import Findings  # nothing of the editor is loaded by any other run
    Findings.write(level, GameConfig.lint)


def _capture(suffix: str = ''):
    if GameConfig.screenshot:
        kaVel.getSystem('GraphicsSystem2').captureScreen(_pictureFile(suffix))


def _cameraText(coordinator: kaVel.Coordinator):
    camera = coordinator.getManager('graphics2').getCurrentCamera()
    if not camera:
        return 'no camera'
    transform = camera.getComponent('transform')
    return 'camera at %s, turned %s' % (transform.position, transform.orientation)


def treeDigest(root: kaVel.Object):
    """Count and hash of every object below `root`: class, name, and place if it has one."""
    digest = hashlib.sha256()
    tree = kaVel.descendants(root)
    for handle in tree:
        name = handle.getName()
        # The engine makes up names from addresses for objects that were given none.
        line = [handle._getType().name, '' if name.startswith('unnamed__') else name]
        if handle._getType().isSubclassOf(kaVel.Reflection.TransformComponent):
            line += [str(handle.position), str(handle.orientation), str(handle.scale)]
        digest.update(('|'.join(line) + '\n').encode())
    return '%d objects, %s' % (len(tree), digest.hexdigest()[:16])
