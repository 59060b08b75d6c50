"""Small model files as modelling tools write them, a tetrahedron as .obj, .gltf and .fbx, and the importer."""
import argparse
import base64
import json
import os
import pathlib
import struct
import subprocess

import cases

TOOL = None  # the importer; main sets it
# A sanitizer leaves it to the importer what to say where the library that reads the files breaks down.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":handle_segv=0:handle_abort=0")
# Right-handed, y up, front +z, so that the model's own right is -x. Faces are counter-clockwise from outside.
POINTS = [(0, 0, 0), (-1, 0, 0), (0, 2, 0), (0, 0, 3)]
FACES = [(0, 1, 2), (0, 3, 1), (0, 2, 3), (1, 3, 2)]
TEXTURE = [(0, 0), (1, 0), (0, 1)]  # of every face; v counts upwards, as in .obj and .fbx


def text_of_obj(points=POINTS, faces=FACES):
    lines = ["# marker"] + ["v " + " ".join(map(str, point)) for point in points]
    lines += ["vt %g %g" % uv for uv in TEXTURE]
    lines += ["f " + " ".join(f"{i + 1}/{k + 1}" for k, i in enumerate(face)) for face in faces]
    return "\n".join(lines) + "\n"


def gltf(folder, points=POINTS, faces=FACES, node=None, name="marker.gltf", mode=4, edit=None, binary=False):
    """A file of one mesh with its numbers inside; `edit` may change the document before it is written."""
    vertices = b"".join(struct.pack("<3f", *point) for point in points)
    indices = b"".join(struct.pack("<3H", *face) for face in faces)
    document = {
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [dict(node or {}, name="stand", mesh=0)],
        "meshes": [{"name": "body", "primitives": [{"attributes": {"POSITION": 0}, "indices": 1, "mode": mode}]}],
        "buffers": [{"byteLength": len(vertices + indices)}],
        "bufferViews": [{"buffer": 0, "byteOffset": 0, "byteLength": len(vertices)},
                        {"buffer": 0, "byteOffset": len(vertices), "byteLength": len(indices)}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": len(points), "type": "VEC3",
                       "min": [-9, -9, -9], "max": [9, 9, 9]},
                      {"bufferView": 1, "componentType": 5123, "count": 3 * len(faces), "type": "SCALAR"}],
    }
    if not binary:
        document["buffers"][0]["uri"] = data_uri(vertices + indices)
    if edit:
        edit(document)
    text = json.dumps(document).encode()
    path = folder / name
    path.write_bytes(_glb(text, vertices + indices) if binary else text)
    return path


def data_uri(data, kind="application/octet-stream"):
    return f"data:{kind};base64," + base64.b64encode(data).decode()


def _glb(text, data):
    chunks = b""
    for kind, body, filler in ((b"JSON", text, b" "), (b"BIN\0", data, b"\0")):
        body += filler * (-len(body) % 4)
        chunks += struct.pack("<I4s", len(body), kind) + body
    return struct.pack("<4sII", b"glTF", 2, 12 + len(chunks)) + chunks


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


def run(*words):
    """Runs the importer; its exit code, and what it said."""
    result = subprocess.run([str(TOOL), *map(str, words)], capture_output=True, text=True, check=False, timeout=60,
                            env=ENVIRONMENT)
    return result.returncode, result.stdout + result.stderr


def main(description, module):
    """Runs the cases of a test of the importer, and ends with the exit code."""
    global TOOL
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    TOOL = parser.parse_args().build.resolve() / "kaVelImport"
    return cases.run(module)
