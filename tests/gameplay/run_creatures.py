"""The Damp, the Fittings, the Guest, rats and moths, met by a player whom the level moves."""
import json
import math
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

SECOND = 60  # frames, nearly

#: A hall of 14 m by 14 m with a wall across it that a doorway in the middle leads through.
SCENE = """
import json
import math
import kaVel
import objects.GameObjects as place
from objects.Placing import onFrame, turned
from objects.player.Life import lifeOf

frames = [0]


def build(coordinator):
    coordinator.getManager('graphics2').sceneAmbient = %(ambient)s
    map = coordinator.loadMap('hall')
    player = %(player)s
    onFrame(kaVel.make('Entity', parent=coordinator, name='clock'), lambda: frame(coordinator, map, player))


def hall(map):
    map.getComponent('transform').scale = kaVel.Vec4(18, 0, 18, 0)
    map.getComponent('mapData').gridCellSize = 0.3
    place.PartitioningGrid(map, size=(18, 0, 18))
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(18, 0.5, 18))
    for x, z, wide, deep in ((0, 7, 14, .2), (0, -7, 14, .2), (7, 0, .2, 14), (-7, 0, .2, 14),
                             (-3.8, 0, 6.4, .2), (3.8, 0, 6.4, .2)):
        place.Block(map, 'wall', at=(x, 0, z), size=(wide, 3, deep))
    place.Flashlight(map, 'torch', at=(6, 0.1, 6))
    furnish(map)


def frame(coordinator, map, player):
    frames[0] += 1
    act(coordinator, map, player, frames[0])


def stand(player, x, z, turn=0.0):
    player.getComponent('transform').position = kaVel.Vec4(x, 0.875, z, 1)
    player.getComponent('transform').orientation = turned(turn)
    player.getComponent('physics').velocity = kaVel.Vec4(0, 0, 0, 0)


def light(map, player, on):
    component = player.getComponent('player')
    if not component.hasFlashlight:
        component.pickupFlashlight(map.getDescendantByPath('torch/physics'))
    component.setFlashlightOn(on)


def noise(coordinator, map, player, x, z):
    coordinator.getManager('perception').makeNoise('steps', kaVel.Vec4(x, 0.1, z, 1), 0.15, player)


def note(**values):
    kaVel.log('note ' + json.dumps(values))


def spot(entity):
    at = entity.getComponent('transform').position
    return [at.x, at.z]


def act(coordinator, map, player, frame):
    pass


%(body)s
"""

PLAYER = "place.Player(coordinator, at=(0, 0, -5))"


def play(world, body, seconds, ambient=0.0, player=PLAYER):
    """What a level has noted, in order."""
    world.write("scripts/levels/Den.py", SCENE % {"body": body, "ambient": ambient, "player": player})
    outcome = world.run("Den", frames=int(seconds * SECOND) + 5, KAVEL_SIZE="64x36")
    outcome.expect_code(0)
    faults = [line for line in outcome.log.splitlines() if "Error:" in line or "Traceback" in line]
    assert not faults, outcome.log[-3000:]
    return [json.loads(text) for text in re.findall(r"note (\{.*\})", outcome.log)]


def apart(a, b):
    return math.dist(a, b)


DAMP = """
def furnish(map):
    place.Damp(map, 'damp', at=(0, 0, 4), territory=2.5)
"""


def test_the_damp_goes_for_what_it_hears_and_for_nothing_else(world):
    told = play(world, DAMP + """
def act(coordinator, map, player, frame):
    stand(player, 5.5, -5.5)  # where nothing is heard
    if frame == 480:
        noise(coordinator, map, player, -3, -4)
    if frame % 15 == 0:
        damp = map.getChild('damp')
        note(at=spot(damp), why=kaVel.why(damp), knows=damp.getComponent('perception').remembers,
             life=lifeOf(coordinator).value)
""", 36)
    before, after = told[:32], told[32:]
    assert not any(each["knows"] for each in before), "nobody was heard"
    assert max(apart(each["at"], (0, 4)) for each in before) < 6.0
    assert any("hunts" in each["why"] or "pours towards" in each["why"] for each in after), after[3]
    assert min(apart(each["at"], (-3, -4)) for each in after) < 1.5, "it comes to where the noise was"
    assert any("feels around" in each["why"] for each in after)
    assert min(apart(each["at"], (5.5, -5.5)) for each in told) > 2.5, "it was never told where the player is"
    assert not after[-1]["knows"] and "hunts" not in after[-1]["why"], "it has lost the trail"
    assert after[-1]["life"] == 100


