"""What a player sets and binds: in force at once, kept, and nothing that becomes of its files stops a game."""
import os
import pathlib
import subprocess
import sys

TESTS = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "gameplay")]
import game
from display import Display, Game
from run_player import ROOM, play

#: A level with a player that takes the steps of a test, each in its frame.
PLAYED = ROOM + """
import bindings
import settings

STEPS = {}


def at(frame):
    def note(function):
        STEPS[frame] = function
    return note


def look(level, player):
    kaVel.getSystem('SoundSystem')
    if frameNumber() in STEPS:
        STEPS[frameNumber()](level, player)


def press(key, down=True):
    system = kaVel.getSystem('InputSystem')
    (system.keyDown if down else system.keyUp)(key)

"""

SETS = """
import settings
settings.set('gamma', 1.5)
kaVel.log('gamma is %s, trouble: %s' % (settings.get('gamma'), settings.trouble()))
"""


def config(world):
    return world.folder / "config" / "mornal"


def run_seen(world, level, **environment):
    """A few frames of a game that somebody might watch, with settings of his."""
    with Display("640x360") as display:
        return world.run(level=level, frames=3, DISPLAY=display.name, KAVEL_HEADLESS="", **environment)


def test_no_state_of_the_file_stops_the_game_and_each_is_told(world):
    world.write_level("Sets", SETS)
    path = config(world) / "settings.txt"

    def play(content, told):
        if content is not None:
            world.write("config/mornal/settings.txt", content)
        run = run_seen(world, "Sets")
        run.expect_code(0)
        run.expect("gamma is 1.5")
        for text in told:
            run.expect(text)
        return run

    play("version = 99\nframeLimit = nan\nrenderScale = inf\nshadowQuality = raytraced\ngamm", [
        "settings.txt:2: frameLimit is 'nan', but has to be", "renderScale is 'inf'", "shadowQuality is 'raytraced'"])
    assert path.read_text() == ("version = 99\nframeLimit = nan\nrenderScale = inf\nshadowQuality = raytraced\ngamm\n"
                                "gamma = 1.5\n"), path.read_text()
    junk = os.urandom(1 << 20)
    play(junk, ["stands aside"])
    assert (config(world) / "settings.txt.broken").read_bytes() == junk
    os.unlink(path)
    os.mkfifo(path)  # whoever opens it waits for ever
    play(None, ["stands aside"])
    for each in config(world).iterdir():
        each.unlink()
    config(world).rmdir()
    config(world).write_text("a file in the place of the folder")
    play(None, ["cannot be written"])


def test_without_a_home_or_room_on_the_disk_a_setting_holds_for_this_game(world):
    world.write_level("Sets", SETS)
    full = "# kept from better times, and longer than what the disk has room for\nvsync = on\n"
    world.write("config/mornal/settings.txt", full)
    run = run_seen(world, "Sets", largest_file=len(full) - 1)
    run.expect("settings.txt cannot be written: File too large. gamma holds for this game only.")
    run.expect("gamma is 1.5")
    assert [each.read_text() for each in config(world).iterdir()] == [full], "nothing else is left"

    nobody = run_seen(world, "Sets", HOME="/nowhere/at/all", XDG_CONFIG_HOME="/proc/nowhere", XDG_STATE_HOME="relative")
    nobody.expect("cannot be written")
    nobody.expect("gamma is 1.5")


def test_two_games_on_one_folder_keep_each_others_settings(world):
    world.write_level("Sets", """
import os
import settings
names = ['mouseSensitivityX', 'viewBob', 'mindGrain'] if os.environ['WHO'] == 'one' else ['gamma', 'musicVolume']
for turn in range(40):
    for name in names:
        settings.set(name, 1)
for name in names:
    settings.set(name, 0.5 if name != 'gamma' else 2.5)
""")
    with Display("640x360") as display:
        games = [subprocess.Popen([str(world.executable)], cwd=world.folder / "bin", stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL,
                                  env=world.variables("Sets", 2, DISPLAY=display.name, KAVEL_HEADLESS="", WHO=who))
                 for who in ("one", "other")]
        assert [each.wait(600) for each in games] == [0, 0]
    lines = [line for line in (config(world) / "settings.txt").read_text().splitlines()
             if line and not line.startswith("#")]
    assert sorted(lines) == ["gamma = 2.5", "mindGrain = 0.5", "mouseSensitivityX = 0.5", "musicVolume = 0.5",
                             "viewBob = 0.5"], lines


