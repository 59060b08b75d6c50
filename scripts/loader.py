"""Builds levels. The engine calls the functions of this module; levels are the modules of the package `levels`.

A level module has a function `build(coordinator)`, perhaps a function `views()` of what headless runs take pictures of
(see `headless`), and a function for every map that it loads with
`coordinator.loadMap('name')`: the function of that name, which gets the map's root to hang its objects under.
"""

import importlib
import os
import traceback
import types
from typing import Callable

import GameConfig
import bindings
import developerKeys
import editing
import headless
import kaVel
import levelChanges
import levelScripts
import mods
import playersWindow
import reloading
import saves
import session  # noqa: F401 (as a script of the game, not of a level: what it keeps lasts)
import standing
import troubleScreen
import words
from perLevel import PerLevel
from screens import Screens

mods.furnish()  # before any system reads what mods stand in for
kaVel.Reflection.seedEngineRand(GameConfig.seed)
if not GameConfig.headless:
    playersWindow.attend()
if GameConfig.played:
    GameConfig.played.attend()
bindings.attend()
levelScripts.begin()
reloading.attend()

#: What the engine shows for a moment while another level loads.
LOADING_SCREEN = 'LoadingScreen'

_levelsBeingBuilt = 0
_modules: PerLevel[types.ModuleType] = PerLevel()  # the module that built a level
_visited: list[str] = []  # names of the levels that were loaded, the last one at the end


def loadLevel(levelName: str) -> kaVel.Coordinator:
    """Builds the level `levels.<levelName>` and returns its coordinator, loaded and ready to run.

    A level that fails as the first one of the game ends it. One that fails later costs nothing but itself: in its place
    stands the `troubleScreen`.
    """
    files = levelScripts.stamp()
    left = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if levelName != LOADING_SCREEN:
        editing.depart(left, levelName)
        saves.depart(left)
    try:
        with levelScripts.readAnew(_scriptToRead(levelName)):
            coordinator = _build(levelName, _fillerOf(levelName))
    except (Exception, SystemExit) as error:
        if _isLost():
            raise
        saves.giveUp()
        return _screenFor(levelName, error, files, left)
    if levelName != LOADING_SCREEN:
        _visited[:] = [name for name in _visited if name != levelName] + [levelName]
        standing.arrive(coordinator)
        saves.arrive(coordinator)
        editing.arrive(coordinator)
    return coordinator


def renewLevel(levelName: str) -> 'kaVel.Coordinator | None':
    """Builds the present level anew beside the old one, whose place it takes; one stands where one stood.

    None where it cannot be built: the old one goes on, and the screen tells why.
    """
    old = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    reloading.Levels.begin()
    saves.depart(old)
    standing.keep(old)
    try:
        with levelScripts.readAnew():
            coordinator = _build(levelName, _fillerOf(levelName))
    except (Exception, SystemExit) as error:
        standing.forget()
        reloading.Levels.fail(error)
        return None
    standing.arrive(coordinator)
    saves.arrive(coordinator)
    reloading.Levels.succeed(old, coordinator)
    return coordinator


def _scriptToRead(levelName: str):
    """The one script to read anew for a level that comes in passing or inside another one; None for all scripts."""
    return 'levels.' + levelName if _levelsBeingBuilt or levelName == LOADING_SCREEN else None


def _fillerOf(levelName: str):
    """The function that builds a level out of its module, read from its file."""
    module = _levelModule(levelName)
    if not callable(getattr(module, 'build', None)):
        raise ValueError('level %r cannot be built: scripts/levels/%s.py has no function build(coordinator)'
                         % (levelName, levelName))

    def fill(coordinator: kaVel.Coordinator):
        _modules[coordinator] = module
        module.build(coordinator)
        if GameConfig.frames:
            headless.watch(coordinator, module.views() if hasattr(module, 'views') else ())

    return fill


