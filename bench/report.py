"""Prints what bench/run has measured as tables and draws it: report.py FOLDER.

Reads the folder's CSV files and writes plots (SVG) beside them. Figures are medians over the rounds;
ratios are to the cheapest peer whose picture is as good, to the decibel.
"""

import csv
import pathlib
import statistics
import sys

import matplotlib

matplotlib.use("svg")
# The same figures give the same file.
matplotlib.rcParams["svg.hashsalt"] = "vistrel"
# Text stays text.
matplotlib.rcParams["svg.fonttype"] = "none"
matplotlib.rcParams["font.size"] = 9
from matplotlib import pyplot  # noqa: E402

MIRROR = "Vistrel"
ROLLED_UP = "Vistrel rolled up"
REDIRECTION = "redirection alone"
ALONE = "source alone"
CHANGES = ["full", "small", "static"]
# While costs are measured.
CHANGES_PER_SECOND = 30
BEDS = {"bare": "bare server", "composited": "with a compositing manager"}
CLIENT_COLOUR, SERVER_COLOUR, MIRROR_COLOUR = "#3565a8", "#d08a32", "#3565a8"


def rows(folder, name):
    """Of a CSV file, each as a dictionary; none where that part was not measured."""
    path = folder / name
    if not path.exists():
        return []
    with path.open(newline="") as file:
        return list(csv.DictReader(file))


def medians(table, keys, values):
    """A dictionary from what is in the columns `keys` to the median of each of the columns
    `values`, in the order of first appearance."""
    groups = {}
    for row in table:
        groups.setdefault(tuple(row[key] for key in keys), []).append(row)
    return {
        key: [statistics.median(float(row[value]) for row in group) for value in values]
        for key, group in groups.items()
    }


def print_table(title, headings, lines):
    print(f"\n{title}\n")
    cells = [headings] + [[str(cell) for cell in line] for line in lines]
    widths = [max(len(row[i]) for row in cells) for i in range(len(headings))]
    for row in cells:
        first, *others = (cell.ljust(w) if i == 0 else cell.rjust(w)
                          for i, (cell, w) in enumerate(zip(row, widths)))
        print("  ".join([first, *others]))


def own_costs(folder):
    """From bed, change and subject to what showing costs its process, and server and manager
    together, less what the source alone costs those in the same round."""
    table = rows(folder, "costs.csv")
    alone = {(row["bed"], row["change"], row["round"]): behind(row)
             for row in table if row["subject"] == ALONE}
    own = []
    for row in table:
        at = row["bed"], row["change"], row["round"]
        if row["subject"] != ALONE and at in alone:
            own.append({**row, "server": behind(row) - alone[at]})
    return {key: (client, max(0, server)) for key, (client, server) in
            medians(own, ["bed", "change", "subject"], ["client_ms_per_s", "server"]).items()}


def behind(row):
    """What the display server and the compositing manager have cost."""
    return float(row["server_ms_per_s"]) + float(row["manager_ms_per_s"])


def equal_peers(folder):
    """The peers whose picture is at most a decibel worse than the mirror's, by the median over the
    sources and ratios that both were judged at; None where that was not measured."""
    judged = {}
    for row in rows(folder, "quality.csv"):
        judged.setdefault(row["subject"], {})[row["source"], row["ratio"]] = float(row["decibels"])
    mirror = judged.pop(MIRROR, None)
    if mirror is None:
        return None
    return {
        peer for peer, decibels in judged.items()
        if statistics.median(decibels[at] - mirror[at] for at in decibels if at in mirror) >= -1
    }


