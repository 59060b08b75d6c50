"""The level "Workshop": what stops a walker and what gives way, what he can use, and what stays after a reload."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

VIEWS = ("1-workshop", "2-crates", "3-stack", "4-floats", "5-ironDoor", "6-slidingDoor", "7-updraught", "8-chute",
         "9-targets")

DRIVER = '''
import sys

import kaVel



def begin(coordinator, visit):
    """Runs the test's script beside a visit: it yields how many frames are to pass."""
    # Scripts are read anew with their level; the interpreter stays.
    sys.loadsOfTheVisit = loads = getattr(sys, 'loadsOfTheVisit', 0) + 1
    steps, left = script(visit, loads), [2]

    def frame():
        left[0] -= 1
        if left[0] <= 0:
            left[0] = next(steps, 1 << 30)

    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'hud', 'ScriptComponent', frameCallback=frame)


def press(*keys):
    for key in keys:
        kaVel.send('KeyDownMessage', ord(key) if isinstance(key, str) else key)


def release(*keys):
    for key in keys:
        kaVel.send('KeyUpMessage', ord(key) if isinstance(key, str) else key)


def use():
    press('E')
    release('E')


def note(*values):
    kaVel.log('note: ' + ' '.join('%.5f' % value if isinstance(value, float) else str(value) for value in values))


def place(entity):
    return entity.getComponent('transform').position


def blocks(visit):
    """Middle and extents of everything in the cellar that stands still and has a body."""
    walls = []
    for entity in kaVel.descendants(visit.map):
        if entity._getType().name == 'Entity' and entity.getComponent('physics'):
            volume = entity.getComponent('boundingVolume')
            if volume and volume.volumeType == 3 and not volume.trigger:
                walls.append((place(entity), volume.hitBox, entity.getComponent('transform').orientation))
    return walls


'''


def drive(world, script, frames, rate=60):
    """Runs the level beside a script, in a window of a few pixels; returns what the script noted, and the run."""
    golden.small(world, (64, 36))
    config = world.folder / "scripts" / "GameConfig.py"
    config.write_text(re.sub(r"fixedFrameRate = \d+", f"fixedFrameRate = {rate}", config.read_text()))
    world.write("scripts/drive.py", DRIVER + script)
    level = world.folder / "scripts" / "levels" / "Workshop.py"
    if "drive" not in level.read_text():
        text = level.read_text().replace("def views():", "def noViews():")  # nobody but the script leads him about
        level.write_text(text.replace("    _visit.goTo(1)\n", "    _visit.goTo(1)\n    import drive\n"
                                      "    drive.begin(coordinator, _visit)\n"))
    run = world.run(level="Workshop", frames=frames, KAVEL_VERBOSE="1")
    run.expect_code(0)
    complain(run.log)
    return [" ".join(line.split("note: ", 1)[1].split()) for line in run.log.splitlines() if "note: " in line], run


def complain(log):
    complaints = [line for line in log.splitlines()
                  if re.search(r"(^|: )(Warning|Error|Critical): |Assertion failed|Traceback", line)]
    assert not complaints, "\n".join(complaints)


WANDER = '''
import random


