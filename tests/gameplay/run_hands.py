"""What the player's hands do, by recorded keys and mouse: doors, keys, notes, drawers, what is carried and thrown."""
import math
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

ROOM = """
import kaVel
import objects.GameObjects as place
from objects.player.Hands import handsOf


def build(coordinator):
    map = coordinator.loadMap('room')
    player = place.Player(coordinator, at=(0, 0, 0))
    place.Hud(coordinator)
    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'menu', 'ScriptComponent', frameCallback=lambda: look(coordinator, player))
    kaVel.subscribe('SoundMadeMessage', heard, kaVel.officeOf(coordinator))


def room(map):
    place.PartitioningGrid(map, size=(24, 0, 24))
    place.hear(map)
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(12, 0.5, 12))
    for x, z, wide, deep in ((0, 6, 12, 0.3), (0, -6, 12, 0.3), (6, 0, 0.3, 12), (-6, 0, 0.3, 12),
                             (-3.25, 2, 5.5, 0.18), (3.25, 2, 5.5, 0.18)):
        place.Block(map, 'stop', at=(x, 0, z), size=(wide, 3, deep))
    furnish(map)


def heard(message, name, place, maker):
    kaVel.log('heard %d %s %.4f' % (kaVel.getSystem('GameLoopSystem').frameNumber, name, place.w))


def furnish(map):
    pass


def look(coordinator, player):
    frame = kaVel.getSystem('GameLoopSystem').frameNumber
    if frame in NOTED:
        for name, value in told(coordinator, player).items():
            kaVel.log('note %d %s: %s' % (frame, name, value))


def mark(player):
    names = ('Use', 'Take', 'Hold', 'Held', 'Locked', 'Read')
    return ' '.join(name for name in names if player.getDescendantByPath('mark%s/graphics2' % name).visible)
"""

WINDOW = (128, 72)
E, ESCAPE, W, S, G, N = 69, 27, 87, 83, 71, 78


def play(world, level, events, frames, noted, **options):
    """What a run of the room has noted, frame by frame, and the run."""
    world.write("scripts/levels/Room.py", f"{ROOM}\n\nNOTED = {tuple(noted)}\n{level}")
    lines = "".join(f"{frame} {event}\n" for frame, event in sorted(events, key=lambda each: each[0]))
    world.write("input.txt", "input 1\nlevel Room\nseed 1\nwindow %d %d\n%s%d end\n" % (*WINDOW, lines, frames))
    run = world.run("Room", frames=frames, KAVEL_REPLAY=str(world.folder / "input.txt"), KAVEL_SIZE="%dx%d" % WINDOW,
                    KAVEL_VERBOSE="1", **options)
    run.expect_code(0)
    faults = [line for line in run.log.splitlines() if ": Error:" in line and "Player has no" not in line]
    assert not faults, faults[:5]
    notes = {}
    for frame, name, value in re.findall(r"note (\d+) (\w+): (.*)", run.log):
        notes.setdefault(int(frame), {})[name] = value
    return notes, run


def press(frame, key, frames=2):
    return [(frame, f"key {key} down"), (frame + frames, f"key {key} up")]


def turn(frame, yaw=0.0, pitch=0.0):
    """A move of the mouse that turns the view, degrees."""
    x, y = (round(math.radians(angle) / 3 * WINDOW[0]) for angle in (yaw, pitch))
    return [(frame, f"mouse {x} {y} 0 0 64 36")]


def drag(first, last, x, y):
    """The mouse moves on, pixels a frame."""
    return [(frame, f"mouse {x} {y} 0 0 64 36") for frame in range(first, last)]


DOOR = """
def furnish(map):
    place.HingedDoor(map, 'roomDoor', at=(0, 0, 2), key='roomKey')


def told(coordinator, player):
    door = coordinator.getDescendantByPath('room/roomDoor/physics')
    return dict(mark=mark(player), locked=door.locked, open=door.open, angle='%.3f' % abs(door.prevAngle),
                line=coordinator.getDescendantByPath('pocketNotice/graphics2').text)
"""


