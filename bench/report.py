"""report.py BIN OUT: runs the benchmarks of the folder BIN and writes their table and plot to the folder OUT."""

import collections
import html
import json
import math
import os
import statistics
import subprocess
import sys
import tempfile
import time

REPETITIONS = 9


def rows_of_the_program(binary):
    """(subject, case, who) -> (nanoseconds of one iteration, rates), the medians of interleaved repetitions; or, for a
    row that counts bytes, (bytes, None)."""
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
            subject, who, case = row["run_name"].split("/", 2)
            label = row.get("label") or case.split("/")[0]
            # Work on several threads is measured in elapsed time; such rows are marked in their names.
            by_clock = any(sign in case for sign in ("/real_time", "/manual_time", "/threads:"))
            took = row["real_time" if by_clock else "cpu_time"]
            percentiles = [(name, row[counter]) for name, counter in PERCENTILES if counter in row]
            for name, microseconds in percentiles:
                rows[subject, f"{label}, {name}", who] = microseconds * UNITS["us"], (None, None)
            if "bytes_each" in row:
                rows[subject, label, who] = row["bytes_each"], None
            elif not percentiles:
                rows[subject, label, who] = took * UNITS[row["time_unit"]], rate
    return rows


# A row with these counters is shown by them instead of by its time.
PERCENTILES = [("median", "median_us"), ("99th percentile", "p99_us")]
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def measure_command(command):
    """The elapsed nanoseconds and peak kibibytes of a command."""
    start = time.perf_counter_ns()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    assert status == 0, command
    return time.perf_counter_ns() - start, usage.ru_maxrss


def rows_of_the_command(bin_dir):
    """Sums a file of 1 GiB and a tree of 20,000 files of 4 KiB, all in the page cache, by turns with the command and
    with a peer; for several jobs the peer is a pipeline of the shell."""
    rows, peaks = {}, []
    with tempfile.TemporaryDirectory() as root:
        with open(f"{root}/file", "wb") as file:
            block = os.urandom(1 << 20)
            for _ in range(1 << 10):
                file.write(block)
        for i in range(20000):
            os.makedirs(f"{root}/tree/{i % 100}", exist_ok=True)
            with open(f"{root}/tree/{i % 100}/{i}", "wb") as file:
                file.write(block[i:i + 4096])
        peer = f"{bin_dir}/peer_read_crc32"
        cases = [("1 GiB in the page cache", [f"{bin_dir}/brindle", "sum", f"{root}/file"],
                  "read and zlib", [peer, f"{root}/file"])]
        for jobs in 1, 2:
            shell = f"find {root}/tree -type f -print0 | xargs -0 -n 500 -P {jobs} {peer} | LC_ALL=C sort -k 3"
            cases.append((f"20,000 files, --jobs={jobs}", [f"{bin_dir}/brindle", "sum", f"--jobs={jobs}", f"{root}/tree"],
                          "find, xargs, read and zlib, sort", ["sh", "-c", shell]))
        for case, ours, who, theirs in cases:
            figures = collections.defaultdict(list)
            for _ in range(REPETITIONS):
                figures["brindle"].append(measure_command(ours))
                figures[who].append(measure_command(theirs))
            peaks += [run[1] for run in figures["brindle"]]
            for name, runs in figures.items():
                nanoseconds = statistics.median(run[0] for run in runs)
                size = 1 << 30 if ours[-1].endswith("file") else 20000 * 4096
                rows["brindle sum", case, name] = nanoseconds, (size * 1e9 / nanoseconds, None)
    return rows, max(peaks)


def machine():
    for line in open("/proc/cpuinfo", encoding="utf-8"):
        if line.startswith("model name"):
            return f"{line.split(':')[1].strip()}, {os.cpu_count()} cores"
    return "unknown processor"


def shown(figure):
    if figure[1] is None:
        return f"{figure[0]:.0f} bytes"
    nanoseconds, (bytes_per_second, items_per_second) = figure
    if bytes_per_second:
        return f"{bytes_per_second / 1e9:.3g} GB/s"
    if items_per_second:
        return f"{items_per_second / 1e6:.3g} M/s"
    return f"{nanoseconds / 1e3:.3g} µs"


