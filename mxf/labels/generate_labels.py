#!/usr/bin/env python3
"""Turns mxf/data/labels.tsv into the constant tables of the label dictionary.

Usage: mxf/labels/generate_labels.py [--check]

Writes generated/UlTable.inc (one entry a row, in the order of the file) and generated/UlOrder.inc (the entries
sorted by key; of rows with the same key only the last). With --check nothing is written, and the exit status is 1
when a file differs from what would be written.
"""

import csv
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent / "data" / "labels.tsv"
ROWS = 2674


def read_rows():
    with SOURCE.open(encoding="ascii", newline="") as file:
        rows = list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))
    if [int(row["index"]) for row in rows] != list(range(ROWS)):
        sys.exit(f"{SOURCE}: not the rows 0 to {ROWS - 1} in order")
    return rows


def key_of(row):
    label = bytes.fromhex(row["ul"].replace(".", ""))
    if len(label) != 16 or label[:4] != b"\x06\x0e\x2b\x34":
        sys.exit(f"{SOURCE}: row {row['index']}: {row['ul']} is not a label")
    return label[8:].hex().upper()


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def table(rows):
    for row in rows:
        yield f"{{0x{key_of(row)}, {int(row['attributes'])}, EUlKind::{row['kind']}, {quoted(row['name'])}}},\n"


def order(rows):
    last = {key_of(row): int(row["index"]) for row in rows}
    indexes = [str(last[key]) for key in sorted(last)]
    for start in range(0, len(indexes), 20):
        yield ", ".join(indexes[start:start + 20]) + ",\n"


def main():
    rows = read_rows()
    stale = False
    for name, lines in (("UlTable.inc", table(rows)), ("UlOrder.inc", order(rows))):
        path = HERE / "generated" / name
        text = "// Made by generate_labels.py from data/labels.tsv.\n" + "".join(lines)
        if "--check" not in sys.argv[1:]:
            path.write_text(text, encoding="ascii")
        elif not path.exists() or path.read_text(encoding="ascii") != text:
            print(f"{path} is stale: run {sys.argv[0]}", file=sys.stderr)
            stale = True
    return 1 if stale else 0


if __name__ == "__main__":
    sys.exit(main())
