"""Compares pictures that the game draws with those kept in tests/golden.

    picture = golden.draw(world, "Gallery", frames=30)
    golden.expect("gallery_spot", picture)

A picture that differs, or has none to be compared with, fails the test and lies under build/golden with a picture of
the difference beside it. Look at both; if the new one is right, it becomes the kept one by

    python3 tests/support/golden.py accept NAME...
"""
import pathlib
import shutil
import sys

import png

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEPT = ROOT / "tests" / "golden"
FOUND = ROOT / "build" / "golden"

SIZE = (320, 180)  # pixels: small enough to be kept, large enough for a shadow's edge
BLOCK = 10         # pixels: side of the squares whose means are compared, which noise and rasterisers leave alone

# Steps of 255. One driver draws the same bytes twice; another may round and filter differently.
WORST_BLOCK = 6.0
WHOLE_PICTURE = 0.75


def small(world, size=SIZE):
    """Makes the window of a world's headless runs small, in pixels."""
    config = world.folder / "scripts" / "GameConfig.py"
    lines = [f"headlessSize = {tuple(size)}" if line.startswith("headlessSize = ") else line
             for line in config.read_text(encoding="utf-8").splitlines()]
    config.write_text("\n".join(lines) + "\n", encoding="utf-8")


def draw(world, level, frames, size=SIZE, **environment):
    """Runs a level in a small window and returns the file of its last frame."""
    small(world, size)
    world.run(level=level, frames=frames, screenshot="golden.png", **environment).expect_code(0)
    return world.folder / "golden.png"


def expect(name, path, worst_block=WORST_BLOCK, whole_picture=WHOLE_PICTURE):
    """Fails unless the picture in a file is the kept one of that name, within the tolerances."""
    kept = KEPT / f"{name}.png"
    found = png.read(path)
    problem = "there is no picture to compare it with" if not kept.exists() else ""
    if not problem:
        problem = compare(png.read(kept), found, worst_block, whole_picture)
    if not problem:
        return
    FOUND.mkdir(parents=True, exist_ok=True)
    actual = FOUND / f"{name}.actual.png"
    shutil.copyfile(path, actual)
    if kept.exists():
        png.write(FOUND / f"{name}.difference.png", difference(png.read(kept), found))
    beside = f" (and {name}.difference.png beside it, ten times as strong)" if kept.exists() else ""
    raise AssertionError(f"picture {name}: {problem}. Look at {actual}{beside}; if it is right: "
                         f"python3 tests/support/golden.py accept {name}")


def compare(kept, found, worst_block, whole_picture):
    """What is wrong with a picture; empty if nothing is."""
    if (kept.width, kept.height) != (found.width, found.height):
        return f"{found.width} x {found.height} pixels instead of {kept.width} x {kept.height}"
    blocks = [(abs(ours - theirs), place) for ours, theirs, place in _block_means(kept, found)]
    worst, (x, y, channel) = max(blocks)
    mean = sum(error for error, _ in blocks) / len(blocks)
    if worst > worst_block:
        return (f"the {('red', 'green', 'blue')[channel]} of the {BLOCK} x {BLOCK} pixels at ({x}, {y}) is {worst:.1f} "
                f"of 255 off, allowed {worst_block}")
    return f"it is {mean:.2f} of 255 off on average, allowed {whole_picture}" if mean > whole_picture else ""


def _block_means(kept, found):
    """Means of each square and colour in both pictures, with the place."""
    for y in range(0, kept.height, BLOCK):
        for x in range(0, kept.width, BLOCK):
            for channel in range(3):
                yield _mean(kept, x, y, channel), _mean(found, x, y, channel), (x, y, channel)


def _mean(picture, x, y, channel):
    rows = picture.rows[y:y + BLOCK]
    begin, end = x * picture.step + channel, min(x + BLOCK, picture.width) * picture.step
    values = [sum(row[begin:end:picture.step]) for row in rows]
    return sum(values) / (len(rows) * len(rows[0][begin:end:picture.step]))


def difference(kept, found):
    """Ten times the distance of each value, as a picture."""
    rows = []
    for y in range(min(kept.height, found.height)):
        row = bytearray()
        for x in range(min(kept.width, found.width)):
            for channel in range(3):
                ours, theirs = kept.rows[y][x * kept.step + channel], found.rows[y][x * found.step + channel]
                row.append(min(255, 10 * abs(ours - theirs)))
        rows.append(bytes(row))
    return png.Picture(len(rows[0]) // 3, len(rows), 3, rows)


def accept(names):
    """Keeps the pictures of the last failing runs from now on."""
    for name in names:
        actual = FOUND / f"{name}.actual.png"
        if not actual.exists():
            waiting = ", ".join(sorted(path.name[:-len(".actual.png")] for path in FOUND.glob("*.actual.png")))
            raise SystemExit(f"golden: no failed picture {name}; there are: {waiting or 'none'}")
        KEPT.mkdir(parents=True, exist_ok=True)
        shutil.move(actual, KEPT / f"{name}.png")
        (FOUND / f"{name}.difference.png").unlink(missing_ok=True)
        print(f"kept tests/golden/{name}.png")


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1] != "accept":
        raise SystemExit("python3 tests/support/golden.py accept NAME...")
    accept(sys.argv[2:])
