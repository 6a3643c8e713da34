#!/usr/bin/env python3
"""Ends the program while it writes or replaces a file: the old content stays or the new one is there, never a part, and
nothing lies beside it. One exception is counted as "left beside": SIGKILL right before the rename of a replacement.

First at every system call in turn (strace sends the signal when it begins), which leaves out no state that a file can
be in; then at random moments, with SIGKILL and SIGTERM.
"""

import argparse
import collections
import itertools
import random
import re
import shutil
import signal
import subprocess
import time
from pathlib import Path

from common import Scratch, finish, make_recording

OLD = b"what was there before\n" * 1000


class Target:
    """One command, its output and what that looks like when it is whole."""

    def __init__(self, program: Path, folder: Path, name: str, arguments: list, output: str):
        self.name = name
        self.folder = folder / name.replace(" ", "-")
        self.folder.mkdir()
        self.output = self.folder / output
        self.command = [str(word) for word in [program, *arguments, "-o", self.output]]
        began = time.monotonic()
        subprocess.run(self.command, check=True, stderr=subprocess.DEVNULL)
        self.seconds = time.monotonic() - began
        self.whole = self.stable(self.output.read_bytes())
        self.counts = collections.Counter()

    @staticmethod
    def stable(content: bytes) -> bytes:
        """Identifiers and dates of a document are new each time; their places are not."""
        return re.sub(rb"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", b"UUID", content) if content[:5] == b"<?xml" else content

    def prepare(self, there: bool):
        for entry in self.folder.iterdir():
            entry.unlink()
        if there:
            self.output.write_bytes(OLD)

    def verdict(self, there: bool, may_leave: bool) -> str:
        """What is wrong, or nothing."""
        beside = [entry.name for entry in self.folder.iterdir() if entry != self.output]
        if beside:
            self.counts["left beside"] += 1
            # Between naming the new file and the rename that replaces the old one, nobody can clean up after SIGKILL.
            whole = len(beside) == 1 and self.stable((self.folder / beside[0]).read_bytes()) == self.whole
            return "" if may_leave and whole and self.output.read_bytes() == OLD else f"left beside: {beside}"
        if not self.output.exists():
            self.counts["absent"] += 1
            return "the old file is gone" if there else ""
        content = self.output.read_bytes()
        if content == OLD:
            self.counts["old"] += 1
            return ""
        self.counts["new"] += 1
        return "" if self.stable(content) == self.whole else f"{len(content)} bytes that are neither old nor new"


def calls_of(target: Target) -> collections.Counter:
    """How often the program makes each system call when nothing disturbs it."""
    listing = target.folder.parent / "calls"
    target.prepare(True)
    subprocess.run(["strace", "-qq", "-o", listing, *target.command], check=True, stderr=subprocess.DEVNULL)
    names = (re.match(r"(\w+)\(", line) for line in listing.read_text(errors="replace").splitlines())
    return collections.Counter(name.group(1) for name in names if name)


def at_each_call(target: Target) -> int:
    findings = 0
    for name, number in [(name, number + 1) for name, count in calls_of(target).items() for number in range(count)]:
        if name == "execve":
            continue  # not yet the program
        for ending, there in itertools.product(("KILL", "TERM"), (True, False)):
            if ending == "TERM" and name not in ("fsync", "linkat", "rename", "close"):
                continue  # where SIGKILL left nothing, SIGTERM leaves nothing
            target.prepare(there)
            subprocess.run(["strace", "-qqq", "-o", "/dev/null", "-e", f"inject={name}:signal={ending}:when={number}",
                            *target.command], stderr=subprocess.DEVNULL)
            problem = target.verdict(there, may_leave=ending == "KILL" and name == "rename")
            if problem:
                findings += 1
                print(f"FINDING {target.name}, {ending} at {name} number {number}: {problem}", flush=True)
    print(f"{target.name}: killed at each system call: {dict(target.counts)}", flush=True)
    target.counts.clear()
    return findings


def at_random(targets: list, seconds: float, dice: random.Random) -> int:
    findings, rounds, end = 0, 0, time.monotonic() + seconds
    while time.monotonic() < end:
        target = targets[rounds % len(targets)]
        rounds += 1
        there = dice.random() < 0.8
        target.prepare(there)
        process = subprocess.Popen(target.command, stderr=subprocess.DEVNULL)
        time.sleep(dice.uniform(0, 1.5 * target.seconds))
        ending = dice.choice([signal.SIGKILL, signal.SIGTERM])
        process.send_signal(ending)
        process.wait()
        problem = target.verdict(there, may_leave=ending == signal.SIGKILL and there)
        if problem:
            findings += 1
            print(f"FINDING {target.name}, round {rounds}: {problem}", flush=True)
    for target in targets:
        print(f"{target.name}: at random: {dict(target.counts)}")
    print(f"{rounds} rounds at random")
    return findings


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("zanfcp", type=Path)
    options.add_argument("samples", type=Path)
    options.add_argument("--seconds", type=float, default=60)
    options.add_argument("--seed", type=int, default=int(time.time()))
    arguments = options.parse_args()
    with Scratch() as folder:
        recording = make_recording(folder / "a.mxf", "-f lavfi -i testsrc2=s=320x240:r=25:d=8 -f lavfi -i sine=sample_rate=48000:d=8 "
                                   "-c:v mpeg2video -q:v 1 -c:a pcm_s16le")
        movies = sorted(arguments.samples.glob("*.mov"))
        cuts = ["--cuts", arguments.samples / "cuts.json"]
        targets = [Target(arguments.zanfcp, folder, "build", ["build", *movies, "--sequence", *cuts], "show.xml"),
                   Target(arguments.zanfcp, folder, "extract", ["mxf", "extract", recording, "--stream", "0"], "a.m2v"),
                   Target(arguments.zanfcp, folder, "extract wav", ["mxf", "extract", recording, "--stream", "1"], "a.wav")]
        findings = 0
        if shutil.which("strace"):
            findings += sum(at_each_call(target) for target in targets)
        else:
            print("no strace here: not killed at each system call")
        findings += at_random(targets, arguments.seconds, random.Random(arguments.seed))
    finish(findings)


if __name__ == "__main__":
    main()
