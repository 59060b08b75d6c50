"""The player of the pattern in a small room, moved by recorded keys and mouse."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

ROOM = """
import kaVel
import objects.GameObjects as place


def build(coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.03
    map = coordinator.loadMap('room')
    player = place.Player(coordinator, at=(0, 0, 0))
    place.Hud(coordinator)
    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'menu', 'ScriptComponent', frameCallback=lambda: look(coordinator, player))
    kaVel.subscribe('SoundMadeMessage', heard, kaVel.officeOf(coordinator))
    begin(coordinator, player)


def room(map):
    place.PartitioningGrid(map, size=(24, 0, 24))
    place.Box(map, 'floor', at=(0, -0.5, 0), size=(12, 0.5, 12), surface='boards')
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(12, 0.5, 12))
    for x, z, wide, deep in ((0, 6, 12, 0.3), (0, -6, 12, 0.3), (6, 0, 0.3, 12), (-6, 0, 0.3, 12)):
        place.Box(map, 'wall', at=(x, 0, z), size=(wide, 3, deep), surface='plaster')
        place.Block(map, 'stop', at=(x, 0, z), size=(wide, 3, deep))
    place.Flashlight(map, 'torch', at=(0, 1.6, 1.6), turn=40)
    place.SpareBattery(map, at=(0, 1.6, 3.2))
    furnish(map)


def heard(message, name, place, maker):
    kaVel.log('heard ' + name)


def begin(coordinator, player):
    pass


def furnish(map):
    pass


def look(coordinator, player):
    pass


def frameNumber():
    return kaVel.getSystem('GameLoopSystem').frameNumber
"""

HEADER = "input 1\nlevel Room\nseed 1\nwindow %d %d\n"


def play(world, events, frames, window=(640, 360), **options):
    """A run of the room with input: (frame, 'key 87 down') and so on."""
    lines = "".join(f"{frame} {event}\n" for frame, event in sorted(events, key=lambda each: each[0]))
    world.write("input.txt", f"{HEADER % window}{lines}{frames} end\n")
    run = world.run("Room", frames=frames, KAVEL_REPLAY=str(world.folder / "input.txt"), KAVEL_SIZE="%dx%d" % window,
                    KAVEL_VERBOSE="1", **options)
    run.expect_code(0)
    return run


def press(frame, key, frames=2):
    return [(frame, f"key {key} down"), (frame + frames, f"key {key} up")]


def notes(run):
    """What the level has told last, by name."""
    return dict(re.findall(r"note (\w+): (.*)", run.log))


def test_the_player_walks_takes_light_and_batteries_and_is_heard(world):
    world.write("scripts/levels/Room.py", ROOM + """
def furnish(map):
    place.SphereLight(map, 'lamp', at=(0, 2.2, 3), strength=0.6, reach=5)


def look(coordinator, player):
    component, note = player.getComponent('player'), lambda name, value: kaVel.log('note %s: %s' % (name, value))
    if frameNumber() == 40:
        note('reticle', player.getDescendantByPath('reticle/graphics2').textureName)
    if frameNumber() == 60:
        note('hand', ' '.join(child.name for child in player.getChild('camera').children if child.name == 'flashlight'))
        note('shadows', player.getDescendantByPath('camera/flashlight/flashlight/graphics2').castShadows)
        note('influence', component.lightSanityInfluence > 0)
        note('hud', coordinator.getDescendantByPath('Hud/hud').visible)
        note('away', player.getDescendantByPath('reticle/graphics2').textureName)
    if frameNumber() == 400:
        note('later', coordinator.getDescendantByPath('Hud/hud').visible)
        note('count', coordinator.getDescendantByPath('Hud/BatteryCount/graphics2').text)
        note('meter', coordinator.getDescendantByPath('BatteryMeter/transform').scale.x < 0.12)
        note('walked', player.getComponent('transform').position.z > 1)
        note('feet', abs(player.getComponent('transform').position.y - 0.875) < 0.02)
""")
    run = play(world, [*press(45, 69), *press(70, 87, 50), *press(130, 69), *press(140, 16, 2)], 410)
    told = notes(run)
    assert told == {"reticle": "reticleObject.dds", "hand": "flashlight", "shadows": "True", "influence": "True",
                    "hud": "True", "away": "reticle.dds", "later": "False", "count": "x 1", "meter": "True",
                    "walked": "True", "feet": "True"}, told
    run.expect("heard StepWoodWalk")
    faults = [line for line in run.log.splitlines() if ": Error:" in line]
    assert not faults, faults[:5]


COURSE = """
def look(coordinator, player):
    position = player.getComponent('transform').position
    kaVel.log('note place: %.4f %.4f %.4f' % (position.x, position.y, position.z))
