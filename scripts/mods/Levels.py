"""Levels and patterns that are data: calls of patterns with arguments that are written out. Nothing of them is run.

    ambient = 0.03                   # light from everywhere
    surroundings = "cellar"       # what the place sounds like
    solid = true                     # what stands there stops who walks

    [player]                         # who walks in it; without him a camera flies
    at = [0, 0, -3]
    turn = 10

    [[place]]
    pattern = "FloorBoards"
    name = "floor"
    along = { x = [-2, 0, 2], z = [-1, 1] }     # one at each of these places

    [[place]]
    pattern = "Note"
    name = "letter"
    at = [0.4, 0.77, 1]
    text = { words = "cellar.letter" }          # a text of the tables

A pattern is the same with its own parameters; its parts stand about its own place, and turn with it:

    doc = "A lantern that burns low."
    parameters = { strength = 0.4 }

    [[place]]
    pattern = "SphereLight"
    strength = { parameter = "strength" }
"""

from __future__ import annotations

import inspect
import itertools
import types
from typing import Any, Callable, Mapping, Sequence

import kaVel
from mods.Tomls import Toml

LEVEL_FIELDS = ('ambient', 'surroundings', 'map', 'solid', 'player', 'camera', 'place')
PATTERN_FIELDS = ('doc', 'parameters', 'place')
#: Parameters that each pattern that is data has.
EVERY_PATTERNS = ('parent', 'name', 'at', 'turn', 'given')
#: More objects are none that a level can have.
MOST_PLACES = 20000

_OWN = ('pattern', 'along')  # of a call, what is no argument


class Call:
    """One `[[place]]`: a pattern with its arguments. A fault of it names its line."""

    def __init__(self, toml: Toml, number: int, values: Any):
        self.toml, self.number = toml, number
        if not isinstance(values, dict) or not isinstance(values.get('pattern'), str):
            raise toml.fault('each "place" has to have a "pattern"', '', 'place', number)
        self.pattern: str = values['pattern']
        self.offsets = self._offsets(values.get('along', {}))
        self.arguments = {key: value for key, value in values.items() if key not in _OWN}
        at = self.arguments.get('at', [0, 0, 0])
        if not _isTriple(at) and not (isinstance(at, list) and all(map(_isTriple, at)) and self.offsets == [(0, 0, 0)]):
            raise self.fault('"at" has to be three numbers', 'at')

    def _offsets(self, along: Any) -> list[tuple[float, float, float]]:
        if not isinstance(along, dict) or any(axis not in ('x', 'y', 'z') for axis in along) or not all(
                isinstance(row, list) and all(_isNumber(each) for each in row) for row in along.values()):
            raise self.fault('"along" has to have lists of numbers for x, y or z', 'along')
        rows = [along.get(axis, [0]) for axis in 'xyz']
        if len(rows[0]) * len(rows[1]) * len(rows[2]) > MOST_PLACES:
            raise self.fault('"along" has more than %d places' % MOST_PLACES, 'along')
        return [(float(x), float(y), float(z)) for x, y, z in itertools.product(*rows)]

    def fault(self, text: str, key: str = '') -> Exception:
        return self.toml.fault(text, key, 'place', self.number)

    def make(self, parent: Any, patterns: Mapping[str, Any], parameters: Mapping[str, Any],
             stand: Callable[[dict[str, Any], bool], None] = lambda arguments, turns: None) -> list[Any]:
        """Builds what the call says, at each of its places.

        `stand` takes the arguments to where all of it is, for a pattern that can be turned or one that cannot.
        """
        pattern: Any = patterns.get(self.pattern)
        if not isPattern(pattern):
            known = [name for name, each in patterns.items() if isPattern(each)]
            raise self.fault('no pattern %r%s' % (self.pattern, kaVel.nearestHint(self.pattern, known)), 'pattern')
        turns = 'turn' in inspect.signature(pattern).parameters
        made = []
        for dx, dy, dz in self.offsets:
            arguments = {key: self._given(key, value, parent, parameters) for key, value in self.arguments.items()}
            if (dx, dy, dz) != (0, 0, 0):
                x, y, z = arguments.get('at', (0, 0, 0))
                arguments['at'] = x + dx, y + dy, z + dz
            stand(arguments, turns)
            name = arguments.pop('name', '')
            try:
                made.append(pattern(parent, str(name), **arguments))
            except Exception as error:
                raise self.fault('%s: %s' % (self.pattern, error), 'pattern') from error
        return made

    def _given(self, key: str, value: Any, parent: Any, parameters: Mapping[str, Any]) -> Any:
        """An argument as the pattern takes it: a list as a tuple, a table of one of three names as what it means."""
        if isinstance(value, list):
            return tuple(self._given(key, each, parent, parameters) for each in value)
        if not isinstance(value, dict):
            return value
        if set(value) == {'words'} and isinstance(value['words'], str):
            import words
            return words.said(value['words'])
        if set(value) == {'parameter'}:
            if value['parameter'] not in parameters:
                raise self.fault('no parameter %r%s' % (value['parameter'], kaVel.nearestHint(
                    str(value['parameter']), parameters)), key)
            return self._given(key, parameters[value['parameter']], parent, {})
        if set(value) == {'object'}:
            found = parent.getChild(str(value['object']))
            if not found:
                raise self.fault('there is no object %r yet: it has to stand further up' % value['object'], key)
            return found
        return {name: self._given(key, each, parent, parameters) for name, each in value.items()}


def isPattern(thing: Any) -> bool:
    """Whether a name of `objects.GameObjects` is one that data may call."""
    return callable(thing) and getattr(thing, 'isPattern', False)


