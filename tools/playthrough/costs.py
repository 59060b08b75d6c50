"""What the frames of a playthrough cost, as FrameMeter wrote it down."""

from dataclasses import dataclass

# Frames from the first on in which a level loads and everything is met for the first time.
WARMING_UP = 120


@dataclass
class Frame:
    """What one frame took."""

    wall: int  # nanoseconds
    processor: int  # microseconds, which other programs do not lengthen
    blocks: int  # taken from the engine's allocators, most of them from pools and given back within the frame
    alive: int  # more blocks than before


@dataclass
class Costs:
    """What a run cost."""

    frames: list
    purposes: list  # (blocks, name) of what they were taken for, the most first
    peak: float  # memory, MiB

    @classmethod
    def read(cls, text, peak):
        frames, purposes = [], []
        for line in text.splitlines():
            words = line.split(" ")
            if len(words) == 4 and words[3].lstrip("-").isdigit():
                frames.append(Frame(*map(int, words)))
            elif words[0] != "0":
                purposes.append((int(words[0]), " ".join(words[1:])))
        return cls(frames, sorted(purposes, reverse=True), peak)

    def summary(self):
        """Milliseconds of the game thread by share of the frames, the dearest frame, and blocks a frame."""
        steady = self.frames[WARMING_UP:-1] or self.frames  # the last one tells about the run
        told = {}
        for clock, times in (("", [f.processor / 1e3 for f in steady]), ("wall ", [f.wall / 1e6 for f in steady])):
            times.sort()
            told.update({f"{clock}p50": times[len(times) // 2], f"{clock}p99": times[len(times) * 99 // 100],
                         f"{clock}max": times[-1]})
        told["blocks"] = sum(f.blocks for f in steady) / len(steady)
        told["kept"] = sum(f.alive for f in steady) / len(steady)
        return told

    def text(self):
        told = self.summary()
        count = max(1, len(self.frames))
        dearest = sorted(range(WARMING_UP, len(self.frames) - 1), key=lambda i: -self.frames[i].processor)[:8]
        return "\n".join([
            "  processor: " + ", ".join(f"{n} {told[n]:.2f} ms" for n in ("p50", "p99", "max")),
            "  wall clock: " + ", ".join(f"{n} {told['wall ' + n]:.2f} ms" for n in ("p50", "p99", "max")),
            "  dearest frames: " + ", ".join(f"{i + 1} ({self.frames[i].processor / 1e3:.1f} ms)" for i in dearest),
            f"  memory: peak {self.peak:.0f} MiB; {told['blocks']:.2f} blocks taken a frame, {told['kept']:.3f} kept",
            "  blocks a frame by purpose: " + ", ".join(f"{name} {blocks / count:.2f}"
                                                        for blocks, name in self.purposes[:8])])