def test_a_locked_door_says_so_until_the_player_has_its_key_and_stays_unlocked(world):
    level = DOOR + """

def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 40:
        place.pocketsOf(coordinator).add('roomKey', 'the brass key')
    before(coordinator, player)
"""
    notes, run = play(world, level, [*press(10, E), *press(50, E), *press(70, E)], 145,
                      (8, 30, 60, 140))
    assert notes[8]["mark"] == "Locked"
    assert notes[30] == {"mark": "Locked", "locked": "True", "open": "False", "angle": "0.000", "line": "Locked."}
    assert notes[60]["mark"] == "Hold" and notes[60]["locked"] == "False" and notes[60]["open"] == "False", notes[60]
    assert notes[60]["line"] == "Unlocked with the brass key."
    assert notes[140]["open"] == "True" and float(notes[140]["angle"]) > 1, "a tap swings it open"
    run.expect("DoorLocked")


def test_use_that_is_held_leads_a_door_slowly_and_more_quietly_than_a_tap(world):
    level = DOOR.replace(", key='roomKey'", "")
    led, quiet = play(world, level, [(10, f"key {E} down"), *drag(25, 60, 0, -2), (120, f"key {E} up")], 130,
                      (20, 60, 100, 128))
    swung, loud = play(world, level, press(10, E), 60, (50,))
    padded, _ = play(world, level, [(frame, f"pad 0 {buttons} 0 0 0 0 0 {up}") for frame, buttons, up in
                                    ((10, 4096, 0), (25, 4096, 32767), (60, 4096, 0), (100, 0, 0))], 110, (20, 80, 108))
    angles = [float(led[frame]["angle"]) for frame in (20, 60, 100, 128)]
    assert led[60]["mark"] == "Held"
    assert angles[0] == 0 and 0.2 < angles[1] < 1.3, angles
    assert abs(angles[3] - angles[2]) < 0.02 and led[128]["open"] == "True", f"it stays where it was left: {led}"
    assert float(swung[50]["angle"]) > 0.5
    assert padded[20]["angle"] == "0.000" and padded[80]["mark"] == "Held" and float(padded[108]["angle"]) > 0.2, padded

    def loudness(run):
        return max(float(value) for value in re.findall(r"heard \d+ Door\w+ ([\d.]+)", run.log))

    assert loudness(quiet) < 0.5 * loudness(loud), (loudness(quiet), loudness(loud))


def test_a_key_and_a_note_go_into_the_pockets_and_stay_there_when_the_level_is_loaded_again(world):
    level = """
def furnish(map):
    place.Key(map, 'brassKey', at=(0, 1.2, 1.2), opens='roomKey', label='the brass key')
    place.Note(map, 'letter', at=(0, 1.0, 1.2), title='14 January', text='Nineteen chairs.')


def told(coordinator, player):
    from screens import Screens
    pockets, page = place.pocketsOf(coordinator), player.getDescendantByPath('sheet/text/graphics2')
    return dict(mark=mark(player), names=' '.join(pockets.names()), carried=len(player.getChild('pockets').children),
                page=page.text if page.visible else '', screens=' '.join(Screens.names(coordinator)),
                input=player.getComponent('player').useInput,
                there=sum(bool(coordinator.getDescendantByPath('room/' + name)) for name in ('brassKey', 'letter')),
                walked=player.getComponent('transform').position.z > 0.1)


def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 110:
        kaVel.getSystem('GameLoopSystem').queueLoadLevel('Room')
    before(coordinator, player)
"""
    notes, run = play(world, level, [*turn(4, pitch=17), *press(10, E), *turn(14, pitch=11), *press(30, E),
                                     (45, f"key {W} down"), *press(60, ESCAPE), (75, f"key {W} up"),
                                     *press(84, N), *press(94, ESCAPE)], 140, (8, 20, 50, 80, 90, 104, 135))
    assert notes[8]["mark"] == "Take"
    assert notes[20]["mark"] == "Read" and notes[20]["names"] == "roomKey"
    assert notes[50]["page"] == "Nineteen chairs." and notes[50]["input"] == "False" and notes[50]["mark"] == ""
    assert notes[50]["walked"] == "False", "who reads stands still"
    assert notes[80]["page"] == "" and notes[80]["input"] == "True" and notes[80]["walked"] == "True", notes[80]
    assert notes[90]["screens"] == "Notebook" and notes[104]["screens"] == "", "the notebook opens and closes"
    assert notes[135]["names"] == "roomKey letter" and notes[135]["carried"] == "2", notes[135]
    assert notes[135]["there"] == "0" and notes[135]["page"] == "", "they are gone, and nothing is read again"


