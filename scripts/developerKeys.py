"""Keys for those who make the game: F2 the tweak bars, F3 the profiler's table, F4 what the engine thinks is there."""

import kaVel

F2, F3, F4 = 0x71, 0x72, 0x73

#: What F4 shows: hit boxes, their contacts, the reach of lights, what cameras see, the cells of grids, and what force
#: volumes push.
OUTLINES = ('debugDrawHitBoxes', 'debugDrawContacts', 'debugDrawLightVolumes', 'debugDrawViewerFrustums',
            'debugDrawPartitioningGrid', 'debugDrawForceVolumes')


def listen(coordinator):
    """Has a level follow the keys for as long as it lives."""
    kaVel.subscribe('KeyDownMessage', _onKey, coordinator.getDescendantByPath('BranchPostOffice/postOffice'))


def _onKey(message, key):
    if key == F2:
        bars = kaVel.getSystem('TweakSystem')
        bars.shown = not bars.shown
    elif key == F3:
        profiler = kaVel.getSystem('ProfilerSystem')
        profiler.showResults = not profiler.showResults
        _fitDrawing()
    elif key == F4:
        config = kaVel.getSystem('GlobalConfigSystem')
        kaVel.configure(config, **dict.fromkeys(OUTLINES, not config.debugDrawHitBoxes))
        _fitDrawing()


def _fitDrawing():
    """Draws for debugging while anything asks for it, and no more of it than that."""
    config = kaVel.getSystem('GlobalConfigSystem')
    outlines = config.debugDrawHitBoxes
    config.debugDrawEnabled = outlines or kaVel.getSystem('ProfilerSystem').showResults
    config.debugDrawSystemsOnly = not outlines