def print_costs(costs, equal):
    for bed, bed_name in BEDS.items():
        subjects = list(dict.fromkeys(s for b, _, s in costs if b == bed))
        if not subjects:
            continue
        lines = []
        for subject in subjects:
            line = [subject]
            for change in CHANGES:
                own = costs.get((bed, change, subject))
                line.append(f"{own[0]:.1f} / {own[1]:.1f}" if own else "-")
            lines.append(line)
        print_table(f"Milliseconds of processor time per second, client / server, {bed_name}",
                    ["", *CHANGES], lines)
        for change in CHANGES:
            peers = {s: sum(costs[bed, change, s]) for s in subjects
                     if s not in (MIRROR, ROLLED_UP, REDIRECTION)
                     and (equal is None or s in equal) and (bed, change, s) in costs}
            if not peers or (bed, change, MIRROR) not in costs:
                continue
            cheapest = min(peers, key=peers.get)
            ratio = sum(costs[bed, change, MIRROR]) / peers[cheapest]
            print(f"{change}: {ratio:.2f} × {cheapest}, the cheapest whose picture is as good")
        print_unseen(costs, bed)


def print_unseen(costs, bed):
    """What a mirror costs that is rolled up, beyond what the redirection of its source costs."""
    for change in CHANGES[:2]:
        if not {(bed, change, MIRROR), (bed, change, ROLLED_UP)} <= costs.keys():
            continue
        redirection = sum(costs.get((bed, change, REDIRECTION), (0, 0)))
        seen = sum(costs[bed, change, MIRROR])
        unseen = sum(costs[bed, change, ROLLED_UP]) - redirection
        print(f"{change}, rolled up: {unseen / seen:.2f} × open"
              + (" beside the redirection" if redirection else ""))


def print_frame_times(folder):
    """The server's own time for one frame of the source, which no latency can go below."""
    costs = medians(rows(folder, "costs.csv"), ["bed", "change", "subject"], ["server_ms_per_s"])
    for change in CHANGES[:2]:
        alone, redirected = (costs.get(("bare", change, s)) for s in (ALONE, REDIRECTION))
        if alone and redirected:
            print(f"{change}: the bare server draws a frame of the source in "
                  f"{alone[0] / CHANGES_PER_SECOND:.2f} ms, redirected in "
                  f"{redirected[0] / CHANGES_PER_SECOND:.2f} ms")


def draw_costs(costs, folder):
    beds = [bed for bed in BEDS if any(b == bed for b, _, _ in costs)]
    figure, axes = pyplot.subplots(len(beds), len(CHANGES), squeeze=False,
                                   figsize=(10, 2.9 * len(beds)))
    for row, bed in zip(axes, beds):
        subjects = list(dict.fromkeys(s for b, _, s in costs if b == bed))[::-1]
        for axis, change in zip(row, CHANGES):
            client = [costs.get((bed, change, s), (0, 0))[0] for s in subjects]
            server = [costs.get((bed, change, s), (0, 0))[1] for s in subjects]
            axis.barh(subjects, client, color=CLIENT_COLOUR, label="client")
            axis.barh(subjects, server, left=client, color=SERVER_COLOUR, label="server")
            for place, total in enumerate(map(sum, zip(client, server))):
                axis.text(total, place, f" {total:.3g}", va="center", fontsize=7)
            axis.set_title(f"{change}, {BEDS[bed]}", fontsize=9)
            axis.margins(x=0.18)
            if axis is not row[0]:
                axis.set_yticklabels([])
    for axis in axes[-1]:
        axis.set_xlabel("ms of processor per second")
    axes[0][-1].legend(loc="upper right")
    save(figure, folder / "costs.svg")


def print_latency(latency):
    for bed, bed_name in BEDS.items():
        subjects = list(dict.fromkeys(s for b, _, _, s in latency if b == bed))
        kinds = list(dict.fromkeys((c, r) for b, c, r, _ in latency if b == bed))
        lines = []
        for subject in subjects:
            line = [subject]
            for change, rate in kinds:
                seen = latency.get((bed, change, rate, subject))
                line.append(f"{seen[0]:.1f} / {seen[1]:.1f}" if seen else "-")
            lines.append(line)
        if lines:
            print_table(f"Milliseconds until a change is seen, median / 95th percentile, {bed_name}",
                        ["", *(f"{c} {float(r):.0f}/s" for c, r in kinds)], lines)


