"""Checks the include direction: a folder of src/ includes only from folders before it, a header only from rooms of its
folder before its own, and platform headers stay in the port. Prints one line a finding."""
import re

# Folders of one row stand side by side: none of them includes another of its own row.
ROWS = [["port"], ["foundation"], ["object"], ["engine"], ["assets", "physics"], ["platform"], ["rendering"], ["ai"],
        ["gameplay", "ui", "tools"], ["main"]]
RANK = {folder: row for row, folders in enumerate(ROWS) for folder in folders}
# The rooms of a folder in the order in which their headers stand on each other. A source file may use any of them:
# what an object does may need a later room, what it is may not.
ROOMS = {
    "object": ["tree", "reflection", "messages", "python"],
    "engine": ["systems", "time", "entities", "transforms", "levels", "screen", "debug"],
    "assets": ["files", "cache", "fonts", "models", "building"],
    "physics": ["grid", "volumes", "bodies", "doors", "triggers", "acoustics"],
    "platform": ["window", "input", "sound"],
    "rendering": ["device", "frame", "drawn", "debug"],
    "ai": ["plans", "nodes", "trees", "actions", "paths", "steering", "flocks", "knowledge", "perception", "telling"],
    "ui": ["widgets", "screens"],
    "gameplay": ["player", "light", "mind", "creatures"],
    "tools": ["console", "profiler", "bars", "digest", "timeline", "editor", "views"],
}
# More headers than this, and nobody sees at the door what belongs inside.
MOST_HEADERS = 22
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
PLATFORM = re.compile(r"^(?:SDL2?/|SDL|epoxy/|GL/|AL/|EGL/|unistd\.h|fcntl\.h|pthread\.h|dlfcn\.h|dirent\.h|"
                      r"sys/(?!types\.h))")


def findings(root):
    source = root / "src"
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".inl"):
            continue
        here = path.relative_to(source).parts
        yield from judge_place(here)
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if match:
                yield from judge(here, match.group(1), match.group(2), f"{path.relative_to(root)}:{number}")
    for folder, rooms in ROOMS.items():
        for room in rooms:
            count = len(list((source / folder / room).glob("*.h")))
            if count > MOST_HEADERS:
                yield f"src/{folder}/{room}: {count} headers; divide the room"


def judge_place(here):
    """Where a folder has rooms, every file stands in a known one."""
    if here[0] in ROOMS and (len(here) != 3 or here[1] not in ROOMS[here[0]]):
        yield f"src/{'/'.join(here)}: stands in no room of {here[0]} (tools/check/includes.py lists them)"


def judge(here, bracket, target, place):
    folder = here[0]
    if bracket == "<":
        if folder != "port" and PLATFORM.match(target):
            yield f"{place}: platform header <{target}> outside src/port"
        return
    parts = target.split("/")
    other = parts[0]
    if other not in RANK:
        yield f"{place}: \"{target}\" names no folder of src/; include from the source root"
    elif folder == "port":
        if other != "port":
            yield f"{place}: the port includes \"{target}\" from {other}"
    elif other != folder:
        if RANK[other] >= RANK[folder]:
            yield f"{place}: {folder} may not include \"{target}\" from {other}"
    elif folder in ROOMS and here[-1].endswith(".h"):
        order = ROOMS[folder]
        if here[1] in order and parts[1] in order and order.index(parts[1]) > order.index(here[1]):
            yield f"{place}: {folder}/{here[1]} comes before {parts[1]}; \"{target}\" belongs into a source file"