def test_a_setting_is_in_force_at_once_and_its_reset_too(world):
    world.write("scripts/levels/Room.py", PLAYED + """
import math

@at(2)
def set(level, player):
    for name, value in (('fieldOfView', 60), ('brightness', 1.5), ('shadowQuality', 'low'), ('effectQuality', 'low'),
                        ('walkDeadZone', 0.5), ('padSensitivityX', 2), ('invertPadX', True), ('mono', True),
                        ('masterVolume', 0.5), ('creatureVolume', 0.25), ('viewShake', 0)):
        settings.set(name, value)
    tell(level, player)
    settings.resetAll()
    tell(level, player)

def tell(level, player):
    graphics, sound = kaVel.getSystem('GraphicsSystem2'), kaVel.getSystem('SoundSystem')
    viewer, body = player.getDescendantByPath('camera/viewer'), player.getComponent('player')
    kaVel.log('now %.1f %g %d %s %s %.2f %.2f %.3f %s %.3f %.3f %.3f %g' % (
        math.degrees(viewer.verticalFieldOfViewAngle), graphics.brightness, graphics.shadowMapSize,
        graphics.lampShadows, graphics.occlusion, kaVel.getSystem('InputSystem').walkDeadZone, body.stickTurnRate,
        body.stickUpright, sound.mono, sound.soundEffectVolume, sound.getCategoryVolume('sfx/creatures'),
        sound.getCategoryVolume('interface'), player.getDescendantByPath('camera/form').shakeAmount))
""")
    run = world.run("Room", 4)
    run.expect_code(0)
    run.expect("now 60.0 1.5 256 False False 0.50 -5.60 -0.375 True 0.450 0.250 0.500 0")
    run.expect("now 45.0 1 768 True True 0.24 2.80 0.750 False 0.900 1.000 1.000 1")


def test_what_is_tried_out_comes_back_unless_it_is_confirmed_in_time(world):
    world.write("scripts/levels/Room.py", PLAYED + """
@at(5)
def first(level, player):
    settings.tryOut('gamma', 3.5)
    settings.tryOut('windowSize', '400x300')

@at(5 + 9 * 60)
def before(level, player):
    kaVel.log('left %.0f: %s %s' % (settings.trial().left(), settings.get('gamma'), settings.get('windowSize')))

@at(5 + 11 * 60)
def after(level, player):
    window = kaVel.getSystem('WindowSystem2')
    kaVel.log('after %s %s %s %dx%d' % (settings.trial(), settings.get('gamma'), settings.get('windowSize'),
                                        window.width, window.height))
    settings.tryOut('gamma', 3).confirm()

@at(5 + 23 * 60)
def confirmed(level, player):
    kaVel.log('confirmed %s' % settings.get('gamma'))
""")
    run = world.run("Room", 1400, KAVEL_UNDRAWN="1")
    run.expect_code(0)
    run.expect("left 1: 3.5 (400, 300)")
    run.expect("Nobody confirmed gamma and windowSize: it is as before.")
    run.expect("after None 2.2 (1280, 720) 1280x720")
    run.expect("confirmed 3.0")


