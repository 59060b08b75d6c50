"""Keys for those who make the game.

F2 the tweak bars, F3 the profiler's table, F4 what the engine thinks is there, F5 the level anew from its scripts, F8
the editor, F10 the last minutes, F12 a report of what happens.
"""

import functools

import editing
import kaVel
import standing
from reports import Keeping, Timeline

#: What F4 shows: hit boxes, their contacts, the reach of lights, what cameras see, the cells of grids, what force
#: volumes push, the ways by which sounds are heard, what creatures, flocks and flows steer by, what creatures perceive,
#: and what they do and why.
OUTLINES = ('debugDrawHitBoxes', 'debugDrawContacts', 'debugDrawLightVolumes', 'debugDrawViewerFrustums',
            'debugDrawPartitioningGrid', 'debugDrawForceVolumes', 'debugDrawSoundWays', 'debugDrawSteerInfoEnabled',
            'debugDrawFlockInfoEnabled', 'debugFlowFieldInfluenceInfoEnabled', 'debugDrawPerception', 'debugDrawMinds')


def listen(coordinator: kaVel.Coordinator):
    """Has a level follow the keys for as long as it lives."""
    for action, function in (('tweakBars', _switchBars), ('profiler', _switchProfiler), ('outlines', _switchOutlines),
                             ('report', Keeping.ask), ('reload', functools.partial(standing.reload, coordinator)),
                             ('timeline', Timeline.switch),
                             ('editor', functools.partial(editing.switch, coordinator))):
        kaVel.onKey(coordinator, action, function, inScreens=True)


def _switchBars():
    bars = kaVel.getSystem('TweakSystem')
    bars.shown = not bars.shown


def _switchProfiler():
    profiler = kaVel.getSystem('ProfilerSystem')
    profiler.showResults = not profiler.showResults
    _fitDrawing()


def _switchOutlines():
    config = kaVel.getSystem('GlobalConfigSystem')
    kaVel.configure(config, **dict.fromkeys(OUTLINES, not config.debugDrawHitBoxes))
    _fitDrawing()


def _fitDrawing():
    """Draws for debugging while anything asks for it, and no more of it than that."""
    config = kaVel.getSystem('GlobalConfigSystem')
    outlines = config.debugDrawHitBoxes
    config.debugDrawEnabled = outlines or kaVel.getSystem('ProfilerSystem').showResults
    config.debugDrawSystemsOnly = not outlines
