#!/usr/bin/env python3
"""Changes one thing at a time in quorl/, and tells which changes no test notices.

Each mutant is built in a copy of the last commit, in build/mutation, and the tests of its folder are
run, then those of tests/model, of the other folders, and of the kernel in tests/reliability/faults. A
mutant is killed by a test that fails, crashes or does not end; one that does not compile does not
count. Why some survive is told in explained.toml. Results stay in build/mutation/results.json: a
further run goes on from there, but for files that have changed since, and tries once more what has
survived.
"""

import argparse
import collections
import contextlib
import functools
import hashlib
import io
import json
import os
import pathlib
import random
import signal
import subprocess
import sys
import tarfile
import tomllib

from mutants import find_mutants, line_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutation"
TREE = WORK / "tree"
BUILD = WORK / "build"
RESULTS = WORK / "results.json"
EXPLAINED = pathlib.Path(__file__).with_name("explained.toml")
FOLDERS = ("foundation", "values", "slots", "objects", "registry", "modules", "tasks", "services",
           "kit", "platform")
FAULTS = ("unwinding", "walk_faults", "operation_faults", "system_faults", "module_memory_faults")
PLACES = {name: BUILD / "tests" / name for name in (*FOLDERS, "model")}
PLACES |= {name: BUILD / "tests" / "reliability" / "faults" for name in FAULTS}
TARGETS = [f"{name}_test" for name in PLACES]
MODEL_CASES = "max_success=300 max_size=60"


def run(command, timeout=None, **options):
    """Whether a command ends well, in time; with it end the processes that it has begun. What it
    prints is not of interest."""
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, start_new_session=True, **options) as process:
        try:
            return process.wait(timeout) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)


def copy_last_commit():
    """Into TREE. What is there already keeps its time, so that little is built anew."""
    archive = subprocess.run(["git", "archive", "HEAD"], cwd=ROOT, check=True, stdout=subprocess.PIPE)
    copied = set()
    with tarfile.open(fileobj=io.BytesIO(archive.stdout)) as files:
        for member in filter(tarfile.TarInfo.isfile, files):
            place, content = TREE / member.name, files.extractfile(member).read()
            copied.add(place)
            if place.is_file() and place.read_bytes() == content:
                continue
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_bytes(content)
            place.chmod(member.mode)
    for place in TREE.rglob("*"):
        if place.is_file() and place not in copied:
            place.unlink()


def prepare():
    """A copy of the last commit, built without mutants, whose tests pass."""
    copy_last_commit()
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                    "-DCMAKE_CXX_FLAGS=-O1", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                    "-DQUORL_BUILD_HOST=OFF", "-DQUORL_BUILD_EXAMPLES=OFF",
                    "-DQUORL_BUILD_BENCHMARKS=OFF"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD, "--target", *TARGETS], check=True)
    broken = [name for name in PLACES if not passes_test(name)]
    if broken:
        sys.exit("the tests fail without any mutant: " + ", ".join(broken))


def passes(folder):
    """Whether all tests pass, those first that are most likely not to."""
    others = [other for other in FOLDERS if other != folder]
    return all(passes_test(name) for name in (folder, "model", *others, *FAULTS))


def passes_test(name):
    """Whether the tests of one program pass, all in one process."""
    seconds = 240 if name == "model" else 120
    environment = dict(os.environ, RC_PARAMS=MODEL_CASES, GTEST_FAIL_FAST="1")
    return run([PLACES[name] / f"{name}_test"], timeout=seconds, cwd=PLACES[name], env=environment)


def result_of(name, mutant):
    """What becomes of a mutant: "killed", "survived", or "invalid" if it does not compile."""
    source = TREE / name
    text = source.read_text(encoding="utf-8")
    folder = pathlib.PurePath(name).parts[1]
    try:
        source.write_text(mutant.applied(text), encoding="utf-8")
        if not run(["cmake", "--build", BUILD, "--target", *TARGETS], timeout=1200):
            return "invalid"
        return "survived" if passes(folder) else "killed"
    finally:
        source.write_text(text, encoding="utf-8")


