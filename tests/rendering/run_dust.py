"""Dust as it is seen in pictures of several sizes."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden
import png

CLOUD = """
import objects.GameObjects as place
coordinator.getManager('graphics2').sceneAmbient = 0.0
place.FreeCamera(coordinator, 'camera', at=(0, 0, -5))
place.SphereLight(coordinator, 'lamp', at=(0, 0, 0), strength=1, reach=12)
place.Dust(coordinator, 'dust', at=(0, 0, 0), size=(6, 4, 6), count=3000, mote=0.012, drift=0.0)
"""


def test_dust_gives_the_same_share_of_light_in_a_picture_of_any_size(world):
    world.write_level("Cloud", CLOUD)
    shares = {}
    for size in ((240, 135), (640, 360), (1280, 720), (1920, 1080)):
        picture = png.read(golden.draw(world, "Cloud", frames=3, size=size))
        shares[size] = sum(map(sum, picture.rows)) / (size[0] * size[1])
    usual = shares[1280, 720]
    assert usual > 0.5 and all(abs(share - usual) < 0.2 * usual for share in shares.values()), shares


if __name__ == "__main__":
    game.main(dict(globals()))