def draw_latency(latency, folder):
    figure, axes = pyplot.subplots(1, 2, figsize=(10, 3.4), sharey=True)
    for axis, change in zip(axes, ["full", "small"]):
        subjects = list(dict.fromkeys(s for b, c, _, s in latency if (b, c) == ("bare", change)))
        for subject in subjects:
            points = sorted((float(r), seen) for (b, c, r, s), seen in latency.items()
                            if (b, c, s) == ("bare", change, subject))
            rates = [rate for rate, _ in points]
            line, = axis.plot(rates, [seen[0] for _, seen in points], marker="o", markersize=3,
                              linewidth=2.2 if subject == MIRROR else 1, label=subject)
            axis.plot(rates, [seen[1] for _, seen in points], linestyle=":",
                      color=line.get_color(), linewidth=1)
        axis.set_title(f"{change} change, bare server")
        axis.set_xlabel("changes per second")
        axis.set_xticks([7, 24, 30, 60])
        axis.set_yscale("log")
        axis.grid(True, which="both", alpha=0.25)
    axes[0].set_ylabel("ms until seen; dotted: 95th percentile")
    axes[0].legend(loc="lower right", fontsize=7)
    save(figure, folder / "latency.svg")


def report_quality(folder):
    quality = medians(rows(folder, "quality.csv"), ["subject", "source", "ratio"], ["decibels"])
    if not quality:
        return
    subjects = list(dict.fromkeys(s for s, _, _ in quality))
    sources = list(dict.fromkeys(s for _, s, _ in quality))
    ratios = sorted({r for _, _, r in quality}, key=float)
    figure, axes = pyplot.subplots(1, len(sources), figsize=(10, 3.4), sharey=True)
    for axis, source in zip(axes, sources):
        lines = []
        for subject in subjects:
            values = [quality.get((subject, source, ratio), [None])[0] for ratio in ratios]
            lines.append([subject, *("-" if v is None else f"{v:.1f}" for v in values)])
            axis.plot([float(ratio) for ratio in ratios],
                      [float("nan") if v is None else min(v, 70) for v in values],
                      marker="o", markersize=3, linewidth=2.2 if subject == MIRROR else 1,
                      label=subject)
        axis.set_title(source)
        axis.set_xlabel("source pixels to one of the picture")
        axis.grid(True, alpha=0.25)
        print_table(f"Decibels against the mean of the source's pixels, {source}",
                    ["", *(f"{float(r):g}:1" for r in ratios)], lines)
    axes[0].set_ylabel("dB (up to 70), more is better")
    axes[len(axes) // 2].legend(loc="lower right", fontsize=7)
    save(figure, folder / "quality.svg")


def report_many(folder):
    table = rows(folder, "many.csv")
    if not table:
        return
    print_table("Mirrors of resting sources",
                ["mirrors", "client ms/s", "server ms/s", "program MB", "server's pixmaps MB"],
                [[row["mirrors"], f"{float(row['client_ms_per_s']):.2f}",
                  f"{float(row['server_ms_per_s']):.2f}",
                  f"{int(row['client_bytes']) / 1e6:.1f}",
                  f"{int(row['server_pixmap_bytes']) / 1e6:.1f}"] for row in table])
    first, last = table[0], table[-1]
    further = int(last["mirrors"]) - int(first["mirrors"])
    if further > 0:
        for what, column in (("the program", "client_bytes"),
                             ("the server's pixmaps", "server_pixmap_bytes")):
            each = (int(last[column]) - int(first[column])) / further / 1e6
            print(f"each further mirror in {what}: {each:.2f} MB")


def report_crowd(folder):
    """What a shown frame of small sources that all repaint costs, in the program and in the server
    beyond what the sources alone cost it."""
    alone, mirrored = {}, {}
    for row in rows(folder, "crowd.csv"):
        (mirrored if row["mirrored"] == "yes" else alone)[row["sources"]] = row
    lines = []
    for sources, row in mirrored.items():
        cost = (float(row["client_ms_per_s"]) + float(row["server_ms_per_s"])
                - float(alone[sources]["server_ms_per_s"]))
        frames = float(row["shown_per_s"])
        lines.append([sources, f"{frames / int(sources):.1f}", f"{cost / frames:.2f}"])
    if lines:
        print_table("Sources of 640 × 400, all repainted 30 times a second",
                    ["sources", "frames/s each", "ms per frame"], lines)


def report_soak(folder):
    table = rows(folder, "soak.csv")
    if not table:
        return
    columns = {"client_bytes": "program MB", "descriptors": "descriptors", "threads": "threads",
               "server_resources": "server's resources",
               "server_pixmap_bytes": "server's pixmaps MB"}

    def cells(pick):
        values = {column: pick([int(row[column]) for row in table]) for column in columns}
        return [f"{value / 1e6:.1f}" if column.endswith("bytes") else value
                for column, value in values.items()]

    print_table(f"Sixteen mirrors, {table[-1]['opened']} opened one after the other in "
                f"{float(table[-1]['seconds']) / 60:.0f} minutes",
                ["", *columns.values()],
                [["at first", *cells(lambda values: values[0])],
                 ["in the end", *cells(lambda values: values[-1])],
                 ["the most", *cells(max)]])


def report_opening(folder):
    table = rows(folder, "opening.csv")
    if not table:
        return
    names = {"start_to_picker_ms": "start to picker", "start_to_list_ms": "start to list",
             "click_to_picture_ms": "double-click to picture"}
    print_table("Opening: least / median / most",
                ["", "ms"],
                [[name, " / ".join(f"{f([float(row[column]) for row in table]):.0f}"
                                   for f in (min, statistics.median, max))]
                 for column, name in names.items()])


def core_times(folder):
    """From each benchmark's name to nanoseconds of processor time by size: medians."""
    path = folder / "core.csv"
    if not path.exists():
        return {}
    # Google Benchmark puts facts about the machine before the table.
    lines = path.read_text().splitlines()
    while lines and not lines[0].startswith("name,"):
        lines.pop(0)
    nanoseconds = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = {}
    for row in csv.DictReader(lines):
        name = row["name"]
        if not name.endswith("_median") and not name[-1].isdigit():
            continue
        _, what, size = name.removesuffix("_median").split("/")
        times.setdefault(what, {})[int(size)] = (
            float(row["cpu_time"]) * nanoseconds[row["time_unit"]])
    return times


def report_core(folder):
    times = core_times(folder)
    if not times:
        return
    lines = []
    for what, by_size in times.items():
        (n, one), *_, (_, two) = sorted(by_size.items())
        lines.append([what, n, f"{one / 1e3:.1f}", f"{two / 1e3:.1f}", f"{two / one:.2f}"])
    print_table("The core, microseconds of processor time", ["", "n", "n", "2n", "growth"], lines)


def save(figure, path):
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})
    pyplot.close(figure)


def main(arguments):
    if len(arguments) != 1:
        sys.exit(__doc__)
    folder = pathlib.Path(arguments[0])
    costs = own_costs(folder)
    if costs:
        print_costs(costs, equal_peers(folder))
        draw_costs(costs, folder)
    latency = medians(rows(folder, "latency.csv"), ["bed", "change", "rate", "subject"],
                      ["median_ms", "p95_ms"])
    if latency:
        print_latency(latency)
        print_frame_times(folder)
        draw_latency(latency, folder)
    report_quality(folder)
    report_many(folder)
    report_crowd(folder)
    report_opening(folder)
    report_soak(folder)
    report_core(folder)
    print(f"\nFigures and plots are in {folder}.")


if __name__ == "__main__":
    main(sys.argv[1:])
