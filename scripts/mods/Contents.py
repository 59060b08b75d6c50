"""What a mod brings, by kind and name, as its files say it: none of it is run to find out.

    textures/   pictures, .dds or .png             models/     .kaVelModel
    sounds/     samples, and events in kaVel.fev   words/      tables of texts, a language each, .toml
    fonts/      .ttf or .otf                       effects/    .fx, and what those include
    levels/     .toml, or .py of a script mod      patterns/   .toml, or .py of a script mod
    scripts/    what those of a script mod import   levels/    .changes, of a level that it changes
"""

from __future__ import annotations

import ast
import os
import re
from typing import Any, Callable, NamedTuple

import kaVel
from mods.Files import File
from mods.Tomls import Fault, Toml

PICTURES, SAMPLES, FONTS = ('.dds', '.png'), ('.ogg', '.wav', '.flac'), ('.ttf', '.otf')
MODEL = '.kaVelModel'
SOUND_PROJECT = 'sounds/kaVel.fev'

_IDENTIFIER = re.compile(r'[A-Za-z]\w{0,59}', re.ASCII)
_EVENT = re.compile(r'\s*event\s+"?(\w+)')

#: Kind and name of something that one mod alone can bring: ('texture', 'rugDiffuse'), ('text', 'german menu.back').
Key = tuple[str, str]


class Contents:
    """What is in one mod. `brings` has the file of each thing, by its kind and name."""

    def __init__(self, name: str, folder: str, files: list[File], isScript: bool, sources: dict[str, bytes]):
        self.shown, self.isScript = os.path.basename(folder), isScript
        #: The package that the scripts are in, as 'mod_night_caller'.
        self.package = 'mod_' + name.replace('-', '_')
        self.sources = sources
        self.brings: dict[Key, str] = {}
        self.levels: dict[str, Toml] = {}
        self.patterns: dict[str, Toml] = {}
        self.words: dict[str, Words] = {}
        self.modules: dict[str, str] = {}  # name of a module -> file of a script mod
        self.unread = 0  # scripts that stand in a mod without
        for file in files:
            self._take(file)

    def _take(self, file: File) -> None:
        room, _, name = file.name.partition('/')
        if file.name.endswith('.py') and not self.isScript:
            self.unread += 1
        elif name and room in _ROOMS:
            _ROOMS[room](self, file, name)
        elif name:
            hint = kaVel.nearestHint(room, _ROOMS)
            if hint:
                raise Fault('%s/%s' % (self.shown, room), 0, 'a mod has no folder of this name' + hint)

    def _bring(self, kind: str, name: str, file: File) -> None:
        if (kind, name) in self.brings:
            raise Fault('%s/%s' % (self.shown, file.name), 0, 'there is already %s for the %s %r' % (
                self.brings[kind, name], kind, name))
        self.brings[kind, name] = file.name

    def _texture(self, file: File, name: str) -> None:
        stem, extension = os.path.splitext(name)
        if extension in PICTURES:
            self._bring('texture', stem, file)

    def _model(self, file: File, name: str) -> None:
        if name.endswith(MODEL):
            self._bring('model', name[:-len(MODEL)], file)

    def _font(self, file: File, name: str) -> None:
        if name.endswith(FONTS):
            self._bring('font', name, file)

    def _effect(self, file: File, name: str) -> None:
        if name.endswith('.fx'):
            self._bring('effect', name, file)

    def _sound(self, file: File, name: str) -> None:
        if file.name == SOUND_PROJECT:
            for event in _eventsOf(file.path):
                self._bring('sound', event, file)
        elif name.endswith(SAMPLES):
            self._bring('sample', name, file)

    def _wordsOf(self, file: File, name: str) -> None:
        language = self._stem(file, name, '.toml')
        if language:
            self.words[language] = Words(Toml(file.path, '%s/%s' % (self.shown, file.name)))
            for key in self.words[language].texts:
                self._bring('text', '%s %s' % (language, key), file)

    def _level(self, file: File, name: str) -> None:
        changed = self._stem(file, name, '.changes')
        if changed:
            self._bring('change', changed, file)
            return
        level = self._stem(file, name, '.toml') or self._script(file, name, 'levels.')
        if level:
            self._bring('level', level, file)
        if name.endswith('.toml'):
            self.levels[level] = Toml(file.path, '%s/%s' % (self.shown, file.name))

    def _pattern(self, file: File, name: str) -> None:
        pattern = self._stem(file, name, '.toml')
        if pattern:
            self._bring('pattern', pattern, file)
            self.patterns[pattern] = Toml(file.path, '%s/%s' % (self.shown, file.name))
        elif self._script(file, name, self.package + '.patterns.'):
            for each in _patternsIn(self.sources[file.name], '%s/%s' % (self.shown, file.name)):
                self._bring('pattern', each, file)

    def _module(self, file: File, name: str) -> None:
        if name.endswith('.py'):
            parts = name[:-len('.py')].removesuffix('__init__').strip('/').split('/')
            self.modules['.'.join([self.package, *filter(None, parts)])] = file.name

    def _script(self, file: File, name: str, package: str) -> str:
        """Takes a module in; the last part of its name, empty where it is none."""
        stem = self._stem(file, name, '.py') if name != '__init__.py' else ''
        if stem:
            self.modules[package + stem] = file.name
        return stem

    def _stem(self, file: File, name: str, extension: str) -> str:
        """The name of a file without its extension, which has to be one of a script; empty for one of other kinds."""
        if not name.endswith(extension):
            return ''
        stem = name[:-len(extension)]
        if not _IDENTIFIER.fullmatch(stem):
            raise Fault('%s/%s' % (self.shown, file.name), 0, '%r is no name: letters, digits and "_"' % stem)
        return stem


