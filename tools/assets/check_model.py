#!/usr/bin/env python3
"""check_model.py FILE.kaVelModel...: proves that models are sound; exit code 1 and one line per fault otherwise."""

import math
import sys

import model_file
from mesh import cross, dot, sub

_UNIT_TOLERANCE = 1e-3
_RIGHT_ANGLE_TOLERANCE = 2e-3


def faults(path):
    """What is wrong with a file, as sentences; empty for a sound one."""
    try:
        chunks = model_file.read(path)
    except ValueError as error:
        return [str(error)]
    if not chunks:
        return ["has no mesh"]
    return [f"chunk {number}: {fault}" for number, chunk in enumerate(chunks) for fault in _chunk_faults(*chunk)]


def _chunk_faults(header, indices, vertices):
    _, primitive, vertex_type, _, primitive_count, index_count, _, _ = header
    if primitive != model_file.PRIMITIVE_TRIANGLES or vertex_type != model_file.VERTEX_DEFAULT:
        yield f"primitive type {primitive} and vertex type {vertex_type}, where triangles of default vertices are drawn"
        return
    if index_count % 3 or primitive_count != index_count // 3 or not index_count:
        yield f"{primitive_count} primitives do not follow from {index_count} indices"
        return
    if max(indices) >= len(vertices):
        yield f"index {max(indices)} is beyond the {len(vertices)} vertices"
        return
    if not all(math.isfinite(value) for vertex in vertices for value in vertex):
        yield "a vertex holds an infinity or a NaN"
        return
    yield from _frame_faults(vertices)
    yield from _winding_faults(indices, vertices)


def _frame_faults(vertices):
    for number, vertex in enumerate(vertices):
        frame = {"normal": vertex[3:6], "tangent": vertex[6:9], "bitangent": vertex[9:12]}
        for name, axis in frame.items():
            length = math.sqrt(dot(axis, axis))
            if abs(length - 1.0) > _UNIT_TOLERANCE:
                yield f"vertex {number}: {name} of length {length:.4f}"
                return
        for first, second in (("normal", "tangent"), ("normal", "bitangent"), ("tangent", "bitangent")):
            if abs(dot(frame[first], frame[second])) > _RIGHT_ANGLE_TOLERANCE:
                yield f"vertex {number}: {first} and {second} are not at right angles"
                return


def _winding_faults(indices, vertices):
    for start in range(0, len(indices), 3):
        a, b, c = (vertices[i] for i in indices[start : start + 3])
        facing = cross(sub(b[:3], a[:3]), sub(c[:3], a[:3]))
        if dot(facing, facing) < 1e-18:
            yield f"triangle {start // 3} has no area"
            return
        normal = tuple(a[3 + k] + b[3 + k] + c[3 + k] for k in range(3))
        if dot(facing, normal) <= 0.0:
            yield f"triangle {start // 3} winds against its normals and would be culled from the front"
            return


def describe(path):
    (header, _, vertices), *_ = model_file.read(path)
    extent = [max(v[k] for v in vertices) - min(v[k] for v in vertices) for k in range(3)]
    return f"{header[3]} vertices, {header[4]} triangles, {extent[0]:.2f} x {extent[1]:.2f} x {extent[2]:.2f} m"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    broken = 0
    for path in sys.argv[1:]:
        found = faults(path)
        broken += bool(found)
        print(f"{path}: {'; '.join(found) if found else 'sound, ' + describe(path)}")
    sys.exit(1 if broken else 0)


if __name__ == "__main__":
    main()
