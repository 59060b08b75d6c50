"""The player's mind and his flashlight in a small house: what they cost, and what is seen of them."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden
import png

HOUSE = """
import math
import kaVel
import settings
import objects.GameObjects as place
from objects.player import Nerves


def build(coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.03
    map = coordinator.loadMap('house')
    player = place.Player(coordinator, at=(0, 0, 0))
    watcher = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watcher, 'menu', 'ScriptComponent', frameCallback=lambda: watch(coordinator, player, map))
    mind = player.getComponent('player')
    mind.pickupFlashlight(coordinator.getDescendantByPath('house/torch/physics'))
    mind.flashlightOn = False
    begin(coordinator, player, map)


def house(map):
    place.PartitioningGrid(map, size=(32, 0, 32))
    place.Box(map, 'floor', at=(0, -0.5, 0), size=(9, 0.5, 16), surface='boards')
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(9, 0.5, 16))
    for x, z, wide, deep in ((0, 8, 9, 0.3), (0, -8, 9, 0.3), (4.5, 0, 0.3, 16), (-4.5, 0, 0.3, 16)):
        place.Box(map, 'wall', at=(x, 0, z), size=(wide, 3, deep), surface='plaster')
        place.Block(map, 'stop', at=(x, 0, z), size=(wide, 3, deep))
    place.Flashlight(map, 'torch', at=(0, 1, 1))
    furnish(map)


def watch(coordinator, player, map):
    if frame() == 2:
        kaVel.send('FlashlightOn', False)  # the flag alone tells nobody
    look(coordinator, player, map)


def begin(coordinator, player, map):
    pass


def furnish(map):
    pass


def frame():
    return kaVel.getSystem('GameLoopSystem').frameNumber


def note(name, value):
    kaVel.log('note %s: %s' % (name, value))


"""


def play(world, frames, body, rate=60, size=(64, 36), **options):
    config = (world.folder / "scripts" / "GameConfig.py").read_text(encoding="utf-8")
    world.write("scripts/GameConfig.py", re.sub("fixedFrameRate = [0-9]+", f"fixedFrameRate = {rate}", config))
    world.write("scripts/levels/House.py", HOUSE + body)
    run = world.run("House", frames=frames, KAVEL_VERBOSE="1", KAVEL_SIZE="%dx%d" % size, **options)
    run.expect_code(0)
    faults = [line for line in run.log.splitlines() if ": Error:" in line or "Traceback" in line]
    assert not faults, faults[:5]
    return run


def notes(run, name):
    """All that the level told under a name."""
    return re.findall(rf"note {name}: (.*)", run.log)


COURSE = """
def begin(coordinator, player, map):
    place.SphereLight(map, 'lamp', at=(0, 2.4, 1), strength=0.6, reach=6).getComponent('graphics2').visible = False


def look(coordinator, player, map):
    mind, nerves = player.getComponent('player'), player.getComponent('nerves')
    map.getDescendantByPath('lamp/graphics2').visible = frame() > 20 * 92
    if frame() % 20 == 0:
        note('mind', '%.3f %.3f %.3f %.3f' % (mind.sanity, mind.audioSanity, nerves.dulling, nerves.fear))
"""


def test_ninety_seconds_of_darkness_take_the_mind_and_forty_of_lamp_light_give_it_back(world):
    run = play(world, 20 * 134, COURSE, rate=20)
    told = [[float(number) for number in line.split()] for line in notes(run, "mind")]
    sanity = [line[0] for line in told]
    assert abs(sanity[44] - 50) < 1.5, sanity[44]
    assert sanity[86] > 2 and sanity[91] == 0, sanity[86:92]
    assert abs(sanity[112] - 50) < 4, sanity[112]
    assert sanity[126] < 99 and sanity[132] == 100, sanity[126:133]
    for seen, heard, _, _ in told[:85]:
        assert abs(seen - heard) < 0.5, "both measures of the mind go together"
    dulling = [line[2] for line in told]
    assert dulling[30] == 0 and dulling[91] == 1 and dulling[132] == 0
    assert told[91][3] > 0.4 > 0.1 > told[10][3], "the heart beats for a failing mind"


SIGHTS = """
CASES = (('nothing', None, 0), ('lit', (0, 0, 4), 0), ('behind', (0, 0, -4), 0), ('dark', (0, 0, 4), None),
         ('walled', (0, 0, 12), 0), ('far', (0, 0, 7), 0))


