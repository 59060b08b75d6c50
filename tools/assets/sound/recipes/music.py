"""Music: six pieces for what the house still has: an upright, a celesta, strings, low brass, a drum.

The title's tune (A D, C sharp E, F) over a bass that sinks by semitones comes back in the end piece in major, and in
the chase as a call of the brass. The three pieces of tension have one length and one tempo and are heard together.
"""

import rooms
from score import Score, rung_out
from take import sound


VIOLIN = {"size": 1.0, "place": -0.45}
VIOLA = {"size": 1.4, "place": 0.15}
CELLO = {"size": 2.0, "place": 0.4}
SOFTLY = {"attack": 0.8, "over": 0.6}
BASS = {"size": 3.2, "place": 0.55, "players": 2}


def _melody(play, beat, notes):
    """Calls `play(beat, name, beats)` along notes such as "A4:2 D5"."""
    for each in notes.split():
        name, _, beats = each.partition(":")
        play(beat, name, float(beats or 1))
        beat += float(beats or 1)


def _waltz(score, beat, bars, force):
    """The left hand: a bass note, and two soft chords after it."""
    for bass, chord in bars:
        score.piano(beat, bass, 2.9, force * 0.9)
        for late in (1, 2):
            score.piano(beat + late, chord, 0.95, force * score.take.between(0.5, 0.65), 0.02)
        beat += 3


LAMENT = (("D2 D3", "F3 A3"), ("C#3", "E3 A3"), ("C3", "F3 A3"), ("B2", "F3 G3"),
          ("Bb2", "F3 A3"), ("A2", "F3 A3"), ("G#2", "D3 F3"))
TUNE = "A4:2 D5 C#5:2 E5 F5:2 C5 D5:2 B4 F5 E5 D5 D5:2 A4"


@sound(long=True, stereo=True, quality=3, loudness=-24,
       what="title: a slow waltz on a worn upright, strings under its return, a celesta that loses it",
       judgement="good: the tune is kept by the piano and lost by the celesta; the strings are smooth up close")
def title(take):
    score = Score(take, 60, eases=(23, 46, 58, 64, 68))
    _waltz(score, 0, LAMENT + (("A2 E3", "A3"),), 0.36)
    _melody(lambda at, name, beats: score.piano(at, name, beats + 0.4, 0.5), 0, TUNE + " B4:2 G#4 A4:3")
    _melody(lambda at, name, beats: score.piano(at, name, beats, 0.25), 21, "D4:2 C#4")
    _waltz(score, 24, LAMENT[:6] + (("A2 A1", "E3 G3"), ("D2 D3", "F3 A3")), 0.3)
    _melody(lambda at, name, beats: score.piano(at, name, beats + 0.4, 0.46), 24, TUNE + " E5 D5 C#5 D5:3")
    score.line(24, "D3 C#3 C3 B2 Bb2 A2 A2 D3", 3, force=0.26, **SOFTLY, **CELLO)
    score.line(24, "A3 A3 A3 G3 F3 F3 G3 F3", 3, force=0.2, **SOFTLY, **VIOLA)
    score.line(24, "F4 E4 F4 F4 D4 D4 D4:2 C#4 D4", 3, force=0.18, **SOFTLY, **VIOLIN)
    score.line(48, "D2:6 D2:6 D2:6 D2:6", 6, force=0.28, release=2.0, **BASS)
    score.line(48, "A3 Bb3 A3 Bb3 A3 G3", 3, force=0.2, **SOFTLY, **VIOLA)
    score.line(48, "F4 G4 F4 E4 F4 E4", 3, force=0.18, **SOFTLY, **VIOLIN)
    score.bow(66, "A3", 6, 0.2, release=4.0, **VIOLA)
    score.bow(66, "E4", 6, 0.18, release=4.5, **VIOLIN)
    _melody(lambda at, name, beats: score.celesta(at, name, 0.4), 48,
            "A5:2 D6 Bb5:3 A5:2 F5 E5:3 F5 E5 D5 C#5:3 E6:3")
    score.piano(66, "D2 A2", 6, 0.3, 0.08)
    score.piano(70, "D1", 6, 0.22)
    return rung_out(score.made(), 3.0)


TENSION_BEATS = 48


@sound(loop=True, stereo=True, quality=3, silence=1.5, loudness=-30,
       what="tension, first layer: a low fifth that beats, one high note that shifts by a semitone",
       judgement="good: still and not restful; loops on its bars")
