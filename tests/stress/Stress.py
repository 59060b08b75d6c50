"""Level that calls every reflected function with edge-case arguments, the functions of one class a frame.

The first room stands beside it as a live tree. What to call comes from `stress.json`, which run_stress.py writes; each
call is noted in `stress.trace` before it is made, so that a crash names its call. The run ends by itself.
"""

import json
import random

import _kaVel
import kaVel
from levels import FirstRoom

villa, corridor = FirstRoom.villa, FirstRoom.corridor

HUGE_TEXT = 'x' * 200000
INFINITY = float('inf')
NAN = float('nan')

NUMBERS = [0, 1, -1, 2, 7, 255, 256, 65535, 2 ** 31 - 1, -2 ** 31, 2 ** 32, 2 ** 63 - 1, -2 ** 63, 2 ** 64, -10 ** 30]
FLOATS = [0.0, -0.0, 1.0, 0.5, -1.0, 1e-300, 1e38, -1e38, 1e300, INFINITY, -INFINITY, NAN]
TEXTS = ['', ' ', 'x', '.', '..', '/', '../..', 'c:/', 's:/TimeSystem', 'name', 'Entity', 'getName', '%s%n%d', 'a\0b',
         'ünïcødé ☃', '\ud800', 'transform', 'master', HUGE_TEXT]


def build(coordinator):
    FirstRoom.build(coordinator)
    entity = kaVel.make('Entity', parent=coordinator, name='stress')
    kaVel.addComponent(entity, 'cursor', 'ScriptComponent', frameCallback=Stress(coordinator).doFrame)


class Stress:
    """The calls of one run, in an order that only the seed decides."""

    def __init__(self, coordinator):
        with open('stress.json', encoding='utf-8') as plan:
            plan = json.load(plan)
        self.random = random.Random(plan['seed'])
        self.work = plan['scopes']
        self.trace = open('stress.trace', 'w', encoding='utf-8', errors='backslashreplace')
        self.coordinator = coordinator
        self.dead = kaVel.make('Entity')
        self.dead.murder()
        self.scratch = None
        self.frames = 0
        self.calls = self.refused = 0

    def doFrame(self):
        self.frames += 1
        if self.frames < 3:  # the dead handle is dead by then
            return
        if self.scratch:
            self.scratch.murder()
        if not self.work:
            kaVel.log('Stress: %d calls, %d refused' % (self.calls, self.refused))
            kaVel.getSystem('GameLoopSystem').quit(0)
            return
        scope = self.work.pop(0)
        self.scratch = kaVel.make('Entity', parent=self.coordinator, name='scratch')
        for function in scope['functions']:
            for _ in range(scope['rounds']):
                self.callOnce(scope['class'], function)

    def callOnce(self, className, function):
        if className:
            target = self.subject(className)
            callee = getattr(kaVel.Reflection, className).getMember(function['name'])
            subjects = [target] if function['member'] else []
        else:
            callee = getattr(kaVel.Reflection, function['name'])
            subjects = []
        arguments = subjects + [self.value(kind) for kind in function['arguments']]
        self.disturb(arguments)
        self.trace.write('%s::%s(%s)\n' % (className, function['name'], ', '.join(self.show(a) for a in arguments)))
        self.trace.flush()
        self.calls += 1
        try:
            callee(*arguments)
        except Exception as error:
            self.refused += 1
            if not str(error):
                kaVel.log('Stress: %s::%s failed without a text' % (className, function['name']))

    def disturb(self, arguments):
        """Spoils every third call: a value of another kind, one too many, or one too few."""
        fate = self.random.randrange(12)
        if fate == 0:
            arguments.append(self.anything())
        elif fate == 1 and arguments:
            arguments.pop(self.random.randrange(len(arguments)))
        elif fate in (2, 3) and arguments:
            arguments[self.random.randrange(len(arguments))] = self.anything()

    def value(self, kind):
        """A value of the kind that a parameter asks for, often an extreme one."""
        pick = self.random.choice
        if kind == 'bool':
            return pick([True, False])
        if kind == 'int':
            return pick(NUMBERS)
        if kind == 'float':
            return pick(FLOATS)
        if kind == 'text':
            return pick(TEXTS)
        if kind == 'vector':
            return _kaVel.Vec4(pick(FLOATS), pick(FLOATS), pick(FLOATS), pick([0, 1]))
        if kind == 'quaternion':
            return _kaVel.Quaternion(pick(FLOATS), pick(FLOATS), pick(FLOATS), pick(FLOATS))
        if kind == 'thing':
            return pick([kaVel.Reflection.Entity, kaVel.Reflection.TransformComponent, kaVel.Reflection.getSystemN,
                         kaVel.Reflection.System, lambda *a: None, self.raiser, None,
                         kaVel.messageType('KeyDownMessage')])
        if kind.startswith('handle:'):
            return pick([self.subject(kind[len('handle:'):]), self.dead, self.scratch, self.nothing()])
        if kind.startswith('enum:'):
            return pick(kind[len('enum:'):].split(' ') + [0, 1, -1, 99, 'NO_SUCH_VALUE'])
        return self.anything()

    def anything(self):
        return self.random.choice([
            None, True, self.random.choice(NUMBERS), self.random.choice(FLOATS), self.random.choice(TEXTS), b'bytes',
            [], {}, (1, 2), object(), lambda: None, self.raiser, _kaVel.Vec4(NAN, INFINITY, 0, 1), _kaVel.Quaternion(),
            self.dead, self.scratch, self.nothing(), kaVel.Reflection.Entity, int])

    def nothing(self):
        """A handle that never referred to anything."""
        return self.scratch.getComponent('noSuchComponent')

    @staticmethod
    def raiser(*_):
        raise ValueError('raised on purpose')

    def subject(self, className):
        """An object of a class: a system or manager as it runs, anything else new and under the scratch entity."""
        record = getattr(kaVel.Reflection, className)
        if record.isSubclassOf(kaVel.Reflection.System):
            return kaVel.Reflection.getSystemN(className) or self.dead
        if record.isSubclassOf(kaVel.Reflection.AbstractManager):
            return self.living(record) or self.dead
        made = record.construct_()
        if not made:
            return self.scratch
        if record.isSubclassOf(kaVel.Reflection.AbstractComponent):
            made = self.component(record) or made
        if not made.parent:
            made.setParent(self.scratch)
        return made

    def component(self, record):
        """A component made by its manager on an entity of its own, as the room has one under the same key."""
        model = self.living(record)
        if not model:
            return None
        entity = kaVel.make('Entity', parent=self.scratch, name='holder')
        return entity.addComponentRP(model.name, record)

    def living(self, record):
        """An object of the class in the level, or None."""
        for handle in kaVel.descendants(self.coordinator):
            if handle._getType().isSubclassOf(record):
                return handle
        return None

    @staticmethod
    def show(argument):
        if isinstance(argument, str) and len(argument) > 40:
            return 'str of %d' % len(argument)
        try:
            return repr(argument)
        except Exception as error:
            return 'unprintable: %s' % error