def script(visit, loads):
    dice, held, walls = random.Random(SEED), set(), blocks(visit)
    kaVel.configure(visit.leaves['storeDoor'].getComponent('physics'), open=True)
    kaVel.configure(visit.leaves['cisternDoor'].getComponent('physics'), open=True)
    body = visit.visitor.player
    volume = body.getComponent('boundingVolume')
    reached, worst = set(), 0.0
    for number in range(FRAMES):
        if number % 150 == 0:
            visit.goTo((3, 1, 4, 5, 6, 7)[number // 150])
        if number % 9 == 0:
            key = dice.choice(['W', 'W', 'W', 'S', 'A', 'D', 0x10, 0x11])
            (release if key in held else press)(key)
            held ^= {key}
            kaVel.send('MouseMove', dice.uniform(-0.8, 0.8), 0.0)
        yield 1
        at = place(body)
        reached.add('store' if at.x > 4.3 else 'cistern' if at.z > 4.3 else 'workshop')
        for middle, size, turn in walls:
            if abs(turn.r) > 0.999 or abs(turn.r) < 0.001:
                worst = max(worst, min((s + h) / 2 - abs(a - m) for a, m, s, h in (
                    (at.x, middle.x, size.x, 0.5), (at.y, middle.y, size.y, volume.hitBox.y),
                    (at.z, middle.z, size.z, 0.5))))
    note(worst, *sorted(reached))
'''


def test_no_wall_lets_him_through_whatever_he_presses_and_however_slow_the_frames_are(world):
    for seed, rate, frames in ((1, 60, 900), (3, 20, 450), (4, 7, 450)):
        notes, _ = drive(world, WANDER.replace("SEED", str(seed)).replace("FRAMES", str(frames)), frames + 4, rate)
        worst, *reached = notes[0].split()
        # Contacts are resolved one by one: in a corner, one may push into another, by less than a step and for a frame.
        assert float(worst) < (0.02 if rate >= 20 else 0.2), f"seed {seed}, {rate}/s: {worst} m in a wall"
        assert reached == ["cistern", "store", "workshop"], f"seed {seed} saw only {reached}"


def test_he_slides_along_walls_stands_at_once_and_feels_the_weight_of_what_he_pushes(world):
    notes, _ = drive(world, '''
def script(visit, loads):
    visitor, body = visit.visitor, visit.visitor.player
    visitor.goTo((-5.5, 0, 4.88), turn=120)
    press('W')
    yield 30
    before = place(body)
    yield 30
    after = place(body)
    note('slide', (after.x - before.x) * 2, after.z)
    release('W')
    yield 1
    still = place(body)
    yield 20
    note('stand', (place(body) - still).magnitude())
    for name in ('lightCrate', 'crate', 'heavyCrate'):
        crate = visit.map.getChild(name)
        crate.getComponent('transform').position = kaVel.Vec4(6.4, place(crate).y, -0.9, 1)
        visitor.goTo((5.2, 0, -0.9), turn=90)
        yield 20
        press('W')
        yield 60
        start, half = place(crate), crate.getComponent('boundingVolume').hitBox.x / 2
        yield 30
        note(name, (place(crate).x - start.x) * 2, place(crate).x - half - 0.25 - place(body).x)
        release('W')
        yield 1
        start = place(crate)
        yield 60
        note('let go', place(crate).x - start.x)
        crate.getComponent('transform').position = kaVel.Vec4(8.0 + half, place(crate).y, 0.6, 1)
    yield 150
    boxes = [box for box, _ in visit.stack.boxes] + [visit.map.getChild('float%d' % n) for n in range(300)]
    rest, unrest = [place(box) for box in boxes], 0.0
    for _ in range(30):
        yield 1
        unrest = max(unrest, *((place(box) - was).magnitude() for box, was in zip(boxes, rest)))
    heights = [place(box).y for box, _ in visit.stack.boxes]
    note('rest', unrest, *(heights[upper] - heights[upper - 1] for upper in (1, 2, 4, 5, 6, 8)))
''', 800)
    facts = [line.split() for line in notes]
    slide, stand, *pushes, rest = [[float(value) for value in fact if re.match(r"-?[\d.]+$", value)] for fact in facts]
    assert 1.35 < slide[0] < 1.8 * 0.8660254, f"along the wall at {slide[0]} m/s"
    assert abs(slide[1] - (4.6 + 0.25 * 1.3660254)) < 0.01, f"at z {slide[1]}: a corner ahead touches the wall"
    assert stand[0] < 0.2, f"he slid on for {stand[0]} m"
    speeds = [push[0] for push in pushes[::2]]
    for speed, wanted in zip(speeds, (1.52, 1.22, 0.58)):
        assert abs(speed - wanted) < 0.06, f"12, 35, 160 kg at {speeds} m/s"
    assert all(abs(push[1]) < 0.005 for push in pushes[::2]), f"between him and the crate: {pushes[::2]}"
    assert all(0.0 <= slip[0] < 0.67 for slip in pushes[1::2]), f"crates slid on for {pushes[1::2]}"
    assert rest[0] < 1e-4, f"something moved {rest[0]} m after it had come to rest"
    assert all(abs(step - 0.4) < 0.05 for step in rest[1:]), f"the boxes stand {rest[1:]} m above each other"


def test_he_does_not_tremble_in_a_gap_that_is_too_narrow_for_him(world):
    notes, _ = drive(world, '''
def script(visit, loads):
    visitor, body = visit.visitor, visit.visitor.player
    visitor.goTo((8.95, 0, 0.9), turn=0)
    press('W')
    yield 25
    note('between the racks at', place(body).z)
    before, back, step = place(body), 0.0, 0.0
    for _ in range(60):
        yield 1
        now = place(body)
        back, step, before = max(back, before.z - now.z), max(step, (now - before).magnitude()), now
    note(back, step)
''', 100)
    assert float(notes[0].split()[-1]) > 1.1, notes[0]
    assert all(float(value) < 1e-3 for value in notes[1].split()), f"thrown back, moved in a frame: {notes[1]} m"


def test_doors_open_away_from_him_both_ways_stop_at_a_right_angle_and_a_locked_one_refuses(world):
    notes, run = drive(world, '''
def script(visit, loads):
    iron, sliding, locked = (visit.leaves[name].getComponent('physics')
                             for name in ('storeDoor', 'cisternDoor', 'lockedDoor'))
    for side, turn in ((3.4, 90), (5.2, -90)):
        visit.visitor.goTo((side, 0, -1.0), turn=turn)
        yield 2
        note(*visit.pointer.shown)
        use()
        widest = 0.0
        for _ in range(150):
            yield 1
            widest = max(widest, abs(iron.prevAngle))
        note('open', iron.prevAngle, widest, place(visit.leaves['storeDoor']).x)
        iron.closeDoor(visit.visitor.player)
        yield 150
        note('closed', iron.prevAngle, place(visit.leaves['storeDoor']).x)
    visit.visitor.goTo((-1.0, 0, 2.6), turn=0)
    press('W')
    yield 60
    note('stopped', place(visit.visitor.player).z)
    use()
    yield 150
    note('through', sliding.currentOffset, place(visit.visitor.player).z)
    release('W')
    sliding.closeDoor(visit.visitor.player, False)
    yield 150
    note('shut', sliding.currentOffset)
    visit.visitor.goTo((-3.2, 0, -1.0), turn=-90)
    for _ in range(2):
        yield 2
        use()
    press('W')
    yield 60
    note('locked', locked.prevAngle, place(visit.visitor.player).x)
''', 1100)
    facts = [line.split() for line in notes]
    number = lambda fact, index: float(facts[fact][index])
    assert notes[0] == "an iron door E open the door", notes[0]
    first, second = number(1, 1), number(4, 1)
    assert abs(abs(first) - 1.5708) < 0.02 and abs(first + second) < 0.02, f"opened to {first} and {second}"
    assert max(number(1, 2), number(4, 2)) <= 1.5708, "past a right angle"
    assert number(1, 3) > 4.7 and number(4, 3) < 3.9, "towards him"
    for closed in (2, 5):
        assert abs(number(closed, 1)) < 1e-4 and abs(number(closed, 2) - 4.3) < 1e-3, facts[closed]
    assert abs(number(6, 1) - 3.61) < 0.02, f"the shut sliding door stopped him at {facts[6]}"
    assert abs(number(7, 1) - 1.7) < 0.02 and number(7, 2) > 5.0, f"through the open one: {facts[7]}"
    assert abs(number(8, 1)) < 1e-3, facts[8]
    assert number(9, 1) == 0.0 and number(9, 2) > -4.1, facts[9]
    assert run.log.count("DoorLocked") == 2, "a refusal each time"


def test_what_he_used_works_once_or_again_and_what_he_opened_and_took_stays_so_when_the_level_is_loaded_again(world):
    notes, run = drive(world, '''
def script(visit, loads):
    visitor, light = visit.visitor, visit.switch.light
    graphics = lambda path: visit.map.getDescendantByPath(path + '/graphics2').visible
    note('load', loads, abs(visit.leaves['storeDoor'].getComponent('physics').prevAngle),
         bool(visit.map.getDescendantByPath('store/fuse')), graphics('workshop/fuseInBox'))
    if loads == 2:
        visitor.goTo((-1.0, 0, 5.0))
        yield 30
        note('bell', visit.notice.graphics.text, graphics('cistern/bellLamp/cone'))
        return
    visitor.goTo((1.0, 0, -3.0), turn=180, pitch=15)
    for _ in range(2):
        yield 2
        note(*visit.pointer.shown, light.visible)
        use()
    visitor.goTo((3.4, 0, -1.0), turn=90)
    yield 2
    use()
    visitor.goTo((9.4, 0, 0.8), turn=0, pitch=52)
    yield 2
    note(*visit.pointer.shown)
    use()
    visitor.goTo((1.6, 0, 2.9), turn=0, pitch=5)
    yield 2
    note(*visit.pointer.shown)
    use()
    visitor.goTo((1.4, 0, 2.3), turn=0, pitch=35)
    yield 2
    note(*visit.pointer.shown)
    use()
    yield 90
    note('dropped', place(visit.map.getChild('chuteSpawnerCargoCrate1')).y)
    crate = visit.map.getChild('lightCrate')
    crate.getComponent('transform').position = kaVel.Vec4(-4.2, 0.4, 8.3, 1)
    visitor.goTo((0.0, 0, 0.5), turn=180)
    yield 240
    hung = place(crate).y
    yield 30
    note('lifted', hung, place(crate).y - hung)
    tin = place(visit.targets.boxes[8][0])
    visitor.goTo((tin.x, 0, -1.4), turn=180, pitch=0)
    yield 2
    press('G')
    yield 40
    note('hit', tin.z - place(visit.targets.boxes[8][0]).z)
    visitor.goTo((tin.x, 0, -1.4), turn=180, pitch=-70)
    yield 2
    press('G')
    yield 60
    note('flies', bool(visit.map.getChild('bolt2')))
    yield 40
    note('flies', bool(visit.map.getChild('bolt2')))
    visitor.goTo((-1.0, 0, 4.95))
    yield 10
    visitor.goTo((-1.0, 0, 6.5))
    yield 10
    visitor.goTo((-1.0, 0, 4.95))
    yield 10
    press(0x78)
''', 1100)
    facts = [line.split() for line in notes]
    assert notes[0] == "load 1 0.00000 True False", notes[0]
    assert notes[1] == "a light switch E switch the lamp off True", notes[1]
    assert notes[2] == "a light switch E switch the lamp on False", notes[2]
    assert notes[3] == "a fuse E take the fuse", notes[3]
    assert notes[4] == "a fuse box E put the fuse in", notes[4]
    assert notes[5] == "a red button E press the button", notes[5]
    assert abs(float(facts[6][1]) - 0.3) < 0.02, f"the crate from the chute lies at {notes[6]}"
    assert float(facts[7][1]) > 1.0 and abs(float(facts[7][2])) < 0.05, f"the draught holds the crate: {notes[7]}"
    assert float(facts[8][1]) > 0.05, f"a bolt moves what it hits: {notes[8]}"
    assert notes[9:11] == ["flies True", "flies False"], f"a bolt goes when its time is up: {notes[9:11]}"
    assert run.log.count("The bell strikes.") == 1, "once, however often he comes, and never again"
    assert abs(float(facts[11][2]) - 1.5708) < 0.02 and facts[11][3:] == ["False", "True"], notes[11]
    assert notes[12] == "bell True", f"its lamp stays lit, and it is silent: {notes[12]}"


def test_steps_doors_and_what_falls_are_heard_by_what_they_are_of(world):
    notes, _ = drive(world, '''
def script(visit, loads):
    sounds, door = visit.map.parent.getManager('sound'), visit.leaves['storeDoor'].getComponent('physics')

    def hear(what, frames):
        heard = set()
        for _ in range(frames):
            yield 1
            heard.update(each.name for each in sounds.heardSounds if each.name.startswith(('Step', 'Door', 'Impact')))
        note(what, *sorted(heard))

    visit.goTo(5)
    yield 180  # what hangs at the beginning comes to rest
    yield from hear('still', 30)
    press('W')
    yield from hear('walks', 60)
    release('W')
    yield 30
    door.openDoor(visit.visitor.player)
    yield from hear('opens', 90)
    door.slamDoor(visit.visitor.player)
    yield from hear('slams', 90)
    yield 180
    crate = visit.map.getChild('crate')
    crate.getComponent('transform').position = kaVel.Vec4(1.7, 1.5, -1.0, 1)
    yield from hear('falls', 60)
''', 740)
    assert notes == ["still", "walks StepStoneWalk", "opens DoorCreak DoorOpen",
                     "slams DoorCreak DoorOpen DoorSlamIron", "falls ImpactWood"], notes


def test_every_view_looks_as_it_did_and_the_same_twice(world):
    golden.small(world)
    shots = {}
    for name in ("first", "second"):
        run = world.run(level="Workshop", frames=20 * len(VIEWS), screenshot=f"{name}.png")
        run.expect_code(0)
        complain(run.log)
        shots[name] = (run.log.replace(name, "*"), [(world.folder / f"{name}-{view}.png") for view in VIEWS])
    assert shots["first"][0] == shots["second"][0], "the logs differ"
    problems = []
    for view, one, other in zip(VIEWS, shots["first"][1], shots["second"][1]):
        assert one.read_bytes() == other.read_bytes(), f"{view} differs from run to run"
        try:
            golden.expect("workshop_" + view.replace("-", "_"), one)
        except AssertionError as problem:
            problems.append(str(problem))
    assert not problems, "\n".join(problems)


if __name__ == "__main__":
    game.main(dict(globals()))
