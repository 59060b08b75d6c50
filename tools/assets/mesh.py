"""Mesh: vertices and triangles of one model, and the solids that models are put together from.

Space: metres, left-handed, y up, z forward. A model stands on y = 0 and turns its front to +z. Seen from outside
the corners of a face run clockwise, so cross(b - a, c - a) points outwards. Texture coordinates are in metres until
`scaled_uv` divides them by the size that the texture covers; u runs along the grain.
"""

import math


def add(a, b):
    return (a[0] + b[0], a[1] + b[1], a[2] + b[2])


def sub(a, b):
    return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def scale(a, s):
    return (a[0] * s, a[1] * s, a[2] * s)


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(dot(a, a))
    return scale(a, 1.0 / length) if length > 1e-12 else (0.0, 1.0, 0.0)


def turn_y(p, angle):
    """Turned about the y axis; a quarter turn takes +z to +x."""
    s, c = math.sin(angle), math.cos(angle)
    return (p[0] * c + p[2] * s, p[1], -p[0] * s + p[2] * c)


def turn_x(p, angle):
    """Turned about the x axis; a quarter turn takes +y to +z."""
    s, c = math.sin(angle), math.cos(angle)
    return (p[0], p[1] * c - p[2] * s, p[1] * s + p[2] * c)


def turn_z(p, angle):
    """Turned about the z axis; a quarter turn takes +x to +y."""
    s, c = math.sin(angle), math.cos(angle)
    return (p[0] * c - p[1] * s, p[0] * s + p[1] * c, p[2])


