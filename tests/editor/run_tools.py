"""The editor in a running level: it opens and closes with F8, and its tools follow mouse and keys."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import driven
import game
import png
from driven import said

#: A room with something in it, and a player.
LEVEL = '''

def build(coordinator):
    watch(coordinator)
    place.Player(coordinator, at=(0, 0, -3))


def room(root):
    place.PartitioningGrid(root, size=(16, 0, 16))
    for x in (-3, -1, 1, 3):
        for z in (-3, -1, 1, 3):
            place.FloorBoards(root, 'boards', at=(x, 0, z))
    place.Desk(root, 'desk', at=(0, 0, 1))
    place.Chair(root, 'chair', at=(2, 0, 1), turn=90)


def look():
    editor().camera.goTo((0, 6, -4), 0, 55)


steps += [lambda: None] * 2
'''


def drive(world, body, frames=120):
    return driven.run(world, LEVEL + body, frames)


def test_the_key_opens_and_closes_and_nothing_is_rebuilt(world):
    run = drive(world, """
say('tree', tree)
press('F8')
say('open', lambda: (editor().isOpen, level.loopState, kaVel.getSystem('InputSystem').screenTakesInput))
press('F8')
say('open', lambda: (editor().isOpen, level.loopState, kaVel.getSystem('InputSystem').screenTakesInput))
say('tree', tree)
""")
    assert said(run, "open") == ["(True, 1, True)", "(False, 3, False)"], run.log[-2000:]
    before, after = said(run, "tree")
    assert before == after


def test_pointing_handles_and_keys_edit_and_undo_gives_the_tree_back(world):
    run = drive(world, """
press('F8')
then(look)
say('tree', tree)
click((0, 0.75, 1))
say('selected', lambda: [each.name for each in editor().selected()])
press('D', 'Ctrl')
press('Right')
press('Delete')
press('A', 'Ctrl')
say('all', lambda: len(editor().selected()))
press('Escape')
press('Escape')
say('none', lambda: len(editor().selected()))
then(lambda: editor().select([named('chair')]))
press('E')
say('tool', lambda: editor().tool.name)
then(lambda: editor().commands.turn(90, (0, 0, 1)))
say('chair', lambda: (named('chair').arguments['at'], named('chair').arguments['turn']))
then(lambda: editor().select([named('chair'), named('desk')]))
press('P', 'Ctrl')
say('hangs', lambda: named('chair').above.name)
then(lambda: editor().select([named('desk')]))
press('Page up')
say('lifted', lambda: (named('desk').arguments['at'], named('chair').arguments['at']))
say('history', lambda: editor().edits.history())
for each in range(8):
    press('Z', 'Ctrl')
say('message', lambda: editor().messages[-1])
say('tree', tree)
""")
    assert said(run, "selected") == ["['desk']"], run.log[-3000:]
    assert int(said(run, "all")[0]) > 17 and said(run, "none") == ["0"] and said(run, "tool") == ["Turn"]
    assert said(run, "chair") == ["((0, 0, -1), 180)"], said(run, "chair")
    assert said(run, "hangs") == ["desk"]
    assert said(run, "history") == ["['Duplicate desk', 'Move desk2', 'Delete desk2', 'Turn chair', "
                                    "'Hang chair below desk', 'Move desk']"]
    assert said(run, "lifted") == ["((0, 0.25, 1), (0, 0.25, -1))"], said(run, "lifted")
    assert said(run, "message") == ["There is nothing to undo"]
    before, after = said(run, "tree")
    assert before == after, "undo does not give the tree back"


def test_a_handle_is_dragged_with_the_mouse(world):
    run = drive(world, """
press('F8')
then(look)
then(lambda: editor().select([named('desk')]))
press('W')

drag((0.5, 0, 1), (2.5, 0, 1))
say('at', lambda: named('desk').arguments['at'])
press('Z', 'Ctrl')
say('at', lambda: named('desk').arguments['at'])
""")
    (x, y, z), back = map(eval, said(run, "at"))
    assert x == 2 and (y, z) == (0, 1), said(run, "at")
    assert back == (0, 0, 1)


def test_what_bars_of_the_inspector_change_is_undone_and_saved_too(world):
    run = drive(world, """
def bar(thing, name, value):
    before = getattr(thing, name)
    setattr(thing, name, value)
    kaVel.getSystem('TweakSystem').tellEdited(thing, name, before, value)


def written(level):
    from editor import WritingBack
    return WritingBack.of(level)


press('F8')
say('tree', tree)
then(lambda: bar(named('chair').root.getComponent('transform'), 'position', kaVel.Vec4(3, 0, 2, 1)))
then(lambda: bar(named('chair').root.getComponent('transform'), 'orientation', place.turned(-90)))
then(lambda: bar(named('desk').root.getChild('graphics2') or named('desk').root.children[0].getComponent('graphics2'),
                 'castShadows', False))
