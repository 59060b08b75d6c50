"""Builds levels. The engine calls `loadLevel` and `loadMap`; levels are the modules of the package `levels`.

A level module has a function `build(coordinator)`, and a function for every map that it loads with
`coordinator.loadMap('name')`: the function of that name, which gets the map's root to hang its objects under.
"""

import importlib
import os
import sys
import traceback

import GameConfig
import headless
import kaVel

kaVel.Reflection.seedEngineRand(GameConfig.seed)

_levelsBeingBuilt = 0


def loadLevel(levelName):
    """Builds the level `levels.<levelName>` and returns its coordinator, loaded and ready to run."""
    global _levelsBeingBuilt
    level = _levelModule(levelName)
    coordinator = kaVel.make('Coordinator', name=levelName)
    coordinator.setLevelName(levelName)
    office = kaVel.make('Entity', parent=coordinator, name='BranchPostOffice')
    kaVel.addComponent(office, 'postOffice', 'BranchPostOffice')
    _levelsBeingBuilt += 1
    try:
        level.build(coordinator)
        if GameConfig.frames:
            headless.watch(coordinator)
    finally:
        _levelsBeingBuilt -= 1
    completeLoad(coordinator)
    return coordinator


def loadMap(coordinator, mapName):
    """Builds one map of a level and returns its root."""
    level = _levelModule(coordinator.levelName, fresh=False)
    build = getattr(level, mapName, None)
    if not callable(build):
        raise ValueError('level %r has no map %r: scripts/levels/%s.py has no function of that name'
                         % (coordinator.levelName, mapName, coordinator.levelName))
    root = kaVel.make('MapRootEntity', parent=coordinator, name=mapName)
    root.setMapName(mapName)
    kaVel.addComponent(root, 'transform', 'TransformComponent')
    build(root)
    if not _levelsBeingBuilt:
        completeLoad(root)
    return root


def completeLoad(root):
    """Tells everything under `root` that the tree stands: first `onLoadBegin`, then `onLoadComplete`, depth first.

    An object that fails is logged with its path, and the rest loads on.
    """
    tree = list(_depthFirst(root))
    component = kaVel.Reflection.AbstractComponent
    for handle in tree:
        if handle._getType().isSubclassOf(component):
            _guarded(handle, handle.onLoadBegin)
    for handle in tree:
        _guarded(handle, handle.onLoadComplete)


def levelNames():
    """The levels that there are, in alphabetical order."""
    names = set()
    for folder in importlib.import_module('levels').__path__:
        if os.path.isdir(folder):
            names.update(file[:-3] for file in os.listdir(folder) if file.endswith('.py') and file != '__init__.py')
    return sorted(names)


def _levelModule(levelName, fresh=True):
    """The module of a level; read anew from its file when the level is loaded afresh."""
    if levelName not in levelNames():
        raise ValueError('there is no level %r; scripts/levels has: %s' % (levelName, ', '.join(levelNames())))
    if fresh:
        sys.modules.pop('levels.' + levelName, None)
        importlib.invalidate_caches()
    return importlib.import_module('levels.' + levelName)


def _depthFirst(root):
    yield root
    for child in list(root.children):
        yield from _depthFirst(child)


def _guarded(handle, call):
    try:
        call()
    except Exception:
        kaVel.log('%s failed to load and is skipped:\n%s' % (pathOf(handle), traceback.format_exc()))


def pathOf(handle):
    """Names from the root of the tree down to an object, joined by '/'."""
    names = []
    while handle:
        names.append(handle.name)
        handle = handle.parent
    return '/'.join(reversed(names))
