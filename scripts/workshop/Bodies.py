"""What can be pushed, fallen over and shot at: crates, stacks, the basin of floats."""

import random
from typing import Sequence

import kaVel
import objects.GameObjects as place
import words
from kaVel import MapRootEntity
from objects.Placing import Triple

#: Name, place of the middle of the foot, turn, edge in metres, mass in kilograms.
CRATES = (
    ('lightCrate', (-1.6, 0, -0.6), 0, 0.5, 12.0),
    ('crate', (0.2, 0, -0.2), 0, 0.6, 35.0),
    ('heavyCrate', (3.1, 0, 1.0), 0, 0.8, 160.0),
    ('lowCrate', (-2.4, 0, -2.3), 0, 0.6, 48.0),
    ('upperCrate', (-2.35, 0.6, -2.25), 0, 0.5, 12.0),
)

#: Masses of a pile's boxes from the floor up, kilograms: what bears more is heavier, or it would be pressed into what
#: bears it.
PILE = (32.0, 16.0, 8.0, 4.0)

BASIN = (0.2, 4.0, 7.1, 10.6)  # x and z of its inside, metres: two sides are walls of the cistern
RIM, THICK = 0.55, 0.2
BED = 0.30  # height of the bed on which the floats roll
FLOATS, DIAMETER = 300, 0.2
SKINS = ('leather', 'leather', 'rust', 'ceramic', 'ceramic', 'brass')


def crates(map: MapRootEntity, pointer: place.Pointer):
    for name, at, turn, edge, mass in CRATES:
        crate = place.CargoCrate(map, name, at=at, turn=turn, edge=edge, mass=mass)
        pointer.name(crate, words.said('workshop.crate', mass='%d' % mass))


class Piles:
    """Boxes one upon the other, in piles of some heights side by side; all but the lowest hang in the air and fall.

    A box upon one box comes to rest, and so does one across two; where one bears two others, the heap trembles.
    """

    def __init__(self, map: MapRootEntity, pointer: place.Pointer, name: str, heights: Sequence[int], at: Triple,
                 edge: float, gap: float = 0.0):
        self.boxes = []
        for pile, height in enumerate(heights):
            x = at[0] + (pile - (len(heights) - 1) / 2) * edge * 1.22
            for row in range(height):
                y = at[1] + row * edge + gap * row * (row + 0.3 * pile)
                z = at[2] + edge * 0.08 * ((pile + 2 * row) % 3 - 1)
                mass = PILE[row]
                box = place.CargoCrate(map, '%s%d%d' % (name, pile, row), at=(x, y, z), edge=edge, mass=mass)
                pointer.name(box, words.said('workshop.box', mass='%d' % mass))
                self.boxes.append((box, box.getComponent('transform').position))

    def lift(self):
        """Hangs all boxes where they hung at first."""
        for box, position in self.boxes:
            box.getComponent('transform').position = position
            box.getComponent('physics').velocity = kaVel.Vec4(0, 0, 0, 0)


def basin(map: MapRootEntity, pointer: place.Pointer):
    """A basin in the cistern's corner, full of old net floats.

    One layer of them rolls, upon a bed that is only drawn: contacts are resolved one by one, and balls that lie in
    heaps would never come to rest.
    """
    x0, x1, z0, z1 = BASIN
    rims = (('rimWest', (x0 - THICK / 2, 0, (z0 + z1) / 2 - THICK / 2), (THICK, RIM, z1 - z0 + THICK)),
            ('rimSouth', ((x0 + x1) / 2, 0, z0 - THICK / 2), (x1 - x0, RIM, THICK)))
    for name, at, size in rims:
        place.Box(map, name, at=at, size=size)
        pointer.name(place.Block(map, name + 'Block', at=at, size=size), words.said('workshop.basin'))
    place.Block(map, 'bed', at=((x0 + x1) / 2, 0, (z0 + z1) / 2), size=(x1 - x0, BED, z1 - z0))
    columns, rows = round(x1 - x0), round(z1 - z0)
    for column in range(columns):
        for row in range(rows):
            place.FloatBed(map, 'bedPiece', at=(x0 + (column + 0.5) * (x1 - x0) / columns, BED,
                                                z0 + (row + 0.5) * (z1 - z0) / rows))
    floats(map)


def floats(map: MapRootEntity):
    """Floats over the bed, each in a place of its own; they drop a little and lie."""
    x0, x1, z0, z1 = BASIN
    dice = random.Random(5)
    columns = 20
    rows = FLOATS // columns
    for number in range(FLOATS):
        row, column = divmod(number, columns)
        x = x0 + (column + 0.5 + dice.uniform(-0.02, 0.02)) * (x1 - x0 - 0.2) / columns + 0.1
        z = z0 + (row + 0.5 + dice.uniform(-0.07, 0.07)) * (z1 - z0 - 0.2) / rows + 0.1
        at = (x, BED + DIAMETER / 2 + dice.uniform(0.0, 0.15), z)
        place.Ball(map, 'float%d' % number, at=at, diameter=DIAMETER, surface=dice.choice(SKINS))
