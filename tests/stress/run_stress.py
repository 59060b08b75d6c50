"""Calls every reflected function from a script with edge-case arguments: errors may come back, a crash may not."""
import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

SEED = 20250
ROUNDS = 12  # calls of each function

# What the run cannot call and go on: a pattern of the names, and the reason.
SKIPPED = {
    r"failMissingSystem": "says that the process cannot go on, and ends it",
    r"\w+::system(Startup|Shutdown)": "a system's life belongs to SystemSystem; out of turn it takes devices away",
    r"SystemSystem::(bootstrap|shutdown|stopAll)": "begin and end the process",
    r"GameLoopSystem::quit(WithoutLevel|IfUnattended|AtFrameLimit)?": "end the run",
    r"GameLoopSystem::set(FrameLimit|FrameCallback|Unattended)": "end the run, or make it end at the first failure",
    r"InputSystem::set(Replay|Record)File|StateDigest::\w+|GraphicsSystem2::(captureScreen|writeScreenshot)":
        "a file that cannot be read or written ends the run",
    r"GameLoopSystem::(queueLoadLevel|runLevel|switchLevel)": "a level that cannot be built ends the game, as it must",
    r"GameLoopSystem::(setCurrentlyActiveCoordinator|retireLevel|renewLevel|queueRenewLevel)":
        "takes the level that makes the calls out of the frame",
    r"GraphicsSystem2::(create|release|reset|lost)Device": "private steps of the device's life, right in their order",
    r"GraphicsSystem2::(create|destroy)RenderTargets": "likewise",
    r"GraphicsSystem2::(onCreateOrReset|rememberScreenTargets|tryToRecoverDevice)": "likewise",
    r"GraphicsManager2::onMurder": "takes the running level's scene graph away, which the next frame cannot be without",
    r"GraphicsManager2::drawScreenLayer": "private step; a layer that is none is a critical assertion",
    r"SoundSystem::openEventSystem": "private step of the start; a second one loses the first",
    r"WindowSystem2::(createWindow|registerWindowClass)": "private steps of the start; there is one window only",
    r"PlayerPhysics::setWon": "a body that steps on after the game was won ends the process, as it must",
    r"SceneGraph::fillInstanceBuffer": "private step that writes as many instances as its caller has counted",
}

NUMBER = re.compile(r"(unsigned|signed|char|short|int|long|std::\w+|size_t|TimerTicks|RequestHandle|ClassNumber)\b")


def plan(names):
    """Every function by scope, with the kinds of its arguments."""
    lines = names.read_text(encoding="utf-8").splitlines()
    enums = {m[1]: m[2] for line in lines if (m := re.match(r"enum (\S+): (.*)", line))}
    scopes = {}
    for line in lines:
        found = re.match(r"(method|static|function) (\S+?)\((.*)\) -> ", line)
        if not found or any(re.fullmatch(pattern, found[2]) for pattern in SKIPPED):
            continue
        scope, _, name = found[2].rpartition("::") if found[1] != "function" else ("", "", found[2])
        arguments = [a for a in re.split(r",\s*(?![^<]*>)", found[3]) if a]
        functions = scopes.setdefault(scope, {})
        functions.setdefault(name, {"name": name, "member": found[1] == "method",
                                    "arguments": [kind(a, scope, enums) for a in arguments]})
    return [{"class": scope, "rounds": ROUNDS, "functions": list(functions.values())}
            for scope, functions in sorted(scopes.items())]


def kind(text, scope, enums):
    bare = re.sub(r"\bconst\b|&", "", text).strip()
    if handle := re.fullmatch(r"Handle<(.*)>", bare):
        return "handle:" + (handle[1] or "Object")
    for name in (f"{scope}::{bare}", bare):
        if name in enums:
            return "enum:" + enums[name]
    known = {"bool": "bool", "float": "float", "double": "float", "Seconds": "float", "String": "text",
             "Vec4": "vector", "Quaternion": "quaternion", "ReflectorPtr": "thing"}
    if bare in known:
        return known[bare]
    return "int" if NUMBER.match(bare) else "anything"


def test_every_reflected_function_survives_edge_cases(world):
    golden.small(world, (64, 36))
    source = pathlib.Path(__file__).with_name("Stress.py")
    world.write("scripts/levels/Stress.py", source.read_text(encoding="utf-8"))
    names = world.build / "reflection" / "names.txt"
    scopes = plan(names)
    world.write("bin/stress.json", json.dumps({"seed": SEED, "scopes": scopes}))
    run = world.run(level="Stress", frames=len(scopes) + 100)

    trace = (world.folder / "bin" / "stress.trace").read_text(encoding="utf-8").splitlines()
    count = sum(len(scope["functions"]) for scope in scopes) * ROUNDS
    assert run.code == 0, (f"exit code {run.code} after {len(trace)} of {count} calls; the last was\n{trace[-1:]}\n"
                           f"the log ends:\n{run.log[-4000:]}")
    run.expect(f"Stress: {count} calls")
    assert "failed without a text" not in run.log
    refused = int(re.search(r"(\d+) refused", run.log)[1])
    assert count // 4 < refused < count, f"{refused} of {count} calls were refused"


if __name__ == "__main__":
    game.main(dict(globals()))
