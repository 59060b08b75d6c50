"""One who has never been here: he stops, looks round, listens and reads, where a course hurries from place to place."""

from __future__ import annotations

from courseDriver import Driver, Steps
from nightfall.Plan import UP, roomAt
from objects.Placing import Pair

WORDS_A_SECOND = 200 / 60   # read
TAKES_IN = 2.0              # seconds before he does what he has come for
LISTENS = 2.5               # seconds, where he has come into a room
LOOKS = (-55, 60, 150, -30)  # degrees off his way, one after the other, in a room that he enters for the first time
GLANCES = (-50, 40)         # the same, where he has come on in it
STRIDE = 2.5                # metres from all places where he has looked, from which on he looks again
ON_STAIRS = 1.8, UP + 1.2   # metres: between these heights eyes are on the stairs
SLOWEST = 26                # pixels that his mouse moves in a frame, a quarter of what a course's does


class Newcomer(Driver):
    """Hands and eyes of somebody who takes his time, and how much of it he has needed by room."""

    fastest = SLOWEST

    def __init__(self):
        super().__init__()
        self.seen: set[str] = set()
        self.stood: list[Pair] = []

    def readFor(self, text: str) -> Steps:
        yield from self.wait(TAKES_IN + len(text.split()) / WORDS_A_SECOND)

    def use(self, x: float, y: float, z: float) -> Steps:
        yield from self.lookAt(x, y, z)
        yield from self.wait(TAKES_IN)
        yield from super().use(x, y, z)

    def walkTo(self, x: float, z: float, near: float = 0.3, seconds: float = 25.0, run: bool = False,
               crouch: bool = False) -> Steps:
        yield from super().walkTo(x, z, near, seconds, run, crouch)
        x, y, z = self.eye()
        room = roomAt(x, z)
        if run or ON_STAIRS[0] < y < ON_STAIRS[1]:
            return  # nobody stands still to look round on stairs
        if room not in self.seen:
            self.seen.add(room)
            yield from self.wait(LISTENS)
            yield from self.lookRound(LOOKS)
        elif all(self.distance(*place) > STRIDE for place in self.stood):
            yield from self.lookRound(GLANCES)
        self.stood.append((x, z))

    def lookRound(self, ways: tuple[int, ...]) -> Steps:
        """Stands still and turns to some ways, degrees off his own."""
        heading = self.looking()[0]
        for off in ways:
            yield from self.turnTo(heading + off, 6 if off > 0 else -4)
            yield from self.wait(TAKES_IN)
