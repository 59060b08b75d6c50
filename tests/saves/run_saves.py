"""Saves in the game: what comes back, what is refused, and what no accident takes."""
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support"), str(ROOT / "tools" / "saves")]
import game
from display import Display, Game
from rooms import Document

SAMPLES = pathlib.Path(__file__).parent

HOOK = """

_house = house


def house(map):
    _house(map)
    import steps
    clock = kaVel.make('Entity', parent=map, name='steps')  # in a stopped level, too
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=lambda: steps.doFrame(_night))
"""

STEPS = """
import kaVel
import objects.GameObjects as place
import saves
from objects.player.Life import lifeOf

FACTS = []


def fact(name, value):
    kaVel.log('FACT %s %r' % (name, value))


def said(outcome):
    fact('said', (outcome.done, outcome.waits, outcome.name, outcome.said))


RETURN, LEFT, DOWN = 0x0D, 0x25, 0x28


def press(*keys):
    def step(night):
        for key in keys:
            kaVel.getSystem('InputSystem').postKey(key, True)
            kaVel.getSystem('InputSystem').postKey(key, False)
    return step


def doFrame(night):
    frame = kaVel.getSystem('GameLoopSystem').frameNumber
    step = STEPS.get(frame)
    if step:
        step(night)
"""

#: Puts a coin into the player's pocket as soon as he can be saved.
AWAKE = """
import kaVel
from saves import Moments

told, open = [], [[]]


def doFrame(night):
    if not told and Moments.verdict(night.level).when == 'now':
        told.append(night.story.pockets.add('aCoin'))
        kaVel.log('FACT awake')
"""


def nightfall(world, steps, frames, **environment):
    """Runs Nightfall undrawn, with functions of the night at some frames; what they told, in order."""
    level = (ROOT / "scripts" / "levels" / "Nightfall.py").read_text(encoding="utf-8")
    world.write("scripts/levels/Nightfall.py", level + HOOK)
    world.write("scripts/steps.py", STEPS + steps)
    options = {"KAVEL_SAVES": str(world.folder / "saves"), "KAVEL_UNDRAWN": "1", **environment}
    outcome = world.run(level="Nightfall", frames=frames, **options)
    outcome.expect_code(0)
    assert not outcome.has("Traceback"), outcome.log[-4000:]
    facts = [line.split("FACT ", 1)[1].split(" ", 1) for line in outcome.log.splitlines() if "FACT " in line]
    return [(name, eval(value)) for name, value in facts], outcome


def test_a_game_comes_back_as_it_was(world):
    facts, _ = nightfall(world, """
def play(night):
    body = night.map.getChild('lamp').getComponent('physics')
    night.mind = night.player.getComponent('player')
    night.mind.pickupFlashlight(body)
    for name in ('battery0', 'battery1'):
        volume = night.map.getChild(name).getComponent('boundingVolume')
        volume.interactWithPlayer(night.mind)
    night.map.getChild('stairKey').getComponent('boundingVolume').interactWithPlayer(night.mind)
    kaVel.configure(night.mind, sanity=61.0, currBatteryTimeLeft=33.0)
    from objects.player.Carrying import throwBolt
    from objects.player.Hands import handsOf
    night.story.pockets.add('bolt')
    throwBolt(handsOf(night.player))
    lifeOf(night.level).hurt(25, 'a test')
    night.leaves['doorSix'].getComponent('physics').openDoor(night.player)
    night.visitor.goTo((9.2, 3.0, -0.9), 180.0, 10.0)


def tell(night):
    mind = night.player.getComponent('player')
    at, turn, pitch = night.visitor.standing()
    fact('at', [round(each, 1) for each in (*at, turn, pitch)])
    fact('mind', [round(mind.sanity), mind.getHasFlashlight(), mind.isFlashlightOn(), mind.batteries,
                  round(mind.currBatteryTimeLeft, 0)])
    fact('pockets', night.story.pockets.told())
    bolt = night.map.getChild('thrownBolt1').getComponent('transform').position
    fact('bolt', [round(bolt.x, 1), round(bolt.y, 1), round(bolt.z, 1)])
    fact('life', round(lifeOf(night.level).value))
    fact('door', round(abs(night.leaves['doorSix'].getComponent('physics').prevAngle), 2))
    fact('things', sorted(child.name for child in night.map.children
                          if child.name in ('lamp', 'battery0', 'battery1', 'stairKey', 'battery2')))


STEPS = {100: play, 260: lambda night: (tell(night), said(saves.save())), 262: lambda night: said(saves.load('game1')),
         275: tell}
""", 290)
    here = facts.index(("said", (True, False, "game1.2", "It is written down.")))
    before, after = facts[:here], facts[here + 2:]
    assert before == after and len(before) == 7, (before, after)
    assert dict(after)["pockets"]["things"] == {"stairKey": 1}, after
    assert ("mind", [70, True, True, 2, 30.0]) in after and ("things", ["battery2"]) in after, after
    assert facts[here + 1] == ("said", (True, False, "game1.2", "")), facts[here + 1]


