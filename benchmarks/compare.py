#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares two runs of the benchmarks: compare.py OLD.json NEW.json [PERCENT]

The files come from `./dev bench --out=FILE`. Lists the times that changed by more than PERCENT
(default 10). The status is 1 if one increased. Compare consecutive runs on one machine.
"""
import json
import sys


def best(path):
    """The shortest time of every contender of every row, in nanoseconds per item."""
    with open(path, encoding="utf-8") as file:
        rows = json.load(file)["rows"]
    return {f"{row}|{contender}": time for row, times in rows.items() for contender, time in times.items()}


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    old, new = best(sys.argv[1]), best(sys.argv[2])
    threshold = float(sys.argv[3]) if len(sys.argv) == 4 else 10.0
    slower = 0
    for name in sorted(old.keys() & new.keys()):
        change = (new[name] / old[name] - 1) * 100
        if abs(change) > threshold:
            print(f"{name:80} {old[name]:9.3f} -> {new[name]:9.3f} ns  {change:+6.1f} %")
            slower += change > 0
    for name in sorted(old.keys() ^ new.keys()):
        print(f"{name:80} only in {'the new' if name in new else 'the old'} run")
    sys.exit(1 if slower else 0)


main()
