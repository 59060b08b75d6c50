"""Walls drawn as a plan: closed but for their openings, solid to who walks, told by their numbers where they are wrong;
and what happens by lists of deeds."""
import collections
import math
import pathlib
import random
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support"), str(ROOT / "scripts")]
import game
import golden
from objects.house.Plans import Opening, Plan, area, checkedOutline, holds, strips, triangles


def random_plan(dice):
    """A house of some rooms: an outline with slanted corners, a wall across, and walls that end on that."""
    wide, deep, cut = dice.uniform(6, 14), dice.uniform(5, 10), dice.uniform(0.8, 2)
    across, slant = dice.uniform(2.5, deep - 2), dice.uniform(-0.6, 0.6)
    outline = [(0, 0), (wide, 0), (wide, deep - cut), (wide - cut, deep), (0, deep), (0, 0)]
    x = dice.uniform(1.5, wide - 2.5 - cut)
    share = x / wide
    knot = x, (across - slant) * (1 - share) + min(across + slant, deep - cut - 0.8) * share
    lines = [outline, [(0, across - slant), knot, (wide, min(across + slant, deep - cut - 0.8))],
             [(dice.uniform(1, wide - 1), 0), knot]]
    if dice.random() < 0.5:
        lines.append([(x, knot[1] + 0.6), (x + 0.7, knot[1] + 0.9)])  # stands free
    kinds = {"door": (0.8, 2.0, 0), "window": (0.7, 1, 0.8), "arch": (0.9, 2.1, 0), "hole": (0.5, 0.4, 1.2)}
    thick = dice.uniform(0.06, 0.3)
    openings = []
    for wall in range(8):
        plan = Plan(lines, 2.8, thick, openings)
        low, high = dice.choice(plan.clear(wall))
        kind = dice.choice(list(kinds))
        width, height, sill = kinds[kind]
        if high - low > width:
            along = dice.uniform(low + width / 2, high - width / 2)
            openings.append(Opening(kind, wall, along, width, height, sill))
    return Plan(lines, 2.8, thick, openings)


def faces_as_triangles(plan):
    for face in plan.faces():
        nx, ny, nz = face.normal
        flat = {((x, z) if abs(ny) > 0.7 else (nx * z - nz * x, y)): (x, y, z)
                for x, y, z in [*face.edge, *(corner for hole in face.holes for corner in hole)]}
        back = {corner: point for point, corner in flat.items()}
        edge, holes = [back[each] for each in face.edge], [[back[each] for each in hole] for hole in face.holes]
        if area(edge) < 0:
            edge, holes = edge[::-1], [hole[::-1] for hole in holes]
        for triangle in triangles(edge, holes):
            a, b, c = (flat[point] for point in triangle)
            yield (a, b, c) if facing(a, b, c, face.normal) else (a, c, b)


def facing(a, b, c, normal):
    u, v = [q - p for p, q in zip(a, b)], [q - p for p, q in zip(a, c)]
    across = u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]
    return sum(x * y for x, y in zip(across, normal)) > 0


def meets(triangle, start, way):
    """How far along a ray a triangle is met."""
    a, b, c = triangle
    u, v, w = ([q - p for p, q in zip(a, each)] for each in (b, c, start))
    cross = [way[1] * v[2] - way[2] * v[1], way[2] * v[0] - way[0] * v[2], way[0] * v[1] - way[1] * v[0]]
    size = sum(x * y for x, y in zip(u, cross))
    if abs(size) < 1e-12:
        return None
    first = sum(x * y for x, y in zip(w, cross)) / size
    other = [w[1] * u[2] - w[2] * u[1], w[2] * u[0] - w[0] * u[2], w[0] * u[1] - w[1] * u[0]]
    second = sum(x * y for x, y in zip(way, other)) / size
    far = sum(x * y for x, y in zip(v, other)) / size
    return far if first >= 0 and second >= 0 and first + second <= 1 and far > 1e-9 else None


