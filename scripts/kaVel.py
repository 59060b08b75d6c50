"""The engine as scripts see it: a thin layer over the native module `_kaVel`.

A handle stands for an object of the tree. Its attributes are the reflected members of the object's class: `o.name` and
`o.name = 'door'` are the pair getName/setName, `o.murder()` is a call, `o.children` are its children by name or in
order. A handle is false once its object is gone, and any use of it then raises RuntimeError.

    import kaVel

    room = kaVel.make('Entity', parent=mapRoot, name='room')
    transform = kaVel.addComponent(room, 'transform', 'TransformComponent', position=kaVel.Vec4(0, 0, 4, 1))
    kaVel.onKey(room, 'use', lambda: kaVel.log('used'))

Every reflected class is here by its name, `kaVel.Entity`. With their members and comments they stand in `_kaVel.pyi`,
which the build writes for editors and the type checker.
"""

from __future__ import annotations

import functools
import importlib
import inspect
import sys
import traceback
from types import FrameType
from typing import TYPE_CHECKING, Any, Callable, Iterable, ParamSpec, Protocol, TypeVar

import _kaVel
import bindings
import callSites
from _kaVel import Handle_ as Handle
from _kaVel import AvoidRay, ConsoleCommand, FlockTarget, GridCell, IReflectedThing, MeshBuilder, PathRequest
from _kaVel import PostOffice, Quaternion, SteeringOutput, Vec4, messageTypes

if TYPE_CHECKING:
    from _kaVel import *
    from _kaVel import PostOffice_, _AddComponent, _GetSystem, _Make, _ObjectClass

P = ParamSpec('P')
T = TypeVar('T')
O = TypeVar('O', bound='Object')

#: Everything reflected by name: `Reflection.Entity` is a class, `Reflection.getSystemN` a function.
Reflection = _kaVel._ReflectionInstance()


if not TYPE_CHECKING:
    def __getattr__(name):
        """The reflected class of this name."""
        return getattr(Reflection, name)


def _formed(form: Callable[[], type[T]]) -> Callable[[Callable[..., Any]], T]:
    """Has the type checker see a function in the forms of a class that `_kaVel.pyi` knows."""
    return lambda function: function  # type: ignore


def log(text: object):
    """Writes one line of text to the engine's log."""
    _kaVel.writeLog(str(text))


@functools.cache
def classNamed(className: str) -> _ObjectClass[Any]:
    """The reflected class of this name; TypeError that names the nearest one if there is none."""
    try:
        return getattr(Reflection, className)
    except AttributeError as unknown:
        raise TypeError(str(unknown)) from None


@_formed(lambda: _GetSystem)
def getSystem(name: str):
    """The running system of this class name, started first if need be."""
    classNamed(name)
    return Reflection.getSystemN(name)


def configure(handle: O, **properties: Any) -> O:
    """Sets several properties of one object, in the order given, and returns its handle."""
    for name, value in properties.items():
        setattr(handle, name, value)
    return handle


@_formed(lambda: _Make)
def make(className: str, parent: Object | None = None, name: str = '', **properties: Any):
    """Makes an object of a reflected class, names it, hangs it under its parent and sets its properties."""
    handle = classNamed(className).construct_()
    if not handle:
        raise TypeError('class %r has no objects of its own: it is abstract' % className)
    if name:
        handle.setName(name)
    if parent is not None:
        handle.setParent(parent)
    return configure(handle, **properties)


@_formed(lambda: _AddComponent)
def addComponent(entity: Entity, key: str, className: str | _ObjectClass[Any], **properties: Any):
    """Gives an entity the component of the manager `key`, made as `className`, and sets its properties.

    The entity must stand in a level's tree already, since the level's coordinator owns the manager.
    """
    component = entity.addComponentRP(key, classNamed(className) if isinstance(className, str) else className)
    if not component:
        raise RuntimeError('no component %r (%s) for %r: is the entity below a coordinator, and does the manager exist?'
                           % (key, className, entity))
    return configure(component, **properties)


def descendants(root: Object) -> list[AnyObject]:
    """The handles of an object and of everything below it, parents before children."""
    found: list[Any] = [root]
    for handle in found:
        found.extend(handle.children)
    return found


