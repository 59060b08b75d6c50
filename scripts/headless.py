"""Runs of a set length: pictures on the way, and in the last frame the picture and the state, which is logged.

A level may have views, pairs of a name and a function that turns the camera to something. They share the frames, and
each is written to a file of its own: with the screenshot out.png and a view '1-spot' that is out-1-spot.png.

What is to be done hangs on the game loop and on no object of a level, so that a level cannot lose it. A step that
raises ends the run with exit code 1.
"""

import hashlib
import os

import GameConfig
import kaVel

#: A view needs a frame to arrive in and one whose picture is written.
LEAST_FRAMES = 2

_plans = {}  # coordinator -> what is to be done while it is in charge: frame -> steps in order


def watch(coordinator, views=()):
    """Plans what a run does in a level that was just built: its views, from the present frame to the last one.

    A run whose picture has nowhere to go ends at once, with exit code 1: better than when all its frames have run.
    """
    views = _wanted(views)
    closed = [file for file in map(_pictureFile, _suffixes(views)) if file and not _isWritable(file)]
    if closed:
        kaVel.log('The game quits: the screenshot %s cannot be written; is there such a folder, and may it be written '
                  'to?' % closed[0])
        kaVel.getSystem('GameLoopSystem').quit(1)
        return
    gameLoop = kaVel.getSystem('GameLoopSystem')
    first = max(gameLoop.frameNumber, 1)
    gameLoop.frameLimit = max(gameLoop.frameLimit, first - 1 + LEAST_FRAMES * len(views))
    gameLoop.frameCallback = _doFrame
    for gone in [level for level in _plans if not level]:
        del _plans[gone]
    _plans[coordinator] = _plan(views, first, gameLoop.frameLimit)


def _wanted(views):
    """The views that the run is to show; ValueError if one is asked for that is not there, or one shows nothing."""
    names = [name for name, _ in views]
    unknown = [name for name in GameConfig.views if name not in names]
    if unknown:
        raise ValueError('no view %s in this level; it has: %s' % (', '.join(unknown), ', '.join(names) or 'none'))
    for name, show in views:
        if not callable(show):
            raise ValueError('the view %r of this level is %r, where a function is wanted' % (name, show))
    return [view for view in views if not GameConfig.views or view[0] in GameConfig.views]


def _suffixes(views):
    """What the files of the run's pictures have behind the stem of their name."""
    return ['-' + name for name, _ in views] or ['']


def _pictureFile(suffix):
    """The file of one picture; empty if none is wanted."""
    stem, extension = os.path.splitext(GameConfig.screenshot)
    return GameConfig.screenshot and stem + suffix + extension


def _isWritable(file):
    folder = os.path.dirname(file) or '.'
    return (os.path.isdir(folder) and os.access(folder, os.W_OK)
            and (os.path.isfile(file) or not os.path.exists(file)))


def _plan(views, first, last):
    """Frame -> what is to be done at its start, in order. Each view has its share of the frames from first to last."""
    steps = {}
    frames = last - first + 1
    for number, (name, show) in enumerate(views):
        arrival, picture = first + number * frames // len(views), first - 1 + (number + 1) * frames // len(views)
        steps.setdefault(arrival, []).append(show)
        steps.setdefault(picture, []).append(lambda name=name: _capture('-' + name))
    if not views:
        steps[last] = [_capture]
    return steps


def _doFrame():
    gameLoop = kaVel.getSystem('GameLoopSystem')
    level, frame = gameLoop.currentlyActiveCoordinator, gameLoop.frameNumber
    for step in _plans.get(level, {gameLoop.frameLimit: [_capture]}).pop(frame, ()):
        step()
    if level and frame == gameLoop.frameLimit:
        kaVel.log('After %d frames: %s' % (frame, _cameraText(level)))
        kaVel.log('Object tree: %s' % treeDigest(level))


def _capture(suffix=''):
    if GameConfig.screenshot:
        kaVel.getSystem('GraphicsSystem2').captureScreen(_pictureFile(suffix))


def _cameraText(coordinator):
    camera = coordinator.getManager('graphics2').getCurrentCamera()
    if not camera:
        return 'no camera'
    transform = camera.getComponent('transform')
    return 'camera at %s, turned %s' % (transform.position, transform.orientation)


def treeDigest(root):
    """Count and hash of every object below `root`: class, name, and place if it has one."""
    digest = hashlib.sha256()
    tree = kaVel.descendants(root)
    for handle in tree:
        name = handle.name
        # The engine makes up names from addresses for objects that were given none.
        line = [handle._getType().name, '' if name.startswith('unnamed__') else name]
        if handle._getType().isSubclassOf(kaVel.Reflection.TransformComponent):
            line += [str(handle.position), str(handle.orientation), str(handle.scale)]
        digest.update(('|'.join(line) + '\n').encode())
    return '%d objects, %s' % (len(tree), digest.hexdigest()[:16])
