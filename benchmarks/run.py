"""Runs workloads, the engine's programs and the packaged peers side by side, and prints one line a row.

Columns: workload, subject, median, unit, ratio to the fastest peer that does the same work (below 1 the engine is
ahead). The same goes as JSON to build/bench.json. A row whose check value is wrong is void: it gets no ratio, and the
run fails at its end.
"""
import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]

# Counts of boxes of the physics workloads.
ARENAS = (1000, 4000, 16000)

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
    "W6a": ("ms/step", [("bench_engine", "W6a/", {
        f"W6a/detect/{n}/iterations:240": f"detect-{n} engine" for n in ARENAS}),
        ("peer_w06_physics_bullet", "detect", {
            f"detect/{n}/iterations:240": f"detect-{n} Bullet" for n in ARENAS}),
        ("peer_w06_grid_limit", "detect", {
            f"detect/{n}/iterations:240": f"detect-{n} limit: flat counting-sort grid" for n in ARENAS})]),
    "W6b": ("ms/step", [("bench_engine", "W6b/", {
        f"W6b/step/{n}/iterations:240": f"step-{n} engine" for n in ARENAS}),
        ("peer_w06_physics_bullet", "fullStep", {
            f"fullStep/{n}/iterations:240": f"step-{n} Bullet" for n in ARENAS}),
        ("peer_w06_physics_box2d", "fullStep", {
            f"fullStep/{n}/iterations:240": f"step-{n} Box2D" for n in ARENAS})]),
    "W7": ("ns/segment", [("bench_engine", "W7/", {
        "W7/segment/20": "20m engine", "W7/segment/100": "100m engine"}),
        ("peer_w07_rays_bullet", "optimized_tree:1", {
            "rays/length:20/optimized_tree:1": "20m Bullet", "rays/length:100/optimized_tree:1": "100m Bullet"}),
        ("peer_w06_grid_limit", "rays", {
            "rays/20": "20m limit: cell walk over flat arrays",
            "rays/100": "100m limit: cell walk over flat arrays"})]),
    "W8": ("ns/tree", [("bench_engine", "W8/", {
        "W8/frame/iterations:240": "tree engine", "W8/tick/iterations:240": "tick engine"}),
        ("peer_w08_bt_limits", ".", {
            "limit_virtual_nodes/iterations:240": "tree limit: virtual nodes",
            "limit_written_out/iterations:240": "tree limit: written out as code"})]),
    "W9": ("ms/100 paths", [("bench_engine", "W9/", {"W9/paths/0": "noise engine", "W9/paths/1": "maze engine"}),
                            ("peer_w09_astar_boost", ".", {
                                "astar/maze:0": "noise Boost.Graph", "astar/maze:1": "maze Boost.Graph"}),
                            ("peer_w09_path_detour", ".", {
                                "detour/maze:0": "noise-mesh Detour", "detour/maze:1": "maze-mesh Detour"}),
                            ("peer_w09_astar_limit", "ordered", {
                                "ordered/maze:0": "noise limit: whole costs, buckets",
                                "ordered/maze:1": "maze limit: whole costs, buckets"})]),
    "W9b": ("ns", [("bench_engine", "W9b/", {"W9b/slice": "slice engine", "W9b/start": "start engine"})]),
    "W11": ("ms/load", [("bench_engine", "W11/", {"W11/load": "model engine"}),
                        ("peer_w11_model_assimp", ".", {
                            "assimp_glb/iterations:1": "model Assimp, binary glTF",
                            "assimp_obj/iterations:1": "model Assimp, OBJ"}),
                        ("peer_w11_model_limits", ".", {
                            "ifstream_into_vectors": "model limit: stream into zeroed vectors",
                            "read_into_fresh_memory": "model limit: read into fresh memory",
                            "read_into_huge_pages": "model limit: read into huge pages",
                            "read_into_warm_memory": "model limit: read into warm memory"})]),
    "W12": ("ns/scope", [("bench_engine", "W12/", {"W12/scope": "scope engine"}),
                         ("peer_w12_profiler_limits", "scope", {
                             "scope<Tsc>": "scope limit: two stamps, two stores",
                             "scope<Steady>": "scope limit: the same by steady_clock",
                             "scope<None>": "scope limit: no stamps"})]),
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
    "W15a": ("ms/frame", [("bench_engine", "W15a/", {
        "W15a/frame/50/iterations:1": "p50 engine", "W15a/frame/99/iterations:1": "p99 engine"})]),
    "W15b": ("ms/s of sound", [("bench_engine", "W15b/", {"W15b/mix/iterations:1": "mix engine"}),
                               ("peer_w15_sound_openal", ".", {
                                   "mix/lowpass:0/iterations:1": "mix OpenAL Soft",
                                   "mix/lowpass:1/iterations:1": "mix OpenAL Soft, each through a low-pass"})]),
    "W16": ("ms/frame", [("bench_engine", "W16/", {
        f"W16/frame/{n}/{share}/iterations:1": f"{n}-p{share} engine" for n in (50, 500) for share in (50, 99)})]),
    "W18": ("ms", [("bench_engine", "W18/", {"W18/frame/iterations:1": "extra-frame engine",
                                             "W18/pick": "pick engine"})]),
}
# A pair is the least and the most that the value may be, "kept" a mean squared speed that is neither lost nor doubled:
# speeds are drawn around 7 (m/s)2, and each count of boxes starts from what its own draw gives. That of sounds is the
# loudness of what was heard, dB of full scale.
CHECKS = {"live engine": 100000, "dead engine": 0, "mixed engine": 75000, "resolved-call engine": 1024,
          "named-call engine": 1024, "named-set+get engine": 2.5, "resolved-set+get engine": 2.5,
          "message engine": 1000, "churn engine": 1000, "frame engine": 10000,
          "scope engine": 2, "model engine": 1249924,
          "detect-1000 engine": (293.5, 294.5), "detect-4000 engine": (1174, 1179), "detect-16000 engine": (4596, 4615),
          **{f"step-{n} engine": "kept" for n in ARENAS}, "tree engine": 650497, "tick engine": 240000,
          "20m engine": 9248, "100m engine": 9615,
          "noise engine": (13735, 13770), "maze engine": 276624, "slice engine": 0, "start engine": 1,
          **{f"{n}-p{share} engine": 1 for n in (50, 500) for share in (50, 99)},  # two runs come to the same
          "extra-frame engine": 200, "pick engine": 1,
          "p50 engine": (-7.05, -6.85), "p99 engine": (-7.05, -6.85), "mix engine": (-7.05, -6.85)}


