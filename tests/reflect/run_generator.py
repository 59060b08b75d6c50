"""The reflection generator on small trees of headers: what it writes, what it leaves alone, how it refuses."""
import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
GENERATOR = ROOT / "tools" / "reflect"
sys.path[:0] = [str(GENERATOR), str(ROOT / "tests" / "support")]
import doxygen
from cases import run
from failure import ReflectionError

HEADERS = {
    "base/Object.h": """
/// Base of everything.
class Object
{
    KV_REFLECTED(Object)
public:
    /// The name.
    String getName() const;
    void setName(const String &name);
    virtual void update(float seconds);
};
""",
    "base/Door.h": """
#include "base/Object.h"
/// Opens and shuts. More text.
class Door : public Object
{
    KV_REFLECTED(Door)
public:
    /// How far it stands open.
    enum State { SHUT, AJAR, OPEN };
    void update(float seconds) override;
    State getState() const;
    void setState(State state);
    Handle<Door> getTwin() const;
    void tooMany(int a, int b, int c, int d, int e);
};
""",
    "game/Lamp.h": """
#include "base/Object.h"
/// Shines.
class Lamp : public Object
{
    KV_REFLECTED(Lamp)
public:
    void light(const Handle<Door> &way, float watts);
};
/// Number of lamps.
int countLamps();
""",
}


class Tree:
    """A source tree in a temporary folder, and runs of the generator over it."""

    def __init__(self, folder, headers=None):
        self.root = pathlib.Path(folder)
        for path, text in (headers or HEADERS).items():
            self.write(path, text)

    def write(self, path, text):
        target = self.root / "src" / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text("#pragma once\n" + text, encoding="utf-8")

    def generate(self, *options):
        command = [sys.executable, "-B", str(GENERATOR / "generate.py"), "--doxygen", shutil.which("doxygen"),
                   "--source", str(self.root), "--table", "test", "--out", str(self.root / "out"),
                   "--slot", "src/base=1", "--slot", "src/game=1", "--include-root", "src",
                   "--stubs", str(self.root / "stubs.pyi"), "--names", str(self.root / "names.txt"),
                   "--reference", str(self.root / "docs"), *options]
        return subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def expect_success(self):
        run = self.generate()
        assert run.returncode == 0, run.stdout
        return self

    def expect_error(self, *texts):
        run = self.generate()
        assert run.returncode != 0, "the generator accepted it"
        for text in texts:
            assert text in run.stdout, f"{text!r} is not in: {run.stdout}"
        assert "Traceback" not in run.stdout, run.stdout

    def outputs(self):
        files = [*(self.root / "out").glob("*.cpp"), *(self.root / "docs").iterdir(), self.root / "stubs.pyi",
                 self.root / "names.txt"]
        return {str(f.relative_to(self.root)): f.read_text(encoding="utf-8") for f in sorted(files)}

    def stamps(self):
        return {f.name: f.stat().st_mtime_ns for f in (self.root / "out").glob("*.cpp")}


def test_the_names_that_scripts_reach_are_listed(folder, _):
    names = (Tree(folder).expect_success().root / "names.txt").read_text(encoding="utf-8").splitlines()
    for line in ("class Door: Object", "enum Door::State: SHUT AJAR OPEN", "property Door.state (get/set)",
                 "method Door::getTwin() -> Handle<Door>", "function countLamps() -> int",
                 "method Lamp::light(const Handle<Door> &, float) -> void", "property Object.name (get/set)"):
        assert line in names, f"{line!r} is missing from {names}"
    assert not any("tooMany" in line for line in names)


def test_a_mixin_gives_its_public_functions_to_each_class_that_takes_it(folder, _):
    painted = """
#include "base/Object.h"
class Painted
{
    KV_REFLECTED_MIXIN
public:
    /// Colour of the paint.
    int getColor() const;
    void setColor(int val);
protected:
    void mix();
private:
    int color;
};
class Fence : public Object, public Painted
{
    KV_REFLECTED(Fence)
};
"""
    tree = Tree(folder, {**HEADERS, "base/Painted.h": painted}).expect_success()
    names = (tree.root / "names.txt").read_text(encoding="utf-8").splitlines()
    assert "property Fence.color (get/set)" in names and "method Fence::setColor(int) -> void" in names, names
    assert not any("mix" in line or "class Painted" in line for line in names), names
    table = "".join(text for name, text in tree.outputs().items() if name.endswith(".cpp"))
    assert "resolveThis<Fence>" in table and "resolveThis<Painted>" not in table


def test_the_first_sentence_of_a_comment_stands_alone(*_):
    for text, first, rest in (("Opens. Slowly, with a creak.", "Opens.", "Slowly, with a creak."),
                              ("A place, e.g. a room. It has a name.", "A place, e.g. a room.", "It has a name."),
                              ("Turns by 0.5 radians", "Turns by 0.5 radians", ""),
                              ("Is it open? \"Yes\" or \"no\".", "Is it open?", "\"Yes\" or \"no\".")):
        assert doxygen.split_first_sentence(text) == (first, rest), text


def test_two_checkouts_give_the_same_text(folder, _):
    one = Tree(pathlib.Path(folder) / "one").expect_success()
    other = Tree(pathlib.Path(folder) / "elsewhere" / "other", dict(reversed(HEADERS.items()))).expect_success()
    assert one.outputs() == other.outputs()
    assert str(folder) not in "".join(one.outputs().values())


def test_a_second_run_writes_nothing(folder, _):
    tree = Tree(folder).expect_success()
    before = tree.stamps()
    time.sleep(0.02)
    assert tree.expect_success().stamps() == before


