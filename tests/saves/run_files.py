"""The files of saves, without the game: what writing them survives, and what is said of bad ones."""
import argparse
import os
import pathlib
import random
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ROOT / "tools" / "saves"
sys.path[:0] = [str(ROOT / "tests" / "support"), str(TOOLS)]
import cases
from rooms import Document
from rooms import Folder as Files

KILLS = 100
FAR_AWAY = '{"at": [0, 1e30, 0], "turn": 0, "pitch": 0}'

PROGRAM = """
import sys
sys.path.insert(0, sys.argv[1])
from rooms import Document, Folder

def document(number, size):
    return {'level': 'Nightfall', 'place': '', 'made': '%09d' % number, 'why': 'safe', 'played': 1.0,
            'stand': None, 'mods': {}, 'calls': {}, 'objects': {}, 'parts': {'filling': 'x' * size}}
folder = Folder.Folder(sys.argv[2])
number = int(sys.argv[3])
"""
WRITES = PROGRAM + """
while True:
    number += 1
    folder.write('game1', Document.write(document(number, 60000)))
    print(number, flush=True)
"""
WRITES_SIXTY = PROGRAM + """
for each in range(number, number + 60):
    print(folder.write('game1', Document.write(document(each, 20000))))
"""


def document(number, size=400):
    return {"level": "Nightfall", "place": "", "made": "%09d" % number, "why": "safe", "played": 1.0,
            "stand": None, "mods": {}, "calls": {}, "objects": {}, "parts": {"filling": "x" * size}}


