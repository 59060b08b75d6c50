"""Checks the layout of C++ sources against .clang-format. Prints one line a file that differs."""
import subprocess


def findings(root):
    files = sorted(str(path.relative_to(root)) for folder in ("src", "tests", "benchmarks", "tools")
                   for path in (root / folder).rglob("*") if path.suffix in (".h", ".cpp") and not path.is_symlink())
    files = [name for name in files if not is_borrowed(name)]
    for start in range(0, len(files), 100):
        result = subprocess.run(["clang-format", "--dry-run", "--ferror-limit=1", *files[start:start + 100]], cwd=root,
                                capture_output=True, text=True, check=False)
        seen = set()
        for line in result.stderr.splitlines():
            name = line.split(":")[0]
            if "clang-format-violations" in line and name not in seen:
                seen.add(name)
                yield f"{name}: layout differs from .clang-format (clang-format -i {name})"


def is_borrowed(name):
    """Benchmark sources shared between projects keep their own layout."""
    return name.startswith("benchmarks/peers/")
