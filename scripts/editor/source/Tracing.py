"""Where the values of a call's arguments stand in the source: literals of the call, of a loop's table, of a caller.

`Values` works out what an expression of a script comes to in a scope, and notes which nodes it came by; with other
values for some of these nodes it works out what the script would come to then. It understands what levels are written
in: numbers, tables, names, sums and the few functions that place things, and says `Unknown` to all else.
"""

from __future__ import annotations

import ast
import functools
import math
import operator
from typing import Any, Callable, Iterator, NamedTuple

from editor.source.Files import Function, Script


class Unknown(Exception):
    """An expression whose value cannot be told."""


class Scope:
    """A function of a script while it makes a call: what its names stand for."""

    def __init__(self, script: Script, function: Function | None, call: ast.Call, caller: Scope | None):
        self.script, self.function, self.call, self.caller = script, function, call, caller
        self.rows: dict[str, Thing] = {}  # what the names of the loops around the call stand for
        self.isDirect = False             # whether the caller's call is one of this very function


class Thing(NamedTuple):
    """A part of a script in the scope in which it stands, or with no node a value that stands nowhere."""
    node: ast.expr | None
    scope: Scope | None
    value: Any = None


OPERATORS: dict[type, Callable[[Any, Any], Any]] = {
    ast.Add: operator.add, ast.Sub: operator.sub, ast.Mult: operator.mul, ast.Div: operator.truediv,
    ast.Mod: operator.mod, ast.FloorDiv: operator.floordiv, ast.Pow: operator.pow}
#: Functions of scripts that only reckon, by module and name.
RECKONING = {('objects.Placing', 'around'), ('objects.Placing', 'cube')}
BUILT_IN = (abs, min, max, round, len, int, float, str, sum, tuple, list, sorted)
MOST_ROWS = 20000


