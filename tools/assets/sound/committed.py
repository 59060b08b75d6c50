"""Committed: looks over the committed sounds without making them: every recipe has its files, every file its recipe
and its event.

Needs only Python's own library: it reads the entries of the recipes and the heads of the files. What is in them is
measured by check_sounds.py.
"""
import ast
import math
import re
import struct

RATE = 44100
SAMPLE = re.compile(r"^\s*(?:sample|segment\s+\S+)\s+(\S+\.ogg)")


#: Decibels by which an event's own word may differ from what follows from its samples.
LOUDNESS_TOLERANCE = 1.0


class NotVorbis(Exception):
    pass


def findings(root):
    """One line for each thing that does not fit in the project below this folder."""
    folder = root / "assets" / "sound" / "fmod"
    expected = {}
    for module in sorted((root / "tools" / "assets" / "sound" / "recipes").glob("[a-z]*.py")):
        expected.update(entries(module))
    present = {path.relative_to(folder).as_posix() for path in folder.rglob("*.ogg")}
    played = samples_of(folder / "kaVel.fev")
    for name in sorted(expected.keys() - present):
        yield f"{name} is missing: tools/assets/sound/make_sounds.py {name.rpartition('.')[0].rstrip('_0123456789')}"
    for name in sorted(present - expected.keys()):
        yield f"{name} has no recipe: write one in tools/assets/sound/recipes, or remove the file"
    for name in sorted(present - played.keys()):
        yield f"{name} is played by no event of kaVel.fev"
    for name in sorted(played.keys() - present):
        yield f"kaVel.fev:{played[name]}: there is no {name}"
    for name in sorted(present & expected.keys()):
        yield from judge(folder / name, name, expected[name])
    for name, (follows, said) in loudness_of_events(root).items():
        if said is None or abs(said - follows) > LOUDNESS_TOLERANCE:
            yield (f"event {name} of kaVel.fev says {'no loudness' if said is None else f'a loudness of {said:g} dB'}, "
                   f"its samples give {follows:.0f}: tools/assets/sound/event_loudness.py")


def entries(module):
    """The files that a module's recipes make, each with the number of channels it is to have."""
    for function in ast.parse(module.read_text(encoding="utf-8")).body:
        for mark in getattr(function, "decorator_list", ()):
            if isinstance(mark, ast.Call) and getattr(mark.func, "id", "") == "sound":
                entry = {word.arg: ast.literal_eval(word.value) for word in mark.keywords}
                variants = entry.get("variants", 1)
                for number in range(1, variants + 1):
                    suffix = f"_{number}" if variants > 1 else ""
                    yield f"{module.stem}/{function.name}{suffix}.ogg", 2 if entry.get("stereo") else 1


def samples_of(project):
    """Each sample that the project names, and the line of its first use."""
    lines = {}
    for number, line in enumerate(project.read_text(encoding="utf-8").splitlines(), 1):
        match = SAMPLE.match(line)
        if match:
            lines.setdefault(match.group(1), number)
    return lines


def loudness_of_events(root):
    """Event with a place in the world -> decibels a metre away as they follow from its samples, and as it says."""
    recipes = {f"{module.stem}/{name}": loudness
               for module in (root / "tools" / "assets" / "sound" / "recipes").glob("[a-z]*.py")
               for name, loudness in recipe_loudness(module)}
    categories, events, layer = {}, {}, None
    for line in (root / "assets" / "sound" / "fmod" / "kaVel.fev").read_text(encoding="utf-8").splitlines():
        word, *rest = line.split("#")[0].split() or [""]
        if word == "category" and not line.startswith(" "):
            categories[rest[0]] = float(rest[1])
        elif word == "event":
            event = events[rest[0]] = {"category": "", "layers": [], "said": None, "placed": False}
        elif word == "category":
            event["category"] = rest[0]
        elif word == "loudness":
            event["said"] = float(rest[0])
        elif word == "layer":
            layer = {"samples": [], "volume": 1.0}
            event["layers"].append(layer)
        elif word == "sample":
            layer["samples"].append(recipes[re.sub(r"(_\d+)?\.ogg$", "", rest[0])])
        elif word == "volume" and ":" not in line:
            layer["volume"] = float(rest[0])
        elif word == "parameter":
            event["placed"] = event["placed"] or rest[0] == "distance"
    return {name: (follows(event, categories), event["said"]) for name, event in events.items()
            if event["placed"] and event["layers"]}


def follows(event, categories):
    """The loudest layer, less what the categories take."""
    path = event["category"]
    parents = [path[:end.start()] for end in re.finditer("/|$", path)]
    gain = math.prod(categories.get(each, 1.0) for each in parents)
    return 20 * math.log10(gain) + max(sum(layer["samples"]) / len(layer["samples"]) + 20 * math.log10(layer["volume"])
                                       for layer in event["layers"])


def recipe_loudness(module):
    """The sounds that a module's recipes make, each with the loudness it is to have."""
    for function in ast.parse(module.read_text(encoding="utf-8")).body:
        for mark in getattr(function, "decorator_list", ()):
            if isinstance(mark, ast.Call) and getattr(mark.func, "id", "") == "sound":
                loudness, = (word.value for word in mark.keywords if word.arg == "loudness")
                yield function.name, ast.literal_eval(loudness)


def judge(path, name, channels):
    try:
        has, rate, length = head_of(path.read_bytes())
    except NotVorbis as what:
        yield f"{name} is no whole Ogg Vorbis file: {what}; make it again"
        return
    if has != channels:
        yield f"{name} has {has} channels, its recipe says {channels}; make it again"
    if rate != RATE:
        yield f"{name} runs at {rate} Hz, {RATE} is meant; make it again"
    if length <= 0:
        yield f"{name} is empty; make it again"


def head_of(data):
    """Channels, samples a second, and length in samples."""
    if data[:4] != b"OggS" or data[28:35] != b"\x01vorbis":
        raise NotVorbis("its beginning is not one's")
    last = data.rfind(b"OggS")
    if len(data) < last + 27 or not data[last + 5] & 4:
        raise NotVorbis("its last page is missing")
    sizes = data[last + 27:last + 27 + data[last + 26]]
    if len(data) < last + 27 + len(sizes) + sum(sizes):
        raise NotVorbis("its last page is cut off")
    channels, rate = struct.unpack_from("<BI", data, 39)
    return channels, rate, struct.unpack_from("<q", data, last + 6)[0]
