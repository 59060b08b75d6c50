"""Other arguments, written where their values stand: in the call, in a row of a loop's table, in the caller's call.

A change is a wish that some nodes of the scripts read otherwise. It is granted if all pieces that come by these nodes
are then as the level has them; whatever would disturb another piece, or stands in what only the script knows, is not.
"""

from __future__ import annotations

import ast
from typing import Any, Iterable

from editor.source import Literals, Tracing
from editor.source.Files import Function, Script
from editor.source.Pieces import Piece
from editor.source.Sites import Site, Sites, argumentNode
from editor.source.Tracing import Scope, Thing, Unknown

#: Directions that a level may have names for, by degrees.
DIRECTIONS: dict[float, str] = {0: 'NORTH', 90: 'EAST', 180: 'SOUTH', -90: 'WEST'}
#: Beyond this many degrees from a direction, an angle is a number of its own.
NEAR = 45

#: A node, or a call and the name of an argument that it does not give yet.
Key = Any


class Reading(Exception):
    """A value that stands nowhere where it could be written."""


class Edit:
    """Another text for a node, or a further argument of a call."""

    def __init__(self, script: Script, value: Any, text: str):
        self.script, self.value, self.text = script, value, text


class Wish:
    """That one argument of a piece have another value."""

    def __init__(self, piece: Piece, name: str, value: Any):
        self.piece, self.name, self.value = piece, name, value
        self.edits: dict[Key, Edit] = {}
        self.crossed: list[tuple[Script, ast.AST, str]] = []  # names on the way to what is edited, and who binds them

    def edit(self, key: Key, script: Script, value: Any, text: str):
        known = self.edits.get(key)
        if known and not Literals.alike(known.value, value):
            raise Reading
        self.edits[key] = Edit(script, value, text)


