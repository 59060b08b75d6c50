"""Rooms as the ear has them."""

from typing import Literal

import kaVel
from objects.Placing import Triple, placed

#: Kinds of room, as `ReverbVolume` knows them.
RoomKind = Literal['none', 'smallRoom', 'woodRoom', 'hall', 'cellar', 'chapel', 'tunnel', 'outdoors']


@kaVel.pattern
def ReverbZone(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
               size: Triple = (4, 3, 4), room: RoomKind = 'smallRoom', fade: float = 0.7):
    """What lies in a box sounds as a room of some kind; the box stands on `at`.

    Within `fade` metres of its faces it goes over into what is around it; of two boxes the smaller one counts.
    """
    zone = placed(parent, name, at=(at[0], at[1] + size[1] / 2, at[2]), turn=turn)
    kaVel.addComponent(zone, 'reverb', 'ReverbVolume', size=kaVel.Vec4(*size, 0), preset=room, fade=fade)
    return zone