def test_awkward_moments_are_refused_or_waited_for_and_leaving_finds_a_way(world):
    facts, _ = nightfall(world, """
def body(night):
    return night.player.getComponent('physics')


def goTo(*at):
    return lambda night: night.visitor.goTo(at, 90.0, 0.0)


def crouch(night):
    kaVel.getSystem('InputSystem').postKey(0x11, True)
    kaVel.getSystem('InputSystem').postKey(0x11, False)


def stand():
    document = saves._read(saves.listed()[0].name)
    return [round(each) for each in document['stand']['at']], document['place']


def leave(night):
    said(saves.leave())
    fact('stand', stand())


STEPS = {
    5: lambda night: said(saves.save()),                     # the picture is not there yet
    330: lambda night: fact('saved', [each.why for each in saves.listed()]),
    340: lambda night: (said(saves.save('a/b')), goTo(9.2, 3.9, 0.8)(night)),
    344: lambda night: said(saves.save()),                   # falling
    400: lambda night: fact('saved', [each.why for each in saves.listed()]),
    401: goTo(9.2, 3.0, -0.9),                               # a safe place
    430: lambda night: (fact('saved', [each.why for each in saves.listed()]), crouch(night)),
    480: goTo(19.6, 3.0, 7.7),                               # below the hatch, at a safe place
    500: leave,
    510: lambda night: crouch(night),
    511: goTo(9.2, 3.0, 0.8),
    570: lambda night: (setattr(night.story, 'chased', True), leave(night), setattr(night.story, 'chased', False)),
    575: lambda night: (said(saves.load('game1')), said(saves.save()), said(saves.load('game1'))),
    890: goTo(9.2, 3.0, 0.8),
    900: lambda night: (night.story.pockets.add('aThing'), lifeOf(night.level).hurt(200, 'a test'),
                        fact('unsaved', saves.isUnsaved()), said(saves.save()), leave(night),
                        fact('life', saves._read(saves.listed()[0].name)['parts']['life'])),
    1700: lambda night: (said(saves.save()), fact('unsaved', saves.isUnsaved())),
    1710: lambda night: (night.story.pockets.add('aKey'), fact('unsaved', saves.isUnsaved())),
    1720: lambda night: (night.safety.end(['It ends.'], ''), said(saves.save()), said(saves.leave())),
}
""", 1730)
    told = [value for _, value in facts]
    hands, ground, loading = ("As soon as you have your hands again.", "As soon as there is ground underfoot.",
                              "The way leads elsewhere just now.")
    assert told == [
        (False, True, "", hands), ["asked"],
        (False, False, "", '"a/b" is no name for a save: up to forty letters, digits, blanks, "-" and "_".'),
        (False, True, "", ground), ["asked", "asked"], ["safe", "asked", "asked"],
        (True, False, "game1.5", "It is written down."), ([20, 3, 9], "nightfall.room.linen"),
        (True, False, "game1.6", "It is written down."), ([20, 3, 9], "nightfall.room.linen"),
        (True, False, "game1.6", ""), (False, False, "", loading), (True, False, "game1.6", ""),
        True, (False, False, "", "The dead write nothing down."),
        (True, False, "game1.7", "It is written down."), ([20, 3, 9], "nightfall.room.linen"), 100.0,
        (True, False, "game1.8", "It is written down."), False, True,
        (False, False, "", "This night is over."), (False, False, "", "This night is over.")], told


