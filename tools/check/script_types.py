"""Type-checks scripts/ with the stubs that the build writes. Prints one line a finding."""
import json
import subprocess

import node_tools


def findings(root):
    if not (root / "scripts" / "_kaVel.pyi").exists():
        yield "scripts/_kaVel.pyi is missing: the build writes it"
        return
    try:
        checker = node_tools.program(root, "pyright")
    except node_tools.MissingTool as missing:
        yield str(missing)
        return
    result = subprocess.run([str(checker), "--project", "pyrightconfig.json", "--pythonpath",
                             "/usr/bin/python3", "--outputjson"], cwd=root, capture_output=True, text=True, check=False)
    try:
        report = json.loads(result.stdout)
    except ValueError:
        yield f"pyright ended with {result.returncode}: {result.stderr.strip() or result.stdout.strip()}"
        return
    if not report["summary"]["filesAnalyzed"]:
        yield "pyright found no scripts"
    for each in report["generalDiagnostics"]:
        if each["severity"] == "error":
            start = each["range"]["start"]
            yield f"{relative(each['file'], root)}:{start['line'] + 1}:{start['character'] + 1}: {each['message']}"


def relative(path, root):
    return path.removeprefix(f"{root}/")
