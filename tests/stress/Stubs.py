"""Level that makes the calls of `stubs.json`, some in each frame, which run_stubs.py reads from the stubs.

The first room stands beside it as a live tree. Each call is noted in `stubs.trace` before it is made. A call may fail
for a reason of its own; what is told is one that the engine does not know, or does not take the arguments of.
"""

import json

import _kaVel
import kaVel
from levels import FirstRoom
from levels.Stress import Stress

villa = FirstRoom.villa

CALLS_A_FRAME = 10
REFUSALS = ('NOT_CALLABLE', 'WRONG_ARGUMENT_TYPE', 'WRONG_ARGUMENT_COUNT')

VALUES = {'int': 1, 'float': 0.5, 'bool': True, 'str': 'name', 'Any': 'name', 'object': 1,
          'Vec4': _kaVel.Vec4(0, 0, 1, 0), 'Quaternion': _kaVel.Quaternion(), 'GridCell': _kaVel.GridCell(),
          'PathRequest': _kaVel.PathRequest(), 'MeshBuilder': _kaVel.MeshBuilder(),
          'FlockTarget': _kaVel.FlockTarget(), 'SteeringOutput': _kaVel.SteeringOutput(),
          'AvoidRay': _kaVel.AvoidRay(), 'ConsoleCommand': _kaVel.ConsoleCommand(),
          'list[GridCell]': [_kaVel.GridCell()],
          '_Callable': lambda *_: None, 'class': kaVel.Reflection.TransformComponent}


def build(coordinator):
    FirstRoom.build(coordinator)
    entity = kaVel.make('Entity', parent=coordinator, name='stubs')
    kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=Stubs(coordinator).doFrame)


class Stubs(Stress):
    """Plain calls in place of edge cases; objects come from the room as there."""

    def __init__(self, coordinator):
        self.coordinator = coordinator
        with open('stubs.json', encoding='utf-8') as plan:
            self.entries = json.load(plan)
        self.trace = open('stubs.trace', 'w', encoding='utf-8')
        self.dead = kaVel.make('Entity')
        self.dead.murder()
        self.scratch = None
        self.calls = 0
        for entry in self.entries:
            if (entry['class'], entry['name']) == ('Coordinator', 'getManager'):  # makes those that the room has not
                coordinator.getManager(self.plain(entry['arguments'][0]))

    def doFrame(self):
        if self.scratch:
            self.scratch.murder()
        if not self.entries:
            kaVel.log('Stubs: %d calls' % self.calls)
            kaVel.getSystem('GameLoopSystem').quit(0)
            return
        self.scratch = kaVel.make('Entity', parent=self.coordinator, name='scratch')
        now, self.entries = self.entries[:CALLS_A_FRAME], self.entries[CALLS_A_FRAME:]
        for entry in now:
            self.trace.write('%s.%s\n' % (entry['class'], entry['name']))
            self.trace.flush()
            self.calls += 1
            try:
                self.make(**{'scope' if name == 'class' else name: value for name, value in entry.items()})
            except Exception as error:
                if self.isRefusal(error):
                    call = '%s.%s(%s)' % (entry['class'], entry['name'], ', '.join(entry['arguments']))
                    kaVel.log('refused: %s: %s: %s' % (call, type(error).__name__, error))

    @staticmethod
    def isRefusal(error):
        return isinstance(error, (AttributeError, TypeError)) or any(text in str(error) for text in REFUSALS)

    def make(self, scope, subject, name, way, arguments):
        values = [self.plain(kind) for kind in arguments]
        if way == 'function':
            getattr(kaVel.Reflection, name)(*values)
            return
        subject = self.subject(subject or scope)
        if not subject._getType().isSubclassOf(getattr(kaVel.Reflection, scope)):  # none that scripts can make
            function = name if way == 'call' else way + name[0].upper() + name[1:]
            if not getattr(kaVel.Reflection, scope).getMember(function):
                raise AttributeError('no member')
            return
        if way == 'get':
            getattr(subject, name)
        elif way == 'set':
            setattr(subject, name, *values)
        else:
            getattr(subject, name)(*values)

    def plain(self, kind):
        if kind.startswith('text:'):
            return kind[len('text:'):]
        if kind == 'dead':
            return self.dead
        return VALUES[kind] if kind in VALUES else self.subject(kind)
