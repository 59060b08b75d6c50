"""The .kaVelModel file: an 8-byte file header, then per mesh a 32-byte header, its indices and its vertices.

Little-endian 32-bit integers and floats without padding. A vertex is position, normal, tangent, bitangent and
texture coordinate, 56 bytes.
"""

import struct

FILE_MAGIC = 0x6B564D30
CHUNK_MAGIC = 0x6D657368
PRIMITIVE_TRIANGLES = 0
VERTEX_DEFAULT = 0
VERTEX = struct.Struct("<14f")
CHUNK_HEADER = struct.Struct("<8I")


def write(path, mesh):
    """Writes one mesh as a triangle list, its equal vertices made one."""
    mesh.welded()
    indices = [i for triangle in mesh.triangles for i in triangle]
    vertices = b"".join(
        VERTEX.pack(*position, *normal, *tangent, *bitangent, *uv)
        for (position, normal, uv), (tangent, bitangent) in zip(mesh.vertices, mesh.tangents())
    )
    with open(path, "wb") as out:
        out.write(struct.pack("<2I", FILE_MAGIC, 1))
        out.write(
            CHUNK_HEADER.pack(
                CHUNK_MAGIC,
                PRIMITIVE_TRIANGLES,
                VERTEX_DEFAULT,
                len(mesh.vertices),
                len(mesh.triangles),
                len(indices),
                4 * len(indices),
                len(vertices),
            )
        )
        out.write(struct.pack(f"<{len(indices)}I", *indices))
        out.write(vertices)


def read(path):
    """The chunks of a file as (header fields, indices, vertices as 14-float tuples); ValueError on a broken file."""
    with open(path, "rb") as source:
        data = source.read()
    if len(data) < 8:
        raise ValueError("shorter than its file header")
    magic, chunk_count = struct.unpack_from("<2I", data)
    if magic != FILE_MAGIC:
        raise ValueError(f"file magic is {magic:#010x}, not {FILE_MAGIC:#010x}")
    chunks, position = [], 8
    for number in range(chunk_count):
        if position + 32 > len(data):
            raise ValueError(f"chunk {number} is cut off in its header")
        header = CHUNK_HEADER.unpack_from(data, position)
        position += 32
        if header[0] != CHUNK_MAGIC:
            raise ValueError(f"magic of chunk {number} is {header[0]:#010x}, not {CHUNK_MAGIC:#010x}")
        _, _, _, vertex_count, _, index_count, index_bytes, vertex_bytes = header
        if index_bytes != 4 * index_count or vertex_bytes != VERTEX.size * vertex_count:
            raise ValueError(f"sizes of chunk {number} do not follow from its counts")
        if position + index_bytes + vertex_bytes > len(data):
            raise ValueError(f"chunk {number} is cut off in its data")
        indices = struct.unpack_from(f"<{index_count}I", data, position)
        position += index_bytes
        vertices = [VERTEX.unpack_from(data, position + VERTEX.size * i) for i in range(vertex_count)]
        position += vertex_bytes
        chunks.append((header, indices, vertices))
    if position != len(data):
        raise ValueError(f"{len(data) - position} bytes follow the last chunk")
    return chunks
