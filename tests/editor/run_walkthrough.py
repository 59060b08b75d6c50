"""A small level is built from nothing by mouse and keys, saved, played, changed in its file, loaded anew and undone.

With KV_PICTURES set to a folder, a picture of each step is left there.
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import display
import game
from hand import CHEAP, Hand

#: Appended to the editor: it tells the test where controls and places of the level are seen, and what was played.
TELLER = """

_told = {}
_CONTROLS = {'Levels': ('Name', 'Make it'), 'Outliner': ('pieces',), 'Tool': ('closing',), 'Catalogue': ('patterns',),
             'Piece': ('do', 'text'), 'Save': ('Write',)}
_SPOTS = SPOTS


def _tell(what, *numbers):
    if _told.get(what) != numbers:
        _told[what] = numbers
        kaVel.log('seen %s at %s.' % (what, ' '.join('%d' % each for each in numbers)))


def _tellAll(self):
    bars = kaVel.getSystem('TweakSystem')
    for bar, controls in _CONTROLS.items():
        for name in controls:
            place = bars.makeBar('Editor ' + bar).whereIs(name)
            if place.z and self.isOpen:
                _tell(bar + ' ' + name, place.x, place.y, place.z, place.w)
    for spot in _SPOTS if self.isOpen else ():
        seen = self.component.toScreen(kaVel.Vec4(*spot, 1))
        _tell('spot %g %g %g' % spot, seen.x, seen.y)
    entry = getattr(self.tool, 'entry', None)
    if entry:
        _tell('hand ' + entry.name, 1)
    from objects.player.Pockets import pocketsOf
    viewer = standing.viewerIn(self.level)
    if viewer and not self.isOpen:
        at, turn, pitch = viewer.standing()
        _tell('player', 100 * at[0], 100 * at[2], pitch)
        _tell('note kept', pocketsOf(self.level).has('note'))
    for name in ('door1', 'door2'):
        walls = self.pieces.named('walls') if any(each.name == 'walls' for each in self.pieces.all()) else None
        leaf = walls and walls.root and walls.root.getDescendantByPath(name)
        if leaf:
            _tell(name + ' open', leaf.getComponent('physics').open)


_plainFrame = Editor._doFrame


def _tellingFrame(self):
    _plainFrame(self)
    if kaVel.getSystem('GameLoopSystem').frameNumber % 3 == 0:
        _tellAll(self)


