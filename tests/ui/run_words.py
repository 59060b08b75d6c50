"""What a player reads: the tables of texts, good and broken, and what stands on the screen in each language."""
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))

import game

SAY = """
import words
kaVel.log('says ' + %s)
"""


def say(world, expression, **environment):
    """The run of a level that logs what an expression with `words` gives."""
    world.write_level("Say", SAY % expression)
    outcome = world.run("Say", frames=2, **environment)
    outcome.expect_code(0)
    return outcome


def test_texts_numbers_and_keys_follow_the_language(world):
    expression = "' | '.join([words.text('menu.resume'), words.number(12345.5), words.number(0.25, 1), " \
        "words.date(1911, 3, 8), words.keyName('Space'), words.keyName('W'), words.duration(3900), " \
        "words.text('no.key')])"
    say(world, expression).expect("says Resume | 12,345.5 | 0.2 | 8 March 1911 | Space | W | 1 h 05 min | no.key")
    german = say(world, expression, KAVEL_LANGUAGE="de")
    german.expect("says Weiterspielen | 12.345,5 | 0,2 | 8. März 1911 | Leertaste | W | 1 Std. 05 Min. | no.key")
    german.expect("no table of scripts/words has a text for 'no.key'")


def test_a_broken_table_costs_nothing_but_what_is_broken_in_it(world):
    table = world.folder / "scripts" / "words" / "german.py"
    whole = table.read_text(encoding="utf-8")
    expression = "words.text('menu.resume') + '/' + words.text('menu.back')"
    for harm, said, told in (
            (("'menu.resume': 'Weiterspielen',", ""), "Resume/Zurück", "german.py lacks 1 texts: menu.resume"),
            (("'Weiterspielen'", "'{weiter'"), "Resume/Zurück", "'menu.resume': expected '}' before end of string"),
            (("'Weiterspielen'", "'{weiter}'"), "Resume/Zurück", "the placeholders {weiter} where english has none"),
            (("'Weiterspielen'", "None"), "Resume/Zurück", "'menu.resume' has to be a text in quotes"),
            (("'Weiterspielen'", "'Weiter"), "Resume/Back", "unterminated string literal"),
            (("TEXTS: dict[str, str] = {", "TEXTS = 5, {"), "Resume/Back", "TEXTS has to be a dict"),
            ((whole, "\0"), "Resume/Back", "source code string cannot contain null bytes")):
        table.write_text(whole.replace(*harm), encoding="utf-8")
        run = say(world, expression, KAVEL_LANGUAGE="de")
        run.expect("says " + said)
        assert run.log.count(told) == 1, f"{told!r} is told {run.log.count(told)} times:\n{run.log[-2000:]}"


HEARD = """
import kaVel
import objects.GameObjects as place
import settings
import words
from objects.Placing import onFrame, placed
from objects.sound.Sounds import sounds

def build(coordinator):
    settings.set('captions', True)
    coordinator.loadMap('room')

def room(map):
    level = map.getAncestorOfType(kaVel.Reflection.Coordinator)
    place.Box(map, 'floor', at=(0, -1, 0), size=(20, 1, 20), surface='boards')
    place.Player(level, at=(0, 0, 0), turn=0)
    voices = [sounds(placed(map, event, at=at), event) for event, at in
              (('DoorSlam', (-4, 1, 0.5)), ('BreakGlass', (4, 1, 0.5)), ('MannequinStep', (0, 1, -2)),
               ('StepWoodRun', (0.2, 0, 0)))]
    frame = 0

    def tick():
        nonlocal frame
        frame += 1
        if frame == 10:
            for voice in voices:
                voice.playSoundEffect(voice.parent.name)
        if frame == 40:
            words.setLanguage('de')
        if frame in (30, 45, 300):
            lines = [level.getChild('caption%d' % number).getComponent('graphics2').text for number in range(3)]
            kaVel.log('captions: %s' % ' | '.join(sorted(line for line in lines if line)))

    onFrame(placed(map, 'ticker'), tick)
"""


def test_what_is_heard_is_written_with_its_side_in_the_language_of_the_moment_and_ones_own_steps_are_not(world):
    world.write("scripts/levels/Heard.py", HEARD)
    run = world.run(level="Heard", frames=310, KAVEL_UNDRAWN="1")
    run.expect_code(0)
    told = [line.split("captions: ")[1] for line in run.log.splitlines() if "captions: " in line]
    assert told == ["Glass breaks → | ← A door slams | ↓ A wooden foot is set down, behind",
                    "Glas zerbricht → | ← Eine Tür schlägt zu | ↓ Ein hölzerner Fuß wird aufgesetzt, hinter dir",
                    ""], told


def test_the_tables_have_what_scripts_ask_for_and_the_tool_names_what_they_lack(world):
    tool = [sys.executable, str(game.ROOT / "tools" / "words" / "check.py")]
    whole = subprocess.run(tool, capture_output=True, text=True, check=False)
    assert whole.returncode == 0, whole.stdout
    english, german = (world.folder / "scripts" / "words" / name for name in ("english.py", "german.py"))
    english.write_text(english.read_text(encoding="utf-8").replace("'keys.locked'", "'keys.lockd'"), encoding="utf-8")
    german.write_text(german.read_text(encoding="utf-8").replace("{count}.'", "{number}.'"), encoding="utf-8")
    broken = subprocess.run([*tool, "--root", str(world.folder)], capture_output=True, text=True, check=False)
    assert broken.returncode == 1
    for told in ("'keys.locked' has no text in scripts/words/english.py", "'keys.lockd' is asked for by no script",
                 "'carrying.bolts' has the placeholders {number} where english has {count}",
                 "german.py lacks 1 texts: keys.lockd"):
        assert told in broken.stdout, (told, broken.stdout)


if __name__ == "__main__":
    game.main(globals())
