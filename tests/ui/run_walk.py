"""A person at the game: a real window is walked by mouse, by keys and by a pad, from the title into the night, to the
pause, and back out; and what stops when."""
import pathlib
import re
import shutil
import sys
import time

for folder in ("support", "gameplay"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / folder))
import game
from display import Display, Game
from run_player import play
from virtual_pad import VirtualPad

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
                kaVel.log('at: %s %s %d %d %d %d' % (screen.name, part.parent.name, at.x, at.y, at.z, at.w))
        kaVel.log('ready: %s.' % screen.name)
    focus = screen.component.focus
    now = '%s/%s' % (screen.name, focus.parent.name) if focus else ''
    if self.ticks >= 6 and now != getattr(self, 'focusTold', ''):
        self.focusTold = now
        kaVel.log('focus: %s.' % now)


_show = kit._Tabs.show


def _toldShow(self, number):
    _show(self, number)
    kaVel.log('page: %d.' % number)


Stack.settle, Stack.followWords, kit._Tabs.show = _toldSettle, _toldFollow, _toldShow
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
    """Somebody at the window, by keys, who waits for what he sees."""

    def __init__(self, played, hands=None):
        self.played = played
        self.read = 0
        self.inputs = 0

    def sees(self, text):
        """Waits for a line that was not there yet when the last one was seen."""
        found = self.played.until(lambda: self.played.log().find(text, self.read) + 1, repr(text))
        self.read = found - 1 + len(text)

    def at(self, screen):
        self.sees("ready: %s." % screen)

    def inGame(self):
        self.sees("screens: .")
        time.sleep(0.5)

    def press(self, *keys):
        for key in keys:
            self.inputs += 1
            self.played.press(key)

    def focus(self):
        told = re.findall(r"focus: (.*)\.", self.played.log())
        return told[-1] if told else ""

    def walkTo(self, screen, name):
        """Goes down until a widget has the focus."""
        for _ in range(40):
            before = self.focus()
            if before == f"{screen}/{name}":
                return
            self.press("Down")
            until = time.monotonic() + 5
            while self.focus() == before and time.monotonic() < until:
                time.sleep(0.03)
        raise AssertionError(f"the focus never comes to {name}: {self.focus()}\n{self.played.log()[-1500:]}")

    def use(self, screen, name):
        """Presses a button of a screen."""
        self.walkTo(screen, name)
        self.press("Return")

    def leave(self, screen, name):
        """Goes back from a screen, which has this button for it."""
        self.press("Escape")

    def choose(self, screen, name):
        """Takes the next one of a choice."""
        self.walkTo(screen, name)
        self.press("Right")

    def tab(self, screen, number):
        """Turns to the next page."""
        self.press("Next")

    def pause(self):
        self.press("Escape")

    def readsWhatLiesBefore(self):
        self.press("e")


class PersonWithPad(Person):
    """One who has a pad and nothing else."""

    NAMES = {"Down": "Down", "Right": "Right", "Return": "A", "Escape": "B", "Next": "RightShoulder"}

    def __init__(self, played, hands):
        super().__init__(played)
        self.hands = hands

    def press(self, *keys):
        for key in keys:
            self.inputs += 1
            self.hands.press(self.NAMES.get(key, key))

    def pause(self):
        self.press("Start")

    def readsWhatLiesBefore(self):
        self.press("A")


