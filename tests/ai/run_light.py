"""The light at a place, held against the picture: what lightOn says of a floor is what the floor shows."""
import math
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import png

WIDTH, HEIGHT = 480, 270
UP, HALF = 8.0, 0.41421356  # metres of the camera above the floor; tangent of half its angle
EXPOSURE, GAMMA = 4.5, 2.2  # as in test.fx

#: A white floor, seen from above, in a map whose middle lies elsewhere, as those of most levels do; a room in it.
SCENE = """
import math
import objects.GameObjects as place
from objects.Placing import onFrame

def box(map, at, size, shadows=True):
    entity = place.placed(map, 'box', at=at)
    place.addVolume(entity, size, 'BV_WALL')
    kaVel.addComponent(entity, 'physics', 'WallPhysics')
    kaVel.addComponent(entity, 'graphics2', 'WorldBasedTCBoxGraphicsComponent', layer='WORLD', textureName='white',
                       castShadows=shadows)
    entity.getComponent('transform').scale = kaVel.Vec4(*size, 0)
    return entity

def report(map, points):
    def doFrame():
        normal = kaVel.Vec4(0, 1, 0, 0)
        kaVel.log('light ' + ' '.join('%.5f' % kaVel.lightOn(map, kaVel.Vec4(x, 0, z, 1), normal) for x, z in points))
    clock = kaVel.make('Entity', parent=map, name='clock')
    kaVel.addComponent(clock, 'form', 'ScriptComponent', frameCallback=doFrame)

coordinator.getManager('graphics2').sceneAmbient = AMBIENT
map = kaVel.make('MapRootEntity', parent=coordinator, name='map')
kaVel.addComponent(map, 'transform', 'TransformComponent', position=kaVel.Vec4(2.5, 1.5, -2, 1))
room = place.placed(map, 'room', at=(0.5, 0, 0))
place.PartitioningGrid(map, size=(40, 0, 40)).getComponent('partitioning').updateSize()
box(map, (0, -0.5, 0), (20, 1, 20))
place.Camera(coordinator, 'camera', at=(0, UP, 0), pitch=90)
"""


def grid():
    return [(x * 0.4, z * 0.4) for x in range(-13, 14) for z in range(-7, 8)]


def measure(world, body, ambient=0.0, points=None):
    """(x, z), what was said of it and what the picture shows there, for each point of the floor."""
    points = points or grid()
    scene = SCENE.replace("AMBIENT", str(ambient)).replace("UP", str(UP))
    world.write_level("Lit", scene + body + f"\nreport(map, {points!r})")
    outcome = world.run("Lit", frames=12, screenshot="lit.png", KAVEL_SIZE=f"{WIDTH}x{HEIGHT}")
    outcome.expect_code(0)
    said = [float(value) for value in re.findall(r"light ([\d. ]+)", outcome.log)[-1].split()]
    picture = png.read(world.folder / "lit.png")
    return [(point, value, shown(picture, *point)) for point, value in zip(points, said)]


def shown(picture, x, z):
    """Luminance of the linear light that a place of the floor returns, from the pixels around it."""
    across, down = x / (UP * HALF) * HEIGHT / WIDTH, -z / (UP * HALF)
    column, row = (across + 1) / 2 * WIDTH - 0.5, (down + 1) / 2 * HEIGHT - 0.5
    vignette = 1 - 0.16 * (across ** 2 + down ** 2)
    sums = [0.0] * 3
    for r in (math.floor(row), math.floor(row) + 1):
        for c in (math.floor(column), math.floor(column) + 1):
            part = (1 - abs(row - r)) * (1 - abs(column - c))
            for channel in range(3):
                sums[channel] += part * linear(picture.rows[r][c * picture.step + channel] / 255) / vignette
    return 0.2126 * sums[0] + 0.7152 * sums[1] + 0.0722 * sums[2]


def linear(value):
    """What filmic() of test.fx, and the screen's gamma, made this of."""
    y = value ** GAMMA
    a, b, c = 2.5 * (1 - y), 0.15 - 0.75 * y, -0.14 * y
    return (-b + (b * b - 4 * a * c) ** 0.5) / (2 * a) / EXPOSURE


