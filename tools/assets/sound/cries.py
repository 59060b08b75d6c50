"""Cries: what animals call. A rough buzz, free of what would fold back at high pitches, through a beak or a snout."""

import numpy

import filters
import noise
import shapes


def buzz(take, hz, rough=0.1, tilt=1.0):
    """The folds of a throat at `hz`, one value a sample; `rough` 0..1 makes periods uneven, `tilt` makes them dull."""
    seconds = len(hz) / shapes.RATE
    shake = 1.0 + rough * 0.25 * noise.wander(take.rng, seconds, 70.0, -1.0, 1.0)[: len(hz)]
    phase = 2 * numpy.pi * numpy.cumsum(hz * shake) / shapes.RATE
    size = 1.0 - rough * noise.wander(take.rng, seconds, 45.0, 0.0, 0.9)[: len(hz)]
    highest = int(min(60, 16000.0 / max(float(hz.max()), 20.0)))
    tone = sum(numpy.sin(n * phase) / n**tilt for n in range(1, highest + 1))
    return tone * size


def cry(take, seconds, pitch, mouth, rough=0.3, breath=0.2, tilt=0.8):
    """One call: `pitch` as (share of its length, Hz) points, `mouth` as formants, `breath` the share of mere air."""
    hz = shapes.smooth_curve(seconds, [(at * seconds, value) for at, value in pitch])
    envelope = shapes.smooth_curve(seconds, ((0, 0), (seconds * 0.12, 1), (seconds * 0.7, 0.8), (seconds, 0)))
    source = shapes.level(buzz(take, hz, rough, tilt)) + breath * noise.white(take.rng, seconds)[: len(hz)]
    return filters.formants(source * envelope, mouth)
