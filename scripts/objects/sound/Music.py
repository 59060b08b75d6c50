"""The music of a level: mostly none, sometimes a low tension or a chase, and short stings over either."""

from __future__ import annotations

import kaVel
from objects.Placing import placed

STINGS = ('StingDeath', 'StingDiscovery', 'StingDread', 'StingNearMiss', 'StingVictory')
PIECES = ('Tension', 'Chase', 'EndMusic', 'TitleMusic')


class Music:
    """One piece at a time, by the names of the sound project."""

    def __init__(self, level: kaVel.Coordinator):
        entity = placed(level, 'music')
        self.component = kaVel.addComponent(entity, 'sound', 'SoundComponent')
        self.component.musicList = PIECES + STINGS
        self.playing = ''

    def play(self, piece: str, tension: float = 0.0):
        """Goes over to a piece; '' is silence. `tension`, 0 to 1, is for the one of that name."""
        if piece != self.playing:
            if self.playing:
                self.component.stopMusic(self.playing)
            if piece:
                self.component.playMusic(piece)
            self.playing = piece
        if piece == 'Tension':
            self.component.setMusicParam('Tension', 'tension', tension)

    def sting(self, name: str):
        """Plays a short one to its end."""
        self.component.playMusic(name)
