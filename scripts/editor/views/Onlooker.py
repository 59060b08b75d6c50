"""Views without the editor: who looks at a level while it goes on, with their legends in bars of their own."""

from __future__ import annotations

import traceback

import kaVel
from editor.Views import View, views
from objects.Placing import placed
from perLevel import PerLevel

#: The entity that bears the editor's component, below the level; the editor finds it there, too.
ENTITY = '.Editor'
#: Place and size of a legend, pixels: one beside the other.
LEFT, TOP, WIDTH, HEIGHT, GAP = 10, 10, 350, 330, 8

_onlookers: PerLevel[Onlooker] = PerLevel()


class Onlooker:
    """The views that are on in one level while its editor is closed."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.component = _component(level)
        self.shown: dict[str, View] = {}
        self.troubles = views.gather()
        self._ticker = placed(level, '.Onlooker')
        kaVel.addComponent(self._ticker, 'cursor', 'ScriptComponent', frameCallback=self.doFrame)

    @staticmethod
    def of(level: kaVel.Coordinator) -> Onlooker:
        """The onlooker of a level, made when somebody first looks."""
        if level not in _onlookers:
            _onlookers[level] = Onlooker(level)
        return _onlookers[level]

    def switch(self, name: str) -> bool:
        """Switches a view on or off, and says whether it is on now; KeyError for one that there is not."""
        cls = views.named(name)
        view = self.shown.pop(name, None)
        if view:
            view.end()
            _bar(name).murder()
            return False
        view = self.shown[name] = cls(self)  # type: ignore
        view.begin()
        self._legend(view)
        return True

    def _legend(self, view: View) -> None:
        bar = _bar(view.name)
        bar.setParent(self.level)
        bar.label = view.name
        bar.setPlace(LEFT, TOP + (len(self.shown) - 1) * (HEIGHT + GAP), WIDTH, HEIGHT)
        bar.always = True
        view.controls(bar)

    def doFrame(self) -> None:
        for name, view in list(self.shown.items()):
            try:
                view.doFrame()
            except Exception:
                kaVel.log('The view %r is switched off:\n%s' % (name, traceback.format_exc()))
                self.switch(name)


def _bar(name: str) -> kaVel.ScriptBar:
    return kaVel.getSystem('TweakSystem').makeBar('View ' + name)


def _component(level: kaVel.Coordinator) -> kaVel.EditorComponent:
    """The component that draws for views, made where there is none."""
    entity = level.getChild(ENTITY)
    if entity:
        return entity.getComponent('editor')
    entity = kaVel.make('Entity', parent=level, name=ENTITY)
    component = kaVel.addComponent(entity, 'editor', 'EditorComponent')
    kaVel.finishLoad(entity)
    return component
