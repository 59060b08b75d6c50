"""Text and debug drawing as a player and a developer see them, in a level of a script's own."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

PAGE = """
import objects.GameObjects as place
story = ('Über den Dächern lag der Mond,\\u00a0und im Flur roch es nach kaltem Wachs. AVATAR Tänzer\\n'
         '\\tDonaudampfschifffahrtsgesellschaftskapitänswitwe')
for number, align in enumerate(('TA_LEFT', 'TA_CENTER', 'TA_RIGHT')):
    place.Text(coordinator, 'column%d' % number, text=story, at=(0.02 + 0.33 * number, 0.97), size=0.04, wrapWidth=0.3,
               align=align, color=(1, 0.9 - 0.2 * number, 0.8 - 0.3 * number, 1 - 0.2 * number),
               anchor=('H_LEFT', 'V_TOP'))
place.Text(coordinator, 'fixed', text='12.50 ms \\u2603', at=(0.5, 0.05), size=0.05, font='Inconsolata.otf',
           anchor=('H_CENTER', 'V_BOTTOM'))
"""

SWITCHED = """
import objects.GameObjects as place
place.FreeCamera(coordinator, 'camera', at=(0, 1.2, -5))
place.placed(coordinator, 'tilted', at=(-1.5, 0, 0), turn=30)
other = place.placed(coordinator, 'other', at=(1.5, 0.5, 0), turn=140)
kaVel.addComponent(other, 'viewer', 'ViewerComponent', nearClipDistance=0.3, farClipDistance=2.0)

def eachFrame(frame=[0]):
    frame[0] += 1
    if frame[0] == 3:
        config = kaVel.getSystem('GlobalConfigSystem')
        kaVel.configure(config, debugDrawEnabled=True, debugDrawTransformAxesEnabled=True, debugDrawViewerFrustums=True)
    collector = coordinator.getDescendantByPath('.DebugDrawing/debugDrawCollector')
    if collector:
        collector.addText3D(kaVel.Vec4(-1.5, 0, 0, 1), 'tilted\\n30°', kaVel.Vec4(1, 1, 0, 1))
        collector.addText2D(kaVel.Vec4(0.02, 0.54, 0, 1), 'Größe 12', kaVel.Vec4(0, 1, 0, 1))
        collector.addLine2D(kaVel.Vec4(0.02, 0.48, 0, 1), kaVel.Vec4(0.4, 0.48, 0, 1), kaVel.Vec4(1, 1, 1, 1))

kaVel.addComponent(kaVel.make('Entity', parent=coordinator), 'director', 'ScriptComponent', frameCallback=eachFrame)
"""


def test_wrapped_text_looks_as_it_did(world):
    world.write_level("Page", PAGE)
    golden.expect("text_page", golden.draw(world, "Page", frames=3))


def test_the_loading_screen_says_so(world):
    golden.expect("loading_screen", golden.draw(world, "LoadingScreen", frames=3))


def test_debug_drawing_switched_on_in_a_running_level_looks_as_it_did(world):
    world.write_level("Switched", SWITCHED)
    golden.expect("debug_drawing", golden.draw(world, "Switched", frames=8))


def test_a_missing_font_is_named_and_the_game_goes_on(world):
    (world.folder / "assets" / "fonts" / "LindenHill.otf").unlink()
    world.write_level("Line", "import objects.GameObjects as place\nplace.Text(coordinator, 'line', text='A line')\n")
    outcome = world.run(level="Line", frames=3)
    outcome.expect_code(0)
    outcome.expect("LindenHill.otf did not load")
    assert outcome.log.count("] Font asset missing") == 1, outcome.log


if __name__ == "__main__":
    game.main(dict(globals()))