def test_whoever_is_saved_with_his_hands_full_comes_back_with_them_free(world):
    facts, _ = nightfall(world, """
from objects.player.Hands import handsOf
from objects.player.Pockets import Page
from screens import Screens

USE, CHANGE = 0x45, 0x52


def hold(down):
    return lambda night: kaVel.getSystem('InputSystem').postKey(USE, down)


def saved(what):
    def step(night):
        told(what + 'Before', night)
        outcome = saves.save()
        fact(what, (outcome.done, outcome.said))
        saves.load(outcome.name)
    return step


def told(what, night):
    hands, mind = handsOf(night.player), night.player.getComponent('player')
    leaf = night.leaves['doorSix'].getComponent('physics')
    fact(what, (hands.gripping, hands.isReading(), mind.useInput, mind.isCharging(), mind.batteries,
                Screens.names(night.level), round(abs(leaf.prevAngle), 1)))


def after(what):
    return lambda night: told(what + 'After', night)


def change(down):
    return lambda night: kaVel.getSystem('InputSystem').postKey(CHANGE, down)


def beforeDoorSix(night):
    night.visitor.goTo((9.2, 3.0, 0.55), 180.0, 0.0)


def pull(night):
    handsOf(night.player).pushed[1] += 0.02


def lamp(night):
    mind = night.player.getComponent('player')
    mind.pickupFlashlight(night.map.getChild('lamp').getComponent('physics'))
    kaVel.configure(mind, batteries=2, currBatteryTimeLeft=5.0)


STEPS = {
    350: lambda night: handsOf(night.player).read(Page('A title', 'A text.')), 360: saved('reading'),
    500: after('reading'),
    710: lambda night: Screens.open(night.level, 'NoteReader', page=Page('A title', 'A text.')),
    720: saved('screen'), 960: after('screen'),
    1030: beforeDoorSix, 1040: hold(True), **{frame: pull for frame in range(1065, 1095)}, 1100: saved('door'),
    1102: hold(False), 1480: after('door'),
    1490: lamp, 1500: change(True), 1502: change(False), 1520: saved('battery'), 1660: after('battery'),
}
""", 1670)
    facts = dict(facts)
    assert all(facts[what] == (True, "It is written down.") for what in ("reading", "screen", "door", "battery")), facts
    assert facts["readingBefore"][1] and facts["screenBefore"][5] and facts["batteryBefore"][3:5] == (True, 1), facts
    assert facts["doorBefore"][0] and facts["doorBefore"][6] > 0.2, facts
    for what, batteries in (("reading", 0), ("screen", 0), ("door", 0), ("battery", 1)):
        assert facts[what + "After"] == (False, False, True, False, batteries, [], 0.0), (what, facts)


def test_a_damaged_save_is_named_with_the_one_before_and_what_cannot_be_written_is_told(world):
    folder = world.folder / "saves"
    folder.mkdir()
    good = (SAMPLES / "v4.save").read_bytes()
    for number, content in ((1, good), (2, good), (3, good[:-30])):
        (folder / f"game1.{number}.save").write_bytes(content)
    (folder / "game2.1.save").write_bytes(good.replace(b"version 4", b"version 9"))
    (folder / "game3.1.save").mkdir()
    os.mkfifo(folder / "game4.1.save")
    facts, log = nightfall(world, """
def tell(night):
    fact('newest', saves.newest().name)
    fact('before', {each.name: each.before for each in saves.listed() if each.fault})
    for name in ('game1.3', 'game2', 'game3', 'game4', 'nobody'):
        fact(name, (saves.load(name).said, saves.load(name).before))
    console = night.level.getChild('Console').getComponent('console')
    for line in ('load game1.3', 'save', 'save mine', 'load mine', 'saves'):
        console.executeCommand(line)
    fact('deleted', (saves.delete('game1.3'), saves.delete('game1.3'), saves.delete('../x')))

STEPS = {350: tell}
""", 380)
    facts = dict(facts)
    assert facts["newest"] in ("game1.1", "game1.2") and facts["deleted"] == (True, False, False)
    assert facts["before"] == {"game1.3": "game1.2", "game2.1": "", "game3.1": "", "game4.1": ""}, facts["before"]
    assert facts["game1.3"] == ("The save game1.3 cannot be read: its checksum does not fit; it was cut off or "
                                "altered.", "game1.2"), facts["game1.3"]
    assert "from a later game; this one reads up to 4" in facts["game2"][0] and not facts["game2"][1]
    assert "Is a directory" in facts["game3"][0] or "Invalid" in facts["game3"][0], facts["game3"]
    assert "cannot be read" in facts["game4"][0] and facts["nobody"][0] == 'There is no save "nobody".'
    for told in ("The one before it, game1.2, is whole.", "It is written down. mine.1", "goes on"):
        log.expect(told)


