#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the time of qortk divided by the times of its peers: python3 bench/ratios.py RESULT.json...

Each file is the output of one benchmark program with --benchmark_format=json. The minimum time of all
repetitions is used. A ratio below 1 means that qortk is faster.
"""

import json
import sys


def best_times(path):
    """Returns the minimum times by work and contestant of the names WORK/SOURCE/CONTESTANT[/...]."""
    times = {}
    with open(path, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("run_type") == "aggregate":
                continue
            work, source, contestant = run["name"].split("/")[:3]
            contestants = times.setdefault(f"{work} {source}", {})
            unit = {"ns": 1, "us": 1e3, "ms": 1e6}[run["time_unit"]]
            contestants[contestant] = min(
                contestants.get(contestant, float("inf")), run["real_time"] * unit
            )
    return times


def main():
    print("| Work | qortk | Peer: ratio |\n|---|---|---|")
    for path in sys.argv[1:]:
        for work, contestants in best_times(path).items():
            own = contestants.pop("qortk")
            ratios = ", ".join(f"{peer}: {own / time:.2f}" for peer, time in contestants.items())
            print(f"| {work} | {own / 1000:.3f} µs | {ratios} |")


main()