class Mesh:
    """Vertices as [position, normal, (u, v)] and triangles as index triples; tangents are made when written."""

    def __init__(self):
        self.vertices = []
        self.triangles = []
        self._parts = 0

    # Building blocks

    def vertex(self, position, normal, uv):
        self.vertices.append([position, normal, uv])
        return len(self.vertices) - 1

    def triangle(self, a, b, c):
        """Keeps the corner order that agrees with the corners' normals."""
        pa, pb, pc = (self.vertices[i][0] for i in (a, b, c))
        facing = cross(sub(pb, pa), sub(pc, pa))
        if dot(facing, facing) < 1e-16:
            return
        normal = add(add(self.vertices[a][1], self.vertices[b][1]), self.vertices[c][1])
        self.triangles.append((a, b, c) if dot(facing, normal) >= 0.0 else (a, c, b))

    def polygon(self, corners, normal, uvs):
        """Flat convex polygon."""
        ids = [self.vertex(p, normal, uv) for p, uv in zip(corners, uvs)]
        for i in range(1, len(ids) - 1):
            self.triangle(ids[0], ids[i], ids[i + 1])

    def facet(self, corners, grain="x"):
        """Flat convex polygon whose normal follows from its clockwise corners, textured in metres."""
        normal = unit(cross(sub(corners[1], corners[0]), sub(corners[2], corners[0])))
        self.polygon(corners, normal, [self._project(p, normal, grain, (0.0, 0.0)) for p in corners])

    def _project(self, p, normal, grain, offset):
        """Texture coordinates in metres on the plane that the normal faces most, u along the grain axis."""
        axis = max(range(3), key=lambda i: abs(normal[i]))
        along = "xyz".index(grain)
        if along == axis:
            along = 0 if axis != 0 else 2
        across = 3 - axis - along
        u = p[along]
        v = -p[across]
        if along == 1:
            u = -u
        return (u + offset[0], v + offset[1])

    def _part_offset(self):
        """Each solid takes its wood from another place of the texture."""
        self._parts += 1
        return ((self._parts * 0.377) % 1.0, (self._parts * 0.611) % 1.0)

    # Solids

    def box(self, low, high, bevel=0.004, grain="x"):
        """Box with rounded-looking edges: the bevel blends the normals of the faces that meet there."""
        offset = self._part_offset()
        bevel = min([bevel] + [(h - l) * 0.45 for l, h in zip(low, high)])
        corner = {}
        for sx in (0, 1):
            for sy in (0, 1):
                for sz in (0, 1):
                    signs = (sx, sy, sz)
                    for axis in range(3):
                        position = [0.0] * 3
                        for k in range(3):
                            inset = 0.0 if k == axis else bevel
                            position[k] = high[k] - inset if signs[k] else low[k] + inset
                        normal = tuple((1.0 if signs[k] else -1.0) if k == axis else 0.0 for k in range(3))
                        corner[signs, axis] = (tuple(position), normal)

        def face(keys, normal):
            ids = [self.vertex(*corner[key], self._project(corner[key][0], normal, grain, offset)) for key in keys]
            for i in range(1, len(ids) - 1):
                self.triangle(ids[0], ids[i], ids[i + 1])

        for axis in range(3):
            b, c = (axis + 1) % 3, (axis + 2) % 3
            for side in (0, 1):
                keys = []
                for sb, sc in ((0, 0), (1, 0), (1, 1), (0, 1)):
                    signs = [0, 0, 0]
                    signs[axis], signs[b], signs[c] = side, sb, sc
                    keys.append((tuple(signs), axis))
                face(keys, corner[keys[0]][1])
            for sb in (0, 1):
                for sc in (0, 1):
                    ends = []
                    for sa in (0, 1):
                        signs = [0, 0, 0]
                        signs[axis], signs[b], signs[c] = sa, sb, sc
                        ends.append(tuple(signs))
                    face([(ends[0], b), (ends[1], b), (ends[1], c), (ends[0], c)], corner[ends[0], b][1])
        for sx in (0, 1):
            for sy in (0, 1):
                for sz in (0, 1):
                    face([((sx, sy, sz), axis) for axis in range(3)], corner[(sx, sy, sz), 0][1])

    def cushion(self, low, high, radius, steps=4, bulge=0.0, grain="x"):
        """Box with truly round edges of `radius`, its top and front swelling by `bulge`."""
        inner_low = [l + radius for l in low]
        inner_high = [h - radius for h in high]
        centre = [(l + h) * 0.5 for l, h in zip(low, high)]
        half = [(h - l) * 0.5 for l, h in zip(low, high)]
        for axis in range(3):
            b, c = (axis + 1) % 3, (axis + 2) % 3
            ticks_b = _rounded_ticks(low[b], high[b], radius, steps)
            ticks_c = _rounded_ticks(low[c], high[c], radius, steps)
            for side in (low[axis], high[axis]):
                grid = []
                for pb in ticks_b:
                    row = []
                    for pc in ticks_c:
                        p = [0.0] * 3
                        p[axis], p[b], p[c] = side, pb, pc
                        core = [min(max(p[k], inner_low[k]), inner_high[k]) for k in range(3)]
                        normal = unit(sub(tuple(p), tuple(core)))
                        place = add(tuple(core), scale(normal, radius))
                        swell = [1.0 - min(1.0, abs(place[k] - centre[k]) / half[k]) ** 2 for k in range(3)]
                        amount = bulge * swell[(axis + 1) % 3] * swell[(axis + 2) % 3]
                        place = add(place, scale(normal, amount))
                        facing = tuple((1.0 if side == high[axis] else -1.0) if k == axis else 0.0 for k in range(3))
                        row.append(self.vertex(place, normal, self._project(place, facing, grain, (0.0, 0.0))))
                    grid.append(row)
                self.stitch(grid)

    def stitch(self, grid):
        """Triangles between the vertex ids of neighbouring rows."""
        for above, below in zip(grid, grid[1:]):
            for i in range(len(above) - 1):
                self.triangle(above[i], above[i + 1], below[i + 1])
                self.triangle(above[i], below[i + 1], below[i])

    def lathe(self, profile, sides=20, around=None, grain_down=True, smooth=0.7, closed_uv=None):
        """Solid of revolution about the y axis from (radius, height) points, up or down.

        Edges between profile pieces that turn by more than `smooth` radians stay sharp. `around` is the texture
        length of one turn in metres (the largest circumference, without it); `closed_uv` instead fits the
        texture once around and once along the profile.
        """
        largest = max(r for r, _ in profile)
        around = around if around is not None else max(0.05, round(math.tau * largest * 20) / 20)
        total = sum(math.dist(a, b) for a, b in zip(profile, profile[1:]))
        slopes = []
        rising = profile[-1][1] + 1e-9 * (profile[-1][0] - profile[0][0]) >= profile[0][1]
        for (r0, y0), (r1, y1) in zip(profile, profile[1:]):
            dr, dy = r1 - r0, y1 - y0
            length = math.hypot(dr, dy) or 1.0
            slopes.append((dy / length, -dr / length) if rising else (-dy / length, dr / length))
        travelled = 0.0
        for piece in range(len(profile) - 1):
            (r0, y0), (r1, y1) = profile[piece], profile[piece + 1]
            length = math.dist(profile[piece], profile[piece + 1])
            normals = []
            for other in (piece - 1, piece + 1):
                own = slopes[piece]
                near = slopes[other] if 0 <= other < len(slopes) else own
                bend = math.acos(max(-1.0, min(1.0, own[0] * near[0] + own[1] * near[1])))
                if bend > smooth:
                    near = own
                blend = (own[0] + near[0], own[1] + near[1])
                size = math.hypot(*blend) or 1.0
                normals.append((blend[0] / size, blend[1] / size))
            rings = []
            for (radius, y), (nr, ny), along in (
                ((r0, y0), normals[0], travelled),
                ((r1, y1), normals[1], travelled + length),
            ):
                ring = []
                for side in range(sides + 1):
                    angle = math.tau * side / sides
                    s, c = math.sin(angle), math.cos(angle)
                    turn = side / sides
                    if closed_uv:
                        uv = (turn * closed_uv, (1.0 - along / total if rising else along / total) * closed_uv)
                    elif grain_down:
                        uv = (along, turn * around)
                    else:
                        uv = (turn * around, along)
                    ring.append(self.vertex((radius * s, y, radius * c), unit((nr * s, ny, nr * c)), uv))
                rings.append(ring)
            self.stitch(rings)
            travelled += length

    def surface(self, fn, u_steps, v_steps):
        """Sheet given by fn(s, t) -> (position, (u, v)), s and t in 0..1; the front is on the side of dt x ds."""
        epsilon = 1e-4
        grid = []
        for i in range(v_steps + 1):
            row = []
            for j in range(u_steps + 1):
                s, t = j / u_steps, i / v_steps
                position, uv = fn(s, t)
                ds = sub(fn(min(1.0, s + epsilon), t)[0], fn(max(0.0, s - epsilon), t)[0])
                dt = sub(fn(s, min(1.0, t + epsilon))[0], fn(s, max(0.0, t - epsilon))[0])
                row.append(self.vertex(position, unit(cross(dt, ds)), uv))
            grid.append(row)
        self.stitch(grid)

    def tube(self, path, radius, sides=10, caps=True):
        """Round bar along a polyline, mitred at its bends; `radius` is one number or one for each point."""
        radii = list(radius) if hasattr(radius, "__len__") else [radius] * len(path)
        frames = []
        up = (0.0, 1.0, 0.0)
        for i, point in enumerate(path):
            ahead = unit(sub(path[min(i + 1, len(path) - 1)], path[max(i - 1, 0)]))
            if abs(dot(ahead, up)) > 0.95:
                up = (0.0, 0.0, 1.0) if abs(ahead[2]) < 0.9 else (1.0, 0.0, 0.0)
            right = unit(cross(up, ahead))
            up = cross(ahead, right)
            frames.append((point, right, up, ahead))
        rings, travelled = [], 0.0
        for i, (point, right, above, _) in enumerate(frames):
            radius = radii[i]
            if i:
                travelled += math.dist(path[i - 1], path[i])
            ring = []
            for side in range(sides + 1):
                angle = math.tau * side / sides
                normal = add(scale(right, math.cos(angle)), scale(above, math.sin(angle)))
                ring.append(
                    self.vertex(
                        add(point, scale(normal, radius)),
                        normal,
                        (travelled, side / sides * max(0.1, math.tau * radius)),
                    )
                )
            rings.append(ring)
        self.stitch(rings)
        if caps:
            for (point, right, above, ahead), sign, radius in (
                (frames[0], -1.0, radii[0]),
                (frames[-1], 1.0, radii[-1]),
            ):
                corners = [
                    add(
                        point,
                        add(
                            scale(right, math.cos(math.tau * k / sides) * radius),
                            scale(above, math.sin(math.tau * k / sides) * radius),
                        ),
                    )
                    for k in range(sides)
                ]
                self.polygon(
                    corners,
                    scale(ahead, sign),
                    [(dot(sub(p, point), right), dot(sub(p, point), above)) for p in corners],
                )

    def moulding(self, profile, x0, x1, miter0=0.0, miter1=0.0):
        """Bar along x from a (y, z) profile, listed top down for a front towards +z; ends slide by miter * y."""
        offset = self._part_offset()
        travelled = 0.0
        for (y0, z0), (y1, z1) in zip(profile, profile[1:]):
            length = math.hypot(y1 - y0, z1 - z0)
            normal = unit((0.0, z1 - z0, -(y1 - y0)))
            corners, uvs = [], []
            for (y, z), along in (((y0, z0), travelled), ((y1, z1), travelled + length)):
                ends = [x0 - miter0 * y, x1 + miter1 * y]
                if along > travelled:
                    ends.reverse()
                for x in ends:
                    corners.append((x, y, z))
                    uvs.append((x + offset[0], along + offset[1]))
            self.polygon(corners, normal, uvs)
            travelled += length
        for x, sign, miter in ((x0, -1.0, -miter0), (x1, 1.0, miter1)):
            if miter:
                continue
            corners = [(x, y, z) for y, z in profile]
            self.polygon(corners, (sign, 0.0, 0.0), [(y, z) for y, z in profile])

    # Whole-mesh changes

    def moved(self, offset):
        for vertex in self.vertices:
            vertex[0] = add(vertex[0], offset)
        return self

    def turned(self, turn, angle):
        """`turn` is turn_x, turn_y or turn_z."""
        for vertex in self.vertices:
            vertex[0] = turn(vertex[0], angle)
            vertex[1] = turn(vertex[1], angle)
        return self

    def bent(self, fn):
        """Positions passed through `fn`, for small crookedness; normals are kept."""
        for vertex in self.vertices:
            vertex[0] = fn(vertex[0])
        return self

    def joined(self, other):
        base = len(self.vertices)
        self.vertices += [list(vertex) for vertex in other.vertices]
        self.triangles += [(a + base, b + base, c + base) for a, b, c in other.triangles]
        return self

    def scaled_uv(self, metres):
        """Texture coordinates divided by the size that one repeat of the texture covers."""
        for vertex in self.vertices:
            vertex[2] = (vertex[2][0] / metres, vertex[2][1] / metres)
        return self

    def welded(self):
        """Equal vertices made one."""
        places, vertices, moved = {}, [], []
        for position, normal, uv in self.vertices:
            key = tuple(round(value, 5) for value in (*position, *normal, *uv))
            if key not in places:
                places[key] = len(vertices)
                vertices.append([position, normal, uv])
            moved.append(places[key])
        self.vertices = vertices
        self.triangles = [tuple(moved[i] for i in triangle) for triangle in self.triangles]
        return self

    def tangents(self):
        """Per vertex the unit directions of growing u and v, orthogonal to the normal."""
        sums = [[(0.0, 0.0, 0.0), (0.0, 0.0, 0.0)] for _ in self.vertices]
        for triangle in self.triangles:
            (pa, _, ta), (pb, _, tb), (pc, _, tc) = (self.vertices[i] for i in triangle)
            e1, e2 = sub(pb, pa), sub(pc, pa)
            u1, v1, u2, v2 = tb[0] - ta[0], tb[1] - ta[1], tc[0] - ta[0], tc[1] - ta[1]
            area = u1 * v2 - u2 * v1
            if abs(area) < 1e-14:
                continue
            sign = 1.0 if area > 0.0 else -1.0
            tangent = scale(sub(scale(e1, v2), scale(e2, v1)), sign)
            bitangent = scale(sub(scale(e2, u1), scale(e1, u2)), sign)
            for i in triangle:
                sums[i][0] = add(sums[i][0], tangent)
                sums[i][1] = add(sums[i][1], bitangent)
        result = []
        for (_, normal, _), (tangent, bitangent) in zip(self.vertices, sums):
            tangent = sub(tangent, scale(normal, dot(normal, tangent)))
            if dot(tangent, tangent) < 1e-20:
                helper = (1.0, 0.0, 0.0) if abs(normal[0]) < 0.9 else (0.0, 0.0, 1.0)
                tangent = sub(helper, scale(normal, dot(normal, helper)))
            tangent = unit(tangent)
            other = cross(normal, tangent)
            result.append((tangent, other if dot(other, bitangent) >= 0.0 else scale(other, -1.0)))
        return result


def _rounded_ticks(low, high, radius, steps):
    """Positions along one edge of a cushion: dense in the rounding, sparse between."""
    rounding = [radius * math.tan(math.pi / 4 * i / steps) for i in range(steps + 1)]
    middle_low, middle_high = low + radius, high - radius
    middle = [middle_low + (middle_high - middle_low) * i / steps for i in range(1, steps)]
    return [middle_low - r for r in reversed(rounding)] + middle + [middle_high + r for r in rounding]
