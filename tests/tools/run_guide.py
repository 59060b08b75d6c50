"""The guide's snippets: each is put where its text says, and the level that comes of them is run.

What begins with "# FILE" is the whole file, "# in FILE" goes to its end, "# above NAME in FILE" before the function of
that name, "# instead in FILE" takes the place of the line that is most like its last one; "# snippet" stands in a map.
"""
import difflib
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

GUIDE = game.ROOT / "docs" / "guide"
FENCE = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PLACE = re.compile(r"# (?:(in|instead in|above (\w+) in) )?(\S+/\S+)$")
TROUBLE = re.compile(r"^.*(?:Error:|Critical:|Traceback|Warning:).*$", re.MULTILINE)

#: A map for what needs nothing but one.
MAP = """
import kaVel
import objects.GameObjects as place

def build(coordinator):
    coordinator.loadMap('house')
    place.Player(coordinator, at=(-2, 0, -2))

def house(map):
    place.Room(map, 'room', size=(8, 8))
"""


def fences(name):
    return FENCE.findall((GUIDE / name).read_text(encoding="utf-8"))


def put(world, snippet):
    """Puts a snippet into the file that its first line names."""
    first, _, text = snippet.partition("\n")
    how, function, name = PLACE.match(first).groups()
    path = world.folder / name
    if how is None:
        path.write_text(text)
        return
    lines = path.read_text().splitlines(keepends=True)
    new = text.splitlines(keepends=True)
    if how == "in":
        lines += new
    elif function:
        at = next(number for number, line in enumerate(lines) if line.startswith(f"def {function}("))
        lines[at:at] = [*new, "\n", "\n"]
    else:
        near = difflib.get_close_matches(new[-1], lines, 1, 0.5)
        assert near, f"nothing in {name} is like {new[-1]!r}"
        lines[lines.index(near[0])] = text
    path.write_text("".join(lines))


def expect_clean(run, what):
    run.expect_code(0)
    trouble = TROUBLE.search(run.log)
    assert not trouble, f"{what}: {trouble.group()}\n{run.log[-2000:]}"


def follow(world, *names):
    """Does what pages of the guide say, and runs the level whenever it has changed; returns how often."""
    runs = 0
    for name in names:
        for language, text in fences(name):
            if language == "python":
                put(world, text)
            if language == "python" or "--level" in text:
                expect_clean(world.run(level="Cellar", frames=40, KAVEL_SIZE="320x180"), f"{name}: {text[:80]!r}")
                runs += 1
    return runs


def test_the_first_level_and_its_creature_run_at_every_step(world):
    assert follow(world, "first-level.md", "first-creature.md") >= 9
    world.write("scripts/levels/Watched.py", "from levels.Cellar import *\nimport levels.Cellar as it\n"
                "import kaVel\ndef build(level):\n    it.build(level)\n"
                "    frames = iter(range(10**6))\n    watcher = kaVel.addComponent(kaVel.make('Entity', parent=level,"
                " name='w'), 'cursor', 'ScriptComponent')\n"
                "    watcher.frameCallback = lambda: next(frames) == 300 and print('WHY', kaVel.why("
                "level.getDescendantByPath('cellar/steward')))\n")
    run = world.run(level="Watched", frames=320, KAVEL_SIZE="320x180", KAVEL_UNDRAWN="1")
    assert re.search("WHY .*Steward", run.log), run.log[-1500:]


def test_every_answer_stands_in_a_map(world):
    snippets = [text for language, text in fences("answers.md") if language == "python"]
    assert len(snippets) >= 7
    for number, text in enumerate(snippets):
        body = "".join("    " + line for line in text.splitlines(keepends=True))
        world.write(f"scripts/levels/Answer{number}.py", MAP + body)
        expect_clean(world.run(level=f"Answer{number}", frames=3, KAVEL_SIZE="320x180", KAVEL_UNDRAWN="1"), text)


if __name__ == "__main__":
    game.main(globals())
