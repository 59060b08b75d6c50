"""Runs the cases of a Python test: the functions of a module whose names begin with `test_`."""
import pathlib
import tempfile
import traceback


def run(cases, names=(), given=lambda folder: (folder,)):
    """Runs all cases, or those of `names`, and returns the exit code.

    Each is called with what `given` makes of a temporary folder of its own; one that raises is reported, and the next
    one runs.
    """
    failed = 0
    for name, case in list(cases.items()):
        if not name.startswith("test_") or (names and name not in names):
            continue
        with tempfile.TemporaryDirectory() as folder:
            try:
                case(*given(pathlib.Path(folder)))
                print(f"ok {name}", flush=True)
            except Exception:
                failed += 1
                print(f"FAILED {name}\n{traceback.format_exc()}", flush=True)
    return 1 if failed else 0
