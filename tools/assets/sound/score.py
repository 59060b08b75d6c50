"""Score: notes by the beat, played by hands: never quite together, in a hall, with seats for the instruments."""

import re

import instruments
import loops
import rooms
import shapes
from bowed import Stroke
from take import Take

A4 = 438.0
"""The house's instruments have sunk a little."""

STEPS = {"C": -9, "D": -7, "E": -5, "F": -4, "G": -2, "A": 0, "B": 2}


def hz(name):
    """The frequency of a note such as "C#4" or "Bb2"."""
    letter, sign, octave = re.fullmatch(r"([A-G])([#b]?)(-?\d)", name).groups()
    step = STEPS[letter] + {"#": 1, "b": -1, "": 0}[sign] + 12 * (int(octave) - 4)
    return A4 * 2.0 ** (step / 12.0)


def rung_out(x, fall=1.5):
    """A piece ended where its room has all but fallen silent, `fall` seconds before which it begins to fade."""
    return shapes.faded(shapes.trimmed(x, -50.0), 0.002, fall)


class Score:
    """A piece: add notes at beats, then ask for the sound.

    `tempo` is beats a minute. `eases` are beats at which the players take `ease` of a second more time.
    """

    def __init__(self, take, tempo, eases=(), ease=0.35):
        self.take = take
        self.beat = 60.0 / tempo
        self.eases, self.ease = sorted(eases), ease
        self.placed = []
        self.bowing = []

    def at(self, beat):
        """The second at which a beat falls."""
        held = sum(self.ease * min(max(beat - each, 0.0), 1.0) for each in self.eases)
        return beat * self.beat + held

    def lasts(self, beat, beats):
        return self.at(beat + beats) - self.at(beat)

    def put(self, beat, sound, gain=1.0, place=0.0, loose=0.02):
        """Any sound at a beat, give or take `loose` seconds."""
        when = max(0.0, self.at(beat) + self.take.between(-loose, loose))
        self.placed.append((when, shapes.panned(sound, place), gain))

    def piano(self, beat, names, beats, force=0.4, roll=0.03, place=-0.15):
        """One note or a chord ("D3 F3 A3"), rolled from below."""
        for i, name in enumerate(names.split()):
            note = instruments.piano(self.take, hz(name), self.lasts(beat, beats), self.take.near(force, 0.2))
            self.put(beat + i * roll / self.beat * self.take.near(1.0, 0.4), note, 0.8, place + 0.1 * (i - 1), 0.018)

    def celesta(self, beat, name, force=0.4, place=0.35):
        self.put(beat, instruments.celesta(self.take, hz(name), self.take.near(force, 0.2)), 0.5, place, 0.025)

    def plucked(self, beat, name, force=0.4, place=0.3):
        self.put(beat, instruments.plucked(self.take, hz(name), self.take.near(force, 0.25)), 0.6, place, 0.015)

    def brass(self, beat, name, beats, force=0.5, place=0.45, muted=0.0, attack=0.2):
        sound = instruments.brass(self.take, hz(name), self.lasts(beat, beats), force, attack, muted)
        self.put(beat, sound, 1.0, place, 0.03)

    def drum(self, beat, force=0.5, low=46.0, place=-0.1):
        self.put(beat, instruments.drum(self.take, low, self.take.near(force, 0.1)), 1.2, place, 0.01)

    def bow(self, beat, name, beats, force=0.35, size=1.0, place=0.0, players=3, over=0.35, **style):
        """A bowed note; `over` seconds of it lap over the next. They are all played together at the end."""
        seconds = self.lasts(beat, beats) + over
        style.setdefault("attack", min(0.45, seconds * 0.3))
        style.setdefault("release", min(0.5, seconds * 0.35))
        stroke = Stroke(hz(name), seconds, force * self.take.near(1.0, 0.08), **style)
        self.bowing.append((beat, stroke, size, players, place))

    def line(self, beat, names, beats, **how):
        """Bowed notes one after another, each so many beats long; "-" is a rest, a note may give its own as "D4:2"."""
        for each in names.split():
            name, _, own = each.partition(":")
            length = float(own) if own else beats
            if name != "-":
                self.bow(beat, name, length, **how)
            beat += length

    def made(self, room=rooms.CHAPEL, wet=0.45, loop_beats=None):
        """The sound of the piece in its room; with `loop_beats`, exactly that many beats that run round."""
        self._bow_all()
        x = shapes.lay(*self.placed)
        x = rooms.heard_in(Take("the hall the music is in"), x, room, wet, stereo=True)
        return loops.wrapped(x, self.at(loop_beats)) if loop_beats else x

    def _bow_all(self):
        """Plays what is bowed in batches of like lengths and bodies: a batch takes as long as its longest note."""
        batches = {}
        for note in self.bowing:
            _, stroke, size, players, _ = note
            length = 0 if stroke.seconds < 0.6 else 1 if stroke.seconds < 2.0 else 2 if stroke.seconds < 4.5 else 3
            batches.setdefault((length, size, players), []).append(note)
        for (_, size, players), notes in sorted(batches.items()):
            sounds = instruments.strings(self.take, [stroke for _, stroke, *_ in notes], players, size)
            for (beat, *_, place), sound in zip(notes, sounds):
                self.put(beat, sound, 1.0, place, 0.02)
        self.bowing = []
