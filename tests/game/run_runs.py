"""How runs end: in time whatever a level does, and with an exit code that says whether they did what was asked."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import png


def test_no_level_keeps_a_run_from_its_last_frame_and_picture(world):
    for name, body in (("MurderedManager", "coordinator.getManager('cursor').murder()"),
                       ("ToTheLoadingScreen", "kaVel.getSystem('GameLoopSystem').queueLoadLevel('LoadingScreen')")):
        world.write_level(name, body)
        run = world.run(level=name, frames=3, screenshot=f"{name}.png")
        run.expect_code(0)
        run.expect("After 3 frames")
        assert png.read(world.folder / f"{name}.png").width > 0


def test_a_view_that_fails_ends_the_run_with_1(world):
    for shown in ("lambda: nowhere", "None", "lambda: kaVel.send('NoSuchMessage')"):
        world.write("scripts/levels/Viewed.py", "import kaVel\ndef build(coordinator):\n    pass\n"
                                                f"def views():\n    return [('fine', lambda: None), ('bad', {shown})]\n")
        run = world.run(level="Viewed", frames=8)
        run.expect_code(1)
        assert not run.has("After 8 frames"), "it ends where it failed"


def test_a_path_that_is_no_text_ends_the_run_with_1(world):
    world.run(frames=3, KAVEL_SCREENSHOT=b"room\xff.png").expect_code(1)


if __name__ == "__main__":
    game.main(dict(globals()))
