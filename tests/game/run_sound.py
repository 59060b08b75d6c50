"""What is heard: the executable writes the sound of small levels to a file; levels, sides and silence are measured."""
import array
import io
import math
import pathlib
import random
import sys
import wave

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

RATE = 44100
FRAMES_PER_SECOND = 4096 / 68  # of a headless run

#: A loop and a long one-shot with a place in the world, and a loop of music.
PROJECT = """
project kaVel 1
category sfx 1
category sfx/hums 1
category music 1
group sfx
event Hum
    category sfx/hums
    caption "Something hums" 0.01
    mode loop
    fade 0.01 0.05
    layer all
        sample noise.wav
    parameter distance 0 40
        volume 0:1 1:1 2:0.5 4:0.25 8:0.125 40:0
event Crash
    category sfx
    mode once
    layer all
        sample noise.wav
    parameter distance 0 40
        volume 0:1 40:0
group music
event Organ
    category music
    mode loop
    fade 0.01 0.05
    layer all
        sample noise.wav
"""

HEAD = """
import kaVel
import objects.GameObjects as place

def hum(parent, at, event='Hum', play=True):
    thing = place.placed(parent, 'thing', at=at)
    sound = kaVel.addComponent(thing, 'sound', 'SoundComponent', soundList=[event])
    if play:
        sound.playSoundEffect(event)
    return sound

def at(coordinator, **steps):
    # A key that runs in a stopped level, too.
    def doFrame():
        step = steps.get('frame%d' % kaVel.getSystem('GameLoopSystem').frameNumber)
        if step:
            step()
    clock = kaVel.make('Entity', parent=coordinator, name='clock')
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=doFrame)

def build(coordinator):
    place.Camera(coordinator, 'camera', at=(0, 0, 0))
    fill(coordinator)

"""


def noise(seconds=2.0, loudness=0.3):
    """A mono WAV of white noise."""
    chance = random.Random(5)
    samples = array.array("h", (round(32767 * loudness * chance.uniform(-1, 1)) for _ in range(int(RATE * seconds))))
    file = io.BytesIO()
    with wave.open(file, "wb") as out:
        out.setparams((1, 2, RATE, 0, "NONE", ""))
        out.writeframes(samples.tobytes())
    return file.getvalue()


class Heard:
    """The sound of a run."""

    def __init__(self, file):
        with wave.open(str(file)) as recorded:
            assert (recorded.getnchannels(), recorded.getsampwidth(), recorded.getframerate()) == (2, 2, RATE)
            self.samples = array.array("h", recorded.readframes(recorded.getnframes()))

    def levels(self, first, last):
        """Decibels of both sides, of full scale, from one frame of the game to another."""
        begin, end = (2 * round(frame * RATE / FRAMES_PER_SECOND) for frame in (first, last))
        assert end <= len(self.samples) + 2, "the recording is shorter"
        return [decibels(self.samples[begin + side:end:2]) for side in (0, 1)]

    def level(self, first, last):
        return max(self.levels(first, last))


def decibels(samples):
    power = sum(sample * sample for sample in samples) / len(samples) / 32768 ** 2
    return 10 * math.log10(power + 1e-12)


def equip(world, project=PROJECT):
    """Gives a world sounds of its own."""
    (world.folder / "assets" / "sound").unlink()
    world.write("assets/sound/fmod/kaVel.fev", project)
    world.write("assets/sound/fmod/noise.wav", noise())


def hear(world, name, fill, frames=120, **environment):
    """Runs a level that a function `fill(coordinator)` builds; the sound and how the run ended."""
    world.write(f"scripts/levels/{name}.py", HEAD + fill)
    file = world.folder / f"{name}.wav"
    outcome = world.run(level=name, frames=frames, KAVEL_SOUND=str(file), KAVEL_SIZE="64x36", **environment)
    outcome.expect_code(0)
    return Heard(file), outcome


def test_what_is_on_the_left_is_heard_on_the_left_and_what_is_near_is_louder(world):
    equip(world)
    heard, outcome = hear(world, "Sides", """
def fill(coordinator):
    sound = hum(coordinator, (-1, 0, 0))
    to = lambda *place: lambda: setattr(sound.getSibling('transform'), 'position', kaVel.Vec4(*place, 1))
    at(coordinator, frame30=to(1, 0, 0), frame60=to(0, 0, 1), frame90=to(0, 0, 8))
""")
    left, right = heard.levels(5, 28)
    assert left > right + 6 and left > -30, (left, right)
    left, right = heard.levels(35, 58)
    assert right > left + 6, (left, right)
    left, right = heard.levels(65, 88)
    assert abs(left - right) < 0.5, (left, right)
    assert abs(left - heard.level(95, 118) - 18) < 2, "an eighth of the loudness"
    assert not outcome.has("Warning:"), outcome.log[-2000:]