def test_the_damp_burns_in_the_hot_spot_and_is_driven_off_at_the_price_of_the_battery(world):
    told = play(world, DAMP + """
def act(coordinator, map, player, frame):
    stand(player, 0, -4)
    light(map, player, frame > 140)
    damp = map.getChild('damp')
    if frame == 10:
        damp.getComponent('transform').position = kaVel.Vec4(0, 0.25, 2.0, 1)
    if frame in (20, 80, 140):
        noise(coordinator, map, player, 0, -4)
    if frame % 10 == 0:
        note(at=spot(damp), boils=damp.getComponent('form').boiling, why=kaVel.why(damp),
             battery=player.getComponent('player').currBatteryTimeLeft)
""", 7)
    dark, lit = told[:14], told[15:]
    assert dark[-1]["at"][1] < 0.8, "it was on its way"
    assert any(each["boils"] > 0.9 and "draws back from the light" in each["why"] for each in lit), lit[3]
    nearest = min(each["at"][1] for each in lit)
    assert lit[-1]["at"][1] > nearest + 1.5, "it has drawn back"
    spent = lit[0]["battery"] - lit[-1]["battery"]
    assert spent > 1.4 * (len(lit) - 1) * 10 / SECOND, f"{spent} s of battery"


def test_the_touch_of_the_damp_costs_life_and_mind_and_who_dies_is_told_why(world):
    told = play(world, DAMP + """
dead = []

def act(coordinator, map, player, frame):
    stand(player, 0, -4)
    light(map, player, False)  # who has a flashlight has a mind to lose
    if frame == 1:
        lifeOf(coordinator).onDeath(lambda cause: dead.append(str(cause)))
        player.getComponent('player').deathFunc = lambda: dead.append('told')
        map.getChild('damp').getComponent('transform').position = kaVel.Vec4(0, 0.25, -2.8, 1)
    noise(coordinator, map, player, 0, -4)
    if frame % 10 == 0:
        component = player.getComponent('player')
        note(life=lifeOf(coordinator).value, mind=component.audioSanity, touches=component.blobColliding, dead=dead)
""", 12)
    assert any(each["touches"] for each in told), told[-1]
    lives = [each["life"] for each in told]
    assert lives == sorted(lives, reverse=True) and lives[-1] == 0, lives
    assert min(each["mind"] for each in told) < 90, told[-1]
    assert told[-1]["dead"] == ["told", "The Damp heard you and had hold of you."]
    assert not told[-1]["touches"], "it lets go of the dead"


def test_a_closed_door_holds_the_damp_for_a_while_and_a_locked_one_for_good(world):
    course = DAMP.replace("pass", "") + """
    place.IronDoor(map, 'door', at=(0, 0, 0), locked=%s)
    for x in (-0.585, 0.585):
        place.Block(map, 'jamb', at=(x, 0, 0), size=(0.05, 3, 0.2))


def act(coordinator, map, player, frame):
    stand(player, 0, -5)
    if frame %% 60 == 30:
        noise(coordinator, map, player, 0, -3)
    if frame %% 15 == 0:
        damp = map.getChild('damp')
        note(at=spot(damp), why=kaVel.why(damp), door=map.getDescendantByPath('door/physics').prevAngle)
"""
    told = play(world, course % False, 22)
    waits = [each for each in told if "presses against the door" in each["why"]]
    assert len(waits) >= 28, f"{len(waits)} quarters of a second at the door"
    assert all(abs(each["door"]) < 0.01 for each in waits)
    assert told[-1]["at"][1] < -0.5, "it has come through"
    told = play(world, course % True, 22)
    assert all(each["at"][1] > 0 and abs(each["door"]) < 0.01 for each in told)


