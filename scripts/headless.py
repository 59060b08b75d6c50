"""Runs of a set length: after so many frames the picture is written, the state is logged, and the game ends."""

import hashlib

import GameConfig
import kaVel


def watch(coordinator):
    """Has a level end the game when the frames that were asked for have run."""
    _Watch(coordinator)


class _Watch:
    def __init__(self, coordinator):
        self.coordinator = coordinator
        self.done = False
        entity = kaVel.make('Entity', parent=coordinator, name='runLength')
        # The first updater of a frame, which also runs while the level is paused.
        kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=self.doFrame)

    def doFrame(self):
        if self.done or kaVel.getSystem('GameLoopSystem').frameNumber < GameConfig.frames:
            return
        self.done = True
        if GameConfig.screenshot:
            kaVel.getSystem('GraphicsSystem2').captureScreen(GameConfig.screenshot)
        kaVel.log('After %d frames: %s' % (GameConfig.frames, _cameraText(self.coordinator)))
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