def tension_1(take):
    score = Score(take, 60)
    for at in (0, 8, 16, 24, 32, 40):
        score.bow(at, "D2", 8, force=0.3, over=1.2, attack=1.4, release=1.3, shake=0.03, **BASS)
        score.bow(at + 4, "A2" if at != 24 else "Bb2", 8, force=0.22, over=1.0, attack=1.6, release=1.4, shake=0.05,
                  **CELLO)
    for at, name in ((6, "A5"), (18, "Bb5"), (30, "A5"), (38, "G#5")):
        score.bow(at, name, 6, force=0.12, over=0.8, attack=2.0, release=2.2, players=2, shake=0.06, **VIOLIN)
    for at, name in ((0, "D1"), (27.5, "D1 Eb1")):
        score.piano(at, name, 9, 0.22, 0.05)
    score.celesta(22.6, "E6", 0.12)
    score.celesta(45.2, "C#6", 0.1)
    return score.made(wet=0.6, loop_beats=TENSION_BEATS)


@sound(loop=True, stereo=True, quality=3, silence=1.5, loudness=-28,
       what="tension, second layer: a slow pulse, plucked steps, a cluster that closes in",
       judgement="good: adds motion without a tune; the drum is felt rather than heard")
def tension_2(take):
    score = Score(take, 60)
    for bar in range(12):
        score.drum(bar * 4, 0.3)
        score.drum(bar * 4 + 0.62, 0.18)
        if bar % 4 == 3:
            score.drum(bar * 4 + 2.5, 0.15)
    steps = "D3 Eb3 D3 - D3 C#3 - D3 Eb3 - F3 Eb3 D3 - C#3 D3".split()
    for i in range(96):
        name = steps[i % 16]
        if name != "-" and not take.chance(0.25):
            score.plucked(i * 0.5, name, 0.32 if i % 4 == 0 else 0.2)
    for start in (4, 20, 36):
        for i, name in enumerate(("D4", "Eb4", "C#4", "C4")):
            score.bow(start + 2 * i, name, 10 - 2 * i, force=0.16 + 0.02 * i, over=0.8, attack=2.5, release=1.8,
                      shake=0.05, **VIOLA)
    return score.made(wet=0.5, loop_beats=TENSION_BEATS)


@sound(loop=True, stereo=True, quality=3, silence=1.5, loudness=-25,
       what="tension, third layer: low brass that swells on a tritone, strings that tremble above",
       judgement="fair: the swells are long enough to dread; the tremolo is too even for a section")
def tension_3(take):
    score = Score(take, 60)
    swells = ("D2", "Ab2"), ("D2", "A2"), ("Eb2", "A2"), ("D2", "Ab2"), ("C#2", "G2"), ("D2", "Ab2")
    for i, (low, high) in enumerate(swells):
        score.brass(i * 8 + 1, low, 6.5, 0.62, attack=2.6)
        score.brass(i * 8 + 3, high, 4.5, 0.5, 0.25, muted=0.6, attack=1.8)
        score.drum(i * 8 + 7.5, 0.55, 40.0)
    for i in range(6):
        names = ("D5", "Eb5") if i % 2 == 0 else ("C#5", "D5")
        for k, name in enumerate(names):
            score.bow(i * 8 + 2 * k, name, 7 - 2 * k, force=0.24, over=0.6, attack=2.0, release=1.2, pulse=8.5,
                      shake=0.0, **VIOLIN)
    for i in range(96):
        if i % 8 not in (3, 6):
            score.bow(i * 0.5, "D2" if i % 16 < 12 else "Eb2", 0.35, force=0.3 if i % 8 == 0 else 0.18, over=0.1,
                      attack=0.04, **CELLO)
    score.piano(0, "D1 Eb1 A1", 7, 0.5, 0.0)
    score.piano(24, "C#1 D1 G1", 7, 0.5, 0.0)
    return score.made(wet=0.45, loop_beats=TENSION_BEATS)


CHASE_BEATS = 96


@sound(loop=True, stereo=True, quality=3, silence=1.5, loudness=-22,
       what="chase: low strings in threes and twos, drum and piano on the accents, brass that calls the tune",
       judgement="fair: drives and loops cleanly; the short bow strokes have less bite than players would give them")
