"""The importer: axes, units, winding, texture and frames of each format, and what it says of a faulty file.

Every case imports one marker, a tetrahedron whose tips lie 1 m to its own right, 2 m above and 3 m ahead of its foot,
written as each format would hold it. However the file is turned, the model has to come out the same.
"""
import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "assets"), str(ROOT / "tests" / "support")]
import check_model
import model_file
from sources import FACES, POINTS, fbx, gltf, main, run, text_of_obj

MARKER = [(0, 0, 0), (0, 0, 3), (0, 2, 0), (1, 0, 0)]  # in the engine


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


def test_each_fault_is_named_and_leaves_the_old_model_alone(top):
    folder = top / "model"
    folder.mkdir()

    def obj(text):
        (folder / "bad.obj").write_text(text)
        return folder / "bad.obj"

    def named(name, data=b"junk"):
        (folder / name).write_bytes(data)
        return folder / name

    def image_outside(document):
        document["materials"] = [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}}]
        document["textures"], document["images"] = [{"source": 0}], [{"uri": "../outside.png"}]
        document["meshes"][0]["primitives"][0]["material"] = 0

    def buffer(name):
        return gltf(folder, name="bad.gltf", edit=lambda document: document["buffers"][0].update(uri=name))

    def nested(document):
        document["nodes"] = [{"children": [i + 1]} for i in range(20000)] + [{"mesh": 0}]

    def mtllib(name):
        return obj(f"mtllib {name}\n" + text_of_obj())

    os.mkfifo(folder / "pipe.obj")
    (top / "outside.bin").write_bytes(bytes(999))
    (folder / "link.bin").symlink_to(top / "outside.bin")
    far = [(3e38, 0, 0)] + POINTS[1:]
    polygon = "".join(f"v {i} {i * i % 7} 0\n" for i in range(600000))
    faults = {
        "There is no \"bad.glb\" in": lambda: folder / "bad.glb",
        "it is a folder": lambda: folder,
        "format '.blend' is unknown": lambda: named("bad.blend"),
        "cannot be read": lambda: named("bad.glb"),
        "it is empty": lambda: named("bad.fbx", b""),
        "gone.bin": lambda: buffer("gone.bin"),
        "names '../outside.bin', which lies outside its folder": lambda: buffer("../outside.bin"),
        "names 'link.bin', which lies outside": lambda: buffer("link.bin"),
        "picture '../outside.png', which lies outside": lambda: gltf(folder, name="bad.gltf", edit=image_outside),
        "names '../none.mtl', which lies outside": lambda: mtllib("../none.mtl"),
        "names 'pipe.obj', which is no plain file": lambda: mtllib("pipe.obj"),
        "it is no plain file": lambda: folder / "pipe.obj",
        "has 600000 corners": lambda: obj(polygon + "f " + " ".join(map(str, range(1, 600001)))),
        "more than 1000 levels deep": lambda: gltf(folder, name="bad.gltf", edit=nested),
        "its reader broke down while reading 'bad.gltf' (": lambda: named("bad.gltf", b"[" * 5000000),
        "no mesh": lambda: fbx(folder, POINTS, 1, (1, 1), (2, 1), mesh=False, name="bad.fbx"),
        "lines and points": lambda: gltf(folder, mode=1, name="bad.gltf"),
        "no number": lambda: gltf(folder, far, node={"scale": [100, 1, 1]}, name="bad.gltf"),
        "vertex 0 of mesh 'body' of node 'stand' lies more than": lambda: gltf(folder, far, name="bad.gltf"),
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


if __name__ == "__main__":
    sys.exit(main(__doc__, globals()))
