"""report.py BIN OUT: runs the benchmarks of the folder BIN and writes their table and plot to the folder OUT."""

import collections
import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

REPETITIONS = 9


def rows_of_the_program(binary):
    """SUBJECT/WHO/CASE -> nanoseconds of one iteration, the median of interleaved repetitions."""
    with tempfile.NamedTemporaryFile() as out:
        subprocess.run(
            [binary, f"--benchmark_repetitions={REPETITIONS}", "--benchmark_min_time=0.1",
             "--benchmark_enable_random_interleaving=true", f"--benchmark_out={out.name}",
             "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL)
        report = json.load(open(out.name, encoding="utf-8"))
    rows = {}
    for row in report["benchmarks"]:
        if row.get("aggregate_name") == "median":
            rate = row.get("bytes_per_second"), row.get("items_per_second")
            rows[row["run_name"]] = row["cpu_time"] * UNITS[row["time_unit"]], rate
    return rows


UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def measure_command(command):
    """Wall nanoseconds and peak kibibytes of a command."""
    start = time.perf_counter_ns()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    assert status == 0, command
    return time.perf_counter_ns() - start, usage.ru_maxrss


def rows_of_the_command(bin_dir):
    """Sums a file of 1 GiB in the page cache, by turns, with the command and with its peer."""
    with tempfile.NamedTemporaryFile() as file:
        block = os.urandom(1 << 20)
        for _ in range(1 << 10):
            file.write(block)
        file.flush()
        commands = {"brindle": [f"{bin_dir}/brindle", "sum", file.name],
                    "read and zlib": [f"{bin_dir}/peer_read_crc32", file.name]}
        figures = collections.defaultdict(list)
        for _ in range(REPETITIONS):
            for who, command in commands.items():
                figures[who].append(measure_command(command))
    rows = {}
    for who, runs in figures.items():
        nanoseconds = statistics.median(run[0] for run in runs)
        rows[f"brindle sum/{who}/1 GiB in the page cache"] = nanoseconds, ((1 << 30) * 1e9 / nanoseconds, None)
    return rows, max(run[1] for run in figures["brindle"])


def machine():
    for line in open("/proc/cpuinfo", encoding="utf-8"):
        if line.startswith("model name"):
            return f"{line.split(':')[1].strip()}, {os.cpu_count()} cores"
    return "unknown processor"


def shown(figure):
    nanoseconds, (bytes_per_second, items_per_second) = figure
    if bytes_per_second:
        return f"{bytes_per_second / 1e9:.3g} GB/s"
    if items_per_second:
        return f"{items_per_second / 1e6:.3g} M/s"
    return f"{nanoseconds / 1e3:.3g} µs"


def compared(rows):
    """Subject and case -> ours, and the peers, fastest first."""
    table = collections.OrderedDict()
    for name, figure in rows.items():
        subject, who, case = name.split("/", 2)
        table.setdefault((subject, case), {})[who] = figure
    for key, figures in table.items():
        ours = figures.pop("brindle")
        yield key, ours, sorted(figures.items(), key=lambda peer: peer[1][0])


def write_table(rows, peak, path):
    with open(path, "w", encoding="utf-8") as out:
        out.write("# Benchmarks\n\nWritten by `bench/run`, beside the peers that a user would pick instead, all in one run.\n"
                  "The ratio is the speed beside that of the fastest peer: above 1 is faster. Medians of "
                  f"{REPETITIONS} runs by turns.\n\nMachine: {machine()}.\n\n![ratios](ratios.svg)\n\n"
                  "| what | on | brindle | peers | ratio |\n|---|---|---|---|---|\n")
        for (subject, case), ours, peers in compared(rows):
            others = ", ".join(f"{who} {shown(figure)}" for who, figure in peers)
            out.write(f"| {subject} | {case} | {shown(ours)} | {others} | {peers[0][1][0] / ours[0]:.2f} |\n")
        out.write(f"\n`brindle sum` of 1 GiB held at most {peak / 1024:.1f} MiB.\n")


def write_plot(rows, path):
    import matplotlib
    matplotlib.use("svg")
    import matplotlib.pyplot as plt
    matplotlib.rcParams["svg.hashsalt"] = "brindle"
    labels, ratios = [], []
    for (subject, case), ours, peers in compared(rows):
        labels.append(f"{subject}, {case}")
        ratios.append(peers[0][1][0] / ours[0])
    plt.figure(figsize=(9, 0.28 * len(labels) + 1))
    plt.barh(labels, ratios, color=["#2f7d4f" if ratio >= 1 else "#c0563f" for ratio in ratios])
    plt.axvline(1, color="black", linewidth=0.8)
    plt.xscale("log")
    plt.xlabel("speed beside the fastest peer")
    plt.gca().invert_yaxis()
    plt.tight_layout()
    plt.savefig(path, metadata={"Date": None})


def main(bin_dir, out_dir):
    rows = rows_of_the_program(f"{bin_dir}/brindle_bench")
    command_rows, peak = rows_of_the_command(bin_dir)
    rows.update(command_rows)
    write_table(rows, peak, f"{out_dir}/README.md")
    write_plot(rows, f"{out_dir}/ratios.svg")


main(*sys.argv[1:])