"""


def test_a_course_ends_at_the_same_place_at_every_frame_rate(world):
    config = (world.folder / "scripts" / "GameConfig.py").read_text(encoding="utf-8")
    world.write("scripts/levels/Room.py", ROOM + COURSE)
    ends = []
    for rate in (30, 60, 120, 240):
        world.write("scripts/GameConfig.py", config.replace("fixedFrameRate = 60", f"fixedFrameRate = {rate}"))
        tenths = rate // 10
        events = [*press(2 * tenths, 87, 12 * tenths), (tenths, "mouse 2 0 0 0 32 18"),
                  *press(9 * tenths, 16, 5 * tenths), *press(16 * tenths, 68, 6 * tenths),
                  *press(22 * tenths, 83, 4 * tenths)]
        run = play(world, events, 32 * tenths, window=(64, 36))
        ends.append([float(value) for value in notes(run)["place"].split()])
    assert ends[0][0] > 0.5 and ends[0][2] > 1, ends
    for end in ends:
        assert max(abs(a - b) for a, b in zip(end, ends[0])) < 0.02, ends


FADES = """
def begin(coordinator, player):
    coordinator.getManager('graphics2').dissolveAmount = 0.5
    player.getComponent('physics').opening = True


def look(coordinator, player):
    body, graphics = player.getComponent('physics'), coordinator.getManager('graphics2')
    kaVel.log('fade %d %.6f %s %s' % (frameNumber(), graphics.dissolveAmount, body.opening, body.dead))
    if frameNumber() == 180:
        graphics.dissolveAmount = 0.1
        body.dead = True
    if frameNumber() in (190, 204):
        kaVel.log('menu %s' % (kaVel.pathOf(body.pauseMenu) if body.pauseMenu else 'none'))
"""


def test_the_picture_fades_in_by_three_percent_a_frame_and_out_over_the_dead(world):
    world.write("scripts/levels/Room.py", ROOM + FADES)
    run = play(world, [(1, "key 87 down")], 205)
    fades = [(float(amount), opening, dead) for amount, opening, dead in
             re.findall(r"fade \d+ ([\d.]+) (\w+) (\w+)", run.log)]
    first = fades[0][0]
    for frame in range(100):
        assert abs(fades[frame][0] - first * 0.97 ** frame) < 1e-4, (frame, fades[frame])
    ended = next(frame for frame, fade in enumerate(fades) if fade[1] == "False")
    assert fades[ended][0] == 0.0 and 0.00485 < fades[ended - 1][0] < 0.005, fades[ended - 1:ended + 1]
    dying = [fade for fade in fades if fade[2] == "True"]
    assert len(dying) == 17 and abs(dying[2][0] / dying[1][0] - 1.15) < 1e-3, dying
    assert fades[-1] == (1.0, "False", "False"), fades[-1]
    assert re.findall(r"menu (.*)", run.log) == ["none", "Room/PauseMenu/menu"], "it is looked up as the fade ends"


def test_each_part_of_the_player_may_be_missing(world):
    parts = ("transform", "physics", "boundingVolume", "sound", "behaviors", "camera", "camera/parentFollower",
             "camera/viewer", "reticle", "reticle/graphics2", "player")
    for part in parts:
        world.write("scripts/levels/Room.py", ROOM + f"""
def begin(coordinator, player):
    player.getDescendantByPath({part!r}).murder()
""")
        run = play(world, [*press(10, 69), (12, "key 87 down"), (14, "mouse 40 30 0 0 320 180"), *press(16, 17),
                           *press(20, 70), *press(24, 82), *press(28, 16)], 40)
        missing = re.findall(r"Player has no (\w+) at", run.log)
        assert len(missing) == len(set(missing)), (part, missing)


def test_two_players_hear_the_same_keys_and_one_is_the_levels(world):
    world.write("scripts/levels/Room.py", ROOM + """
def begin(coordinator, player):
    place.Player(coordinator, at=(2, 0, 0))
""")
    run = play(world, [(5, "key 87 down")], 30)
    run.expect("is a second player beside")


if __name__ == "__main__":
    game.main(dict(globals()))
