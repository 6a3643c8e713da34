#!/usr/bin/env python3
"""Runs the program over damaged recordings. Every damaged file follows from one number, which is printed with a finding.

A finding is a crash, a report of a sanitizer, a hang, an exit code other than 0 and 1, more than the allowed CPU time,
memory or output, or a document (XML, JSON) that is not well-formed.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import random
import resource
import shutil
import signal
import struct
import subprocess
import threading
import time
from pathlib import Path

from common import MIB, RECORDINGS, Scratch, finish, is_well_formed, make_recording, named, run

SANITIZER_EXIT = 99
MOST_OUTPUT = 64 * MIB  # the largest page of an undamaged file has some 30 KiB
STRANGE = [0, 1, 2, 3, 4, 7, 8, 15, 16, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
           0x7FFFFFFFFFFFFFFF, 0x8000000000000000, 0xFFFFFFFFFFFFFFFF]
KLV_KEY = b"\x06\x0e\x2b\x34"


def places_of_lengths(data: bytes, is_mxf: bool) -> list:
    """Where lengths stand: behind the key of a KLV, or before the type of a box."""
    found = []
    if is_mxf:
        at = data.find(KLV_KEY)
        while at >= 0:
            found.append(at + 16)
            at = data.find(KLV_KEY, at + 4)
    else:
        for kind in (b"moov", b"trak", b"mdia", b"minf", b"stbl", b"stsd", b"stts", b"stsz", b"stsc", b"stco", b"mvhd",
                     b"tkhd", b"mdhd", b"hdlr", b"edts", b"elst", b"tmcd", b"udta", b"mdat", b"moof", b"traf", b"trun",
                     b"tfhd", b"gmhd", b"dref", b"ftyp", b"name", b"tref", b"avcC", b"wave", b"esds", b"trex"):
            at = data.find(kind)
            while at >= 4:
                found.append(at - 4)
                at = data.find(kind, at + 4)
    return found


def place(dice: random.Random, size: int) -> int:
    """Mostly where the facts are: at the beginning and at the end."""
    if size == 0 or dice.random() < 0.2:
        return dice.randrange(size + 1)
    within = min(size, 8192)
    return dice.randrange(within) if dice.random() < 0.6 else size - 1 - dice.randrange(within)


def span(dice: random.Random, size: int) -> tuple:
    start = place(dice, size)
    return start, min(size, start + int(2 ** dice.uniform(0, 13)))


def damage(dice: random.Random, data: bytearray, other: bytes, is_mxf: bool) -> str:
    """Does one thing to `data` and says what."""
    what = dice.choices(["flip", "cut end", "cut", "splice", "duplicate", "swap", "length", "number"],
                        [5, 1, 2, 2, 2, 2, 5, 4])[0]
    start, end = span(dice, len(data))
    if what == "flip":
        for _ in range(dice.choice([1, 1, 2, 4, 16])):
            at = place(dice, len(data))
            if at < len(data):
                data[at] ^= 1 << dice.randrange(8)
    elif what == "cut end":
        del data[place(dice, len(data)):]
    elif what == "cut":
        del data[start:end]
    elif what == "splice":
        first, last = span(dice, len(other))
        data[start:end if dice.random() < 0.5 else start] = other[first:last]
    elif what == "duplicate":
        data[end:end] = data[start:end] * dice.choice([1, 1, 2, 50])
    elif what == "swap":
        first, last = span(dice, len(data))
        if end <= first:
            data[start:last] = data[first:last] + data[end:first] + data[start:end]
    else:
        places = places_of_lengths(bytes(data), is_mxf) if what == "length" else []
        at = dice.choice(places) if places else place(dice, len(data))
        width = dice.choice([1, 2, 3, 4, 8, 9] if is_mxf else [1, 4, 4, 8])
        value = dice.choice(STRANGE) if dice.random() < 0.7 else dice.getrandbits(dice.randrange(1, 65))
        if width == 9 or (what == "length" and is_mxf):  # the long form of a BER length
            count = dice.choice([1, 2, 3, 4, 8])
            number = bytes([0x80 | count]) + struct.pack(">Q", value)[8 - count:]
        else:
            number = struct.pack(">Q", value)[8 - width:]
        data[at:at + len(number)] = number[:max(0, len(data) - at)]
    return what


class Trial:
    """One damaged file and all that is done with it."""

    def __init__(self, seed: int, recordings: dict):
        dice = random.Random(seed)
        self.seed = seed
        self.name = dice.choice(sorted(recordings))
        self.is_mxf = self.name.endswith(".mxf")
        data = bytearray(recordings[self.name])
        other = recordings[dice.choice(sorted(name for name in recordings if name.endswith(self.name[-4:])))]
        self.steps = [damage(dice, data, other, self.is_mxf) for _ in range(dice.choice([1, 1, 1, 2, 3, 6]))]
        self.data = bytes(data)
        self.stream = dice.randrange(3)
        self.partner = dice.choice(sorted(recordings)) if dice.random() < 0.5 else None

    def commands(self, path: Path, folder: Path, document: Path) -> list:
        partner = [folder / self.partner] if self.partner else []
        listed = [("inspect", ["inspect", "--json", path]),
                  ("build", ["build", path, *partner, "--sequence", "-o", document])]
        if self.is_mxf:
            listed += [("mxf info", ["mxf", "info", "--json", path]),
                       ("mxf info", ["mxf", "info", path]),
                       ("mxf dump", ["mxf", "dump", path]),
                       ("mxf samples", ["mxf", "samples", "--json", path]),
                       ("mxf extract", ["mxf", "extract", path, "--stream", self.stream, "-o", "-"]),
                       ("mxf stream", ["mxf", "stream", "-"])]
        return listed


class Campaign:
    def __init__(self, arguments, folder: Path, recordings: dict):
        self.arguments, self.folder, self.recordings = arguments, folder, recordings
        self.lock = threading.Lock()
        self.files = collections.Counter()
        self.outcomes = collections.Counter()
        self.documents = 0
        self.findings = 0
        self.longest = 0.0
        self.limits = [(resource.RLIMIT_CPU, arguments.cpu_seconds), (resource.RLIMIT_FSIZE, MOST_OUTPUT),
                       (resource.RLIMIT_CORE, 0)]
        if arguments.memory:
            self.limits.append((resource.RLIMIT_AS, arguments.memory * MIB))

    def report(self, trial: Trial, command, what: str, detail: str):
        suffix = trial.name[-4:]
        self.arguments.keep.mkdir(parents=True, exist_ok=True)
        kept = self.arguments.keep / f"mutate-{trial.seed}{suffix}"
        kept.write_bytes(trial.data)
        with self.lock:
            self.findings += 1
        print(f"\nFINDING seed {trial.seed} ({trial.name}: {', '.join(trial.steps)}): {what}\n  kept as {kept}\n  zanfcp "
              + " ".join(str(word) for word in command) + "\n" + detail[-3000:], flush=True)

    def check(self, trial: Trial, path: Path, work: Path):
        document = work / "show.xml"
        for name, command in trial.commands(path, self.folder, document):
            document.unlink(missing_ok=True)
            page = work / "page"
            began = time.monotonic()
            with open(page, "wb") as sink:
                outcome = run([self.arguments.zanfcp, *command], self.limits, stdin=path if command[-1] == "-" else None,
                              stdout=sink, wall_seconds=180,
                              environment={"ASAN_OPTIONS": f"exitcode={SANITIZER_EXIT}:max_allocation_size_mb=256",
                                           "UBSAN_OPTIONS": f"exitcode={SANITIZER_EXIT}:print_stacktrace=1"})
            elapsed = time.monotonic() - began
            with self.lock:
                self.outcomes[name, outcome.code] += 1
                self.longest = max(self.longest, elapsed)
            what = None
            if outcome.hung:
                what = "still running after three minutes"
            elif outcome.code in (-signal.SIGXCPU, -signal.SIGKILL):
                what = f"more than {self.arguments.cpu_seconds} s of CPU time"
            elif outcome.code not in (0, 1):
                what = named(outcome.code)
            elif page.stat().st_size >= MOST_OUTPUT:
                what = "endless output"
            elif "terminate called" in outcome.err or "bad_alloc" in outcome.err:
                what = "out of memory"
            elif name == "build" and outcome.code == 0:
                with self.lock:
                    self.documents += 1
                if not document.exists() or not is_well_formed(document):
                    what = "the document is not well-formed"
            elif name == "build" and document.exists():
                what = "a document in spite of a failure"
            elif "--json" in command:
                try:
                    for line in page.read_text().splitlines() if name != "mxf info" else [page.read_text() or "{}"]:
                        json.loads(line)
                except ValueError as problem:
                    what = f"no JSON: {problem}"
            if what:
                shutil.copy(document, self.arguments.keep) if document.exists() and self.arguments.keep.exists() else None
                self.report(trial, command, what, outcome.err)

    def one(self, seed: int):
        trial = Trial(seed, self.recordings)
        work = self.folder / f"trial-{seed}"
        work.mkdir()
        path = work / f"damaged{trial.name[-4:]}"
        path.write_bytes(trial.data)
        self.check(trial, path, work)
        shutil.rmtree(work)
        with self.lock:
            self.files[trial.name[-3:]] += 1

    def run(self):
        began = time.monotonic()
        seeds = iter(range(self.arguments.seed, self.arguments.seed + (self.arguments.count or 1 << 40)))

        def work():
            while time.monotonic() - began < self.arguments.seconds and self.findings < 20:
                with self.lock:
                    seed = next(seeds, None)
                if seed is None:
                    return
                self.one(seed)

        with concurrent.futures.ThreadPoolExecutor(self.arguments.jobs) as pool:
            for done in [pool.submit(work) for _ in range(self.arguments.jobs)]:
                done.result()
        print(f"\n{time.monotonic() - began:.0f} s; damaged files: "
              + ", ".join(f"{count} .{kind}" for kind, count in sorted(self.files.items()))
              + f"; seeds from {self.arguments.seed}; {self.documents} documents; longest run {self.longest:.1f} s")
        for name in sorted({name for name, _ in self.outcomes}):
            print(f"  {name:12} " + ", ".join(f"{named(code)}: {count}" for (own, code), count
                                              in sorted(self.outcomes.items()) if own == name))


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("zanfcp", type=Path)
    options.add_argument("--seconds", type=float, default=600)
    options.add_argument("--seed", type=int, default=int(time.time()) * 1000)
    options.add_argument("--count", type=int, help="this many files, though time be left; 1 repeats a finding")
    options.add_argument("--cpu-seconds", type=int, default=1)
    options.add_argument("--memory", type=int, help="MiB of address space; not with sanitizers, which need terabytes")
    options.add_argument("--jobs", type=int, default=12 * (os.cpu_count() or 1), help="many, because cut MXF files are waited for")
    options.add_argument("--keep", type=Path, default=Path("build/endurance-findings"))
    arguments = options.parse_args()
    with Scratch() as folder:
        recordings = {name: make_recording(folder / name, how).read_bytes() for name, how in RECORDINGS.items()}
        campaign = Campaign(arguments, folder, recordings)
        campaign.run()
    finish(campaign.findings)


if __name__ == "__main__":
    main()
