#!/usr/bin/env python3
"""Runs our benchmarks and those of the peers that are built, and sets them side by side.

    run.py [--document=FILE] FOLDER [OPTION...]

FOLDER holds the programs. Options go to Google Benchmark, except that it is this script that repeats
(--benchmark_repetitions=5) and writes what came out (--benchmark_out=FILE). Each subject is measured in
processes of its own, one of each program after the other: what slows a machine down for a while slows
all of them, and none finds a heap that another subject has left. Of the repetitions the median counts. A
run of everything writes its table into docs/performance.md; one of a part does if --document names a
file.
"""

import json
import re
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

import report
from table import Table, parse_name

SOURCES = Path(__file__).resolve().parent
DOCUMENT = SOURCES.parent / "docs" / "performance.md"
REPETITIONS = 5


class Arguments:
    def __init__(self, words):
        self.document = None
        self.folder = None
        self.out = None
        self.repetitions = REPETITIONS
        self.passed_on = []
        self.words = []  # as a user of ./dev bench gives them
        for word in words:
            self._take(word)
        if not self.folder:
            sys.exit(__doc__)

    def _take(self, word):
        name, _, value = word.partition("=")
        if not word.startswith("-") and not self.folder:
            self.folder = Path(word)
            return
        if name == "--document":
            self.document = Path(value)
            return
        self.words.append(word)
        if name == "--benchmark_out":
            self.out = Path(value)
        elif name == "--benchmark_repetitions":
            self.repetitions = max(1, int(value))
        elif name not in ("--benchmark_format", "--benchmark_out_format"):
            self.passed_on.append(word)

    def is_of_everything(self):
        return not any(word.startswith("--benchmark_filter") for word in self.passed_on)


def programs_in(folder):
    """Ours, then the peers'."""
    return [folder / "quorl_benchmarks", *sorted((folder / "peers" / "programs").glob("quorl_peer_*"))]


def by_subject(programs, options):
    """The names of the benchmarks that the options choose, as {subject: {program: [name]}}."""
    chosen = {}
    for program in programs:
        command = [program, *options, "--benchmark_list_tests=true"]
        listed = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if listed.returncode != 0:
            sys.exit(f"{program.name} failed ({listed.returncode}):\n{listed.stderr}")
        for name in listed.stdout.splitlines():
            chosen.setdefault(parse_name(name)[0], {}).setdefault(program, []).append(name)
    return chosen


def filter_of(names):
    """The option that has Google Benchmark, which takes extended expressions, run just these."""
    escaped = (re.sub(r"[][\\.*+?^${}()|]", r"\\\g<0>", name) for name in names)
    return f"--benchmark_filter=^({'|'.join(escaped)})$"


def run(program, options, names):
    """What one repetition of some benchmarks of a program measured, as Google Benchmark tells it."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [program, *options, filter_of(names)]
        command += [f"--benchmark_out={out.name}", "--benchmark_out_format=json"]
        ended = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if ended.returncode != 0:
            sys.exit(f"{program.name} failed ({ended.returncode}):\n{ended.stderr}")
        return json.loads(Path(out.name).read_text(encoding="utf-8"))["benchmarks"]


def measure(programs, arguments):
    runs = []
    chosen = by_subject(programs, arguments.passed_on)
    for repetition in range(1, arguments.repetitions + 1):
        for subject, names_of in chosen.items():
            print(f"   {repetition} of {arguments.repetitions}: {subject}", file=sys.stderr)
            for program, names in names_of.items():
                runs += run(program, arguments.passed_on, names)
    return runs


def medians(runs):
    """One record for each benchmark, in the order of the first repetition."""
    by_name = {}
    for record in runs:
        by_name.setdefault(record["name"], []).append(record)
    merged = []
    for repeated in by_name.values():
        record = dict(repeated[0])
        for key in ("real_time", "cpu_time", "bytes"):
            if key in record:
                record[key] = statistics.median(each[key] for each in repeated if key in each)
        record["runs"] = len(repeated)
        failed = [each for each in repeated if each.get("error_occurred")]
        merged.append(failed[0] if failed else record)
    return merged


def list_tests(programs, arguments):
    for program in programs:
        subprocess.run([program, *arguments.passed_on], check=False)


def main():
    arguments = Arguments(sys.argv[1:])
    programs = programs_in(arguments.folder)
    if any(word.startswith(("--benchmark_list_tests", "--help")) for word in arguments.passed_on):
        return list_tests(programs, arguments)

    records = medians(measure(programs, arguments))
    facts = report.facts(arguments, programs)
    out = arguments.out or arguments.folder / "benchmarks.json"
    out.write_text(json.dumps({"context": facts, "benchmarks": records}, indent=1), encoding="utf-8")

    table = Table(records, SOURCES / "targets.toml")
    print(table.as_text())
    print(report.as_text(facts))
    document = arguments.document or (DOCUMENT if arguments.is_of_everything() else None)
    if document:
        report.write(document, facts, table)
        print(f"The table is in {document}.", file=sys.stderr)
    for failure in table.failures:
        print(failure, file=sys.stderr)
    return 1 if table.failures else 0


if __name__ == "__main__":
    sys.exit(main())
