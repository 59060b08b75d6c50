"""Scripted moments: triggers, sequences, tutorials, dying and coming back, the end."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

ROOM = """
import kaVel
import objects.GameObjects as place
from objects import Sequences
from objects.player.Life import lifeOf
from objects.player.Safety import Safety
from objects.screen import Tutorials
from objects.sound.Music import Music


def build(coordinator):
    coordinator.loadMap('room')


def note(*values):
    now = coordinatorOf().getTimerHandle('master').value / kaVel.getSystem('TimeSystem').getTicksPerSecond()
    kaVel.log('note: %5.2f %s' % (now, ' '.join(str(value) for value in values)))


def coordinatorOf():
    return level


def room(map):
    global level
    level = map.getAncestorOfType(kaVel.Reflection.Coordinator)
    place.PartitioningGrid(map, size=(24, 0, 24))
    place.Box(map, 'floor', at=(0, -0.5, 0), size=(12, 0.5, 12), surface='boards')
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(12, 0.5, 12))
    player = place.Player(level, at=(0, 0, 0))
    place.Hud(level)
    begin(map, level, player)


def stand(player, x, z):
    player.getComponent('transform').position = kaVel.Vec4(x, 0.875, z, 1)


def where(player):
    at = player.getComponent('transform').position
    return '%.1f %.1f' % (at.x, at.z)
"""


def play(world, script, frames):
    """Runs a room beside a script; returns what the script noted, and the run."""
    golden.small(world, (64, 36))
    world.write("scripts/levels/Room.py", ROOM + script)
    run = world.run(level="Room", frames=frames)
    run.expect_code(0)
    assert not re.search(r"(^|: )(Error|Critical): |Traceback", run.log), run.log[-3000:]
    return re.findall(r"note: +([\d.]+) (.*)", run.log), run


def test_a_sequence_does_its_steps_in_time_and_a_trigger_counts_entries(world):
    noted, _ = play(world, """
def begin(map, level, player):
    doors = []
    place.Trigger(map, 'gate', at=(3, 0, 3), size=(1, 1), enter=lambda: note('once'))
    place.Trigger(map, 'sill', at=(3, 0, 3), size=(2, 2), enter=lambda: note('each time'), once=False)
    Sequences.play(level, 0.5, lambda: note('half'), Sequences.Until(lambda: doors), lambda: note('open'),
                   Sequences.Until(lambda: False, atMost=0.25), lambda: note('tired of waiting'))
    stopped = Sequences.play(level, 0.5, lambda: note('never'))
    Sequences.play(level, 0.25, stopped.stop, 0.75, lambda: doors.append(1), lambda: stand(player, 3, 3), 0.5,
                   lambda: stand(player, 0, 0), 0.5, lambda: stand(player, 3, 3))
""", 170)
    times = {what: float(at) for at, what in noted}
    assert [what for _, what in noted].count("each time") == 2, noted
    assert [what for _, what in noted].count("once") == 1 and "never" not in times, noted
    assert abs(times["half"] - 0.5) < 0.04 and abs(times["open"] - 1.0) < 0.04, noted
    assert abs(times["tired of waiting"] - 1.25) < 0.05, noted


def test_a_line_is_shown_once_and_only_to_whom_has_not_learnt(world):
    noted, _ = play(world, """
def begin(map, level, player):
    learnt = []
    Tutorials.teach(level, 'go', 'forward', lambda: False, after=1.0)
    Tutorials.teach(level, 'known by then', 'use', lambda: learnt, after=0.5)
    Tutorials.teach(level, 'not now', '', lambda: False, after=0.1, needed=lambda: False)
    Sequences.play(level, 0.3, lambda: learnt.append(1))
    line = level.getChild('tutorial').getComponent('graphics2')
    for seconds in (0.8, 2.5, 9.0):
        Sequences.play(level, seconds, lambda: note(repr(line.text), line.color.w > 0.9))
    Sequences.play(level, 8.5, lambda: Tutorials.show(level, 'go', 'forward'))
""", 600)
    assert [what for _, what in noted] == ["'' False", "'W   go' True", "'W   go' False"], noted


def test_who_dies_is_told_why_and_stands_where_he_was_last_safe(world):
    noted, run = play(world, """
