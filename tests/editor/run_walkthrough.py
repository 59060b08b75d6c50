"""A small level is built from nothing by mouse and keys, saved, played, changed in its file, loaded anew and undone.

With KV_PICTURES set to a folder, a picture of each step is left there.
"""
import os
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import display
import game

#: What is clicked, pixels of a window of 1280 by 720.
NAME, MAKE, WRITE = (705, 149), (500, 172), (190, 139)
FIRST_ROW, LAST_OF_SHELL = (64, 268), (64, 448)
OPENINGS, SEARCH, FIRST_PICTURE = (1180, 437), (620, 461), (326, 533)
DOORS = ("({'kind': 'door', 'wall': 4, 'along': 2.5, 'leaf': 'westDoor'}, "
         "{'kind': 'door', 'wall': 5, 'along': 2.5, 'leaf': 'eastDoor'})")
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

    def write(self, place, text):
        self.click(place)
        self.rest(1.5)
        self.press("a", "ctrl")
        self.tool("type", "--delay", 60, text)
        self.rest(1)

    def look_down(self):
        """Turns the view to the ground: right button and mouse."""
        self.point((620, 300))
        self.rest()
        self.tool("mousedown", 3)
        self.rest(0.8)
        for _ in range(16):
            self.tool("mousemove_relative", "--", 0, 40)
            self.rest(0.15)
        self.tool("mouseup", 3)
        self.rest()

    def told(self, text, times=1):
        self.played.until_logged("Editor: " + text, times)
        self.rest()

    def picture(self, name):
        folder = os.environ.get("KV_PICTURES")
        if folder:
            self.rest(1)
            subprocess.run(["import", "-window", self.played.window, os.path.join(folder, name + ".png")],
                           env=dict(os.environ, DISPLAY=self.played.display.name), check=False)


def draw_rooms(hand):
    """One room from corner to corner, and two walls within it."""
    hand.press("b")
    for corner in ((430, 190), (850, 190), (900, 560), (380, 560), (430, 190)):
        hand.click(corner)
    hand.told("Place room")
    for number, wall in enumerate((((560, 190), (550, 560)), ((720, 190), (730, 560))), 1):
        for end in wall:
            hand.click(end)
        hand.press("Return")
        hand.told("Draw walls into room", number)
    hand.picture("3-rooms")


def furnish(hand):
    """Lights, a trigger, moths and a note from the catalogue, with the room out of the way."""
    hand.press("h")
    hand.told("Hide room")
    hand.press("t")
    for pattern, places in (("LitCandelabrum", ((500, 240), (640, 240), (780, 240))), ("TriggerArea", ((780, 310),)),
                            ("Swarm", ((500, 300),)), ("Note", ((780, 370),))):
        hand.write(SEARCH, pattern)
        hand.click(FIRST_PICTURE)
        for place in places:
            hand.click(place)
        hand.told("Place " + pattern[0].lower() + pattern[1:])
    hand.told("Place litCandelabrum3")
    hand.picture("5-furnished")
    hand.press("Escape")
    hand.press("h", "alt")
    hand.told("Show room")


def test_a_level_is_built_from_nothing_saved_played_and_changed_in_its_file(world):
    world.write("config/mornal/settings.txt", CHEAP)
    level = world.folder / "scripts" / "levels" / "Cottage.py"
    with display.Display() as screen, display.Game(world, screen, "FirstRoom") as played:
        played.focus()
        hand = Hand(played)
        hand.rest(3)
        hand.open_editor("FirstRoom")
        hand.press("n", "ctrl")
        hand.picture("1-levels")
        hand.write(NAME, "Cottage")
        hand.click(MAKE)
        hand.told("Cottage is edited")
        hand.click(FIRST_ROW)
        hand.tool("keydown", "shift")
        hand.rest(1.5)
        hand.click(LAST_OF_SHELL)
        hand.rest(2.5)
        hand.tool("keyup", "shift")
        hand.press("Delete")
        hand.told("Delete 11 things")
        hand.look_down()
        hand.click((67, 268))  # the player, who is gone to
        hand.press("f")
        for _ in range(10):
            hand.click((640, 360), 5)
        hand.press("i")
        hand.picture("2-nothing")
        draw_rooms(hand)
        hand.press("q")
        hand.write(OPENINGS, DOORS)
        hand.press("Return")
        hand.told("Change room")
        hand.picture("4-doors")
        furnish(hand)
        hand.press("s", "ctrl")
        hand.rest(2)
        hand.picture("6-diff")
        hand.click(WRITE)
        hand.told("Saved")
        source = level.read_text(encoding="utf-8")
        compile(source, level.name, "exec")
        for call in ("place.Room(map, 'room',", "'leaf': 'westDoor'", "place.LitCandelabrum(map, 'litCandelabrum3',",
                     "place.TriggerArea(map, 'triggerArea',", "place.Swarm(map, 'swarm',", "place.Note(map, 'note',"):
            assert source.count(call) == 1, f"{call} in\n{source}"
        assert "northWall" not in source, source

        hand.press("F8")
        hand.rest(2)
        hand.picture("7-played")
        hand.press("F8")
        hand.told("Cottage is edited", 2)
        level.write_text(source.replace("'note',", "'letter',"), encoding="utf-8")
        hand.press("F5")
        hand.told("Cottage is edited", 3)
        hand.picture("8-loaded-anew")
        hand.press("z", "ctrl")
        hand.told("Undone: ")
        assert "could not do that" not in played.log(), played.log()[-3000:]
        assert played.quit() == 0


if __name__ == "__main__":
    game.main(dict(globals()))
