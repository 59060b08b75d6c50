"""The committed models and textures: sound, complete, and exactly what their makers make."""
import argparse
import ast
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
MODELS = ROOT / "assets" / "models"
TEXTURES = ROOT / "assets" / "textures"
sys.path[:0] = [str(ROOT / "tools" / "assets"), str(ROOT / "tests" / "support")]
import check_model
import dds
import model_file
import models
import textures
from cases import run


def test_every_committed_model_is_sound(_):
    paths = sorted(MODELS.glob("*.kaVelModel"))
    assert len(paths) >= 10
    found = {path.name: check_model.faults(path) for path in paths}
    assert not any(found.values()), {name: faults for name, faults in found.items() if faults}


def test_the_checker_names_what_is_wrong_with_a_model(folder):
    data = bytearray((MODELS / "crate.kaVelModel").read_bytes())
    vertices = 8 + 32 + 4 * model_file.CHUNK_HEADER.unpack_from(data, 8)[5]
    index_at, normal_at = 8 + 32, vertices + 12

    def swapped(d):
        d[index_at:index_at + 8] = d[index_at + 4:index_at + 8] + d[index_at:index_at + 4]

    def overwritten(place, value):
        return lambda d: d.__setitem__(slice(place, place + len(value)), value)

    damages = {
        "file magic": overwritten(0, b"oops"),
        "magic of chunk 0": overwritten(8, b"oops"),
        "sizes of chunk 0": overwritten(8 + 12, (1).to_bytes(4, "little")),
        "cut off in its data": lambda d: d.__delitem__(slice(-4, None)),
        "bytes follow the last chunk": lambda d: d.extend(b"more"),
        "beyond the": overwritten(index_at, (10 ** 6).to_bytes(4, "little")),
        "infinity or a NaN": overwritten(vertices, b"\0\0\xc0\x7f"),
        "normal of length": overwritten(normal_at, b"\0\0\0\x40\0\0\0\x40\0\0\0\x40"),
        "winds against its normals": swapped,
    }
    for words, damage in damages.items():
        broken = bytearray(data)
        damage(broken)
        path = folder / "broken.kaVelModel"
        path.write_bytes(broken)
        faults = check_model.faults(path)
        assert faults and words in faults[0], (words, faults)


def test_the_committed_models_are_what_the_recipes_make(folder):
    assert {path.stem for path in MODELS.glob("*")} == set(models.RECIPES)
    for recipe_name, recipe in models.RECIPES.items():
        name = recipe_name + ".kaVelModel"
        model_file.write(folder / name, recipe())
        assert (folder / name).read_bytes() == (MODELS / name).read_bytes(), f"{name} is stale: make_models.py"


def test_the_committed_textures_are_what_the_recipes_make(folder):
    for recipe_name in ("ceramic", "wax", "flame", "bottleGlass", "crack", "emblem", "flat"):
        for name, (picture, kind) in textures.RECIPES[recipe_name]().items():
            file = (name if recipe_name == "flat" else recipe_name + name) + ".dds"
            dds.write(folder / file, picture, kind)
            assert (folder / file).read_bytes() == (TEXTURES / file).read_bytes(), f"{file} is stale: make_textures.py"


def test_every_texture_has_its_whole_mip_chain(_):
    for path in sorted(TEXTURES.glob("*.dds")):
        if path.stem.endswith("Heights"):
            continue  # read by the processor, texel by texel
        data = path.read_bytes()
        size, levels = int.from_bytes(data[12:16], "little"), int.from_bytes(data[28:32], "little")
        assert size == int.from_bytes(data[16:20], "little") == 2 ** (levels - 1), path.name
        blocks = [max(1, (size >> level) // 4) ** 2 for level in range(levels)]
        texels = [(size >> level) ** 2 for level in range(levels)]
        body = {b"DXT1": 8 * sum(blocks), b"DXT5": 16 * sum(blocks)}.get(data[84:88], 4 * sum(texels))
        assert len(data) == 128 + body, path.name


def test_textures_that_repeat_show_no_seam(_):
    for name in ("plaster", "wood", "rust", "leather", "iron"):
        size, _, texels = dds.read_first_level(TEXTURES / (name + "Diffuse.dds"))

        def step(a, b):
            """Mean difference of green between two columns, then between two rows."""
            columns = sum(abs(texels[y * size + a][1] - texels[y * size + b][1]) for y in range(size))
            rows = sum(abs(texels[a * size + x][1] - texels[b * size + x][1]) for x in range(size))
            return columns / size, rows / size

        inside = [step(i, i + 1) for i in range(3, size - 1, size // 64 * 4 or 4)]
        seam = step(size - 1, 0)
        for axis in (0, 1):
            assert seam[axis] <= 1.5 * max(value[axis] for value in inside), (name, axis, seam)


def test_every_model_and_surface_that_the_patterns_name_is_there(_):
    parts = []
    modules = sorted((ROOT / "scripts" / "objects").rglob("*.py"))
    for node in (node for path in modules for node in ast.walk(ast.parse(path.read_text(encoding="utf-8")))):
        if isinstance(node, ast.Call) and getattr(node.func, "id", "") == "thing":
            parts += [(word.arg, word.value.value) for word in node.keywords if isinstance(word.value.value, str)]
    assert len(parts) > 30
    for mesh, surface in parts:
        assert (MODELS / (mesh + ".kaVelModel")).exists(), mesh
        assert (TEXTURES / (surface + "Diffuse.dds")).exists(), surface


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", help="not needed: nothing is run but the makers")
    parser.parse_args()
    return run(globals())


if __name__ == "__main__":
    sys.exit(main())