def test_every_action_takes_other_inputs_at_once_and_conflicts_are_known(world):
    world.write("scripts/levels/Room.py", PLAYED + """
@at(2)
def bound(level, player):
    bindings.bind('forward', ['Left of Z', 'Button 4'])
    bindings.bindPad('crouch', 'Y')
    kaVel.log('conflicts %s %s' % (bindings.conflicts('forward'), bindings.conflicts('crouch')))
    bindings.bindPad('flashlight', '')
    bindings.bind('run', ['Left of Z'])
    kaVel.log('conflicts now %s' % bindings.conflicts('run'))
    bindings.reset('run')
    for wrong in (lambda: bindings.bind('forwards', ['W']), lambda: bindings.bind('forward', ['Umlaut'])):
        try:
            wrong()
        except (KeyError, ValueError) as problem:
            kaVel.log('refused %s' % problem)
    press(ord('W'))
    press(0xE2)

@at(30)
def walked(level, player):
    kaVel.log('walked %s' % (player.getComponent('transform').position.z > 0.3))
    press(0xE2, False)
    kaVel.getSystem('InputSystem').mouseDown(3)
    kaVel.getSystem('InputSystem').keyDown(0xC6)

@at(31)
def byMouse(level, player):
    body = player.getComponent('player')
    kaVel.log('by mouse %s, by pad %s' % (body.isMoving(), body.isCrouched()))
    kaVel.getSystem('InputSystem').mouseUp(3)
    kaVel.log('let go %s' % (not body.isMoving()))
    press(0xC6, False)
    press(0xC4)
    kaVel.log('no more %s' % body.isCrouched())
    bindings.resetAll()
    kaVel.log('usual %s %s' % (bindings.inputsOf('forward'), bindings.padOf('crouch')))
""")
    run = world.run("Room", 35)
    run.expect_code(0)
    for text in ("conflicts {} {'Y': ['flashlight']}", "conflicts now {'Left of Z': ['forward']}",
                 "did you mean 'forward'?", "'Umlaut', which is no key", "walked True", "by mouse True, by pad True",
                 "let go True", "no more True", "usual ('W',) B"):
        run.expect(text)


def test_running_crouching_and_leaning_are_held_or_pressed_once_as_the_player_likes(world):
    world.write("scripts/levels/Room.py", PLAYED + """
SHIFT, CTRL, W, Q = 0x10, 0x11, ord('W'), ord('Q')

def tell(what, player):
    body = player.getComponent('player')
    kaVel.log('%s: runs %s, crouched %s' % (what, body.isSprinting(), body.isCrouched()))

@at(2)
def start(level, player):
    for side in ('Left', 'Return'):
        name = 'Lean%sMessage' % side
        kaVel.subscribe(name, lambda message, name=name: kaVel.log('told ' + name))
    press(W); press(SHIFT); press(SHIFT, False)
    tell('held', player)
    for name in ('sprintMode', 'leanMode'):
        settings.set(name, 'toggle')
    settings.set('crouchMode', 'hold')
    press(SHIFT); press(SHIFT, False)

@at(4)
def stop(level, player):
    tell('toggled', player)
    press(W, False); press(W)

@at(6)
def crouch(level, player):
    tell('stood', player)
    press(CTRL)

@at(8)
def rise(level, player):
    tell('down', player)
    press(CTRL, False)

@at(10)
def lean(level, player):
    tell('up', player)
    press(Q); press(Q, False)
    kaVel.log('leans')
    press(Q); press(Q, False)
""")
    run = world.run("Room", 12)
    run.expect_code(0)
    for text in ("held: runs False", "toggled: runs True", "stood: runs False", "down: runs False, crouched True",
                 "up: runs False, crouched False"):
        run.expect(text)
    told = [line for line in run.log.splitlines() if "told Lean" in line or line.endswith("leans")]
    assert [line.split()[-1] for line in told] == ["LeanLeftMessage", "leans", "LeanReturnMessage"], told


def test_prompts_follow_the_device_that_was_used_last(world):
    world.write("scripts/levels/Room.py", PLAYED + """
@at(2)
def start(level, player):
    bindings.onDeviceChange(lambda device: kaVel.log('takes up %s: %s %s' % (
        device, bindings.promptOf('use'), bindings.promptOf('forward'))))

@at(40)
def key(level, player):
    press(ord('D'))
""")
    run = play(world, [(10, "pad 0 0 0 0 0 9000 0 0"), (20, "pad 0 0 0 0 0 30000 0 0"),
                       (30, "pad 0 0 0 0 0 0 0 0")], 45)
    assert [line.split("takes up ")[1] for line in run.log.splitlines() if "takes up " in line] == [
        "pad: A W", "keys: E W"], "a stick at rest a little off the middle is not used"