def shuffled(seed, folders, suffixes):
    """All mutants in turn, spread over the folders and their files: as many of each folder, as far
    as it has them."""
    by_folder = {}
    for folder in folders:
        found = []
        sources = (TREE / "quorl" / folder).rglob("*")
        for source in sorted(source for source in sources if source.suffix in suffixes):
            name = str(source.relative_to(TREE))
            found += [(name, mutant) for mutant in find_mutants(source.read_text(encoding="utf-8"))]
        random.Random(f"{seed} {folder}").shuffle(found)
        by_folder[folder] = found
    while any(by_folder.values()):
        yield from [found.pop() for found in by_folder.values() if found]


def described(name, mutant):
    text = (TREE / name).read_text(encoding="utf-8")
    begin = text.rfind("\n", 0, mutant.begin) + 1
    end = text.find("\n", mutant.end)
    changed = mutant.applied(text)[begin:end + len(mutant.replacement) + mutant.begin - mutant.end]
    return {"file": name, "state": state_of(name), "line": line_of(text, mutant.begin),
            "kind": mutant.kind, "before": text[begin:end].strip(), "after": changed.strip()}


@functools.cache
def state_of(name):
    """What a file of the copy holds, in short; nothing if it is not there any more."""
    source = TREE / name
    return hashlib.sha256(source.read_bytes()).hexdigest()[:12] if source.exists() else ""


@functools.cache
def explained():
    """Mutants that no test can or need notice, by file and change."""
    known = tomllib.loads(EXPLAINED.read_text(encoding="utf-8"))["mutant"]
    return {(entry["file"], entry["before"], entry["after"]) for entry in known}


def is_explained(entry):
    return (entry["file"], entry["before"], entry["after"]) in explained()


def tried(name, mutant, results):
    """What becomes of a mutant, which is known if it was tried before and did not survive."""
    entry = described(name, mutant)
    key = f"{name}:{entry['state']}:{mutant.begin}:{mutant.kind}"
    if key in results and results[key]["result"] != "survived":
        return results[key]["result"]
    result = "survived" if is_explained(entry) else result_of(name, mutant)
    results[key] = entry | {"result": result}
    print(f"{result:9} {name}:{entry['line']} {mutant.kind}", flush=True)
    RESULTS.write_text(json.dumps(results, indent=1), encoding="utf-8")
    return result


def report(results):
    counts = collections.Counter()
    unexplained = []
    for entry in results.values():
        if entry.get("state") != state_of(entry["file"]):
            continue
        result = entry["result"]
        if result == "survived" and is_explained(entry):
            result = "explained"
        counts[entry["file"].split("/")[1], result] += 1
        counts["all", result] += 1
        if result == "survived":
            unexplained.append(entry)
    print(f"{'':12} killed explained survived")
    for folder in (*FOLDERS, "all"):
        row = [counts[folder, result] for result in ("killed", "explained", "survived")]
        if any(row):
            print(f"{folder:12} {row[0]:6} {row[1]:9} {row[2]:8}")
    for entry in unexplained:
        print(f"{entry['file']}:{entry['line']}: {entry['kind']}\n"
              f"  - {entry['before']}\n  + {entry['after']}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=500,
                        help="mutants that compile, of all folders together")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", action="append", choices=FOLDERS, help="may be repeated")
    parser.add_argument("--headers", action="store_true",
                        help="of headers, which takes longer: most of them are part of much")
    parser.add_argument("--report", action="store_true", help="tell what is known, run nothing")
    options = parser.parse_args()
    results = json.loads(RESULTS.read_text(encoding="utf-8")) if RESULTS.exists() else {}
    if not options.report:
        prepare()
        mutants = shuffled(options.seed, options.folder or FOLDERS,
                           {".h"} if options.headers else {".cpp"})
        valid = 0
        for name, mutant in mutants:
            if valid == options.count:
                break
            valid += tried(name, mutant, results) != "invalid"
    report(results)


if __name__ == "__main__":
    main()