def begin(map, level, player):
    safety = Safety(level, player, Music(level))
    safety.place(map, 'landing', at=(4, 0, -4), turn=90)
    safety.onReturn(lambda: note('back'))
    picture, mind = level.getManager('graphics2'), player.getComponent('player')
    Sequences.play(level, 0.2, lambda: stand(player, 4, -4), 0.2, lambda: stand(player, -4, 4), 0.2,
                   lambda: lifeOf(level).hurt(60, 'it was cold'),
                   lambda: lifeOf(level).hurt(60, 'It was dark.'), lambda: lifeOf(level).hurt(60, 'It was dark.'),
                   Sequences.Until(lambda: picture.dissolveAmount >= 0.99), lambda: note('dark', mind.useInput),
                   1.8, lambda: note(level.getChild('fate').getComponent('graphics2').text),
                   Sequences.Until(lambda: not safety.isOver), lambda: note(where(player), mind.useInput), 3.0,
                   lambda: note(safety.deaths, picture.dissolveAmount < 0.01, where(player)))
""", 800)
    told = [what for _, what in noted]
    assert told == ["dark False", "It was dark.", "back", "4.0 -4.0 True", "1 True 4.0 -4.0"], noted
    assert run.log.count("The player dies") == 1


def test_the_end_has_its_sentences_and_leads_on_with_a_key(world):
    world.write_level("Dawn", "kaVel.log('it is dawn')")
    noted, run = play(world, """
import bindings

def begin(map, level, player):
    safety = Safety(level, player, Music(level))
    key = min(bindings.keysOf('use'))
    Sequences.play(level, 0.2, lambda: safety.end(('One.', 'Two.', 'Three.'), 'again'), lambda: safety.die('late'),
                   Sequences.Until(lambda: level.getChild('again').getComponent('graphics2').color.w > 0.5),
                   lambda: note([level.getChild('ending%d' % n).getComponent('graphics2').text for n in range(3)]), 0.5,
                   lambda: kaVel.send('KeyDownMessage', key))
""", 1150)
    assert [what for _, what in noted] == ["['One.', 'Two.', 'Three.']"], noted
    assert "The player dies" not in run.log and run.log.count("The level is won: One.") == 1
    run.expect("it is dawn")


def test_a_counter_is_shown_when_it_changes_and_calls_once_when_it_is_full(world):
    noted, _ = play(world, """
def begin(map, level, player):
    plates = place.Counter(level, 'plates', 'Plates', most=2, full=lambda: note('full'))
    line = level.getDescendantByPath('plates/graphics2')
    look = lambda: note(line.text, round(line.color.w, 1))
    Sequences.play(level, 0.2, look, plates.add, 0.1, look, lambda: plates.add(5), plates.add, 0.1, look, 4.5, look)
""", 360)
    assert [what for _, what in noted] == [" 0.0", "Plates   1 of 2 1.0", "full", "Plates   2 of 2 1.0",
                                           "Plates   2 of 2 0.0"], noted


def test_who_is_dead_may_choose_and_comes_back_by_himself_where_he_does_not(world):
    noted, _ = play(world, """
from screens import Screens

def begin(map, level, player):
    safety = Safety(level, player, Music(level))
    mind = player.getComponent('player')
    offered, back = Sequences.Until(lambda: Screens.isOpen(level, 'Death')), Sequences.Until(lambda: not safety.isOver)
    Sequences.play(level, 0.2, lambda: safety.die('one'), offered, lambda: note('offered'), back, lambda: note('alone'),
                   0.5, lambda: safety.die('two'), offered, lambda: kaVel.send('MouseMove', 0.01, 0.0), 6.0,
                   lambda: note('waits', safety.isOver),
                   lambda: Screens.top(level).getComponent('menu').press(), back, lambda: note('asked'))
""", 1500)
    told = [(float(at), what) for at, what in noted]
    assert [what for _, what in told] == ["offered", "alone", "waits True", "asked"], noted
    assert 4.0 < told[1][0] - told[0][0] < 5.5 and told[3][0] - told[2][0] < 1.5, noted


if __name__ == "__main__":
    game.main(globals())
