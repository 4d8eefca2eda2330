"""What a run was made with and on, and the document that holds its table."""

import datetime
import os
import platform
import re
import shlex
import subprocess
from pathlib import Path

BEGIN = "<!-- table: what stands from here to its end is written by ./dev bench -->"
END = "<!-- table: end -->"
SOURCES = Path(__file__).resolve().parent.parent

PEERS = {  # by the end of their programs' names: how they are called, and their packages
    "boost": ("Boost", "libboost-dev"),
    "coin": ("Coin", "libcoin-dev"),
    "gstreamer": ("GStreamer", "libgstreamer1.0-dev"),
    "qt": ("Qt", "qt6-base-dev"),
    "sigc": ("sigc++", "libsigc++-3.0-dev"),
    "vtk": ("VTK", "libvtk9-dev"),
}


def output_of(*command):
    """Empty if the command fails or is not there."""
    try:
        return subprocess.run(command, capture_output=True, text=True, cwd=SOURCES).stdout.strip()
    except OSError:
        return ""


def processor():
    model = re.search(r"^model name\s*:\s*(.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return model[1] if model else platform.processor()


def memory():
    kibibytes = int(re.search(r"MemTotal:\s*(\d+)", Path("/proc/meminfo").read_text())[1])
    return f"{kibibytes / 2**20:.1f} GiB"


def commit():
    changed = output_of("git", "status", "--porcelain", "--", ".", ":!docs/performance.md")
    return output_of("git", "rev-parse", "--short", "HEAD") + (" with changes" if changed else "")


def compiler(build_folder):
    cache = (build_folder / "CMakeCache.txt").read_text()

    def entry(name):
        found = re.search(rf"^{name}:\w+=(.*)$", cache, re.MULTILINE)
        return found[1] if found else ""

    version = output_of(entry("CMAKE_CXX_COMPILER"), "--version").splitlines()[:1]
    build_type = entry("CMAKE_BUILD_TYPE").upper()
    flags = f"{entry('CMAKE_CXX_FLAGS')} {entry(f'CMAKE_CXX_FLAGS_{build_type}')}".strip()
    return f"{''.join(version)}, {flags}"


def peers(programs):
    told = []
    for program in programs:
        name, package = PEERS.get(program.name.removeprefix("quorl_peer_"), (None, None))
        if name:
            told.append(f"{name} {output_of('dpkg-query', '-W', '-f', '${Version}', package)}".strip())
    return ", ".join(told) or "none"


def facts(arguments, programs):
    return {
        "machine": f"{processor()}, {os.cpu_count()} cores, {memory()}",
        "system": f"{platform.freedesktop_os_release()['PRETTY_NAME']}, Linux {platform.release()}",
        "compiler": compiler(arguments.folder.parent),
        "peers": peers(programs),
        "commit": commit(),
        "date": datetime.date.today().isoformat(),
        "command": shlex.join(["./dev", "bench", *arguments.words]),
        "repetitions": f"{arguments.repetitions}, of which the medians",
    }


def as_text(facts):
    width = max(map(len, facts))
    return "\n".join(f"{name.ljust(width)}  {fact}" for name, fact in facts.items())


def write(document, facts, table):
    """Puts the table between the marks of the document; what else stands there is written by hand."""
    text = document.read_text(encoding="utf-8") if document.exists() else f"{BEGIN}\n{END}\n"
    before, _, rest = text.partition(BEGIN)
    _, mark, after = rest.partition(END)
    if not mark:
        raise SystemExit(f"{document} has no place for the table")
    listed = "\n".join(f"- {name}: {fact}" for name, fact in facts.items())
    document.write_text(
        f"{before}{BEGIN}\n\n{listed}\n\n{table.as_markdown()}\n{END}{after}", encoding="utf-8"
    )