#: The room is lit, or its light goes on and off; the player looks about by a course, and the level itself judges, from
#: the camera and the plan of the walls alone, whether a corner or the middle of a figure was to be seen.
FITTINGS = """
PLACES = ((-3, 3.5), (0.4, 4.2), (2.5, 2.8), (-5, -2))
SIZE = (0.44, 1.74, 0.44)
last, figures = {}, []

def furnish(map):
    place.SphereLight(map, 'lamp', at=(0, 2.4, 0), strength=1.0, reach=14)
    for number, (x, z) in enumerate(PLACES):
        place.Fitting(map, 'fitting%d' % number, at=(x, 0, z), turn=40 * number,
                      pose=('standing', 'reaching', 'begging', 'shrouded')[number])

def crosses(a, b):  # the wall beside the doorway
    if (a.z > 0) == (b.z > 0):
        return False
    share = a.z / (a.z - b.z)
    return abs(a.x + share * (b.x - a.x)) > 0.6

def inView(camera, point):
    transform, viewer = camera.getComponent('transform'), camera.getComponent('viewer')
    way, ahead = point - transform.position, transform.getDirection()
    flat = math.hypot(ahead.x, ahead.z)  # nobody looks up or down here
    x, y, z = (way.x * ahead.z - way.z * ahead.x) / flat, way.y, (way.x * ahead.x + way.z * ahead.z) / flat
    high = math.tan(viewer.verticalFieldOfViewAngle / 2)
    return z > 0 and abs(y) < high * z and abs(x) < high * 64 / 36 * z

def isBehindAnother(eye, point, others):
    for other in others:
        way, there = (point.x - eye.x, point.z - eye.z), (other.x - eye.x, other.z - eye.z)
        share = (way[0] * there[0] + way[1] * there[1]) / (way[0] ** 2 + way[1] ** 2)
        if 0 < share < 0.95 and math.dist((share * way[0], share * way[1]), there) < 0.35:
            return True
    return False

def seen(camera, middle):
    eye = camera.getComponent('transform').position
    others = [figure.getComponent('transform').position for figure in figures]
    others = [other for other in others if (other - middle).magnitude() > 0.3]
    for dx, dy, dz in ((0, 0, 0), (0, 0.6, 0), (0, -0.6, 0)):
        point = middle + kaVel.Vec4(dx, dy, dz, 0)
        if inView(camera, point) and not crosses(eye, point) and not isBehindAnother(eye, point, others):
            return True
    return False

def watch(map, player, isDark):
    figures[:] = [map.getChild('fitting%d' % number) for number in range(len(PLACES))]
    camera = player.getChild('camera')
    for number in range(len(PLACES)):
        figure = map.getChild('fitting%d' % number)
        at, head = figure.getComponent('transform').position, figure.getChild('head').getComponent('transform')
        front = head.getDirection()
        now = (at.x, at.z, round(math.atan2(front.x, front.z), 4))
        before, wasSeen, wouldSee = last.get(number, (now, False, None))
        moved = abs(now[0] - before[0]) + abs(now[1] - before[1]) > 1e-5
        turned = abs(now[2] - before[2]) > 1e-3
        if moved or turned:
            came = moved and wouldSee is not None and not isDark and seen(*wouldSee[:1], at)
            note(figure=number, frame=frames[0], moved=moved, seen=wasSeen, came=came, at=now[:2])
        last[number] = (now, not isDark and seen(camera, at), (camera,))
"""


def check_stands_well(told):
    """Nobody stands in a wall, in the doorway or in another."""
    where = {}
    for each in told:
        x, z = where[each["figure"]] = each["at"]
        assert abs(x) < 6.7 and abs(z) < 6.7 and abs(z) > 0.32, each
        assert not (abs(x) < 0.9 and abs(z) < 0.7), f"in the doorway: {each}"
        others = [at for number, at in where.items() if number != each["figure"]]
        assert all(apart(each["at"], other) > 0.5 for other in others), each


def test_a_fitting_never_moves_while_it_is_seen(world):
    told = play(world, FITTINGS + """
def act(coordinator, map, player, frame):
    lifeOf(coordinator).restore()
    watch(map, player, False)
    turn = 180 * math.sin(frame / 130.0) + (70 if frame // 240 % 2 else 0)  # slow looks about and sudden ones
    stand(player, *((0, 1.4) if frame < 2400 else (-3, 6)), turn)
""", 60)
    assert not [each for each in told if each["seen"] or each["came"]], \
        [each for each in told if each["seen"] or each["came"]][:3]
    assert len([each for each in told if each["moved"]]) >= 5, "they did move"
    assert len([each for each in told if not each["moved"]]) >= 50, "heads turned"
    check_stands_well([each for each in told if each["moved"]])


