#!/usr/bin/env python3
"""Turns mxf/data/essence-keys.tsv into the constant table of EssenceKeys.h.

Usage: mxf/labels/generate_essence_keys.py [--check]

Writes generated/EssenceKeys.inc, in the order of the file: the row with the fewest free bytes comes first, so that the
first one that fits a key is the one that tells most. With --check nothing is written, and the exit status is 1 when
the file differs from what would be written.
"""

import csv
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent / "data" / "essence-keys.tsv"
OUTPUT = HERE / "generated" / "EssenceKeys.inc"

KINDS = {"item": "element", "element": "element", "private": "element", "wrapper": "element", "system": "system",
         "generic stream": "genericStream", "fill": "fill"}


def name_of(meaning):
    """The meaning up to its first remark, in the words of a list of names."""
    name = re.split(r"[;:(]|, | in a private class", meaning)[0].strip()
    name = re.sub(r"^any (CP|GC|generic)", lambda found: {"CP": "Content Package", "GC": "Generic Container",
                                                          "generic": "Generic"}[found[1]], name)
    return name[0].upper() + name[1:]


def generate():
    rows = []
    with SOURCE.open(encoding="utf-8", newline="") as file:
        for row in csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE):
            key = row["key"].replace(".", "")
            kind = KINDS[row["class"]]
            if row["class"] == "item" and "system" in row["meaning"]:
                kind = "system"
            free = sum(key[i:i + 2] == "7F" for i in range(0, 32, 2))
            name = name_of(row["meaning"])
            assert len(key) == 32 and name and '"' not in name, row
            rows.append((free, f'{{0x{key[:16]}, 0x{key[16:]}, EEssenceKeyKind::{kind}, "{name}"}},\n'))
    rows.sort(key=lambda row: row[0])  # stable
    return "// Made by generate_essence_keys.py from data/essence-keys.tsv.\n" + "".join(line for _, line in rows)


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
