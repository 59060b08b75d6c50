"""How the player's body goes: stairs, slopes, doorways, corners and low places, by keys and by a pad."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from run_player import ROOM, notes, play, press

W, A, S, D, Q, C, SHIFT, CTRL = 87, 65, 83, 68, 81, 67, 16, 17
SMALL = (64, 36)

WATCH = """
def look(coordinator, player):
    place_, eye, body = player.getComponent('transform').position, player.getDescendantByPath('camera/transform'), \\
        player.getComponent('physics')
    half = player.getComponent('boundingVolume').hitBox.y / 2
    kaVel.log('seen %.5f %.5f %.5f %.5f %d' % (place_.x, place_.y - half, place_.z, eye.position.y, body.isOnGround()))
"""


def seen(run):
    """Of each frame: x, height and z of the feet, height of the eye, and whether he stands."""
    return [tuple(float(value) for value in line.split()) for line in re.findall(r"seen (.*)", run.log)]


STAIRS = WATCH + """
def furnish(map):
    place.Stairs(map, 'stairs', at=(3, 0, -2), turn=0, steps=9, rise=0.17, going=0.28, width=1.2)
    place.Block(map, 'landing', at=(3, 0, 1.24), size=(2, 1.53, 2))
    place.Stairs(map, 'down', at=(3, 0, 4.48), turn=180, steps=9, rise=0.17, going=0.28, width=1.2)
    place.Block(map, 'beam', at=(0, 1.25, -2), size=(4, 0.4, 0.4))


def begin(coordinator, player):
    place.visitorOf(coordinator).goTo(START, turn=TURN)
"""


def at_rate(world, rate):
    path = world.folder / "scripts" / "GameConfig.py"
    path.write_text(re.sub(r"fixedFrameRate = \d+", f"fixedFrameRate = {rate}", path.read_text()))


def test_stairs_are_walked_up_and_down_without_a_hop_and_a_slope_holds_who_stands_on_it(world):
    world.write("scripts/levels/Room.py", ROOM + STAIRS.replace("START", "(3, 0, -3.5)").replace("TURN", "0"))
    run = play(world, [(5, f"key {W} down"), (120, f"key {W} up"), (210, f"key {W} down")], 520, window=SMALL)
    frames = seen(run)
    assert max(frame[1] for frame in frames) > 1.52 and frames[-1][2] > 5.3, frames[-1]
    assert all(frame[4] for frame in frames[2:]), "he never leaves the ground"
    stood = frames[185:208]
    assert 0.2 < stood[0][1] < 1.5, f"he stands on the stairs: {stood[0]}"
    slid = max(abs(frame[axis] - stood[0][axis]) for frame in stood for axis in range(3))
    assert slid < 1e-3, f"he slides by {slid} m: {stood[0]} {stood[-1]}"
    steps = [after[3] - before[3] for before, after in zip(frames, frames[1:])]
    assert max(map(abs, steps)) < 0.03, "the view jumps"
    jerks = [abs(after - before) for before, after in zip(steps, steps[1:])]
    assert max(jerks) < 0.015, max(jerks)


def test_a_course_over_stairs_crouched_and_in_a_sprint_ends_at_the_same_place_at_every_frame_rate(world):
    world.write("scripts/levels/Room.py", ROOM + STAIRS.replace("START", "(0, 0, -4)").replace("TURN", "0"))
    ends = []
    for rate in (30, 60, 120, 240):
        at_rate(world, rate)
        t = rate // 10
        events = [*press(t, CTRL, t), (3 * t, f"key {W} down"), (33 * t, f"key {W} up"), *press(35 * t, CTRL, t),
                  *press(40 * t, S, 12 * t), (40 * t, f"key {D} down"), (40 * t, f"key {SHIFT} down"),
                  (52 * t, f"key {SHIFT} up"), (54 * t, f"key {D} up")]
        frames = seen(play(world, events, 62 * t, window=SMALL))
        assert any(-2.2 < frame[2] < -1.8 and frame[3] < 1.25 for frame in frames), "he went under the beam"
        ends.append(frames[-1])
    for end in ends:
        assert max(abs(a - b) for a, b in zip(end[:4], ends[0])) < 0.02, ends


DOORWAY = """
import math

TRIES = [(offset, angle) for offset in (-0.3, -0.2, -0.1, 0.0, 0.12, 0.22, 0.3) for angle in (-40, -20, 0, 20, 40)]
_through, _try = [], [0, 0]