def test_fittings_come_nearer_while_the_light_is_out_and_lay_hold_of_whom_does_not_turn(world):
    told = play(world, FITTINGS + """
def act(coordinator, map, player, frame):
    dark = 120 < frame < 1200
    map.getDescendantByPath('lamp/graphics2').visible = not dark
    if frame > 2:
        watch(map, player, dark)
    stand(player, 0, 5.9, 180 if frame < 1200 else 0)
    if frame % 60 == 0:
        near = min(math.dist(spot(map.getChild('fitting%d' % number)), (0, 5.9)) for number in range(3))
        note(near=near, life=lifeOf(coordinator).value, cause=str(lifeOf(coordinator).cause), frame=frame)
""", 34)
    steps = [each for each in told if "figure" in each]
    sights = [each for each in told if "near" in each]
    assert not [each for each in steps if each["seen"] or each["came"]]
    assert sights[1]["near"] > 1.6 and sights[18]["near"] < 1.4, sights
    assert sights[-1]["life"] < 100 and "turned your back on a Fitting" in sights[-1]["cause"], sights[-1]


GUEST = """
def furnish(map):
    place.SphereLight(map, 'lamp', at=(4, 2.2, 3.4), strength=0.6, reach=2.0)
    place.Guest(map, 'guest', points=[(-5, 0, 3.4), (5, 0, 3.4)])
"""


def test_the_guest_passes_one_who_waits_in_the_dark_and_dims_the_lamps_beside_him(world):
    told = play(world, GUEST + """
def act(coordinator, map, player, frame):
    stand(player, 0, 2.0, 0)
    if frame % 10 == 0:
        guest = map.getChild('guest')
        note(at=spot(guest), life=lifeOf(coordinator).value, why=kaVel.why(guest),
             knows=guest.getComponent('perception').remembers, prints=guest.getComponent('dummy').footstepCount,
             lamp=map.getDescendantByPath('lamp/graphics2').diffuseColor.x,
             coat=guest.getDescendantByPath('coat/graphics2').visible)
""", 26)
    assert min(apart(each["at"], (0, 2.0)) for each in told) < 1.7, "he came by"
    assert told[-1]["life"] == 100 and not any(each["knows"] for each in told)
    assert max(each["at"][0] for each in told) > 4.5, "and went on to his point"
    assert all(each["coat"] for each in told if each["at"][0] < 1.0), "in the dark he is a coat and a hat"
    assert any("of its 2 points" in each["why"] for each in told)
    assert max(each["prints"] for each in told) > 8
    lamps = [each["lamp"] for each in told]
    assert min(lamps) < 0.5 * lamps[0], "his lamp dims"


def test_the_guest_comes_to_a_light_and_hurts_whom_he_finds_by_it(world):
    told = play(world, GUEST + """
def act(coordinator, map, player, frame):
    stand(player, 0, 5.5, 250)
    light(map, player, frame > 60)
    if frame % 10 == 0:
        guest = map.getChild('guest')
        note(at=spot(guest), life=lifeOf(coordinator).value, cause=str(lifeOf(coordinator).cause), why=kaVel.why(guest),
             coat=guest.getDescendantByPath('coat/graphics2').visible)
""", 22)
    assert any("goes to the light" in each["why"] for each in told), told[20]
    assert not all(each["coat"] for each in told), "light shows no more of him than the hem"
    assert told[-1]["life"] < 100 and told[-1]["cause"] == "The Guest found you by your light.", told[-1]


def test_who_keeps_his_light_on_dies_by_the_guest_and_is_told_why(world):
    told = play(world, GUEST + """
dead = []

def act(coordinator, map, player, frame):
    stand(player, 0, 5.5, 250)
    light(map, player, True)
    if frame == 1:
        lifeOf(coordinator).onDeath(lambda cause: dead.append(str(cause)))
    if frame % 20 == 0:
        note(life=lifeOf(coordinator).value, dead=dead)
""", 45)
    assert told[-1]["dead"] == ["The Guest found you by your light."] and told[-1]["life"] == 0, told[-1]