def test_keys_and_settings_of_the_player_are_there_in_the_next_game(world):
    world.write_level("Sets", """
import bindings
import settings
kaVel.log('found %s %s %s' % (bindings.inputsOf('run'), bindings.padOf('lamp'), settings.get('sprintMode')))
bindings.bind('run', ['Comma', 'Button 5'])
bindings.bindPad('lamp', '')
settings.set('sprintMode', 'toggle')
""")
    run_seen(world, "Sets").expect("found ('Shift',) Up hold")
    assert "run = Comma, Button 5\npad.lamp = none\n" in (config(world) / "bindings.txt").read_text()
    run_seen(world, "Sets").expect("found ('Comma', 'Button 5')  toggle")
    world.write("config/mornal/bindings.txt", "run = Coma\nfly away = W\npad.use = Z\ncrouch = X\n")
    run = run_seen(world, "Sets")
    for text in ("bindings.txt:1:", "'Coma', which is no key", "bindings.txt:3:", "found ('Shift',) Up"):
        run.expect(text)
    assert "fly away = W\n" in (config(world) / "bindings.txt").read_text()


def test_a_mode_is_left_again_by_itself_and_a_window_without_a_frame_covers_the_monitor(world):
    world.write_level("Modes", """
import settings
window = kaVel.getSystem('WindowSystem2')
seen = []

def look():
    now = '%s %dx%d' % (settings.get('windowMode'), window.width, window.height)
    if seen[-1:] != [now]:
        seen.append(now)
        kaVel.log('mode %s #' % now)
        if len(seen) == 1:
            settings.tryOut('windowMode', 'borderless', seconds=3)

entity = kaVel.make('Entity', parent=coordinator, name='watcher')
kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=look)
""")
    world.write("config/mornal/settings.txt", "windowSize = 640x360\n")
    with Display("1024x768") as display, Game(world, display, "Modes") as played:
        played.until_logged("mode window 640x360 #")
        played.until_logged("mode borderless 1024x768 #")
        played.until_logged("mode window 640x360 #", times=2)
        assert played.quit() == 0
    assert (config(world) / "settings.txt").read_text() == "windowSize = 640x360\n", "nothing was kept"


PAGES = ("picture", "sound", "controls", "bindings", "reading", "language")


def test_every_page_of_the_options_is_whole_in_each_language_and_shape_of_the_window(world):
    world.write("scripts/levels/Room.py", PLAYED + """
from screens import Kit as kit
from screens import Screens

PAGES = 6

def shown(level, number):
    kit.component(level.getDescendantByPath('ScreenOptions/sheet/pages/names/tab%d' % number)).pressed()

@at(2)
def opened(level, player):
    Screens.open(level, 'Options')

for turn, language in enumerate(('en', 'de')):
    for number in range(PAGES):
        def turned(level, player, number=number, language=language):
            settings.set('language', language)
            shown(level, number)
        def found(level, player, number=number, language=language):
            kaVel.log('page %s %d: %s' % (language, number, Screens.findings(level)))
        start = 4 + (turn * PAGES + number) * 4
        STEPS[start], STEPS[start + 3] = turned, found
""")
    for window in ("400x300", "640x360", "960x270"):
        run = world.run("Room", 60, KAVEL_SIZE=window)
        run.expect_code(0)
        pages = [line.split("page ")[1] for line in run.log.splitlines() if "page " in line]
        wanted = [f"{language} {number}: []" for language in ("en", "de") for number in range(len(PAGES))]
        assert pages == wanted, (window, pages)


