"""What one takes, reads and opens: the lamp, its batteries, keys, notes."""

from __future__ import annotations

import objects.GameObjects as place
import words
from kaVel import MapRootEntity
from nightfall.Plan import UP, WEST

#: Note -> its place and turn, and the keys of its texts below "nightfall.note".
NOTES = {
    'porterNote': ((4.55, UP + 0.66, -1.55), 20, 'porter'),
    'lodgerNote': ((11.7, UP + 0.66, 5.2), -30, 'lodger'),
    'girlNote': ((12.9, UP + 0.66, 6.25), -15, 'girl'),
    'housekeeperNote': ((15.66, UP + 0.66, 11.0), 100, 'housekeeper'),
    'seamstressNote': ((17.0, UP + 0.66, 2.3), 40, 'seamstress'),
    'plumberNote': ((16.7, UP + 0.66, 14.6), 10, 'plumber'),
    'carrierNote': ((9.8, 0.91, 18.1), 10, 'carrier'),
}


def build(map: MapRootEntity):
    place.Flashlight(map, 'lamp', at=(5.7, UP + 0.03, -2.2), turn=205)
    for number, at in enumerate(((14.4, UP + 0.785, -2.62), (11.8, UP + 0.67, 5.3), (16.45, UP + 0.555, 8.1),
                                 (17.05, UP + 0.67, 14.4))):
        place.SpareBattery(map, 'battery%d' % number, at=at, turn=35 * number)
    for name, (at, turn, writer) in NOTES.items():
        key = 'nightfall.note.' + writer
        place.Note(map, name, at=at, turn=turn, title=words.said(key + '.title'), text=words.said(key + '.text'))
    chest = place.Chest(map, 'chest', at=(11.56, UP, -2.4), turn=WEST)
    drawer = chest.getChild('drawer1')
    place.Key(drawer, 'passageKey', at=place.inDrawer(drawer, 0.08, -0.02), turn=40,
              label=words.said('nightfall.passageKey'))
    place.Key(map, 'sewingKey', at=(12.45, UP + 0.655, 13.6), turn=150, label=words.said('nightfall.sewingKey'))
    place.Key(map, 'stairKey', at=(16.66, UP + 0.54, 8.3), turn=80, label=words.said('nightfall.stairKey'))
    place.LooseBottle(map, 'bottle', at=(17.08, UP + 0.65, 14.62))
    place.LooseBottle(map, 'otherBottle', at=(12.9, UP, 14.5))
    place.Bolt(map, 'bolt', at=(9.1, 0, 18.7))
