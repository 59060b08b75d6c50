"""What takes the device's memory, by asset."""

from __future__ import annotations

from typing import TYPE_CHECKING

import kaVel
from editor.Views import views
from editor.views.Kit import Shown

if TYPE_CHECKING:
    from _kaVel import ScriptBar

#: Frames from one look at the assets to the next.
EVERY = 120


def assets() -> list[tuple[int, str, str]]:
    """What is on the device: bytes, kind and name of each asset, the largest first."""
    found = []
    for each in kaVel.descendants(kaVel.getSystem('AssetSystem').parent):
        if each._getType().isSubclassOf(kaVel.Reflection.Asset):
            taken = kaVel.Reflection.memoryOf(each)
            if taken:
                kind = 'mesh' if each._getType().isSubclassOf(kaVel.Reflection.MeshAsset) else 'texture'
                found.append((taken, kind, getattr(each, 'fileName', '') or each.getName()))
    return sorted(found, reverse=True)


@views.add
class Memory(Shown):
    """A list of the assets by what they take; nothing is drawn into the level."""

    name = 'Memory'
    help = 'What textures and meshes take of the memory of the graphics device.'
    order = 70

    def begin(self) -> None:
        super().begin()
        self.assets = assets()

    def doFrame(self) -> None:
        self.frame += 1
        if self.frame % EVERY == 0:
            self.assets = assets()

    def controls(self, bar: ScriptBar) -> None:
        bar.group(self.name)
        bar.addText('Memory state', '', self.state)
        bar.addList('Memory assets', lambda: len(self.assets), self._row, lambda number: None)
        bar.group('')

    def _row(self, number: int) -> str:
        taken, kind, name = self.assets[number]
        return '%8.0f kB  %-8s%s' % (taken / 1024, kind, name)

    def state(self) -> str:
        sums = {kind: sum(taken for taken, each, _ in self.assets if each == kind) for kind in ('texture', 'mesh')}
        return '%d assets: %.1f MB of textures, %.1f MB of meshes' % (
            len(self.assets), sums['texture'] / 2 ** 20, sums['mesh'] / 2 ** 20)