def test_walls_of_random_plans_are_closed_to_the_last_bit_and_rays_leave_rooms_by_openings_alone(folder):
    dice = random.Random(14)
    left = rays = 0
    for _ in range(60):
        plan = random_plan(dice)
        shapes = list(faces_as_triangles(plan))
        edges = collections.Counter(edge for a, b, c in shapes for edge in ((a, b), (b, c), (c, a)))
        open_ = [edge for edge, count in edges.items()
                 if edges[edge[::-1]] != count and (edge[0][1] or edge[1][1])]
        assert not open_, f"cracks at {open_[:3]}"
        assert len(plan.rooms) == 3, f"{len(plan.rooms)} rooms"
        for room in plan.rooms:
            for _ in range(6):
                low, high = ([pick(point[axis] for point in room) for axis in (0, 1)] for pick in (min, max))
                x, z = dice.uniform(low[0], high[0]), dice.uniform(low[1], high[1])
                turn, rise = dice.uniform(0, math.tau), dice.uniform(-0.12, 0.12)
                start, way = (x, 1.4, z), (math.cos(turn), rise, math.sin(turn))
                if not holds(room, (x, z)):
                    continue
                rays += 1
                wall = min((far for far in (meets(each, start, way) for each in shapes) if far), default=None)
                leaves = [far for far in ways_out(plan, room, start, way)]
                if wall is None or (leaves and leaves[0] < wall):
                    left += 1
                    assert leaves, f"a ray from {start} along {way} leaves where no opening is"
    assert rays > 500 and left > 20, (rays, left)


def ways_out(plan, room, start, way):
    """Where a ray passes the middles of openings."""
    for opening in plan.openings:
        wall = plan.walls[opening.wall]
        (along, off), (further, across) = (wall.measure((start[0] + way[0] * t, start[2] + way[2] * t)) for t in (0, 1))
        if abs(across - off) > 1e-9:
            far = -off / (across - off)
            height = start[1] + way[1] * far - opening.sill
            isThere = abs(along + (further - along) * far - opening.along) <= opening.width / 2
            if far > 0 and isThere and 0 <= height <= opening.height:
                yield far


def test_what_cannot_be_built_is_told_by_its_numbers(folder):
    square = [[(0, 0), (6, 0), (6, 4), (0, 4), (0, 0)]]
    door = Opening("door", 0, 3, 1, 2, 0)
    for told, lines, openings in (
            ("walls 0 and 2 .* cross at \\(1.75, 0.00\\)", [[(0, 0), (4, 0), (4, 3), (1, -1)]], ()),
            ("walls 0 and 4 .* lie on each other", square + [[(1, 0), (3, 0)]], ()),
            ("walls 1 and 0 .* meet at only 4 degrees", [[(0, 0), (4, 0), (0, 0.3)]], ()),
            ("wall 1 .* no length", [[(0, 0), (4, 0), (4, 0)]], ()),
            ("corner 1 of line 0 is \\(nan, 1\\)", [[(0, 0), (math.nan, 1)]], ()),
            ("openings\\[0\\].* wall 7.* walls 0 to 3", square, [door._replace(wall=7)]),
            ("openings\\[1\\].* meets openings\\[0\\]", square, [door, door._replace(along=3.8)]),
            ("openings\\[0\\].* from -0.30 to 0.70 m.* clear from 0.12", square, [door._replace(along=0.2)]),
            ("openings\\[0\\].* up to 3.10 m", square, [door._replace(height=3.1)])):
        try:
            Plan(lines, 3.0, 0.2, openings)
        except ValueError as error:
            assert re.search(told, str(error)), f"{error} lacks {told}"
        else:
            raise AssertionError(f"taken: {told}")
    try:
        checkedOutline([(0, 0), (4, 4), (4, 0), (0, 4)], "the outline")
    except ValueError as error:
        assert "sides 0 and 2 meet at (2.00, 2.00)" in str(error), error
    else:
        raise AssertionError("an outline that crosses itself is taken")


