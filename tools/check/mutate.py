"""Says what the tests would not notice: makes one small fault after the other and runs tests against each.

    /usr/bin/python3 tools/check/mutate.py --build build/release --tests object python --count 40 src/object/tree

Every fault is one changed token of one line (a comparison, a sign, a constant, a truth value, a dropped statement).
The choice follows from the seed, so that two runs compare. A fault that no test notices is printed with its place; one
that does not compile counts for nothing. Sources are put back after each, also when the run is broken off.
"""
import argparse
import pathlib
import random
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOKENS = [(r"==", "!="), (r"!=", "=="), (r"<=", "<"), (r">=", ">"), (r"(?<= )<(?= )", "<="), (r"(?<= )>(?= )", ">="),
          (r"&&", "||"), (r"\|\|", "&&"), (r"(?<= )\+(?= )", "-"), (r"(?<= )-(?= )", "+"), (r"(?<= )\*(?= )", "/"),
          (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"(?<=\()!", ""), (r"\b0\b", "1"), (r"\b1\b", "2"),
          (r"\b0\.5f?\b", "0.25f"), (r"\bmin\(", "max("), (r"\bmax\(", "min("), (r"\+\+", "--")]
# A line that is one call or assignment, which a fault can leave out.
STATEMENT = re.compile(r"^\s+(?!return|const|auto|using|static|case|delete|throw|break|continue)"
                       r"[\w.:>-]+(?:\(.*\)| = .*);$")


def faults(path):
    """Every fault that can be made in a file: (line number, the line with it)."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines()):
        code = line.split("//")[0]
        if not code.strip() or code.lstrip().startswith(("#", "*", "/*", "KV_LOG", "KV_WARN")) or "operator" in code:
            continue
        quoted = [match.span() for match in re.finditer(r'"(?:[^"\\]|\\.)*"', code)]
        for pattern, other in TOKENS:
            for match in re.finditer(pattern, code):
                if not any(start <= match.start() < end for start, end in quoted):
                    yield number, line[:match.start()] + other + line[match.end():]
        if STATEMENT.match(code):
            yield number, re.match(r"\s*", line).group() + ";"


def choose(files, count, seed):
    every = [(path, *fault) for path in files for fault in faults(path)]
    return sorted(random.Random(seed).sample(every, min(count, len(every))), key=lambda fault: (fault[0], fault[1]))


def is_noticed(build, tests):
    """Whether the tests fail; None where the fault does not compile."""
    targets = [f"test_{name}" for name in tests if (ROOT / "tests" / name).is_dir()
               and any((ROOT / "tests" / name).glob("**/*.cpp"))] + ["kaVel"]
    if subprocess.run(["ninja", "-C", str(build), *targets], capture_output=True, check=False).returncode:
        return None
    try:
        result = subprocess.run([sys.executable, "tools/check/run.py", "--build", str(build), *tests], cwd=ROOT,
                                capture_output=True, check=False, timeout=600)
    except subprocess.TimeoutExpired:
        return True
    return result.returncode != 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--tests", nargs="+", required=True, help="folders of tests/")
    parser.add_argument("--count", type=int, default=40)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("files", nargs="+", type=pathlib.Path, help="sources, effects, or folders of them")
    options = parser.parse_args()
    files = sorted(path for name in options.files for path in ([name] if name.is_file() else name.rglob("*"))
                   if path.suffix in (".cpp", ".h", ".fx"))
    build = (ROOT / options.build).resolve()
    if is_noticed(build, options.tests) is not False:
        sys.exit("mutate: these tests do not pass without a fault")

    counts = {True: 0, False: 0, None: 0}
    for path, number, line in choose(files, options.count, options.seed):
        text = path.read_text(encoding="utf-8")
        lines = text.split("\n")
        before, lines[number] = lines[number], line
        try:
            path.write_text("\n".join(lines), encoding="utf-8")
            noticed = is_noticed(build, options.tests)
        finally:
            path.write_text(text, encoding="utf-8")
        counts[noticed] += 1
        if noticed is False:
            print(f"{path}:{number + 1}: unnoticed\n  - {before.strip()}\n  + {line.strip()}", flush=True)
    print(f"{counts[True]} noticed, {counts[False]} unnoticed, {counts[None]} do not compile")


if __name__ == "__main__":
    main()