class Patches:
    """The edits by which the scripts of a level come to say what its pieces have become."""

    def __init__(self, sites: Sites):
        self.sites = sites
        self.edits: dict[Key, Edit] = {}
        self.refused: list[tuple[Piece, str, Any]] = []  # what has to be noted elsewhere
        self._granted: list[Wish] = []
        self._calls = {scope.call for site in sites.all() for run in site.scopes for scope in _chain(run)}

    def grant(self, changes: Iterable[tuple[Piece, str, Any]]):
        """Finds edits for changes of arguments; those that cannot be written are in `refused`."""
        wishes: list[Wish] = []
        for piece, name, value in changes:
            wish = self._traced(piece, name, value) or self._replaced(piece, name, value)
            if wish:
                wishes.append(wish)
            else:
                self.refused.append((piece, name, value))
        while True:
            denied = self._denied(wishes)
            if not denied:
                break
            wishes = [wish for wish in wishes if wish not in denied]
            for wish in denied:
                again = None if _isWhole(wish) else self._replaced(wish.piece, wish.name, wish.value)
                if again:
                    wishes.append(again)
                else:
                    self.refused.append((wish.piece, wish.name, wish.value))
        for wish in wishes:
            self.edits.update(wish.edits)
        self._granted = wishes

    def renamed(self) -> set[Piece]:
        """The pieces that have another name in the scripts from now on."""
        return {wish.piece for wish in self._granted if wish.name == 'name'}

    # Ways to write one

    def _traced(self, piece: Piece, name: str, value: Any) -> Wish | None:
        """A wish that follows a value to the literals that it comes from."""
        scope = self.sites.scopeOf(piece)
        if scope is None or not self.sites.isDirect(piece, scope):
            return None
        wish = Wish(piece, name, value)
        node = argumentNode(scope.call, piece.pattern, name)
        try:
            if node is None:
                self._insert(wish, scope, name, value)
            else:
                self._turn(wish, Thing(node, scope), value, name in Literals.ANGLES)
        except (Reading, Unknown, Literals.NoLiteral):
            return None
        return wish if all(self._isCovered(*each) for each in wish.crossed) else None

    @staticmethod
    def _insert(wish: Wish, scope: Scope, name: str, value: Any):
        if any(word.arg is None for word in scope.call.keywords):
            raise Reading
        wish.edit((scope.call, name), scope.script, value, textOf(value, scope.script, name in Literals.ANGLES))

    def _replaced(self, piece: Piece, name: str, value: Any) -> Wish | None:
        """A wish that puts a literal in the place of an expression, in a call that made this piece only."""
        site, scope = self.sites.of(piece), self.sites.scopeOf(piece)
        if site is None or scope is None or not self._isAlone(site, scope) or not self.sites.isDirect(piece, scope):
            return None
        node = argumentNode(scope.call, piece.pattern, name)
        if node is None:
            return None
        wish = Wish(piece, name, value)
        try:
            wish.edit(node, scope.script, value, textOf(value, scope.script, name in Literals.ANGLES))
        except Literals.NoLiteral:
            return None
        return wish

    def _isAlone(self, site: Site, scope: Scope) -> bool:
        return len(site.pieces) == 1 and len(self.sites.through.get(scope.call, ())) == 1

    def _turn(self, wish: Wish, thing: Thing, value: Any, isAngle: bool):
        """Has what stands at a thing come to a value."""
        values = self.sites.values
        if thing.node is None or thing.scope is None:
            raise Reading
        present = values.of(thing)
        if Literals.alike(present, value):
            return
        node, scope = thing.node, thing.scope
        if _isLiteral(node):
            wish.edit(node, scope.script, value, textOf(value, scope.script, isAngle))
        elif isinstance(node, (ast.Tuple, ast.List)):
            if not isinstance(value, (tuple, list)) or len(value) != len(node.elts):
                raise Reading
            for each, part in zip(node.elts, value):
                self._turn(wish, Thing(each, scope), part, isAngle)
        elif isinstance(node, ast.Name):
            self._turnName(wish, node, scope, present, value, isAngle)
        elif isinstance(node, ast.BinOp) and isinstance(node.op, (ast.Add, ast.Sub)):
            self._turnSum(wish, node, scope, value - present, isAngle)
        else:
            raise Reading

    def _turnName(self, wish: Wish, node: ast.Name, scope: Scope, present: Any, value: Any, isAngle: bool):
        bound = self.sites.values.bound(node, scope)
        binder = _binderOf(node, scope)
        if bound is not None and bound.node is not None and binder is not None:
            wish.crossed.append((scope.script, binder, node.id))
            self._turn(wish, bound, value, isAngle)
            return
        if binder is None and node.id not in scope.rows and isinstance(value, (int, float)):
            wish.edit(node, scope.script, value, _besides(node.id, present, value, scope.script, isAngle))
            return
        raise Reading

    def _turnSum(self, wish: Wish, node: ast.BinOp, scope: Scope, by: Any, isAngle: bool):
        values, sign = self.sites.values, 1 if isinstance(node.op, ast.Add) else -1
        left, right = values.value(node.left, scope), values.value(node.right, scope)
        if not all(isinstance(each, (int, float)) for each in (left, right, by)):
            raise Reading
        # What changes with the row or the caller is changed there; a sum of a name and a number has another number.
        if _varies(node.left, scope):
            self._turn(wish, Thing(node.left, scope), _tidy(left + by, isAngle), isAngle)
        elif _varies(node.right, scope):
            self._turn(wish, Thing(node.right, scope), _tidy(right + sign * by, isAngle), isAngle)
        elif _isLiteral(node.right):
            self._turnSummand(wish, node, scope, left, sign * right + by, isAngle)
        elif _isLiteral(node.left):
            self._turn(wish, Thing(node.left, scope), _tidy(left + by, isAngle), isAngle)
        else:
            raise Reading

    def _turnSummand(self, wish: Wish, node: ast.BinOp, scope: Scope, left: Any, more: float, isAngle: bool):
        """Has a sum whose second part is a number have another one: 'UP + 0.65'."""
        script = scope.script
        more = _tidy(more, isAngle)
        if isAngle and isinstance(node.left, ast.Name):
            text = _besides(node.left.id, left, _tidy(left + more, True), script, True)
        elif more == 0:
            text = script.source(node.left)
        else:
            text = '%s %s %s' % (script.source(node.left), '-' if more < 0 else '+', Literals.show(abs(more)))
        wish.edit(node, script, _tidy(left + more, isAngle), text)

    def _isCovered(self, script: Script, binder: ast.AST, name: str) -> bool:
        """Whether all that a name is used for are calls that are followed: nothing else then hangs on its value."""
        for node in ast.walk(binder):
            if isinstance(node, ast.Name) and node.id == name and isinstance(node.ctx, ast.Load):
                if not any(each in self._calls for each in script.above(node)):
                    return False
        return True

    # Whether they agree

    def _denied(self, wishes: list[Wish]) -> list[Wish]:
        """The wishes that contradict each other or would disturb a piece."""
        edits: dict[Key, Edit] = {}
        clashing: set[Key] = set()
        for wish in wishes:
            for key, edit in wish.edits.items():
                if key in edits and not Literals.alike(edits[key].value, edit.value):
                    clashing.add(key)
                edits[key] = edit
        if not clashing:
            clashing = self._disturbing(edits)
        return [wish for wish in wishes if clashing & wish.edits.keys()]

    def _disturbing(self, edits: dict[Key, Edit]) -> set[Key]:
        """The edits by which a piece would not be as the level has it."""
        values = self.sites.values
        values.replaced = {key: edit.value for key, edit in edits.items() if not isinstance(key, tuple)}
        values.inserted = {key: edit.value for key, edit in edits.items() if isinstance(key, tuple)}
        where: dict[int, set[Key]] = {}
        for key, edit in edits.items():
            for function in _functionsOf(key, edit.script):
                where.setdefault(id(function), set()).add(key)
        found: set[Key] = set()
        try:
            for site in self.sites.all():
                near = {key for run in site.scopes[:1] for scope in _chain(run)
                        for key in where.get(id(scope.function), ())}
                for piece in site.pieces if near else ():
                    found |= self._disturbed(piece, site.scopeOf.get(piece), near)
        finally:
            values.replaced, values.inserted = {}, {}
        return found

    def _disturbed(self, piece: Piece, scope: Scope | None, edits: set[Key]) -> set[Key]:
        """The edits that a piece comes by, if they do not make it what it is; one that is removed keeps its name, by
        which that is noted.
        """
        values = self.sites.values
        if scope is None:
            return set() if piece.removed else edits  # who knows
        name = piece.source.name if piece.removed and piece.source else piece.name
        given: dict[str, Any] = dict(piece.arguments, name=name)
        told = {} if piece.removed else {**piece.given,
                                         **{key[1]: 0 for key in values.inserted if key[0] is scope.call}}
        disturbed: set[Key] = set()
        for name in {**told, 'name': 0}:
            values.touched.clear()
            try:
                value = self._argument(piece, scope, name)
                fits = value is Patches or close(name, value, given.get(name, value))
            except Unknown:
                fits = False
            if not fits:
                disturbed |= {key for key in edits if key in values.touched}
        return disturbed

    def _argument(self, piece: Piece, scope: Scope, name: str) -> Any:
        """What a piece's call would give for an argument; `Patches` itself where it gives nothing."""
        values = self.sites.values
        if (scope.call, name) in values.inserted:
            values.touched.add((scope.call, name))
            return values.inserted[scope.call, name]
        node = argumentNode(scope.call, piece.pattern, name)
        return Patches if node is None else values.value(node, scope)