def furnish(map):
    for x, width in ((-3.2, 5.6), (3.2, 5.6)):
        place.Block(map, 'jamb', at=(x, 0, 0), size=(width, 3, 0.25))
    place.Block(map, 'lintel', at=(0, 2.1, 0), size=(0.8, 0.9, 0.25))


def look(coordinator, player):
    visitor, at = place.visitorOf(coordinator), player.getComponent('transform').position
    number, frame = divmod(frameNumber() - 5, 170)
    if number >= len(TRIES) or number < 0:
        return
    offset, angle = TRIES[number]
    if frame == 0:
        way = math.radians(angle)
        visitor.goTo((offset - 1.2 * math.tan(way), 0, -1.2), turn=angle)
    if frame == 169:
        kaVel.log('through %g %g %s' % (offset, angle, at.z > 0.4))
"""


def test_a_doorway_of_80_centimetres_catches_nobody_who_walks_at_it(world):
    world.write("scripts/levels/Room.py", ROOM + DOORWAY)
    run = play(world, [(3, f"key {W} down")], 35 * 170 + 10, window=SMALL)
    tries = re.findall(r"through (\S+) (\S+) (\w+)", run.log)
    caught = [(offset, angle) for offset, angle, through in tries if through != "True"]
    assert len(tries) == 35 and not caught, caught


def test_nothing_shakes_who_is_pressed_into_a_corner_and_a_sprint_ends_at_the_wall(world):
    world.write("scripts/levels/Room.py", ROOM + WATCH + """
def begin(coordinator, player):
    place.visitorOf(coordinator).goTo((4.5, 0, 4.5), turn=TURN)
""".replace("TURN", "31"))
    run = play(world, [(5, f"key {SHIFT} down"), (5, f"key {W} down"), (5, f"key {D} down")], 300, window=SMALL)
    frames = seen(run)
    rest = frames[200:]
    assert all(max(frame[axis] for frame in rest) - min(frame[axis] for frame in rest) < 5e-4 for axis in range(4)), \
        rest[:4]
    assert max(max(frame[0], frame[2]) for frame in frames) < 5.85, "within the walls"


HEAD = """
def furnish(map):
    place.Block(map, 'ledge', at=(0, 0, -4), size=(2, 0.9, 2))
    place.Block(map, 'beside', at=(3.6, 0, 3), size=(0.4, 3, 2))


def begin(coordinator, player):
    place.visitorOf(coordinator).goTo((0, 0.9, -3.3), turn=0)


def look(coordinator, player):
    visitor, t = place.visitorOf(coordinator), RATE // 10
    if frameNumber() in (30 * t, 50 * t):
        visitor.goTo((0, 0, 3) if frameNumber() == 30 * t else (3.1, 0, 3), turn=0)
    feet = player.getComponent('transform').position.y - player.getComponent('boundingVolume').hitBox.y / 2
    eye = player.getDescendantByPath('camera/transform').position
    kaVel.log('head %.5f %.5f %.5f %.5f' % (eye.x - player.getComponent('transform').position.x, eye.y - feet, feet,
                                            player.getComponent('player').fatigue))
