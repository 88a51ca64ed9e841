"""bench_table.py RAW SINGLE... OUT: compares our times with the peer's, or with a limit.

RAW is Google Benchmark's JSON output. Its benchmarks are named "what/ours" and "what/peer", and the median over the
repetitions counts. Each SINGLE holds the output of one other benchmark program: an object {name, ours, peer or limit},
or a list of them; one with a peer that not every machine has says its goal, too. OUT gets a list of {name, ours, peer
or limit, ratio, goal}, where goal is the largest accepted ratio, and allocations if they were counted. Numbers are
nanoseconds unless the object has a unit.
"""
import json
import statistics
import sys

SIZES = (20, 200, 1000)

# The largest accepted ratio of our time to the peer's.
GOALS = {
    "datagram sent to last MIDI byte (p50)": 1.1,
    "the same with everything recorded (p50)": 1.1,
    "the same sealed (p50)": 1.05,
    "the same beside 100,000 hostile a second (p99)": 2.0,
    "fader of Pro Tools to datagram (p50)": 1.1,
    "two datagrams to three MIDI messages": 0.5,
    "browser's message to datagram (p50)": 1.3,
    "browser's message to datagram (p99)": 1.3,
    "scripting call (p50)": 0.6,
    "first scripting call (p50)": 0.4,
    "of which parsing JSON": 1.0,
    "HUI decoding per byte": 0.5,
    "probes in 10 min at rest, LEDs lit or dark": 0.1,
    **{f"resend after a hello, {size} tracks": 1.5 for size in SIZES},
    **{f"resend of the table, {size} tracks": 1.5 for size in SIZES},
}

# Limits in nanoseconds for benchmarks without a peer. A bank move may take 1 ms for its 16 name changes, each of which
# searches for the window once.
LIMITS = {
    **{f"locate a window, {size} tracks": 1e6 / 16 for size in SIZES},
    "locate a window, 1000 tracks alike": 1e6 / 16,
    "sealed datagram to MIDI (processor)": 1500,
    **{f"relocalize on a name change, {size} tracks": 1e6 / 16 for size in SIZES},
    **{f"16 name changes of a bank move, {size} tracks": 1e6 for size in SIZES},
}


def medians(raw):
    times, allocations = {}, {}
    for run in raw["benchmarks"]:
        if run.get("run_type") != "iteration":
            continue
        name = run["run_name"].split("/iterations:")[0].split("/repeats:")[0]
        unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
        times.setdefault(name, []).append(run["cpu_time"] * unit)
        if "allocations" in run:
            allocations[name] = max(allocations.get(name, 0), run["allocations"])
    return {name: statistics.median(values) for name, values in times.items()}, allocations


def row_of(name, ours, kind, other, goal):
    return {"name": name, "ours": ours, kind: other, "ratio": ours / other, "goal": goal}


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def singles(paths):
    for content in map(load, paths):
        yield from content if isinstance(content, list) else [content]


def main():
    times, allocations = medians(load(sys.argv[1]))
    limits, goals = dict(LIMITS), dict(GOALS)
    units = {}
    for single in singles(sys.argv[2:-1]):
        units[single["name"]] = single.get("unit", "ns")
        times[single["name"] + "/ours"] = single["ours"]
        if "peer" in single:
            times[single["name"] + "/peer"] = single["peer"]
            goals.setdefault(single["name"], single.get("goal"))
        else:
            limits[single["name"]] = single["limit"]

    rows = [row_of(name, times[name + "/ours"], "peer", times[name + "/peer"], goal) for name, goal in goals.items()]
    rows += [row_of(name, times[name + "/ours"], "limit", limit, 1.0) for name, limit in limits.items()]
    for row in rows:
        row["unit"] = units.get(row["name"], "ns")
        if row["name"] + "/ours" in allocations:
            row["allocations"] = allocations[row["name"] + "/ours"]
    with open(sys.argv[-1], "w", encoding="utf-8") as file:
        json.dump(rows, file, indent=2)

    print(f"{'benchmark':<46}{'ours':>12}{'peer or limit':>20}{'ratio':>8}{'goal':>7}{'allocations':>13}")
    for row in rows:
        verdict = "ok" if row["ratio"] <= row["goal"] else "MISSED"
        kind = "peer" if "peer" in row else "limit"
        counted = f"{row['allocations']:.0f}" if "allocations" in row else "-"
        unit = f"{row['unit']:<3}"
        print(f"{row['name']:<46}{row['ours']:>9.0f} {unit}{kind:>7}{row[kind]:>9.0f} {unit}{row['ratio']:>7.2f}"
              f"{row['goal']:>7.2f}{counted:>13}  {verdict}")


if __name__ == "__main__":
    main()
