"""Golden pictures: what the comparison lets pass and what it does not."""
import pathlib
import sys
import tempfile
import unittest.mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden
import png

WIDTH, HEIGHT = 60, 40


def picture(value):
    """A picture of one grey, or of what a function of x and y says."""
    shade = value if callable(value) else lambda x, y: value
    rows = [bytes(channel for x in range(WIDTH) for channel in [shade(x, y)] * 3) for y in range(HEIGHT)]
    return png.Picture(WIDTH, HEIGHT, 3, rows)


def problem(kept, found):
    return golden.compare(kept, found, golden.WORST_BLOCK, golden.WHOLE_PICTURE)


def test_noise_passes_and_a_moved_thing_or_another_light_does_not(_):
    grey = picture(100)
    assert not problem(grey, grey)
    assert not problem(grey, picture(lambda x, y: 97 + (x + y) % 2 * 6)), "means are compared, not pixels"
    spot = picture(lambda x, y: 160 if x // 5 == 4 and y // 5 == 3 else 100)
    moved = picture(lambda x, y: 160 if x // 5 == 9 and y // 5 == 3 else 100)
    assert "pixels at" in problem(spot, moved)
    assert "on average" in problem(grey, picture(102)), "a faint change everywhere is one"


def test_a_differing_picture_is_left_to_be_looked_at_and_can_be_accepted(_):
    with tempfile.TemporaryDirectory() as folder, \
            unittest.mock.patch.multiple(golden, KEPT=pathlib.Path(folder) / "kept",
                                         FOUND=pathlib.Path(folder) / "found"):
        shot = pathlib.Path(folder) / "shot.png"
        png.write(shot, picture(lambda x, y: (x * 4 + y) % 256))
        for expected in ("no picture to compare", "of 255 off"):
            try:
                golden.expect("room", shot)
                raise RuntimeError("it should have failed")
            except AssertionError as failure:
                assert expected in str(failure) and "accept room" in str(failure), failure
            golden.accept(["room"])
            golden.expect("room", shot)
            assert not list(golden.FOUND.iterdir())
            png.write(shot, picture(30))


def test_the_first_room_looks_as_it_did(world):
    golden.expect("first_room", golden.draw(world, "FirstRoom", frames=20))


if __name__ == "__main__":
    game.main(dict(globals()))