def test_rats_leave_before_the_damp_comes_and_moths_come_to_the_players_lamp(world):
    told = play(world, """
def furnish(map):
    place.Damp(map, 'damp', at=(0, 0, -6), territory=1.0)
    place.Rats(map, 'rats', at=(0, 0, 4.5), number=5, hole=(6.6, 0, 6.6), way=[(5, 0, 6.4)])
    place.Moths(map, 'moths', at=(-5, 2, 5), number=5)

def act(coordinator, map, player, frame):
    stand(player, -2.5, 5.5, -90)
    light(map, player, frame > 30)
    if frame % 60 == 30:
        noise(coordinator, map, player, 0, 4.5)
    if frame % 10 == 0:
        swarm = map.getDescendantByPath('rats/flocking')
        torch = player.getChild('camera').getComponent('transform').position
        moths = [each.getComponent('transform').position for each in map.getDescendantByPath('moths/flocking').members]
        note(damp=spot(map.getChild('damp')), rats=[spot(each) for each in swarm.members],
             shown=sum(each.getComponent('graphics2').visible for each in swarm.members),
             moths=max((each - torch).magnitude() for each in moths))
""", 14)
    assert all(apart(rat, (0, 4.5)) < 2.6 for rat in told[2]["rats"]) and told[2]["shown"] == 5
    left = [each for each in told if apart(each["damp"], (0, 4.5)) < 3.0]
    assert left and all(each["shown"] == 0 for each in left), left[:2]
    assert min(each["moths"] for each in told[20:]) < 2.2, "all of them"


def test_crows_fall_silent_before_the_guest_and_glass_keeps_his_breath_and_the_players(world):
    told = play(world, """
from objects.creatures import Guest
calls = []

def furnish(map):
    place.Crows(map, 'crows', at=(4, 5, 4), number=3, reach=2.0)
    place.Glass(map, 'glass', panes=[place.Pane((0, 1.5, 6.9), (1.2, 1.3), 180)])
    place.Guest(map, 'guest', points=[(-5, 0, 6.0), (5, 0, 6.0)], abroad=False)

def heard(message, name, place, maker):
    if name == 'Crow':
        calls.append(frames[0])

def act(coordinator, map, player, frame):
    if frame == 1:
        kaVel.subscribe('SoundMadeMessage', heard, kaVel.officeOf(coordinator))
    looksOut = 360 < frame < 840
    stand(player, *((0.2, 6.3, 0) if looksOut else (-5, -5, 0)))
    guest = map.getChild('guest')
    if frame == 1200:
        Guest.announce(guest)
    if frame == 1320:
        Guest.bring(guest, (-5, 0, 6.0))
    if frame == 2100:
        Guest.dismiss(guest)
    if frame % 30 == 0:
        marks = lambda name: [map.getChild(name + str(number)) for number in range(4)]
        shown = lambda name: [mark.getComponent('transform').position.x for mark in marks(name)
                              if mark.getComponent('graphics2').alpha > 0]
        note(frame=frame, calls=calls, own=shown('glass breath'), his=shown('glass his breath'),
             crows=sum(each.getComponent('graphics2').visible
                       for each in map.getDescendantByPath('crows/flocking').members))
""", 54)
    at = {each["frame"]: each for each in told}
    calls = told[-1]["calls"]
    assert at[1170]["crows"] == 3 and len([call for call in calls if call < 1200]) >= 2
    assert at[1230]["crows"] == 0 and not [call for call in calls if 1215 < call < 2100 + 14 * SECOND], calls
    assert at[3210]["crows"] == 3 and calls[-1] > 2900, "and come back when he has been gone for a while"
    assert at[330]["own"] == [] and at[780]["own"] and abs(at[780]["own"][0] - 0.2) < 0.02, "before his mouth"
    assert at[1560]["own"] == [], "and passes"
    assert at[1290]["his"] == [] and len(at[2070]["his"]) == 1 == len(at[3210]["his"]), "where the Guest went by"


def test_creatures_in_a_house_without_anybody_go_about_their_business(world):
    told = play(world, """
def furnish(map):
    place.Damp(map, 'damp', at=(0, 0, 4))
    place.Fitting(map, 'fitting', at=(3, 0, 3))
    place.Guest(map, 'guest', points=[(-5, 0, 3), (5, 0, 3)])
    place.Rats(map, 'rats', at=(0, 0, -4))
    place.Moths(map, 'moths', at=(3, 2, -4))

def act(coordinator, map, player, frame):
    if frame == 300:
        note(**{name: kaVel.why(map.getChild(name)) for name in ('damp', 'fitting', 'guest')})
""", 6, player="None")
    assert told[0]["guest"].startswith("guest: ") and told[0]["damp"].startswith("damp: "), told