def measure(program, pattern, build, quick):
    command = [str(build / "benchmarks" / program), f"--benchmark_filter={pattern}", "--benchmark_format=json",
               "--benchmark_enable_random_interleaving=true",
               f"--benchmark_repetitions={3 if quick else 7}", f"--benchmark_min_time={0.02 if quick else 0.2}"]
    if program == "bench_engine":
        work = build / "game" / "bin"
    else:
        work = build
    with tempfile.TemporaryDirectory(dir=build) as scratch:  # for the files that a workload writes and reads
        result = subprocess.run(["taskset", "-c", "1" if os.cpu_count() > 1 else "0", *command], cwd=work,
                                capture_output=True, text=True, check=False, env=dict(os.environ, TMPDIR=scratch, KAVEL_HEADLESS="1"))
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


def agrees(check, expected):
    return expected[0] <= check <= expected[1] if isinstance(expected, tuple) else check == expected


def rows_of(workload, build, quick):
    unit, programs = WORKLOADS[workload]
    rows = []
    for program, pattern, names in programs:
        medians = measure(program, pattern, build, quick)
        for name, row in names.items():
            if name not in medians:
                raise SystemExit(f"bench: {program} has no benchmark '{name}'; it has: {', '.join(medians)}")
            what, subject = row.split(" ", 1)
            check = next((medians[name][key] for key in ("check", "found", "vertices") if key in medians[name]), None)
            median = nanoseconds(medians[name]) * (1e-6 if unit.startswith("ms") else 1.0)
            rows.append({"workload": f"{workload} {what}", "subject": subject, "median": median,
                         "unit": unit, "ratio": None, "check": check})
            expected = CHECKS.get(row) if subject == "engine" else None
            if expected == "kept":
                start = medians[name]["start"]
                expected = (0.999 * start, 15 / 7 * start)
            if expected is not None and not agrees(check, expected):
                rows[-1]["void"] = f"check value {check:g} instead of {expected}"
    add_ratios(rows)
    return rows


def add_ratios(rows):
    for row in rows:
        peers = [other["median"] for other in rows if other["workload"] == row["workload"]
                 and other["subject"] != "engine" and not other["subject"].startswith("limit:")]
        if peers and min(peers) > 0 and "void" not in row:
            row["ratio"] = row["median"] / min(peers)


# W10: what each row runs, by workload: arguments of the programs for N balls. A row without "same work" sets no ratio.
RENDERERS = [
    ("engine", lambda build, n: ["bench_render", n, "16", "1"]),
    ("Ogre", lambda build, n: ["peer_w10_render_ogre", n, "16", "1", "/usr/share/OGRE/Media"]),
    ("Irrlicht: 8 lights, no shadow", lambda build, n: ["peer_w10_render_irrlicht", n, "16"]),
    ("limit: deferred by hand", lambda build, n: ["peer_w10_render_gl_limit", n, "3"]),
]
SAME_WORK = ("engine", "Ogre")
MOST_DRAWS = 25


class XServer:
    """A virtual display for those that cannot draw without one, on the first free number."""

    def __enter__(self):
        read, write = os.pipe()
        self.process = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x720x24"],
                                        pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise SystemExit("bench: Xvfb did not start")
        return dict(os.environ, DISPLAY=f":{number}", SDL_VIDEODRIVER="x11")

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