def close(name: str, one: Any, other: Any) -> bool:
    """Whether two values are the same but for the rounding of what hung on a moved thing."""
    if isinstance(one, (tuple, list)) and isinstance(other, (tuple, list)):
        return len(one) == len(other) and all(close(name, a, b) for a, b in zip(one, other))
    if isinstance(one, (int, float)) and isinstance(other, (int, float)):
        return abs(one - other) <= (0.051 if name in Literals.ANGLES else 0.00051)
    return Literals.alike(one, other)


def _chain(scope: Scope | None) -> Iterable[Scope]:
    while scope:
        yield scope
        scope = scope.caller


def _isWhole(wish: Wish) -> bool:
    """Whether a wish has tried the last way already, a literal for the argument as a whole."""
    return bool(wish.edits) and all(Literals.alike(edit.value, wish.value) for edit in wish.edits.values())


def _isLiteral(node: ast.expr) -> bool:
    if isinstance(node, ast.UnaryOp) and isinstance(node.op, ast.USub):
        node = node.operand
    return isinstance(node, ast.Constant)


def _binderOf(node: ast.Name, scope: Scope) -> ast.AST | None:
    """The loop or function that a name gets its value in; None for a name of the module."""
    if node.id in scope.rows:
        for loop in reversed(Tracing.loopsAround(scope.script, scope.call)):
            if any(isinstance(each, ast.Name) and each.id == node.id for each in ast.walk(loop.target)):
                return loop if isinstance(loop, ast.For) else scope.script.parent(loop)
    function = scope.function
    if function is not None and Tracing.isLocal(function, node.id):
        return function
    return None


def _varies(node: ast.expr, scope: Scope) -> bool:
    """Whether a node's value is another one in each row or for each caller."""
    return any(isinstance(each, ast.Name) and _binderOf(each, scope) is not None for each in ast.walk(node))


def _functionsOf(key: Key, script: Script) -> list[ast.AST | None]:
    """The functions in which an edit shows: the one that it stands in, or all of the script for what stands in none."""
    node = key[0] if isinstance(key, tuple) else key
    inner = next((each for each in script.above(node) if isinstance(each, Function)), None)
    return [inner] if inner else [None, *(each for each in ast.walk(script.tree) if isinstance(each, Function))]


def _tidy(value: float, isAngle: bool) -> Any:
    """A number that was reckoned, without the noise."""
    near = round(value, Literals.ANGLE if isAngle else 6)
    return int(near) if near == int(near) else near


def textOf(value: Any, script: Script, isAngle: bool = False) -> str:
    """A value as it is written in a script: directions by their names where it has them."""
    if isAngle and isinstance(value, (int, float)):
        name = DIRECTIONS.get(value) if value else None
        if name and script.globals().get(name) == value:
            return name
    return Literals.show(value)


def _besides(name: str, present: Any, value: Any, script: Script, isAngle: bool) -> str:
    """A value that was told by a name: by the name still, with what is more or less, where that tells something."""
    if not isinstance(present, (int, float)):
        return Literals.show(value)
    if isAngle:
        for degrees, direction in DIRECTIONS.items():
            if script.globals().get(direction) == degrees and value == degrees:
                return direction
        if abs(value - present) > NEAR:
            return Literals.show(value)
    more = _tidy(value - present, isAngle)
    return '%s %s %s' % (name, '-' if more < 0 else '+', Literals.show(abs(more))) if more else name
