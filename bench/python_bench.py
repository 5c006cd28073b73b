#!/usr/bin/python3
"""Setting values from Python beside the same work in C++.

Python: 100,000 values set one at a time (`device[path] = value`) on a
device of 1,000 U32 settings, and 100,000 values in one change set on a
device of 100,000. C++: bench/python_peer_bench, the same values files read,
checked and applied by the files layer from C++. Both sides report CPU time,
the least of their repetitions.

Writes the section "Python beside C++" of bench/RESULTS.md and leaves the
others as they are.

Usage: bench/python_bench.py [BUILD_DIR]   (default: build-bench; run by `make bench`)
"""
import datetime
import json
import os
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build-bench"))
RESULTS = os.path.join(ROOT, "bench", "RESULTS.md")
REPETITIONS = int(os.environ.get("ORU_BENCH_REPETITIONS", "5"))
TITLE = "## Python beside C++"

sys.path.insert(0, os.path.join(BUILD, "python"))
import oru  # noqa: E402


def path(i):
    return "Bench/Setting%d" % i


def device_of(settings):
    description = {"settings": [{"path": path(i), "type": "Numeric:U32", "max": 1000,
                                 "default": 0} for i in range(settings)]}
    values = {path(i): 0 for i in range(settings)}
    return oru.Directory.from_json(json.dumps(description), json.dumps(values))


def least(run, device):
    """The least CPU seconds of the repetitions of run(). The events each
    run records are pulled outside the timing: C++ does not read them either."""
    best = None
    for _ in range(REPETITIONS):
        start = time.process_time()
        run()
        spent = time.process_time() - start
        best = spent if best is None else min(best, spent)
        device.events()
    return best


def python_set_one():
    device = device_of(1000)
    paths = [path(i) for i in range(1000)]

    def run():
        for i in range(100000):
            device[paths[i % 1000]] = i % 997

    return least(run, device) / 100000


def python_change_set():
    device = device_of(100000)
    paths = [path(i) for i in range(100000)]
    rounds = [0]

    def run():
        rounds[0] += 1
        with device.change() as c:
            for i, each in enumerate(paths):
                c[each] = (i + rounds[0]) % 997

    return least(run, device) / 100000


def cpp():
    """{case: CPU seconds per value} of the C++ program."""
    program = os.path.join(BUILD, "bench", "python_peer_bench")
    out = subprocess.run([program, "--benchmark_format=json",
                          "--benchmark_repetitions=%d" % REPETITIONS, "--benchmark_min_time=0.2"],
                         check=True, capture_output=True, text=True).stdout
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    best = {}
    for row in json.loads(out)["benchmarks"]:
        if row.get("run_type") == "aggregate":
            continue
        name = row["run_name"] if "run_name" in row else row["name"]
        per_value = row["cpu_time"] * scale[row["time_unit"]]
        if name == "BM_FilesSetMany":
            per_value /= 100000
        best[name] = min(best.get(name, per_value), per_value)
    return best


def write(section):
    text = open(RESULTS).read() if os.path.exists(RESULTS) else ""
    start = text.find("\n" + TITLE + "\n")
    if start >= 0:
        end = text.find("\n## ", start + 1)
        text = text[:start] + ("\n" + text[end + 1:] if end >= 0 else "\n")
    with open(RESULTS, "w") as f:
        f.write(text.rstrip("\n") + "\n\n" + section)


def main():
    native = cpp()
    rows = [
        ("100,000 values, one `device[path] = value` each (1,000 settings)",
         python_set_one(), native["BM_FilesSetOne"],
         "`Files::ReadValues` of a one-member values file each"),
        ("100,000 values in one change set (100,000 settings)",
         python_change_set(), native["BM_FilesSetMany"],
         "`Files::ReadValues` of one 100,000-member values file"),
    ]
    lines = [
        TITLE,
        "",
        "Written by `bench/python_bench.py` (run by `make bench`) on %s with %s: CPU time per "
        "value, the least of %d repetitions on each side; the C++ side is "
        "`bench/python_peer_bench.cpp`, the same values files read, checked and applied by the "
        "files layer." % (datetime.datetime.now().strftime("%Y-%m-%d %H:%M"),
                          sys.executable, REPETITIONS),
        "",
        "| Case | Python/value | C++/value | C++ does | Python/C++ |",
        "|---|---:|---:|---|---:|",
    ]
    for case, python, native_time, what in rows:
        lines.append("| %s | %.2f µs | %.2f µs | %s | %.2f |"
                     % (case, python * 1e6, native_time * 1e6, what, python / native_time))
    section = "\n".join(lines) + "\n"
    print(section)
    write(section)


if __name__ == "__main__":
    main()
