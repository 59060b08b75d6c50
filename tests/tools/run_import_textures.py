"""The importer's textures: which maps a material's pictures and colours become, and what it says of those it lacks."""
import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "assets"), str(ROOT / "tests" / "support")]
import dds
import png
from sources import FACES, data_uri, gltf, main, run, text_of_obj


def picture(path, *colors, size=8):
    """A PNG file of vertical stripes."""
    row = b"".join(bytes(colors[x * len(colors) // size]) for x in range(size))
    png.write(path, png.Picture(size, size, len(colors[0]), [row] * size))
    return path


def stripes(path):
    """The colours of a texture file's first row, each once, and the size of the file's levels together."""
    _, _, texels = dds.read_first_level(path)
    return list(dict.fromkeys(texels[:8])), path.stat().st_size - 128


def near(found, wanted):
    return len(found) == len(wanted) and all(abs(a - b) <= 8 for x, y in zip(found, wanted) for a, b in zip(x, y))


def textured(folder, images, material, name="chair.gltf"):
    """A file whose material names these images by their number."""
    def edit(document):
        document["images"] = [image if isinstance(image, dict) else {"uri": image} for image in images]
        document["textures"] = [{"source": i} for i in range(len(images))]
        document["materials"] = [dict(material, name="oak")]
        document["meshes"][0]["primitives"][0]["material"] = 0
    return gltf(folder, name=name, edit=edit)


def game(folder):
    """Folders as the game has them."""
    for name in ("models", "textures", "home"):
        (folder / name).mkdir()
    return folder / "models", folder / "textures", folder / "home"


def test_a_materials_pictures_become_the_maps_of_a_surface_named_like_the_model(folder):
    models, textures, home = game(folder)
    picture(home / "dark wood.png", (200, 100, 40), (40, 100, 200))
    normal = picture(home / "bumps.png", (128, 200, 220), (128, 56, 220)).read_bytes()
    (home / "bumps.png").unlink()
    picture(home / "rough.png", (0, 0, 255), (0, 255, 0))
    picture(home / "glow.png", (255, 255, 255))
    material = {"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}, "baseColorFactor": [1, 0.5, 1, 1],
                                         "metallicRoughnessTexture": {"index": 2}},
                "normalTexture": {"index": 1}, "emissiveTexture": {"index": 3}, "emissiveFactor": [0, 1, 0]}
    source = textured(home, ["dark%20wood.png", {"uri": data_uri(normal, "image/png")}, "rough.png", "glow.png"],
                      material)
    code, text = run(source, "--output", models)
    assert code == 0 and "surface 'chair'" in text and "material 'oak'" not in text, text
    assert {path.name for path in textures.iterdir()} == {
        "chairDiffuse.dds", "chairNormal.dds", "chairSpecular.dds", "chairEmissive.dds"}, text
    wanted = {"Diffuse": [(200, 50, 40), (40, 50, 200)], "Normal": [(128, 55, 220), (128, 199, 220)],
              "Specular": [(200, 50, 40), (0, 0, 0)], "Emissive": [(0, 255, 0)]}
    for kind, colors in wanted.items():
        found, size = stripes(textures / f"chair{kind}.dds")
        assert near(found, colors), (kind, found)
        assert size == 8 * (4 + 1 + 1 + 1), "four levels down to one pixel"
    run(source, "--output", models, "--flip-green")
    assert near(stripes(textures / "chairNormal.dds")[0], [(128, 200, 220), (128, 56, 220)])
    first = {path: path.read_bytes() for path in folder.rglob("*") if path.is_file()}
    run(source, "--output", models, "--flip-green")
    assert first == {path: path.read_bytes() for path in folder.rglob("*") if path.is_file()}, "a second run differs"


def test_colours_alone_make_a_surface_and_each_material_has_its_own(folder):
    models, textures, home = game(folder)
    (home / "m.mtl").write_text("newmtl red\nKd 1 0 0\nnewmtl dull\nKd 0 0 0.5\nmap_Kd C:\\art\\blue.png\n")
    picture(home / "blue.png", (0, 0, 255))
    plain = text_of_obj(faces=FACES[:2]) + "usemtl dull\n" + text_of_obj(faces=FACES[2:]).split("vt 0 1\n")[1]
    source = home / "chair.obj"
    source.write_text("mtllib m.mtl\nusemtl red\n" + plain)
    code, text = run(source, "--output", models)
    assert code == 0 and "--split makes a model for each" in text, text
    assert near(stripes(textures / "chair_redDiffuse.dds")[0], [(255, 0, 0)])
    assert near(stripes(textures / "chair_dullDiffuse.dds")[0], [(0, 0, 255)]), "the picture beside the model"
    code, text = run(source, "--output", models, "--split")
    assert code == 0 and (models / "chair_red.kaVelModel").exists() and "surface 'chair_red'" in text, text
    for path in textures.iterdir():
        path.unlink()
    assert run(source, "--output", models, "--no-textures")[0] == 0 and not list(textures.iterdir())
    assert run(source, "--output", models, "--textures", home)[0] == 0 and (home / "chair_redDiffuse.dds").exists()


def test_what_is_missing_or_left_out_is_named_and_the_model_comes_without_it(folder):
    models, textures, home = game(folder)
    (textures / "chairSpecular.dds").write_bytes(b"old")
    (home / "broken.png").write_bytes(b"\x89PNG junk")
    picture(home / "shade.png", (9, 9, 9))
    material = {"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}, "normalTexture": {"index": 1},
                "occlusionTexture": {"index": 2}, "alphaMode": "BLEND"}
    code, text = run(textured(home, ["gone.png", "broken.png", "shade.png"], material), "--output", models)
    assert code == 0 and (models / "chair.kaVelModel").exists(), text
    for words in ("picture 'gone.png' of material 'oak' is missing: There is no \"gone.png\"",
                  "picture 'broken.png' of material 'oak' is left out: not a readable",
                  "material 'oak' lets light through",
                  "picture 'shade.png' of material 'oak' is left out: surfaces have no map for its use",
                  "chairSpecular.dds was there before"):
        assert words in text, (words, text)
    os.mkfifo(home / "pipe.png")
    (home / "m.mtl").write_text("newmtl oak\nmap_Kd pipe.png\nmap_Ks ../../x.png\nmap_Bump shade.png\n")
    (home / "table.obj").write_text("mtllib m.mtl\nusemtl oak\n" + text_of_obj())
    (home / "stool.obj").write_text("mtllib none.mtl\n" + text_of_obj())
    text = run(home / "table.obj", "--output", models)[1] + run(home / "stool.obj", "--output", models)[1]
    for words in ("'pipe.png' of material 'oak' is left out: it is no plain file",
                  "it names 'none.mtl', which is missing",
                  "'../../x.png' of material 'oak' is left out: it lies outside", "has a map of heights"):
        assert words in text, (words, text)


if __name__ == "__main__":
    sys.exit(main(__doc__, globals()))