def test_the_list_of_saves_loads_and_deletes_by_keys_alone(world):
    folder = world.folder / "saves"
    folder.mkdir()
    old = (SAMPLES / "v1.save").read_bytes()
    for number, content in ((1, old), (2, old), (3, b"")):
        (folder / f"game1.{number}.save").write_bytes(content)
    facts, log = nightfall(world, """
def open(night):
    from screens import Saves, Screens
    Screens.open(night.level, 'Saves')


def goOn(night):
    from screens import Saves
    fact('pockets', sorted(night.story.pockets.things))
    Saves.goOn(night.level)


def tell(night):
    from screens import Screens
    fact('screens', Screens.names(night.level))
    fact('saves', [each.name for each in saves.listed()])


STEPS = {350: open, 355: press(RETURN), 360: press(RETURN), 365: tell, 366: press(LEFT), 370: press(RETURN), 380: tell,
         385: goOn, 390: tell, 391: press(LEFT), 394: press(RETURN), 404: open, 408: press(RETURN), 412: press(DOWN),
         416: press(RETURN), 420: press(LEFT), 424: press(RETURN), 430: tell}
""", 440)
    everything = ["game1.3", "game1.2", "game1.1"]
    assert facts == [("screens", ["Saves", "Ask"]), ("saves", everything), ("screens", []), ("saves", everything),
                     ("pockets", ["passageKey", "porterNote", "stairKey"]), ("screens", ["Ask"]), ("saves", everything),
                     ("screens", ["Saves"]), ("saves", everything[1:])], facts
    assert log.log.count("in slot game1 goes on") == 2


def test_saves_that_have_no_room_or_no_home_cost_nothing_but_a_sentence(world):
    steps = "STEPS = {350: lambda night: (said(saves.save()), fact('list', saves.listed()))}"
    (world.folder / "inTheWay").write_bytes(b"")
    for where, sentence in ((str(world.folder / "inTheWay" / "saves"), "The game is not saved: Not a directory"),
                            ("/proc/saves", "The game is not saved: "), ("", "There is no folder to keep saves in")):
        facts, _ = nightfall(world, steps, 355, KAVEL_SAVES=where)
        assert facts[0][1][:3] == (False, False, "") and facts[0][1][3].startswith(sentence), facts
        assert facts[1][1] == []
    assert not (world.folder / ".local").exists(), "a headless run keeps nothing of its own accord"


def test_on_a_disk_that_is_full_the_game_is_played_and_says_that_it_cannot_be_saved(world):
    if os.geteuid():
        print("(left out: only root can mount a small disk)")
        return
    full = world.folder / "full"
    full.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", str(full)], check=True)
    try:
        (full / "saves").mkdir()
        subprocess.run(["dd", "if=/dev/zero", f"of={full}/filling"], stderr=subprocess.DEVNULL, check=False)
        facts, _ = nightfall(world, "STEPS = {350: lambda night: said(saves.save())}", 355,
                             KAVEL_SAVES=str(full / "saves"))
        assert facts[0][1] == (False, False, "", "The game is not saved: there is no room left on the disk."), facts
        folders = {f"XDG_{kind}_HOME": str(full / kind.lower()) for kind in ("CONFIG", "STATE", "DATA")}
        with Display("640x400") as display, Game(world, display, "", **folders) as played:
            played.until_logged("The main menu stands")
            played.focus()
            played.press("Escape")
            played.press("Return")
            assert played.process.wait(60) == 0, played.log()[-2000:]
        assert not any(full.rglob("*.save*")), list(full.rglob("*"))
    finally:
        subprocess.run(["umount", str(full)], check=True)