Editor._doFrame = _tellingFrame
import standing
"""
#: Of the house: metres from west to east, and where its walls run, from south to north.
WEST, EAST, SOUTH, MIDDLE, INNER, NORTH = -2.5, 2.5, -4, -1, 1.5, 3.75
HIGH = 3  # metres, of walls
DOORS = ((0, HIGH, MIDDLE), (0, HIGH, INNER))
CORNERS = ((WEST, 0, SOUTH), (EAST, 0, SOUTH), (EAST, 0, NORTH), (WEST, 0, NORTH))
WALLS = (((WEST, 0, MIDDLE), (EAST, 0, MIDDLE)), ((WEST, 0, INNER), (EAST, 0, INNER)))
LIGHTS = ((1.5, 0, -3), (1.5, 0, 0.25), (1.5, 0, 2.5))
TRIGGER, MOTHS, DESK, NOTE = (0, 0, 0.25), (-1.5, 0, 2.5), (0, 0, 3.25), (0, 0.75, 3)
SPOTS = (*DOORS, *CORNERS, *WALLS[0], *WALLS[1], *LIGHTS, TRIGGER, MOTHS, DESK, NOTE)
#: What is typed into the bar of a piece.
SAID = {"TriggerArea": ("do", "(('show', 'Somebody was here.'), ('open', 'door2'))"),
        "Note": ("text", "The key is under the clock.")}


def draw_house(hand):
    """Four walls from corner to corner, two within them with a door each, and a floor."""
    hand.press("b")
    left, top, right, bottom = hand.seen("Tool closing")
    hand.click((left + 20, (top + bottom) // 2))
    hand.click((left + 20, bottom + (bottom - top) * 3 // 2))  # walls alone: from above one sees into them
    for corner in (*CORNERS, CORNERS[0]):
        hand.click(hand.spot(corner))
    hand.told("Place walls")
    for number, wall in enumerate(WALLS, 1):
        for end in wall:
            hand.click(hand.spot(end))
        hand.press("Return")
        hand.told("Draw walls into walls", number)
    hand.picture("03-walls")
    hand.press("n")
    for number, door in enumerate(DOORS, 1):
        hand.point(hand.spot(door))
        if number == 1:
            hand.picture("04-a-door-to-be")
        hand.click(hand.spot(door))
        hand.told("Cut a door in walls", number)
    hand.picture("05-doors")
    hand.press("m")
    (x, y), (x1, y1) = hand.spot(CORNERS[0]), hand.spot(CORNERS[2])
    hand.point((x, y))
    hand.rest()
    hand.tool("mousedown", 1)
    hand.rest(0.8)
    for part in (1, 2, 3, 4):
        hand.point((x + (x1 - x) * part // 4, y + (y1 - y) * part // 4))
        hand.rest(0.3)
    hand.tool("mouseup", 1)
    hand.told("Place floorArea")
    hand.press("q")
    hand.picture("06-floor")


def furnish(hand):
    """Lights, a trigger, moths, a desk and a note on it, all from the catalogue."""
    hand.press("t")
    for pattern, places in (("LitCandelabrum", LIGHTS), ("Swarm", (MOTHS,)), ("Desk", (DESK,)), ("Note", (NOTE,)),
                            ("TriggerArea", (TRIGGER,))):
        left, top, right, _ = hand.seen("Catalogue patterns")
        hand.write(((left + right) // 2, top - 14), pattern)
        hand.click((left + 50, top + 50))
        hand.told_in_hand(pattern)
        for place in places:
            hand.click(hand.spot(place))
        hand.told("Place " + pattern[0].lower() + pattern[1:])
        if pattern in SAID:
            control, words = SAID[pattern]
            hand.write(hand.control("Piece " + control), words)
            hand.press("Return")
            hand.told("Change " + pattern[0].lower() + pattern[1:])
        hand.picture("07-" + pattern)
    hand.told("Place litCandelabrum3")
    hand.press("Escape")
    hand.picture("08-furnished")


def play(hand):
    """Through the first door, which E opens, into the trigger, which opens the second, and on to the note."""
    hand.press("F8")
    hand.rest(3)
    hand.picture("10-played")
    hand.walk_until(lambda z: z > MIDDLE - 0.9, "the player before the first door")
    hand.rest(2)
    hand.press("e")
    hand.played.until(lambda: hand.seen("door1 open") == [1], "an open door")
    hand.rest(3)
    hand.picture("11-the-door-opens")
    hand.walk_until(lambda z: z > TRIGGER[2] - 0.5, "the player in the second room")
    hand.played.until(lambda: hand.seen("door2 open") == [1], "the door that the trigger opens")
    hand.picture("12-in-the-trigger")
    hand.rest(3)
    hand.walk_until(lambda z: z > DESK[2] - 1.1, "the player before the desk")
    for _ in range(22):  # until he looks at it, however near he stands
        hand.nudge(0, 40)
        hand.press("e")
        hand.rest()
        if hand.seen("note kept") == [1]:
            break
    assert hand.seen("note kept") == [1], hand.played.log()[-3000:]
    hand.picture("13-the-note")
    hand.press("e")
    hand.rest()


def test_a_level_is_built_from_nothing_saved_played_and_changed_in_its_file(world):
    world.write("config/mornal/settings.txt", CHEAP)
    editor = world.folder / "scripts" / "editor" / "Editor.py"
    script = editor.read_text(encoding="utf-8")
    world.write("scripts/editor/Editor.py", script + TELLER.replace("= SPOTS", f"= {SPOTS}"))
    level = world.folder / "scripts" / "levels" / "Cottage.py"
    with display.Display() as screen, display.Game(world, screen, "FirstRoom") as played:
        played.focus()
        hand = Hand(played)
        hand.rest(3)
        hand.open_editor("FirstRoom")
        hand.press("n", "ctrl")
        hand.picture("01-levels")
        hand.write(hand.control("Levels Name"), "Cottage")
        hand.click(hand.control("Levels Make it"))
        hand.told("Cottage is edited")
        hand.click(hand.row(1))
        hand.tool("keydown", "shift")
        hand.rest(1.5)
        hand.click(hand.row(11))
        hand.rest(2.5)
        hand.tool("keyup", "shift")
        hand.press("Delete")
        hand.told("Delete 11 things")
        hand.look_down()
        hand.click(hand.row(1))  # the player, who is gone to
        hand.press("f")
        while hand.spot(CORNERS[2])[1] < 78:  # until the house that is to be is seen below the toolbar
            hand.click((640, 360), 5)
        hand.press("i")
        hand.picture("02-nothing")
        draw_house(hand)
        furnish(hand)
        hand.press("s", "ctrl")
        hand.picture("09-diff")
        hand.click(hand.control("Save Write"))
        hand.told("Saved")
        source = level.read_text(encoding="utf-8")
        compile(source, level.name, "exec")
        for call in ("place.Walls(map, 'walls',", "'leaf': 'door1'", "'leaf': 'door2'",
                     "place.FloorArea(map, 'floorArea',", "place.LitCandelabrum(map, 'litCandelabrum3',",
                     "place.TriggerArea(map, 'triggerArea',", "The key is under the clock.",
                     "place.Swarm(map, 'swarm',", "place.Note(map, 'note',"):
            assert source.count(call) == 1, f"{call} in\n{source}"
        assert "northWall" not in source, source

        play(hand)
        hand.press("F8")
        hand.told("Cottage is edited", 2)
        level.write_text(source.replace("'note',", "'letter',"), encoding="utf-8")
        hand.press("F5")
        hand.told("Cottage is edited", 3)
        hand.picture("14-loaded-anew")
        hand.press("z", "ctrl")
        hand.told("Undone: ")
        assert "could not do that" not in played.log(), played.log()[-3000:]
        assert played.quit() == 0


if __name__ == "__main__":
    game.main(dict(globals()))
