"""Runs of a set length: after so many frames the picture is written, the state is logged, and the game ends.

A level may have views, pairs of a name and a function that turns the camera to something. They share the frames, and
each is written to a file of its own: with the screenshot out.png and a view '1-spot' that is out-1-spot.png.
"""

import hashlib
import os

import GameConfig
import kaVel

#: A view needs a frame to arrive in and one whose picture is written.
LEAST_FRAMES = 2


def watch(coordinator, views=()):
    """Has a level end the game when the frames that were asked for have run.

    A run whose picture has nowhere to go ends at once, with exit code 1: better than when all its frames have run.
    """
    views = _wanted(views)
    closed = [file for file in map(_pictureFile, _suffixes(views)) if file and not _isWritable(file)]
    if closed:
        kaVel.log('The game quits: the screenshot %s cannot be written; is there such a folder, and may it be written '
                  'to?' % closed[0])
        kaVel.getSystem('GameLoopSystem').quit(1)
    else:
        _Watch(coordinator, views)


def _wanted(views):
    """The views that the run is to show; ValueError that lists them if one is asked for that is not there."""
    names = [name for name, _ in views]
    unknown = [name for name in GameConfig.views if name not in names]
    if unknown:
        raise ValueError('no view %s in this level; it has: %s' % (', '.join(unknown), ', '.join(names) or 'none'))
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
    return (os.path.isdir(folder) and not os.path.isdir(file)
            and os.access(file if os.path.exists(file) else folder, os.W_OK))


class _Watch:
    def __init__(self, coordinator, views):
        self.coordinator = coordinator
        self.stops = self.plan(views)
        entity = kaVel.make('Entity', parent=coordinator, name='runLength')
        # The first updater of a frame, which also runs while the level is paused.
        kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=self.doFrame)

    def plan(self, views):
        """Frame -> what is to be done at its start, in order."""
        count = max(len(views), 1)
        frames = max(GameConfig.frames, LEAST_FRAMES * len(views))
        stops = {}
        for number, (name, show) in enumerate(views):
            first, last = 1 + number * frames // count, (number + 1) * frames // count
            stops.setdefault(first, []).append(show)
            stops.setdefault(last, []).append(lambda name=name: self.capture('-' + name))
        if not views:
            stops.setdefault(frames, []).append(self.capture)
        stops.setdefault(frames, []).append(lambda: self.end(frames))
        return stops

    def doFrame(self):
        for step in self.stops.pop(kaVel.getSystem('GameLoopSystem').frameNumber, ()):
            step()

    def capture(self, suffix=''):
        if GameConfig.screenshot:
            kaVel.getSystem('GraphicsSystem2').captureScreen(_pictureFile(suffix))

    def end(self, frames):
        kaVel.log('After %d frames: %s' % (frames, _cameraText(self.coordinator)))
        kaVel.log('Object tree: %s' % treeDigest(self.coordinator))
        kaVel.getSystem('GameLoopSystem').quit(0)


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
