"""Behaviour trees that scripts build, in the game itself: what is wrong with one is named, and the rest runs."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

# A level with a creature that acts by one tree, and another whose tree counts how often it was ticked.
LEVEL = """
import kaVel

steps = 0

def step(creature):
    global steps
    steps += 1
    if steps == 8:
        kaVel.log('the other one has made its steps')
    return kaVel.ActionStatus.AS_Complete

def join(parent, *children):
    for child in children:
        lib.BTAddChild(parent, child)
    return parent

def act(coordinator, name, tree):
    creature = kaVel.make('Entity', parent=coordinator, name=name)
    kaVel.addComponent(creature, 'behaviors', 'BTComponent', behaviors=[tree], defaultBehavior=tree)
    return creature

%s

def build(coordinator):
    global lib
    lib = kaVel.getSystem('BTLib')
    lib.addBehaviorTree('Wrong', wrong(coordinator))
    lib.addBehaviorTree('Right', join(lib.BTCreateSequence(), lib.BTCreateActionR(step)))
    act(coordinator, 'rat', 'Wrong')
    act(coordinator, 'crow', 'Right')
"""


def run_level(world, wrong, frames=10):
    world.write("scripts/levels/Trees.py", LEVEL % wrong)
    run = world.run(level="Trees", frames=frames)
    run.expect_code(0)
    run.expect("the other one has made its steps")
    return run


def count(run, text):
    return sum(text in line for line in run.log.splitlines())


def test_a_leaf_that_raises_is_named_once_and_the_rest_runs(world):
    run = run_level(world, """
def bites(creature):
    raise ValueError('no teeth')

def wrong(coordinator):
    return join(lib.BTCreateSelector(), lib.BTCreateActionR(bites), lib.BTCreateActionR(step))
""")
    run.expect("BTAction reflectorPtr call failed! Trees/rat: Wrong: Selector/1 Action bites")
    run.expect("ValueError: no teeth")
    assert count(run, "Assertion failed: [  ] BTAction reflectorPtr call failed!") == 1
    assert count(run, "Assertion failed: [") == count(run, "Assertion failed!") == 1, "one box for both"


def test_a_leaf_that_gives_no_status_is_named_with_what_it_gave(world):
    run = run_level(world, """
def hungry(creature):
    return False

def wrong(coordinator):
    return lib.BTCreateConditionR(hungry)
""")
    run.expect("Unexpected ReflectorPtr return value! Trees/rat: Wrong: Condition hungry: it gave False")
    assert count(run, "Assertion failed: [  ] Unexpected ReflectorPtr return value!") == 1


def test_a_leaf_whose_creature_lacks_what_it_goes_by_says_so_once(world):
    run = run_level(world, """
def wrong(coordinator):
    act(coordinator, 'guard', 'Patrol')
    return join(lib.BTCreateSequence(), lib.BTCreateAction(kaVel.make('ActPatrol')))
""")
    lacking = "its creature lacks what it goes by, so that it comes to nothing."
    run.expect("KnowsOfTarget: " + lacking + " Whether a creature's senses know that its target is about;")
    run.expect("Action walks its round: " + lacking)
    assert count(run, lacking) == 2, "once a node"


def test_a_child_that_is_no_task_is_named_by_its_place(world):
    run = run_level(world, """
def wrong(coordinator):
    return join(lib.BTCreateSequence(), join(lib.BTCreateSelector(), lib.BTCreateDecorator('DT_Interrupter')))
""")
    run.expect("Allocation of BTDecorator node failed!")
    run.expect("Trees/rat: Wrong: Sequence/1 Selector: child 1 is no task")


def test_a_tree_within_itself_is_named_and_fails(world):
    run = run_level(world, """
def wrong(coordinator):
    return join(lib.BTCreateSequence(), lib.BTCreateSubtreeLookup('Wrong'))
""")
    run.expect("Trees/rat: Wrong: Sequence/1 Tree Wrong: the tree 'Wrong' may not stand within itself (Wrong > Wrong)")


def test_a_tree_that_is_deeper_than_any_is_refused_by_its_name(world):
    run = run_level(world, """
def wrong(coordinator):
    root = lib.BTCreateSequence()
    for i in range(100000):
        root = join(lib.BTCreateDecorator('DT_Inverter'), root)
    return root
""")
    run.expect("The behaviour tree 'Wrong' cannot be copied: it is deeper than 1000 nodes")


def test_a_creature_that_its_own_leaf_murders_is_gone_and_the_rest_runs(world):
    run = run_level(world, """
def die(creature):
    creature.murder()
    kaVel.log('the rat is dying: %s' % creature.isDying())
    return kaVel.ActionStatus.AS_Complete

def wrong(coordinator):
    return join(lib.BTCreateSequence(), lib.BTCreateActionR(die))
""")
    assert count(run, "the rat is dying: True") == 1, "it acts for the last time in the frame of its death"


def test_a_script_of_the_library_that_raises_is_shown_and_the_game_runs(world):
    world.write("scripts/BehaviorLib/Wander.py", "def buildWander(btLib):\n    raise KeyError('stroll')\n")
    run = run_level(world, "def wrong(coordinator):\n    return lib.BTCreateActionR(step)\n")
    run.expect("A script that builds behaviour trees failed")
    run.expect("scripts/BehaviorLib/Wander.py")
    run.expect("KeyError: 'stroll'")


def test_scripts_see_what_a_creature_does_and_why(world):
    world.write_level("Telling", """
lib = kaVel.getSystem('BTLib')
creature = kaVel.make('Entity', parent=coordinator, name='rat')
mind = kaVel.addComponent(creature, 'behaviors', 'BTComponent', behaviors=['Wander', 'Nowhere'],
                          defaultBehavior='Wander')
kaVel.finishLoad(creature)
kaVel.log('behaviours: %s' % mind.behaviors)
kaVel.log('why: ' + kaVel.why(creature))
kaVel.log('property: ' + mind.why)
kaVel.log(mind.drawTree())
def muse(entity):
    return kaVel.ActionStatus.AS_InProgress
muse.__name__ = muse.__qualname__ = 'thinks of cheese'
lib.addBehaviorTree('Muse', lib.BTCreateActionR(muse))
mouse = kaVel.make('Entity', parent=coordinator, name='mouse')
kaVel.addComponent(mouse, 'behaviors', 'BTComponent', behaviors=['Muse'], defaultBehavior='Muse')
kaVel.finishLoad(mouse)
kaVel.log('why: ' + kaVel.why(mouse))
for given in ('Wander', [1], 3):
    try:
        mind.setBehaviors(given)
    except ValueError as error:
        kaVel.log('refused: %s' % error)
""")
    run = world.run(level="Telling", frames=2)
    run.expect_code(0)
    run.expect("behaviours: ['Wander']")
    run.expect("why: rat: Wander: ")
    run.expect("property: rat: Wander: ")
    run.expect("why: mouse: Muse: thinks of cheese.")
    run.expect("Wander (active)\n> ")
    assert count(run, "refused: behaviour") == 3, run.log[-3000:]


if __name__ == "__main__":
    game.main(dict(globals()))