class PersonWithMouse(Person):
    """One who points at what he wants; the pause alone has no place to point at."""

    def use(self, screen, name):
        self.click(screen, name, 0.25)

    leave = use

    def choose(self, screen, name):
        self.click(screen, name, 0.97)

    def tab(self, screen, number):
        self.click(screen, f"tab{number}", 0.5)

    def click(self, screen, name, across):
        place = re.findall(rf"at: {screen} {name} (-?\d+) (-?\d+) (\d+) (\d+)", self.played.log())[-1]
        left, top, width, height = map(int, place)
        tool = self.played.display.tool
        self.inputs += 1
        tool("mousemove", "--window", self.played.window, round(left + width * across), top + height // 2)
        time.sleep(0.3)
        tool("click", 1)

    def readsWhatLiesBefore(self):
        self.inputs += 1
        self.played.display.tool("click", 1)


#: Where a new game begins: a note before the eyes, and somebody who dies when a file says so.
DEN = """
import os

import kaVel
import objects.GameObjects as place
from objects.player.Hands import handsOf
from objects.player.Life import lifeOf
from objects.player.Safety import Safety
from objects.sound.Music import Music


def build(coordinator):
    map = coordinator.loadMap('den')
    player = place.Player(coordinator, at=(0, 0, 0))
    place.Hud(coordinator)
    Safety(coordinator, player, Music(coordinator))
    seen = []

    def look():
        hands = handsOf(player)
        now = 'reads' if hands.isReading() else 'stands' if player.getComponent('player').interactor else 'away'
        if seen[-1:] != [now]:
            seen.append(now)
            kaVel.log('den: %s.' % now)
        if os.path.exists(FATAL):
            os.unlink(FATAL)
            lifeOf(coordinator).hurt(200, 'A test.')

    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'menu', 'ScriptComponent', frameCallback=look)


def den(map):
    place.PartitioningGrid(map, size=(12, 0, 12))
    place.Box(map, 'floor', at=(0, -0.5, 0), size=(8, 0.5, 8), surface='boards')
    place.Block(map, 'ground', at=(0, -0.5, 0), size=(8, 0.5, 8))
    place.SphereLight(map, 'light', at=(0, 2, 0), strength=0.4, reach=6)
    place.Note(map, 'letter', at=(0, 1.64, 1.0), title='14 January', text='Nineteen chairs.')
"""


def walkEverywhere(world, kind, hands=None, **environment):
    """Goes from the title through every screen that there is, into a game, to a death, and out; what was walked."""
    prepared(world)
    shutil.copytree(game.ROOT / "examples", world.folder / "data/mornal/mods")
    fatal = world.folder / "dies"
    world.write("scripts/levels/FirstRoom.py", f"FATAL = {str(fatal)!r}\n{DEN}")
    with Display("800x600") as display, Game(world, display, "", XDG_DATA_HOME=str(world.folder / "data"),
                                             **environment) as played:
        person = kind(played, hands)
        played.focus()
        person.at("Main")
        for screen, back in (("Credits", "back"), ("Mods", "back")):
            person.use("Main", screen.lower())
            person.at(screen)
            person.leave(screen, back)
            person.at("Main")
        walkOptions(person)

        person.use("Main", "newGame")
        person.sees("den: stands.")
        person.readsWhatLiesBefore()
        person.sees("den: reads.")
        time.sleep(0.5)
        person.readsWhatLiesBefore()
        person.sees("den: away.")
        person.pause()
        person.at("Pause")
        person.use("Pause", "Notebook")
        person.at("Notebook")
        person.use("Notebook", "note0")
        person.at("NoteReader")
        person.leave("NoteReader", "back")
        person.at("Notebook")
        person.leave("Notebook", "back")
        person.at("Pause")
        person.use("Pause", "Map")
        person.at("Map")
        person.leave("Map", "back")
        person.at("Pause")
        person.use("Pause", "resume")
        person.inGame()
        fatal.write_text("")
        person.at("Death")
        person.use("Death", "safe")
        person.inGame()
        person.pause()
        person.at("Pause")
        person.use("Pause", "title_")

        person.at("Main")
        person.use("Main", "load")
        person.at("Saves")
        person.use("Saves", "save0")
        person.sees("focus: Saves/load.")
        person.use("Saves", "delete")
        person.at("Ask")
        person.use("Ask", "no")
        person.at("Saves")
        person.leave("Saves", "back")
        person.at("Main")
        person.use("Main", "continue")
        person.sees("in slot game1 goes on")
        person.sees("den: away.")
        person.pause()
        person.at("Pause")
        person.use("Pause", "quit")
        assert played.process.wait(60) == 0, played.log()[-2000:]
        log = played.log()
    assert "Error:" not in log and "Traceback" not in log, log[-3000:]
    walked = set(re.findall(r"ready: (\w+)\.", log))
    print(f"{person.inputs} inputs, {len(walked)} screens: {' '.join(sorted(walked))}")
    known = {file.stem for file in (game.ROOT / "scripts/screens").glob("*.py")
             if "\ndef build(menu" in file.read_text(encoding="utf-8") and file.stem not in ("Kit", "Screens")}
    assert walked == known, known - walked


def walkOptions(person):
    """All pages of the options, with what they open; a key is bound, a mode tried and given up."""
    person.use("Main", "options")
    person.at("Options")
    person.use("Options", "measure")
    person.at("Measure")
    person.leave("Measure", "done")
    person.at("Options")
    person.use("Options", "calibrate")
    person.at("Calibration")
    person.leave("Calibration", "back")
    person.at("Options")
    person.choose("Options", "windowMode")
    person.at("KeepMode")
    person.leave("KeepMode", "back")
    person.at("Options")
    for number in range(1, 6):
        person.tab("Options", number)
        person.sees(f"page: {number}.")
    person.leave("Options", "back")
    person.at("Main")


def test_every_screen_is_walked_by_keys_alone(world):
    walkEverywhere(world, Person)


def test_every_screen_is_walked_by_mouse_alone(world):
    walkEverywhere(world, PersonWithMouse)


def test_every_screen_is_walked_by_pad_alone(world):
    pad = VirtualPad(world.folder)
    walkEverywhere(world, PersonWithPad, pad, **pad.environment)


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
