#!/usr/bin/env python3
"""Builds the one table of a benchmark run.

Reads every Google Benchmark JSON file (one per bench program) and every
hyperfine JSON file (the command-line rows) in a results folder and prints a
Markdown table: each Quantor figure beside the same work done by the peer
(UDUNITS-2 or GNU units), their ratio and the goal it is held to. A figure
whose benchmark did not run says "n/a". Benchmarks that no row names (those
of other bench programs) are listed after the table with their own figures.

A benchmark that ran several times counts with its fastest repetition, since
other work on a shared machine only ever adds time; a command-line row counts
with the median of its runs.
"""
import json
import pathlib
import statistics
import sys

results = pathlib.Path(sys.argv[1])
benchmarks = {}
for path in sorted(results.glob("*.json")):
    try:
        data = json.loads(path.read_text())
    except ValueError:
        continue
    for entry in data.get("benchmarks", []):
        if entry.get("error_occurred") or entry.get("run_type") == "aggregate":
            continue
        # Benchmarks measured in wall-clock time are compared by it.
        key = "real_time" if "/real_time" in entry["name"] else "cpu_time"
        held = benchmarks.get(entry["name"])
        if held is None or entry[key] < held[key]:
            benchmarks[entry["name"]] = entry
# Command-line rows: the run times of each row, pooled over the rounds
# ("name.1.json", "name.2.json", ...) in which it was timed.
commands = {}
for path in sorted((results / "cli").glob("*.json")):
    try:
        times = json.loads(path.read_text())["results"][0]["times"]
    except (ValueError, KeyError, IndexError):
        continue
    commands.setdefault(path.stem.split(".")[0], []).extend(times)
used = set()

UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def bench(name):
    entry = benchmarks.get(name)
    if entry:
        used.add(name)
    return entry


def cpu_ns(name):
    """CPU time per iteration in ns: other work on a shared machine does not
    inflate it."""
    entry = bench(name)
    return entry and entry["cpu_time"] * UNIT_NS[entry["time_unit"]]


def counter(name, key):
    entry = bench(name)
    return entry and entry.get(key)


def command_s(name):
    times = commands.get(name)
    return times and statistics.median(times)


def duration(ns):
    if ns is None:
        return "n/a"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}"
    return f"{ns:.3g} ns"


def number(value, unit=""):
    if value is None:
        return "n/a"
    for suffix, scale in (("G", 1e9), ("M", 1e6), ("k", 1e3)):
        if value >= scale:
            return f"{value / scale:.3g} {suffix}{unit}"
    return f"{value:.3g} {unit}".rstrip()


def ratio(quantor, peer, text="{:.3g}x"):
    if not quantor or not peer:
        return "n/a"
    return text.format(peer / quantor)


rows = []


def row(what, quantor, peer="", ratio_text="", goal=""):
    rows.append((what, quantor, peer, ratio_text, goal))


def section(title):
    rows.append((f"**{title}**", "", "", "", ""))


# Loading
section("Loading the default catalogue")
fresh_q, fresh_u = command_s("load_quantor"), command_s("load_udunits2")
row("fresh process, load + one conversion", duration(fresh_q and fresh_q * 1e9),
    "UDUNITS-2: " + duration(fresh_u and fresh_u * 1e9), ratio(fresh_q, fresh_u), "> 1x")
in_q, in_u = cpu_ns("BM_Load_DefaultCatalogue"), cpu_ns("BM_Load_Udunits2Database")
row("in-process load", duration(in_q), "UDUNITS-2: " + duration(in_u), ratio(in_q, in_u), "> 1x")
large = counter("BM_Read_LargeCatalogue/1000", "bytes_per_second")
row("reading a generated catalogue (1000 categories of 20 units)",
    number(large, "B/s") if large else "n/a")

# Conversion by name
section("Conversion by name (1000 pairs of the shipped catalogue)")
peer = cpu_ns("BM_ConvertByName_Udunits2/real_time")
for label, name in (("UnitConvert", "UnitConvert"), ("QtrAdminStd::Convert", "AdminConvert"),
                    ("QtrUnitBase::Convert by name", "UnitBaseConvert")):
    base = f"BM_ConvertByName_{name}/real_time/threads:1"
    own = cpu_ns(base)
    row(f"{label}, 1 thread", duration(own), "UDUNITS-2 parse + convert: " + duration(peer),
        ratio(own, peer), ">= 40x" if name == "UnitConvert" else "")
    allocations = counter(base, "allocs_per_conversion")
    row(f"{label}, heap allocations per conversion", number(allocations) if allocations is not None else "n/a",
        "", "", "0" if name == "UnitConvert" else "")


