#!/usr/bin/env python3
"""Turns the codings and containers of mxf/data/coding.tsv into the constant table of Codings.h.

Usage: mxf/model/generate_codings.py [--check]

Writes generated/Codings.inc, ordered by the last eight bytes of the label. With --check nothing is written, and the
exit status is 1 when the file differs from what would be written.
"""
import csv
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent / "data" / "coding.tsv"
OUTPUT = HERE / "generated" / "Codings.inc"

KINDS = {"essence container": "container", "picture coding": "picture", "sound coding": "sound"}


def wrapping_of(text):
    for start in ("frame", "clip", "line", "field", "custom"):
        if text.startswith(start):
            return start
    return "unknown"


def generate():
    entries = {}
    with SOURCE.open(encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE):
            kind = KINDS.get(re.split(r" \(node\)|, ", row["kind"])[0])
            if kind is None:
                continue
            item = row["ul"].replace(".", "")[16:]
            name = re.sub(r"( -|;) byte \d.*$| \(byte.*$", "", row["meaning"])
            assert item not in entries and '"' not in name, row
            entries[item] = (f'{{0x{item}, ECodingKind::{kind}, EWrapping::{wrapping_of(row["wrapping"])}, '
                             f'"{row["codec_family"]}", "{name}"}},\n')
    return ("// Made by generate_codings.py from data/coding.tsv.\n" +
            "".join(line for _, line in sorted(entries.items())))


def main(arguments):
    if arguments not in ([], ["--check"]):
        sys.exit(__doc__)
    text = generate()
    if not arguments:
        OUTPUT.write_text(text, encoding="utf-8")
    elif not OUTPUT.exists() or OUTPUT.read_text(encoding="utf-8") != text:
        sys.exit(f"{OUTPUT} is not what {pathlib.Path(__file__).name} writes")


if __name__ == "__main__":
    main(sys.argv[1:])
