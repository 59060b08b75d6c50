"""The importer: axes, units, winding, texture and frames of each format, and what it says of a faulty file.

Every case imports one marker, a tetrahedron whose tips lie 1 m to its own right, 2 m above and 3 m ahead of its foot,
written as each format would hold it. However the file is turned, the model has to come out the same.
"""
import argparse
import base64
import json
import pathlib
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "assets"), str(ROOT / "tests" / "support")]
import cases
import check_model
import model_file

TOOL = None
# Right-handed, y up, front +z, so that the model's own right is -x. Faces are counter-clockwise from outside.
POINTS = [(0, 0, 0), (-1, 0, 0), (0, 2, 0), (0, 0, 3)]
FACES = [(0, 1, 2), (0, 3, 1), (0, 2, 3), (1, 3, 2)]
TEXTURE = [(0, 0), (1, 0), (0, 1)]  # of every face; v counts upwards, as in .obj and .fbx
MARKER = [(0, 0, 0), (0, 0, 3), (0, 2, 0), (1, 0, 0)]  # in the engine


def run(*words):
    result = subprocess.run([str(TOOL), *map(str, words)], capture_output=True, text=True, check=False, timeout=60)
    return result.returncode, result.stdout + result.stderr


def imported(source, *words):
    """The one chunk of a file that has to import without a fault."""
    target = source.with_suffix(".kaVelModel")
    code, text = run(source, *words)
    assert code == 0, text
    assert f"{target}: " in text and " vertices, " in text, text
    assert not check_model.faults(target), check_model.faults(target)
    ((_, indices, vertices),) = model_file.read(target)
    return indices, vertices


def places(vertices):
    return sorted({tuple(round(value, 4) + 0.0 for value in vertex[:3]) for vertex in vertices})


def expect_marker(indices, vertices):
    """The marker itself: place, outward clockwise faces, and the texture's directions."""
    assert places(vertices) == sorted(MARKER), places(vertices)
    assert len(indices) == 12
    for start in range(0, 12, 3):
        corners = [vertices[i] for i in indices[start:start + 3]]
        middle = [sum(corner[k] for corner in corners) / 3 - (0.25, 0.5, 0.75)[k] for k in range(3)]
        assert sum(middle[k] * corners[0][3 + k] for k in range(3)) > 0, "a normal looks inwards"


def text_of_obj(points=POINTS, faces=FACES):
    lines = ["# marker"] + ["v " + " ".join(map(str, point)) for point in points]
    lines += ["vt %g %g" % uv for uv in TEXTURE]
    lines += ["f " + " ".join(f"{i + 1}/{k + 1}" for k, i in enumerate(face)) for face in faces]
    return "\n".join(lines) + "\n"


def gltf(folder, points=POINTS, faces=FACES, node=None, name="marker.gltf", mode=4, break_buffer=False, meshes=True):
    vertices = b"".join(struct.pack("<3f", *point) for point in points)
    indices = b"".join(struct.pack("<3H", *face) for face in faces)
    data = base64.b64encode(vertices + indices).decode()
    document = {
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [dict(node or {}, name="stand", **({"mesh": 0} if meshes else {}))],
        "buffers": [{"byteLength": len(vertices + indices),
                     "uri": "gone.bin" if break_buffer else "data:application/octet-stream;base64," + data}],
        "bufferViews": [{"buffer": 0, "byteOffset": 0, "byteLength": len(vertices)},
                        {"buffer": 0, "byteOffset": len(vertices), "byteLength": len(indices)}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": len(points), "type": "VEC3",
                       "min": [-9, -9, -9], "max": [9, 9, 9]},
                      {"bufferView": 1, "componentType": 5123, "count": 3 * len(faces), "type": "SCALAR"}],
    }
    if meshes:
        document["meshes"] = [{"name": "body", "primitives": [
            {"attributes": {"POSITION": 0}, "indices": 1, "mode": mode}]}]
    path = folder / name
    path.write_text(json.dumps(document))
    return path


