"""The trees that the game brings with it, acted by creatures in the running game."""
import math
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

SECOND = 60  # frames, nearly

#: A dark hall of 24 m with a wall across its middle that leaves both ends open, and one in it who may move.
SCENE = """
import kaVel
import objects.GameObjects as place
from objects.Placing import onFrame, turned
from BehaviorLib.Patrol import giveRound

def creature(map, tree, at, turn=0, **senses):
    entity = place.placed(map, 'rat', at=(at[0], 0.9, at[1]), turn=turn)
    place.addVolume(entity, (0.6, 1.8, 0.6), 'BV_BOX')
    kaVel.addComponent(entity, 'physics', 'RigidBody')
    kaVel.addComponent(entity, 'pathFollower', 'PathFollower')
    kaVel.addComponent(entity, 'perception', 'PerceptionComponent', **senses)
    kaVel.addComponent(entity, 'behaviors', 'BTComponent', behaviors=[tree], defaultBehavior=tree)
    return entity

def build(coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.0
    coordinator.loadMap('hall')

def hall(map):
    map.getComponent('transform').scale = kaVel.Vec4(24, 0, 24, 0)
    place.PartitioningGrid(map, size=(24, 0, 24))
    place.Block(map, 'wall', at=(0, 0, 0), size=(16, 3, 0.4))
    player = place.placed(map, 'Player', at=(0, 0.9, 6))
    place.addVolume(player, (0.5, 1.8, 0.5), 'BV_PLAYER')
    kaVel.addComponent(player, 'physics', 'RigidBody', inverseMass=0)
    frames = [0]
    def tell():
        frames[0] += 1
        acts(player, frames[0])
        if frames[0] %% 30 == 0:
            at = rat.getComponent('transform').position
            kaVel.log('rat %%.2f %%.2f | %%s' %% (at.x, at.z, kaVel.why(rat)))
    onFrame(kaVel.make('Entity', parent=map, name='clock'), tell)
    rat = make(map)

def acts(player, frame):
    pass

%s
"""


def play(world, body, seconds, warnings=0):
    """Where the creature was every half a second, and what it did and why; the log warns so many times of trees."""
    world.write("scripts/levels/Den.py", SCENE % body)
    outcome = world.run("Den", frames=seconds * SECOND + 10, KAVEL_SIZE="64x36")
    outcome.expect_code(0)
    assert not outcome.has("Error:"), outcome.log[-3000:]
    assert outcome.log.count("comes to nothing") == warnings, outcome.log[-3000:]
    told = re.findall(r"rat (-?[\d.]+) (-?[\d.]+) \| (.*)", outcome.log)
    return [((float(x), float(z)), why) for x, z, why in told]


def distance(a, b):
    return math.dist(a, b)


def places_of(steps):
    return [at for at, _ in steps]


def said(steps, text):
    return [number for number, (_, why) in enumerate(steps) if text in why]


def test_a_wanderer_strolls_to_places_near_by_and_looks_about_there(world):
    steps = play(world, """
def make(map):
    return creature(map, 'Wander', (-6, -6), hasEyes=False, hasEars=False)
""", 25)
    assert said(steps, "Wander: strolls; on its way to") and said(steps, "Wander: looks about; has come to")
    assert max(distance(at, (-6, -6)) for at in places_of(steps)) > 2


def test_a_hunter_goes_after_whom_it_sees_and_searches_where_it_lost_him(world):
    steps = play(world, """
def make(map):
    return creature(map, 'Pursue', (-2, 10), turn=180, seesInDark=True)

def acts(player, frame):
    if frame == 240:
        player.getComponent('transform').position = kaVel.Vec4(9, 0.9, -9, 1)
""", 12)
    near = [number for number, at in enumerate(places_of(steps)) if distance(at, (0, 6)) < 1.3]
    assert near and near[0] < 8, "it is with him while he stands there"
    searching = said(steps, "Pursue: searches; remembers the player")
    assert searching and searching[0] >= 8 and len(searching) > 5, steps


def test_a_searcher_goes_around_the_wall_to_what_it_was_told_of(world):
    steps = play(world, """
def make(map):
    rat = creature(map, 'Search', (-6, 6), hasEyes=False, hasEars=False)
    rat.getComponent('perception').alarm(kaVel.Vec4(4, 0.9, -5, 1), 2.0)
    return rat
""", 20)
    assert said(steps, "Search: looks into it") and said(steps, "Search: searches")
    assert min(distance(at, (4, -5)) for at in places_of(steps)) < 1.1
    assert all(abs(z) > 0.4 or abs(x) > 8 for x, z in places_of(steps)), "nobody goes through the wall"


def test_who_flees_goes_away_from_whom_it_sees_and_stays_there(world):
    steps = play(world, """
def make(map):
    return creature(map, 'Flee', (0, 9), turn=180, seesInDark=True)
""", 8)
    assert said(steps, "Flee: flees into the dark") and said(steps, "Flee: listens in the dark")
    assert distance(steps[-1][0], (0, 6)) > 6, steps[-1]


def test_a_patrol_comes_to_the_places_of_its_round_one_after_the_other(world):
    steps = play(world, """
def make(map):
    rat = creature(map, 'Patrol', (-6, -6), hasEyes=False, hasEars=False)
    giveRound(rat, [kaVel.Vec4(x, 0.9, z, 1) for x, z in ((-9, -6), (-9, 0), (-9, -6))])
    return rat
""", 20)
    reached = [min(((-9, -6), (-9, 0)), key=lambda stop: distance(at, stop)) for at, why in steps
               if "looks about" in why]
    stops = [stop for number, stop in enumerate(reached) if number == 0 or stop != reached[number - 1]]
    assert stops[:3] == [(-9, -6), (-9, 0), (-9, -6)], stops


def test_a_guard_that_was_moved_goes_back_to_its_place(world):
    steps = play(world, """
def make(map):
    return creature(map, 'Guard', (-6, -6), hasEyes=False, hasEars=False)

def acts(player, frame):
    if frame == 60:
        player.parent.getChild('rat').getComponent('transform').position = kaVel.Vec4(-2, 0.9, -9, 1)
""", 8)
    assert max(distance(at, (-6, -6)) for at in places_of(steps)) > 3
    assert distance(steps[-1][0], (-6, -6)) < 1, steps[-1]


def test_what_haunts_keeps_to_the_dark_near_its_target(world):
    steps = play(world, """
def make(map):
    place.SphereLight(map, 'lamp', at=(3, 2.4, 6), strength=0.8, reach=6)
    return creature(map, 'Haunt', (4, 8), hasEyes=False, hasEars=False)
""", 14)
    at, why = steps[-1]
    assert "Haunt: lurks in the dark" in why
    assert 3 < distance(at, (0, 6)) < 12 and (distance(at, (3, 6)) > 5.5 or at[1] < 0), at


def test_a_creature_without_what_its_tree_needs_does_nothing_and_says_so(world):
    steps = play(world, """
def make(map):
    rat = place.placed(map, 'rat', at=(1, 0.9, 2))
    for name in ('Wander', 'Search', 'Pursue', 'Flee', 'Patrol', 'Guard', 'Haunt'):
        lone = place.placed(map, 'lone', at=(1, 0.9, 2))
        kaVel.addComponent(lone, 'behaviors', 'BTComponent', behaviors=[name], defaultBehavior=name)
    return rat
""", 2, warnings=7)
    assert steps and all(why == "rat does nothing." for _, why in steps), steps


if __name__ == "__main__":
    game.main(dict(globals()))
