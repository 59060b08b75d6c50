"""Views of what is otherwise felt: their numbers are those of the light, the ways of sound, the senses, the passes."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

#: Two rooms with a door between them, a lamp and a sound in one, somebody with senses in the other.
LEVEL = """
import math
import sys

import kaVel
import objects.GameObjects as place
from objects.Placing import onFrame, placed


def build(coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.0)
    coordinator.loadMap('house')
    place.Player(coordinator, at=(-3, 0, 0), turn=90)
    loop = kaVel.getSystem('GameLoopSystem')

    def run(line):
        coordinator.getChild('Console').getComponent('console').executeCommand(line)

    def shown(name):
        from editor.views.Onlooker import Onlooker
        return Onlooker.of(coordinator).shown[name]

    def note(what, value):
        kaVel.log('note: %s: %s' % (what, value))

    def tick():
        script(coordinator, loop.frameNumber, run, shown, note)

    onFrame(placed(coordinator, 'watch'), tick)


def house(map):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 1.5, 0, 1), scale=kaVel.Vec4(16, 3, 12, 0))
    place.Box(map, 'floor', at=(0, -0.1, 0), size=(12, 0.1, 6))
    place.Block(map, 'ground', at=(0, -1, 0), size=(14, 1, 8))
    for name, x, z, wide, deep in (('north', 0, 3.5, 12, 1), ('south', 0, -3.5, 12, 1), ('west', -6.5, 0, 1, 8),
                                   ('east', 6.5, 0, 1, 8), ('left', 0, -1.75, 0.2, 2.5), ('right', 0, 1.75, 0.2, 2.5)):
        place.Block(map, name, at=(x, 0, z), size=(wide, 3, deep))
    place.HingedDoor(map, 'door', at=(0, 0, 0), turn=90)
    place.ShadowSpot(map, 'lamp', at=(-3, 2.8, 0), pitch=90, strength=1.0, reach=5.0, angle=35)
    place.Sound(map, 'clock', at=(4, 1.5, 2), event='ClockTick')
    guard = placed(map, 'guard', at=(-5, 0.9, 0), turn=90)
    kaVel.addComponent(guard, 'perception', 'PerceptionComponent', noticesLamps=False)


"""


def notes(world, script, frames=60, **words):
    """What the script notes of the level, and the run; nothing is drawn without further words."""
    world.write("scripts/levels/Looked.py", LEVEL + script)
    run = world.run("Looked", frames=frames, KAVEL_SIZE="640x360", **(words or {"KAVEL_UNDRAWN": "1"}))
    run.expect_code(0)
    return dict(line.split("note: ", 1)[1].split(": ", 1) for line in run.log.splitlines() if "note: " in line), run


LIGHT = """
def script(level, frame, run, shown, note):
    if frame == 2:
        note('loaded before', 'editor.views.Light' in sys.modules)
        run('view light')
        run('view lihgt')
    if frame == 60 or frame == 130:
        view, map, right = shown('Light'), level.getChild('house'), []
        for survey in view.surveys:
            same = lit = 0
            for spot in range(survey.spotCount):
                at = survey.getSpot(spot)
                asked = kaVel.Reflection.lightAt(map, kaVel.Vec4(at.x, at.y + 0.05, at.z, 1))
                same += survey.getLight(spot) == asked
                lit += asked > 0
            right.append(same == survey.spotCount and lit > 50 and lit < same)
        note('all as asked %d' % frame, all(right) and right != [])
        at = view.pointed
        note('pointed %d' % frame, view.told == '%.3f' % kaVel.Reflection.lightAt(
            map, kaVel.Vec4(at.x, at.y + 0.05, at.z, 1)))
        note('done %d' % frame, view.steps is None)
    if frame == 61:
        level.getChild('house').getChild('lamp').getComponent('transform').position = kaVel.Vec4(-5, 2.8, 1, 1)
        shown('Light').changed()
    if frame == 131:
        run('view light')
        from editor.views.Onlooker import Onlooker
        note('left', len(Onlooker.of(level).shown))
"""


def test_the_light_of_the_floor_is_what_is_asked_for_there_before_and_after_a_change(world):
    told, run = notes(world, LIGHT, frames=140)
    assert told == {"loaded before": "False", "all as asked 60": "True", "pointed 60": "True", "done 60": "True",
                    "all as asked 130": "True", "pointed 130": "True", "done 130": "True", "left": "0"}, told
    run.expect("no view 'lihgt'; did you mean 'Light'?")


DARK = """
def script(level, frame, run, shown, note):
    if frame == 2:
        level.getChild('house').getChild('lamp').getComponent('graphics2').visible = False
        run('view dark stretches')
    if frame == 40:
        note('longest', '%.1f' % shown('Dark stretches').longest)
