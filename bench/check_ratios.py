#!/usr/bin/env python3
"""Runs the benchmark binaries (uiframe_bench, workspace_bench) and checks each benchmark against
the baseline measured in the same run of the same binary.

Every row of RATIOS compares one measure of a benchmark with the same measure of its baseline:
value(benchmark) / value(baseline) must not exceed the row's limit. A pair is skipped when either
benchmark is not in the binary. Prints a table; exits 1 when a ratio is missed, 2 when the
benchmarks cannot be run.

    bench/check_ratios.py [--bench PATH] [--workspace-bench PATH] [--json FILE ...] [--repetitions N]

Each binary runs only the benchmarks of RATIOS it lists (--benchmark_list_tests), so a pair's
benchmark and baseline must live in one binary.

To add a pair, append a row to RATIOS ("cpu_time", "real_time", or the name of a counter that
the benchmark sets with state.counters). A row may name a sixth element, the measure of the
baseline when it differs (two counters of one benchmark: benchmark and baseline are the same).
"""

import argparse
import json
import os
import re
import subprocess
import sys

# (benchmark, baseline, measure, largest allowed ratio benchmark / baseline, what it stands for
#  [, measure of the baseline when not the same])
RATIOS = [
    ("BM_TreeRoundTrip/200", "BM_QVariantMapRoundTrip/200", "cpu_time", 1.0,
     "state tree save+load no slower than QVariantMap"),
    ("BM_TreeRoundTrip/200", "BM_QVariantMapRoundTrip/200", "bytes", 0.75,
     "state tree bytes at most 3/4 of QVariantMap"),
    ("BM_Placement/200", "BM_PlacementReference/200", "cpu_time", 1.0 / 20,
     "placement at least 20x faster than the plain raster scan"),
    ("BM_LinkedStockChange/200", "BM_WidgetTreeVisit/200", "cpu_time", 3.0,
     "a linked stock change at most 3x a plain widget-tree visit"),
    ("BM_OpenLayout/50", "BM_BareWidgetTree/50", "cpu_time", 1.2,
     "opening a layout of 50 boxes at most 1.2x building the same tree in plain Qt"),
    ("BM_OpenLayout/200", "BM_BareWidgetTree/200", "cpu_time", 1.2,
     "opening a layout of 200 boxes at most 1.2x building the same tree in plain Qt"),
    ("BM_LoadUserLayouts/50", "BM_LoadUserLayouts/50", "stall_ms", 0.1,
     "loading 50 layouts stalls the event loop for at most a tenth of the load", "load_ms"),
    ("BM_MarketTick/200", "BM_FullRepaint/200", "cpu_time", 1.25,
     "a market tick over 200 cards at most 1.25x repainting them all: feed and dispatch add little"),
]

TIME_UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def default_bench_path(binary, variable):
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    return os.environ.get(variable, os.path.join(root, "build", "bin", binary))


def filter_of(names):
    return "--benchmark_filter=^(" + "|".join(re.escape(n) for n in sorted(names)) + ")$"


def listed_benchmarks(path, names):
    """The benchmarks among `names` that the binary holds (nothing is run)."""
    try:
        result = subprocess.run([path, "--benchmark_list_tests=true", filter_of(names)],
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    except OSError as error:
        print("cannot run %s: %s" % (path, error), file=sys.stderr)
        sys.exit(2)
    return set(result.stdout.decode(errors="replace").split()) & set(names)


def run_benchmarks(path, names, repetitions):
    command = [path, "--benchmark_format=json", filter_of(names)]
    if repetitions > 1:
        command += ["--benchmark_repetitions=%d" % repetitions, "--benchmark_report_aggregates_only=true"]
    try:
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    except OSError as error:
        print("cannot run %s: %s" % (path, error), file=sys.stderr)
        sys.exit(2)
    if result.returncode != 0:
        sys.stderr.write(result.stderr.decode(errors="replace"))
        print("%s exited with %d" % (path, result.returncode), file=sys.stderr)
        sys.exit(2)
    return json.loads(result.stdout.decode())


def collect(report):
    """name -> entry; the median when the run has repetitions, else the single run."""
    entries = {}
    for entry in report.get("benchmarks", []):
        name = entry.get("run_name", entry["name"])
        if entry.get("error_occurred"):
            entries[name] = entry
            continue
        if entry.get("run_type") == "aggregate":
            if entry.get("aggregate_name") == "median":
                entries[name] = entry
        elif name not in entries:
            entries[name] = entry
    return entries


def measure(entry, key):
    if key in ("cpu_time", "real_time"):
        return float(entry[key]) * TIME_UNITS[entry.get("time_unit", "ns")]
    if key in entry:
        return float(entry[key])
    return None


def shown(value, key):
    """Times in microseconds, counters as they are."""
    if key in ("cpu_time", "real_time"):
        return "%.1f us" % (value * 1e6)
    return "%g" % value


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bench", default=default_bench_path("uiframe_bench", "UIFRAME_BENCH"),
                        help="the uiframe_bench binary")
    parser.add_argument("--workspace-bench", default=default_bench_path("workspace_bench", "WORKSPACE_BENCH"),
                        help="the workspace_bench binary")
    parser.add_argument("--json", action="append",
                        help="read this --benchmark_format=json output instead of running (repeatable)")
    parser.add_argument("--repetitions", type=int, default=1, help="compare medians of N runs")
    args = parser.parse_args()

    names = {row[0] for row in RATIOS} | {row[1] for row in RATIOS}
    entries = {}
    if args.json:
        for path in args.json:
            with open(path) as f:
                entries.update(collect(json.load(f)))
    else:
        for binary in (args.bench, args.workspace_bench):
            held = listed_benchmarks(binary, names)
            if held:
                entries.update(collect(run_benchmarks(binary, held, args.repetitions)))

    header = "%-26s %-30s %-9s %12s %12s %10s %8s  %s" % (
        "benchmark", "baseline", "measure", "value", "baseline", "ratio", "limit", "result")
    print(header)
    print("-" * len(header))
    missed = 0
    for entry_row in RATIOS:
        name, baseline, key, limit, meaning = entry_row[:5]
        base_key = entry_row[5] if len(entry_row) > 5 else key
        shown_key = key if base_key == key else "%s/%s" % (key, base_key)
        row = "%-26s %-30s %-9s" % (name, baseline, shown_key)
        if name not in entries or baseline not in entries:
            print("%s %12s %12s %10s %8s  skipped (not in the binary)" % (row, "-", "-", "-", "-"))
            continue
        if entries[name].get("error_occurred") or entries[baseline].get("error_occurred"):
            print("%s %12s %12s %10s %8s  MISSED: the benchmark reported an error" % (row, "-", "-", "-", "-"))
            missed += 1
            continue
        value, base = measure(entries[name], key), measure(entries[baseline], base_key)
        if value is None or base is None or base == 0:
            print("%s %12s %12s %10s %8s  MISSED: no %s to compare" % (row, "-", "-", "-", "-", shown_key))
            missed += 1
            continue
        ratio = value / base
        ok = ratio <= limit
        missed += 0 if ok else 1
        print("%s %12s %12s %10.4f %8.4f  %s (%s)" % (row, shown(value, key), shown(base, base_key), ratio, limit,
                                                       "ok" if ok else "MISSED", meaning))
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