def _isNumber(value: Any) -> bool:
    return isinstance(value, (int, float)) and not isinstance(value, bool) and abs(value) < 1e6


def _isTriple(value: Any) -> bool:
    return isinstance(value, dict) or isinstance(value, list) and len(value) == 3 and all(map(_isNumber, value))


def _calls(toml: Toml, fields: Sequence[str]) -> list[Call]:
    for key in toml.values:
        if key not in fields:
            raise toml.fault('there is no field %r%s' % (key, kaVel.nearestHint(key, fields)), key)
    places = toml.values.get('place', [])
    if not isinstance(places, list):
        raise toml.fault('write [[place]], with two brackets', 'place', 'place')
    return [Call(toml, number, each) for number, each in enumerate(places)]


class Level:
    """A level that is data, ready to be built; Fault where it says what cannot be meant."""

    def __init__(self, toml: Toml):
        self.toml, self.calls = toml, _calls(toml, LEVEL_FIELDS)
        values = toml.values
        self.ambient = values.get('ambient', 0.06)
        self.surroundings, self.map = values.get('surroundings', ''), values.get('map', 'map')
        self.isSolid = values.get('solid', True)
        for key, isRight in (('ambient', _isNumber(self.ambient)), ('surroundings', isinstance(self.surroundings, str)),
                             ('map', isinstance(self.map, str) and self.map.isidentifier()),
                             ('solid', isinstance(self.isSolid, bool))):
            if not isRight:
                raise toml.fault('%r cannot be %r' % (key, values[key]), key)
        self.player = self._stand('player')
        self.camera = self._stand('camera')

    def _stand(self, key: str) -> dict[str, Any] | None:
        stand = self.toml.values.get(key)
        if stand is None:
            return None
        known = ('at', 'turn', 'pitch')
        if not isinstance(stand, dict) or not _isTriple(stand.get('at', [0, 0, 0])) or not all(
                each in known and (each == 'at' or _isNumber(value)) for each, value in stand.items()):
            raise self.toml.fault('a %s has "at", three numbers, "turn" and "pitch"' % key, key, key)
        return {'at': tuple(stand.get('at', (0, 0, 0))), 'turn': stand.get('turn', 0), 'pitch': stand.get('pitch', 0)}

    def fill(self, module: types.ModuleType) -> None:
        """Makes a module a level."""
        setattr(module, 'build', self.build)
        setattr(module, self.map, self.buildMap)

    def build(self, coordinator: kaVel.Coordinator) -> None:
        import objects.GameObjects as place
        coordinator.getManager('graphics2').sceneAmbient = float(self.ambient)
        if self.surroundings:
            coordinator.getManager('reverb').surroundings = self.surroundings
        coordinator.loadMap(self.map)
        if self.player:
            place.Player(coordinator, at=self.player['at'], turn=self.player['turn'])
            place.visitorOf(coordinator).goTo(self.player['at'], turn=self.player['turn'], pitch=self.player['pitch'])
            place.Hud(coordinator)
        else:
            place.FreeCamera(coordinator, 'camera', **(self.camera or {'at': (0, 1.7, 0)}))

    def buildMap(self, root: kaVel.MapRootEntity) -> None:
        import objects.GameObjects as place
        for call in self.calls:
            call.make(root, vars(place), {})
        if self.isSolid:
            place.makeSolid(root)


class Pattern:
    """A pattern that is data; Fault where it says what cannot be meant."""

    def __init__(self, name: str, toml: Toml):
        self.name, self.toml, self.calls = name, toml, _calls(toml, PATTERN_FIELDS)
        self.doc = toml.values.get('doc', '')
        self.parameters = toml.values.get('parameters', {})
        if not isinstance(self.parameters, dict) or not isinstance(self.doc, str):
            raise toml.fault('"parameters" has to be a table, and "doc" a text', 'parameters', 'parameters')
        for key in self.parameters:
            if not key.isidentifier() or key in EVERY_PATTERNS:
                raise toml.fault('%r cannot be a parameter of its own' % key, 'parameters', 'parameters')

    def made(self, patterns: Mapping[str, Any]) -> Callable[..., Any]:
        """The pattern as others call it. Its parts are those of `patterns`; its own name there is the one before it."""
        before = patterns.get(self.name)

        def build(parent: Any, name: str = '', at: Sequence[float] = (0, 0, 0), turn: float = 0.0,
                  **given: Any) -> Any:
            from objects.Placing import around, placed
            for key in given:
                if key not in self.parameters:
                    raise TypeError('%s has no parameter %r%s' % (self.name, key, kaVel.nearestHint(
                        key, self.parameters)))
            x, y, z = at
            root = placed(parent, name or self.name, at=(x, y, z), turn=turn)

            def stand(arguments: dict[str, Any], turns: bool) -> None:
                own = arguments.get('at', (0, 0, 0))
                arguments['at'] = (tuple(around((x, y, z), turn, *each) for each in own)
                                   if own and isinstance(own[0], tuple) else around((x, y, z), turn, *own))
                if turns:
                    arguments['turn'] = turn + arguments.get('turn', 0)

            for call in self.calls:
                call.make(root, {**patterns, self.name: before}, {**self.parameters, **given}, stand)
            return root

        own = [inspect.Parameter(name, inspect.Parameter.KEYWORD_ONLY, default=default)
               for name, default in self.parameters.items()]
        known = [each for each in inspect.signature(build).parameters.values() if each.name != 'given']
        build.__signature__ = inspect.Signature([*known, *own])  # type: ignore  # for the editor and the catalogue
        build.__name__ = build.__qualname__ = self.name
        build.__doc__ = self.doc or None
        return kaVel.pattern(build)
