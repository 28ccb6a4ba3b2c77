#!/usr/bin/env python3
"""Runs the benchmarks, each several times, and prints what is measured beside its limit.

Usage: run.py FOLDER_OF_PROGRAMS JSON_FILE RUNS [NAME…]
"""
import json
import os
import statistics
import subprocess
import sys

# name, program, filter of its benchmarks, what is taken from their figures, limit.
# A figure is (benchmark, counter); two of them are a ratio.
ROWS = [
    ("records / JSON alone", "records", "", [("records", "ratio")], 2.0),
    ("ad request / POST, new connections", "requests", "request", [("request", "ratio_fresh")], 1.15),
    ("ad request / POST, kept connection", "requests", "request", [("request", "ratio")], 1.15),
    ("1,000 trackers, longest absence (ms)", "requests", "trackers", [("trackers", "longest_absence_ms")], 4),
    ("registration (ms)", "startup", "registering", [("registering", "real_time")], 5),
    ("splash ad, longest slice (ms)", "startup", "style:0", [("splashAd/style:0", "longest_slice_ms")], 4),
    ("shake ad, longest slice (ms)", "startup", "style:1", [("splashAd/style:1", "longest_slice_ms")], 4),
    ("slide ad, longest slice (ms)", "startup", "style:2", [("splashAd/style:2", "longest_slice_ms")], 4),
    ("one ad / mapRectToItem, depth 16", "visibility", "depth:16",
     [("one_ad/ours/depth:16", "real_time"), ("one_ad/mapRectToItem/depth:16", "real_time")], 0.25),
    ("1,000 pending ads at rest, a tick (µs)", "visibility", "pending_ads_tick/1000",
     [("pending_ads_tick/1000", "real_time")], 100),
    ("1,000 pending ads that scroll, a tick (µs)", "visibility", "scrolling_ads_tick/1000",
     [("scrolling_ads_tick/1000", "real_time")], 500),
    ("template / plain QML", "templates", "",
     [("create_and_fill/ours", "real_time"), ("create_and_fill/plain_qml", "real_time")], 1.3),
    ("log line / spdlog, 1 thread", "logger", "line/threads/1", [("line/threads/1", "ratio")], 0.6),
    ("log line / spdlog, 4 threads", "logger", "line/threads/4", [("line/threads/4", "ratio")], 0.5),
    ("blurred copy / OpenCV", "blur", "", [("blur", "ratio")], 0.05),
]


def figures_of(folder, program, wanted):
    """One run of a program in a process of its own: its benchmarks by name."""
    answer = subprocess.run(
        [os.path.join(folder, "bench_" + program), "--benchmark_format=json", "--benchmark_filter=" + wanted],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True, timeout=300)
    text = answer.stdout.decode()
    return {each["name"]: each for each in json.loads(text[text.index("{"):])["benchmarks"]}


def figure(figures, name, counter):
    return next(each[counter] for full, each in figures.items() if full.startswith(name))


def measured(folder, row, runs):
    _, program, wanted, parts, _ = row
    values = []
    for _ in range(runs):
        figures = figures_of(folder, program, wanted)
        value = figure(figures, *parts[0])
        values.append(value / figure(figures, *parts[1]) if len(parts) > 1 else value)
    return values


def launches(folder, runs):
    """What a splash ad adds to a bare window: milliseconds up to its exposure beyond the first look's 100, and MiB.

    The two take turns.
    """
    program = os.path.join(folder, "bench_launch")
    server = subprocess.Popen([os.path.join(folder, "../sandbox/zntads-exchange")], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
    times, memories = [], []
    try:
        exchange = json.loads(server.stdout.readline())
        where = [exchange["https"], exchange["http"], exchange["ca"]]

        def launch(arguments):
            answer = subprocess.run([program, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
                                    timeout=60)
            return [float(each) for each in answer.stdout.split()]
        launch(where)  # the caches are warm for both
        for _ in range(runs):
            bare, shown = launch([]), launch(where)
            times.append(shown[0] - bare[0] - 100)
            memories.append((shown[1] - bare[1]) / 1024)
    finally:
        server.kill()
    return times, memories


def main():
    folder, path, runs, names = sys.argv[1], sys.argv[2], int(sys.argv[3]), sys.argv[4:]
    results = []

    def tell(name, program, values, limit):
        median = statistics.median(values)
        held = median <= limit
        print(f"{name:44}{median:9.3g}{min(values):9.3g}{max(values):9.3g}{limit:8g}  {'ok' if held else 'SHORT'}",
              flush=True)
        results.append({"name": name, "program": program, "median": median, "values": values, "limit": limit,
                        "ok": held})

    print(f"{'':44}{'median':>9}{'from':>9}{'to':>9}{'limit':>8}")
    for row in ROWS:
        if names and row[1] not in names:
            continue
        try:
            tell(row[0], row[1], measured(folder, row, runs), row[4])
        except (subprocess.SubprocessError, StopIteration, ValueError) as error:
            print(f"{row[0]:44}FAILED: {error!r:.100}", flush=True)
            results.append({"name": row[0], "program": row[1], "ok": False, "error": repr(error)})
    if not names or "launch" in names:
        times, memories = launches(folder, max(runs, 5))
        tell("launch to exposure, beyond bare + 100 (ms)", "launch", times, 45)
        tell("proportional memory beyond bare (MiB)", "launch", memories, 12)
    with open(path, "w", encoding="utf-8") as file:
        json.dump(results, file, indent=2, ensure_ascii=False)
    print(path)
    return 0 if all(each["ok"] for each in results) else 1


sys.exit(main())