def test_what_the_player_carries_goes_with_him_to_other_levels_and_not_into_a_new_game(world):
    world.write("scripts/levels/Cellar.py", (ROOT / "scripts" / "levels" / "Nightfall.py").read_text("utf-8") + HOOK)
    facts, _ = nightfall(world, """
def take(night):
    mind = night.player.getComponent('player')
    mind.pickupFlashlight(night.map.getChild('lamp').getComponent('physics'))
    night.map.getChild('stairKey').getComponent('boundingVolume').interactWithPlayer(mind)
    kaVel.configure(mind, batteries=3, sanity=44.0)
    go('Cellar')


def go(level):
    kaVel.getSystem('GameLoopSystem').queueLoadLevel(level)


def tell(night):
    mind = night.player.getComponent('player')
    fact(night.level.levelName, (night.story.pockets.things, mind.getHasFlashlight(), mind.batteries,
                                 round(mind.sanity), bool(night.map.getChild('lamp'))))

STEPS = {100: take, 103: lambda night: (tell(night), night.story.pockets.add('coin'), go('Nightfall')),
         106: lambda night: (tell(night), saves.begin('Nightfall')), 109: tell}
""", 112)
    assert facts == [("Cellar", ({"stairKey": 1}, True, 3, 44, True)),
                     ("Nightfall", ({"stairKey": 1, "coin": 1}, True, 3, 44, False)),
                     ("Nightfall", ({}, False, 0, 100, True))], facts


def test_saving_leaves_the_game_as_it_would_be_without(world):
    steps = """
STEPS = {350: lambda night: night.visitor.goTo((9.2, 3.0, -0.9), 90.0, 0.0), 380: lambda night: saves.save('a'),
         390: lambda night: night.visitor.goTo((9.2, 4.0, 0.8), 90.0, 0.0), 393: lambda night: saves.save('b'),
         440: lambda night: fact('saved', sorted(each.slot for each in saves.listed()))}
"""
    digests, saved = [], []
    for number, where in enumerate(("", str(world.folder / "saves"))):
        file = world.folder / f"digest{number}"
        facts, _ = nightfall(world, steps, 450, KAVEL_SAVES=where, KAVEL_DIGEST=str(file))
        digests.append(file.read_bytes())
        saved.append(facts[0][1])
    assert saved == [[], ["a", "b", "game1"]], saved
    assert digests[0] == digests[1] and len(digests[0]) > 450 * 8


def test_who_leaves_and_cannot_be_saved_is_told_and_loses_nothing_unless_he_says_so(world):
    (world.folder / "inTheWay").write_bytes(b"")
    facts, run = nightfall(world, """
from screens import Screens, Ways

def leave(night):
    Screens.open(night.level, 'Pause')
    Ways.toTitle(night.level)


def tell(night):
    asked = night.level.getDescendantByPath('ScreenAsk/box/question')
    fact('open', (Screens.names(night.level), asked.getComponent('form').text[:40] if asked else ''))


STEPS = {350: leave, 355: tell, 356: press(RETURN), 362: tell, 363: lambda night: Ways.toTitle(night.level),
         366: press(LEFT), 368: press(RETURN), 371: tell}
""", 380, KAVEL_SAVES=str(world.folder / "inTheWay" / "saves"))
    told = "The game is not saved: Not a directory. "
    assert facts == [("open", (["Pause", "Ask"], told)), ("open", (["Pause"], ""))], facts
    assert run.has("camera at Vec4(-0.8"), "the camera is not that of the title:" + run.log[-2000:]


