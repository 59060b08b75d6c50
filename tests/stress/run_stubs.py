"""Makes every call that the stubs offer once, with arguments made from its signature: none may be refused as a call."""
import ast
import json
import pathlib
import re
import sys

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parents[1] / "support"), str(pathlib.Path(__file__).parent)]
import game
import golden
import run_stress

# What the run cannot call and go on, besides the properties whose setters run_stress skips.
SKIPPED = {
    **run_stress.SKIPPED,
    r"GameLoopSystem::(frameLimit|frameCallback|unattended|currentlyActiveCoordinator)": "as their setters",
    r"InputSystem::(replay|record)File": "as their setters",
}


def plan(stub):
    """Every entry: its class, its name, how it is reached, and the annotations of its arguments."""
    tree = ast.parse(stub)
    enums = spellings(tree.body, "")
    reflected = reflected_classes(tree)
    entries = []
    for node in tree.body:
        if isinstance(node, ast.ClassDef) and node.name in reflected:
            entries += members(node, enums)
        elif isinstance(node, ast.ClassDef) and node.name == "_ReflectionSystem":
            entries += [entry("", each, "function", enums) for each in node.body
                        if isinstance(each, ast.FunctionDef) and decorators(each) == ["staticmethod"]]
    made = concrete_classes(tree)
    for each in entries:
        each["subject"] = made.get(each["class"], "")
        each["arguments"] = [made.get(k, "dead" if k in reflected else k) for k in each["arguments"]]
    return [each for each in entries if not any(re.fullmatch(p, label(each)) for p in SKIPPED)]


def concrete_classes(tree):
    """A class that has objects for each class of the stub: itself, or the first of those that derive from it."""
    classes = [each for each in tree.body if isinstance(each, ast.ClassDef)]
    forms = next(each for each in classes if each.name == "_Make")
    found = {each.value: each.value for each in ast.walk(forms) if isinstance(each, ast.Constant)}
    bases = {each.name: ast.unparse(each.bases[0]) for each in classes
             if each.bases and not each.name.startswith("Any")}
    for name in list(found):
        while (base := bases.get(name)) is not None:
            found.setdefault(base, found[name])
            name = base
    return found


def reflected_classes(tree):
    """The classes that the stub's register of reflected things names."""
    register = next(each for each in tree.body if isinstance(each, ast.ClassDef) and each.name == "_ReflectionSystem")
    return {each.target.id for each in register.body
            if isinstance(each, ast.AnnAssign) and ast.unparse(each.annotation).startswith("_ObjectClass[")}


def members(node, enums):
    ways = {"property": "get", "staticmethod": "static"}
    for each in node.body:
        if isinstance(each, ast.FunctionDef):
            marks = decorators(each)
            written = marks and marks[0].endswith(".setter")
            if marks == ["property"] and ast.unparse(each.returns) == "None":
                continue  # a property that can only be written
            yield entry(node.name, each, "set" if written else ways.get(marks[0], "call") if marks else "call", enums)


def decorators(function):
    return [ast.unparse(each) for each in function.decorator_list]


def entry(scope, function, way, enums):
    arguments = [a for a in function.args.posonlyargs + function.args.args if a.arg != "self"]
    return {"class": scope, "name": function.name, "way": way,
            "arguments": [kind(ast.unparse(a.annotation), enums) for a in arguments]}


def spellings(body, prefix):
    """The names of the values of each enum."""
    found = {}
    for node in body:
        if isinstance(node, ast.AnnAssign) and ast.unparse(node.annotation) == "TypeAlias":
            found[prefix + node.target.id] = [each.value for each in ast.walk(node.value)
                                              if isinstance(each, ast.Constant)]
        elif isinstance(node, ast.ClassDef):
            found.update(spellings(node.body, prefix + node.name + "."))
    return found


def kind(annotation, enums):
    """What Stubs.py makes an argument from: a type's name, a key, or the name of an enum's value."""
    first = annotation.split(" | ")[0]
    if first in enums:
        return "text:" + enums[first][0]
    if key := re.fullmatch(r"Literal\['(\w+)'\]", first):
        return "text:" + key[1]
    return "class" if first.startswith("_ObjectClass") else first


def label(each):
    return f"{each['class']}::{each['name']}".lstrip(":")


def test_every_call_of_the_stubs_reaches_its_function(world):
    for name in ("Stress", "Stubs"):
        source = pathlib.Path(__file__).with_name(f"{name}.py").read_text(encoding="utf-8")
        world.write(f"scripts/levels/{name}.py", source)
    golden.small(world, (64, 36))
    entries = plan((game.ROOT / "scripts" / "_kaVel.pyi").read_text(encoding="utf-8"))
    assert len(entries) > 1000, len(entries)
    world.write("bin/stubs.json", json.dumps(entries))
    run = world.run(level="Stubs", frames=len(entries) // 10 + 10)
    made = (world.folder / "bin" / "stubs.trace").read_text(encoding="utf-8").splitlines()
    assert run.code == 0 and run.has(f"Stubs: {len(entries)} calls"), (
        f"exit code {run.code} after {len(made)} of {len(entries)} calls; the last was {made[-1:]}; the log ends:\n"
        f"{run.log[-3000:]}")
    refused = [line.split("refused: ", 1)[1] for line in run.log.splitlines() if "refused: " in line]
    assert not refused, f"{len(refused)} calls that the stubs offer are none:\n" + "\n".join(refused)


if __name__ == "__main__":
    game.main(dict(globals()))
