"""Reads the twelve bytes a frame that StateDigest writes, and tells where two of them differ."""

from dataclasses import dataclass

PRIME = 16777213
SUMS = 4
BYTES = 3 * SUMS


def sums(digest, frame):
    """The four sums of a frame, counted from 1: values, then values times the keys of value, entity and field."""
    start = (frame - 1) * BYTES
    return [int.from_bytes(digest[start + 3 * i:start + 3 * i + 3], "little") for i in range(SUMS)]


def frames(digest):
    """How many frames a digest holds."""
    return len(digest) // BYTES


def first_difference(one, other):
    """The first frame, counted from 1, in which two digests differ; None where the shorter one has none."""
    whole = min(frames(one), frames(other))
    if one[:whole * BYTES] == other[:whole * BYTES]:
        return None
    low, high = 0, whole  # equal before low; the frame behind high - 1 is not
    while high - low > 1:
        middle = (low + high) // 2
        if one[low * BYTES:middle * BYTES] == other[low * BYTES:middle * BYTES]:
            low = middle
        else:
            high = middle
    return low + 1


@dataclass
class Field:
    """One field of one object as a dump tells it."""

    path: str
    name: str
    value_key: int
    entity_key: int
    field_key: int
    hash: str
    value: str


def read_dump(text):
    """The fields of a dump, in the order of the walk."""
    for line in text.splitlines():
        path, name, *keys, value_hash, value = line.split("\t")
        yield Field(path, name, *(int(key, 16) for key in keys), value_hash, value)


def locate(then, now, fields):
    """Where a frame differs, as far as its sums tell: a list of fields, and what they have in common.

    `fields` is the dump of the present frame. The sums name the place where it is one: one field of one object, the
    fields of one entity, or one field of several objects.
    """
    value, *weighted = [(n - t) % PRIME for t, n in zip(then, now)]
    if value == 0:
        return [], "values that add up to the same"
    inverse = pow(value, -1, PRIME)
    by_value, by_entity, by_field = (w * inverse % PRIME for w in weighted)
    fields = list(fields)
    one = [f for f in fields if f.value_key == by_value and f.entity_key == by_entity and f.field_key == by_field]
    if one:
        return one, "this field alone"
    same_entity = [f for f in fields if f.entity_key == by_entity]
    if same_entity:
        return same_entity, "fields of this entity alone"
    same_field = [f for f in fields if f.field_key == by_field]
    if same_field:
        return same_field, "this field of several objects"
    return [], "fields of several objects"


def differences(old, new):
    """The fields that differ between two dumps, in the order of the new one: pairs, with None for what is not there.

    Objects of one path are matched in their order.
    """
    remaining = {}
    for field in old:
        remaining.setdefault((field.path, field.name), []).append(field)
    for field in new:
        known = remaining.get((field.path, field.name))
        before = known.pop(0) if known else None
        if before is None or before.hash != field.hash:
            yield before, field
    for left in remaining.values():
        yield from ((field, None) for field in left)
