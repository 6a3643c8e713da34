#!/usr/bin/env python3
"""Runs the program over damaged recordings. Every damaged file follows from one number, which is printed with a finding.

A finding is a crash, a report of a sanitizer, a hang, an exit code other than 0 and 1, more than the allowed CPU time,
memory or output, a failure without a message, a document (XML, JSON) that is missing or not well-formed, or a file
beside it.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import random
import shutil
import signal
import struct
import threading
import time
import xml.parsers.expat
from dataclasses import dataclass
from pathlib import Path

from common import MIB, RECORDINGS, Scratch, finish, make_recording, named

SANITIZER_EXIT = 99
ENVIRONMENT = {**os.environ,
               "ASAN_OPTIONS": f"exitcode={SANITIZER_EXIT}:max_allocation_size_mb=256:quarantine_size_mb=8",
               "UBSAN_OPTIONS": f"exitcode={SANITIZER_EXIT}:print_stacktrace=1"}
WALL_SECONDS = 180
MOST_OUTPUT = 64 * MIB  # the largest page of an undamaged file has some 30 KiB
STRANGE = [0, 1, 2, 3, 4, 7, 8, 15, 16, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
           0x7FFFFFFFFFFFFFFF, 0x8000000000000000, 0xFFFFFFFFFFFFFFFF]
ITS_OWN = ("damaged.mov", "damaged.mxf", "page", "page.err")  # in the folder of a trial, beside the document
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
    """One damaged file and all that is done with it: a QuickTime file for an even seed, an MXF file for an odd one."""

    def __init__(self, seed: int, recordings: dict):
        dice = random.Random(seed)
        self.seed = seed
        self.is_mxf = seed % 2 == 1
        self.kind = "mxf" if self.is_mxf else "mov"
        names = sorted(name for name in recordings if name.endswith(self.kind))
        self.name = dice.choice(names)
        data = bytearray(recordings[self.name])
        other = recordings[dice.choice(names)]
        self.steps = [damage(dice, data, other, self.is_mxf) for _ in range(dice.choice([1, 1, 1, 2, 3, 6]))]
        self.data = bytes(data)
        self.stream = dice.randrange(3)
        self.partner = dice.choice(sorted(recordings)) if dice.random() < 0.5 else None
        self.as_json = ["--json"] if dice.random() < 0.5 else []
        self.share = dice.choice(["dump", "samples", "stream"])

    def commands(self, path: Path, folder: Path, document: Path) -> list:
        partner = [folder / self.partner] if self.partner else []
        listed = [("inspect", ["inspect", "--json", path]),
                  ("build", ["build", path, *partner, "--sequence", "-o", document])]
        if self.is_mxf:
            listed += [("mxf info", ["mxf", "info", *self.as_json, path]),
                       ("mxf extract", ["mxf", "extract", path, "--stream", self.stream, "-o", "-"]),
                       {"dump": ("mxf dump", ["mxf", "dump", path]),
                        "samples": ("mxf samples", ["mxf", "samples", *self.as_json, path]),
                        "stream": ("mxf stream", ["mxf", "stream", "-"])}[self.share]]
        return listed


@dataclass
class Outcome:
    code: int  # negative: the number of the signal that ended it
    seconds: float  # of CPU time
    mebibytes: float  # in memory at most; no less than this script had when it started the program
    hung: bool
    page: bytes
    err: str


class Stopped(Exception):
    """The campaign is over before its time."""


class Runner:
    """Starts programs from many threads, though only some at a time until they sleep: a cut MXF file is waited for."""

    def __init__(self, limits: list, busy: int):
        self.prefix = ["prlimit", *limits, "--"]
        self.starting = threading.Semaphore(busy)
        self.lock = threading.Lock()
        self.running = {}  # process: since when, and whether it counts as busy
        self.stopped = False
        threading.Thread(target=self.watch, daemon=True).start()

    def watch(self):
        while True:
            time.sleep(0.05)
            with self.lock:
                for process, (began, busy) in self.running.items():
                    age = time.monotonic() - began
                    if busy and age > 0.2 and self.sleeps(process):
                        self.running[process] = (began, False)
                        self.starting.release()
                    if age > WALL_SECONDS:
                        os.kill(process, signal.SIGKILL)

    @staticmethod
    def sleeps(process: int) -> bool:
        try:
            return Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] == "S"
        except OSError:
            return False

    def stop(self):
        """Ends all that runs; nothing is started any more."""
        with self.lock:
            self.stopped = True
            for process in self.running:
                os.kill(process, signal.SIGKILL)

    def run(self, command: list, source: Path, page: Path) -> Outcome:
        err = page.with_suffix(".err")
        files = [(os.POSIX_SPAWN_OPEN, 0, str(source), os.O_RDONLY, 0)]
        files += [(os.POSIX_SPAWN_OPEN, number, str(path), os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)
                  for number, path in ((1, page), (2, err))]
        self.starting.acquire()
        began = time.monotonic()
        with self.lock:
            if self.stopped:
                self.starting.release()
                raise Stopped
            # In a group of its own: Ctrl-C is for this script, and no finding.
            process = os.posix_spawnp("prlimit", [*self.prefix, *map(str, command)], ENVIRONMENT, file_actions=files,
                                      setsigdef=[signal.SIGPIPE, signal.SIGXFSZ], setpgroup=0)
            self.running[process] = (began, True)
        os.waitid(os.P_PID, process, os.WEXITED | os.WNOWAIT)
        with self.lock:  # its number is free for others only after this
            _, status, used = os.wait4(process, 0)
            busy = self.running.pop(process)[1]
        if busy:
            self.starting.release()
        if self.stopped:
            raise Stopped
        return Outcome(os.waitstatus_to_exitcode(status), used.ru_utime + used.ru_stime, used.ru_maxrss / 1024,
                       time.monotonic() - began > WALL_SECONDS, page.read_bytes(), err.read_text(errors="replace"))


def no_number(word: str):
    raise ValueError(f"{word} is no number")


def flaw(document: bytes) -> str:
    """Why it is not well-formed, or nothing."""
    try:
        xml.parsers.expat.ParserCreate().Parse(document, True)
        return ""
    except xml.parsers.expat.ExpatError as problem:
        return str(problem)


class Campaign:
    def __init__(self, arguments, folder: Path, recordings: dict):
        self.arguments, self.folder, self.recordings = arguments, folder, recordings
        self.program = arguments.zanfcp.resolve()
        self.lock = threading.Lock()
        self.files = collections.Counter()
        self.outcomes = collections.defaultdict(list)
        self.documents = 0
        self.findings = 0
        self.began = self.told = time.monotonic()
        limits = [f"--cpu={arguments.cpu_seconds}:{arguments.cpu_seconds + 1}", f"--fsize={MOST_OUTPUT}", "--core=0"]
        if arguments.address_space:
            limits.append(f"--as={arguments.address_space * MIB}")
        self.runner = Runner(limits, arguments.busy)

    def report(self, trial: Trial, command, what: str, detail: str):
        self.arguments.keep.mkdir(parents=True, exist_ok=True)
        kept = self.arguments.keep / f"mutate-{trial.seed}.{trial.kind}"
        kept.write_bytes(trial.data)
        with self.lock:
            self.findings += 1
        print(f"\nFINDING seed {trial.seed} ({trial.name}: {', '.join(trial.steps)}): {what}\n  kept as {kept}\n  zanfcp "
              + " ".join(str(word) for word in command) + "\n" + detail[-3000:], flush=True)

    def problem(self, name: str, command: list, outcome: Outcome, document: Path) -> str:
        """What is wrong with a run, or nothing."""
        if outcome.hung:
            return "still running after three minutes"
        if outcome.code in (-signal.SIGXCPU, -signal.SIGKILL) or outcome.seconds > self.arguments.cpu_seconds:
            return f"{outcome.seconds:.2f} s of CPU time"
        if outcome.code not in (0, 1):
            return named(outcome.code)
        if outcome.mebibytes > self.arguments.memory:
            return f"{outcome.mebibytes:.0f} MiB of memory"
        if len(outcome.page) >= MOST_OUTPUT:
            return "endless output"
        if "terminate called" in outcome.err or "bad_alloc" in outcome.err:
            return "out of memory"
        if outcome.code == 1 and not outcome.err.strip():
            return "a failure without a message"
        beside = {entry.name for entry in document.parent.iterdir()} - {document.name, *ITS_OWN}
        if beside:
            return f"left beside: {beside}"
        if name == "build":
            if document.exists() != (outcome.code == 0):
                return "no document" if outcome.code == 0 else "a document in spite of a failure"
            return outcome.code == 0 and flaw(document.read_bytes())
        if "--json" in command:
            if outcome.code == 0 and not outcome.page and name != "mxf samples":  # there may be none
                return "no JSON"
            try:
                for line in [outcome.page] if name == "mxf info" and outcome.page else outcome.page.splitlines():
                    json.loads(line, parse_constant=no_number)
            except ValueError as problem:
                return f"no JSON: {problem}"
        return ""

    def one(self, seed: int):
        trial = Trial(seed, self.recordings)
        work = self.folder / f"trial-{seed}"
        work.mkdir()
        path, document = work / f"damaged.{trial.kind}", work / "show.xml"
        path.write_bytes(trial.data)
        for name, command in trial.commands(path, self.folder, document):
            outcome = self.runner.run([self.program, *command], path if command[-1] == "-" else os.devnull, work / "page")
            with self.lock:
                self.outcomes[trial.kind, name].append((outcome.code, outcome.seconds, outcome.mebibytes))
                self.documents += document.exists()
            what = self.problem(name, command, outcome, document)
            if what:
                self.report(trial, command, what, outcome.err)
                if document.exists():
                    shutil.copy(document, self.arguments.keep / f"mutate-{seed}.xml")
            document.unlink(missing_ok=True)
        shutil.rmtree(work)
        with self.lock:
            self.files[trial.kind] += 1
            if time.monotonic() - self.told > 300:
                self.told = time.monotonic()
                self.tell()

    def tell(self):
        print(f"\n{time.monotonic() - self.began:.0f} s; damaged files: "
              + ", ".join(f"{count} .{kind}" for kind, count in sorted(self.files.items()))
              + f"; seeds from {self.arguments.seed}; {self.documents} documents; {self.findings} findings")
        for (kind, name), runs in sorted(self.outcomes.items()):
            codes = collections.Counter(code for code, _, _ in runs)
            print(f"  .{kind} {name:12} {len(runs):6} runs; "
                  + ", ".join(f"{named(code)}: {count}" for code, count in sorted(codes.items()))
                  + f"; CPU time {1000 * sum(seconds for _, seconds, _ in runs) / len(runs):.0f} ms, at most "
                  f"{1000 * max(seconds for _, seconds, _ in runs):.0f} ms; memory at most {max(size for _, _, size in runs):.0f} MiB",
                  flush=True)

    def run(self):
        seeds = iter(range(self.arguments.seed, self.arguments.seed + (self.arguments.count or 1 << 40)))

        def work():
            while time.monotonic() - self.began < self.arguments.seconds and self.findings < 20:
                with self.lock:
                    seed = next(seeds, None)
                if seed is None:
                    return
                try:
                    self.one(seed)
                except Stopped:
                    return

        with concurrent.futures.ThreadPoolExecutor(self.arguments.jobs) as pool:
            try:
                for done in [pool.submit(work) for _ in range(self.arguments.jobs)]:
                    done.result()
            finally:  # early only by Ctrl-C or a fault of this script
                self.runner.stop()
                self.tell()


def main():
    processors = os.cpu_count() or 1
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("zanfcp", type=Path)
    options.add_argument("--seconds", type=float, default=600)
    options.add_argument("--each", type=int, help="this many files of each kind, however long it takes")
    options.add_argument("--seed", type=int, default=int(time.time()) * 1000)
    options.add_argument("--count", type=int, help="this many files, though time be left; 1 repeats a finding")
    options.add_argument("--cpu-seconds", type=int, default=1)
    options.add_argument("--memory", type=int, default=256, help="MiB in memory at most, the sanitizers' own included")
    options.add_argument("--address-space", type=int, help="MiB; not with sanitizers, which need terabytes")
    options.add_argument("--jobs", type=int, default=min(64, 16 * processors), help="many, because most wait for cut MXF files")
    options.add_argument("--busy", type=int, default=processors + 1, help="as many of them at a time that do not wait")
    options.add_argument("--keep", type=Path, default=Path("build/endurance-findings"))
    arguments = options.parse_args()
    if arguments.each:
        arguments.count, arguments.seconds = 2 * arguments.each, float("inf")
    with Scratch() as folder:
        recordings = {name: make_recording(folder / name, how).read_bytes() for name, how in RECORDINGS.items()}
        campaign = Campaign(arguments, folder, recordings)
        campaign.run()
    finish(campaign.findings)


if __name__ == "__main__":
    main()
