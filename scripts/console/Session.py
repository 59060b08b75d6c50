"""The commands of one level's console: how they are told apart, run and completed."""

from __future__ import annotations

import importlib
import traceback
from typing import Any, Callable, NamedTuple

import kaVel

#: Modules whose commands every console has.
MODULES = ('console.Looking', 'console.World', 'console.Lines', 'console.Saves', 'console.Mods', 'console.Python',
           'console.Views')


class Wrong(Exception):
    """What is wrong with a line, and where, as the developer reads it."""


class Command(NamedTuple):
    """A command in Python: `takes` names what each of its words is, for completion; see `console.Completion`."""

    word: str
    param: str
    takes: tuple[str, ...]
    function: Callable[[Session, str], str | None]

    @property
    def description(self) -> str:
        return firstSentence(self.function.__doc__)


_commands: dict[str, Command] = {}


def command(word: str, param: str = '', *takes: str):
    """Makes a function `(session, line)` a command; `param` hints at its arguments in the help."""
    def register(function: Callable[[Session, str], str | None]):
        _commands[word] = Command(word, param, takes, function)
        return function
    return register


def firstSentence(text: str | None) -> str:
    """The first sentence of a comment, on one line."""
    line = ' '.join((text or '').split('\n\n')[0].split())
    end = line.find('. ')
    return line if end < 0 else line[:end + 1]


class Session:
    """One level's console as its commands see it: what is selected and watched lasts as long as the level."""

    def __init__(self, entity: kaVel.Entity):
        self.entity = entity
        self.console = entity.getComponent('console')
        self.level: kaVel.Coordinator = entity.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.selected: Any = None
        self.watches: list[str] = []
        self.completing = ''  # what was wrong with the last line that could not be completed
        self.names: dict[str, Any] = {}  # what Python lines have set

    def switch(self):
        """Opens the console, or closes it."""
        self.console.open = not self.console.open

    def furnish(self):
        """Adds all commands; a module that cannot be read is told of and left out."""
        for name in MODULES:
            try:
                importlib.import_module(name)
            except Exception:
                self.console.complain('The commands of %s are missing:\n%s' % (name, traceback.format_exc()))
        self.console.addCommand(kaVel.ConsoleCommand('console', '', 'Opens or closes the console.', self.switch))
        for entry in _commands.values():
            self.console.addCommand(kaVel.ConsoleCommand(entry.word, entry.param, entry.description,
                                                         self._runner(entry), takesLine=True))
        if 'bind' in _commands:
            importlib.import_module('console.Lines').bringAlong(self)
        self.console.completer = self._complete

    def takes(self, word: str) -> tuple[str, ...]:
        """What the words behind a command are; empty for one that Python does not know."""
        return _commands[word].takes if word in _commands else ()

    def start(self) -> Any:
        """Where paths without a prefix begin: the selected object, or the level."""
        return self.selected or self.level

    def execute(self, line: str) -> bool:
        """Runs a line as if it had been typed; whether nothing complained."""
        before = self.console.complaintCount
        self.console.executeCommand(line)
        return self.console.complaintCount == before

    def _runner(self, entry: Command) -> Callable[[str], None]:
        def run(line: str):
            try:
                answer = entry.function(self, line.strip())
            except Wrong as wrong:
                self.console.complain('%s: %s' % (entry.word, wrong))
            except Exception:
                self.console.complain('%s failed:\n%s' % (entry.word, traceback.format_exc().rstrip()))
            else:
                if answer:
                    kaVel.log(answer)
        return run

    def _complete(self, line: str) -> str:
        try:
            from console.Completion import ways
            return '\n'.join('\t'.join(way) for way in ways(self, line))
        except Exception:
            problem = traceback.format_exc().rstrip()
            if problem != self.completing:  # once, and not with every letter
                self.console.complain('This line cannot be completed:\n%s' % problem)
            self.completing = problem
            return ''