def render_once(build, words, environment):
    """What one run printed, by name: the median of its frames, draw calls, triangles, changes of state."""
    work = build / "game" / "bin" if words[0] == "bench_render" else build
    result = subprocess.run([str(build / "benchmarks" / words[0]), *words[1:]], cwd=work, env=environment,
                            capture_output=True, text=True, check=False)
    lines = [line for line in result.stdout.splitlines() if "median_ms=" in line]
    if not lines:
        raise SystemExit(f"bench: {' '.join(words)} printed no result (exit {result.returncode}):\n"
                         f"{result.stdout[-1000:]}{result.stderr[-2000:]}")
    return dict(re.findall(r"(\w+)=([\d.]+)", lines[0]))


def render_rows(build, quick):
    """Every subject in turn, several times over, so that all meet the same machine; medians of the runs' medians."""
    rows = []
    with XServer() as environment:
        for count in ("1000",) if quick else ("1000", "10000"):
            runs = {subject: [] for subject, _ in RENDERERS}
            for _ in range(1 if quick else 3):
                for subject, words in RENDERERS:
                    runs[subject].append(render_once(build, words(build, count), environment))
            rows += [render_row(count, subject, results) for subject, results in runs.items()]
    for row in rows:
        peers = [other["median"] for other in rows if other["workload"] == row["workload"]
                 and other["subject"] in SAME_WORK and other["subject"] != "engine"]
        if row["subject"] in SAME_WORK:
            row["ratio"] = row["median"] / min(peers)
    return rows


def render_row(count, subject, results):
    middle = sorted(results, key=lambda result: float(result["median_ms"]))[len(results) // 2]
    row = {"workload": f"W10 N={count}", "subject": subject, "median": float(middle["median_ms"]), "unit": "ms/frame",
           "ratio": None, "check": middle.get("triangles")}
    row["draws"] = int(middle.get("draws") or int(middle["batches"]) + int(middle["shadow_batches"]))
    if subject != "engine":
        return row
    row["state_changes"] = int(middle["state_changes"])
    drawn, balls = int(middle["triangles"]), 500 * int(count)
    # Every ball and the two triangles of the ground, once for the camera; shadows and lights come on top of that.
    if drawn < balls + 2 or row["draws"] > MOST_DRAWS:
        raise SystemExit(f"bench: W10 drew {drawn} triangles in {row['draws']} calls instead of {balls + 2} and more "
                         f"in at most {MOST_DRAWS}")
    return row


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


def playthrough_rows(build):
    """The game thread without drawing over the kept playthroughs: its frames, blocks of memory and peak memory."""
    sys.path.insert(0, str(ROOT / "tools" / "playthrough"))
    import recordings
    from replays import Player
    rows = []
    for name in recordings.names(ROOT):
        costs = Player.of_build(build).meter(recordings.read(recordings.path_of(ROOT, name)))
        told = costs.summary()
        for row, value, unit in (("p50", told["p50"], "ms/frame"), ("p99", told["p99"], "ms/frame"),
                                 ("max", told["max"], "ms/frame"), ("memory", told["blocks"], "blocks/frame"),
                                 ("peak memory", costs.peak, "MiB")):
            rows.append({"workload": f"W17 {name} {row}", "subject": "engine", "median": value, "unit": unit,
                         "ratio": None, "check": None})
    return rows


def editor_rows(build, quick):
    """What an open editor costs a frame, and what is done with it in the game itself."""
    sys.path.insert(0, str(ROOT / "benchmarks"))
    import editing
    rows = rows_of("W18", build, quick)
    rows[0]["goal"] = "2 ms"
    return rows + editing.rows(build, quick)


# Workloads that are not, or not only, measured by the benchmark library.
OTHER_WORKLOADS = {"W10": render_rows, "W17": lambda build, quick: playthrough_rows(build), "W18": editor_rows,
                   "start-up": lambda build, quick: start_up_rows(build)}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("workloads", nargs="*")
    options = parser.parse_args()
    known = list(dict.fromkeys([*WORKLOADS, *OTHER_WORKLOADS]))
    unknown = [name for name in options.workloads if name not in known]
    if unknown:
        raise SystemExit(f"bench: no workload {' '.join(unknown)}; there are {' '.join(known)}")

    build = (ROOT / options.build).resolve()
    rows = []
    for workload in options.workloads or known:
        measured = OTHER_WORKLOADS.get(workload, lambda build, quick, name=workload: rows_of(name, build, quick))
        for row in measured(build, options.quick):
            rows.append(row)
            ratio = "" if row["ratio"] is None else f"{row['ratio']:.2f}"
            calls = f"  {row['draws']} draw calls" if "draws" in row else ""
            calls += f", {row['state_changes']} changes of state" if "state_changes" in row else ""
            calls += f"  at most {row['goal']}" if row.get("goal") else ""
            calls += f"  void: {row['void']}" if "void" in row else ""
            print(f"{row['workload']:22} {row['subject']:38} {row['median']:10.2f} {row['unit']:18} {ratio:>6}{calls}",
                  flush=True)
    (ROOT / "build" / "bench.json").write_text(json.dumps(rows, indent=1) + "\n", encoding="utf-8")
    return 1 if any("void" in row for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