say('chair', lambda: (named('chair').arguments['at'], named('chair').arguments['turn']))
say('history', lambda: editor().edits.history())
say('diff', lambda: [line for line in editor().diff().splitlines() if line[0] in '+-' and line[1] not in '+-'])
for each in range(3):
    press('Z', 'Ctrl')
say('tree', tree)
press('F8')
then(lambda: bar(named('chair').root.getComponent('transform'), 'position', kaVel.Vec4(1, 0, 2, 1)))
say('offered', lambda: (editor().isOpen, kaVel.getSystem('TweakSystem').makeBar('Write back').shown))
then(lambda: written(level).write())
say('written', lambda: (editor().isSaved, kaVel.getSystem('TweakSystem').makeBar('Write back').shown))
""")
    assert said(run, "chair") == ["((3, 0, 2), -90)"], run.log[-3000:]
    assert said(run, "history") == ["['Change chair', 'Change chair', 'Set castShadows of graphics2']"]
    diff = eval(said(run, "diff")[0])
    assert any("place.Chair(root, 'chair', at=(3, 0, 2), turn=-90)" in line for line in diff), diff
    assert any("castShadows=False" in line for line in diff), diff
    before, after = said(run, "tree")
    assert before == after and said(run, "offered") == ["(False, True)"] and said(run, "written") == ["(True, False)"]
    assert "place.Chair(root, 'chair', at=(1, 0, 2)" in (world.folder / "scripts/levels/Driven.py").read_text()


def test_what_a_button_of_a_script_does_is_undone_too(world):
    run = drive(world, """
import random


def act():
    dice = random.Random(3)
    for number in range(12):
        thing = named(dice.choice(('chair', 'desk'))).root
        one = dice.randrange(4)
        if one == 0:
            thing.getComponent('transform').position = kaVel.Vec4(dice.random(), 0, dice.random(), 1)
        elif one == 1:
            thing.getComponent('transform').setOrientation(place.turned(dice.randrange(360)))
        elif one == 2:
            for each in kaVel.descendants(thing):
                if each.getName() == 'graphics2':
                    each.setCastShadows(dice.random() < 0.5)
        else:
            kaVel.finishLoad(place.Crate(level.getChild('room'), 'made%d' % number, at=(dice.random(), 0, 2)))


def switch():
    desk, chair = named('desk').root, named('chair').root
    desk.getChild('graphics2').visible = False
    chair.name = 'stool'
    chair.setParent(desk)


def bare():
    root = kaVel.make('Entity', parent=level.getChild('room'), name='post')
    kaVel.addComponent(root, 'transform', 'TransformComponent', position=kaVel.Vec4(1, 0, 3, 1))
    kaVel.addComponent(root, 'menu', 'ScriptComponent')
    kaVel.make('Entity', parent=root, name='below')
    kaVel.finishLoad(root)


def murder():
    named('stool').root.murder()
    level.getChild('room').getChild('post').murder()
    named('desk').root.getChild('deskPad').murder()


def told():
    desk = named('desk').root
    parts = [each.getName() for each in desk.children if not each.isDying()]
    return (tree(), desk.getChild('graphics2').visible, sorted(parts),
            sorted(each.name for each in editor().pieces.all() if each.patternName != 'FloorBoards'))


press('F8')
then(lambda: None)
for each in (act, switch, bare, murder):
    say('told', told)
    then(each)
    steps.extend([lambda: None] * 3)
say('told', told)
say('history', lambda: len(editor().edits.history()))
for each in range(4):
    press('Z', 'Ctrl')
    steps.extend([lambda: None] * 2)
    say('back', told)
for each in range(4):
    press('Y', 'Ctrl')
    steps.extend([lambda: None] * 2)
    say('again', told)
then(lambda: editor().edits.goTo(1))
press('F8')
then(act)
say('history', lambda: len(editor().edits.history()))
""", 160)
    told, back, again = said(run, "told"), said(run, "back"), said(run, "again")
    assert len(set(told)) == len(told) == 5, told
    assert back == told[-2::-1], '\n'.join(map(str, (*told, *back)))
    assert again == told[1:], '\n'.join(map(str, (*told, *again)))
    assert said(run, "history") == ["4", "4"], said(run, "history")


def test_what_is_chosen_in_the_catalogue_is_placed_by_clicks(world):
    run = drive(world, """
press('F8')
then(look)
then(lambda: editor().commands.takeUp('Barrel'))
click((1.1, 0, -1.1))
click((-1.1, 0, -1.1))
press('Escape')
say('barrels', lambda: [(each.name, each.arguments['at']) for each in editor().pieces.all()
                        if each.patternName == 'Barrel'])
