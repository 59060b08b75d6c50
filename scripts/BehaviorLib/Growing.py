"""Short words for building trees: what composites hold, what leaves do, what conditions ask."""

from __future__ import annotations

from typing import Any, Callable

import kaVel


class Growing:
    """The factories of a library, each with the children right in the call.

        grow = Growing(btLib)
        grow.plant('Stroll', grow.sequence(grow.act(kaVel.make('ActWander')), grow.act(kaVel.make('ActLookAbout'))))
    """

    def __init__(self, btLib: kaVel.BTLib):
        self.btLib = btLib

    def plant(self, name: str, root: kaVel.BTTask):
        """Adds the tree to the library under a name."""
        self.btLib.addBehaviorTree(name, root)

    def sequence(self, *children: kaVel.BTTask):
        """Works its children off, one after the other, until one fails."""
        return self._with(self.btLib.BTCreateSequence(), children)

    def selector(self, *children: kaVel.BTTask):
        """Tries its children, one after the other, until one succeeds."""
        return self._with(self.btLib.BTCreateSelector(), children)

    def together(self, *children: kaVel.BTTask):
        """Has its children go on side by side until one fails."""
        return self._with(self.btLib.BTCreateParallelSequence(), children)

    def act(self, action: kaVel.Action):
        """A leaf with an action, which it owns."""
        return self.btLib.BTCreateAction(action)

    def step(self, function: Callable[[kaVel.Entity], kaVel.ActionStatus], inWords: str):
        """A leaf that calls a function of a script with the creature; the words are what the tree tells of it."""
        function.__name__ = function.__qualname__ = inWords
        return self.btLib.BTCreateActionR(function)

    def ask(self, function: Callable[..., Any]):
        """A leaf that asks a function about the creature, one of the engine's or of a script."""
        return self.btLib.BTCreateConditionR(function)

    def tree(self, name: str):
        """A leaf that is another tree of the library."""
        return self.btLib.BTCreateSubtreeLookup(name)

    def _with(self, node: kaVel.BTTask, children: tuple[kaVel.BTTask, ...]):
        for child in children:
            self.btLib.BTAddChild(node, child)
        return node
