"""Runs workloads, the engine's programs and the packaged peers side by side, and prints one line a row.

Columns: workload, subject, median, unit, ratio to the fastest peer that does the same work (below 1 the engine is
ahead). The same goes as JSON to build/bench.json.
"""
import argparse
import json
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]

# workload: (unit, [(subject's program, filter of its benchmarks, {benchmark's name: row})], peers whose work is not the
# same and who therefore set no ratio)
WORKLOADS = {
    "W1": ("ns/look-up", [("bench_engine", "W1/", {
        "W1/handle/0live_1dead_2mixed:0": "live engine", "W1/handle/0live_1dead_2mixed:1": "dead engine",
        "W1/handle/0live_1dead_2mixed:2": "mixed engine"}),
        ("peer_w01_handle_limits", ".", {
            "run<HashTable<std::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:0": "live std::unordered_map",
            "run<HashTable<std::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:1": "dead std::unordered_map",
            "run<HashTable<std::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:2": "mixed std::unordered_map",
            "run<HashTable<boost::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:0": "live boost::unordered_map",
            "run<HashTable<boost::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:1": "dead boost::unordered_map",
            "run<HashTable<boost::unordered_map<std::uint32_t, Obj*>>>/0live_1dead_2mixed:2": "mixed boost::unordered_map",
            "run<DenseTable>/0live_1dead_2mixed:0": "live limit: dense table",
            "run<DenseTable>/0live_1dead_2mixed:1": "dead limit: dense table",
            "run<DenseTable>/0live_1dead_2mixed:2": "mixed limit: dense table"})]),
    "W2": ("ns/call", [("bench_engine", "W2/", {
        "W2/call_resolved": "resolved-call engine", "W2/call_by_name": "named-call engine",
        "W2/property_set_get_by_name": "named-set+get engine", "W2/property_set_get_resolved": "resolved-set+get engine"}),
        ("peer_w02_reflect_rttr", ".", {
            "rttr_call_resolved": "resolved-call RTTR", "rttr_call_by_name": "named-call RTTR",
            "rttr_property_set_get_by_name": "named-set+get RTTR",
            "rttr_property_set_get_resolved": "resolved-set+get RTTR", "limit_virtual": "resolved-call limit: virtual"})]),
    "W3": ("ns/listener", [("bench_engine", "W3/", {"W3/message": "message engine"}),
                           ("peer_w03_message_signals2", "tracked$|limit_pairs", {
                               "signals2_tracked": "message signals2 tracked", "limit_pairs": "message limit: pairs"})]),
    "W3b": ("ns/listener", [("bench_engine", "W3b/", {"W3b/churn": "churn engine"}),
                            ("peer_w03_message_signals2", "churn", {"signals2_tracked_churn": "churn signals2 tracked"})]),
    "W4": ("ns/round", [("bench_engine", "W4/", {
        "W4/call": "call engine", "W4/call_bound": "bound engine", "W4/prop_get": "get engine",
        "W4/prop_set": "set engine", "W4/empty_loop": "empty engine"}),
        ("peer_w04_python_boost", "bound/", {
            "bound/call": "call Boost.Python", "bound/call_bound": "bound Boost.Python",
            "bound/prop_get": "get Boost.Python", "bound/prop_set": "set Boost.Python"}),
        ("peer_w04_python_pybind11", "bound/", {
            "bound/call": "call pybind11", "bound/call_bound": "bound pybind11", "bound/prop_get": "get pybind11",
            "bound/prop_set": "set pybind11"}),
        ("peer_w04_python_limit", "bound/", {
            "bound/call": "call limit: C interface", "bound/call_bound": "bound limit: C interface",
            "bound/prop_get": "get limit: C interface", "bound/prop_set": "set limit: C interface"})]),
    "W5": ("ns/component", [("bench_engine", "W5/", {"W5/frame": "frame engine"}),
                            ("peer_w05_frame_limits", ".", {
                                "reference_set_plus_hash_map": "frame set and hash map",
                                "limit_virtual_vector": "frame limit: virtual calls over vectors"})]),
    "W13": ("ns/name", [("bench_engine", "W13/", {f"W13/{verb}": f"{verb} engine"
                                                  for verb in ("copy", "equal", "unequal", "hash", "find")}),
                        ("peer_w13_names_std", ".", {
                            f"{verb}<{kind}>": f"{verb} {name}"
                            for verb in ("copy", "equal", "unequal", "hash", "find")
                            for kind, name in (("std::string", "std::string"), ("Fly", "boost::flyweight"))})]),
    "W14": ("ns/line", [("bench_engine", "W14/", {"W14/format": "format engine", "W14/file": "file engine"}),
                        ("peer_w14_log_spdlog", ".", {
                            "spdlog_format_only": "format spdlog", "spdlog_file": "file spdlog",
                            "limit_snprintf": "format limit: snprintf",
                            "limit_snprintf_fwrite": "file limit: snprintf and fwrite"})]),
}
CHECKS = {"live engine": 100000, "dead engine": 0, "mixed engine": 75000, "resolved-call engine": 1024,
          "named-call engine": 1024, "named-set+get engine": 2.5, "resolved-set+get engine": 2.5,
          "message engine": 1000, "churn engine": 1000, "frame engine": 10000}