def test_a_changed_class_rewrites_its_own_file_only(folder, _):
    tree = Tree(folder).expect_success()
    before = tree.stamps()
    time.sleep(0.02)
    tree.write("game/Lamp.h", HEADERS["game/Lamp.h"].replace("float watts", "double watts"))
    after = tree.expect_success().stamps()
    assert {name for name in after if after[name] != before[name]} == {"game_0.cpp"}


def test_a_class_that_is_no_object_is_refused_at_its_line(folder, _):
    tree = Tree(folder)
    tree.write("game/Stone.h", "/// Lies.\nclass Stone\n{\n    KV_REFLECTED(Stone)\n};\n")
    tree.expect_error("src/game/Stone.h:5: error:", "'Stone'", "does not derive from Object")


def test_two_classes_of_one_name_are_refused_with_both_places(folder, _):
    tree = Tree(folder)
    tree.write("game/Door.h", "class Door\n{\npublic:\n    int hinges() const;\n};\n")
    tree.expect_error("src/base/Door.h:", "src/game/Door.h:", "'Door")


def test_a_private_nested_class_is_refused(folder, _):
    tree = Tree(folder)
    tree.write("game/Safe.h", "class Safe : public Object\n{\n    KV_REFLECTED(Safe)\nprivate:\n"
                              "    class Lock : public Object\n    {\n        KV_REFLECTED(Lock)\n    };\n};\n")
    tree.expect_error("src/game/Safe.h:8: error:", "'Safe::Lock'", "not public")


def test_broken_xml_is_named_with_its_line(folder, _):
    xml = pathlib.Path(folder)
    (xml / "classDoor.xml").write_text("<doxygen>\n  <compounddef\n", encoding="utf-8")
    try:
        doxygen.read(str(xml), str(xml))
    except ReflectionError as error:
        assert "classDoor.xml:" in str(error) and "broken XML" in str(error), error
    else:
        raise AssertionError("broken XML was accepted")


def test_stubs_hold_what_can_be_called_and_nothing_else(folder, _):
    tree = Tree(folder)
    tree.write("game/Clock.h", """
#include "base/Object.h"
class Clock : public Object
{
    KV_REFLECTED(Clock)
public:
    /// Behind the form with a pointer, which no call reaches.
    void wind(int *turns, float force);
    void wind(float force);
    void strike(int hours);
    void strike(int hours, float force);
    float getSpeed() const;
private:
    void setSpeed(float val);
    void oil();
};
""")
    stubs = (tree.expect_success().root / "stubs.pyi").read_text(encoding="utf-8")
    clock = stubs.split("class Clock(", 1)[1].split("\nclass ", 1)[0]
    assert "def strike(self, hours: int, /)" in clock and clock.count("def strike") == 1, clock
    assert "def speed(self) -> float" in clock, clock
    for absent in ("wind", "oil", "setSpeed", "speed.setter"):
        assert absent not in clock, f"{absent} is no call: {clock}"


def test_calls_by_key_or_class_name_have_the_type_that_the_table_knows(folder, _):
    tree = Tree(folder)
    tree.write("base/Entity.h", """
#include "base/Object.h"
class Entity : public Object
{
    KV_REFLECTED(Entity)
public:
    Handle<AbstractComponent> getComponent(const String &managerName);
};
class AbstractComponent : public Object
{
    KV_REFLECTED(AbstractComponent)
public:
    virtual void doFrame() = 0;
};
/// Burns, under the component key "light" or "lamp".
class Flame : public AbstractComponent
{
    KV_REFLECTED(Flame)
public:
    void doFrame() override;
    void setHeat(float val);
};
class BlueFlame : public Flame
{
    KV_REFLECTED(BlueFlame)
};
/// Rings, under the component key "bell".
class Bell : public AbstractComponent
{
    KV_REFLECTED(Bell)
public:
    void doFrame() override;
};
""")
    stubs = (tree.expect_success().root / "stubs.pyi").read_text(encoding="utf-8")
    for line in ("def getComponent(self, managerName: Literal['lamp'], /) -> AnyFlame: ...",
                 "def getComponent(self, managerName: Literal['bell'], /) -> Bell: ...",
                 "def getComponent(self, managerName: str, /) -> AnyAbstractComponent: ...",
                 "def __call__(self, entity: Entity, key: Literal['light', 'lamp'], className: Literal['BlueFlame'], "
                 "/, **properties: Unpack[BlueFlameProperties]) -> BlueFlame: ...",
                 "class BlueFlameProperties(FlameProperties, total=False): ...", "    heat: float",
                 "class AnyFlame(Flame, Any):"):
        assert line in stubs, f"{line!r} is not in: {stubs}"
    assert "className: Literal['AbstractComponent']" not in stubs, "nobody can make one"


def test_the_engines_names_are_those_of_the_reviewed_list(_, build):
    golden = ROOT / "tests" / "object" / "reflected_names.golden"
    made = build / "reflection" / "names.txt"
    expected = golden.read_text(encoding="utf-8").splitlines()
    found = made.read_text(encoding="utf-8").splitlines()
    changes = "\n".join(difflib.unified_diff(expected, found, "reviewed", "built", lineterm="", n=0))
    assert not changes, (f"{changes}\nWhat scripts can reach has changed. If that is meant:\n"
                         f"cp {made} {golden.relative_to(ROOT)}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    build = (ROOT / options.build).resolve()
    sys.exit(run(globals(), options.names, lambda folder: (str(folder), build)))


if __name__ == "__main__":
    main()