def finishLoad(root: Object):
    """Tells everything under a freshly built root that the tree stands: `onLoadBegin`, then `onLoadComplete`.

    Levels and maps get this from the loader; what a script builds in a running level needs the call. An object that
    fails is logged with its path, and the rest loads on. What has been murdered meanwhile is left out.
    """
    tree, component = descendants(root), classNamed('AbstractComponent')
    for handle in tree:
        if handle._getType().isSubclassOf(component):
            _loadStep(handle, 'onLoadBegin')
    for handle in tree:
        _loadStep(handle, 'onLoadComplete')


def _loadStep(handle: Object, step: str):
    if handle.isDying():
        return
    try:
        getattr(handle, step)()
    except Exception:
        log('%s failed to load and is skipped:\n%s' % (pathOf(handle), traceback.format_exc()))


def build(moduleName: str, patternName: str, parent: Object, name: str, at: Vec4 | None = None) -> AnyObject:
    """Builds an object by its pattern in a running level and completes its load; the engine makes its own by it.

    A pattern that takes `at` gets the place, a Vec4; the root of any other is put there.
    """
    builder = getattr(importlib.import_module(moduleName), patternName)
    if at is not None and _takesPlace(builder):
        root = builder(parent, name, at=(at.x, at.y, at.z))
    else:
        root = builder(parent, name)
        if root and at is not None:
            _put(root, at)
    if root:
        finishLoad(root)
    return root


def _takesPlace(builder: Callable[..., Any]) -> bool:
    parameters = inspect.signature(builder).parameters
    return 'at' in parameters or any(each.kind == each.VAR_KEYWORD for each in parameters.values())


def _put(root: AnyObject, at: Vec4):
    transform = root.getChild('transform')
    if transform:
        transform.position = at
    else:
        log('%s has no transform and is not put at its place %s' % (pathOf(root), at))


def pathOf(handle: Object) -> str:
    """Names from the root of the tree down to an object, joined by '/'."""
    names = []
    while handle:
        names.append(handle.getName())
        handle = handle.parent
    return '/'.join(reversed(names))


def why(creature: Entity) -> str:
    """What a creature does and why, in a sentence: its tree, what it perceives, where it goes, what it waits for."""
    return Reflection.why(creature)


def persist(handle: Object, function: str, *arguments: Any):
    """Notes a call of an object to be repeated when its map is loaded again, with up to two arguments.

    Note what an object has become: `persist(door, 'setOpen', True)`, or `persist(key, 'murder')` for what is gone for
    good. The last call of a property's setter counts; any other is repeated as often as it was noted. They run once the
    map's function has returned, before `onLoadComplete`. The object needs a name of its own below its map. See
    `PersistentStateComponent`.
    """
    record = (handle.addToPersistentStateNoArgs, handle.addToPersistentStateOneArg,
              handle.addToPersistentStateTwoArgs)
    if len(arguments) >= len(record):
        raise TypeError('persist(%r) takes at most two arguments for the call' % function)
    record[len(arguments)](function, *arguments)


def forgetPersistentState():
    """Forgets what has become of the objects of all levels, as a new game does."""
    getSystem('GameLoopSystem').forgetPersistentState()


def interpolate(handle: Object, name: str, final: Any, seconds: float, start: Any = None):
    """Takes a property of an object from its present value, or from `start`, to another in some seconds of game time.

    For numbers, Vec4 and Quaternion. What interpolates the property already ends where it is.
    """
    if start is None:
        start = getattr(handle, name)
    if isinstance(start, (int, float)) and isinstance(final, (int, float)):
        # Whole numbers may be meant for a property that is a float.
        if isinstance(start, float) or isinstance(final, float) or isinstance(getattr(handle, name, None), float):
            start, final = float(start), float(final)
    Reflection.interpolateProperty(handle, name, start, final, seconds)


def nearestHint(name: str, known: Iterable[str]) -> str:
    """"; did you mean 'wood'?" out of known names for one that is not among them, or nothing if none is similar."""
    import difflib
    near = difflib.get_close_matches(name, sorted(known), n=1)
    return '; did you mean %r?' % near[0] if near else ''


def messageType(name: str) -> IReflectedThing:
    """The message of this name; KeyError that names the nearest one if there is none."""
    try:
        return messageTypes[name]
    except KeyError:
        raise KeyError('no message %r%s' % (name, nearestHint(name, messageTypes))) from None