def fbx(folder, points, unit, up, front, mesh=True, name="marker.fbx"):
    """A text file of the format, its axes and unit as the settings name them: (axis, sign)."""
    corners = ",".join(f"{a},{b},{-c - 1}" for a, b, c in FACES)
    settings = "".join(f'  P: "{key}", "int", "Integer", "",{value}\n' for key, value in (
        ("UpAxis", up[0]), ("UpAxisSign", up[1]), ("FrontAxis", front[0]), ("FrontAxisSign", front[1])))
    text = "; FBX 7.3.0 project file\n; ---------------\nFBXHeaderExtension: {\n FBXHeaderVersion: 1003\n" \
           " FBXVersion: 7300\n}\nGlobalSettings: {\n Version: 1000\n Properties70: {\n" + settings + \
           f'  P: "UnitScaleFactor", "double", "Number", "",{unit}\n' " }\n}\nObjects: {\n"
    if mesh:
        text += ' Geometry: 1, "Geometry::body", "Mesh" {\n  Vertices: *12 {\n   a: ' + \
                ",".join(str(v) for p in points for v in p) + "\n  }\n  PolygonVertexIndex: *12 {\n   a: " + corners + \
                "\n  }\n }\n" ' Model: 2, "Model::stand", "Mesh" {\n  Version: 232\n  Properties70: {\n' \
                '   P: "Lcl Translation", "Lcl Translation", "", "A",0,0,0\n  }\n }\n'
    text += "}\nConnections: {\n" + (' C: "OO",2,0\n C: "OO",1,2\n' if mesh else "") + "}\n"
    path = folder / name
    path.write_text(text)
    return path


def test_obj_comes_out_with_its_front_ahead_and_its_texture_upright(folder):
    source = folder / "marker.obj"
    source.write_text(text_of_obj())
    indices, vertices = imported(source)
    expect_marker(indices, vertices)
    for start in range(0, 12, 3):
        corner = {vertices[i][12:14]: vertices[i] for i in indices[start:start + 3]}
        low, right, high = corner[(0, 1)], corner[(1, 1)], corner[(0, 0)]
        assert sum((right[k] - low[k]) * low[6 + k] for k in range(3)) > 0, "the tangent points against u"
        assert sum((low[k] - high[k]) * low[9 + k] for k in range(3)) > 0, "the bitangent points against v"


def test_gltf_node_transforms_are_applied(folder):
    # A quarter turn about y, half the size, and moved: put the marker where that gives back the marker.
    turned = [(2 * (z - 3), 2 * (y + 1), 2 * -x) for x, y, z in POINTS]
    node = {"rotation": [0, -0.5 ** 0.5, 0, 0.5 ** 0.5], "scale": [0.5, 0.5, 0.5], "translation": [0, -1, 3]}
    expect_marker(*imported(gltf(folder, turned, node=node)))


def test_mirroring_node_keeps_faces_outside(folder):
    mirrored = [(-x, y, z) for x, y, z in POINTS]
    faces = [(a, c, b) for a, b, c in FACES]
    expect_marker(*imported(gltf(folder, mirrored, faces, node={"scale": [-1, 1, 1]})))


def test_fbx_unit_and_axes_come_from_the_file(folder):
    expect_marker(*imported(fbx(folder, [(100 * x, 100 * y, 100 * z) for x, y, z in POINTS], 1, (1, 1), (2, 1))))
    standing = [(x, -z, y) for x, y, z in POINTS]  # z up, front -y
    expect_marker(*imported(fbx(folder, standing, 100, (2, 1), (1, -1), name="standing.fbx")))


def test_options_turn_scale_flip_and_sharpen(folder):
    source = folder / "marker.obj"
    source.write_text(text_of_obj([(1000 * x, 1000 * -z, 1000 * y) for x, y, z in POINTS]))
    expect_marker(*imported(source, "--up", "z", "--scale", "0.001"))
    source.write_text(text_of_obj([(-x, y, -z) for x, y, z in POINTS]))
    expect_marker(*imported(source, "--front", "-z"))
    upright = imported(source, "--front", "-z", "--flip-v")[1]
    assert {vertex[12:14] for vertex in upright} == {(0, 0), (1, 0), (0, 1)}
    source.write_text(text_of_obj(faces=[(a, c, b) for a, b, c in FACES]))
    expect_marker(*imported(source, "--flip-winding"))
    # One face wound against its own normal: the normal is right and stays.
    source.write_text("v 0 0 0\nv -1 0 0\nv 0 2 0\nvn 0 0 -1\nf 1//1 3//1 2//1\n")
    assert "away from their normals" in run(source)[1]
    assert all(vertex[5] == -1 for vertex in imported(source, "--flip-winding")[1])
    source.write_text(text_of_obj())
    assert len(imported(source, "--crease", "180")[1]) <= len(imported(source, "--crease", "0")[1]) == 12


