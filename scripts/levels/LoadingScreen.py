"""What is shown between two levels, for as long as the next one takes to load: a word, and something worth knowing."""

import kaVel
import objects.GameObjects as place
import words
from kaVel import Coordinator

#: The colours of old paper by candlelight, and further from it.
COLOR, FADED = (0.72, 0.66, 0.55, 1), (0.46, 0.42, 0.35, 1)
HINTS = 8


def build(coordinator: Coordinator):
    middle = ('H_CENTER', 'V_CENTER')
    place.Picture(coordinator, 'emblem', picture='emblem', at=(0.5, 0.64), size=(0.06, 0.06))
    place.Text(coordinator, 'loading', text=words.text('menu.loading'), at=(0.5, 0.5), size=0.034, color=COLOR,
               anchor=middle)
    number = kaVel.getSystem('GameLoopSystem').frameNumber % HINTS + 1
    place.Text(coordinator, 'hint', text=words.text('loading.hint.%d' % number), at=(0.5, 0.36), size=0.018,
               color=FADED, anchor=middle, wrapWidth=0.5, align='TA_CENTER')