def furnish(map):
    place.SphereLight(map, 'lamp', at=(0, 2.4, 3), strength=0.5, reach=15)
    Nerves.dreaded(place.Crate(map, 'thing', at=(0, 0, 4)), dread=4, range=6)


def look(coordinator, player, map):
    number, step = divmod(frame() - 3, 12)
    if not 0 <= number < len(CASES):
        return
    name, at, turn = CASES[number]
    thing = map.getChild('thing').getComponent('transform')
    if step == 0:
        thing.position = kaVel.Vec4(*(at or (0, -9, 4)), 1) + kaVel.Vec4(0, 0.4, 0, 0)
        map.getDescendantByPath('lamp/graphics2').visible = name != 'dark'
    if step == 11:
        note(name, '%.3f' % player.getComponent('nerves').dreadInSight)
"""


def test_a_dreaded_thing_costs_only_where_it_can_be_seen(world):
    run = play(world, 80, SIGHTS, size=(160, 90))
    cost = {name: float(notes(run, name)[-1]) for name in ("nothing", "lit", "behind", "dark", "walled", "far")}
    assert cost.pop("lit") > 2, cost
    assert not any(cost.values()), cost


FRIGHT = """
def look(coordinator, player, map):
    mind, nerves, graphics = (player.getComponent('player'), player.getComponent('nerves'),
                              coordinator.getManager('graphics2'))
    player.getDescendantByPath('camera/flashlight/flashlight/graphics2').visible = False
    if frame() == 5:
        note('before', '%.2f %.2f' % (mind.sanity, graphics.flash))
        Nerves.nervesOf(map).frighten(20, 'a door')
    if frame() in (7, 60, 900):
        note('after', '%.1f %.2f %.2f %.2f %s' % (mind.sanity, nerves.fear, graphics.flash,
             player.getDescendantByPath('camera/flashlight/hand').shaking, nerves.cause))
"""


def test_a_fright_is_felt_at_once_and_passes(world):
    at_once, soon, later = (line.split(" ", 4) for line in notes(play(world, 905, FRIGHT), "after"))
    assert float(at_once[2]) > 0.3 and float(at_once[3]) > 0.5, at_once
    assert 75 < float(soon[0]) < 81 and float(soon[1]) > 0.6, soon
    assert float(soon[2]) == 0 and float(soon[3]) == 0 and soon[4] == "a door", soon
    assert float(later[1]) < float(soon[1]) / 2, later


PICTURE = """
def furnish(map):
    place.SphereLight(map, 'lamp', at=(0, 2.4, 3), strength=0.6, reach=9)


def begin(coordinator, player, map):
    %s


def look(coordinator, player, map):
    player.getComponent('player').sanity = %g
    player.getComponent('nerves').setDarknessTakes(0)
"""
SHARES = ("mindDrain", "mindGrain", "mindPulse", "mindDistortion", "mindFlashes", "mindFigures", "mindWhispers")


def shot(world, name, sanity, setup="pass"):
    play(world, 30, PICTURE % (setup, sanity), size=(320, 180), screenshot=name)
    return png.read(world.folder / name)


def colourfulness(picture):
    """Mean distance of red and blue."""
    return sum(abs(row[i] - row[i + 2]) for row in picture.rows for i in range(0, len(row), picture.step))


def brightness(picture, x, y, side=12):
    rows = [row[x * picture.step:(x + side) * picture.step] for row in picture.rows[y:y + side]]
    return sum(sum(row) for row in rows) / len(rows)


def test_each_effect_of_a_failing_mind_can_be_turned_down_to_nothing(world):
    def without(*names):
        return "; ".join(f"settings.set({name!r}, 0)" for name in names)

    sound = shot(world, "sound.png", 100)
    assert shot(world, "nothing.png", 4, without(*SHARES)).rows == sound.rows, "at 0 the picture is the same to the bit"
    assert shot(world, "still.png", 92).rows == sound.rows, "a mind that has lost little shows nothing"
    failing = shot(world, "failing.png", 4)
    assert colourfulness(failing) < 0.45 * colourfulness(sound)
    closing = shot(world, "closing.png", 4, without(*(name for name in SHARES if name != "mindPulse")))
    assert brightness(closing, 0, 84) < 0.3 * brightness(sound, 0, 84), "the edges close"
    assert brightness(failing, 150, 84) > 0.6 * brightness(sound, 150, 84), "the middle holds"
    for only in ("mindDrain", "mindGrain", "mindDistortion"):
        alone = shot(world, "alone.png", 4, without(*(name for name in SHARES if name != only)))
        assert alone.rows != sound.rows, only


FIGURES = """
def begin(coordinator, player, map):
    settings.set('mindFigures', %g)
    player.getComponent('nerves').setDarknessTakes(0)


