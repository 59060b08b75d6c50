"""What creatures see by the level's light and hear of the sounds that are played, in the running game."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

FRAMES = 4096 / 68  # a second of a headless run

#: A dark hall with somebody in it, and a creature 6 m away that looks at him, or turned away from him.
SCENE = """
import objects.GameObjects as place
from objects.Placing import onFrame, turned

def creature(map, at=(0, 0.9, 0), turn=0, **properties):
    entity = place.placed(map, 'creature', at=at, turn=turn)
    place.addVolume(entity, (0.5, 1.8, 0.5), 'BV_BOX')
    kaVel.addComponent(entity, 'physics', 'RigidBody', inverseMass=0)
    return kaVel.addComponent(entity, 'perception', 'PerceptionComponent', **properties)

def tell(senses, **more):
    kaVel.log('senses %.3f %s %s [%s]' % (senses.suspicion, senses.seen, senses.knows, senses.tell()))

def at(map, **steps):
    def doFrame():
        step = steps.get('frame%d' % kaVel.getSystem('GameLoopSystem').frameNumber)
        if step:
            step()
    onFrame(kaVel.make('Entity', parent=map, name='clock'), doFrame)

coordinator.getManager('graphics2').sceneAmbient = 0.0
map = kaVel.make('MapRootEntity', parent=coordinator, name='map')
kaVel.addComponent(map, 'transform', 'TransformComponent')
kaVel.addComponent(map, 'soundWays', 'SoundWays')
place.PartitioningGrid(map, size=(40, 0, 40)).getComponent('partitioning').updateSize()
player = place.placed(map, 'Player', at=(0, 0.9, 6))
place.addVolume(player, (0.5, 1.8, 0.5), 'BV_PLAYER')
kaVel.addComponent(player, 'physics', 'RigidBody', inverseMass=0)
"""


def play(world, body, frames=60):
    """The log of a level, and what was told of the senses in it."""
    world.write_level("Haunted", SCENE + body)
    outcome = world.run("Haunted", frames=frames, KAVEL_SIZE="64x36")
    outcome.expect_code(0)
    told = [(float(suspicion), seen == "True", knows == "True", text) for suspicion, seen, knows, text
            in re.findall(r"senses ([\d.]+) (\w+) (\w+) \[(.*?)\]", outcome.log)]
    return outcome.log, told


def test_who_stands_in_the_dark_is_not_seen_until_a_lamp_is_lit_over_him(world):
    _, told = play(world, """
senses = creature(map)
lamp = place.SphereLight(map, 'lamp', at=(0, 2.4, 6), strength=0.5, reach=4)
lamp.getComponent('graphics2').visible = False
at(map, frame30=lambda: tell(senses), frame31=lambda: setattr(lamp.getComponent('graphics2'), 'visible', True),
   frame58=lambda: tell(senses))
""")
    (dark, seen, _, text), (lit, seen_lit, knows, text_lit) = told
    assert (dark, seen, text) == (0, False, "") and lit > 0.2 and seen_lit, told
    assert text_lit.startswith("sees the player 6 m to the north") and knows == (lit >= 0.5), told


def test_a_lamp_that_is_carried_gives_its_bearer_away_and_so_does_the_spot_that_it_throws(world):
    """The bearer stands behind a wall; the beam falls on another one, in view."""
    _, told = play(world, """
place.Block(map, 'screen', at=(0.5, 0, 3), size=(3, 3, 0.2))
place.Block(map, 'wall', at=(-6, 0, 5), size=(0.2, 3, 6))
torch = place.ShadowSpot(player, 'torch', at=(0, 1.4, 6), turn=-90, strength=0.8, reach=12, angle=18)
guest = creature(map, turn=180, seesLightOnly=True)
deaf = creature(map, at=(1, 0.9, 0), turn=180)
blind = creature(map, at=(-1, 0.9, 0), turn=-60, noticesLamps=False)
at(map, frame55=lambda: [tell(each) for each in (guest, deaf, blind)] and kaVel.log('place %r' % guest.place))
""")
    (guest, seen, _, text), (away, _, _, _), (blind, _, _, _) = told
    assert seen and guest > 0.1 and "north-west" in text, told
    assert away == 0, "it looks the other way"
    assert blind == 0, told


def test_what_is_played_is_made_known_with_its_loudness_and_heard(world):
    log, told = play(world, """
def made(message, name, place, maker):
    kaVel.log('made %s at %.1f %.1f %.1f, %.3f by %s' % (name, place.x, place.y, place.z, place.w, maker.name))
kaVel.subscribe('SoundMadeMessage', made, kaVel.officeOf(coordinator))
steps = place.sounds(player, 'StepStoneWalk', 'StepStoneRun')
near, far = (creature(map, at=(0, 0.9, z), turn=180, hasEyes=False) for z in (0, -18))
at(map, frame20=lambda: steps.playSoundEffect('StepStoneWalk'), frame25=lambda: [tell(near), tell(far)],
   frame30=lambda: steps.playSoundEffect('StepStoneRun'), frame35=lambda: [tell(near), tell(far)])
""")
    made = re.findall(r"made (\w+) at 0.0 0.9 6.0, ([\d.]+) by Player", log)
    assert [name for name, _ in made] == ["StepStoneWalk", "StepStoneRun"], made
    walk, run = (float(loudness) for _, loudness in made)
    assert 0.02 < walk < 0.05 < run < 0.08, made
    near, far, near_later, far_later = told
    assert near[0] > 0.1 and near[3] == 'heard "Steps on stone" 6 m to the north, unsure', told
    assert near_later[0] > near[0] and near_later[3].startswith('heard "Running steps on stone"'), told
    assert far[0] == far_later[0] == 0, told


def test_who_begins_to_know_and_who_has_forgotten_calls_its_function(world):
    log, _ = play(world, """
senses = creature(map, seesInDark=True, memoryTime=0.4, sightGain=20)
senses.noticedFunc = lambda entity: kaVel.log('%s noticed' % entity.name)
senses.lostFunc = lambda entity: kaVel.log('%s lost' % entity.name)
broken = creature(map, at=(1, 0.9, 0), seesInDark=True, sightGain=20)
broken.noticedFunc = lambda entity: 1 / 0
away = kaVel.Vec4(0, 0.9, -9, 1)
at(map, frame30=lambda: setattr(player.getComponent('transform'), 'position', away))
""", frames=90)
    assert re.findall(r"creature (\w+)", log) == ["noticed", "lost"], log[-3000:]
    assert "ZeroDivisionError" in log, "and what fails is told"


def test_a_fitting_is_watched_where_the_camera_shows_it_in_light(world):
    log, _ = play(world, """
place.Camera(coordinator, 'camera', at=(0, 1.6, 6), turn=180)
lit, dark = creature(map, at=(-1, 0.9, 0)), creature(map, at=(1.5, 0.9, 0))
beside = creature(map, at=(12, 0.9, 0))
for x in (-1, 12):
    place.SphereLight(map, 'lamp', at=(x, 2.4, 0), strength=0.5, reach=2.2)
at(map, frame20=lambda: kaVel.log('watched %s %s %s' % (lit.watched, dark.watched, beside.watched)))
""")
    assert "watched True False False" in log, re.findall("watched.*", log)


if __name__ == "__main__":
    game.main(dict(globals()))
