"""Functions that want to be called when something changes, kept by what outlives levels."""

from __future__ import annotations

from typing import Callable, Generic, ParamSpec

P = ParamSpec('P')


class Listeners(Generic[P]):
    """Calls functions one after the other, each until it raises, which is logged.

    A function takes the place of one of the same module and name: scripts of levels are read anew with every level.
    """

    def __init__(self, what: str):
        self.what = what
        self.functions: dict[tuple[str, str], Callable[P, object]] = {}

    def add(self, function: Callable[P, object]) -> None:
        self.functions[function.__module__, function.__qualname__] = function

    def call(self, *arguments: P.args, **named: P.kwargs) -> None:
        for key, function in list(self.functions.items()):
            try:
                function(*arguments, **named)
            except Exception as problem:
                import kaVel  # which needs those who have listeners
                self.functions.pop(key, None)
                kaVel.log('%s.%s, which listens to %s, fails and is not called again: %r' % (*key, self.what, problem))