STAIRS = """
import kaVel
from levels import Nightfall
from objects.Placing import onFrame

house = Nightfall.house


def build(coordinator):
    Nightfall.build(coordinator)
    onFrame(kaVel.make('Entity', parent=coordinator, name='clock'), lambda: act(coordinator))


def act(coordinator):
    night, frame = Nightfall._night, kaVel.getSystem('GameLoopSystem').frameNumber
    at = kaVel.Vec4(19.9, 0.875, 23.6, 1)
    night.player.getComponent('transform').position = at
    if frame == 5:
        night.story.stillHouse()
        night.story.openBath()
        night.story.gate.move(1.0)
        night.story.gate.latch()
        kaVel.configure(night.leaves['landingDoor'].getComponent('physics'), locked=False, open=True)
    if frame % 60 == 10:
        night.creatures.rouse(at)
    damp = night.creatures.damp.getComponent('transform').position
    kaVel.log('damp %.3f %.3f %.3f' % (damp.x, damp.y, damp.z))
"""


def test_the_damp_comes_down_the_stairs_of_nightfall_step_by_step(world):
    world.write("scripts/levels/Chased.py", STAIRS)
    outcome = world.run("Chased", frames=18 * SECOND, KAVEL_SIZE="64x36", KAVEL_UNDRAWN="1")
    outcome.expect_code(0)
    assert not outcome.has("Traceback"), outcome.log[-3000:]
    ways = [tuple(map(float, line.split())) for line in re.findall(r"damp ([\d.-]+ .*)", outcome.log)]
    below = next((number for number, way in enumerate(ways) if way[1] < 0.5), 0)
    assert ways[0][1] > 3 and below, f"from {ways[0]} to {ways[-1]}"
    del ways[below + 1:]  # behind it lies what it does to him
    between = [way for way in ways if 0.6 < way[1] < 2.6]
    assert all(19.2 < way[0] < 20.6 for way in between), "on the stairs and nowhere beside them"
    assert max(abs(after[1] - before[1]) for before, after in zip(ways, ways[1:])) < 0.2, "it neither falls nor leaps"


BOLT = STAIRS[:STAIRS.index("def act")] + """
def act(coordinator):
    night, frame = Nightfall._night, kaVel.getSystem('GameLoopSystem').frameNumber
    story, player = night.story, night.player.getComponent('transform')
    leaf = night.leaves['serviceDoor'].getComponent('physics')
    if frame == 2:
        story.chased = True
        story.openBath()
        kaVel.configure(leaf, open=False, prevAngle=0.0)
        night.creatures.damp.getComponent('transform').position = kaVel.Vec4(13, 0.25, 21.0, 1)
        story.quiet()
    if frame == 30:
        story.lift.call()
    # Who stands still is not heard; once the door is open he goes up and down.
    player.position = kaVel.Vec4(7.5 + (0.8 * (frame // 40 %% 2) if leaf.open else 0.0), 0.875, 20.4, 1)
    if leaf.open and frame %% 30 == 0:
        coordinator.getManager('perception').makeNoise('steps', player.position, 0.15, night.player)
    if %s and story.siege.slipped == 2:
        story.siege.push()
    damp = night.creatures.damp.getComponent('transform').position
    if frame %% 20 == 0:
        kaVel.log('siege %%d %%d %%d %%.2f %%.1f' %% (story.siege.slipped, leaf.open, story.lift.isHere, damp.x,
                                                 lifeOf(coordinator).value))
"""


def test_the_bolt_holds_the_damp_off_until_the_lift_comes_for_whom_pushes_it_home(world):
    for pushes in (True, False):
        world.write("scripts/levels/Chased.py", "from objects.player.Life import lifeOf\n" + BOLT % pushes)
        outcome = world.run("Chased", frames=42 * SECOND, KAVEL_SIZE="64x36", KAVEL_UNDRAWN="1")
        outcome.expect_code(0)
        assert not outcome.has("Traceback"), outcome.log[-3000:]
        told = [tuple(map(float, line.split())) for line in re.findall(r"siege ([\d.-]+ .*)", outcome.log)]
        slipped, isOpen, isHere, at, life = zip(*told)
        assert 1 in slipped and (3 in slipped) == (not pushes), slipped
        assert any(isOpen) == (not pushes)
        if pushes:
            assert isHere[-1] and min(at) > 10.2 and life[-1] == 100, "it stays outside, and the lift is there"
            assert any(before and not after for before, after in zip(slipped, slipped[1:])), "the bolt is home again"
        else:
            assert min(at) < 10.0 and min(life) < 100, "it comes in and lays hold of him"
            assert not any(open and not before for before, open in zip(slipped, isOpen[1:])), "by blows alone"


if __name__ == "__main__":
    game.main(dict(globals()))
