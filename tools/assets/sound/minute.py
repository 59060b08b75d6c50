#!/usr/bin/env python3
"""minute.py [--build build/release] -o PLACE: a minute in the Workshop as a player hears it.

Writes PLACE.wav, PLACE.png with its waveform and spectrogram, and tells for every second what was done, what was heard
and how loud either side was. Two runs give the same file.
"""
import argparse
import pathlib
import re
import sys
import tempfile
import wave

import numpy

import spectrogram

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tests" / "support"))
import game  # noqa: E402

SECONDS = 60
FRAMES_PER_SECOND = 4096 / 68  # of a headless run

DRIVER = '''
import kaVel


def keys(message, *codes):
    for code in codes:
        kaVel.send(message, ord(code) if isinstance(code, str) else code)


def minute(visit):
    """What is done, by the second at which it is."""
    you = visit.walker.player
    door = {name: leaf.getComponent('physics') for name, leaf in visit.leaves.items()}
    crate = visit.map.getChild('crate').getComponent('transform')

    def drop():
        crate.position = kaVel.Vec4(1.7, 1.5, -1.0, 1)

    return {
        4: ('walks', lambda: keys('KeyDownMessage', 'W')),
        6: ('runs', lambda: keys('KeyDownMessage', 0x10)),
        8: ('stands', lambda: keys('KeyUpMessage', 'W', 0x10)),
        10: ('before the iron door, opens it', lambda: (visit.goTo(5), door['storeDoor'].openDoor(you))),
        14: ('walks into the store', lambda: keys('KeyDownMessage', 'W')),
        16: ('stands', lambda: keys('KeyUpMessage', 'W')),
        17: ('a crate falls in the workshop', drop),
        20: ('the door closes', lambda: door['storeDoor'].closeDoor(you)),
        24: ('a crate falls behind it', drop),
        28: ('before the piles, they fall', lambda: (visit.goTo(3), visit.stack.lift())),
        33: ('in the cistern', lambda: visit.goTo(4)),
        37: ('walks', lambda: keys('KeyDownMessage', 'W')),
        39: ('stands', lambda: keys('KeyUpMessage', 'W')),
        42: ('throws bolts', lambda: (visit.goTo(9), visit.bolts.throw())),
        43: ('again', visit.bolts.throw),
        46: ('the chute', lambda: (visit.goTo(8), visit.fuseBox.light(), visit.chute.press(None))),
        53: ('slams the iron door', lambda: (visit.goTo(5), door['storeDoor'].openDoor(you))),
        55: ('', lambda: door['storeDoor'].slamDoor(you)),
    }


def begin(coordinator, visit):
    deeds, frame, heard = minute(visit), [0], set()

    def step():
        heard.update(each.name for each in coordinator.getManager('sound').heardSounds)
        second, before = int(frame[0] * 68 / 4096), int((frame[0] - 1) * 68 / 4096)
        frame[0] += 1
        if second == before:
            return
        if second:
            kaVel.log('heard %d: %s' % (second - 1, ' '.join(sorted(heard))))
        heard.clear()
        what, deed = deeds.get(second, ('', None))
        if deed:
            kaVel.log('does %d: %s' % (second, what))
            deed()

    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'hud', 'ScriptComponent', frameCallback=step)
'''


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release")
    parser.add_argument("-o", "--output", type=pathlib.Path, required=True)
    options = parser.parse_args()
    place = options.output.resolve()
    log = play(options.build.resolve(), place.with_suffix(".wav"))
    stereo = read(place.with_suffix(".wav"))
    tell(log, stereo)
    spectrogram.write_png(place.with_suffix(".png"), spectrogram.sheet([("workshop", stereo)], 1, 1800))


def play(build, target):
    """Runs the level beside the script; its log."""
    with tempfile.TemporaryDirectory() as folder:
        world = game.World(build, pathlib.Path(folder) / "game")
        world.write("scripts/minute.py", DRIVER)
        level = world.folder / "scripts" / "levels" / "Workshop.py"
        level.write_text(level.read_text().replace("def views():", "def noViews():").replace(
            "    _visit.goTo(1)\n", "    _visit.goTo(1)\n    import minute\n    minute.begin(coordinator, _visit)\n"))
        game.TIMEOUT_S = 1200
        outcome = world.run(level="Workshop", frames=int(SECONDS * FRAMES_PER_SECOND) + 2, KAVEL_SOUND=str(target),
                            KAVEL_SIZE="64x36")
        outcome.expect_code(0)
        return outcome.log


def read(path):
    with wave.open(str(path)) as file:
        samples = numpy.frombuffer(file.readframes(file.getnframes()), dtype="<i2")
    return samples.reshape(-1, 2) / 32768


def tell(log, stereo):
    notes = {}
    for kind, second, text in re.findall(r"(does|heard) (\d+): (.*)", log):
        notes[kind, int(second)] = text
    for second in range(SECONDS):
        piece = stereo[second * 44100:(second + 1) * 44100]
        levels = 10 * numpy.log10((piece ** 2).mean(axis=0) + 1e-12)
        print(f"{second:3} s  {levels[0]:6.1f} {levels[1]:6.1f} dB  peak {abs(piece).max():.2f}  "
              f"{notes.get(('does', second), ''):32} {notes.get(('heard', second), '')}")


if __name__ == "__main__":
    main()
