#!/usr/bin/env python3
"""Turns mxf/data/sets.tsv and mxf/data/properties.tsv into the constant tables of the metadata sets.

Usage: mxf/metadata/generate_set_tables.py [--check]

Writes generated/SetTablesData.cpp, the rows, and Registry.h, their names as constants. With --check nothing
is written, and the exit status is 1 when a file differs from what would be written.
"""
import csv
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
DATA = HERE.parent / "data"
ORIGIN = "// Made by generate_set_tables.py from data/sets.tsv and data/properties.tsv.\n// clang-format off\n"

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


def read():
    """The sets in the order of the register, and under each name its properties."""
    sets = rows("sets.tsv")
    by_set = {row["set_name"]: [] for row in sets}
    for row in rows("properties.tsv"):
        by_set[row["set_name"]].append(row)
    return sets, by_set


def place_of(row):
    """The place of a property, and its static local tag as a number."""
    tag = row["local_tag"]
    place = {"dyn": "dynamicTag", "pack": "pack", "record": "record"}.get(tag, "localTag")
    return place, f"0x{tag}" if place == "localTag" else "0"


def table_source(sets, by_set):
    number = {row["set_name"]: i for i, row in enumerate(sets)}
    flat, first = [], {}
    for name in number:
        first[name] = len(flat)
        flat += by_set[name]

    out = [ORIGIN, '#include "mxf/metadata/SetTablesData.h"\n', "\n", "namespace TamrelMxf::Tables {\n", "\n"]
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
        place, tag = place_of(row)
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


def registry_header(sets, by_set):
    out = ["#pragma once\n", "\n", ORIGIN, "#include <cstdint>\n", "\n", "namespace TamrelMxf {\n", "\n",
           "/// The classes of the register; the number of each is its index among AllSets().\n",
           "enum class ESet : std::uint16_t {\n"]
    out += [f'    {row["set_name"]} = {i},\n' for i, row in enumerate(sets)]
    out += ["};\n", "\n",
            "/// Where a set keeps a property: under a static local tag, or, when `tag` is 0, under the tag that the\n",
            "/// primer pack gives to the label with `item` in bytes 9 to 16.\n",
            "struct SPropertyId {\n    std::uint16_t tag;\n    std::uint64_t item;\n};\n", "\n",
            "/// The properties that are found by a tag, under the class that owns them.\n", "namespace Prop {\n"]
    for name, properties in by_set.items():
        tagged = [row for row in properties if place_of(row)[0] in ("localTag", "dynamicTag")]
        if not tagged:
            continue
        out += [f"namespace {name} {{\n"]
        for row in tagged:
            item = row["ul"].replace(".", "")[16:]
            out.append(f'inline constexpr SPropertyId {row["property"]}{{{place_of(row)[1]}, 0x{item}}};\n')
        out += ["}\n"]
    out += ["} // namespace Prop\n", "} // namespace TamrelMxf\n"]
    return "".join(out)


def main(arguments):
    if arguments not in ([], ["--check"]):
        sys.exit(__doc__)
    sets, by_set = read()
    for name, make in (("generated/SetTablesData.cpp", table_source), ("Registry.h", registry_header)):
        path, text = HERE / name, make(sets, by_set)
        if not arguments:
            path.write_text(text, encoding="utf-8")
        elif not path.exists() or path.read_text(encoding="utf-8") != text:
            sys.exit(f"{path} is not what {pathlib.Path(__file__).name} writes")


if __name__ == "__main__":
    main(sys.argv[1:])
