"""New calls in the scripts of a level: where they go, and how they read."""

from __future__ import annotations

import ast
import importlib
import keyword
import re
from typing import Any, Iterable

import kaVel
from editor.edits import Address
from editor.edits.Refused import Refused
from editor.source import Layout, Literals, Parameters, Tracing
from editor.source.Configuring import canConfigure, configured, configureLine
from editor.source.Files import Function, Script
from editor.source.Patches import textOf
from editor.source.Pieces import LevelPieces, Piece
from editor.source.Sites import Sites, argumentNode

#: So many calls that differ in numbers only become a loop.
LEAST_ROWS = 3


class Home:
    """A function at whose end calls are added, and what it calls the object that they hang things below.

    `isAside` where that is the map in place of what they are to hang below, for which the function has no word.
    """

    def __init__(self, script: Script, function: Function, parent: str, isAside: bool = False):
        self.script, self.function, self.parent, self.isAside = script, function, parent, isAside


class Adding:
    """The calls of all pieces that have been added to a level."""

    def __init__(self, pieces: LevelPieces, sites: Sites, level: Script, splicesOf: Any):
        self._pieces, self._sites, self._level, self._splicesOf = pieces, sites, level, splicesOf
        self._homes: dict[Any, Home] = {}
        self._variables: dict[Piece, str] = {}
        self._taken: dict[Function, set[str]] = {}
        self._assigned: dict[ast.Call, str] = {}  # those that are kept under a name from now on

    def write(self, added: list[Piece], properties: dict[Any, Any]):
        """Writes the calls of new pieces, and what was set of them, at the ends of the functions that hold them."""
        blocks: dict[Function, list[tuple[Home, Piece]]] = {}
        for piece in aboveFirst(added):
            home = self.homeOf(piece, added)
            blocks.setdefault(home.function, []).append((home, piece))
        for function, rows in blocks.items():
            home = rows[0][0]
            self._insert(home.script, function, self._lines(home.script, function, rows, properties))

    # Where

    def homeOf(self, piece: Piece, added: list[Piece]) -> Home:
        above = piece.above
        if above in added and above is not None:
            home = self.homeOf(above, added)
            if not _isTold(above.root, piece.parent):
                return self._ofMap(piece.parent)
            name = self.variableOf(above, home.function)
            return Home(home.script, home.function, self.below(name, above.root, piece.parent))
        if self._hasNamesake(piece):
            return self._ofMap(piece.parent)  # behind all others of its name, which are told by their order
        key = piece.parent, piece.section
        if key not in self._homes:
            self._homes[key] = self._sought(piece)
        return self._homes[key]

    def _hasNamesake(self, piece: Piece) -> bool:
        """Whether the scripts hang something of its name where it hangs."""
        return any(each.source and each.source.above is piece.above and each.source.steps == piece.steps
                   and piece.name in (each.name, each.source.name) for each in self._pieces.everyone())

    def _sought(self, piece: Piece) -> Home:
        parent: Any = piece.parent
        if parent == self._pieces.level:
            build = self._level.function('build')
            if build:
                return Home(self._level, build, Tracing.parametersOf(build)[0])
        isMap = parent._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)
        section = self._level.function(piece.section) if piece.section else None
        if isMap and section and Tracing.parametersOf(section):
            return Home(self._level, section, Tracing.parametersOf(section)[0])
        home = None if isMap else self._bySiblings(piece) or self._byVariable(parent)
        return self._ofMap(parent) if home is None or self.wouldBeSolid(piece, home.function) else home

    def wouldBeSolid(self, piece: Piece, function: Function) -> bool:
        """Whether the level would make a piece solid, with all the others, that a function called for."""
        if any(each.getName() == function.name for each in self._pieces.maps()):
            return False  # at its end all is done
        names = {getattr(node, 'id', getattr(node, 'attr', '')) for node in ast.walk(self._level.tree)}
        return 'makeSolid' in names and any(map(_bodies().isInTheWay, kaVel.descendants(piece.root)))

    def _bySiblings(self, added: Piece) -> Home | None:
        """The function that builds what hangs where a piece does, if it does that for this object alone."""
        holds: dict[Function, list[Piece]] = {}
        scripts: dict[Function, Script] = {}
        names: dict[Function, str] = {}
        for site in self._sites.all():
            for piece in site.pieces:
                scope = site.scopeOf.get(piece)
                node = scope.call.args[0] if scope and scope.call.args else None
                if scope and scope.function and isinstance(node, ast.Name) \
                        and node.id in Tracing.parametersOf(scope.function)[:1] and not piece.removed:
                    holds.setdefault(scope.function, []).append(piece)
                    scripts[scope.function], names[scope.function] = scope.script, node.id
        fitting = [function for function, children in holds.items()
                   if all(child.source and child.source.above is added.above and child.source.steps == added.steps
                          for child in children)]
        if not fitting:
            return None
        best = max(fitting, key=lambda function: len(holds[function]))
        return Home(scripts[best], best, names[best])

    def _byVariable(self, parent: Any) -> Home | None:
        """The function that makes what an object hangs in, with a name for it."""
        piece = self._pieces.pieceOf(parent)
        scope = self._sites.scopeOf(piece) if piece else None
        if piece is None or scope is None or scope.function is None or not self._isOnce(scope.call):
            return None
        statement = scope.script.parent(scope.call)
        if scope.script.parent(statement) is not scope.function if statement else True:
            return None  # in a loop or a branch
        name = self.kept(piece, scope.script, scope.function, scope.call) if _isTold(piece.root, parent) else ''
        return None if not name else Home(scope.script, scope.function, self.below(name, piece.root, parent))

    def _isOnce(self, call: ast.Call) -> bool:
        return len(self._sites.through.get(call, ())) == 1

    def kept(self, piece: Piece, script: Script, function: Function, call: ast.Call) -> str:
        """The name under which a statement keeps a piece from now on; '' where it cannot."""
        statement = script.parent(call)
        if isinstance(statement, ast.Assign) and len(statement.targets) == 1 \
                and isinstance(statement.targets[0], ast.Name):
            return statement.targets[0].id
        if not isinstance(statement, ast.Expr):
            return ''
        if call not in self._assigned:
            self._assigned[call] = self.variableFor(piece, function)
            self._splicesOf(script).insertBefore(call, self._assigned[call] + ' = ')
        return self._assigned[call]

    def _ofMap(self, parent: Any) -> Home:
        """The function of the map that an object stands in.

        What stands in the way down to the object may be called otherwise by then: no path leads to a piece.
        """
        isMap = parent._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)
        map_ = parent if isMap else parent.getAncestorOfType(kaVel.Reflection.MapRootEntity)
        root = map_ or self._pieces.level
        function = self._level.function(map_.getName() if map_ else 'build')
        if function is None or not Tracing.parametersOf(function):
            raise Refused('%s has no function %s(map) that something could be added to'
                          % (self._level.file, root.getName()))
        name = Tracing.parametersOf(function)[0]
        if self._pieces.pieceOf(parent) or not _isTold(root, parent):
            return Home(self._level, function, name, isAside=True)
        return Home(self._level, function, self.below(name, root, parent))

    @staticmethod
    def below(name: str, root: Any, entity: Any) -> str:
        """The text that stands for an object below one that has a name."""
        path = kaVel.pathOf(entity)[len(kaVel.pathOf(root)) + 1:] if entity != root else ''
        return '%s.getDescendantByPath(%r)' % (name, path) if path else name

    def variableOf(self, piece: Piece, function: Function) -> str:
        if piece not in self._variables:
            self._variables[piece] = self.variableFor(piece, function)
        return self._variables[piece]

    def variableFor(self, piece: Piece, function: Function) -> str:
        """A name for a piece that nothing in a function has yet."""
        taken = self._taken.setdefault(function, {each.id for each in ast.walk(function) if isinstance(each, ast.Name)}
                                       | set(Tracing.parametersOf(function)))
        base = re.sub(r'\W+', '', piece.name) or 'thing'
        base = base if base.isidentifier() and not keyword.iskeyword(base) else 'the' + base[:1].upper() + base[1:]
        name, number = base, 2
        while name in taken:
            name, number = '%s%d' % (base, number), number + 1
        taken.add(name)
        return name

    def _insert(self, script: Script, function: Function, lines: str):
        last = function.body[-1]
        self._splicesOf(script).insertLines(last, lines, before=isinstance(last, ast.Return))

    # How

    def _lines(self, script: Script, function: Function, rows: list[tuple[Home, Piece]],
               properties: dict[Any, Any]) -> str:
        indent = function.body[0].col_offset
        changed = {address[0] for address, _ in properties} | {piece.number for _, piece in rows if piece.touches
                                                               or piece.touches is not None and piece.stand.isFenced}
        lines, run = [], []
        parents = {piece.above for _, piece in rows}
        for home, piece in [*rows, (None, None)]:
            isPlain = piece is not None and piece not in parents and piece not in self._variables \
                and piece.number not in changed
            if run and not (isPlain and home and self._goOn(script, run, home, piece)):
                lines.append(self._run(script, indent, run))
                run = []
            if isPlain:
                run.append((home, piece))
            elif home and piece:
                lines.append(self._one(script, indent, home, piece, properties))
        return ''.join(lines)

    def _goOn(self, script: Script, run: list[Any], home: Home, piece: Any) -> bool:
        """Whether a call is like the last ones but for numbers, and its name the same or the next in a row."""
        (_, first), last = run[0], run[-1][1]
        return (home.parent == run[0][0].parent and piece.pattern is first.pattern
                and list(piece.given) == list(first.given) and _nameGoesOn(run, last.name, piece.name)
                and all(_isShapedLike(piece.given[name], first.given[name]) for name in piece.given))

    def _run(self, script: Script, indent: int, run: list[Any]) -> str:
        texts = [self._arguments(script, piece) for _, piece in run]
        if len(run) < LEAST_ROWS or len({tuple(sorted(each.items())) for each in texts}) == 1 and len(run) < 2:
            return ''.join(self._one(script, indent, home, piece, {}) for home, piece in run)
        return self._loop(script, indent, run)

    def _loop(self, script: Script, indent: int, run: list[Any]) -> str:
        """A loop over a table of what the calls differ in."""
        home, first = run[0]
        columns: list[tuple[str, list[str]]] = []   # variables of the loop and their texts row by row
        arguments = []
        for name, value in first.given.items():
            values = [piece.given[name] for _, piece in run]
            arguments.append('%s=%s' % (name, self._varied(script, name, values, columns)))
        names = [piece.name for _, piece in run]
        shown, start = _names(names)
        rows = ['(%s)' % ', '.join(texts) for texts in zip(*(texts for _, texts in columns))] if len(columns) > 1 else \
            list(columns[0][1]) if columns else [str(number) for number in range(len(run))]
        target = ', '.join(name for name, _ in columns) or '_'
        if start is None:
            head, tail = 'for %s in (' % target, '):'
        else:
            target = '(%s)' % target if len(columns) > 1 else target
            head, tail = 'for number, %s in enumerate((' % target, '), %d):' % start if start else ')):'
        body = Layout.call(indent + 4, self._callee(script, first) + '(', [home.parent, shown, *arguments])
        return Layout.wrapped(indent, head, rows, tail) + '\n' + body

    def _varied(self, script: Script, name: str, values: list[Any], columns: list[tuple[str, list[str]]]) -> str:
        """The text of an argument in a loop: what differs from row to row becomes a column."""
        def column(title: str, numbers: Iterable[Any], isAngle: bool) -> str:
            texts = [textOf(each, script, isAngle) for each in numbers]
            if len(set(texts)) == 1:
                return texts[0]
            columns.append((title, texts))
            return title
        if name == 'at' and all(isinstance(each, tuple) and len(each) == 3 for each in values):
            return '(%s)' % ', '.join(column(axis, (each[number] for each in values), False)
                                      for number, axis in enumerate('xyz'))
        return column(name, values, name in Literals.ANGLES)

    def _one(self, script: Script, indent: int, home: Home, piece: Piece, properties: dict[Any, Any]) -> str:
        arguments = ['%s=%s' % each for each in self._arguments(script, piece).items()]
        name = [repr(piece.name)] if Parameters.nameParameter(piece.pattern) else []
        below = _done(piece, properties)
        if below:
            self.imported(script, 'kaVel')
        isSolid = piece.touches is not None and piece.stand.isFenced
        keeps = piece in self._variables or bool(below) or isSolid
        variable = self.variableOf(piece, home.function) if keeps else ''
        head = '%s%s(' % (variable + ' = ' if keeps else '', self._callee(script, piece))
        return Layout.call(indent, head, [home.parent, *name, *arguments]) \
            + ''.join(configureLine(indent, variable, path, values) for path, values in below.items()) \
            + (self._solid(script, indent, variable) if isSolid else '')

    def _solid(self, script: Script, indent: int, variable: str) -> str:
        name = self.imported(script, Parameters.CATALOGUE, 'place')
        return '%s%s.makeSolid(%s)\n' % (' ' * indent, name, variable)

    def _arguments(self, script: Script, piece: Piece) -> dict[str, str]:
        return {name: self._text(script, piece, name, value) for name, value in piece.given.items()}

    def _text(self, script: Script, piece: Piece, name: str, value: Any) -> str:
        try:
            return textOf(value, script, name in Literals.ANGLES)
        except Literals.NoLiteral:
            text = self._copied(script, value)
            if text is None:
                raise Refused('%s of %r is %r, which no text stands for: leave it to the script that made it'
                              % (name, piece.name, value)) from None
            return text

    def _copied(self, script: Script, value: Any) -> str | None:
        """The text by which another piece of this script was given the very same value, if it means the same here."""
        for site in self._sites.all():
            for piece in site.pieces:
                scope = site.scopeOf.get(piece)
                for name, each in piece.given.items() if scope and scope.script is script else ():
                    node = argumentNode(scope.call, piece.pattern, name) if scope and each is value else None
                    if node is not None and all(not isinstance(part, ast.Name) or part.id in script.globals()
                                                for part in ast.walk(node)):
                        return script.source(node)
        return None

    def _callee(self, script: Script, piece: Piece) -> str:
        """What a script calls a pattern; the import that it takes is added."""
        module, _, name = piece.patternName.rpartition('.')
        if module and script.module is not None and module == script.module.__name__:
            return name
        module = module or Parameters.CATALOGUE
        return '%s.%s' % (self.imported(script, module, 'place' if module == Parameters.CATALOGUE else ''), name)

    def imported(self, script: Script, module: str, alias: str = '') -> str:
        """What a script calls a module, which it imports from now on if it has not."""
        for node in script.tree.body:
            for each in node.names if isinstance(node, ast.Import) else ():
                if each.name == module:
                    return each.asname or each.name
        self._import(script, 'import %s%s\n' % (module, ' as ' + alias if alias else ''))
        return alias or module

    def _import(self, script: Script, line: str):
        splices = self._splicesOf(script)
        if line in splices.imports:
            return
        splices.imports.add(line)
        imports = [node for node in script.tree.body if isinstance(node, (ast.Import, ast.ImportFrom))
                   and not (isinstance(node, ast.ImportFrom) and node.module == '__future__')]
        behind = [node for node in imports if isinstance(node, ast.Import) and script.source(node) + '\n' < line]
        if imports:
            splices.insertLines((behind or imports)[-1 if behind else 0], line, before=not behind)
        else:
            isDocumented = bool(script.tree.body) and ast.get_docstring(script.tree) is not None
            splices.insertAt((script.tree.body[0].end_lineno or 0) + 1 if isDocumented else 1,
                             '\n' + line if isDocumented else line + '\n')


