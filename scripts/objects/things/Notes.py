"""Notes that lie about: the player reads them and keeps them."""

from __future__ import annotations

import kaVel
import words
from objects.Placing import Triple
from objects.player.Hands import handsOf
from objects.player.Pockets import Page, taken
from objects.screen.Marks import marked
from objects.things import Furniture


@kaVel.pattern
def Note(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, title: words.Told = '',
         text: words.Told = ''):
    """A written sheet that lies on `at`; who uses it reads it and keeps it, in the pockets, by the note's name."""
    note = Furniture.Paper(parent, name, at=(at[0], at[1] + 0.002, at[2]), turn=turn)
    volume = note.getComponent('boundingVolume')
    kaVel.configure(volume, volumeType='BV_NONE', hitBox=kaVel.Vec4(0.24, 0.12, 0.32, 0))
    page = Page(title, text)

    def read():
        hands = handsOf(note)
        if hands:
            hands.read(page)

    taken(note, volume, lambda pockets: pockets.add(name, title, page), read)
    marked(note, 'read')
    return note
