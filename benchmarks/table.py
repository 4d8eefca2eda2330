"""The one table of all subjects: ours, bare limits, peers, and what is wanted of us."""

import re
import tomllib
from dataclasses import dataclass, field

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
SHOWN_UNITS = (("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1))
UNITS_OF_BOUNDS = {"ns": 1, "µs": 1e3, "ms": 1e6, "bytes": 1}
COLUMNS = ("work", "for each", "ours", "bare (ours to it)", "peers (ours to them)", "must", "reach")

# What Google Benchmark appends to a name.
APPENDED = re.compile(r"^(iterations|repeats|threads|min_time|min_warmup_time):|_time$")


def parse_name(name):
    """"subject/who" or "subject/who/argument", as (subject, who, argument)."""
    parts = [part for part in name.split("/") if not APPENDED.search(part)]
    if len(parts) > 2:
        return f"{parts[0]}, {parts[2]}", parts[1], int(parts[2])
    return parts[0], parts[1] if len(parts) > 1 else "ours", None


def shown(figure, unit):
    """With three digits, in a unit that suits."""
    if unit == "bytes":
        return f"{figure:,.0f} bytes"
    for name, size in SHOWN_UNITS:
        if figure >= size or name == "ns":
            figure /= size
            digits = 0 if figure >= 100 else 1 if figure >= 10 else 2
            return f"{figure:.{digits}f} {name}"
    return ""


def shown_ratio(ratio):
    return f"{ratio:.3g}" if abs(ratio) < 100 else f"{ratio:.0f}"


@dataclass
class Row:
    subject: str
    family: str  # the subject without an argument
    each: str = ""
    count: int = 1
    unit: str = "ns"
    must: list = field(default_factory=list)
    reach: list = field(default_factory=list)
    figures: dict = field(default_factory=dict)  # by who; for each

    def others(self, are_bare):
        return {
            who: figure
            for who, figure in self.figures.items()
            if who != "ours" and who.startswith("bare") == are_bare
        }


class Table:
    def __init__(self, records, targets_file):
        self._targets = tomllib.loads(targets_file.read_text(encoding="utf-8"))
        self._rows = {}
        self.failures = []
        for record in records:
            self._take(record)
        self._sort()

    def _take(self, record):
        if record.get("error_occurred"):
            self.failures.append(f"{record['name']}: {record['error_message']}")
            return
        subject, who, argument = parse_name(record["name"])
        row = self._rows.get(subject) or self._add_row(subject, argument)
        if "bytes" in record:
            row.unit = "bytes"
            row.figures[who] = record["bytes"]
        else:
            row.figures[who] = record["real_time"] * NANOSECONDS[record["time_unit"]] / row.count

    def _add_row(self, subject, argument):
        family = subject.removesuffix(f", {argument}")
        told = {**self._targets.get(family, {}), **self._targets.get(subject, {})}
        if argument is not None and not subject.startswith("bytes"):
            told.setdefault("count", argument)
        self._rows[subject] = Row(subject, family, **told)
        return self._rows[subject]

    def _sort(self):
        """As the targets are told; what they do not tell of comes behind, as it was measured."""
        order = {subject: place for place, subject in enumerate(self._targets)}
        rows = sorted(self._rows.values(), key=lambda row: order.get(row.family, len(order)))
        self._rows = {row.subject: row for row in rows}

    def _figure(self, row, name):
        """Of one of the row, or of another one's; None if it was not measured."""
        if name in row.figures:
            return row.figures[name]
        subject, _, who = name.rpartition("/")
        return self._rows[subject].figures.get(who) if subject in self._rows else None

    def _bound(self, row, text):
        absolute = re.fullmatch(r"([\d.]+) (ns|µs|ms|bytes)", text)
        if absolute:
            return float(absolute[1]) * UNITS_OF_BOUNDS[absolute[2]]
        factor, name, divisor = re.fullmatch(
            r"(?:([\d.]+) \* )?(.+?)(?: / ([\d.]+))?", text
        ).groups()
        figure = self._figure(row, name)
        return None if figure is None else figure * float(factor or 1) / float(divisor or 1)

    def _verdict(self, row, text):
        """A bound, and whether it is kept: ours is how many times of it."""
        bound = self._bound(row, text)
        if bound is None or "ours" not in row.figures:
            return f"{text}: not measured"
        times = row.figures["ours"] / bound
        return f"{text}: {'yes' if times <= 1 else 'NO'} ({shown_ratio(times)})"

    def _cells(self, row):
        ours = row.figures.get("ours")

        def beside(others):
            lines = []
            for who, figure in others.items():
                ratio = f" ({shown_ratio(ours / figure)})" if ours is not None else ""
                lines.append(f"{who.removeprefix('bare, ')} {shown(figure, row.unit)}{ratio}")
            return lines

        return (
            [row.subject],
            [row.each],
            [shown(ours, row.unit) if ours is not None else "not measured"],
            beside(row.others(are_bare=True)),
            beside(row.others(are_bare=False)),
            [self._verdict(row, text) for text in row.must],
            [self._verdict(row, text) for text in row.reach],
        )

    def as_text(self):
        """In columns, for a terminal; a cell may have several lines."""
        rows = [self._cells(row) for row in self._rows.values()]
        widths = [
            max(len(line) for line in [title, *(line for row in rows for line in row[column])])
            for column, title in enumerate(COLUMNS)
        ]
        rule = "-+-".join("-" * width for width in widths)

        def lines_of(cells):
            for place in range(max(map(len, cells))):
                texts = (cell[place] if place < len(cell) else "" for cell in cells)
                yield " | ".join(map(str.ljust, texts, widths)).rstrip()

        lines = [*lines_of([[title] for title in COLUMNS])]
        for row in rows:
            lines += [rule, *lines_of(row)]
        return "\n".join(lines) + "\n"

    def as_markdown(self):
        lines = ["| " + " | ".join(COLUMNS) + " |", "|---|---|---:|---|---|---|---|"]
        for row in self._rows.values():
            lines.append("| " + " | ".join("<br>".join(cell) for cell in self._cells(row)) + " |")
        return "\n".join(lines) + "\n"