"""


def test_a_landing_dips_a_lean_stops_at_a_wall_and_breath_goes_and_comes_alike_at_every_frame_rate(world):
    told = []
    for rate in (30, 60, 120, 240):
        at_rate(world, rate)
        world.write("scripts/levels/Room.py", ROOM + HEAD.replace("RATE", str(rate)))
        t = rate // 10
        events = [(3 * t, f"key {W} down"), (13 * t, f"key {W} up"),  # off the ledge
                  *press(35 * t, Q, 10 * t), *press(55 * t, Q, 10 * t), *press(55 * t + 10 * t, C, 10 * t),
                  (80 * t, f"key {S} down"), (80 * t, f"key {SHIFT} down"), (100 * t, f"key {SHIFT} up"),
                  (100 * t, f"key {S} up")]
        run = play(world, events, 160 * t, window=SMALL)
        frames = [tuple(map(float, line.split())) for line in re.findall(r"head (.*)", run.log)]
        fell = next(number for number, frame in enumerate(frames) if frame[2] < 0.05)
        rest = frames[29 * t][1]
        dip = rest - min(frame[1] for frame in frames[fell:28 * t])
        lean = [frames[number * t][0] for number in (44, 64, 74)]
        told.append((dip, *lean, frames[100 * t][3], frames[158 * t][3]))
        assert 0.03 < dip < 0.3 and abs(frames[fell + 12 * t][1] - rest) < 0.005, f"{dip}: it dips and comes back"
        assert lean[0] < -0.2 and lean[1] < -0.2, lean
        assert 0.02 < lean[2] < 0.16, f"{lean[2]}: towards the wall no farther than there is room"
        assert told[-1][4] > 1.0 and told[-1][5] < told[-1][4] - 0.3, "breath is spent in a sprint and comes again"
    for other in told[1:]:
        assert max(abs(a - b) for a, b in zip(told[0], other)) < 0.05, told


def test_who_crouches_under_something_stands_up_where_there_is_room_again(world):
    world.write("scripts/levels/Room.py", ROOM + STAIRS.replace("START", "(0, 0, -3)").replace("TURN", "0"))
    events = [*press(5, CTRL), (20, f"key {W} down"), (80, f"key {W} up"), *press(90, CTRL), (200, f"key {W} down")]
    frames = seen(play(world, events, 360, window=SMALL))
    assert -2.5 < frames[150][2] < -1.5 and frames[150][3] < 1.2, f"he stays down under the beam: {frames[150]}"
    assert frames[-1][3] > 1.5 and frames[-1][2] > -1.5, f"and stands up behind it: {frames[-1]}"


def test_a_pad_walks_looks_runs_crouches_and_switches_and_its_removal_lets_go_of_all(world):
    world.write("scripts/levels/Room.py", ROOM + """
import math


def look(coordinator, player):
    visitor, component = place.visitorOf(coordinator), player.getComponent('player')
    at = player.getComponent('transform').position
    kaVel.log('pad %d %.3f %.3f %.3f %.3f %s %s %s' % (
        frameNumber(), at.x, at.z, visitor.yaw, visitor.pitch, component.isCrouched(), component.isSprinting(),
        component.hasFlashlight))
""")
    stick = 32767
    events = [(2, f"pad 0 0 0 0 0 {stick // 5} 0 0"), (20, "pad 0 0x1000 0 0 0 0 0 0"), (24, "pad 0 0 0 0 0 0 0 0"),
              (60, f"pad 0 0 0 0 0 {stick} 0 0"), (100, f"pad 0 0 255 0 0 {stick} 0 0"),
              (130, f"pad 0 0 0 0 0 0 {stick} 0"), (160, f"pad 0 0 0 0 0 0 0 {stick}"),
              (180, "pad 0 0x2000 0 0 0 0 0 0"), (184, "pad 0 0 0 0 0 0 0 0"),
              (220, f"pad 0 0 255 0 0 {stick} 0 0"), (240, "unplug 0")]
    run = play(world, events, 300, window=(640, 360))
    rows = {int(row[0]): row for row in re.findall(r"pad (\d+) (\S+) (\S+) (\S+) (\S+) (\w+) (\w+) (\w+)", run.log)}
    z = lambda frame: float(rows[frame][2])
    assert z(19) == 0.0, "a stick within its dead zone asks for nothing"
    assert rows[40][7] == "True", "the button takes the flashlight"
    assert z(99) > 0.6 and rows[120][6] == "True" and z(128) - z(115) > 1.5 * (z(99) - z(86)), "it walks, and runs"
    turned, looked = float(rows[158][3]), float(rows[178][4])
    assert 0.8 < turned < 1.6 and -1.2 < looked < -0.3, (turned, looked)
    assert rows[200][5] == "True" and rows[230][5] == "False", "crouches, and a run stands him up"
    assert rows[270][6] == "False" and z(299) - z(280) < 1e-3, "without the pad nothing is held"


def test_other_keys_and_directions_of_the_mouse_are_a_matter_of_two_tables(world):
    bindings = world.folder / "scripts" / "bindings" / "Table.py"
    bindings.write_text(bindings.read_text().replace("'forward': ('W',)", "'forward': ('I', 'Up')"))
    world.write("scripts/levels/Room.py", ROOM + """
import settings


def look(coordinator, player):
    if frameNumber() == 2:
        settings.set('invertMouseX', 'on')
        settings.set('invertMouseY', 'on')
        settings.set('mouseSensitivityX', 2)
    visitor, at = place.visitorOf(coordinator), player.getComponent('transform').position
    kaVel.log('note z: %.3f' % at.z)
    kaVel.log('note yaw: %.3f' % visitor.yaw)
    kaVel.log('note pitch: %.3f' % visitor.pitch)