say('ghosts', lambda: [each.name for each in level.getChild('room').children
                       if each.name.startswith('.gh') and not each.isDying()])
then(lambda: editor().select([named('barrel'), named('barrel2')]))
then(lambda: editor().commands.copy())
then(lambda: editor().commands.paste())
then(lambda: editor().commands.align('z', 'least'))
say('pasted', lambda: [each.name for each in editor().selected()])
""")
    assert said(run, "barrels") == ["[('barrel', (1, 0, -1)), ('barrel2', (-1, 0, -1))]"], run.log[-3000:]
    assert said(run, "ghosts") == ["[]"]
    assert said(run, "pasted") == ["['barrel3', 'barrel4']"]


def test_things_are_grouped_hung_dropped_locked_and_hidden_by_keys(world):
    run = drive(world, """
press('F8')
then(look)
then(lambda: editor().select([named('desk'), named('chair')]))
press('G', 'Ctrl')
press('Escape')
click((0, 0.75, 1))
say('group', lambda: [each.name for each in editor().selected()])
press('G', 'Ctrl', 'Shift')
then(lambda: editor().select([named('chair'), named('desk')]))
press('P', 'Ctrl')
say('above', lambda: named('chair').above.name)
then(lambda: editor().select([named('chair')]))
press('P', 'Ctrl', 'Shift')
say('above', lambda: named('chair').above)
press('Page up')
press('Page up')
say('height', lambda: named('chair').arguments['at'][1])
press('End')
say('height', lambda: round(named('chair').arguments['at'][1], 2))
then(lambda: editor().select([named('desk')]))
press('L')
press('Escape')
click((0, 0.75, 1))
say('locked', lambda: [each.name for each in editor().selected()])
press('L', 'Alt')
click((0, 0.75, 1))
press('H')
then(lambda: None)
click((0, 0.75, 1))
say('hidden', lambda: ('desk' in [each.name for each in editor().selected()], named('desk').hidden))
press('H', 'Alt')
say('shown', lambda: named('desk').hidden)
""", 220)
    assert said(run, "group") == ["['desk', 'chair']"], run.log[-3000:]
    assert said(run, "above") == ["desk", "None"]
    assert said(run, "height") == ["0.5", "0"], said(run, "height")
    assert said(run, "locked") == ["[]"] and said(run, "hidden") == ["(False, True)"]
    assert said(run, "shown") == ["False"]


def test_a_box_a_name_and_a_row_of_the_outliner_select_and_copies_stand_in_a_row(world):
    run = drive(world, """
press('F8')
then(look)
drag((-0.9, 0, 0.2), (2.6, 0, 2.2))
say('box', lambda: sorted(each.name for each in editor().selected() if each.name != 'boards'))
say('found', lambda: (editor().commands.selectByName('ROOM/ch'), [each.name for each in editor().selected()]))


def outliner():
    return next(each for each in editor().panels.all if each.name == 'Outliner')


def rows():
    return [outliner()._row(number) for number in range(len(outliner()._rows))]


def clickRow(text):
    outliner()._clicked(next(number for number, row in enumerate(rows()) if text in row))


say('row', lambda: [row for row in rows() if 'boards' in row])
then(lambda: clickRow('boards x 16'))
say('row', lambda: (len([row for row in rows() if 'boards' in row]), len(editor().selected())))
then(lambda: clickRow('boards x 16'))
say('row', lambda: [row for row in rows() if 'boards' in row])
then(lambda: editor().select([named('chair')]))
then(lambda: editor().commands.array(2, (0.5, 0, 0), 30))
say('array', lambda: [(each.arguments['at'], each.arguments['turn']) for each in editor().selected()])
""", 160)
    assert said(run, "box") == ["['chair', 'desk']"], said(run, "box")
    assert said(run, "found") == ["(1, ['chair'])"]
    assert said(run, "row") == ["['\\t+ boards x 16']", "(17, 16)", "['\\t* + boards x 16']"], said(run, "row")
    assert said(run, "array") == ["[((2.5, 0, 1), 120), ((3, 0, 1), 150)]"], said(run, "array")


def test_a_stopped_level_goes_a_frame_or_slowly_and_what_is_dragged_snaps(world):
    run = drive(world, """
was = [0]


def clock():
    return level.getTimerHandle('master').value


def passed(what):
    then(lambda: was.__setitem__(0, clock()))
    steps.extend([lambda: None] * 4)
    say(what, lambda: clock() - was[0])


passed('runs')
press('F8')
passed('stands')
then(lambda: was.__setitem__(0, clock()))
press('Period')
steps.extend([lambda: None] * 4)
say('a frame', lambda: clock() - was[0])
then(lambda: editor().playing.setSpeed(0.25))
press('Space')
passed('slow')
press('Space')
passed('stands again')
then(lambda: editor().playing.setSpeed(1))
then(look)
then(lambda: editor().select([named('chair')]))
press('W')
then(lambda: None)


