"""Builds levels. The engine calls the functions of this module; levels are the modules of the package `levels`.

A level module has a function `build(coordinator)`, perhaps a function `views()` of what headless runs take pictures of
(see `headless`), and a function for every map that it loads with
`coordinator.loadMap('name')`: the function of that name, which gets the map's root to hang its objects under.
"""

import importlib
import os
import sys

import GameConfig
import developerKeys
import headless
import kaVel

kaVel.Reflection.seedEngineRand(GameConfig.seed)

_levelsBeingBuilt = 0


def loadLevel(levelName):
    """Builds the level `levels.<levelName>` and returns its coordinator, loaded and ready to run."""
    global _levelsBeingBuilt
    level = _levelModule(levelName)
    if not callable(getattr(level, 'build', None)):
        raise ValueError('level %r cannot be built: scripts/levels/%s.py has no function build(coordinator)'
                         % (levelName, levelName))
    coordinator = kaVel.make('Coordinator', name=levelName)
    coordinator.setLevelName(levelName)
    kaVel.getSystem('GameLoopSystem').givePersistentState(coordinator)
    office = kaVel.make('Entity', parent=coordinator, name='BranchPostOffice')
    kaVel.addComponent(office, 'postOffice', 'BranchPostOffice')
    _levelsBeingBuilt += 1
    try:
        developerKeys.listen(coordinator)
        level.build(coordinator)
        if GameConfig.frames:
            headless.watch(coordinator, level.views() if hasattr(level, 'views') else ())
    finally:
        _levelsBeingBuilt -= 1
    kaVel.finishLoad(coordinator)
    return coordinator


def loadMap(coordinator, mapName):
    """Builds one map of a level and returns its root; its load is left to `completeMap`."""
    level = _levelModule(coordinator.levelName, fresh=False)
    build = getattr(level, mapName, None)
    if not callable(build):
        raise ValueError('level %r has no map %r: scripts/levels/%s.py has no function of that name'
                         % (coordinator.levelName, mapName, coordinator.levelName))
    root = kaVel.make('MapRootEntity', parent=coordinator, name=mapName)
    root.setMapName(mapName)
    kaVel.addComponent(root, 'transform', 'TransformComponent')
    kaVel.addComponent(root, 'mapData', 'MapDataComponent')  # gives the map its grids when the load completes
    build(root)
    return root


def completeMap(root):
    """Completes the load of a map, in which has been repeated by now what became of its objects.

    The maps of a level that is still being built wait for the level.
    """
    if not _levelsBeingBuilt:
        kaVel.finishLoad(root)


def levelNames():
    """The levels that there are, in alphabetical order."""
    names = set()
    for folder in importlib.import_module('levels').__path__:
        if os.path.isdir(folder):
            names.update(file[:-3] for file in os.listdir(folder) if file.endswith('.py') and file != '__init__.py')
    return sorted(names)


def hasLevel(levelName):
    """Whether there is a level of this name."""
    return levelName in levelNames()


def _levelModule(levelName, fresh=True):
    """The module of a level; read anew from its file when the level is loaded afresh."""
    if levelName not in levelNames():
        raise ValueError('there is no level %r; scripts/levels has: %s' % (levelName, ', '.join(levelNames())))
    if fresh:
        sys.modules.pop('levels.' + levelName, None)
        importlib.invalidate_caches()
    return importlib.import_module('levels.' + levelName)