class Values:
    """Works out expressions, with other values in place of some nodes where a change is tried."""

    def __init__(self):
        self.replaced: dict[ast.AST, Any] = {}
        self.inserted: dict[tuple[ast.Call, str], Any] = {}
        self.touched: set[Any] = set()

    # Values

    def of(self, thing: Thing) -> Any:
        """The value of a thing; Unknown if it cannot be told."""
        return thing.value if thing.node is None or thing.scope is None else self.value(thing.node, thing.scope)

    def value(self, node: ast.expr, scope: Scope) -> Any:
        if node in self.replaced:
            self.touched.add(node)
            return self.replaced[node]
        self.touched.add(node)
        handler = self._HANDLERS.get(type(node))
        if handler is None:
            self._touchAll(node, scope)
            raise Unknown
        return handler(self, node, scope)

    def _touchAll(self, node: ast.AST, scope: Scope):
        """Notes all that a part comes by, though its value cannot be told."""
        for child in ast.iter_child_nodes(node):
            if isinstance(child, ast.expr):
                try:
                    self.value(child, scope)
                except Unknown:
                    pass
            else:
                self._touchAll(child, scope)

    def _constant(self, node: Any, scope: Scope) -> Any:
        return node.value

    def _several(self, node: Any, scope: Scope) -> Any:
        values, unknown = [], False
        for each in node.elts:
            try:
                values.append(self.value(each, scope))
            except Unknown:
                unknown = True
        if unknown:
            raise Unknown
        return tuple(values) if isinstance(node, ast.Tuple) else values

    def _table(self, node: Any, scope: Scope) -> Any:
        if None in node.keys:
            raise Unknown
        return {self.value(key, scope): self.value(each, scope) for key, each in zip(node.keys, node.values)}

    def _unary(self, node: Any, scope: Scope) -> Any:
        value = self.value(node.operand, scope)
        if isinstance(node.op, ast.USub) and isinstance(value, (int, float)):
            return -value
        if isinstance(node.op, ast.Not):
            return not value
        raise Unknown

    def _binary(self, node: Any, scope: Scope) -> Any:
        try:
            left = self.value(node.left, scope)
        except Unknown:
            self._touchAll(node.right, scope)
            raise
        right = self.value(node.right, scope)
        reckon = OPERATORS.get(type(node.op))
        if reckon is None or not isinstance(left, (int, float, str, tuple)):
            raise Unknown
        return self._safely(reckon, left, right)

    @staticmethod
    def _safely(function: Callable[..., Any], *arguments: Any, **options: Any) -> Any:
        try:
            return function(*arguments, **options)
        except Exception:
            raise Unknown from None

    def _choice(self, node: Any, scope: Scope) -> Any:
        return self.value(node.body if self.value(node.test, scope) else node.orelse, scope)

    def _comparison(self, node: Any, scope: Scope) -> Any:
        left, right = self.value(node.left, scope), [self.value(each, scope) for each in node.comparators]
        if len(right) != 1 or not isinstance(node.ops[0], (ast.Eq, ast.NotEq, ast.Lt, ast.Gt, ast.LtE, ast.GtE)):
            raise Unknown
        compare = {ast.Eq: operator.eq, ast.NotEq: operator.ne, ast.Lt: operator.lt, ast.Gt: operator.gt,
                   ast.LtE: operator.le, ast.GtE: operator.ge}[type(node.ops[0])]
        return self._safely(compare, left, right[0])

    def _part(self, node: Any, scope: Scope) -> Any:
        return self._safely(operator.getitem, self.value(node.value, scope), self.value(node.slice, scope))

    def _attribute(self, node: Any, scope: Scope) -> Any:
        base = self.value(node.value, scope)
        if type(base).__name__ != 'module' and not hasattr(type(base), '_fields'):
            raise Unknown  # what another object has may be reckoned, and may have become another one since
        return self._safely(getattr, base, node.attr)

    def _called(self, node: Any, scope: Scope) -> Any:
        for each in [*node.args, *(word.value for word in node.keywords)]:
            self._quietly(each, scope)
        function = self.value(node.func, scope)
        if not isReckoning(function) or any(isinstance(each, ast.Starred) for each in node.args):
            raise Unknown
        return self._safely(function, *(self.value(each, scope) for each in node.args),
                            **{word.arg: self.value(word.value, scope) for word in node.keywords if word.arg})

    def _quietly(self, node: ast.expr, scope: Scope):
        try:
            self.value(node, scope)
        except Unknown:
            pass

    def _name(self, node: Any, scope: Scope) -> Any:
        thing = self.bound(node, scope)
        if thing is None:
            raise Unknown
        return self.of(thing)

    _HANDLERS: dict[type, Callable[[Any, Any, Scope], Any]] = {
        ast.Constant: _constant, ast.Tuple: _several, ast.List: _several, ast.Dict: _table, ast.UnaryOp: _unary,
        ast.BinOp: _binary, ast.IfExp: _choice, ast.Compare: _comparison, ast.Subscript: _part,
        ast.Attribute: _attribute, ast.Call: _called, ast.Name: _name}

    # Names

    def bound(self, node: ast.Name, scope: Scope) -> Thing | None:
        """What a name stands for: a row of a loop, an argument, a value assigned once, or something of the module."""
        if node.id in scope.rows:
            return scope.rows[node.id]
        if scope.function is not None:
            assigned = _assigned(scope.function, node.id)
            if node.id in parametersOf(scope.function):
                return self.argument(scope, node.id) if assigned is None else None
            if assigned is not None:
                return Thing(assigned, scope) if isinstance(assigned, ast.expr) else None
        everything = scope.script.globals()
        assigned = _assigned(scope.script.tree, node.id)
        if isinstance(assigned, ast.expr) and _isTable(assigned):
            return Thing(assigned, Scope(scope.script, None, scope.call, None))
        if node.id in everything:
            return Thing(None, None, everything[node.id])
        built = __builtins__ if isinstance(__builtins__, dict) else vars(__builtins__)
        return Thing(None, None, built[node.id]) if node.id in built else None

    def argument(self, scope: Scope, name: str) -> Thing | None:
        """What a parameter was given by the caller, or its default."""
        function, caller = scope.function, scope.caller
        if function is None or caller is None or not scope.isDirect:
            return None
        node = argumentOf(caller.call, function, name, _isMethod(scope.script, function))
        if node is not None:
            return Thing(node, caller)
        if (caller.call, name) in self.inserted:
            self.touched.add((caller.call, name))
            return Thing(None, None, self.inserted[caller.call, name])
        default = defaultOf(function, name)
        return Thing(default, Scope(scope.script, None, scope.call, None)) if default is not None else None

    # Loops

    def ways(self, scope: Scope) -> Iterator[dict[str, Thing]]:
        """All that the names of the loops around a scope's call stand for, in the order in which they run."""
        yield from self._ways(scope, loopsAround(scope.script, scope.call), {})

    def _ways(self, scope: Scope, loops: list[Any], bound: dict[str, Thing]) -> Iterator[dict[str, Thing]]:
        if not loops:
            yield dict(bound)
            return
        scope.rows = dict(bound)
        rows = list(self.rows(Thing(loops[0].iter, scope)))
        for row in rows:
            more = dict(bound)
            kept = self._kept(row, scope, bound)
            more[rowOf(loops[0])] = kept
            self._unpack(loops[0].target, kept, more)
            yield from self._ways(scope, loops[1:], more)

    @staticmethod
    def _kept(row: Thing, scope: Scope, bound: dict[str, Thing]) -> Thing:
        """A row in the scope as it is now: that of the loop goes on to other rows."""
        if row.scope is not scope:
            return row
        inner = Scope(scope.script, scope.function, scope.call, scope.caller)
        inner.isDirect, inner.rows = scope.isDirect, dict(bound)
        return Thing(row.node, inner, row.value)

    def rows(self, table: Thing) -> Iterator[Thing]:
        """The rows of what a loop walks over."""
        table = self.seen(table)
        node, scope = table.node, table.scope
        if isinstance(node, (ast.Tuple, ast.List)) and scope:
            for each in node.elts:
                if isinstance(each, ast.Starred):
                    raise Unknown
                yield Thing(each, scope)
        elif isinstance(node, ast.Call) and isinstance(node.func, ast.Name) and node.func.id in ('enumerate', 'zip') \
                and scope:
            yield from self._joined(node, scope)
        else:
            values = self.of(table) if not isinstance(node, ast.Call) else self._range(node, scope)
            if not isinstance(values, (tuple, list, dict, range)) or len(values) > MOST_ROWS:
                raise Unknown
            for each in values:
                yield Thing(None, None, each)

    def _range(self, node: ast.Call, scope: Scope | None) -> Any:
        if not isinstance(node.func, ast.Name) or node.func.id != 'range' or node.keywords or not scope:
            raise Unknown
        return self._safely(range, *(self.value(each, scope) for each in node.args))

    def _joined(self, node: Any, scope: Scope) -> Iterator[Thing]:
        if node.func.id == 'zip':
            for row in zip(*(list(self.rows(Thing(each, scope))) for each in node.args)):
                yield Thing(None, None, _Row(row))
            return
        first = [*node.args[1:], *(word.value for word in node.keywords)]
        start = self.value(first[0], scope) if first else 0
        for number, row in enumerate(self.rows(Thing(node.args[0], scope)), start):
            yield Thing(None, None, _Row((Thing(None, None, number), row)))

    def _unpack(self, target: ast.expr, row: Thing, bound: dict[str, Thing]):
        row = self.seen(row)
        if isinstance(target, ast.Name):
            bound[target.id] = row
            return
        if not isinstance(target, (ast.Tuple, ast.List)):
            raise Unknown
        if isinstance(row.value, _Row):
            parts: list[Thing] = list(row.value)
        elif isinstance(row.node, (ast.Tuple, ast.List)):
            parts = [Thing(each, row.scope) for each in row.node.elts]
        else:
            values = self.of(row)
            if not isinstance(values, (tuple, list)):
                raise Unknown
            parts = [Thing(None, None, each) for each in values]
        if any(isinstance(each, ast.Starred) for each in target.elts) or len(parts) != len(target.elts):
            raise Unknown
        for each, part in zip(target.elts, parts):
            self._unpack(each, part, bound)

    def seen(self, thing: Thing) -> Thing:
        """What a name stands for in the end, where it is one; the thing itself otherwise."""
        while isinstance(thing.node, ast.Name) and thing.scope:
            further = self.bound(thing.node, thing.scope)
            if further is None:
                return thing
            thing = further
        return thing


