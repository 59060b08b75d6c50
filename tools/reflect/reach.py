"""What of the model scripts can reach, and under which types."""

import keyword

SCRIPT_TYPES = {"bool": "bool", "float": "float", "double": "float", "String": "str", "Vec4": "Vec4",
                "Quaternion": "Quaternion", "Variant": "Any", "PythonObject": "Any", "GridCell": "GridCell",
                "PathRequest": "PathRequest",
                "RayCollision": "RayCollision", "SegmentHit": "SegmentHit", "MeshBuilder": "MeshBuilder",
                "std::vector<GridCell>": "list[GridCell]", "GlobalListener": "GlobalListener",
                "HeardSound": "HeardSound", "HeardWay": "HeardWay", "ReverbShare": "ReverbShare",
                "SteeringOutput": "SteeringOutput", "SteeringComponent::AvoidRay": "AvoidRay",
                "FlockingComponent::FlockTarget": "FlockTarget", "ConsoleCommand": "ConsoleCommand"}


def properties(record):
    """The properties of a class as the table collects them: (name, getter, setter) in order of appearance."""
    found = {}
    for member in record.members:
        if not member.takes_this or len(member.name) <= 3 or member.signature is None:
            continue
        slot = {("get", 0): 1, ("set", 1): 2}.get((member.name[:3], len(member.parameters)))
        if slot is None:
            continue
        name = member.name[3].lower() + member.name[4:]
        entry = found.setdefault(name, [name, None, None])
        if entry[slot] is None:
            entry[slot] = member
    return [tuple(entry) for entry in found.values()]


def own_properties(record):
    """The public properties that a class itself declares a half of, under names that scripts can write.

    Halves that are not public are left out: scripts reach them, but they are nobody's interface. A function of the
    property's name hides it.
    """
    taken = {m.name for m in record.members if m.kind == "function"}
    declared = {id(m) for m in record.own}
    found = []
    for name, *halves in properties(record):
        getter, setter = (h if h is not None and h.protection == "public" else None for h in halves)
        if name not in taken and not keyword.iskeyword(name) and (id(getter) in declared or id(setter) in declared):
            found.append((name, getter, setter))
    return found


def methods(record):
    """The public functions that a class itself declares and scripts can call.

    A name means the first function that has it, as in the table: overloads behind it are out of reach, and a first one
    that no call reaches hides them.
    """
    found = {}
    for member in record.own:
        if member.kind == "function":
            found.setdefault(member.name, member)
    return [m for m in found.values() if m.signature is not None and m.protection == "public"]


def free_enums(model):
    """Enums that stand in no class, by name."""
    return sorted((e for e in model.enums() if e.name and e.scope.kind == "file" and not e.imported),
                  key=lambda e: e.name)


def free_functions(model):
    """Callable functions that stand in no class or namespace; a name means its first function, as in a class."""
    found = {}
    for scope in sorted((f for f in model.files if not f.imported), key=lambda f: f.file):
        for member in scope.own:
            if member.kind == "function":
                found.setdefault(member.name, member)
    return [found[name] for name in sorted(found) if found[name].signature is not None]


def reflected_classes(model):
    """The classes of objects that stand in no other class and were not described elsewhere."""
    return [c for c in model.classes() if c.is_reflected and c.class_scope is None and not c.imported]


def script_name(record):
    """How stubs and documents name a class or an enum."""
    return record.qualified.replace("::", ".")


def found_name(record):
    """The type of an object that a call finds: of this class, or of one that derives from it and is not known here."""
    return f"Any{record.name}" if record.derived and record.class_scope is None else script_name(record)


def spellings_name(enum):
    """The type of the texts that stand for the values of an enum."""
    return script_name(enum) + "Name"


def given_type(crossing):
    """What a script passes for an argument."""
    if crossing.category == "enum":
        return f"{spellings_name(crossing.record)} | {script_name(crossing.record)} | int"
    if crossing.category == "handle":
        return script_name(crossing.record)
    if crossing.cpp == "ReflectorPtr":
        return "_Callable"
    return got_type(crossing)


def got_type(crossing):
    """What a script gets as a result."""
    if crossing.category in ("void", "code"):
        return "None"
    if crossing.category == "result":
        return got_type(crossing.inner)
    if crossing.category == "answer" and crossing.inner is not None:
        return f"list[{got_type(crossing.inner)}]"
    if crossing.category == "handle":
        return found_name(crossing.record)
    if crossing.category == "enum":
        return "int"
    if crossing.cpp == "ReflectorPtr":
        return "IReflectedThing | None"
    return SCRIPT_TYPES.get(crossing.cpp, "int")


def argument_list(function):
    """The parameters of a function as a script sees them, without self."""
    names = []
    for index, (parameter, crossing) in enumerate(zip(function.parameters, function.signature.arguments)):
        name = parameter.name or f"value{index}"
        name += "_" if keyword.iskeyword(name) else ""
        names.append(f"{name}: {given_type(crossing)}")
    return names