class Words:
    """The texts of one language that a mod brings, by their keys; tables in tables are keys with dots."""

    def __init__(self, toml: Toml):
        self.toml = toml
        self.texts: dict[str, str] = {}
        self._take('', toml.values)

    def readAnew(self) -> None:
        """Takes the file as it is now, for all who have the texts; Fault, and they stay, where it is none."""
        fresh = Words(self.toml.anew())
        self.toml = fresh.toml
        self.texts.clear()
        self.texts.update(fresh.texts)

    def _take(self, above: str, values: dict[str, Any]) -> None:
        for name, value in values.items():
            key = above + name
            if isinstance(value, dict):
                self._take(key + '.', value)
            elif isinstance(value, str):
                self.texts[key] = value
            else:
                raise self.toml.fault('%r has to be a text' % key, key)

    def lineOf(self, key: str) -> int:
        table, _, last = key.rpartition('.')
        return self.toml.lineOf(key) or self.toml.lineOf(last, table)


def _eventsOf(path: str) -> list[str]:
    """Names of the events of a sound project, whose lines the engine reads later."""
    with open(path, encoding='utf-8', errors='replace') as file:
        found = (_EVENT.match(line) for line in file)
        return list(dict.fromkeys(each[1] for each in found if each))


def _patternsIn(source: bytes, shown: str) -> list[str]:
    """Names of the patterns of a script, as it stands there; Fault where it is no Python."""
    try:
        tree = ast.parse(source)
    except (SyntaxError, ValueError) as error:
        raise Fault(shown, getattr(error, 'lineno', 0) or 0, str(getattr(error, 'msg', error))) from None
    return [each.name for each in tree.body if isinstance(each, ast.FunctionDef)
            and any(ast.unparse(decorator).endswith('pattern') for decorator in each.decorator_list)]


_ROOMS: dict[str, Callable[[Contents, File, str], None]] = {
    'textures': Contents._texture, 'models': Contents._model, 'sounds': Contents._sound, 'words': Contents._wordsOf,
    'fonts': Contents._font, 'effects': Contents._effect, 'levels': Contents._level, 'patterns': Contents._pattern,
    'scripts': Contents._module}


class Conflict(NamedTuple):
    """Something that two mods bring: the one of `winner`, which is loaded later, is the one that there is."""

    kind: str
    name: str
    winner: str
    loser: str

    def __str__(self) -> str:
        return 'the %s %r of %s is used in place of that of %s' % (self.kind, self.name, self.winner, self.loser)


def conflictsOf(order: list[tuple[str, Contents]]) -> list[Conflict]:
    """Which of the mods, in the order of loading, bring the same."""
    owner: dict[Key, str] = {}
    found = []
    for name, contents in order:
        for key in contents.brings:
            if key in owner and key[0] != 'change':  # of a level, which may be changed by several
                found.append(Conflict(*key, name, owner[key]))
            owner[key] = name
    return found