def test_the_solid_of_a_floor_covers_it_and_little_more(folder):
    dice = random.Random(5)
    for _ in range(40):
        corners = sorted(dice.uniform(0, math.tau) for _ in range(dice.randint(4, 9)))
        outline = [(4 * math.cos(turn) * dice.uniform(0.6, 1), 4 * math.sin(turn)) for turn in corners]
        if area(outline) < 4:
            continue
        boxes = strips(outline)
        for _ in range(200):
            x, z = dice.uniform(-4, 4), dice.uniform(-4, 4)
            if holds(outline, (x, z)):
                assert any(a <= x <= b and c <= z <= d for a, b, c, d in boxes), f"a hole at {x}, {z} in {outline}"
    assert len(strips([(0, 0), (6, 0), (6, 2), (3, 2), (3, 5), (0, 5)])) == 2, "an L is two boxes"


LEVEL = '''
import random

import kaVel
import objects.GameObjects as place
from objects.house.Plans import Plan, Opening


def build(coordinator):
    coordinator.loadMap('house')
    place.Player(coordinator, at=(1.5, 0, 2), turn=90)
    watch = place.Entity(coordinator, 'watch')
    steps = script(coordinator)
    kaVel.addComponent(watch, 'hud', 'ScriptComponent', frameCallback=lambda: next(steps, None))


def key(name, down):
    kaVel.send('KeyDownMessage' if down else 'KeyUpMessage', ord(name))


def house(map):
    place.Room(map, 'flat', size=(8, 4), at=(4, 0, 2), partitions=[[(0, -2), (0, 2)]],
               openings=[{'kind': 'door', 'wall': 4, 'along': 2, 'width': 0.8, 'height': 2.0},
                         {'kind': 'window', 'wall': 1, 'along': 2}])
    place.SphereLight(map, 'lamp', at=(6, 2.5, 3), strength=0.5)
    place.PatrolRoute(map, 'round', points=[(5, 0, 0.7), (7, 0, 0.7)])
    place.Walker(map, 'sleeper', at=(7.2, 0, 3.2), route='round', walks=False, sees=False, hears=False, hurts=0)
    place.BlockedCells(map, 'noGo', areas=[(4.5, 1.4, 6.6, 2.6)])
    place.BlockedCells(map, 'noGoEither', areas=[(4.5, 1.4, 5.4, 2.6)])
    place.TriggerArea(map, 'there', at=(6.2, 0, 2), size=(1, 1), do=[
        ('show', 'It moves.'), ('darken', 'lamp'), ('wait', 0.5), ('start', 'sleeper'), ('start', 'rats')])
    place.Spawner(map, 'rats', pattern='Crow', at=(1.0, 0, 1), radius=0.8, every=(0.2, 0.3), atMost=2, total=3,
                  away=1.0, works=False)
    place.TriggerArea(map, 'typo', at=(3, 0, 9), do=[('open', 'lamq'), ('level', 'Sampel')])
    for wrong in ([('opn', 'door')], [('wait', 'long')], [('note', 'title')]):
        try:
            place.TriggerArea(map, 'wrong', do=wrong)
        except ValueError as error:
            kaVel.log('note: %s' % error)
    kaVel.log('note: map %s' % map.getComponent('transform').scale)


def script(coordinator):
    map, player = coordinator.getChild('house'), coordinator.getChild('Player')
    feet, light = player.getComponent('transform'), map.getDescendantByPath('lamp/graphics2')
    sleeper = map.getChild('sleeper').getComponent('transform')
    grid = map.getDescendantByPath('.MapData_mainPathGrid/grid')
    blocks = map.getDescendantByPath('flat/walls')
    yield
    # Against the partition beside the doorway: he stays in his room.
    place.visitorOf(coordinator).goTo((2, 0, 3.2), turn=90)
    key('W', True)
    for _ in range(120):
        yield
    kaVel.log('note: wall %.2f' % feet.position.x)
    # Through the doorway of 0.8 m, on to the trigger.
    place.visitorOf(coordinator).goTo((2, 0, 2.05), turn=90)
    for _ in range(150):
        yield
    key('W', False)
    kaVel.log('note: door %s' % (feet.position.x > 5.5))
    for _ in range(30):
        yield
    kaVel.log('note: light %s' % light.visible)
    before = sleeper.position
    for _ in range(240):
        yield
    kaVel.log('note: walked %s' % ((sleeper.position - before).magnitude() > 0.5))
    kaVel.log('note: spawned %d' % sum(each.name.startswith('rats') for each in map.getChild('rats').children))
    cell = lambda x, z: grid.getCellFromPoint(kaVel.Vec4(x, 0, z, 1), 0)
    kaVel.log('note: blocked %s' % [round(grid.getCellFloatValue(cell(x, z).x, cell(x, z).z, 0), 1)
                                    for x, z in ((6, 2), (6, 3.5), (1, 1))])
    # Rays from within meet the solid but at the doorway; glass is seen through and passed by nobody.
    dice = random.Random(3)
    import math
    for _ in range(300):
        turn, start = dice.uniform(0, math.tau), kaVel.Vec4(1.5, 1.2, 2, 1)
        way = kaVel.Vec4(12 * math.cos(turn), 0, 12 * math.sin(turn), 0)
        hit = kaVel.Reflection.findSolidBetween(map, start, start + way, player, sleeper.parent)
        far = (hit.point - start).magnitude() if hit else 99
        z = 2 + math.tan(turn) * 2.5
        through = math.cos(turn) > 0 and 1.6 < z < 2.4
        if not through and far > math.hypot(2.5, 2.1) + 0.01:
            kaVel.log('note: leak at %.2f, %.2f m' % (turn, far))
    map.getChild('noGo').murder()
    from objects.house import MapSize
    MapSize.settle(coordinator)
    kaVel.log('note: freed %s' % (grid.getCellFloatValue(cell(6, 2).x, cell(6, 2).z, 0) < 0.9))
    yield
    yield
    kaVel.log('note: shared %s' % (grid.getCellFloatValue(cell(5, 2).x, cell(5, 2).z, 0) > 0.5))
    kaVel.log('note: end')
'''