CHEST = """
def furnish(map):
    chest = place.Chest(map, 'chest', at=(0, 0, 1.5), turn=180, keys={2: 'smallKey'})
    drawer = chest.getChild('drawer1')
    place.Key(drawer, 'key', at=place.inDrawer(drawer, 0, -0.08), opens='smallKey')


def told(coordinator, player):
    drawer = coordinator.getDescendantByPath('room/chest/drawer1')
    key = drawer.getChild('key')
    return dict(mark=mark(player), out='%.3f' % (1.5 - drawer.getComponent('transform').position.z),
                key='%.3f' % (1.58 - key.getComponent('transform').position.z) if key else 'taken',
                names=' '.join(place.pocketsOf(coordinator).names()),
                within=bool(key) and key.getComponent('boundingVolume').interact)


def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 150:
        kaVel.getSystem('GameLoopSystem').queueLoadLevel('Room')
    before(coordinator, player)
"""


def test_a_drawer_is_drawn_by_the_hand_with_what_lies_in_it_and_is_found_as_it_was_left(world):
    events = [*turn(3, pitch=32), (20, f"key {E} down"), *drag(36, 60, 0, 1), (90, f"key {E} up"),
              *press(110, E)]
    notes, run = play(world, CHEST, events, 180, (15, 60, 85, 105, 125, 175))
    assert notes[15]["mark"] == "Hold" and notes[15]["out"] == "0.000" and notes[15]["within"] == "False"
    assert notes[60]["mark"] == "Held" and 0.05 < float(notes[60]["out"]) < 0.32, notes[60]
    assert notes[85]["key"] == notes[85]["out"] and abs(float(notes[105]["out"]) - float(notes[85]["out"])) < 0.003
    assert notes[85]["within"] == "True", "an open drawer can be reached into"
    assert abs(float(notes[175]["out"]) - float(notes[105]["out"])) < 0.002, notes[175]
    assert notes[105]["mark"] == "Take" and notes[125]["names"] == notes[175]["names"] == "smallKey", notes
    _, tapped = play(world, CHEST, [*turn(3, pitch=32), *press(20, E)], 60, ())

    def loudness(run):
        return max(float(value) for value in re.findall(r"heard \d+ ScrapeWood ([\d.]+)", run.log))

    assert loudness(run) < 0.5 * loudness(tapped), "drawn by the hand, it is hardly heard"


CRATE = """
def furnish(map):
    place.Block(map, 'stand', at=(0, 0.4, 1.3), size=(0.4, 0.5, 0.4))
    place.LooseCrate(map, 'crate', at=(0, 0.9, 1.3))
    place.Block(map, 'wall', at=(0, 0, 2), size=(1.2, 3, 0.1))


def told(coordinator, player):
    at = coordinator.getDescendantByPath('room/crate/transform').position
    body = bool(coordinator.getDescendantByPath('room/crate/physics'))
    return dict(mark=mark(player), x=at.x, y=at.y, z=at.z, body=body)
"""


