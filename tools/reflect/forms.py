"""Forms of calls whose result depends on a name that is passed, one for each name that the table knows.

    coordinator.getManager('graphics2')            a GraphicsManager2
    kaVel.make('Entity', name='door')              an Entity, whose properties may follow by name
    kaVel.addComponent(door, 'transform', 'TransformComponent', position=...)

Which keys a component or a manager goes by is what the comment of its class says in its own words, as in `the key
"physics"` and `under the component key "trigger" or "scriptedEvent"`. A class that says nothing has its base's.
"""

import re

from reach import found_name, given_type, own_properties, properties, reflected_classes

KEYS = re.compile(r'\bkey ("\w+"(?:(?:, | or )"\w+")*)')
# Parameters of `kaVel.make` that are properties too.
NAMED_BY_MAKE = ("name", "parent")


class Forms:
    """The forms for one model."""

    def __init__(self, model):
        self.classes = reflected_classes(model)
        self.by_name = {record.name: record for record in self.classes}

    def of_method(self, function):
        """The stub of a method with forms, without indentation; empty for any other."""
        if function.qualified == "Entity::getComponent":
            return self._by_key(function, "AbstractComponent")
        if function.qualified == "Coordinator::getManager":
            return self._by_key(function, "AbstractManager")
        if function.qualified == "Entity::addComponentRP":
            return _by_class(function, "managerName: str, componentType")
        if function.qualified == "Object::getAncestorOfType":
            return _by_class(function, function.parameters[0].name)
        return []

    def blocks(self):
        """What `kaVel.py` gives its own functions as types, and the classes of objects that a call finds."""
        found = [[f"class {found_name(record)}({record.name}, Any):",
                  f'    """An object of the class {record.name} or of one that derives from it: only the run knows."""']
                 for record in self.classes if record.derived]
        found += [self._properties(record) for record in self.classes]
        systems = [r for r in self.classes if self._is_a(r, "System") and not r.is_abstract]
        found.append(_call("_GetSystem", [(f"name: Literal['{r.name}'], /", r.name) for r in systems]))
        found.append(_call("_Make", [
            (f"className: Literal['{r.name}'], /, parent: Object | None = None, name: str = '', "
             f"**properties: Unpack[{r.name}Properties]", r.name) for r in self.classes if not r.is_abstract]))
        added = [r for r in self.classes if self._is_a(r, "AbstractComponent") and not r.is_abstract]
        found.append(_call("_AddComponent", [
            ("entity: Entity, key: str, className: _ObjectClass[_T], /, **properties: Any", "_T"),
            *((f"entity: Entity, key: {_literal(self._keys(r)) or 'str'}, className: Literal['{r.name}'], /, "
               f"**properties: Unpack[{r.name}Properties]", r.name) for r in added)]))
        return found

    @staticmethod
    def _is_a(record, name):
        return any(base.name == name for base in (record, *record.all_bases))

    def _keys(self, record):
        """The keys that a class goes by."""
        for level in (record, *record.all_bases):
            for text in (level.comment.brief, *level.comment.paragraphs):
                match = KEYS.search(text)
                if match:
                    return re.findall(r'"(\w+)"', match.group(1))
        return []

    def _by_key(self, function, base):
        """A look-up by key: what is known of each key, and the base for every other."""
        holders = {}
        for record in self.classes:
            if self._is_a(record, base) and record.name != base:
                for key in self._keys(record):
                    holders.setdefault(key, []).append(record)
        found = [(f"self, {function.parameters[0].name}: Literal['{key}'], /", found_name(self._common(records)))
                 for key, records in sorted(holders.items())]
        found.append((f"self, {function.parameters[0].name}: str, /", found_name(self.by_name[base])))
        return _overloads(function.name, found, function.comment.brief)

    @staticmethod
    def _common(records):
        """The nearest class that all of these are."""
        first, *others = [[r, *r.all_bases] for r in records]
        return next(base for base in first if all(base in other for other in others))

    def _properties(self, record):
        """What can be set of a class by name, as the keywords of a call."""
        bases = [f"{base.name}Properties" for base, _, _ in record.bases if base.is_reflected]
        inherited = {name for base in record.all_bases for name, _, setter in properties(base) if setter is not None}
        lines = [f"class {record.name}Properties({bases[0] if bases else 'TypedDict'}, total=False):"]
        for name, _, setter in own_properties(record):
            if setter is not None and name not in inherited and name not in NAMED_BY_MAKE:
                lines.append(f"    {name}: {given_type(setter.signature.arguments[0])}")
        return lines if len(lines) > 1 else [lines[0] + " ..."]


def spellings(enum):
    """The type of the texts that stand for an enum's values."""
    return [f"{enum.name}Name: TypeAlias = {_literal(v.name for v in enum.own)}"] if enum.own else []


def _literal(texts):
    listed = ", ".join(f"'{text}'" for text in texts)
    return f"Literal[{listed}]" if listed else ""


def _by_class(function, parameter):
    """A call that gives an object of the class that is passed."""
    before, _, name = parameter.rpartition(" ")
    before = before + " " if before else ""
    result = found_name(function.signature.result.record)
    return _overloads(function.name, [(f"self, {before}{name}: _ObjectClass[_T], /", "_T"),
                                      (f"self, {before}{name}: _Callable, /", result)], function.comment.brief)


def _call(name, listed):
    return [f"class {name}(Protocol):"] + ["    " + line for line in _overloads(
        "__call__", [(f"self, {arguments}", result) for arguments, result in listed])]


def _overloads(name, listed, brief=""):
    lines = []
    for arguments, result in listed:
        lines += ["@overload"] if len(listed) > 1 else []
        lines.append(f"def {name}({arguments}) -> {result}:" + ("" if brief else " ..."))
        lines += [f'    """{brief}"""'] if brief else []
    return lines
