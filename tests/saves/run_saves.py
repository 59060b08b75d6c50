"""Saves in the game: what comes back, what is refused, and what no accident takes."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support")]
import game

HOOK = """

_house = house


def house(map):
    _house(map)
    import steps
    clock = kaVel.make('Entity', parent=map, name='steps')  # in a stopped level, too
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=lambda: steps.doFrame(_night))
"""

STEPS = """
import kaVel
import objects.GameObjects as place
import saves
from objects.Life import lifeOf

FACTS = []


def fact(name, value):
    kaVel.log('FACT %s %r' % (name, value))


def said(outcome):
    fact('said', (outcome.done, outcome.waits, outcome.name, outcome.said))


def doFrame(night):
    frame = kaVel.getSystem('GameLoopSystem').frameNumber
    step = STEPS.get(frame)
    if step:
        step(night)
"""


def nightfall(world, steps, frames, **environment):
    """Runs Nightfall undrawn, with functions of the night at some frames; what they told, in order."""
    level = (ROOT / "scripts" / "levels" / "Nightfall.py").read_text(encoding="utf-8")
    world.write("scripts/levels/Nightfall.py", level + HOOK)
    world.write("scripts/steps.py", STEPS + steps)
    options = {"KAVEL_SAVES": str(world.folder / "saves"), "KAVEL_UNDRAWN": "1", **environment}
    outcome = world.run(level="Nightfall", frames=frames, **options)
    outcome.expect_code(0)
    assert not outcome.has("Traceback"), outcome.log[-4000:]
    facts = [line.split("FACT ", 1)[1].split(" ", 1) for line in outcome.log.splitlines() if "FACT " in line]
    return [(name, eval(value)) for name, value in facts], outcome


def test_a_game_comes_back_as_it_was(world):
    facts, _ = nightfall(world, """
def play(night):
    body = night.map.getChild('lamp').getComponent('physics')
    night.mind = night.player.getComponent('player')
    night.mind.pickupFlashlight(body)
    for name in ('battery0', 'battery1'):
        volume = night.map.getChild(name).getComponent('boundingVolume')
        volume.interactWithPlayer(night.mind)
    night.map.getChild('stairKey').getComponent('boundingVolume').interactWithPlayer(night.mind)
    kaVel.configure(night.mind, sanity=61.0, currBatteryTimeLeft=33.0)
    lifeOf(night.level).hurt(25, 'a test')
    night.leaves['doorSix'].getComponent('physics').openDoor(night.player)
    night.visitor.goTo((9.2, 3.0, -0.9), 180.0, 10.0)


def tell(night):
    mind = night.player.getComponent('player')
    at, turn, pitch = night.visitor.standing()
    fact('at', [round(each, 1) for each in (*at, turn, pitch)])
    fact('mind', [round(mind.sanity), mind.getHasFlashlight(), mind.isFlashlightOn(), mind.batteries,
                  round(mind.currBatteryTimeLeft, 0)])
    fact('pockets', night.story.pockets.told())
    fact('life', round(lifeOf(night.level).value))
    fact('door', round(abs(night.leaves['doorSix'].getComponent('physics').prevAngle), 2))
    fact('things', sorted(child.name for child in night.map.children
                          if child.name in ('lamp', 'battery0', 'battery1', 'stairKey', 'battery2')))


STEPS = {100: play, 260: lambda night: (tell(night), said(saves.save())), 262: lambda night: said(saves.load('game1')),
         275: tell}
""", 290)
    here = facts.index(("said", (True, False, "game1.2", "It is written down.")))
    before, after = facts[:here], facts[here + 2:]
    assert before == after and len(before) == 6, (before, after)
    assert ("pockets", {"things": {"stairKey": 1}, "labels": {"stairKey": "the stair key"}, "pages": {}}) in after
    assert ("mind", [60, True, True, 2, 30.0]) in after and ("things", ["battery2"]) in after, after
    assert facts[here + 1] == ("said", (True, False, "game1.2", "")), facts[here + 1]


def test_nightfall_is_won_by_one_who_loads_at_every_safe_place(world):
    world.write("scripts/courses/loading.py", """
from courses import nightfallWins

LEVEL, SEED = 'Nightfall', 1


def play(driver):
    import saves
    known = set()
    for _ in nightfallWins.play(driver):
        new = set(saves.folder().names()) - known
        known |= new
        if new:
            yield from loadAndGoOn(driver, str(max(new, key=lambda name: name.serial)))
        yield


def loadAndGoOn(driver, name):
    import kaVel
    import saves
    held, before = sorted(driver.held), driver.coordinator
    crouched = before.getChild('Player').getComponent('player').isCrouched()
    for action in held:
        yield from driver.release(action)
    kaVel.log('FACT loaded %r' % [saves.find(name).place, saves.load(name).done])
    while driver.coordinator == before:
        yield
    yield from driver.wait(1.0)
    if crouched:
        yield from driver.tap('crouch')
        yield from driver.wait(0.6)
    for action in held:
        yield from driver.press(action)
""")
    outcome = world.run(level="Nightfall", frames=60000, KAVEL_SAVES=str(world.folder / "saves"), KAVEL_UNDRAWN="1",
                        KAVEL_COURSE="loading", KAVEL_SIZE="640x360")
    outcome.expect("The level is won")
    loaded = [line.split("'")[1] for line in outcome.log.splitlines() if "FACT loaded" in line and "True]" in line]
    assert [place.rpartition(".")[2] for place in loaded] == [
        "corridor", "seven", "six", "passage", "sewing", "linen", "landing", "service"], loaded


if __name__ == "__main__":
    game.main(dict(globals()))