def rowOf(loop: ast.AST) -> str:
    """The name, which no script can have, of the row that a loop is at."""
    return '<row %d>' % id(loop)


class _Row(tuple):
    """Things that a loop walks over together."""


def isReckoning(function: Any) -> bool:
    """Whether calling a function does nothing but reckon."""
    if function in BUILT_IN or getattr(function, '__module__', '') == math.__name__:
        return True
    return (getattr(function, '__module__', ''), getattr(function, '__name__', '')) in RECKONING


@functools.lru_cache(maxsize=1024)
def parametersOf(function: Function) -> list[str]:
    every = function.args
    return [each.arg for each in (*every.posonlyargs, *every.args, *every.kwonlyargs)]


def isLocal(function: Function, name: str) -> bool:
    """Whether a name is a function's own: a parameter, or something that it keeps."""
    stored = (node for node in ast.walk(function) if isinstance(node, ast.Name) and isinstance(node.ctx, ast.Store))
    return name in parametersOf(function) or any(node.id == name for node in stored)


def argumentOf(call: ast.Call, function: Function, name: str, isMethod: bool) -> ast.expr | None:
    """The node by which a call gives a function its parameter of a name."""
    for word in call.keywords:
        if word.arg == name:
            return word.value
    names = [each.arg for each in (*function.args.posonlyargs, *function.args.args)][isMethod:]
    if name not in names or any(isinstance(each, ast.Starred) for each in call.args):
        return None
    place = names.index(name)
    return call.args[place] if place < len(call.args) else None