def test_a_crate_is_carried_before_the_eyes_out_of_walls_and_heard_where_it_is_thrown_to(world):
    events = [*turn(4, pitch=24), *press(10, E), *turn(30, pitch=-24), (40, f"key {W} down"), (130, f"key {W} up"),
              *press(140, S, 40), *press(190, G)]
    notes, run = play(world, CRATE, events, 280, (8, 30, *range(40, 140, 5), 185, 275))
    assert notes[8]["mark"] == "Hold" and notes[30]["mark"] == "Held" and notes[30]["body"] == "False"
    farthest = max(float(notes[frame]["z"]) for frame in range(40, 140, 5))
    assert farthest + 0.16 < 1.95 + 0.02, f"it stays out of the wall: {farthest}"
    assert notes[185]["mark"] == "Held" and notes[275]["body"] == "True"
    assert abs(float(notes[275]["y"]) - 1.06) < 0.02 and 1.0 < float(notes[275]["z"]) < 1.95, "on the stand again"
    landed = [int(frame) for frame in re.findall(r"heard (\d+) ImpactWood", run.log) if int(frame) > 12]
    assert landed and min(landed) > 192, f"it sounds where it lands, and not in the hand: {landed}"


THIN = """
def furnish(map):
    place.Block(map, 'wall', at=(0, 0, 1.2), size=(2, 3, 0.02))
    place.LooseBottle(map, 'bottle', at=(0, 1.45, 0.9))


def told(coordinator, player):
    map, pockets = coordinator.getChild('room'), place.pocketsOf(coordinator)
    bolt, shards = map.getChild('thrownBolt1'), map.getChild('shardsOfbottle')
    where = bolt.getComponent('transform').position if bolt else None
    return dict(bolts=pockets.count('bolt'), z=where.z if where else '', height=where.y if where else '',
                shards=bool(shards), bottle=bool(map.getChild('bottle')))


def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 1:
        place.pocketsOf(coordinator).add('bolt')
    before(coordinator, player)
"""


def test_what_is_thrown_passes_no_wall_however_thin_and_a_bottle_breaks_on_it(world):
    bolts, run = play(world, THIN.replace("at=(0, 1.45, 0.9)", "at=(3, 0, 3)"), press(10, G), 130, (5, 125))
    assert bolts[5]["bolts"] == "1" and bolts[125]["bolts"] == "0"
    assert float(bolts[125]["z"]) < 1.2 and float(bolts[125]["height"]) < 0.06, bolts[125]
    run.expect("BoltOnStone")
    bottles, run = play(world, THIN, [*press(10, E), *press(40, G)], 80, (5, 75))
    assert bottles[75]["shards"] == "True" and bottles[75]["bottle"] == "False" and bottles[75]["bolts"] == "1"
    run.expect("BreakGlass")


def test_hands_do_without_what_a_player_lacks_and_let_go_of_everything_at_death(world):
    for part in ("camera", "physics", "player", "hands", "pockets", "sheet", "palm", "markHeld"):
        level = CRATE + f"""

def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 25:
        player.getDescendantByPath({part!r}).murder()
"""
        events = [*turn(4, pitch=24), *press(10, E), *press(30, G), *press(36, ESCAPE), *press(40, E)]
        play(world, level, events, 50, ())
    level = CRATE + """

def look(coordinator, player, before=look):
    if kaVel.getSystem('GameLoopSystem').frameNumber == 40:
        coordinator.getManager('graphics2').dissolveAmount = 0.1
        player.getComponent('physics').dead = True
    before(coordinator, player)
"""
    notes, _ = play(world, level, [*turn(4, pitch=24), *press(10, E)], 60, (30, 55))
    assert notes[30]["body"] == "False" and notes[55]["body"] == "True", notes


if __name__ == "__main__":
    game.main(dict(globals()))