"""


def test_a_dark_stretch_is_as_long_as_one_walks_through_it(world):
    told, _ = notes(world, DARK)
    assert 11.5 < float(told["longest"]) < 13.5, told  # from corner to corner of 12 by 6 m, through the door


HEARD = """
def script(level, frame, run, shown, note):
    if frame == 50:
        from editor.views.Heard import hear
        map = level.getChild('house')
        ways, clock, door = (map.getComponent('soundWays'), map.getChild('clock').getComponent('transform').position,
                             map.getChild('door').getComponent('physics'))
        near, far = kaVel.Vec4(4, 1.5, -2, 1), kaVel.Vec4(-4, 1.5, 2, 1)
        for name, at, opened in (('near', near, False), ('shut', far, False), ('open', far, True)):
            door.open = opened
            found = [heard for heard in hear(map, at) if heard.entity.name == 'clock'][0]
            way = ways.hear(clock, at)
            note(name, '%s %s' % (','.join(found.doors) or 'none', abs(found.decibels - 20 * math.log10(
                way.gain / max(way.distance, 1))) < 1e-6))
            note(name + ' dB', '%.1f' % found.decibels)
"""


def test_what_is_heard_comes_by_the_door_that_it_goes_through_as_loud_as_the_ways_of_sound_say(world):
    told, _ = notes(world, HEARD)
    assert told["near"] == "none True" and told["open"] == "door True", told
    assert told["shut"].endswith(" True"), told
    assert float(told["near dB"]) > float(told["open dB"]) > float(told["shut dB"]) + 10, told


SENSES = """
def script(level, frame, run, shown, note):
    if frame == 2:
        run('view senses')
    if frame == 40:
        from editor.views.Senses import clarityAt
        view = shown('Senses')
        senses, here = view.senses, view.senses.parent.getComponent('transform').position
        player = level.getChild('Player').getComponent('transform').position
        before = senses.clarity
        eye = kaVel.Vec4(here.x, here.y + senses.eyeOffset.y, here.z, 1)
        note('as it sees', abs(senses.clarityFrom(eye, kaVel.Vec4(1, 0, 0, 0)) - before) < 0.02 and before > 0.1)
        note('away', senses.clarityFrom(eye, kaVel.Vec4(-1, 0, 0, 0)))
        note('behind the door', senses.clarityFrom(kaVel.Vec4(3, 1.5, 2, 1), kaVel.Vec4(-1, 0, 0, 0)))
        note('no numbers', senses.clarityFrom(kaVel.Vec4(math.nan, 0, 0, 1), kaVel.Vec4(0, 0, 0, 0)))
        note('unchanged', senses.clarity == before)
        note('told', clarityAt(senses, kaVel.Vec4(here.x, 0, here.z, 1)) > 0.1)
"""


def test_what_would_be_seen_from_a_place_is_what_a_creature_there_sees(world):
    told, _ = notes(world, SENSES)
    assert told == {"as it sees": "True", "away": "0.0", "behind the door": "0.0", "no numbers": "0.0",
                    "unchanged": "True", "told": "True"}, told


DRAWS = """
plain = [0]


def script(level, frame, run, shown, note):
    graphics = level.getManager('graphics2')
    if frame == 10:
        plain[0] = kaVel.getSystem('GraphicsSystem2').drawCallCount
        graphics.measureView(graphics.getCurrentCamera())
    if frame == 11:
        cost, drawn = graphics.viewCost, kaVel.getSystem('GraphicsSystem2').drawCallCount
        note('counted', cost.x > 3 and drawn - plain[0] == cost.x)
        note('pixels', 0.2 < cost.z < 20)
        graphics.measureView(level.getChild('house').getChild('clock'))
    if frame == 12:
        note('of no camera', graphics.viewCost.x)
        run('view draw calls')
        run('view memory')
    if frame == 55:
        note('places', len(shown('Draw calls').costs) > 3)
        note('most', shown('Memory').assets[0][0] > 1000 and shown('Memory').assets == sorted(
            shown('Memory').assets, reverse=True))
"""


def test_draw_calls_by_place_are_those_that_the_device_counts(world):
    told, _ = notes(world, DRAWS, screenshot="drawn.png")
    assert told == {"counted": "True", "pixels": "True", "of no camera": "0.0", "places": "True", "most": "True"}, told


ALL = """
def script(level, frame, run, shown, note):
    from editor.Views import views
    views.gather()
    names = [each.name for each in views.all()]
    if frame == 2:
        note('views', len(names))
        for name in names:
            run('view ' + name)
    if frame == 50:
        note('on', len([name for name in names if shown(name).state() is not None]))
"""


def test_all_views_are_on_at_once_and_none_fails(world):
    told, run = notes(world, ALL, screenshot="all.png")
    assert told["views"] == told["on"] and int(told["views"]) >= 11, told
    assert not run.has("is switched off") and not run.has("Traceback"), run.log[-3000:]


if __name__ == "__main__":
    game.main(dict(globals()))