#: Two rooms, a wall between them, and a door in it at x = 2; the ears are in the southern room.
HOUSE = """
import math

def fill(coordinator):
    map = coordinator.loadMap('house')
    place.Camera(coordinator, 'ears', at=(0, 1.6, -2))
    door = map.getChild('door').getComponent('physics')
    turn = lambda degrees: lambda: setattr(door, 'prevAngle', math.radians(degrees))
    at(coordinator, frame%(opens)d=turn(90), frame%(shuts)d=turn(0))

def house(map):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 1.6, 0, 1),
                    scale=kaVel.Vec4(12, 3.2, 12, 0))
    for name, x, wide in (('west', -2.3, 7.4), ('east', 4.3, 3.4)):
        place.Block(map, name, at=(x, 0, 0), size=(wide, 3.2, 0.3))
    for side in (-6, 6):
        place.Block(map, 'side', at=(side, 0, 0), size=(0.4, 3.2, 12.4))
        place.Block(map, 'end', at=(0, 0, side), size=(12.4, 3.2, 0.4))
    place.Block(map, 'above', at=(2, 2.2, 0), size=(1.2, 1, 0.3))
    place.IronDoor(map, 'door', at=(2, 0, 0))
    hum(map, (0, 1.6, 2))
"""


def test_a_door_is_heard_through_where_it_is_and_as_far_as_it_stands_open(world):
    equip(world)
    heard, _ = hear(world, "House", HOUSE % {"opens": 60, "shuts": 120}, frames=180)
    shut, shutAgain = heard.level(40, 58), heard.level(150, 178)
    left, right = heard.levels(90, 118)
    assert right > left + 3, f"it comes through the door, which is to the right: {left} {right}"
    assert right > shut + 15 and abs(shut - shutAgain) < 1, (shut, right, shutAgain)


def test_two_runs_are_heard_alike_to_the_last_bit(world):
    equip(world)
    fill = """
def fill(coordinator):
    sound = hum(coordinator, (-1, 0, 2))
    hum(coordinator, (1, 0, 2), 'Crash')
    at(coordinator, frame20=lambda: sound.setParam('Hum', 'distance', 3), frame30=lambda: sound.stopAllSound())
"""
    first, _ = hear(world, "Same", fill, frames=60)
    again, _ = hear(world, "Same", fill, frames=60)
    assert first.samples == again.samples and first.level(0, 60) > -40


def test_a_stopped_level_is_still_but_for_its_music(world):
    equip(world)
    fill = """
def fill(coordinator):
    sound = hum(coordinator, (0, 0, 1), play=%s)
    if %s:
        sound.addMusic('Organ')
        sound.playMusic('Organ')
    states = kaVel.Coordinator.LoopControlState
    at(coordinator, frame30=lambda: setattr(coordinator, 'loopState', states.LOOP_STOP),
       frame80=lambda: setattr(coordinator, 'loopState', states.LOOP_RUN))
"""
    effects, _ = hear(world, "Effects", fill % (True, False))
    assert effects.level(10, 28) > -30 and effects.level(40, 78) < -80 and effects.level(90, 118) > -30
    music, _ = hear(world, "Music", fill % (False, True))
    assert music.level(40, 78) > -30


def test_a_level_that_ends_leaves_silence_and_one_that_was_murdered_its_last_sound(world):
    equip(world)
    heard, _ = hear(world, "Ends", """
def fill(coordinator):
    sound = hum(coordinator, (0, 0, 1))
    sound.addMusic('Organ')
    sound.playMusic('Organ')
    at(coordinator, frame30=lambda: kaVel.getSystem('GameLoopSystem').queueLoadLevel('LoadingScreen'))
""")
    assert heard.level(10, 28) > -30 and heard.level(45, 118) < -80
    dead, _ = hear(world, "Dead", """
def fill(coordinator):
    crash, loop = hum(coordinator, (0, 0, 1), 'Crash'), hum(coordinator, (0, 0, 1))
    at(coordinator, frame30=lambda: loop.parent.murder(), frame60=lambda: crash.parent.murder())
""", frames=180)
    both, one, end = dead.level(10, 28), dead.level(40, 110), dead.level(135, 178)
    assert both > one + 2 and one > -30 and end < -80, (both, one, end)


