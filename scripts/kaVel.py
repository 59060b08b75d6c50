"""The engine as scripts see it: a thin layer over the native module `_kaVel`.

A handle stands for an object of the tree. Its attributes are the reflected members of the object's class: `o.name` and
`o.name = 'door'` are the pair getName/setName, `o.murder()` is a call, `o.children` are its children by name or in
order. A handle is false once its object is gone, and any use of it then raises RuntimeError.

    import kaVel

    room = kaVel.make('Entity', parent=mapRoot, name='room')
    transform = kaVel.addComponent(room, 'transform', 'TransformComponent', position=kaVel.Vec4(0, 0, 4, 1))
    kaVel.subscribe('KeyDownMessage', lambda message, key: kaVel.log('key %d' % key))

Every reflected class, with its members and their comments, stands in `_kaVel.pyi`, which the build writes.
"""

import functools
import traceback

import _kaVel
from _kaVel import Handle_ as Handle
from _kaVel import PostOffice, Quaternion, Vec4, messageTypes

#: Everything reflected by name: `Reflection.Entity` is a class, `Reflection.getSystemN` a function.
Reflection = _kaVel._ReflectionInstance()


def log(text):
    """Writes one line of text to the engine's log."""
    _kaVel.writeLog(str(text))


def classNamed(className):
    """The reflected class of this name; TypeError that names the nearest one if there is none."""
    try:
        return getattr(Reflection, className)
    except AttributeError as unknown:
        raise TypeError(str(unknown)) from None


def getSystem(name):
    """The running system of this class name, started first if need be."""
    classNamed(name)
    return Reflection.getSystemN(name)


def configure(handle, **properties):
    """Sets several properties of one object, in the order given, and returns its handle."""
    for name, value in properties.items():
        setattr(handle, name, value)
    return handle


def make(className, parent=None, name='', **properties):
    """Makes an object of a reflected class, names it, hangs it under its parent and sets its properties."""
    handle = classNamed(className).construct_()
    if not handle:
        raise TypeError('class %r has no objects of its own: it is abstract' % className)
    if name:
        handle.setName(name)
    if parent is not None:
        handle.setParent(parent)
    return configure(handle, **properties)


def addComponent(entity, key, className, **properties):
    """Gives an entity the component of the manager `key`, made as `className`, and sets its properties.

    The entity must stand in a level's tree already, since the level's coordinator owns the manager.
    """
    component = entity.addComponentRP(key, classNamed(className))
    if not component:
        raise RuntimeError('no component %r (%s) for %r: is the entity below a coordinator, and does the manager exist?'
                           % (key, className, entity))
    return configure(component, **properties)


def descendants(root):
    """The handles of an object and of everything below it, parents before children."""
    found = [root]
    for handle in found:
        found.extend(handle.children)
    return found


def finishLoad(root):
    """Tells everything under a freshly built root that the tree stands: `onLoadBegin`, then `onLoadComplete`.

    Levels and maps get this from the loader; what a script builds in a running level needs the call. An object that
    fails is logged with its path, and the rest loads on.
    """
    tree = descendants(root)
    for handle in tree:
        if handle._getType().isSubclassOf(Reflection.AbstractComponent):
            _loadStep(handle, 'onLoadBegin')
    for handle in tree:
        _loadStep(handle, 'onLoadComplete')


def _loadStep(handle, step):
    try:
        getattr(handle, step)()
    except Exception:
        log('%s failed to load and is skipped:\n%s' % (pathOf(handle), traceback.format_exc()))


def pathOf(handle):
    """Names from the root of the tree down to an object, joined by '/'."""
    names = []
    while handle:
        names.append(handle.name)
        handle = handle.parent
    return '/'.join(reversed(names))


def messageType(name):
    """The message of this name; KeyError that names the nearest one if there is none."""
    try:
        return messageTypes[name]
    except KeyError:
        import difflib
        near = difflib.get_close_matches(name, list(messageTypes), n=1)
        hint = '; did you mean %r?' % near[0] if near else ''
        raise KeyError('no message %r%s' % (name, hint)) from None


def subscribe(messageName, handler, office=PostOffice):
    """Calls `handler(message, *payload)` for every message of this name, until the handler raises.

    A handler that raises is shown with its traceback and never called again. Pass a level's own post office (its
    'BranchPostOffice/postOffice') to have the subscription end with the level.
    """
    office.registerMessageHandler(messageType(messageName), handler)


def send(messageName, *payload):
    """Sends a message, with up to three values, to everybody who subscribed to it; returns when all have run."""
    messageType(messageName)(*payload)


class BuiltFrom:
    """What an object remembers of the pattern that built it, and which of its properties a user changed since."""

    def __init__(self, pattern):
        self.pattern = pattern
        self._editedProps = set()

    def __repr__(self):
        return '<built from %s.%s>' % (self.pattern.__module__, self.pattern.__qualname__)


def pattern(build):
    """Marks a function `build(parent, name)` as an object pattern: the root it returns remembers where it came from."""

    @functools.wraps(build)
    def call(parent, name='', **options):
        root = build(parent, name, **options)
        root.setPattern(BuiltFrom(call))
        return root

    return call
