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
    result = subprocess.run(["clang-tidy", "-p", str(build), "--quiet", name], cwd=root, capture_output=True, text=True,
                            check=False)
    return [line for line in result.stdout.splitlines() if "warning:" in line or "error:" in line]