def subscribe(messageName: str, handler: Callable[..., Any], office: PostOffice_ | BranchPostOffice = PostOffice):
    """Calls `handler(message, *payload)` for every message of this name, until the handler raises.

    A handler that raises is shown with its traceback and never called again. Pass a level's own post office (its
    'BranchPostOffice/postOffice') to have the subscription end with the level.
    """
    office.registerMessageHandler(messageType(messageName), handler)


def officeOf(handle: Object) -> BranchPostOffice:
    """The post office of the level that an object stands in: what is subscribed there ends with the level."""
    isLevel = handle._getType().isSubclassOf(Reflection.Coordinator)
    level = handle if isLevel else handle.getAncestorOfType(Reflection.Coordinator)
    return level.getDescendantByPath('BranchPostOffice/postOffice')


def onKey(level: Object, action: str, function: Callable[[], Any], inScreens: bool = False):
    """Calls a function without arguments whenever a key or button of an action goes down, as long as a level lives.

    The level is told by its coordinator or any object in it. The actions and their keys stand in `bindings`; a name
    that is not there raises KeyError. A function that raises is shown with its traceback and not called again.
    While a screen is open, which takes all keys for itself, nothing is called unless `inScreens` asks for it.
    """
    office = officeOf(level)
    bindings.keysOf(action)  # raises for a wrong one

    def keyDown(message: IReflectedThing, key: int):
        if key in bindings.keysOf(action) and (inScreens or not getSystem('InputSystem').screenTakesInput):
            function()

    def buttonDown(message: IReflectedThing, button: int, x: float, y: float):
        if button in bindings.buttonsOf(action) and (inScreens or not getSystem('InputSystem').screenTakesInput):
            function()

    subscribe('KeyDownMessage', keyDown, office)
    subscribe('MouseDownMessage', buttonDown, office)


def send(messageName: str, *payload: Any):
    """Sends a message, with up to three values, to everybody who subscribed to it; returns when all have run."""
    messageType(messageName)(*payload)


class BuiltFrom:
    """What an object remembers of the pattern that built it, and which of its properties a user changed since.

    `arguments` and `options` are those of the call, `called` both as the script gave them where an editor's note has
    changed them, otherwise None. `calls` are the places in scripts of levels that it came from, see
    `callSites`; nothing for what another pattern made as a part of its own. `atStart` says whether it was called while
    the level was built, `parts` how many children the root had when the pattern was done.
    """

    __slots__ = ('pattern', 'arguments', 'options', 'called', 'calls', 'atStart', 'parts', '_editedProps')

    def __init__(self, pattern: Callable[..., Any], arguments: tuple[Any, ...] = (),
                 options: dict[str, Any] | None = None, caller: FrameType | None = None,
                 called: tuple[tuple[Any, ...], dict[str, Any]] | None = None, parts: int = 0):
        self.pattern = pattern
        self.parts = parts
        self.arguments = arguments
        self.options = options or {}
        self.called = called
        self.calls, self.atStart = callSites.above(caller)
        self._editedProps: set[str] = set()

    def __repr__(self):
        return '<built from %s.%s>' % (self.pattern.__module__, self.pattern.__qualname__)


class Amending(Protocol):
    """What changes the calls of patterns by a level's scripts, while such a level is built."""

    def call(self, pattern: Callable[..., Any], arguments: tuple[Any, ...],
             options: dict[str, Any]) -> tuple[tuple[Any, ...], dict[str, Any]]:
        """The arguments by which a pattern is to be called in the place of some others."""
        ...

    def built(self, root: Any) -> None:
        """Told what the call came to."""
        ...


amending: Amending | None = None
_patternsUnderWay = 0


def pattern(build: Callable[P, O]) -> Callable[P, O]:
    """Marks a function `build(parent, name)` as an object pattern: the root it returns remembers where it came from."""

    @functools.wraps(build)
    def call(*arguments: P.args, **options: P.kwargs) -> O:
        global _patternsUnderWay
        isPart, called = _patternsUnderWay > 0, None
        if amending and not isPart:
            called = arguments, options
            arguments, options = amending.call(call, arguments, options)  # type: ignore
        _patternsUnderWay += 1
        try:
            root = build(*arguments, **options)
        finally:
            _patternsUnderWay -= 1
        if amending and not isPart:
            amending.built(root)
        caller = None if isPart else sys._getframe().f_back
        root.setPattern(BuiltFrom(call, arguments, options, caller, called, root.childCount))
        return root

    call.isPattern = True  # type: ignore
    return call
