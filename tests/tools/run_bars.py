"""The tweak bars as a developer uses them: bars of scripts, the inspector, by mouse and keys in a window."""
import pathlib
import re
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import display
import game

#: What can go wrong in what scripts give to a bar, all on one.
FAULTS = """
import kaVel
from levels.FirstRoom import build as furnish, villa
def build(coordinator):
    furnish(coordinator)
    tweaks = kaVel.getSystem('TweakSystem')
    bar = tweaks.makeBar('Faults')
    assert tweaks.makeBar('Faults') == bar
    bar.setPlace(-100000000, 100000000, 1 << 30, -5)
    bar.addValue('raises', 'Raises', lambda: 1 / 0, None)
    bar.addText('long', 'Long', lambda: 'word ' * 200000)
    bar.addText('odd', '', lambda: '%s %n ## ### tail')
    bar.addValue('kind', 'Kind', lambda: 7, None)
    bar.setChoices('kind', 'walks\\nruns')
    bar.addValue('turns', 'Changes its type', iter([1, 'two', None, 4.0] * 9).__next__, lambda value: None)
    bar.setRange('kind', float('nan'), 3)
    curve = iter([1.0, float('nan'), float('inf'), 'text', 1e300] * 9)
    bar.addGraph('curve', 'Curve', curve.__next__, -1)
    bar.addPictures('pictures', lambda: 3, lambda i: '/nowhere/%d.png' % i, None)
    bar.addList('many', lambda: 1000000, lambda i: '\\t\\t* row %d' % i, None)
    bar.addList('none', lambda: -3, None, None)
    clearing = tweaks.makeBar('Clears itself')
    clearing.addText('a', 'A', lambda: clearing.clear() or 'gone')
    clearing.addText('b', 'B', lambda: 'too')
    dying = tweaks.makeBar('Dies')
    dying.addList('rows', lambda: 100, lambda i: dying.murder() or 'x', None)
    ofLevel = tweaks.makeBar('Of the level')
    ofLevel.setParent(coordinator)
    crowd = kaVel.make('Entity', parent=coordinator, name='crowd')
    for i in range(100000):
        crowd_i = kaVel.make('Entity', parent=crowd)
    tweaks.addBar(crowd)
    victim = kaVel.make('Entity', parent=coordinator, name='victim')
    tweaks.addBar(victim)
    tweaks.watch(victim, 'name')
    tweaks.search('value:crowd')
    tweaks.shown = True
    frame = iter(range(100))
    def each():
        number = next(frame)
        if number == 3:
            kaVel.log('bars: %d' % tweaks.barCount)
            victim.murder()
        if number == 5:
            kaVel.log('bars: %d' % tweaks.barCount)
            kaVel.make('Entity', parent=coordinator, name='victim')
        if number == 7:
            kaVel.log('bars: %d, %d children' % (tweaks.barCount, crowd.childCount))
            kaVel.log('controls left: %r' % clearing.whereIs('b'))
            tweaks.captureScreen('../bars.png')
            kaVel.getSystem('GameLoopSystem').queueLoadLevel('FirstRoom')
    clock = kaVel.make('Entity', parent=coordinator, name='clock')
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=each)
"""

#: A bar and an object in places that a test can find, with what is done to them in the log.
PLAYED = """
import kaVel
from levels.FirstRoom import build as furnish, villa
values = {'number': 5.0, 'words': 'old'}
def put(name, value):
    values[name] = value
    kaVel.log('set %s to %s' % (name, value))
told = {}
def show(name, place):
    if place.z > 0 and told.get(name) != (place.x, place.y, place.z, place.w):
        told[name] = place.x, place.y, place.z, place.w
        kaVel.log('%s at %d %d %d %d.' % (name, place.x, place.y, place.z, place.w))
def build(coordinator):
    furnish(coordinator)
    tweaks = kaVel.getSystem('TweakSystem')
    bar = tweaks.makeBar('Test')
    bar.setPlace(700, 100, 380, 300)
    bar.addButton('go', 'Go', lambda: kaVel.log('pressed'))
    bar.addValue('number', 'Number', lambda: values['number'], lambda value: put('number', value))
    bar.addValue('words', 'Words', lambda: values['words'], lambda value: put('words', value))
    bar.addList('rows', lambda: 5000, lambda i: 'row %d' % i, lambda i: kaVel.log('row %d' % i))
    lamp = coordinator.getDescendantByPath('villa/deskLamp')
    where = lamp.getDescendantByPath('transform')
    tweaks.setEdited(lambda thing, name, before, after: kaVel.log(
        'edited %s/%s from %.2f to %.2f' % (thing.parent.name, name, before.x, after.x)))
    frames = iter(range(1 << 30))
    def each():
        number = next(frames)
        if number == 2:
            tweaks.addBar(lamp)
        if tweaks.keyboardInBars and told.setdefault('typing', number) == number:
            kaVel.log('a text has the keyboard')
        if number % 20 == 0 and tweaks.shown:
            for name in ('', 'go', 'number', 'words', 'rows'):
                show('bar ' + name, bar.whereIs(name))
            show('place', tweaks.whereIs(lamp, 'stands place'))
            light = lamp.getDescendantByPath('light/transform')
            kaVel.log('lamp %.3f light %.3f' % (where.position.x, light.position.x))
    clock = kaVel.make('Entity', parent=coordinator, name='clock')
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=each)
"""