def snap(grid, neighbours):
    then(lambda: [editor().snapping.set(name, on) for name, on in (
        ('snapToGrid', grid), ('snapToNeighbours', neighbours), ('snapToSurfaces', False))])


snap(False, False)
drag((2.5, 0, 1), (3.31, 0, 1))
say('free', lambda: named('chair').arguments['at'][0])
press('Z', 'Ctrl')
snap(True, False)
drag((2.5, 0, 1), (3.31, 0, 1))
say('grid', lambda: named('chair').arguments['at'][0])
""", 260)
    ran, frame, slow = (int(said(run, each)[0]) for each in ("runs", "a frame", "slow"))
    assert ran > 0 and said(run, "stands") == ["0"] == said(run, "stands again"), run.log[-3000:]
    assert 0 < frame < ran / 2 and abs(slow - ran / 4) < ran / 10, (ran, frame, slow)
    free, grid = float(said(run, "free")[0]), float(said(run, "grid")[0])
    assert free % 0.25 > 0.01 and grid % 0.25 == 0 and abs(free - grid) <= 0.25, (free, grid)


def test_what_cannot_be_done_costs_a_line_of_message(world):
    run = drive(world, """
press('F8')


def refused(what):
    then(lambda: editor().attempt(what))
    say('refused', lambda: editor().messages[-1])


refused(lambda: editor().commands.duplicate())
then(lambda: editor().select([named('desk'), named('chair')]))
refused(lambda: editor().commands.array(1000000, (1, 0, 0)))
refused(lambda: editor().commands.rename(named('chair'), 'desk'))
refused(lambda: editor().commands.scale((0, float('nan'), 1)))
refused(lambda: editor().add('Chiar'))
refused(lambda: editor().add('Key', opens=7, at='here'))
then(lambda: editor().commands.lock())
refused(lambda: editor().commands.delete())
then(lambda: editor().commands.unlockAll())
then(lambda: named('desk').root.murder())
then(lambda: None)
refused(lambda: editor().commands.move((1, 0, 0)))
say('left', lambda: [each.name for each in editor().selected()])
""")
    refusals = said(run, "refused")
    assert refusals[0] == "Nothing is selected" and "from 1 to 1000 can" in refusals[1], refusals
    assert "There is a 'desk' already" in refusals[2], refusals
    assert "Chair" in refusals[4], "the nearest pattern is named: " + refusals[4]
    assert "locked" in refusals[6], refusals
    assert said(run, "left") == ["['chair']"]


def test_levels_that_cannot_be_edited_say_so_and_the_title_opens(world):
    world.write("scripts/levels/Broken.py", """
def build(coordinator):
    if coordinator.levelName:
        raise ValueError('broken on purpose')
""")
    world.write("scripts/levels/Way.py", """
import headless
import kaVel


def build(coordinator):
    devices, loop = kaVel.getSystem('InputSystem'), kaVel.getSystem('GameLoopSystem')
    frames = iter([lambda: loop.queueLoadLevel('Broken'), lambda: devices.keyDown(0x77), lambda: devices.keyUp(0x77),
                   lambda: loop.queueLoadLevel('Title'), lambda: None, lambda: devices.keyDown(0x77), lambda: tell(),
                   lambda: devices.keyUp(0x77), lambda: devices.keyDown(0x77), lambda: tell()])
    number = [0]

    def tell():
        from editor.Editor import Editor
        from screens import Screens
        level = loop.currentlyActiveCoordinator
        kaVel.log('editor: %s %s' % (Editor.of(level).isOpen, Screens.top(level).getComponent('menu').visible))

    def step():
        doFrame()
        number[0] += 1
        if number[0] % 3 == 0:
            next(frames, lambda: None)()

    doFrame, headless._doFrame = headless._doFrame, step
""")
    run = world.run(level="Way", frames=60)
    run.expect("could not be loaded: mend its script first")
    assert said(run, "editor") == ["True False", "False True"], run.log[-3000:]


def test_patterns_that_draw_something_or_nothing_have_pictures(world):
    run = world.run(level="Stand", frames=2, screenshot="of.png", KAVEL_SIZE="160x120",
                    KAVEL_VIEWS="Desk,Trigger,Swarm")
    run.expect_code(0)
    for name in ("Desk", "Trigger", "Swarm"):
        picture = png.read(world.folder / f"of-{name}.png")
        assert (picture.width, picture.height) == (160, 120)
        assert len({picture.rows[y][x * picture.step] for y in range(120) for x in range(160)}) > 5, name


if __name__ == "__main__":
    game.main(dict(globals()))