def test_split_writes_one_file_a_material_and_merge_one_for_all(folder):
    source = folder / "marker.obj"
    (folder / "m.mtl").write_text("newmtl dark wood\nnewmtl brass\n")
    plain = text_of_obj(faces=FACES[:2]).splitlines()
    plain.insert(1, "mtllib m.mtl")
    plain.insert(plain.index(next(line for line in plain if line.startswith("f "))), "usemtl dark wood")
    plain.append("usemtl brass")
    plain += text_of_obj(faces=FACES[2:]).splitlines()[-2:]
    source.write_text("\n".join(plain) + "\n")
    expect_marker(*imported(source))
    (folder / "marker.kaVelModel").unlink()
    code, text = run(source, "--split")
    assert code == 0, text
    assert {path.name for path in folder.glob("*.kaVelModel")} == {"marker_dark_wood.kaVelModel",
                                                                   "marker_brass.kaVelModel"}, text
    for path in folder.glob("*.kaVelModel"):
        assert not check_model.faults(path)
        assert len(model_file.read(path)[0][1]) == 6


def test_each_fault_is_named_and_leaves_the_old_model_alone(folder):
    def obj(text):
        (folder / "bad.obj").write_text(text)
        return folder / "bad.obj"

    def named(name, data=b"junk"):
        (folder / name).write_bytes(data)
        return folder / name

    infinite = [(3e38, 0, 0)] + POINTS[1:]
    faults = {
        "There is no \"bad.glb\" in": lambda: folder / "bad.glb",
        "it is a folder": lambda: folder,
        "format '.blend' is unknown": lambda: named("bad.blend"),
        "cannot be read": lambda: named("bad.glb"),
        "it is empty": lambda: named("bad.fbx", b""),
        "gone.bin": lambda: gltf(folder, break_buffer=True, name="bad.gltf"),
        "no mesh": lambda: fbx(folder, POINTS, 1, (1, 1), (2, 1), mesh=False, name="bad.fbx"),
        "lines and points": lambda: gltf(folder, mode=1, name="bad.gltf"),
        "no number": lambda: gltf(folder, infinite, node={"scale": [100, 1, 1]}, name="bad.gltf"),
        "none of its triangles has an area": lambda: obj(text_of_obj([(i, 0, 0) for i in range(4)])),
        "beyond|uses vertex|out of range|cannot be read": lambda: gltf(folder, faces=[(0, 1, 99)], name="bad.gltf"),
    }
    target = folder / "bad.kaVelModel"
    for words, make in faults.items():
        target.write_bytes(b"the old model")
        source = make()
        code, text = run(source, "--output", target)
        assert code == 1 and text.startswith(f"kaVelImport: {source}: "), (words, code, text)
        assert any(word in text for word in words.split("|")), (words, text)
        assert target.read_bytes() == b"the old model", words
        assert not list(folder.glob("*.part")), words
    good = folder / "marker.obj"
    good.write_text(text_of_obj())
    (folder / "models").mkdir()
    assert run(str(good).replace("/", "\\"), "--output", folder / "models")[0] == 0
    assert (folder / "models" / "marker.kaVelModel").exists()
    code, text = run(good, "--output", folder / "missing" / "marker")
    assert code == 1 and "cannot be written" in text, text
    for words, complaint in ((["--up", "w"], "x, y or z"), (["--up", "z", "--front", "z"], "one axis"),
                             (["--scale", "-1"], "above 0"), (["--what"], "'--what'"), ([good], "One file")):
        code, text = run(good, *words)
        assert code != 0 and complaint in text, (words, text)


def main():
    global TOOL
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    TOOL = parser.parse_args().build.resolve() / "kaVelImport"
    return cases.run(globals())


if __name__ == "__main__":
    sys.exit(main())
