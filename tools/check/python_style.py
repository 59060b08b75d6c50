"""Checks every Python source by .flake8. Prints one line a finding."""
import subprocess
import sys

FOLDERS = ("scripts", "tools", "tests", "benchmarks")


def findings(root):
    result = subprocess.run([sys.executable, "-m", "flake8", *FOLDERS], cwd=root, capture_output=True, text=True,
                            check=False)
    yield from result.stdout.splitlines()
    if "No module named flake8" in result.stderr:
        yield "flake8 is missing: install the Debian package of that name"
    else:
        yield from result.stderr.splitlines()
