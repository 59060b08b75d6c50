"""Surfaces and pictures by name: what stands in the texture folder is found, and an unknown one is told."""
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "support"))
import game
import png
import sources

SCENE = """
import objects.GameObjects as place
place.Camera(coordinator, 'camera', at=(0, 0, -3))
"""


def color(path, *rgb, size=16):
    png.write(path, png.Picture(size, size, 3, [bytes(rgb) * size] * size))


def run(world, body):
    world.write_level("Shown", SCENE + body)
    return world.run("Shown", screenshot="shown.png", KAVEL_SIZE="160x120")


def shown(world, body):
    """The colour in the middle of the picture of a level of these lines."""
    run(world, body).expect_code(0)
    picture = png.read(world.folder / "shown.png")
    middle = picture.rows[picture.height // 2][picture.width // 2 * picture.step:][:3]
    return tuple(middle)


def test_a_name_without_extension_is_the_dds_file_before_the_png_file(world):
    textures = world.folder / "assets" / "textures"
    color(textures / "mark.png", 0, 255, 0)
    screen = "place.Picture(coordinator, 'mark', picture=%r, size=(2, 2))"
    assert shown(world, screen % "mark") == (0, 255, 0)
    (textures / "mark.dds").write_bytes((textures / "white.dds").read_bytes())
    assert shown(world, screen % "mark") == (255, 255, 255)
    assert shown(world, screen % "mark.png") == (0, 255, 0)
    run(world, screen % "emblen").expect("no texture 'emblen'; did you mean 'emblem'?")


def test_an_imported_model_wears_its_pictures_and_no_script_is_edited(world):
    assets, home = world.folder / "assets", world.folder / "home"
    home.mkdir()
    color(home / "glow.png", 0, 0, 255)
    (home / "m.mtl").write_text("newmtl lamp\nKd 0 0 0\nmap_Ke glow.png\n")
    (home / "beacon.obj").write_text("mtllib m.mtl\nusemtl lamp\n" + sources.text_of_obj(
        [(9 * x + 3, 9 * y - 3, z) for x, y, z in sources.POINTS]))
    importer = world.build / "kaVelImport"
    subprocess.run([str(importer), "--output", str(assets / "models"), str(home / "beacon.obj")], check=True,
                   stdout=subprocess.DEVNULL)
    red, _, blue = shown(world, "place.thing(beacon='beacon')(coordinator, 'lamp')")
    assert blue > 100 > red, (red, blue)
    misspelt = run(world, "place.thing(beacon='beakon')(coordinator, 'lamp')")
    misspelt.expect("no surface 'beakon'; did you mean 'beacon'?")


if __name__ == "__main__":
    game.main(globals())