def _build(levelName: str, fill: Callable[[kaVel.Coordinator], None]) -> kaVel.Coordinator:
    """A level of this name that `fill(coordinator)` builds; one that fails is ended before the exception goes on."""
    global _levelsBeingBuilt
    gameLoop = kaVel.getSystem('GameLoopSystem')
    coordinator = kaVel.make('Coordinator', name=levelName)
    coordinator.setLevelName(levelName)
    gameLoop.givePersistentState(coordinator)
    office = kaVel.make('Entity', parent=coordinator, name='BranchPostOffice')
    kaVel.addComponent(office, 'postOffice', 'BranchPostOffice')
    _levelsBeingBuilt += 1
    try:
        if levelName != LOADING_SCREEN:
            saves.prepare(coordinator)
        developerKeys.listen(coordinator)
        with levelChanges.taken(coordinator):
            fill(coordinator)
        words.prepare()
        Screens.attend(coordinator)
        if levelName != LOADING_SCREEN:
            _giveConsole(coordinator)
    except BaseException:
        gameLoop.retireLevel(coordinator)
        raise
    finally:
        _levelsBeingBuilt -= 1
    kaVel.finishLoad(coordinator)
    return coordinator


def _giveConsole(coordinator: kaVel.Coordinator):
    """Gives a level its console; where the scripts of that are wrong, it says so and goes without."""
    try:
        from console.Session import Session
        from objects.screen.Console import Console
        Session(Console(coordinator, 'Console')).furnish()
    except Exception:
        kaVel.log('The level %r has no console:\n%s' % (coordinator.levelName, traceback.format_exc()))


def isBuilding():
    """Whether a level is being built."""
    return _levelsBeingBuilt > 0


def _isLost():
    """Whether a level that fails takes the game with it: the first one, and any that nobody watches without an end."""
    gameLoop = kaVel.getSystem('GameLoopSystem')
    return _levelsBeingBuilt or not gameLoop.frameNumber or (gameLoop.unattended and not gameLoop.frameLimit)


def _screenFor(levelName: str, error: BaseException, files: list, left: kaVel.Coordinator):
    """The level that tells why another one cannot be loaded, under the name of that one."""
    kaVel.log('The level %r cannot be loaded, and a screen that tells so stands in its place:\n%s'
              % (levelName, traceback.format_exc()))
    before = next((name for name in reversed(_visited) if name != levelName), None)
    last = troubleScreen.of(left)
    stood = last.stood if last else standing.of(left) if left and left.levelName == before else None
    trouble = troubleScreen.Trouble(levelName, error, files, before, stood)
    return _build(levelName, lambda coordinator: troubleScreen.build(coordinator, trouble))


def loadMap(coordinator: kaVel.Coordinator, mapName: str):
    """Builds one map of a level and returns its root; its load is left to `completeMap`."""
    level = _modules.get(coordinator)
    if not level or level.__name__ != 'levels.' + coordinator.levelName:  # renamed: it borrows another level's maps
        level = _levelModule(coordinator.levelName)
    build = getattr(level, mapName, None)
    if not callable(build):
        raise ValueError('level %r has no map %r: scripts/levels/%s.py has no function of that name'
                         % (coordinator.levelName, mapName, coordinator.levelName))
    root = kaVel.make('MapRootEntity', parent=coordinator, name=mapName)
    root.setMapName(mapName)
    kaVel.addComponent(root, 'transform', 'TransformComponent')
    kaVel.addComponent(root, 'mapData', 'MapDataComponent')  # gives the map its grids when the load completes
    kaVel.addComponent(root, 'soundWays', 'SoundWays')
    with levelChanges.taken(coordinator, mapName):
        build(root)
    return root


def completeMap(root: kaVel.MapRootEntity):
    """Completes the load of a map, in which has been repeated by now what became of its objects.

    The maps of a level that is still being built wait for the level.
    """
    if not _levelsBeingBuilt:
        kaVel.finishLoad(root)


def levelNames():
    """The levels that there are, in alphabetical order."""
    names = set(mods.levelNames())
    for folder in importlib.import_module('levels').__path__:
        if os.path.isdir(folder):
            names.update(file[:-3] for file in os.listdir(folder) if file.endswith('.py') and file != '__init__.py')
    return sorted(names)


def hasLevel(levelName: str):
    """Whether there is a level of this name."""
    return levelName in levelNames()


def _levelModule(levelName: str):
    """The module of a level."""
    if levelName not in levelNames():
        raise ValueError('there is no level %r; scripts/levels has: %s' % (levelName, ', '.join(levelNames())))
    return importlib.import_module('levels.' + levelName)
