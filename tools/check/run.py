"""Runs the checks of the tree and every test program, and ends with the line "N passed, N failed"."""
import argparse
import concurrent.futures
import os
import pathlib
import subprocess
import sys
import tempfile
import typing
import xml.etree.ElementTree

import compilers
import includes
import python_style
import script_types
import style
import tidy

ROOT = pathlib.Path(__file__).resolve().parents[2]
TIMEOUT_S = 1800
LEAK_CHECK_BROKE = "LeakSanitizer has encountered a fatal error"


class Result(typing.NamedTuple):
    """What a test program had to say."""

    title: str
    passed: int
    failed: int
    output: str


class Tally:
    def __init__(self):
        self.passed = 0
        self.failed = 0

    def check(self, title, findings):
        findings = list(findings)
        for line in findings:
            print(f"  {line}")
        self.passed += not findings
        self.failed += bool(findings)
        print(f"{'ok    ' if not findings else 'FAILED'} {title}", flush=True)

    def add(self, result):
        if result.failed:
            print(result.output)
        self.passed += result.passed
        self.failed += result.failed
        print(f"{'ok    ' if not result.failed else 'FAILED'} {result.title}: {result.passed} passed, "
              f"{result.failed} failed", flush=True)


def run_gtest(program, work):
    with tempfile.NamedTemporaryFile(suffix=".xml") as report:
        command = [str(program), "--gtest_brief=1", f"--gtest_output=xml:{report.name}"]
        code, output = run(command, work)
        note = ""
        if LEAK_CHECK_BROKE in output:
            # The checker itself fell over the driver's threads at exit: the run counts, its leaks stay unknown.
            note = ", without the leak checker, which broke"
            code, output = run(command, work, ASAN_OPTIONS="detect_leaks=0")
        passed, failed = read_report(report.name)
    if code != 0 and failed == 0:
        # It ended without a report of the failure: a crash, a time-out or a sanitizer's finding at exit.
        failed = 1
    return Result(f"{program.name} (exit {code}{note})", passed, failed, output)


def run_script(script, build):
    """A Python test of the executable; it prints one line 'ok NAME' or 'FAILED NAME' a case."""
    code, output = run([sys.executable, str(script), "--build", str(build)], ROOT)
    passed = sum(line.startswith("ok ") for line in output.splitlines())
    failed = sum(line.startswith("FAILED ") for line in output.splitlines())
    if (code != 0 or passed == 0) and failed == 0:
        failed = 1
    return Result(str(script.relative_to(ROOT)), passed, failed, output)


def run(command, work, **environment):
    try:
        result = subprocess.run(command, cwd=work, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=TIMEOUT_S,
                                check=False, env=dict(os.environ, **environment))
        return result.returncode, result.stdout.decode("utf-8", "replace")
    except subprocess.TimeoutExpired as expired:
        return 124, (expired.stdout or b"").decode("utf-8", "replace") + f"\ntimed out after {TIMEOUT_S} s"


def read_report(name):
    try:
        root = xml.etree.ElementTree.parse(name).getroot()
    except (xml.etree.ElementTree.ParseError, OSError):
        return 0, 0
    failed = int(root.get("failures", 0)) + int(root.get("errors", 0))
    skipped = int(root.get("disabled", 0)) + sum(case.find("skipped") is not None for case in root.iter("testcase"))
    return int(root.get("tests", 0)) - failed - skipped, failed


def jobs(build, names):
    """Every test program of some folders of tests/, or of all, as a call."""
    for folder in sorted(path.name for path in (ROOT / "tests").iterdir() if path.is_dir()):
        if names and folder not in names:
            continue
        program = build / f"test_{folder}"
        if program.exists():
            yield run_gtest, program, build / "game" / "bin"
        for script in sorted((ROOT / "tests" / folder).glob("run_*.py")):
            yield run_script, script, build


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--tidy", action="store_true")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="test programs that run side by side")
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    build = (ROOT / options.build).resolve()

    tally = Tally()
    if not options.names:
        tally.check("include direction", includes.findings(ROOT))
        tally.check("source layout", style.findings(ROOT))
        tally.check("Python layout", python_style.findings(ROOT))
        tally.check("types of the scripts", script_types.findings(ROOT))
        if compilers.has_both(build):
            tally.check("both compilers make the same game", compilers.findings(ROOT, build))
    if options.tidy:
        tally.check("clang-tidy", tidy.findings(ROOT, build))
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        running = [pool.submit(*job) for job in jobs(build, options.names)]
        for job in concurrent.futures.as_completed(running):
            tally.add(job.result())

    print(f"{tally.passed} passed, {tally.failed} failed")
    return 1 if tally.failed or not tally.passed else 0


if __name__ == "__main__":
    sys.exit(main())
