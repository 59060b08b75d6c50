"""The importer on damaged files: it imports a sound model or names file and cause, in time, and the old one stays.

More rounds, or one again: run_import_damaged.py --build FOLDER --rounds 5000 --seed 7 [--first 123]
"""
import argparse
import pathlib
import random
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "assets"), str(ROOT / "tests" / "support")]
import cases
import check_model
import png
import sources

LONGEST_S = 60  # the files are small: one that takes longer hangs
WORDS = (b"0", b"-1", b"4294967295", b"1e39", b"nan", b"{", b"}", b"[", b'"', b"../", b"99999999", b"", b"\n")
NUMBERS = (0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x40000001)
OPTIONS = None


def damaged(data, chance):
    """A copy with one to four faults: bytes, words and numbers of it, its length, the order of its parts."""
    data = bytearray(data)
    for _ in range(chance.randint(1, 4)):
        at = chance.randrange(len(data) + 1)
        kind = chance.randrange(6)
        if kind == 0 and at < len(data):
            data[at] ^= 1 << chance.randrange(8)
        elif kind == 1:
            data[at:at + chance.randint(0, 8)] = chance.choice(WORDS)
        elif kind == 2:
            data[at:at + 4] = struct.pack("<I", chance.choice(NUMBERS))
        elif kind == 3:
            del data[at:at + chance.randint(1, 64)]
        elif kind == 4:
            data[at:at] = data[at:at + chance.randint(1, 64)] * chance.choice((1, 1, 50))
        elif chance.randrange(4) == 0:
            del data[at:]
    return bytes(data)


def samples(folder):
    """Sound files of each format, the files beside them written already."""
    png.write(folder / "skin.png", png.Picture(8, 8, 3, [bytes(range(24))] * 8))
    (folder / "m.mtl").write_text("newmtl oak\nKd 1 0.5 0\nmap_Kd skin.png\nmap_Ke skin.png\n")

    def dressed(document):
        document["images"], document["textures"] = [{"uri": "skin.png"}], [{"source": 0}]
        document["materials"] = [{"name": "oak", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}}]
        document["meshes"][0]["primitives"][0]["material"] = 0

    yield "sound.obj", ("mtllib m.mtl\nusemtl oak\n" + sources.text_of_obj()).encode()
    yield "sound.gltf", sources.gltf(folder, edit=dressed).read_bytes()
    yield "sound.glb", sources.gltf(folder, name="marker.glb", edit=dressed, binary=True).read_bytes()
    yield "sound.fbx", sources.fbx(folder, sources.POINTS, 1, (1, 1), (2, 1)).read_bytes()
    yield "m.mtl", (folder / "m.mtl").read_bytes()
    yield "skin.png", (folder / "skin.png").read_bytes()


def check(source, must_succeed=False):
    target = source.parent / "out.kaVelModel"
    target.write_bytes(b"the old model")
    words = [str(OPTIONS.importer), "--output", str(target), str(source)]
    result = subprocess.run(words, capture_output=True, timeout=LONGEST_S, check=False,
                            env=sources.ENVIRONMENT)
    text = result.stderr.decode("utf-8", "replace")
    assert result.returncode in ((0,) if must_succeed else (0, 1)), (result.returncode, text)
    assert "Sanitizer" not in text and "runtime error" not in text, text
    assert not list(source.parent.glob("*.part")), text
    if result.returncode == 0:
        assert not check_model.faults(target), check_model.faults(target)
    else:
        assert text.startswith(f"kaVelImport: {source}: ") and len(text) > len(str(source)) + 30, text
        assert target.read_bytes() == b"the old model", text


def test_every_damaged_file_is_imported_soundly_or_refused_by_name(folder):
    for name, data in list(samples(folder)):
        reader = folder / (name if name.startswith("sound") else "sound.obj")
        (folder / name).write_bytes(data)
        check(reader, must_succeed=True)
        for number in range(OPTIONS.first, OPTIONS.first + OPTIONS.rounds):
            (folder / name).write_bytes(damaged(data, random.Random(f"{OPTIONS.seed} {name} {number}")))
            try:
                check(reader)
            except (AssertionError, subprocess.TimeoutExpired) as fault:
                again = f"--rounds 1 --first {number} --seed {OPTIONS.seed}"
                raise AssertionError(f"{name}, {again}: {fault}") from fault
        (folder / name).write_bytes(data)


def main():
    global OPTIONS
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=40)
    parser.add_argument("--first", type=int, default=0)
    parser.add_argument("--seed", type=int, default=1)
    OPTIONS = parser.parse_args()
    OPTIONS.importer = OPTIONS.build.resolve() / "kaVelImport"
    return cases.run(globals())


if __name__ == "__main__":
    sys.exit(main())
