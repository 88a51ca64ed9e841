"""bench_table.py RAW LATENCY OUT: sets ours beside the peer's.

RAW is Google Benchmark's output with benchmarks named "what/ours" and "what/peer"; they count as medians over the
repetitions of one run. LATENCY is one object of {name, ours, peer}. OUT becomes a list of {name, ours, peer, ratio,
goal}, where goal is the largest ratio we accept. Times are in nanoseconds.
"""
import json
import statistics
import sys

GOALS = {
    "datagram sent to last MIDI byte (p50)": 1.1,
    "two datagrams to three MIDI messages": 0.5,
    "HUI decoding per byte": 0.5,
}


def medians(raw):
    times, allocations = {}, {}
    for run in raw["benchmarks"]:
        if run.get("run_type") != "iteration":
            continue
        name = run["run_name"].split("/repeats:")[0]
        unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
        times.setdefault(name, []).append(run["cpu_time"] * unit)
        if "allocations" in run:
            allocations[name] = max(allocations.get(name, 0), run["allocations"])
    return {name: statistics.median(values) for name, values in times.items()}, allocations


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        times, allocations = medians(json.load(file))
    with open(sys.argv[2], encoding="utf-8") as file:
        latency = json.load(file)
    times[latency["name"] + "/ours"] = latency["ours"]
    times[latency["name"] + "/peer"] = latency["peer"]

    rows = []
    for name, goal in GOALS.items():
        ours, peer = times[name + "/ours"], times[name + "/peer"]
        rows.append({"name": name, "ours": ours, "peer": peer, "ratio": ours / peer, "goal": goal})
        if name + "/ours" in allocations:
            rows[-1]["allocations"] = allocations[name + "/ours"]
    with open(sys.argv[3], "w", encoding="utf-8") as file:
        json.dump(rows, file, indent=2)

    print(f"{'benchmark':<40}{'ours':>12}{'peer':>12}{'ratio':>8}{'goal':>7}{'allocations':>13}")
    for row in rows:
        verdict = "ok" if row["ratio"] <= row["goal"] else "MISSED"
        counted = f"{row['allocations']:.0f}" if "allocations" in row else "-"
        print(f"{row['name']:<40}{row['ours']:>9.0f} ns{row['peer']:>9.0f} ns{row['ratio']:>8.2f}{row['goal']:>7.2f}"
              f"{counted:>13}  {verdict}")


if __name__ == "__main__":
    main()