def test_on_the_pages_keys_alone_set_and_keys_buttons_and_triggers_are_bound(world):
    world.write("scripts/levels/Room.py", PLAYED + """
from screens import Kit as kit
from screens import Screens

def widget(level, path):
    return level.getDescendantByPath('ScreenOptions/sheet/pages/pages/' + path)

def on(page, path):
    def go(level, player):
        if not Screens.isOpen(level):
            Screens.open(level, 'Options')
        kit.component(level.getDescendantByPath('ScreenOptions/sheet/pages/names/tab%d' % page)).pressed()
        kit.focus(widget(level, 'page%d/%s' % (page, path)))
    return go

STEPS.update({2: on(0, 'vsync'), 20: on(1, 'ambienceVolume'), 40: on(3, 'forward/first'), 60: on(3, 'use/pad'),
              84: on(5, 'language'), 110: on(3, 'run/pad'), 140: on(3, 'back/first')})

@at(138)
def pulled(level, player):
    kaVel.log('pulled %s' % bindings.padOf('run'))

@at(175)
def left(level, player):
    kaVel.log('left %s %s' % (bindings.inputsOf('back'), Screens.names(level)))

@at(100)
def rebuilt(level, player):
    focus = Screens.top(level).getComponent('menu').focus
    kaVel.log('focus on %s, in %s' % (focus.parent.name, settings.get('language')))

@at(80)
def told(level, player):
    one = level.getDescendantByPath('ScreenOptions/sheet/above/one')
    kaVel.log('set %s %.2f %s %s' % (settings.get('vsync'), settings.get('ambienceVolume'),
                                     bindings.inputsOf('forward'), bindings.padOf('use')))
    kaVel.log('shared %s' % kit.component(widget(level, 'page3/use/name')).text)
""")
    enter, left, right, i = 13, 37, 39, 73
    events = []
    for frame, key in ((6, enter), (24, left), (28, left), (44, enter), (48, i), (64, enter), (90, right)):
        events += [(frame, f"key {key} down"), (frame + 2, f"key {key} up")]
    a, b, x, stick, trigger = ("0x1000 0 0 0 0 0 0", "0x2000 0 0 0 0 0 0", "0x4000 0 0 0 0 0 0", "0 0 0 0 32767 0 0",
                               "0 0 255 0 0 0 0")
    for frame, held in ((68, x), (114, a), (120, stick), (126, trigger), (144, a), (150, b), (160, b)):
        events += [(frame, f"pad 0 {held}"), (frame + 4, "pad 0 0 0 0 0 0 0 0")]
    run = play(world, events, 180)
    run.expect("focus on language, in en")
    run.expect("set True 0.90 ('I',) X")
    run.expect("shared Use (shared with: Change battery)")
    run.expect("pulled Right trigger")
    run.expect("left ('S',) []")


def test_a_mode_chosen_on_its_page_asks_and_counts_down_and_a_measurement_finds_a_quality(world):
    world.write("scripts/levels/Room.py", PLAYED + """
from screens import Kit as kit
from screens import Screens
from settings import Presets

GameLoop = kaVel.getSystem('GameLoopSystem')
seen = []

def look(level, player):
    frame = GameLoop.frameNumber
    if frame == 2:
        Screens.open(level, 'Options')
        settings.set('gamma', 2.5)
    if frame == 5:
        from screens import OptionRows
        row = next(row for row in OptionRows.PAGES['picture'] if row.name == 'windowMode')
        OptionRows.Page.change(page(level), row, 'borderless')
    now = '%s %s' % (settings.get('windowMode'), Screens.names(level))
    if frame > 5 and seen[-1:] != [now]:
        seen.append(now)
        kaVel.log('now %s #' % now)
        if now == "window ['Options']":
            Screens.open(level, 'Measure')

def page(level):
    from screens import Options
    return Options._open.pages['picture']
""")
    with Display("800x600") as display, Game(world, display, "Room") as played:
        played.until_logged("now borderless ['Options', 'KeepMode'] #")
        played.until_logged("now window ['Options'] #")
        played.until_logged("the preset is ")
        assert played.quit() == 0
    text = (config(world) / "settings.txt").read_text()
    assert "gamma = 2.5" in text and "\nwindowMode" not in text, text


if __name__ == "__main__":
    game.main(dict(globals()))