def _bodies() -> Any:
    """The module as the level has it, which may have read it anew."""
    return importlib.import_module('objects.things.Bodies')


def _isTold(root: Any, entity: Any) -> bool:
    """Whether a path tells an object below another one from its siblings."""
    return all(name and not number for name, number in Address.below(root, entity))


def aboveFirst(added: list[Piece]) -> list[Piece]:
    """New pieces in their order, but that each stands behind the one that it hangs below."""
    found: dict[Piece, None] = {}
    for piece in added:
        chain = [piece]
        while chain[-1].above in added and chain[-1].above is not None:
            chain.append(chain[-1].above)
        found.update(dict.fromkeys(reversed(chain)))
    return list(found)


def _done(piece: Piece, properties: dict[Any, Any]) -> dict[tuple[Any, ...], dict[str, Any]]:
    """What is to be set of objects below a new piece: what a script had set of one that was removed and brought back,
    and what was set since.
    """
    found: dict[tuple[Any, ...], dict[str, Any]] = {}
    for steps, name, value in piece.touches or ():
        if canConfigure(steps, {name: value}):
            found.setdefault(steps, {})[name] = value
    for steps, values in configured(piece, properties).items():
        found.setdefault(steps, {}).update(values)
    return found


def _split(name: str) -> tuple[str, int | None]:
    match = re.fullmatch(r'(.*?\D)(\d+)', name)
    return (match[1], int(match[2])) if match else (name, None)


def _nameGoesOn(run: list[Any], last: str, name: str) -> bool:
    if name == last:
        return len(run) < 2 or run[0][1].name == name
    (base, number), (nextBase, nextNumber) = _split(last), _split(name)
    return base == nextBase and number is not None and nextNumber == number + 1


def _names(names: list[str]) -> tuple[str, int | None]:
    """The text of the name in a loop, and the number of the first row where names are numbered."""
    if len(set(names)) == 1:
        return repr(names[0]), None
    base, number = _split(names[0])
    return '%r %% number' % (base.replace('%', '%%') + '%d'), number


def _isShapedLike(one: Any, other: Any) -> bool:
    """Whether two values differ in numbers only."""
    if isinstance(one, tuple) and isinstance(other, tuple):
        return len(one) == len(other) and all(map(_isShapedLike, one, other))
    numbers = isinstance(one, (int, float)) and isinstance(other, (int, float))
    return numbers and isinstance(one, bool) == isinstance(other, bool) or one is other or one == other