def test_a_window_that_is_closed_on_a_game_that_cannot_be_saved_asks_before_it_goes(world):
    world.write("config/mornal/settings.txt", "windowSize = 320x180\n")
    (world.folder / "inTheWay").write_bytes(b"")
    level = (ROOT / "scripts" / "levels" / "Nightfall.py").read_text(encoding="utf-8")
    world.write("scripts/levels/Nightfall.py", level + HOOK)
    world.write("scripts/steps.py", AWAKE + """
    from screens import Screens
    now = Screens.names(night.level)
    if now != open[-1]:
        open.append(now)
        kaVel.log('FACT open %s.' % now)
""")
    data = {"XDG_DATA_HOME": str(world.folder / "inTheWay")}
    with Display("640x400") as display, Game(world, display, "Nightfall", **data) as played:
        played.until_logged("FACT awake")
        played.focus()
        played.process.terminate()
        played.until_logged("FACT open ['Ask'].")
        played.press("Escape")
        played.until_logged("FACT open [].")
        assert played.process.poll() is None


def test_who_closes_the_window_continues_from_the_title_where_he_was(world):
    world.write("config/mornal/settings.txt", "windowSize = 320x180\n")
    saved = world.folder / "data" / "mornal" / "saves"
    level = (ROOT / "scripts" / "levels" / "Nightfall.py").read_text(encoding="utf-8")
    world.write("scripts/levels/Nightfall.py", level + HOOK)
    world.write("scripts/steps.py", AWAKE)
    with Display("640x400") as display:
        with Game(world, display, "Nightfall", XDG_DATA_HOME=str(world.folder / "data")) as played:
            played.until_logged("FACT awake")
            played.focus()
            played.press("Escape")
            played.until(lambda: (saved / "moment.png").exists(), "a picture for whoever leaves")
            assert played.quit() == 0, played.log()[-2000:]
        assert sorted(file.name for file in saved.iterdir()) == ["game1.1.png", "game1.1.save"]
        document = Document.read((saved / "game1.1.save").read_bytes())
        assert document["why"] == "leaving" and document["parts"]["pockets"]["things"] == {"aCoin": 1}
        assert (saved / "game1.1.png").read_bytes().startswith(b"\x89PNG")
        with Game(world, display, "Title", XDG_DATA_HOME=str(world.folder / "data")) as played:
            played.focus()
            played.until(lambda: played.press("Return") or "in slot game1 goes on" in played.log(), "the game goes on")
            assert played.quit() == 0, played.log()[-2000:]


def test_nightfall_is_won_by_one_who_loads_at_every_safe_place(world):
    world.write("scripts/courses/loading.py", """
from courses import nightfallWins

LEVEL, SEED = 'Nightfall', 1


def play(driver):
    import saves
    known = set()
    for _ in nightfallWins.play(driver):
        new = set(saves.folder().names()) - known
        known |= new
        if new:
            yield from loadAndGoOn(driver, str(max(new, key=lambda name: name.serial)))
        yield


def loadAndGoOn(driver, name):
    import kaVel
    import saves
    held, before = sorted(driver.held), driver.coordinator
    crouched = before.getChild('Player').getComponent('player').isCrouched()
    for action in held:
        yield from driver.release(action)
    kaVel.log('FACT loaded %r' % [saves.find(name).place, saves.load(name).done])
    while driver.coordinator == before:
        yield
    yield from driver.wait(1.0)
    if crouched:
        yield from driver.tap('crouch')
        yield from driver.wait(0.6)
    for action in held:
        yield from driver.press(action)
""")
    outcome = world.run(level="Nightfall", frames=60000, KAVEL_SAVES=str(world.folder / "saves"), KAVEL_UNDRAWN="1",
                        KAVEL_COURSE="loading", KAVEL_SIZE="640x360")
    outcome.expect("The level is won")
    loaded = [line.split("'")[1] for line in outcome.log.splitlines() if "FACT loaded" in line and "True]" in line]
    assert [place.rpartition(".")[2] for place in loaded] == [
        "corridor", "seven", "six", "passage", "two", "sewing", "linen", "landing", "service"], loaded


if __name__ == "__main__":
    game.main(dict(globals()))
