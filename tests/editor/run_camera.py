"""A room is looked at by the mouse, its things are placed by numbers that are typed, and it is opened from above."""
import math
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import display
import game
from hand import CHEAP, Hand

#: A room with a ceiling; what it tells in a window is where the crate and the controls are seen.
LEVEL = """
import kaVel
import objects.GameObjects as place


def build(coordinator):
    coordinator.loadMap('house')
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.5)
    place.Player(coordinator, at=(0, 0, -2))
    teller = kaVel.make('Entity', parent=coordinator, name='teller')
    kaVel.addComponent(teller, 'cursor', 'ScriptComponent', frameCallback=lambda: tell(coordinator))


def house(map):
    kaVel.configure(map.getComponent('transform'), scale=kaVel.Vec4(20, 12, 20, 0))
    place.Room(map, 'room', size=(6, 5), openings=[{'kind': 'door', 'wall': 1, 'along': 2}])
    place.CargoCrate(map, 'crate', at=(0, 0, 2))


_told = {}


def note(what, *numbers):
    if _told.get(what) != numbers:
        _told[what] = numbers
        kaVel.log('seen %s at %s.' % (what, ' '.join('%d' % each for each in numbers)))


def tell(level):
    from editor.Editor import Editor
    editor = Editor.openedIn(level)
    if not editor or not editor.isOpen:
        return
    crate, component, window = editor.pieces.named('crate'), editor.component, kaVel.getSystem('WindowSystem2')
    low, high = component.boundsMinOf(crate.root), component.boundsMaxOf(crate.root)
    seen = component.toScreen((low + high) * 0.5)
    note('crate', seen.x, seen.y)
    eye, turn, pitch = editor.camera.standing()
    note('eye', *(100 * each for each in eye), turn, pitch)
    note('given', *(100 * each for each in crate.arguments['at']), crate.arguments.get('turn', 0))
    note('under the middle', 100 * component.placeUnder(window.width / 2, window.height / 2).y)
    note('cut', editor.ceilings.isOpen)
    note('middle', window.width / 2, window.height / 2)
    for control in ('at x', 'at y', 'at z', 'turn'):
        at = kaVel.getSystem('TweakSystem').makeBar('Editor Piece').whereIs(control)
        if at.z:
            note('Piece ' + control, at.x, at.y, at.z, at.w)
"""


def test_a_room_is_gone_round_by_mouse_placed_by_numbers_and_seen_into_from_above(world):
    world.write("scripts/levels/Looked.py", LEVEL)
    world.write("config/mornal/settings.txt", CHEAP)
    with display.Display("1280x720") as screen, display.Game(world, screen, "Looked") as played:
        played.focus()
        hand = Hand(played)
        hand.open_editor("Looked")
        look_about(hand)
        type_numbers(hand)
        look_from_above(hand)
        assert "could not do that" not in played.log(), played.log()[-3000:]


def look_about(hand):
    """Nearer, across and round what is selected."""
    hand.click(hand.seen("crate"))
    hand.press("f")
    hand.played.until(lambda: math.dist(hand.seen("crate"), hand.seen("middle")) < 8, "the crate in the middle")
    near, away = hand.rested("crate"), distance(hand)
    assert away < 3, away

    hand.drag((640, 500), (120, -48), button=2)
    shifted = hand.rested("crate")
    assert math.dist(shifted, (near[0] + 120, near[1] - 48)) < 8, (near, shifted)

    turn = hand.rested("eye")[3]
    hand.tool("keydown", "alt")
    hand.drag((640, 500), (160, 0))
    hand.tool("keyup", "alt")
    assert abs(hand.rested("eye")[3] - turn) > 20, "it goes round the crate"
    assert math.dist(hand.seen("crate"), shifted) < 8, "which stays where it is seen"
    hand.picture("round")

    hand.point(hand.seen("crate"))
    for _ in range(3):
        hand.tool("click", 5)
        hand.rest(0.3)
    assert distance(hand) > away * 1.2, "away by the wheel"


def distance(hand):
    """Metres from the camera to the crate's floor."""
    eye, given = hand.rested("eye"), hand.seen("given")
    return math.dist(eye[:3], given[:3]) / 100


def type_numbers(hand):
    """Two places and an angle, from field to field with Tab; undone by Ctrl+Z while no field is typed into."""
    before = hand.seen("given")
    hand.write(hand.control("Piece at x"), "1.5")
    hand.press("Tab")
    hand.rest(1)
    hand.press("Tab")
    hand.rest(1)
    hand.tool("type", "--delay", 60, "0.25")
    hand.rest(1)
    hand.press("Return")
    hand.write(hand.control("Piece turn"), "30")
    hand.press("Return")
    assert hand.rested("given") == [150, 0, 25, 30], hand.seen("given")
    for _ in range(3):
        hand.press("z", "ctrl")
    assert hand.rested("given") == before, hand.seen("given")


def look_from_above(hand):
    """Up through the ceiling by the right button and E: it opens by itself, and is there again for who asks for it."""
    assert hand.rested("cut") == [0]
    hand.point(hand.seen("middle"))
    hand.rest(1)
    hand.tool("mousedown", 3)
    hand.rest(0.5)
    hand.tool("keydown", "e")
    hand.played.until(lambda: hand.seen("eye")[1] > 600, "a camera high above the room")
    hand.tool("keyup", "e")
    while hand.seen("eye")[4] < 80:
        hand.nudge(0, 30)
    hand.tool("mouseup", 3)
    hand.played.until(lambda: hand.rested("cut") == [1], "a room without its ceiling")
    hand.picture("above")
    assert hand.rested("under the middle")[0] < 230, "one points into the room, too"
    hand.press("c")
    hand.played.until(lambda: hand.rested("cut") == [0], "a ceiling")
    assert hand.rested("under the middle")[0] > 290, "and onto the ceiling where that is shown"


if __name__ == "__main__":
    game.main(dict(globals()))
