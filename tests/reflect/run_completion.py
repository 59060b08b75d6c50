"""What an editor shows an author: names, types and comments, asked of the language server that ./check installs."""
import argparse
import ast
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "check"), str(ROOT / "tests" / "support")]
import node_tools
from cases import run

LEVEL = (ROOT / "scripts" / "levels" / "Completed.py").as_uri()  # is in the editor only
BEFORE = """import kaVel
import objects.GameObjects as place
from kaVel import Coordinator


def build(coordinator: Coordinator):
    """


class LanguageServer:
    """A language server over its standard streams, with one file open in it."""

    def __init__(self):
        server = node_tools.program(ROOT, "pyright-langserver")
        self.process = subprocess.Popen([str(server), "--stdio"], cwd=ROOT, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.number = 0
        self.version = 0
        folder = {"uri": ROOT.as_uri(), "name": "game"}
        documents = {"hover": {"contentFormat": ["plaintext"]}}
        self.ask("initialize", processId=None, rootUri=ROOT.as_uri(), workspaceFolders=[folder],
                 capabilities={"textDocument": documents})
        self.tell("initialized")
        self.tell("textDocument/didOpen", textDocument={"uri": LEVEL, "languageId": "python", "version": 0, "text": ""})

    def close(self):
        self.ask("shutdown")
        self.tell("exit")
        self.process.communicate(timeout=30)

    def completions(self, line):
        """Names that the editor offers at the end of a line of a level's `build`."""
        found = self.ask("textDocument/completion", **self.type(line, len(line)))
        return {each["label"] for each in found["items"]}

    def hover(self, line, word):
        """What the editor shows of a word in a line of a level's `build`."""
        found = self.ask("textDocument/hover", **self.type(line, line.index(word)))
        return found["contents"]["value"]

    def type(self, line, column):
        """Writes a line into the file; gives a place in it."""
        self.version += 1
        self.tell("textDocument/didChange", textDocument={"uri": LEVEL, "version": self.version},
                  contentChanges=[{"text": BEFORE + line + "\n"}])
        return {"textDocument": {"uri": LEVEL}, "position": {"line": BEFORE.count("\n"), "character": 4 + column}}

    def ask(self, method, **parameters):
        self.number += 1
        self.send(id=self.number, method=method, params=parameters)
        while True:
            message = self.receive()
            if message.get("id") == self.number and "method" not in message:
                assert "error" not in message, message
                return message["result"]
            if "id" in message:  # the server asks for settings, of which there are none
                items = message.get("params", {}).get("items", [])
                self.send(id=message["id"], result=[{} for _ in items])

    def tell(self, method, **parameters):
        self.send(method=method, params=parameters)

    def send(self, **message):
        text = json.dumps({"jsonrpc": "2.0", **message}).encode()
        self.process.stdin.write(b"Content-Length: %d\r\n\r\n%s" % (len(text), text))
        self.process.stdin.flush()

    def receive(self):
        length = 0
        while line := self.process.stdout.readline().strip():
            name, _, value = line.partition(b":")
            length = int(value) if name.lower() == b"content-length" else length
        assert length, "the language server has ended"
        return json.loads(self.process.stdout.read(length))


def test_names_are_offered_where_an_author_needs_them(server):
    for line, wanted in (
            ("coordinator.", {"loadMap", "getManager", "murder", "name"}),
            ("kaVel.", {"make", "addComponent", "onKey", "Entity", "Coordinator"}),
            ("kaVel.getSystem('WindowSystem2').", {"fullScreen", "width"}),
            ("kaVel.getSystem('", {"'WindowSystem2'", "'GameLoopSystem'"}),
            ("coordinator.getManager('graphics2').", {"sceneAmbient", "pushCamera"}),
            ("place.", {"Desk", "IronDoor", "LightSwitch"}),
            ("place.Desk(coordinator, 'desk').", {"getComponent", "parent"}),
            ("place.Desk(coordinator).getComponent('transform').", {"position", "orientation"}),
            ("place.Desk(coordinator).getComponent('graphics2').", {"visible", "layer"}),
            ("kaVel.make('MapRootEntity').", {"mapName"}),
            ("kaVel.addComponent(place.Entity(coordinator), 'transform', 'TransformComponent', ", {"position="}),
            ("coordinator.getChild('row').", {"children", "murder"})):
        offered = server.completions(line)
        assert wanted <= offered, f"{line} lacks {sorted(wanted - offered)} among {len(offered)}"


def test_a_comment_stands_behind_each_name(server):
    for line, word, wanted in (
            ("coordinator.loadMap('row')", "loadMap", "Has the script `loader.loadMap` build a map"),
            ("kaVel.onKey(coordinator, 'use', print)", "onKey", "Calls a function without arguments whenever"),
            ("kaVel.getSystem('WindowSystem2')", "getSystem", "The running system of this class name"),
            ("place.IronDoor(coordinator)", "IronDoor", "An iron leaf that is hinged on its left"),
            ("place.Desk(coordinator)", "Desk", "A writing desk, 1.7 m wide")):
        shown = server.hover(line, word)
        assert wanted in shown, f"{word}: {shown}"


def test_every_pattern_tells_what_it_is(_):
    silent, count = [], 0
    for path in sorted((ROOT / "scripts" / "objects").rglob("*.py")):
        body = ast.parse(path.read_text(encoding="utf-8")).body
        for node, behind in zip(body, body[1:] + [None]):
            if isinstance(node, ast.FunctionDef) and "kaVel.pattern" in map(ast.unparse, node.decorator_list):
                name, told = node.name, ast.get_docstring(node)
            elif isinstance(node, ast.Assign) and ast.unparse(node.value).startswith(("thing(", "solid(")):
                name, told = node.targets[0].id, isinstance(behind, ast.Expr) and isinstance(behind.value, ast.Constant)
            else:
                continue
            count += 1
            silent += [] if told else [f"{path.name}: {name}"]
    assert count > 100 and not silent, f"of {count} patterns: {silent}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    server = LanguageServer()
    code = run(globals(), options.names, lambda _: (server,))
    server.close()
    sys.exit(code)


if __name__ == "__main__":
    main()