def test_what_scripts_and_levels_do_wrong_is_shown_and_hurts_nobody(world):
    world.write("scripts/levels/Faults.py", FAULTS)
    run = world.run(level="Faults", frames=30)
    run.expect_code(0)
    assert not run.has("assertion failed"), run.log[-3000:]
    assert run.log.count("get of 'raises' failed: ZeroDivisionError") == 1, "it goes on failing and is told once"
    run.expect("nan to 3 is no range of 'kind'")
    run.expect("bars: 2\n")
    run.expect("bars: 1\n")
    run.expect("bars: 2, 100000 children")  # the victim's bar came back with another one of its name
    run.expect("controls left: Vec4(0, 0, 0, 0)")
    assert (world.folder / "bars.png").stat().st_size > 50000


def place_of(log, name):
    """Left, top, right and lower edge of what the level last told of."""
    line = [line for line in log.splitlines() if f"{name} at " in line][-1]
    return [int(number) for number in line.rsplit(" at ", 1)[1].rstrip(".").split()]


def point(played, x, y):
    played.display.tool("mousemove", "--window", played.window, x, y)
    time.sleep(0.15)


def drag(played, x, y, dx, dy=0):
    screen = played.display
    point(played, x, y)
    time.sleep(0.2)
    screen.tool("mousedown", 1)
    for step in range(1, 6):
        point(played, x + dx * step // 5, y + dy * step // 5)
    screen.tool("mouseup", 1)
    time.sleep(0.3)


def middle(place):
    return (place[0] + place[2]) // 2, (place[1] + place[3]) // 2


def lamp_and_light_have_moved(log):
    told = [(float(lamp), float(light)) for lamp, light in re.findall(r"lamp (\S+) light (\S+)", log)]
    lamp, light = (last - first for first, last in zip(told[0], told[-1]))
    return abs(lamp) > 0.01 and abs(lamp - light) < 0.002


def test_a_developer_works_with_mouse_and_keys(world):
    world.write("scripts/levels/Played.py", PLAYED)
    with display.Display() as screen, display.Game(world, screen, "Played") as played:
        played.focus()
        played.until(lambda: screen.tool("getwindowgeometry", played.window), "the window")
        played.press("F2")
        played.until_logged("bar rows at ")
        played.until_logged("place at ")

        def click(name):
            point(played, *middle(place_of(played.log(), name)))
            time.sleep(0.3)
            screen.tool("click", 1)

        click("bar go")
        played.until_logged("pressed")
        drag(played, *middle(place_of(played.log(), "bar number")), 60)
        played.until_logged("set number to ")
        click("bar words")
        played.until_logged("a text has the keyboard")
        screen.tool("key", "ctrl+a")
        time.sleep(0.7)  # what comes in one frame with Ctrl is no text
        screen.tool("type", "--delay", "60", "new")
        screen.tool("key", "Return")
        played.until_logged("set words to new")
        rows = place_of(played.log(), "bar rows")
        point(played, rows[0] + 40, rows[1] + 20)
        time.sleep(0.3)
        screen.tool("click", 1)
        played.until_logged("Information: row ")

        left, top, right, bottom = place_of(played.log(), "place")
        drag(played, left + (right - left) // 6, (top + bottom) // 2, 40)  # the field of x
        played.until_logged("edited deskLamp/position from -0.56 to ")
        assert played.log().count("edited deskLamp/position") == 1, "one drag is one edit"
        played.until(lambda: lamp_and_light_have_moved(played.log()), "a lamp and its light that move together")

        left, top, _, _ = place_of(played.log(), "bar ")
        drag(played, left + 150, top + 8, -300, 150)
        played.until(lambda: 0 < place_of(played.log(), "bar ")[0] < left - 200, "the bar at its new place")
        played.resize(640, 400)
        played.until(lambda: place_of(played.log(), "bar ")[2] <= 640 and place_of(played.log(), "bar ")[3] <= 400,
                     "the bar inside the smaller window")
        played.press("F2")
        kept = world.folder / "config" / "mornal" / "tweakBars"
        played.until(kept.exists, "the places of the bars in their file")
        assert played.quit() == 0
    kept = kept.read_text(encoding="utf-8")
    assert "bar\tTest\t" in kept and "bar\tc:/villa/deskLamp\t" in kept, kept


if __name__ == "__main__":
    game.main(dict(globals()))
