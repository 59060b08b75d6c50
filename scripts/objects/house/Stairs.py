"""Stairs that are walked: steps to look at, and below their edges a slope that feet go up and down."""

import math

import kaVel
from objects.Placing import Triple, around, placed, turned
from objects.things.Bodies import Block, addWall
from objects.things.Drawn import Box

SLOPE = 0.3            # metres that the slope is thick
BELOW_EDGE = 0.06      # metres that what is solid under a step keeps below its edge, so that feet meet none
BOARD, NOSE = 0.035, 0.025  # metres that a tread is thick, and juts out


@kaVel.pattern
def Stairs(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, steps: int = 16,
           rise: float = 0.175, going: float = 0.28, width: float = 1.1, surface: str = 'wood',
           riser: str = 'wood') -> kaVel.Entity:
    """Stairs without a rail; `at` is the middle of the lowest riser's foot, and one climbs towards `turn`.

    The upper floor is the last step: it begins (steps - 1) * going ahead of `at`, steps * rise above it, and what is
    solid of it has to begin there, too. Before the lowest riser a slope of one more going needs level floor.
    """
    stairs = placed(parent, name, at=at, turn=turn)
    for number in range(steps - 1):
        height, foot = (number + 1) * rise, around(at, turn, 0, 0, (number + 0.5) * going)
        Box(stairs, 'riser%d' % number, at=foot, turn=turn, size=(width, height - BOARD, going), surface=riser)
        Box(stairs, 'tread%d' % number, at=around(at, turn, 0, height - BOARD, (number + 0.5) * going - NOSE / 2),
            turn=turn, size=(width, BOARD, going + NOSE), surface=surface)
        if height - BELOW_EDGE > 0.1:
            Block(stairs, 'solid%d' % number, at=foot, turn=turn, size=(width, height - BELOW_EDGE, going))
    Slope(stairs, 'slope', at=at, turn=turn, steps=steps, rise=rise, going=going, width=width)
    return stairs


@kaVel.pattern
def Slope(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, steps: int = 16,
          rise: float = 0.175, going: float = 0.28, width: float = 1.1) -> kaVel.Entity:
    """What feet go on where there are steps to look at: a board through the edges of all of them; see `Stairs`."""
    pitch, length = math.atan2(rise, going), steps * math.hypot(rise, going)
    down = SLOPE / 2  # from the middle of its face to its own middle, across the board
    middle = around(at, turn, 0, steps * rise / 2 - down * math.cos(pitch),
                    steps * going / 2 - going + down * math.sin(pitch))
    slope = placed(parent, name, at=middle)
    slope.getComponent('transform').orientation = turned(turn, pitch=-math.degrees(pitch))
    addWall(slope, (width, SLOPE, length))
    return slope