def test_a_level_is_muffled_and_its_categories_are_turned_down_until_it_ends(world):
    equip(world)
    heard, _ = hear(world, "Muffled", """
def fill(coordinator):
    hum(coordinator, (0, 0, 1))
    sounds = coordinator.getManager('sound')
    at(coordinator, frame30=lambda: kaVel.configure(sounds, muffledCutoff=200.0, muffled=True),
       frame60=lambda: kaVel.configure(sounds, muffled=False),
       frame90=lambda: sounds.setCategoryVolume('sfx/hums', 0.1))
""")
    clear, muffled, again, soft = (heard.level(*span) for span in ((10, 28), (40, 58), (70, 88), (97, 118)))
    assert clear > muffled + 6 and abs(clear - again) < 1 and abs(again - soft - 20) < 2, (clear, muffled, again, soft)


def test_what_is_heard_is_told_once_with_its_caption_and_can_be_listed(world):
    equip(world)
    _, outcome = hear(world, "Captions", """
def tell(message, caption, direction, loudness):
    kaVel.log('caption %s from %.1f %.1f %.1f, %.1f m, loud %s'
              % (caption, direction.x, direction.y, direction.z, direction.w, loudness > 0.01))

def fill(coordinator):
    kaVel.subscribe('SoundHeardMessage', tell, kaVel.officeOf(coordinator))
    hum(coordinator, (0, 0, -4))
    hum(coordinator, (0, 0, 39.9))
    sounds = coordinator.getManager('sound')
    at(coordinator, frame50=lambda: kaVel.log([(each.name, each.caption, round(each.distance, 1))
                                               for each in sounds.heardSounds]),
       frame51=lambda: kaVel.log(sounds.globalListener.directionVector))
""", frames=60)
    assert outcome.log.count("caption Something hums from 0.0 0.0 -1.0, 4.0 m, loud True") == 1, outcome.log[-2000:]
    assert outcome.log.count("caption ") == 1
    outcome.expect("('Hum', 'Something hums', 4.0)")
    outcome.expect("(0, 0, 1, 0)")


def test_sounds_that_are_missing_are_told_once_and_the_game_goes_on(world):
    lost = "event Lost\n    layer all\n        sample nowhere.wav\n        nonsense 3\n"
    equip(world, PROJECT.replace("group music", lost + "group music"))
    _, outcome = hear(world, "Lacking", """
def fill(coordinator):
    sound = hum(coordinator, (0, 0, 1), 'Lost')
    sound.addSoundEffect('Humm')
    sound.playSoundEffect('Humm')
    hum(coordinator, (float('nan'), 0, 1))
    sound.soundVolume = 3.0
    sound.setParam('Lost', 'distance', float('nan'))
""", frames=30)
    for text in ("no sound effect 'Humm'; did you mean 'Hum'?", "nowhere.wav", "no 'nonsense'", "lies in 0..1"):
        assert outcome.log.count(text) == 1, (text, outcome.log[-3000:])
    (world.folder / "assets/sound/fmod/kaVel.fev").unlink()
    heard, outcome = hear(world, "Silent", "def fill(coordinator):\n    hum(coordinator, (0, 0, 1))\n", frames=30)
    assert heard.level(0, 30) < -100 and outcome.log.count("The game is silent") == 1, outcome.log[-2000:]


def test_a_sound_that_cannot_be_written_ends_the_run_with_1_and_leaves_the_old_one(world):
    world.write("out.wav", "the old one")
    run = world.run(frames=60, largest_file=20000, KAVEL_SOUND=str(world.folder / "out.wav"), KAVEL_SIZE="64x36")
    run.expect_code(1)
    run.expect("out.wav could not be written: File too large")
    assert (world.folder / "out.wav").read_text() == "the old one"
    run = world.run(frames=100000, KAVEL_SOUND="/no_such_folder/out.wav")
    run.expect_code(1)
    run.expect("the sound /no_such_folder/out.wav cannot be written")
    run = world.run(KAVEL_SOUND="out.wav", KAVEL_HEADLESS="0")
    assert run.code != 0
    run.expect("only a run with KAVEL_HEADLESS=1 has its sound written")


if __name__ == "__main__":
    game.main(dict(globals()))