def measure(program, pattern, build, quick):
    command = [str(build / "benchmarks" / program), f"--benchmark_filter={pattern}", "--benchmark_format=json",
               "--benchmark_enable_random_interleaving=true",
               f"--benchmark_repetitions={3 if quick else 7}", f"--benchmark_min_time={0.02 if quick else 0.2}"]
    if program == "bench_engine":
        work = build / "game" / "bin"
    else:
        work = build
    result = subprocess.run(["taskset", "-c", "1" if os.cpu_count() > 1 else "0", *command], cwd=work,
                            capture_output=True, text=True, check=False)
    text = result.stdout[result.stdout.find("{"):]
    try:
        runs = json.loads(text)["benchmarks"]
    except (ValueError, KeyError):
        raise SystemExit(f"bench: {program} {pattern} printed no result (exit {result.returncode}):\n"
                         f"{result.stderr[-2000:]}") from None
    return {run["run_name"].split("/repeats:")[0]: run for run in runs if run.get("aggregate_name") == "median"}


def nanoseconds(run):
    """The benchmark's own rate counter, or its CPU time where it reports none."""
    for key, value in run.items():
        if key == "ns" or key.startswith("ns_"):
            # Rates are inverted seconds in the libraries' JSON: the counter is scaled to nanoseconds already.
            return value
    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6}[run["time_unit"]]
    return run["cpu_time"] * scale


def rows_of(workload, build, quick):
    unit, programs = WORKLOADS[workload]
    rows = []
    for program, pattern, names in programs:
        medians = measure(program, pattern, build, quick)
        for name, row in names.items():
            if name not in medians:
                raise SystemExit(f"bench: {program} has no benchmark '{name}'; it has: {', '.join(medians)}")
            what, subject = row.split(" ", 1)
            check = medians[name].get("check", medians[name].get("found"))
            rows.append({"workload": f"{workload} {what}", "subject": subject, "median": nanoseconds(medians[name]),
                         "unit": unit, "ratio": None, "check": check})
            if subject == "engine" and row in CHECKS and check != CHECKS[row]:
                raise SystemExit(f"bench: {workload} {row}: check value {check} instead of {CHECKS[row]}")
    add_ratios(rows)
    return rows


def add_ratios(rows):
    for row in rows:
        peers = [other["median"] for other in rows if other["workload"] == row["workload"]
                 and other["subject"] != "engine" and not other["subject"].startswith("limit:")]
        if peers and min(peers) > 0:
            row["ratio"] = row["median"] / min(peers)


def start_up_rows(build):
    """The whole game off-screen to its first frame: seconds of the wall clock and peak memory."""
    environment = dict(os.environ, KAVEL_HEADLESS="1", KAVEL_FRAMES="1")
    begin = time.monotonic()
    with subprocess.Popen(["./kaVel"], cwd=build / "game" / "bin", env=environment, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL) as game:
        _, status, usage = os.wait4(game.pid, 0)
        game.returncode = os.waitstatus_to_exitcode(status)
    seconds = time.monotonic() - begin
    if game.returncode != 0:
        raise SystemExit(f"bench: the game ended with {game.returncode} before its first frame was over")
    return [{"workload": "start-up", "subject": "engine", "median": seconds, "unit": "s to first frame",
             "ratio": None, "check": None},
            {"workload": "peak memory", "subject": "engine", "median": usage.ru_maxrss / 1024, "unit": "MiB",
             "ratio": None, "check": None}]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("workloads", nargs="*")
    options = parser.parse_args()
    unknown = [name for name in options.workloads if name not in WORKLOADS and name != "start-up"]
    if unknown:
        raise SystemExit(f"bench: no workload {' '.join(unknown)}; there are {' '.join(WORKLOADS)} start-up")

    build = (ROOT / options.build).resolve()
    rows = []
    for workload in options.workloads or [*WORKLOADS, "start-up"]:
        for row in start_up_rows(build) if workload == "start-up" else rows_of(workload, build, options.quick):
            rows.append(row)
            ratio = "" if row["ratio"] is None else f"{row['ratio']:.2f}"
            print(f"{row['workload']:22} {row['subject']:38} {row['median']:10.2f} {row['unit']:18} {ratio:>6}",
                  flush=True)
    (ROOT / "build" / "bench.json").write_text(json.dumps(rows, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    sys.exit(main())
