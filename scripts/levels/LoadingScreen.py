"""What is shown for the two frames between two levels: one word on black."""

import objects.GameObjects as place
import words
from kaVel import Coordinator

#: The colour of old paper by candlelight.
COLOR = (0.72, 0.66, 0.55, 1)


def build(coordinator: Coordinator):
    place.Text(coordinator, 'loading', text=words.text('menu.loading'), at=(0.5, 0.5), size=0.034, color=COLOR,
               anchor=('H_CENTER', 'V_CENTER'))
