"""What the frames of a playthrough cost, summed up."""

# Frames from the first on in which a level loads and everything is met for the first time.
WARMING_UP = 120


def summary(frames):
    """Milliseconds of the game thread by share of the frames, the dearest frame, and blocks of memory a frame.

    The processor's time, which other programs do not lengthen; the wall clock's stands beside it.
    """
    steady = frames[WARMING_UP:] or frames
    told = {}
    for clock, times in (("", [f.processor / 1e3 for f in steady]), ("wall ", [f.wall / 1e6 for f in steady])):
        times.sort()
        told.update({f"{clock}p50": times[len(times) // 2], f"{clock}p99": times[len(times) * 99 // 100],
                     f"{clock}max": times[-1]})
    told["blocks"] = sum(f.blocks for f in steady) / len(steady)
    told["frames with blocks"] = sum(f.blocks > 0 for f in steady) / len(steady)
    return told


def text(frames, peak):
    told = summary(frames)
    dearest = sorted(range(WARMING_UP, len(frames)), key=lambda i: -frames[i].processor)[:8]
    return (", ".join(f"{name} {told[name]:.2f} ms" for name in ("p50", "p99", "max", "wall p50", "wall p99",
                                                                  "wall max"))
            + f"; {told['blocks']:.2f} blocks a frame, in {100 * told['frames with blocks']:.1f} % of the frames; "
            + f"peak memory {peak:.0f} MiB; dearest frames {', '.join(str(i + 1) for i in dearest)}")