def test_walkers_pass_a_doorway_of_80_cm_and_no_wall_and_deeds_are_done(world):
    golden.small(world, (64, 36))
    world.write("scripts/levels/Built.py", LEVEL)
    run = world.run(level="Built", frames=700, KAVEL_UNDRAWN="1", KAVEL_VERBOSE="1")
    run.expect_code(0)
    notes = [line.split("note: ", 1)[1] for line in run.log.splitlines() if "note: " in line]
    assert [note for note in notes if "leak" in note] == [], notes
    assert notes[-1] == "end", run.log[-3000:]
    assert re.search(r"do\[0\] is .*did you mean 'open'", notes[0]) and "seconds" in notes[1], notes[:3]
    assert "a title and a text" in notes[2], notes[2]
    told = dict(note.split(" ", 1) for note in notes[4:-1])
    assert 3.4 < float(told["wall"]) < 3.75, told
    assert told["door"] == "True" and told["light"] == "False" and told["walked"] == told["freed"] == "True", told
    assert told["shared"] == "True", "what two of them block is blocked as long as one of them is there"
    assert int(told["spawned"]) == 2 and told["blocked"] == "[0.9, 0.0, 0.0]", told
    run.expect("typo does 'open' to 'lamq', and nothing in the level has that name; did you mean 'lamp'?")
    run.expect("typo goes to the level 'Sampel', and there is none; did you mean 'Sample'?")


if __name__ == "__main__":
    game.main(dict(globals()))