def compared(rows):
    """For each subject and case: our figure, the peers with theirs, fastest first, and the ratio to the fastest peer,
    or None if all peers are in brackets."""
    table = collections.OrderedDict()
    for (subject, case, who), figure in sorted(rows.items()):
        table.setdefault((subject, case), {})[who] = figure
    for key, figures in table.items():
        ours = figures.pop("brindle")
        peers = sorted(figures.items(), key=lambda peer: peer[1][0])
        counted = [nanoseconds for who, (nanoseconds, _) in peers if not who.startswith("(")]
        yield key, ours, peers, counted[0] / ours[0] if counted else None


def write_table(rows, peak, path):
    with open(path, "w", encoding="utf-8") as out:
        out.write("# Benchmarks\n\nWritten by `bench/run`, beside the peers that a user would pick instead, all in one run: "
                  f"medians of {REPETITIONS}\nruns by turns. The ratio is the speed beside that of the fastest peer: above 1 is "
                  "faster. What stands in brackets\ndoes another job (no string is allocated, nothing is converted) or is brindle in "
                  f"another way, is there for orientation, and\ndoes not count.\n\nMachine: {machine()}.\n\n![speed beside the fastest peer](ratios.svg)"
                  "\n\n| what | on | brindle | peers | ratio |\n|---|---|---|---|---|\n")
        for (subject, case), ours, peers, ratio in compared(rows):
            others = ", ".join(f"{who} {shown(figure)}" for who, figure in peers)
            out.write(f"| {subject} | {case} | {shown(ours)} | {others} | {f'{ratio:.2f}' if ratio else ''} |\n")
        out.write(f"\n`brindle sum` held at most {peak / 1024:.1f} MiB.\n")


def write_plot(rows, path):
    """One bar for each row on a logarithmic scale, green and to the right of the line where brindle is faster."""
    bars = [(", ".join(key), ratio) for key, _, _, ratio in compared(rows) if ratio]
    row_height, label_width, plot_width = 18, 420, 480
    low, high = math.log10(min(0.5, *(r for _, r in bars))), math.log10(max(2, *(r for _, r in bars)))
    x_of = lambda ratio: label_width + (math.log10(ratio) - low) / (high - low) * plot_width
    height = row_height * len(bars) + 40
    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{label_width + plot_width + 60}" height="{height}" '
           'font-family="sans-serif" font-size="12">', '<rect width="100%" height="100%" fill="white"/>']
    for i, (label, ratio) in enumerate(bars):
        y = row_height * i + 6
        left, right = sorted((x_of(1), x_of(ratio)))
        color = "#2f7d4f" if ratio >= 1 else "#c0563f"
        svg.append(f'<text x="{label_width - 8}" y="{y + 12}" text-anchor="end">{html.escape(label)}</text>'
                   f'<rect x="{left:.1f}" y="{y + 2}" width="{right - left:.1f}" height="{row_height - 5}" fill="{color}"/>'
                   f'<text x="{right + 4:.1f}" y="{y + 12}">{ratio:.2f}</text>')
    svg.append(f'<line x1="{x_of(1):.1f}" y1="2" x2="{x_of(1):.1f}" y2="{height - 26}" stroke="black"/>'
               f'<text x="{x_of(1):.1f}" y="{height - 10}" text-anchor="middle">'
               'speed beside the fastest peer (1 is as fast)</text></svg>')
    with open(path, "w", encoding="utf-8") as out:
        out.write("\n".join(svg) + "\n")


def main(bin_dir, out_dir):
    rows = rows_of_the_program(f"{bin_dir}/brindle_bench")
    command_rows, peak = rows_of_the_command(bin_dir)
    rows.update(command_rows)
    write_table(rows, peak, f"{out_dir}/README.md")
    write_plot(rows, f"{out_dir}/ratios.svg")


main(*sys.argv[1:])
