"""Tells where a replay differs from its recording, or two builds from each other."""

import sketches

SHOWN = 12  # differences of a comparison


def check(player, recording, name, frames=None):
    """What a replay has otherwise than its recording: lines, none where all is the same."""
    recorded = sketches.frames(recording.digest)
    digest = player.replay(recording, frames)
    frame = sketches.first_difference(recording.digest, digest)
    wanted = min(recorded, frames or recorded)
    if frame is None and sketches.frames(digest) == wanted:
        return []
    if frame is None:
        return [f"{name}: the replay ends after {sketches.frames(digest)} frames instead of {wanted}"]
    found, what = sketches.locate(sketches.sums(recording.digest, frame), sketches.sums(digest, frame),
                                  player.dump(recording, frame))
    lines = [f"{name}: frame {frame} of {recorded} is the first that is not as recorded; {what} differ"]
    lines += [f"  {field.path}  {field.name}  is now {field.value}" for field in found[:SHOWN]]
    return lines + [f"Where play was meant to change, record it anew: tools/playthrough/playthrough.py record {name}",
                    "Where it was not, see all that differs by a build of the commit that it was recorded with: "
                    f"tools/playthrough/playthrough.py compare BUILD_OF_{recording.commit[:12]} build/release {name}"]


def compare(old, new, recording, name):
    """What two builds make of one recording's input: lines, none where it is the same."""
    digests = [player.replay(recording) for player in (old, new)]
    frame = sketches.first_difference(*digests)
    if frame is None:
        return []
    lines = [f"{name}: the builds differ from frame {frame} on"]
    pairs = list(sketches.differences(*(player.dump(recording, frame) for player in (old, new))))
    for before, after in pairs[:SHOWN]:
        place = after or before
        lines.append(f"  {place.path}  {place.name}")
        lines.append(f"    old {before.value if before else 'is not there'}")
        lines.append(f"    new {after.value if after else 'is not there'}")
    if len(pairs) > SHOWN:
        lines.append(f"  and {len(pairs) - SHOWN} more")
    return lines
