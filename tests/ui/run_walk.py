"""A person at the game: a real window is walked by mouse, by keys and by a pad, from the title into the night, to the
pause, and back out; and what stops when."""
import pathlib
import re
import sys
import time

for folder in ("support", "gameplay"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / folder))
import game
from display import Display, Game
from run_player import play

#: Logs the open screens whenever they are others, and where each widget of the topmost one stands.
TOLD = '''

_settle, _follow = Stack.settle, Stack.followWords


def _toldSettle(self):
    _settle(self)
    self.ticks = 0
    kaVel.log('screens: %s.' % ' '.join(screen.name for screen in self.screens))


def _toldFollow(self):
    _follow(self)
    if not self.screens:
        return
    self.ticks = getattr(self, 'ticks', 0) + 1
    screen = self.screens[-1]
    if self.ticks == 6:
        for part in kaVel.descendants(screen.menu):
            if part.getName() == 'button':
                at = part.placePixels
                kaVel.log('at: %s %s %d %d' % (screen.name, part.parent.name, at.x + at.z / 4, at.y + at.w / 2))
        kaVel.log('ready: %s.' % screen.name)
    focus = screen.component.focus
    now = '%s/%s' % (screen.name, focus.parent.name) if focus else ''
    if self.ticks >= 6 and now != getattr(self, 'focusTold', ''):
        self.focusTold = now
        kaVel.log('focus: %s.' % now)


Stack.settle, Stack.followWords = _toldSettle, _toldFollow
'''
SMALL = "windowSize = 640x360\nrenderScale = 0.5\n"


def prepared(world):
    with open(world.folder / "scripts/screens/Screens.py", "a", encoding="utf-8") as file:
        file.write(TOLD)
    ways = world.folder / "scripts/screens/Ways.py"
    text = ways.read_text(encoding="utf-8")
    assert "FIRST, TITLE, DAWN = 'Nightfall'" in text
    ways.write_text(text.replace("FIRST, TITLE, DAWN = 'Nightfall'", "FIRST, TITLE, DAWN = 'FirstRoom'"),
                    encoding="utf-8")
    world.write("config/mornal/settings.txt", SMALL)
    return world


class Person:
    """Somebody at the window, who waits for what he sees."""

    def __init__(self, played):
        self.played = played
        self.read = 0

    def sees(self, text):
        """Waits for a line that was not there yet when the last one was seen."""
        found = self.played.until(lambda: self.played.log().find(text, self.read) + 1, repr(text))
        self.read = found - 1 + len(text)

    def at(self, screen):
        self.sees("ready: %s." % screen)

    def press(self, *keys):
        for key in keys:
            self.played.press(key)

    def walkTo(self, screen, name):
        """Goes down until a widget has the focus."""
        for _ in range(12):
            told = re.findall(r"focus: (.*)\.", self.played.log())
            if told and told[-1] == f"{screen}/{name}":
                return
            self.press("Down")
            time.sleep(0.25)
        raise AssertionError(f"the focus never comes to {name}: {told[-8:]}")

    def click(self, screen, name):
        """Moves the pointer onto a widget and presses its button."""
        x, y = re.findall(rf"at: {screen} {name} (-?\d+) (-?\d+)", self.played.log())[-1]
        tool = self.played.display.tool
        tool("mousemove", "--window", self.played.window, x, y)
        time.sleep(0.3)
        tool("click", 1)


