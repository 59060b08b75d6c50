"""The level "Gallery": what each room looks like, that it looks the same twice, and how one gets about in it."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

ROOMS = ("1-spot", "2-spheres", "3-doorway", "4-decals", "5-dust", "6-boxes", "7-terrain", "8-screen", "9-mind")
FRAMES = 4 * len(ROOMS)


def pictures(world, name):
    """One run through all rooms, and its pictures by room; a complaint in the log fails it."""
    run = world.run(level="Gallery", frames=FRAMES, screenshot=f"{name}.png")
    run.expect_code(0)
    complaints = [line for line in run.log.splitlines()
                  if re.search(r"(^|: )(Warning|Error|Critical): |Assertion failed|Traceback", line)]
    assert not complaints, "\n".join(complaints)
    return run.log.replace(name, "*"), {room: world.folder / f"{name}-{room}.png" for room in ROOMS}


def test_every_room_looks_as_it_did_and_looks_the_same_twice(world):
    golden.small(world)
    (firstLog, first), (secondLog, second) = pictures(world, "first"), pictures(world, "second")
    assert firstLog == secondLog, "the logs differ"
    for room in ROOMS:
        assert first[room].read_bytes() == second[room].read_bytes(), f"{room} differs from run to run"
    problems = []
    for room in ROOMS:
        try:
            golden.expect("gallery_" + room.replace("-", "_"), first[room])
        except AssertionError as problem:
            problems.append(str(problem))
    assert not problems, "\n".join(problems)


def test_the_number_keys_lead_to_the_rooms_and_the_line_of_text_names_them(world):
    golden.small(world)
    world.write_level("Visit", """
import levels.Gallery as gallery
import loader
kaVel.configure(coordinator, levelName='Gallery')
gallery.build(coordinator)
keys = list('79')
def press():
    text = coordinator.getChild('label').getComponent('graphics2').text
    at = coordinator.getDescendantByPath('Player/camera/transform').position
    mind = coordinator.getDescendantByPath('Player/player')
    kaVel.log('visit: %s at %.1f, sanity %.0f' % (text.replace('   ', ' '), at.x, mind.sanity))
    if keys:
        kaVel.send('KeyDownMessage', ord(keys.pop(0)))
watch = kaVel.make('Entity', parent=coordinator, name='watch')
kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=press)
""")
    run = world.run(level="Visit", frames=240)
    run.expect_code(0)
    visits = [line.split("visit: ", 1)[1] for line in run.log.splitlines() if "visit: " in line]
    assert visits[0].startswith("1 A lamp and its shadows at "), visits[0]
    assert visits[1].startswith("7 The churchyard at 49.2, sanity 100"), visits[1]
    assert visits[2].startswith("9 A mind fails at 64.0"), visits[2]
    sanity = [int(line.rsplit(" ", 1)[1]) for line in visits]
    assert min(sanity) < 60 and sanity[2] > 90, "it fails slowly, once one is there"


def test_a_view_that_is_not_there_is_told_with_those_that_are(world):
    run = world.run(level="Gallery", frames=4, KAVEL_VIEWS="5-dust,8-scream")
    run.expect_code(1)
    run.expect("no view 8-scream in this level; it has: 1-spot, 2-spheres")


if __name__ == "__main__":
    game.main(dict(globals()))