def begin(path, program, *words):
    return subprocess.Popen([sys.executable, "-c", program, str(TOOLS), str(path), *map(str, words)],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def whole(path):
    """Name -> number of each save that can be read; all must be."""
    there = Files.Folder(str(path))
    return {name: int(Document.read(there.read(name))["made"]) for name in there.names()}


def fault(path, name="game1.1"):
    """What is said of a save that cannot be read."""
    try:
        Document.read(Files.Folder(str(path)).read(Files.nameOf(name)))
    except Document.Fault as wrong:
        return wrong.key
    except OSError as wrong:
        return type(wrong).__name__
    return "whole"


def test_a_writer_that_is_killed_a_hundred_times_loses_nothing_that_it_has_told(folder):
    dice, told, cut = random.Random(5), 0, 0
    for _ in range(KILLS):
        writer = begin(folder, WRITES, told)
        first = writer.stdout.readline()
        time.sleep(dice.uniform(0, 0.03))  # somewhere within a save: that of one takes some milliseconds
        writer.send_signal(signal.SIGKILL)
        told = int((first + writer.stdout.read()).split()[-1])  # `communicate` leaves out what was read ahead
        writer.communicate()
        cut += any(file.name.endswith(".new") for file in folder.iterdir())
        saves = whole(folder)
        newest = max(saves.values())
        assert newest in (told, told + 1), (told, saves)  # a save may be whole before that is told
        assert len(saves) in (1, 2, 3, 4) and sorted(saves.values())[-3:] == list(saves.values())[:3][::-1], saves
        told = newest
    assert cut > KILLS // 10, f"only {cut} of {KILLS} were killed within a save"
    Files.Folder(str(folder)).write("game1", Document.write(document(told + 1)))
    assert len(whole(folder)) == 3 and not list(folder.glob("*.new")), list(folder.iterdir())


def test_two_games_that_save_into_one_slot_at_once_never_write_the_same_file(folder):
    both = [begin(folder, WRITES_SIXTY, start) for start in (1000, 2000)]
    told = [writer.communicate() for writer in both]
    assert not any(errors for _, errors in told), told
    names = [name for lines, _ in told for name in lines.split()]
    assert len(names) == 120 == len(set(names)), names
    assert len(whole(folder)) == 3 and not list(folder.glob("*.new"))


def test_what_is_no_save_is_named_and_nothing_waits_or_ends(folder):
    good = Document.write(document(1)).decode()
    body = good.split("\n", 2)[2][1:]
    file = folder / "game1.1.save"
    seen = {}
    for name, content in {
            "saves.fault.empty": b"", "saves.fault.none": b"\xff" * 5000, "saves.fault.checksum": good[:-40].encode(),
            "saves.fault.future": Document.sealed(Document.VERSION + 1, body),
            "saves.fault.number": Document.sealed(Document.VERSION, body.replace("1.0", "NaN")),
            "number beyond all": Document.sealed(Document.VERSION, body.replace("1.0", "1e999")),
            "nested": Document.sealed(Document.VERSION, "[" * 100000),
            "saves.fault.text": Document.sealed(Document.VERSION, "[1, 2]"),
            "far away": Document.sealed(Document.VERSION, body.replace('"stand": null', '"stand": ' + FAR_AWAY)),
            "saves.fault.field": Document.sealed(Document.VERSION, body.replace('"calls"', '"cells"')),
            "two megabytes": b"Mornal save, version 1\n" + b"j" * (1 << 21)}.items():
        file.write_bytes(content)
        seen[name] = fault(folder)
    for name, told in seen.items():
        wanted = {"number beyond all": "saves.fault.number", "nested": "saves.fault.text",
                  "far away": "saves.fault.field", "two megabytes": "OSError"}.get(name, name)
        assert told == wanted, (name, told)
    file.unlink()
    file.mkdir()
    assert fault(folder) == "IsADirectoryError" or fault(folder) == "OSError", fault(folder)
    file.rmdir()
    os.mkfifo(file)
    assert fault(folder) == "OSError"
    assert fault(folder, "game1.2") == "FileNotFoundError"
    assert str(Files.Folder(str(folder)).write("game1", b"x")) == "game1.2", "what is no file has a number, too"


def test_a_disk_that_is_full_keeps_all_saves_and_gets_no_new_file(folder):
    if os.geteuid():
        print("(left out: only root can mount a small disk)")
        return
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=256k", "tmpfs", str(folder)], check=True)
    try:
        there = Files.Folder(str(folder))
        there.write("game1", Document.write(document(1, 90000)))
        there.write("game1", Document.write(document(2, 90000)))
        try:
            there.write("game1", Document.write(document(3, 90000)))
        except OSError as full:
            assert full.errno == 28, full
        else:
            raise AssertionError("it was written")
        assert sorted(whole(folder).values()) == [1, 2] and len(list(folder.iterdir())) == 2
        assert str(there.write("game1", Document.write(document(3, 100)))) == "game1.4", "a small one still finds room"
    finally:
        subprocess.run(["umount", str(folder)], check=True)


def test_an_older_save_becomes_one_of_today_by_named_steps(folder):
    samples = pathlib.Path(__file__).parent
    for version in range(1, Document.VERSION + 1):
        sample = (samples / f"v{version}.save").read_bytes()
        assert Document.opened(sample)[0] == version
        now = Document.read(sample)
        at, turn, pitch = now["stand"]["at"], now["stand"]["turn"], now["stand"]["pitch"]
        wanted = [15.15, 3.0, 14.9, 60.0, 5.0 if version < 4 else 0.0]
        assert [round(each, 3) for each in (*at, turn, pitch)] == wanted, now["stand"]
        assert now["parts"]["safety"] == {"at": [15.15, 3.0, 14.9], "turn": 60.0, "deaths": 0}, now["parts"]["safety"]
        assert set(now["parts"]["pockets"]["things"]) == {"porterNote", "stairKey", "passageKey"}
        assert now["parts"]["nightfall"]["gateIsOpen"], "nobody who was past the stairs finds their gate shut"
    told = subprocess.run([str(TOOLS / "diff.py"), str(samples / "v1.save"), str(samples / "v2.save")], text=True,
                          stdout=subprocess.PIPE, check=False)
    assert told.returncode == 1 and "parts/player/batteries" not in told.stdout, told.stdout
    assert "  made: " in told.stdout, told.stdout
    assert folder.is_dir()


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build")
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    sys.exit(cases.run(dict(globals()), options.names))
