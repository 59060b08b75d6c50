"""Runs clang-tidy over every source file of the build. Prints its warnings, one line each."""
import concurrent.futures
import os
import subprocess


def findings(root, build):
    files = sorted(str(path) for path in (root / "src").rglob("*.cpp"))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for lines in pool.map(lambda name: tidy(root, build, name), files):
            yield from lines


def tidy(root, build, name):
    # The build's flags are those of its compiler, which may know warnings that clang does not.
    command = ["clang-tidy", "-p", str(build), "--quiet", "--extra-arg=-Wno-unknown-warning-option", name]
    result = subprocess.run(command, cwd=root, capture_output=True, text=True, check=False)
    return [line for line in result.stdout.splitlines() if "warning:" in line or "error:" in line]