def look(coordinator, player, map):
    player.getComponent('player').sanity = %g
    figure = coordinator.getDescendantByPath('atTheEdgeOfSight/graphics2')
    place, eye = (entity.getComponent('transform').position
                  for entity in (figure.getParent(), player.getChild('camera')))
    if not figure.visible:
        return
    note('figure', '%%.1f' %% abs(math.degrees(math.atan2(place.x - eye.x, place.z - eye.z))))
    if %d:
        body = player.getComponent('transform')
        body.orientation = kaVel.Quaternion.fromAxisAngle(kaVel.Vec4(0, 1, 0, 0),
                                                          math.atan2(place.x - eye.x, place.z - eye.z))
"""


def test_somebody_stands_at_the_edge_of_sight_and_is_gone_when_looked_at(world):
    seen = [float(angle) for angle in notes(play(world, 2400, FIGURES % (1, 20, 0), rate=20), "figure")]
    assert len(seen) > 40, len(seen)
    assert min(seen) > 17, "never in the middle"
    turned = notes(play(world, 2400, FIGURES % (1, 20, 1), rate=20), "figure")
    assert turned and len(turned) < len(seen) / 4, "gone in the frame after"
    assert not notes(play(world, 2400, FIGURES % (0, 20, 0), rate=20), "figure"), "turned off"
    assert not notes(play(world, 1200, FIGURES % (1, 80, 0), rate=20), "figure"), "a sound mind sees nobody"


def test_somebody_stands_close_by_in_a_passage_of_two_metres(world):
    walls = """

def furnish(map):
    for x in (-1.2, 1.2):
        place.Block(map, 'side', at=(x, 0, 0), size=(0.3, 3, 16))
"""
    seen = [float(angle) for angle in notes(play(world, 2400, FIGURES % (1, 20, 0) + walls, rate=20), "figure")]
    assert len(seen) > 40, len(seen)
    assert min(seen) > 17, "never in the middle"


BEAM = """
def begin(coordinator, player, map):
    player.getComponent('player').batteryLifetime = %g
    player.getComponent('transform').position += kaVel.Vec4(0, 0, 2, 0)


def look(coordinator, player, map):
    if frame() == 4:
        player.getComponent('player').flashlightOn = True
        kaVel.send('FlashlightOn', True)
"""


def beam(world, name, lifetime):
    """The middle row of a wall that the flashlight shines on: mean red, green and blue of stretches of ten pixels."""
    play(world, 60, BEAM % lifetime, size=(320, 180), screenshot=name)
    picture = png.read(world.folder / name)
    return [[golden._mean(picture, x, 80, channel) for channel in range(3)] for x in range(0, 320, 10)]


def test_the_flashlight_has_a_hot_spot_a_soft_rim_and_browns_as_it_dies(world):
    row = beam(world, "whole.png", 120)
    light = [sum(colour) for colour in row]
    middle = light.index(max(light))
    assert 12 <= middle <= 19, (middle, light)
    # The picture's answer to light flattens what is bright.
    assert light[middle] > 1.1 * light[middle + 5] > 1.5 * light[middle + 9], light
    assert light[-1] < 0.15 * light[middle], light
    assert max(abs(a - b) for a, b in zip(light, light[1:])) < 0.25 * light[middle], "no hard edge"
    # The 119 s that are left of the battery, taken for the end of a longer one.
    whole, brown = row[middle + 3], beam(world, "dying.png", 4000)[middle + 3]
    assert sum(brown) < 0.9 * sum(whole), (whole, brown)
    assert brown[2] / brown[0] < 0.8 * whole[2] / whole[0], (whole, brown)


if __name__ == "__main__":
    game.main(dict(globals()))
