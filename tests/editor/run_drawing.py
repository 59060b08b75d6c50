"""The tools that draw a plan in the editor: a house grows under the mouse, and each stroke is undone."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import driven
import game
from driven import said

#: An empty map, and what its tests are written with.
LEVEL = """

def build(coordinator):
    watch(coordinator)


def room(root):
    pass


def clicks(*places):
    for x, z in places:
        click((x, 0, z))


def pieces():
    return [(each.patternName, each.name, each.given) for each in editor().pieces.all()]


def take(tool):
    then(lambda: editor().camera.goTo((0, 12, -0.5), 0, 86))
    then(lambda: editor().take(tool))
    then(lambda: None)


def set(tool, **values):
    then(lambda: editor().tool._kept.update(values))


press('F8')
"""


def drawn(world, body, frames):
    run = driven.run(world, LEVEL + body, frames)
    assert not run.has("Traceback"), run.log[-4000:]
    return run


def test_a_house_is_drawn_with_partitions_doors_floor_and_round_and_undone(world):
    run = drawn(world, """
say('tree', tree)
take('Walls')
clicks((-4, -3), (4, -3), (4, 3), (-4, 3), (-4, -3))
say('room', pieces)
clicks((0.02, -2.97), (0.03, 2.9))
press('Enter')
say('partition', lambda: pieces()[-1][2].get('partitions'))
clicks((-2, -2), (-1, -2))
press('Escape')
say('dropped', lambda: len(pieces()))
take('Openings')
then(lambda: editor().camera.goTo((-3.4, 1.6, 0), 90, 0))
then(lambda: None)
drag((-0.1, 1.2, 1.1), (-0.1, 1.2, 1.1))
say('door', lambda: pieces()[-1][2].get('openings'))
drag((-0.1, 1.2, 1.1), (-0.1, 1.2, -1.0))
say('slid', lambda: pieces()[-1][2].get('openings'))
set('Openings', kind='window', width=1.5)
drag((-2, 1.2, 2.9), (-2, 1.2, 2.9))
say('window', lambda: pieces()[-1][2].get('openings'))
say('history', lambda: len(editor().edits.history()))
for each in range(5):
    press('Z', 'Ctrl')
say('tree', tree)
""", 190)
    (room,) = eval(said(run, "room")[0])
    assert room == ("Room", room[1], {"size": (8, 6), "at": (0, 0, 0)}), room
    assert eval(said(run, "partition")[0]) == (((0, -3), (0, 3)),), said(run, "partition")
    assert said(run, "dropped") == ["1"]
    (door,) = eval(said(run, "door")[0])
    assert door == {"kind": "door", "wall": 4, "along": 4, "leaf": "door1"}, door
    (door,) = eval(said(run, "slid")[0])
    assert 1.5 <= door["along"] <= 2.5 and door["leaf"] == "door1", door
    assert eval(said(run, "window")[0])[1] == {"kind": "window", "wall": 2, "along": 6, "width": 1.5}
    assert said(run, "history") == ["5"]
    before, after = said(run, "tree")
    assert before == after, "undo does not give the tree back"


def test_areas_rounds_and_cells_are_drawn_and_what_crosses_is_told(world):
    run = drawn(world, """
take('Areas')
drag((-3, 0, -2), (1, 0, 1))
set('Areas', pattern='TriggerArea')
drag((2, 0, 2), (4, 0, 3))
set('Areas', pattern='ForceVolume', height=2.5)
drag((-4, 0, 2), (-3, 0, 3))
set('Areas', pattern='CeilingArea', height=3.0)
clicks((-3, -2), (1, -2), (1, 1))
press('Enter')
say('areas', lambda: [each[::2] for each in pieces()])
take('Paths')
clicks((-2, -1), (0, -1), (0, 0.5))
press('Enter')
drag((0, 0, 0.5), (0.5, 0, 1))
say('round', lambda: pieces()[-1][2])
take('Blocked cells')
drag((2.1, 0, -2.1), (3.6, 0, -2.1))
say('cells', lambda: pieces()[-1][2])
press('Z', 'Ctrl')
say('left', lambda: pieces()[-1][0])
take('Walls')
clicks((-4, -3), (4, -3), (4, 3), (0, -4))
press('Enter')
say('crossing', lambda: editor().messages[-1])
press('Backspace')
press('Enter')
say('walls', lambda: [each[2] for each in pieces() if each[0] == 'Walls'])
""", 220)
    areas = dict(eval(said(run, "areas")[0]))
    assert areas["FloorArea"] == {"outline": ((-2, -1.5), (2, -1.5), (2, 1.5), (-2, 1.5)), "at": (-1, 0, -0.5)}, areas
    assert areas["TriggerArea"] == {"size": (2, 1), "at": (3, 0, 2.5)}, areas
    assert areas["ForceVolume"] == {"size": (1, 2.5, 1), "at": (-3.5, 0, 2.5)}, areas
    assert len(areas["CeilingArea"]["outline"]) == 3 and areas["CeilingArea"]["at"][1] == 3, areas
    assert eval(said(run, "round")[0]) == {"points": ((-2, 0, -1), (0, 0, -1), (0.5, 0, 1))}, said(run, "round")
    ((left, near, right, far),) = eval(said(run, "cells")[0])["areas"]
    assert left <= 2.1 and right >= 3.6 and near <= -2.1 <= far and right - left <= 4, said(run, "cells")
    assert said(run, "left") == ["PatrolRoute"]
    assert "walls 0 and 2 of the plan cross" in said(run, "crossing")[0]
    assert eval(said(run, "walls")[0]) == [{"plan": (((0, 0), (8, 0), (8, 6)),), "at": (-4, 0, -3)}], said(run, "walls")


if __name__ == "__main__":
    game.main(dict(globals()))
