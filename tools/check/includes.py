"""Checks the include direction: a folder of src/ includes only from folders before it, and platform headers stay in
the port. Prints one line a finding."""
import pathlib
import re

ORDER = ["port", "foundation", "object", "engine", "assets", "physics", "platform", "rendering", "ai", "gameplay", "ui",
         "tools", "main"]
# Layers that stand side by side: none of them includes another of its own row.
ROWS = [["port"], ["foundation"], ["object"], ["engine"], ["assets", "physics", "platform"], ["rendering", "ai"],
        ["gameplay", "ui", "tools"], ["main"]]
RANK = {folder: row for row, folders in enumerate(ROWS) for folder in folders}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
PLATFORM = re.compile(r"^(?:SDL2?/|SDL|epoxy/|GL/|AL/|EGL/|unistd\.h|fcntl\.h|pthread\.h|dlfcn\.h|dirent\.h|sys/(?!types\.h))")


def findings(root):
    source = root / "src"
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".inl"):
            continue
        folder = path.relative_to(source).parts[0]
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if match:
                yield from judge(folder, match.group(1), match.group(2), f"{path.relative_to(root)}:{number}")


def judge(folder, bracket, target, place):
    if bracket == "<":
        if folder != "port" and PLATFORM.match(target):
            yield f"{place}: platform header <{target}> outside src/port"
        return
    other = target.split("/")[0]
    if other not in RANK:
        yield f"{place}: \"{target}\" names no folder of src/; include from the source root"
    elif folder == "port":
        if other != "port":
            yield f"{place}: the port includes \"{target}\" from {other}"
    elif other != folder and RANK[other] >= RANK[folder]:
        yield f"{place}: {folder} may not include \"{target}\" from {other}"
