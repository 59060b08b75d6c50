"""Gallery: a row of dark rooms, each of which shows one thing that the engine draws.

Walk through, or press 1 to 9 to stand in a room at once. The rooms are built in `gallery/Rooms.py`.
"""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
import words
from gallery.Rooms import FRAMED, ROOMS
from gallery.Shell import MASONRY, PITCH, VILLA, Room, passage, solids
from gallery.Sight import Sight
from kaVel import Coordinator, MapRootEntity
from objects.Placing import onFrame
from objects.player.Control import onPlaceKeys

#: What `tools/lint` finds here and is meant: kind -> object -> why.
LINT = {
    'inWall': {'row/spheres/*': 'the steps are solid as one block, in which those that are drawn stand'},
    'stairs': {'row/boxes/slope6': 'the lamp is turned away from them, to the altar'},
    'unreachable': {'row:*': 'the picture of the sky lies on the ground behind the churchyard'},
}

_tour: Tour


def build(coordinator: Coordinator):
    global _tour
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.045)
    coordinator.getManager('reverb').surroundings = 'cellar'
    coordinator.loadMap('row')
    _tour = Tour(coordinator)


_guests = {}


def row(root: MapRootEntity):
    """The map: all rooms, and the passages between them."""
    width = PITCH * len(ROOMS)
    place.PartitioningGrid(root, at=(width / 2 - PITCH / 2, 0, 2), size=(width + 8, 0, 24))
    place.sounding(place.Entity(root, 'air'), 'AmbienceCellar', volume=0.5)
    _guests.clear()
    for number, (name, build, *_) in enumerate(ROOMS, 1):
        room = Room(place.Entity(root, name), number, len(ROOMS))
        _guests[number] = build(room)
        if room.hasEastDoor:
            passage(Room(place.Entity(root, 'passage%d' % number), number, len(ROOMS)))
    narrow = [room[1] in FRAMED for room in ROOMS]
    solids(root, [VILLA if west or east else MASONRY for west, east in zip(narrow, narrow[1:])])
    place.makeSolid(root)


def views():
    """What a headless run takes pictures of: every room from where its number key leads."""
    return [('%d-%s' % (number, room[0]), lambda number=number: _tour.show(number))
            for number, room in enumerate(ROOMS, 1)]


class Tour:
    """The visitor: where the number keys lead, which room that is, and what the room is told of it."""

    def __init__(self, coordinator: Coordinator):
        place.Player(coordinator, fieldOfView=50, farClip=26)
        self.visitor = place.visitorOf(coordinator)
        self.label = place.Text(coordinator, 'label', at=(0.03, 0.05), size=0.022, color=(0.78, 0.70, 0.55, 1),
                                anchor=('H_LEFT', 'V_BOTTOM'))
        row = coordinator.getChild('row')
        passages = [row.getChild('passage%d' % number) for number in range(1, len(ROOMS))]
        self.sight = Sight([row.getChild(room[0]) for room in ROOMS], passages, self.visitor)
        self.number = None
        onPlaceKeys(coordinator, len(ROOMS), self.goTo)
        onFrame(self.label, self.doFrame)
        self.goTo(1)

    def goTo(self, number: int):
        """Stands the visitor in a room, looking at what it shows."""
        _, _, (x, y, z), turn, pitch = ROOMS[number - 1]
        self.visitor.goTo((PITCH * (number - 1) + x, y, z), turn, pitch)
        self.notice(number)
        self.sight.update()

    def show(self, number: int):
        """As `goTo`, for a picture: what takes its time in a room is under way at once."""
        self.goTo(number)
        if hasattr(_guests[number], 'enterInTheMiddle'):
            _guests[number].enterInTheMiddle()

    def doFrame(self):
        number = round(self.visitor.eye.position.x / PITCH) + 1
        self.notice(min(len(ROOMS), max(1, number)))
        self.sight.update()

    def notice(self, number: int):
        """Tells the rooms and the label when the visitor has come into another room."""
        if number == self.number:
            return
        for room, event in ((self.number, 'leave'), (number, 'enter')):
            if _guests.get(room):
                getattr(_guests[room], event)()
        self.number = number
        self.label.getComponent('graphics2').text = '%d   %s' % (number, words.text('gallery.' + ROOMS[number - 1][0]))
