"""In which order mods are loaded: what one needs comes before it, and otherwise the player's order and names decide."""

from __future__ import annotations

import heapq
from typing import Mapping, Sequence

from mods.Manifest import Manifest, satisfies


def arrange(manifests: Mapping[str, Manifest],
            wished: Sequence[str] = ()) -> tuple[list[str], dict[str, tuple[str, str]]]:
    """Names in the order of loading, and those that cannot be: the need in question, and why, as a sentence.

    Those of `wished` come in that order, all others behind them by their names, as far as needs let them.
    One whose need is missing, of another version, or cannot be loaded itself, cannot either; nor can those that need
    each other in a ring.
    """
    wrong: dict[str, tuple[str, str]] = {}
    for name, manifest in sorted(manifests.items()):
        ring = _ringOf(name, manifests)
        if ring:
            wrong[name] = ring[1], ('it needs itself' if len(ring) == 2 else
                                    'it needs itself by way of others: %s' % ' -> '.join(ring))
    settled = False
    while not settled:
        settled = True
        for name, manifest in sorted(manifests.items()):
            fault = None if name in wrong else _lacking(manifest, manifests, wrong)
            if fault:
                wrong[name], settled = fault, False
    return _ordered({name: each for name, each in manifests.items() if name not in wrong}, wished), wrong


def _lacking(manifest: Manifest, manifests: Mapping[str, Manifest],
             wrong: Mapping[str, object]) -> tuple[str, str] | None:
    for need, wanted in sorted(manifest.needs.items()):
        if need not in manifests:
            return need, 'it needs the mod %r, version %s, which is not there' % (need, wanted)
        if not satisfies(manifests[need].version, wanted):
            return need, 'it needs the mod %r, version %s, and there is %s' % (need, wanted, manifests[need].version)
        if need in wrong:
            return need, 'it needs the mod %r, which cannot be loaded' % need
    return None


def _ringOf(name: str, manifests: Mapping[str, Manifest]) -> list[str]:
    """The shortest way of needs from a mod back to itself; nothing where there is none."""
    ways, seen = [[name]], {name}
    for way in ways:
        for need in sorted(manifests[way[-1]].needs):
            if need == name:
                return [*way, name]
            if need in manifests and need not in seen:
                seen.add(need)
                ways.append([*way, need])
    return []


def _ordered(manifests: Mapping[str, Manifest], wished: Sequence[str]) -> list[str]:
    ranks = {name: rank for rank, name in enumerate(dict.fromkeys(wished))}
    waits = {name: set(each.needs) for name, each in manifests.items()}
    ready = [(ranks.get(name, len(ranks)), name) for name, needs in waits.items() if not needs]
    heapq.heapify(ready)
    order: list[str] = []
    while ready:
        order.append(heapq.heappop(ready)[1])
        for name, needs in waits.items():
            if order[-1] in needs:
                needs.discard(order[-1])
                if not needs:
                    heapq.heappush(ready, (ranks.get(name, len(ranks)), name))
    return order