def chase(take):
    score = Score(take, 138)
    figure = {
        0: "D2 D2 Eb2 D2 D2 F2 D2 C#2", 8: "F2 F2 Gb2 F2 F2 Ab2 F2 E2", 16: "D2 D2 Eb2 D2 D2 F2 G#2 A2",
        20: "Bb2 Bb2 A2 Bb2 G#2 A2 F2 E2"
    }
    for bar in range(24):
        notes = figure[max(start for start in figure if start <= bar)].split()
        for i, name in enumerate(notes):
            loud = i in (0, 3, 6)
            score.bow(bar * 4 + i * 0.5, name, 0.4, force=0.5 if loud else 0.3, over=0.06, attack=0.025, release=0.08,
                      **CELLO)
            if loud:
                score.bow(bar * 4 + i * 0.5, name.replace("2", "1"), 0.45, force=0.45, over=0.1, attack=0.03,
                          release=0.1, **BASS)
                score.drum(bar * 4 + i * 0.5, 0.6 if i == 0 else 0.35, 50.0)
        if bar % 2 == 0:
            score.piano(bar * 4, "D1 D2" if not 8 <= bar < 16 else "F1 F2", 1.5, 0.7, 0.0)
    for bar, names in ((4, "D3 Ab3 Eb4"), (7, "C#3 G3 D4"), (12, "F3 B3 Gb4"), (15, "E3 Bb3 F4"), (23, "A2 Eb3 Bb3")):
        for name in names.split():
            score.brass(bar * 4, name, 0.6, 0.75, attack=0.03)
            score.brass(bar * 4 + 1.5, name, 2.2, 0.65, attack=0.05)
    for i, name in enumerate("A4 A4 Bb4 Bb4 C5 C5 Db5 D5 D5 Eb5".split()):
        score.bow(i * 8 + 8, name, 8, force=0.3, over=0.4, attack=1.2, release=0.5, pulse=11.0, shake=0.0, **VIOLIN)
    _melody(lambda at, name, beats: score.brass(at, name, beats * 0.95, 0.7, 0.3, attack=0.06), 64,
            "A3:2 D4:2 C#4:2 E4:2 F4:6 E4:2")
    _melody(lambda at, name, beats: score.brass(at, name, beats * 0.95, 0.6, 0.6, 0.4, attack=0.06), 68,
            "A2:2 D3:2 C#3:2 E3:2 F3:4")
    return score.made(rooms.HALL, wet=0.35, loop_beats=CHASE_BEATS)


@sound(long=True, stereo=True, quality=3, loudness=-24,
       what="end: the title's tune in major, strings first, then the upright alone, at dawn",
       judgement="good: the same bass comes home; the last chord keeps its shadow for a bar")
def end(take):
    score = Score(take, 54, eases=(23, 47, 50, 53))
    score.line(0, "D3 C#3 B2 A2 G2 F#2 E2:2 A2:1 D3", 3, force=0.28, **SOFTLY, **CELLO)
    score.line(0, "A3 A3 F#3 F#3 G3 A3 G3 F#3", 3, force=0.22, **SOFTLY, **VIOLA)
    score.line(0, "F#4 E4 D4 C#4 D4 D4 D4:2 C#4:1 D4", 3, force=0.2, **SOFTLY, **VIOLIN)
    tune = "A4:2 D5 C#5:2 E5 F#5:2 D5 C#5:2 A4 B4:2 D5 A4:2 D5 E5 D5 C#5 D5:3"
    score.line(0, tune, 1, force=0.26, **VIOLIN)
    _melody(lambda at, name, beats: score.celesta(at, name.replace("5", "6").replace("4", "5"), 0.22), 0, tune)
    home = (("D2 D3", "F#3 A3"), ("C#3", "E3 A3"), ("B2", "D3 F#3"), ("A2", "C#3 F#3"),
            ("G2", "D3 G3"), ("F#2", "D3 A3"), ("E2", "G3 B3"), ("D2 D3", "F#3 A3"))
    _waltz(score, 24, home, 0.32)
    _melody(lambda at, name, beats: score.piano(at, name, beats + 0.4, 0.46), 24, tune)
    score.line(48, "D2:6 D2:6", 6, force=0.28, release=2.0, **BASS)
    score.line(48, "B3 Bb3", 3, force=0.22, **SOFTLY, **VIOLA)
    score.line(48, "G4 G4", 3, force=0.19, **SOFTLY, **VIOLIN)
    score.bow(54, "A3", 6, 0.2, release=3.5, **VIOLA)
    score.bow(54, "F#4", 6, 0.18, release=4.0, **VIOLIN)
    _melody(lambda at, name, beats: score.celesta(at, name, 0.3), 48, "D6:2 B5 D6:2 Bb5 A5:6")
    score.piano(54, "D2 A2 F#3", 6, 0.3, 0.12)
    score.piano(57, "D4", 4, 0.25)
    return rung_out(score.made(), 3.0)
