#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints tables of ratios, the time of qortk divided by the time of a peer: python3 bench/ratios.py RESULT.json...

Each file is the output of one benchmark program with --benchmark_format=json. The minimum time of all
repetitions is used. A ratio below 1 means that qortk is faster. The first table lists the peers that are
ahead by more than a tenth. Each file then has a table with a column for each peer.
"""

import json
import pathlib
import re
import sys

AHEAD = 1.1


def best_times(path):
    """Returns the minimum times by work and contestant of the names WORK/SOURCE/CONTESTANT[/...]."""
    times = {}
    for run in json.loads(path.read_text(encoding="utf-8"))["benchmarks"]:
        if run.get("run_type") == "aggregate" or "error_message" in run:
            continue
        work, source, contestant = run["name"].split("/")[:3]
        contestants = times.setdefault(f"{work} {source}", {})
        unit = {"ns": 1, "us": 1e3, "ms": 1e6}[run["time_unit"]]
        contestants[contestant] = min(
            contestants.get(contestant, float("inf")), run["real_time"] * unit
        )
    return times


def by_number(work):
    """Returns a sort key that compares numbers in the text by value."""
    return [int(part) if part.isdigit() else part for part in re.split(r"(\d+)", work)]


def ratios_of(path):
    """Returns the time of qortk in nanoseconds and the ratios by peer, by work."""
    rows = {}
    times = best_times(path)
    for work in sorted(times, key=by_number):
        contestants = times[work]
        own = contestants.pop("qortk")
        rows[work] = own, {peer: own / time for peer, time in contestants.items()}
    return rows


def show(number):
    return f"{number:.2f}" if number < 10 else f"{number:.0f}"


def show_time(nanoseconds):
    for unit in ("ns", "µs"):
        if nanoseconds < 1000:
            return f"{nanoseconds:.3g} {unit}"
        nanoseconds /= 1000
    return f"{nanoseconds:.3g} ms"


def print_table(head, rows):
    print("| " + " | ".join(head) + " |")
    print("|---" * len(head) + "|")
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print()


def main():
    results = {pathlib.Path(name).stem: ratios_of(pathlib.Path(name)) for name in sys.argv[1:]}
    print("### Peers that are ahead\n")
    ahead = [
        (ratio, [title, work, peer, show(ratio)])
        for title, rows in results.items()
        for work, (_, peers) in rows.items()
        for peer, ratio in peers.items()
        if ratio > AHEAD
    ]
    ahead.sort(key=lambda entry: -entry[0])
    print_table(["Program", "Work", "Peer", "Ratio"], [row for _, row in ahead])
    for title, rows in results.items():
        print(f"### {title}\n")
        peers = sorted({peer for _, ratios in rows.values() for peer in ratios}, key=str.lower)
        print_table(
            ["Work", "qortk"] + peers,
            [
                [work, show_time(own)] + [show(ratios[peer]) if peer in ratios else "" for peer in peers]
                for work, (own, ratios) in rows.items()
            ],
        )


main()
