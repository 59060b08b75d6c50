"""How runs end: in time whatever a level does, and with an exit code that says whether they did what was asked."""
import os
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


def difference(one, other):
    """Of two pictures of one size, in levels of 255 on the average."""
    return sum(abs(a - b) for row, like in zip(one.rows, other.rows)
               for a, b in zip(row, like)) / sum(map(len, one.rows))


def test_shots_show_their_frames_in_a_run_that_draws_no_others(world):
    run = world.run(frames=40, screenshot="room.png", KAVEL_SHOTS="12,30", KAVEL_UNDRAWN="1", KAVEL_SIZE="160x90")
    run.expect_code(0)
    assert not (world.folder / "room.png").exists(), "the last frame is none of them"
    world.run(frames=30, screenshot="drawn.png", KAVEL_SIZE="160x90").expect_code(0)
    drawn = png.read(world.folder / "drawn.png")
    first, second = (difference(png.read(world.folder / f"room-{frame}.png"), drawn) for frame in (12, 30))
    # What is remembered of pictures before is not the same to the bit.
    assert second < 0.05 < first, f"{second}, {first}: each as its own frame is where all are drawn"
    world.run(KAVEL_SHOTS="12,,30", KAVEL_VERBOSE="1").expect("like 60,120")


def test_a_view_that_fails_ends_the_run_with_1(world):
    for shown in ("lambda: nowhere", "None", "lambda: kaVel.send('NoSuchMessage')"):
        world.write("scripts/levels/Viewed.py",
                    "import kaVel\ndef build(coordinator):\n    pass\n"
                    f"def views():\n    return [('fine', lambda: None), ('bad', {shown})]\n")
        run = world.run(level="Viewed", frames=8)
        run.expect_code(1)
        assert not run.has("After 8 frames"), "it ends where it failed"


def test_a_path_that_is_no_text_ends_the_run_with_1(world):
    world.run(frames=3, KAVEL_SCREENSHOT=b"room\xff.png").expect_code(1)


def test_a_picture_that_does_not_fit_on_the_disk_ends_the_run_with_1_and_leaves_the_old_one(world):
    world.write("room.png", "the old one")
    run = world.run(frames=2, screenshot="room.png", largest_file=20000)
    run.expect_code(1)
    run.expect("room.png could not be written: File too large")
    assert (world.folder / "room.png").read_text() == "the old one"
    assert not list(world.folder.glob("room.png?*")), "the piece that was written is gone"


def test_a_picture_replaces_no_device(world):
    run = world.run(frames=2, KAVEL_SCREENSHOT="/dev/full")
    run.expect_code(1)
    run.expect("/dev/full cannot be written")
    assert pathlib.Path("/dev/full").is_char_device()


def test_a_recording_that_cannot_be_written_ends_the_run_with_1(world):
    for recording, limit, reason in (("/no_such_folder/input.txt", None, "No such file or directory"),
                                     ("/dev/full", None, "It is no ordinary file"),
                                     (str(world.folder / "input.txt"), 10, "File too large")):
        run = world.run(frames=100000, largest_file=limit, KAVEL_RECORD=recording)
        run.expect_code(1)
        run.expect(f"The input cannot be recorded in {recording}: {reason}.")


def test_a_recorded_run_is_played_back_in_the_run_that_it_belongs_to_and_in_no_other(world):
    recording = str(world.folder / "input.txt")
    world.run(frames=3, KAVEL_RECORD=recording).expect_code(0)
    assert (world.folder / "input.txt").read_text().splitlines() == [
        "input 2", "level FirstRoom", "seed 1", "window 1280 720", "clock 4096", "1 time 68", "4 end"]
    world.run(frames=3, KAVEL_REPLAY=recording).expect_code(0)
    for line, problem, other in ((2, 'the level "FirstRoom", and this is "LoadingScreen"', {"level": "LoadingScreen"}),
                                 (3, "a run of seed 1, and this one has 7", {"KAVEL_SEED": "7"}),
                                 (4, "a window of 1280x720, and this one is 64x36", {"KAVEL_SIZE": "64x36"})):
        run = world.run(frames=100000, KAVEL_REPLAY=recording, **other)
        run.expect_code(1)
        run.expect(f"input.txt({line}): Error: The recorded input is not played: it belongs to {problem}")


def test_a_replay_waits_for_no_pipe(world):
    os.mkfifo(world.folder / "input.txt")
    run = world.run(frames=100000, KAVEL_REPLAY=str(world.folder / "input.txt"))
    run.expect_code(1)
    run.expect("input.txt cannot be read: It is no ordinary file.")


if __name__ == "__main__":
    game.main(dict(globals()))
