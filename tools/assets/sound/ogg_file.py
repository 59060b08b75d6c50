"""Ogg files: written by oggenc so that equal samples give equal bytes, read by ffmpeg."""

import io
import subprocess
import wave
import zlib

import numpy

import shapes


def write(path, x, quality):
    """Encodes samples to a file; the folder is made."""
    path.parent.mkdir(parents=True, exist_ok=True)
    integers = (numpy.clip(x, -1.0, 1.0) * 0x7FFFFF).astype("<i4").reshape(-1, 1).view(numpy.uint8)
    pcm = io.BytesIO()
    with wave.open(pcm, "wb") as out:
        out.setparams((1 if x.ndim == 1 else x.shape[1], 3, shapes.RATE, 0, "NONE", None))
        out.writeframes(integers[:, :3].tobytes())
    serial = zlib.crc32(f"{path.parent.name}/{path.name}".encode()) & 0x7FFFFFFF
    subprocess.run(["oggenc", "-Q", "--serial", str(serial), "-q", str(quality), "-o", str(path), "-"],
                   input=pcm.getvalue(), check=True)


def read(path):
    """The samples of a file, (n,) or (n, 2)."""
    raw = subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), "-f", "f32le", "-c:a", "pcm_f32le", "-"],
                         stdout=subprocess.PIPE, check=True).stdout
    with path.open("rb") as file:
        channels = file.read(64)[39]
    x = numpy.frombuffer(raw, "<f4").astype(float)
    return x if channels == 1 else x.reshape(-1, channels)
