#!/usr/bin/env python3
"""Prints, from the store benchmark's JSON, each operation's median at one week,
one year and ten years of history, and the ratio of ten years to one week."""
import json
import sys

medians = {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    if b.get("aggregate_name") == "median":
        operation, size, engine = b["run_name"].split("/")
        medians[(operation, engine, size)] = b["real_time"]
print(f"{'operation':<22}{'engine':<12}{'week':>9}{'year':>9}{'decade':>9}  decade/week")
for operation, engine in sorted({(o, e) for o, e, _ in medians}, key=lambda k: (k[1], k[0])):
    row = [medians.get((operation, engine, s)) for s in ("week", "year", "decade")]
    if None in row:
        continue
    print(f"{operation:<22}{engine:<12}" + "".join(f"{t:>7.2f}ms" for t in row) + f"  {row[2] / row[0]:.2f}")