def test_the_game_is_walked_by_keys_from_the_title_to_the_pause_and_out(world):
    prepared(world)
    with Display("800x600") as display, Game(world, display, "") as played:
        person = Person(played)
        played.focus()
        person.at("Main")
        person.walkTo("Main", "credits")
        person.press("Return")
        person.at("Credits")
        person.press("Escape")
        person.at("Main")
        person.walkTo("Main", "newGame")
        person.press("Return")
        played.until(lambda: "'FirstRoom'" not in played.log() and played.log().count("screens:") >= 3, "the level")
        time.sleep(4)
        person.press("Escape")
        person.at("Pause")
        person.press("Escape")
        person.sees("screens: .")
        time.sleep(0.5)
        person.press("Escape")
        person.at("Pause")
        person.walkTo("Pause", "title_")
        person.press("Return")
        person.at("Main")
        assert played.log().count("screens: Main.") >= 3 and "Error:" not in played.log(), played.log()[-3000:]
        person.press("Escape")
        person.sees("focus: Main/quit.")
        person.press("Return")
        assert played.process.wait(60) == 0, played.log()[-2000:]


def test_the_game_is_walked_by_mouse_alone(world):
    prepared(world)
    with Display("800x600") as display, Game(world, display, "") as played:
        person = Person(played)
        played.focus()
        person.at("Main")
        person.click("Main", "credits")
        person.at("Credits")
        person.click("Credits", "back")
        person.at("Main")
        person.click("Main", "newGame")
        time.sleep(6)
        person.press("Escape")
        person.at("Pause")
        person.click("Pause", "resume")
        person.sees("screens: .")
        time.sleep(0.5)
        person.press("Escape")
        person.at("Pause")
        person.click("Pause", "quit")
        assert played.process.wait(60) == 0, played.log()[-2000:]


def test_losing_the_focus_pauses_with_the_screen_up_and_the_world_waits_until_it_is_resumed(world):
    prepared(world)
    world.write("scripts/levels/Watched.py", """
import kaVel
from levels import FirstRoom
from levels.FirstRoom import villa


def build(coordinator):
    FirstRoom.build(coordinator)
    entity = kaVel.make('Entity', parent=coordinator, name='watcher')
    clock, loop = coordinator.getTimerHandle('master'), kaVel.getSystem('GameLoopSystem')

    def look():
        if loop.frameNumber % 5 == 0:
            kaVel.log('clock %d loop %d frame %d end' % (clock.value // 1000, coordinator.loopState, loop.frameNumber))

    kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=look)
""")
    with Display("800x600") as display, Game(world, display, "Watched") as played:
        person = Person(played)
        played.until_logged("loop 3")
        played.focus()
        display.tool("windowfocus", display.tool("search", "--maxdepth", 0, "--name", ""))
        person.at("Pause")
        played.focus()
        time.sleep(0.5)
        stood = set(re.findall(r"clock (\d+) loop 1", played.log()))
        assert len(stood) == 1, re.findall(r"clock.*|screens.*", played.log())[-30:]
        person.press("Return")
        person.sees("screens: .")
        person.sees("loop 3")


PAD = """
import objects.GameObjects as place
place.Player(coordinator, at=(0, 0, 0))
entity = kaVel.make('Entity', parent=coordinator, name='watcher')
loop = kaVel.getSystem('GameLoopSystem')
kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=lambda: kaVel.log(
    'frame %d loop %d' % (loop.frameNumber, coordinator.loopState)))
"""


def test_a_pad_pauses_walks_and_resumes(world):
    prepared(world)
    world.write_level("Room", PAD)
    window = (64, 36)
    start, a, b, down = "0x10", "0x1000", "0x2000", "0x2"
    presses = ((20, start), (60, down), (80, down), (120, b), (160, start), (200, a))
    events = sorted([(frame, f"pad 0 {bits} 0 0 0 0 0 0") for frame, bits in presses]
                    + [(frame + 4, "pad 0 0 0 0 0 0 0 0") for frame, _ in presses])
    run = play(world, events, 240, window=window)
    stopped = [int(frame) for frame in re.findall(r"frame (\d+) loop 1", run.log)]
    assert any(25 < frame < 118 for frame in stopped) and any(165 < frame < 198 for frame in stopped), stopped
    assert not [frame for frame in stopped if 126 < frame < 158 or frame > 206], stopped
    assert run.log.count("focus: Pause/") >= 4, run.log[-1500:]


if __name__ == "__main__":
    game.main(dict(globals()))