def is_like(said, picture):
    return abs(said - picture) <= 0.002 + 0.05 * max(said, picture)


def neighbours_differ(values, point):
    """Whether the light changes abruptly around a point, as at the rim of a shadow, which the picture draws softly."""
    x, z = point
    around = [values.get((round(x + dx, 3), round(z + dz, 3))) for dx in (-0.4, 0, 0.4) for dz in (-0.4, 0, 0.4)]
    known = [value for value in around if value is not None]
    return max(known) > 0.02 + 2 * min(known)


def expect_same(measured, least_lit):
    worst = max(measured, key=lambda each: abs(each[1] - each[2]))
    wrong = [each for each in measured if not is_like(each[1], each[2])]
    assert not wrong, f"{len(wrong)} of {len(measured)} differ, the most at {worst}"
    lit = sum(1 for _, said, _ in measured if said > 0.01)
    assert lit >= least_lit, f"only {lit} of {len(measured)} points are lit at all"


def test_a_lamp_falls_off_as_it_is_drawn(world):
    expect_same(measure(world, """
place.SphereLight(room, 'lamp', at=(-1, 1.2, 0.4), color=(1, 0.7, 0.38), strength=0.16, reach=4.5, glint=0)
kaVel.configure(place.SphereLight(map, 'blue', at=(3, 0.8, -1), color=(0.3, 0.4, 1), strength=0.2, reach=3,
                                  glint=0).getComponent('graphics2'), lightFalloffBegin=1.2)
off = place.SphereLight(map, 'off', at=(2, 1, 2), strength=1, reach=4)
off.getComponent('graphics2').visible = False
"""), least_lit=100)


def test_a_cone_ends_where_it_is_drawn_to_end_and_flickers_with_it(world):
    expect_same(measure(world, """
place.SpotLight(map, 'narrow', at=(-2.5, 2.5, 0), pitch=70, turn=40, color=(1, 1, 1), strength=0.3, reach=6, angle=30,
                core=0.4, edge=10, glint=0)
place.SpotLight(room, 'wide', at=(2, 1.6, 0.5), pitch=90, color=(1, 0.8, 0.6), strength=0.25, reach=4, angle=55,
                core=0.2, edge=3, glint=0, flicker=lambda time: 0.4 + 0.5 * math.sin(40 * time))
"""), least_lit=80)


def test_what_stands_in_the_light_keeps_it_off_the_floor(world):
    measured = measure(world, """
place.ShadowSpot(room, 'lamp', at=(-4, 2.6, -0.5), pitch=32, turn=82, color=(1, 1, 1), strength=0.35, reach=12,
                 angle=40, core=0.5, glint=0)
box(map, (-1, 0.6, 0.3), (0.3, 1.2, 1.6))
box(map, (1.6, 0.5, -1.8), (0.8, 1.0, 0.5), shadows=False)
""")
    tops = [(-1.2, -0.8, -0.6, 1.2), (1.1, 2.1, -2.1, -1.5)]  # what stands there hides its own ground
    values = {tuple(round(each, 3) for each in point): said for point, said, _ in measured}
    floor = [each for each in measured if not neighbours_differ(values, each[0])
             and not any(x0 <= each[0][0] <= x1 and z0 <= each[0][1] <= z1 for x0, x1, z0, z1 in tops)]
    expect_same(floor, least_lit=80)
    shadow = [each for each in floor if each[1] == 0 and -0.5 < each[0][0] < 2 and abs(each[0][1] - 0.7) < 0.5]
    assert len(shadow) >= 4, "the wall casts a shadow behind it"


def test_ambient_light_is_what_an_unlit_floor_shows(world):
    """Seen from above, an eye that is straight over the floor adds a little of its own."""
    for (x, z), said, picture in measure(world, "", ambient=0.5):
        squared = UP ** 2 + x ** 2 + z ** 2
        eyes = 0.5 * 0.0951 * UP ** 2 / squared / (1 + 0.05 * squared)
        assert is_like(said + eyes, picture), (x, z, said, eyes, picture)


if __name__ == "__main__":
    game.main(dict(globals()))
