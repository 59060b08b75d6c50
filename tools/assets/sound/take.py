"""Take: what a recipe is given to work with, and the table that recipes are entered in."""

import hashlib
import math

import numpy

RECIPES = {}


class Recipe:
    """One sound of the catalogue: how it is made and what its files have to be like.

    `loudness` is in LUFS: of the loudest 400 ms of a sound that plays once, of the whole of a loop or `long` sound.
    `silence` is the longest pause in seconds that is meant. `judgement` is what the maker thinks of the result.
    """

    def __init__(self, make, kind, variants, **properties):
        self.make = make
        self.kind = kind
        self.name = make.__name__
        self.variants = variants
        self.loudness = properties.pop("loudness")
        self.what = properties.pop("what")
        self.judgement = properties.pop("judgement")
        self.loop = properties.pop("loop", False)
        self.long = properties.pop("long", False) or self.loop
        self.stereo = properties.pop("stereo", False)
        self.silence = properties.pop("silence", 0.4)
        self.quality = properties.pop("quality", 4)
        if properties:
            raise TypeError(f"{kind}/{self.name}: nothing is known of {', '.join(properties)}")

    def files(self):
        """The name of each file below assets/sound/fmod, and the take that it is made from."""
        for variant in range(1, self.variants + 1):
            suffix = f"_{variant}" if self.variants > 1 else ""
            name = f"{self.kind}/{self.name}{suffix}"
            yield name + ".ogg", Take(name, variant)


def sound(variants=1, **properties):
    """Enters the function below in the catalogue; it gets a Take and returns samples, mono (n,) or stereo (n, 2)."""
    def enter(make):
        kind = make.__module__.rpartition(".")[2]
        if (kind, make.__name__) in RECIPES:
            raise ValueError(f"two recipes make {kind}/{make.__name__}")
        RECIPES[kind, make.__name__] = Recipe(make, kind, variants, **properties)
        return make
    return enter


class Take:
    """The random numbers of one file, always the same for one name, and the number of the variant from 1 on."""

    def __init__(self, name, variant=1):
        seed = int.from_bytes(hashlib.sha256(name.encode()).digest()[:8], "little")
        self.rng = numpy.random.Generator(numpy.random.PCG64(seed))
        self.variant = variant

    def between(self, low, high):
        """A number that lies anywhere from low to high."""
        return float(self.rng.uniform(low, high))

    def near(self, value, spread=0.1):
        """A number about as large as `value`, at most `spread` of it away either way, as ratios."""
        return value * math.exp(self.between(-spread, spread))

    def chance(self, share):
        return bool(self.rng.random() < share)

    def pick(self, choices):
        return choices[int(self.rng.integers(len(choices)))]