""")

    def end(events):
        return {name: float(value) for name, value in notes(play(world, events, 60)).items()}

    assert end([(5, f"key {W} down")])["z"] == 0.0, "W is free"
    held = [(5, "key 73 down"), (6, "key 38 down"), (20, "key 73 up")]
    assert end(held)["z"] > 0.9, "either of two keys holds the walk"
    looking = end([(5, "mouse 32 16 0 0 320 180")])
    assert abs(looking["yaw"] - (6.2832 - 2 * 3.0 * 32 / 640)) < 0.01, looking
    assert abs(looking["pitch"] + 3.0 * 16 / 640) < 0.01, looking


STORM = """
import math
import sys


def furnish(map):
    place.Block(map, 'beam', at=(0, 1.25, -3), size=(4, 0.4, 2))
    place.HingedDoor(map, 'leaf', at=(3, 0, 3))


def storm():
    for key in (each for each in range(256) if each != 0x1B and not 0x70 <= each <= 0x7B):
        kaVel.send('KeyDownMessage', key)
        kaVel.send('KeyUpMessage', key)
    for button in range(6):
        kaVel.send('MouseDownMessage', button, 0.5, 0.5)
        kaVel.send('MouseUpMessage', button, 0.5, 0.5)
    for x, y in ((0.01, 0.02), (-1e30, 1e30), (math.nan, 0.0), (math.inf, -math.inf)):
        kaVel.send('MouseMove', x, y)
        for stick in ('LeftJoyPos', 'RightJoyPos'):
            kaVel.send(stick, x, y, 0)
            kaVel.send(stick, x, y, 7)
        kaVel.send('LeftTriggerPos', x, 0)
    for bit in range(16):
        kaVel.send('ButtonPressed', 1 << bit, 0) if bit != 4 else None
    kaVel.send('MouseWheelMessage', 120, 0.5, 0.5)
    for name in ('LeanLeftMessage', 'LeanRightMessage', 'StopLeaningMessage', 'LeanReturnMessage', 'DisplayHUDMessage'):
        kaVel.send(name)
    for name in ('PlayerCrouchMessage', 'FlashlightOn'):
        kaVel.send(name, True)
        kaVel.send(name, False)


def crouchBelow(visitor):
    if not visitor.component.isCrouched():
        kaVel.send('KeyDownMessage', 17)
    visitor.goTo((0, 0, -3))


def charge(visitor):
    visitor.component.pickupFlashlight(visitor.player.parent.getDescendantByPath('room/torch/physics'))
    visitor.component.addBattery()
    kaVel.send('KeyDownMessage', 82)


def die(visitor):
    visitor.player.parent.getManager('graphics2').dissolveAmount = 0.01
    visitor.body.dead = True


def holdStill(visitor):
    kaVel.send('KeyDownMessage', 87)
    visitor.component.useInput = False


def leave(visitor):
    visitor.component.useInput = True
    if not hasattr(sys, 'hasLeft'):
        sys.hasLeft = True
        kaVel.getSystem('GameLoopSystem').queueLoadLevel('Room')


STATES = (lambda visitor: None, charge, crouchBelow, lambda visitor: visitor.goTo((3, 0, 3.2), turn=180),
          lambda visitor: visitor.goTo((0, 3, 0)), holdStill, leave, die)


def look(coordinator, player):
    number, frame = divmod(len(_frames), 12)
    _frames.append(0)
    if number >= len(STATES):
        return
    visitor = place.visitorOf(coordinator)
    if frame == 0:
        STATES[number](visitor)
    if frame in (1, 6):
        storm()
    if frame == 11:
        at = visitor.transform.position
        kaVel.log('state %d at %.2f %.2f %.2f pitch %.2f' % (number, at.x, at.y, at.z, visitor.pitch))


_frames = []
"""


def test_every_message_in_every_state_leaves_a_player_who_can_go_on(world):
    world.write("scripts/levels/Room.py", ROOM + STORM)
    run = play(world, [], 260, window=SMALL)
    states = [tuple(map(float, row)) for row in
              re.findall(r"state (\d+) at (\S+) (\S+) (\S+) pitch (\S+)", run.log)]
    assert {row[0] for row in states} == set(range(8)), states
    assert all(abs(value) < 7 for row in states for value in row[1:]), states
    faults = [line for line in run.log.splitlines() if re.search(r"Error:|Traceback|Assertion failed", line)]
    assert not faults, faults[:6]


if __name__ == "__main__":
    game.main(dict(globals()))
