#!/usr/bin/env python3
"""Turns mxf/data/sets.tsv and mxf/data/properties.tsv into the constant tables of the metadata sets.

Usage: mxf/metadata/generate_set_tables.py [--check]

Writes generated/SetTablesData.cpp. With --check nothing is written, and the exit status is 1 when the file differs
from what would be written.
"""
import csv
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
DATA = HERE.parent / "data"
OUTPUT = HERE / "generated" / "SetTablesData.cpp"

SCALARS = {
    "Boolean": "boolean",
    "UInt8": "uint8", "UInt16": "uint16", "UInt32": "uint32", "UInt64": "uint64",
    "Int8": "int8", "Int16": "int16", "Int32": "int32", "Int64": "int64",
    "Float16": "float16", "Float32": "float32",
    "lens decimal float": "lensFloat",
    "Length (Int64)": "length", "Position (Int64)": "position",
    "Rational (2 x Int32)": "rational", "Rational": "rational",
    "Timestamp (year Int16, month, day, h, m, s, 1/4 ms)": "timestamp",
    "UTF-16 string": "utf16", "UTF-8 string": "utf8", "UTF8String": "utf8", "7-bit string": "ascii",
    "UUID": "uuid", "UL": "label", "UL or UUID": "label",
    "UMID": "umid", "extended UMID": "bytes",
    "Version (major, minor)": "version", "ProductVersion (5 x UInt16)": "productVersion",
    "indirect value": "indirect", "opaque value": "bytes",
    "RGBA layout (code, depth pairs)": "pixelLayout",
    "UInt16 x, y": "chromaticity",
    "bytes": "bytes", "stream": "bytes", "4 bytes": "bytes",
    "Pcap UInt32, Ccap UInt16 array": "bytes",
    "batch of (UInt16 tag, UL)": "primerEntries",
}
# Written without a count: the value is as long as it is.
UNCOUNTED = {
    "16 x UInt8": ("uint8", "run"), "6 x UInt8": ("uint8", "run"),
    "3 x (UInt16 x, y)": ("chromaticity", "run"),
    "UTF-16 string array": ("utf16", "run"),
}


def classify(text):
    """The kind, the shape and the set that a reference points at, of a type as the register words it."""
    if text in UNCOUNTED:
        return (*UNCOUNTED[text], "")
    text = re.sub(r" enum\b", "", text)
    if re.fullmatch(r"array of .* byte records|array of \d+-byte records", text):
        return ("bytes", "list", "")
    reference = re.fullmatch(r"(Strong|Weak)Ref( batch| array)? \((\w+)\)", text)
    if reference:
        return ("strongRef" if reference[1] == "Strong" else "weakRef",
                "list" if reference[2] else "single", reference[3])
    label = re.fullmatch(r"UL( batch| array)? \([^)]*\)", text)
    if label:
        return ("label", "list" if label[1] else "single", "")
    text = re.sub(r" \(2 values\)$", "", text)
    counted = re.fullmatch(r"(.*?) (batch|array)", text)
    if counted and text not in SCALARS:
        return (SCALARS[counted[1]], "list", "")
    return (SCALARS[text], "single", "")


def halves(dotted):
    digits = dotted.replace(".", "")
    assert len(digits) == 32, dotted
    return f"0x{digits[:16]}, 0x{digits[16:]}"


def masked(dotted):
    """The key without the two bytes that no comparison looks at: the coding of the set, the version."""
    parts = dotted.split(".")
    parts[5] = parts[7] = "00"
    return "".join(parts)


def rows(name):
    with open(DATA / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))


def indexes(order, per_line=20):
    lines = [", ".join(map(str, order[i:i + per_line])) for i in range(0, len(order), per_line)]
    return "    " + ",\n    ".join(lines) + ",\n"


def generate():
    sets, properties = rows("sets.tsv"), rows("properties.tsv")
    number = {row["set_name"]: i for i, row in enumerate(sets)}
    by_set = {name: [] for name in number}
    for row in properties:
        by_set[row["set_name"]].append(row)

    out = ["// Made by generate_set_tables.py from data/sets.tsv and data/properties.tsv.\n",
           "// clang-format off\n", '#include "mxf/metadata/SetTablesData.h"\n', "\n",
           "namespace TamrelMxf::Tables {\n", "\n"]
    flat, first = [], {}
    for name in number:
        first[name] = len(flat)
        flat += by_set[name]

    out += [f"constexpr std::array<SSetDef, {len(sets)}> kSets{{{{\n"]
    for row in sets:
        name = row["set_name"]
        parent = number[row["parent_set"]] if row["parent_set"] else -1
        abstract = "true" if row["abstract"] == "yes" else "false"
        out.append(f'    {{"{name}", {{{halves(row["key"])}}}, {parent}, {first[name]}, {len(by_set[name])}, '
                   f'{abstract}, "{row["standard"]}"}},\n')
    out += ["}};\n", "\n", f"constexpr std::array<SPropertyDef, {len(flat)}> kProperties{{{{\n"]
    for row in flat:
        kind, shape, target = classify(row["type"])
        tag = row["local_tag"]
        place = {"dyn": "dynamicTag", "pack": "pack", "record": "record"}.get(tag, "localTag")
        tag = f"0x{tag}" if place == "localTag" else "0"
        out.append(f'    {{"{row["property"]}", {{{halves(row["ul"])}}}, {number[row["set_name"]]}, {tag}, '
                   f'EPlace::{place}, EValue::{kind}, EShape::{shape}, {number.get(target, -1)}}},\n')
    out += ["}};\n", "\n"]

    by_key = sorted(range(len(sets)), key=lambda i: masked(sets[i]["key"]))
    by_tag = sorted((i for i, row in enumerate(flat) if re.fullmatch("[0-9A-F]{4}", row["local_tag"])),
                    key=lambda i: (flat[i]["local_tag"], i))
    by_label = sorted(range(len(flat)), key=lambda i: (flat[i]["ul"].replace(".", "")[16:], i))
    for name, order in (("kSetsByKey", by_key), ("kPropertiesByTag", by_tag), ("kPropertiesByLabel", by_label)):
        out += [f"constexpr std::array<std::uint16_t, {len(order)}> {name}{{{{\n", indexes(order), "}};\n", "\n"]
    out += ["} // namespace TamrelMxf::Tables\n"]
    return "".join(out)


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
