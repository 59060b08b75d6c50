"""What headless runs take pictures of: where somebody stands who has come that far."""

from __future__ import annotations

from typing import Callable, NamedTuple

from objects.Placing import Triple
from objects.player.Visitor import Visitor


class View(NamedTuple):
    """A place of the feet, metres, and the way of the look, degrees."""

    at: Triple
    turn: float
    pitch: float = 0.0


VIEWS = {
    'waking': View((2.0, 3, -3.2), 15, 6),
    'bedside': View((3.2, 3, -0.8), 215, 12),
    'corridor': View((1.2, 3, 0.85), 90, 4),
    'corridorBack': View((15.2, 3, 0.85), -90, 4),
    'seven': View((5.4, 3, -0.7), 190, 14),
    'six': View((9.2, 3, -0.7), 190, 10),
    'five': View((13.2, 3, -0.7), 170, 10),
    'passage': View((15.15, 3, 2.6), 0, 3),
    'passageBack': View((15.15, 3, 13.2), 180, 3),
    'four': View((13.6, 3, 3.8), -90, 10),
    'three': View((13.6, 3, 7.0), -60, 10),
    'two': View((13.6, 3, 12.6), -110, 10),
    'sewing': View((16.6, 3, 3.4), 55, 5),
    'hatch': View((19.4, 3, 6.2), 0, 12),
    'linen': View((19.6, 3, 8.4), -60, 8),
    'landing': View((15.1, 3, 14.6), 35, 10),
    'gallery': View((12.0, 3, 16.2), 30, 14),
    'bath': View((18.2, 3, 13.4), 190, 12),
    'stairsDown': View((19.9, 3, 16.4), 0, 22),
    'hall': View((19.6, 0, 22.6), -110, -4),
    'hallBack': View((11.6, 0, 22.4), 120, -8),
    'service': View((9.6, 0, 20.4), -90, 5),
}


def all(visitor: Visitor, stand: Callable[[], object]):
    """Pairs of a name and a function that shows it; `stand` is called once one stands there."""
    def show(view: View):
        visitor.goTo(*view)
        stand()

    return [(name, lambda view=view: show(view)) for name, view in VIEWS.items()]
