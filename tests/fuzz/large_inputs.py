#!/usr/bin/env python3
"""Writes inputs of a mebibyte that make readers work the hardest: FOLDER/FUZZER/CASE.

Fuzzing itself seldom comes to such sizes, and what grows with their square shows only there.
"""

import json
import pathlib
import struct
import sys

MOST = 1 << 20


def packed(layout, *numbers):
    return struct.pack("<" + layout, *numbers)


def text(words):
    """As texts stand in binary files."""
    return packed("Q", len(words)) + words


def filled(unit, head=b"", tail=b""):
    """As many units as there is room for."""
    return head + unit * ((MOST - len(head) - len(tail)) // len(unit)) + tail


def numbered(entry_of, head):
    """Entries that differ in a name, as many as there is room for behind the head; and how many."""
    entries, room = [], MOST - len(head)
    while True:
        entry = entry_of(b"%07d" % len(entries))
        room -= len(entry)
        if room < 0:
            return len(entries), b"".join(entries)
        entries.append(entry)


def module_images():
    """All segments lie over the same notes."""
    count = 4096
    begin = 64 + 56 * count
    header = b"\x7fELF" + bytes([2, 1, 1]) + bytes(9) + packed(
        "HHIQQQIHHHHHH", 3, 62, 1, 0, 64, 0, 0, 64, 56, count, 64, 0, 0)
    notes = filled(packed("III", 5, 0, 3) + b"ZELM\0\0\0\0")[:MOST - begin]
    segment = packed("IIQQQQQQ", 4, 4, begin, 0, 0, len(notes), len(notes), 4)
    return {"notes_over_notes": header + segment * count + notes}


def creator_caches():
    domain = text(b"Quorl::VObject")
    head = domain + packed("Q", 0)
    file = text(b"/proc/self/fd/100")  # which is there
    entered, entries = numbered(lambda name: text(name) + file + packed("iq", 0, 0), head + bytes(16))
    gone, missing = numbered(lambda name: text(name) * 2 + packed("iq", 0, 0), head + bytes(16))
    priorities, lines = numbered(lambda name: packed("i", 0) + text(name), domain + bytes(24))
    domains = (MOST - 8) // 24
    return {"domains": packed("Q", domains) + bytes(24) * domains,
            "entries": packed("Q", 1) + head + packed("Q", entered) + entries,
            "entries_of_files_that_are_gone": packed("Q", 1) + head + packed("Q", gone) + missing,
            "priorities": packed("Q", 1) + domain + packed("Q", priorities) + lines + bytes(8)}


def input_creator_caches():
    magic = b"ZelmInputCreatorCache\n\0"
    provider = text(b"double") + text(b"p") + packed("i", 0)

    def alike(properties):
        unit = provider + properties
        count = (MOST - len(magic) - 16) // len(unit)
        return magic + packed("QQ", 1, count) + unit * count

    property_count, properties = numbered(lambda name: text(name) + packed("d", 1.0),
                                          magic + bytes(16) + provider + bytes(8))
    type_count, types = numbered(
        lambda name: text(name) + text(b"p") + packed("iQ", 0, 1) + text(b"w") + packed("d", 1.0),
        magic + bytes(16))
    return {"one_provider_often": alike(packed("Q", 0)),
            "one_provider_often_with_a_word": alike(packed("Q", 1) + text(b"word") + packed("d", 1.0)),
            "properties": magic + packed("QQ", 1, 1) + provider + packed("Q", property_count) +
                          properties,
            "types": magic + packed("QQ", 1, type_count) + types}


def networks():
    name = "a" * (MOST // 2)
    room = MOST // 2 - 200

    def file(**members):
        return json.dumps({"zelm-network": 1, **members}, separators=(",", ":")).encode()

    def named(**members):
        return file(objects=[{"name": name, "creator": "Test/Inputs", **members}])

    def numbers(each):
        return (str(number) for number in range(room // each))

    half = name[:room // 2]
    values = {half: {number: 0 for number in numbers(25)}}
    return {"preferences_behind_a_long_name": named(preferences=[""] * (room // 3)),
            "values_behind_a_long_name": named(values={number: 0 for number in numbers(10)}),
            "inputs_behind_a_long_name": file(objects=[
                {"name": "a", "creator": "c"},
                {"name": name, "creator": "c", "inputs": {number: "a.b" for number in numbers(16)}}]),
            "preferences_with_weights": named(preferences={number: 2 for number in numbers(10)}),
            "unknown_keys_of_an_object": named(**{number: 0 for number in numbers(10)}),
            "named_values": file(contexts=[{"name": "c", "named": {
                number: {"type": "int", "value": 1} for number in numbers(36)}}]),
            "values_of_a_context": file(objects=[{"name": half, "creator": "Test/Inputs"}],
                                        contexts=[{"name": "c", "values": values}]),
            "values_of_a_context_with_a_long_name": file(
                objects=[{"name": number, "creator": "Test/Sum"} for number in numbers(120)],
                contexts=[{"name": half, "values": {
                    number: {"left": 0, "right": 0} for number in numbers(120)}}]),
            "objects_of_a_context": file(contexts=[{"name": name, "values": {
                number: {} for number in numbers(11)}}]),
            "objects": file(objects=[{"name": number, "creator": "c"} for number in numbers(16)]),
            "made_objects": file(objects=[{"name": number, "creator": "Test/Sum"}
                                          for number in numbers(100)]),
            "keys": file(**{number: 0 for number in numbers(6)}),
            "depth": b"[" * MOST,
            "numbers": filled(b"0,", b'{"zelm-network":1,"x":[', b"0]}"),
            "comments": filled(b"/**/", b'{"zelm-network":1', b"}"),
            "comments_in_a_list": filled(b"/*x*/0,", b'{"zelm-network":1,"x":[', b"0]}")}


def command_lines():
    words = 180_000  # no more can be handed to a program
    return {"words": b"x\n" * words,
            "words_of_a_command": b"run\n" + b"x\n" * words,
            "settings": b"run\na.json\n" + b"--set\na.b=1\n" * 50_000,
            "one_word": b"run\na.json\n-" + b"v" * (MOST - 20),
            "help": b"--help\n" * 100_000,
            "nothing": b"\n" * words,
            "modules": b"--module\na\n" * 50_000}


def texts():
    return {"digits": b"1" * MOST, "exponent": b"1e" + b"9" * (MOST - 2),
            "zeros": b"0." + b"0" * (MOST - 2), "blanks": b" " * MOST,
            "tabulators": b"\v" * MOST, "lines": b"\n" * MOST}


INPUTS = {
    "module_image": module_images,
    "creator_cache": creator_caches,
    "input_creator_cache": input_creator_caches,
    "string_file": lambda: {"empty": bytes(MOST),
                            "too_long": packed("Q", 1 << 63) + b"a" * (MOST - 8)},
    "number": texts,
    "value_text": texts,
    "module_text": texts,
    "split": lambda: {"separators": filled(b",", b",;\1"), "fields": filled(b"a,", b",;\0")},
    "creator_key": lambda: {"open": b"(" * MOST, "closed": b")" * MOST, "slashes": b"/" * MOST,
                            "pairs": b"()" * (MOST // 2), "names": b"a/" * (MOST // 2)},
    "reference": lambda: {"digits": b"1" * MOST, "locations": filled(b"@http:/", b"1@"),
                          "marks": filled(b"@http://", b"1@"), "folders": b"a/" * (MOST // 2)},
    "network": networks,
    "grid": lambda: {"rows": filled(
        b"0\n", b"ncols 1\nnrows 524250\nxllcorner 0\nyllcorner 0\ncellsize 0.0001\n")},
    "command_line": command_lines,
}


def main():
    folder = pathlib.Path(sys.argv[1])
    for fuzzer, inputs in INPUTS.items():
        (folder / fuzzer).mkdir(parents=True, exist_ok=True)
        for case, content in inputs().items():
            assert len(content) <= MOST, (fuzzer, case, len(content))
            (folder / fuzzer / case).write_bytes(content)


if __name__ == "__main__":
    main()