def defaultOf(function: Function, name: str) -> ast.expr | None:
    """The node of a parameter's default."""
    every = function.args
    plain = [each.arg for each in (*every.posonlyargs, *every.args)]
    defaults: dict[str, ast.expr | None] = dict(zip(reversed(plain), reversed(every.defaults)))
    defaults.update(zip((each.arg for each in every.kwonlyargs), every.kw_defaults))
    return defaults.get(name)


def _isMethod(script: Script, function: Function) -> bool:
    return isinstance(script.parent(function), ast.ClassDef)


@functools.lru_cache(maxsize=8192)
def _assigned(where: ast.AST, name: str) -> ast.AST | None:
    """The expression that a name is assigned, if that happens once; another node if it happens otherwise."""
    found: list[ast.AST] = []
    for node in _inside(where):
        if isinstance(node, ast.Assign) and any(_names(each, name) for each in node.targets):
            found.append(node.value if len(node.targets) == 1 and isinstance(node.targets[0], ast.Name) else node)
        elif isinstance(node, (ast.AnnAssign, ast.AugAssign, ast.For, ast.NamedExpr)) and _names(node.target, name):
            found.append(node.value if isinstance(node, ast.AnnAssign) and node.value else node.target)
        elif isinstance(node, ast.withitem) and node.optional_vars and _names(node.optional_vars, name):
            found.append(node)
        elif isinstance(node, ast.Global) and name in node.names:
            found.append(node)
    if not found:
        return None
    isPlain = len(found) == 1 and not any(isinstance(each, ast.Name) and each.id == name for each in ast.walk(found[0]))
    return found[0] if isPlain else ast.Pass()


def _names(target: ast.AST, name: str) -> bool:
    return any(isinstance(each, ast.Name) and each.id == name and isinstance(each.ctx, ast.Store)
               for each in ast.walk(target))


def _inside(where: ast.AST) -> Iterator[ast.AST]:
    """All nodes of a function or module without those of the functions in it."""
    waiting = list(ast.iter_child_nodes(where))
    for node in waiting:
        yield node
        if not isinstance(node, (Function, ast.ClassDef, ast.Lambda)):
            waiting.extend(ast.iter_child_nodes(node))


def _isTable(node: ast.expr) -> bool:
    return isinstance(node, (ast.Tuple, ast.List))


@functools.lru_cache(maxsize=4096)
def loopsAround(script: Script, call: ast.Call) -> list[Any]:
    """The loops of its function that a call stands in, the outermost first."""
    loops: list[Any] = []
    inner: ast.AST = call
    for node in script.above(call):
        if isinstance(node, (Function, ast.Lambda)):
            break
        if isinstance(node, ast.For) and inner is not node.iter:
            loops.append(node)
        elif isinstance(node, (ast.ListComp, ast.GeneratorExp, ast.SetComp, ast.DictComp)):
            loops.extend(reversed([each for each in node.generators if inner is not each]))
        elif isinstance(node, (ast.While, ast.AsyncFor)):
            raise Unknown
        inner = node
    return list(reversed(loops))