def gain(name, threads):
    one = counter(f"{name}/real_time/threads:1", "items_per_second")
    more = counter(f"{name}/real_time/threads:{threads}", "items_per_second")
    return one and more and more / one


private = gain("BM_PrivateWork", 2)
for label, name in (("UnitConvert", "UnitConvert"), ("QtrAdminStd::Convert", "AdminConvert"),
                    ("QtrUnitBase::Convert by name", "UnitBaseConvert")):
    own = gain(f"BM_ConvertByName_{name}", 2)
    row(f"{label}, gain of 2 threads over 1", f"{own:.2f}x" if own else "n/a",
        f"loop sharing nothing: {private:.2f}x" if private else "n/a",
        f"{own / private:.2f} of it" if own and private else "n/a", ">= 0.9 of it")
for name in sorted(benchmarks):
    if name.startswith(("BM_ConvertByName_", "BM_PrivateWork")) and "threads:" in name:
        threads = name.rsplit(":", 1)[1]
        if threads not in ("1", "2"):
            row(f"{name.split('/')[0][3:]}, {threads} threads", number(counter(name, "items_per_second"), "/s"))

# Held rule
section("Conversion through a held rule")
held, plain, cached = cpu_ns("BM_HeldRule_Quantor"), cpu_ns("BM_HeldRule_MultiplyAdd"), cpu_ns("BM_HeldRule_Udunits2")
half = lambda ns: ns and ns / 2  # each iteration converts twice
row("QtrConvInfoBase::Convert", duration(half(held)), "plain multiply-add: " + duration(half(plain)),
    ratio(plain, held, "{:.2f}x its time"), "<= 1.2x its time")
row("", "", "UDUNITS-2 cv_convert_double: " + duration(half(cached)), ratio(held, cached))

# Completion and storage
section("Rule completion (ConvInfoComplete) and stored rules")
for shape in ("Star", "Chain", "NoRules"):
    for size in ("10", "100", "1000", "2000", "100000"):
        for prefix in ("", "Large"):
            name = f"BM_Complete/{prefix}{shape}/{size}" + ("/iterations:1" if prefix else "")
            entry = bench(name)
            if not entry:
                continue
            rules = entry.get("rules") or 0
            own = cpu_ns(name)
            per_rule = f", {duration(own / rules)} per rule" if rules else ""
            row(f"{shape.lower()} of {size} units: time, rules stored", f"{duration(own)}, {number(rules)}{per_rule}")
            if rules:
                row(f"{shape.lower()} of {size} units: heap bytes per stored rule",
                    f"{entry['bytes_per_rule']:.1f}", "", "", "<= 96")
timed_out = (results / "timed_out.txt")
if timed_out.exists():
    for name in timed_out.read_text().split():
        row(f"{name}", "n/a (did not finish within the time limit)")

# Printing
section("Printing the catalogue with all rules")
printed = counter("BM_PrintAllRules", "items_per_second")
row("rules printed per second", number(printed, "/s"), "", "", ">= 1 M/s")

# Command line
section("The quantor command")
batch_q, batch_u = command_s("batch_quantor"), command_s("batch_units")
lines = (results / "cli" / "lines.txt").read_text().strip() if (results / "cli" / "lines.txt").exists() else "100000"
row(f"`quantor convert -`, {lines} lines", duration(batch_q and batch_q * 1e9),
    "GNU units -t: " + duration(batch_u and batch_u * 1e9), ratio(batch_q, batch_u), ">= 20x")
one_q, one_u = command_s("one_quantor"), command_s("one_units")
row("one `quantor convert 2.5 km m` process", duration(one_q and one_q * 1e9),
    "one `units -t '2.5 km' m`: " + duration(one_u and one_u * 1e9), ratio(one_q, one_u), ">= 1x")

print("| what | Quantor | peer | ratio | goal |")
print("|---|---|---|---|---|")
for what, quantor, peer_text, ratio_text, goal in rows:
    print(f"| {what} | {quantor} | {peer_text} | {ratio_text} | {goal} |")

others = [name for name in benchmarks if name not in used]
if others:
    print("\nOther benchmarks of this run (CPU time per iteration and counters):\n")
    print("| benchmark | time | counters |")
    print("|---|---|---|")
    skip = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions",
            "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit", "label"}
    for name in others:
        entry = benchmarks[name]
        counters = ", ".join(f"{key}={number(value)}" for key, value in entry.items()
                             if key not in skip and isinstance(value, (int, float)))
        print(f"| {name} | {duration(cpu_ns(name))} | {counters} |")
