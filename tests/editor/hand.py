"""A hand that edits a level in a window, by mouse and keys alone; the level tells it where things are seen."""
import os
import re
import subprocess
import time

#: Settings that leave a slow machine time for the hand.
CHEAP = "renderScale = 0.25\neffectQuality = low\nshadowQuality = low\npauseWithoutFocus = off\n"


class Hand:
    """Mouse and keys, as slow as a person's, so that a busy machine sees each of them by itself."""

    def __init__(self, played):
        self.played, self.tool, self.pace = played, played.display.tool, 1.0

    def rest(self, seconds=0.5):
        time.sleep(seconds * self.pace)

    def open_editor(self, level):
        """Opens the editor, and takes its time from how long that takes."""
        begin = time.monotonic()
        self.tool("key", "F8")
        self.told(f"{level} is edited")
        self.pace = min(max((time.monotonic() - begin) / 2, 1.0), 5.0)

    def press(self, key, *held):
        for each in held:
            self.tool("keydown", each)
        self.rest(0.5 if held else 0)
        self.tool("key", key)
        self.rest(0.5 if held else 0)
        for each in held:
            self.tool("keyup", each)
        self.rest(0.3)

    def point(self, place):
        self.tool("mousemove", "--window", self.played.window, *place)

    def click(self, place, button=1):
        self.point(place)
        self.rest(0.4)
        self.tool("click", button)
        self.rest(0.6)

    def drag(self, begin, way, button=1):
        """Presses a button at a place and lets it go some pixels away, in steps."""
        steps = 6
        self.point(begin)
        self.rest(0.4)
        self.tool("mousedown", button)
        self.rest(0.4)
        for step in range(1, steps + 1):
            self.point([round(at + part * step / steps) for at, part in zip(begin, way)])
            self.rest(0.15)
        self.rest(0.4)
        self.tool("mouseup", button)
        self.rest(0.6)

    def write(self, place, text):
        self.click(place)
        self.rest(1.5)
        self.press("a", "ctrl")
        self.tool("type", "--delay", 60, text)
        self.rest(1)

    def seen(self, what):
        """What was told last of something: numbers."""
        self.played.until_logged("seen %s at" % what)
        told = re.findall(r"seen %s at ([-0-9 ]+)\." % re.escape(what), self.played.log())
        return [int(each) for each in told[-1].split()]

    def rested(self, what):
        """As `seen`, once it rests."""
        before = None
        while before != (place := self.seen(what)):
            before = place
            self.rest()
        return place

    def control(self, name):
        """The middle of a control, once it rests."""
        place = self.rested(name)
        return (place[0] + place[2]) // 2, (place[1] + place[3]) // 2

    def row(self, number):
        """The middle of a line of the outliner."""
        left, top, *_ = self.seen("Outliner pieces")
        return left + 55, top + 18 + 18 * number

    def spot(self, place):
        """A place of the world, as it is seen."""
        return self.seen("spot %g %g %g" % place)

    def nudge(self, right, down):
        self.tool("mousemove_relative", "--", right, down)
        self.rest(0.15)

    def look_down(self):
        """Turns the view to the ground: right button and mouse."""
        self.point((620, 300))
        self.rest()
        self.tool("mousedown", 3)
        self.rest(0.8)
        for _ in range(22):
            self.nudge(0, 40)
        self.tool("mouseup", 3)
        self.rest()

    def walk_until(self, arrives, what):
        """Holds W until the player is where he is wanted."""
        self.tool("keydown", "w")
        self.played.until(lambda: arrives(self.seen("player")[1] / 100), what)
        self.tool("keyup", "w")
        self.rest()

    def told(self, text, times=1):
        self.played.until_logged("Editor: " + text, times)
        self.rest()

    def told_in_hand(self, pattern):
        self.played.until_logged("seen hand %s at" % pattern)

    def picture(self, name):
        folder = os.environ.get("KV_PICTURES")
        if folder:
            self.rest(1)
            subprocess.run(["import", "-window", self.played.window, os.path.join(folder, name + ".png")],
                           env=dict(os.environ, DISPLAY=self.played.display.name), check=False)
