#!/usr/bin/env python3
"""Ends the program while it writes or replaces a file: the old content stays or the new one is there, never a part, and
nothing lies beside it. One exception is counted as "left beside": SIGKILL right before the rename of a replacement; the
next write must remove that. A host that is killed while a client sends and saves must have all that it acknowledged
when it is started again.

First at every system call in turn (strace sends the signal when it begins), which leaves out no state that a file can
be in; then at random moments, with SIGKILL and SIGTERM.
"""

import argparse
import collections
import contextlib
import itertools
import random
import re
import shutil
import signal
import socket
import subprocess
import threading
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
        subprocess.run(self.command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.seconds = time.monotonic() - began
        self.whole = self.stable(self.output.read_bytes())
        self.counts = collections.Counter()

    @staticmethod
    def stable(content: bytes) -> bytes:
        """Identifiers and dates of a document are new each time; their places are not."""
        return re.sub(rb"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", b"UUID", content) if content[:5] == b"<?xml" else content

    def run(self, prefix=(), wait=None):
        """Runs the command to its end, or sends it a signal after some time. wait: seconds, signal"""
        with subprocess.Popen([*prefix, *self.command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
            if wait:
                time.sleep(wait[0])
                process.send_signal(wait[1])

    def prepare(self, there: bool):
        for entry in self.folder.iterdir():
            entry.unlink()
        if there:
            self.output.write_bytes(OLD)

    def verdict(self, there: bool, _done, may_leave: bool) -> str:
        """What is wrong, or nothing."""
        beside = [entry.name for entry in self.folder.iterdir() if entry != self.output]
        if beside:
            self.counts["left beside"] += 1
            # Between naming the new file and the rename that replaces the old one, nobody can clean up after SIGKILL.
            whole = len(beside) == 1 and self.stable((self.folder / beside[0]).read_bytes()) == self.whole
            if not (may_leave and whole and self.output.exists() and self.output.read_bytes() == OLD):
                return f"left beside: {beside}"
            subprocess.run(self.command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            return "" if [*self.folder.iterdir()] == [self.output] else f"left beside after the next write: {beside}"
        if not self.output.exists():
            self.counts["absent"] += 1
            return "the old file is gone" if there else ""
        content = self.output.read_bytes()
        if content == OLD:
            self.counts["old"] += 1
            return ""
        self.counts["new"] += 1
        return "" if self.stable(content) == self.whole else f"{len(content)} bytes that are neither old nor new"


class Host:
    """A host and a client that sends and saves: after each step that was acknowledged, its work must outlive the host.
    The next step may be done as well, or not."""

    def __init__(self, program: Path, folder: Path, name: str, documents: list):
        self.name, self.folder = name, folder / name
        self.socket, self.projects = self.folder / "run" / "socket", self.folder / "projects"
        self.command = [str(word) for word in [program, "host", "--projects", self.projects, "--socket", self.socket]]
        self.program, self.project = str(program), self.projects / "show.xml"
        first, second = map(str, documents)
        self.steps = [["send", first, "--project", self.project], ["save", self.project], ["send", second],
                      ["send", first], ["save"], ["send", first], ["close"]]
        self.states = [(None, None)]  # what the file and the host have after so many steps
        self.counts = collections.Counter()
        self.prepare(True)
        began = time.monotonic()
        with self.running() as host:
            for step in self.steps:
                assert self.client(*step)
                self.states.append((self.saved(), self.got()))
            host.terminate()
        self.seconds = time.monotonic() - began

    def prepare(self, _there: bool):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.projects.mkdir(parents=True)

    @contextlib.contextmanager
    def running(self, *before: str):
        """The host as a process that listens, or has ended."""
        with subprocess.Popen([*before, *self.command], stderr=subprocess.DEVNULL) as host:
            while host.poll() is None and not self.listens():
                time.sleep(0.002)
            try:
                yield host
            finally:
                host.kill()

    def listens(self) -> bool:
        with socket.socket(socket.AF_UNIX) as connection:
            return connection.connect_ex(str(self.socket)) == 0

    def client(self, command: str, *words) -> bool:
        return subprocess.run([self.program, command, *map(str, words), "--socket", self.socket, "--timeout", "20"],
                              stderr=subprocess.DEVNULL).returncode == 0

    def saved(self):
        return self.project.read_bytes() if self.project.exists() else None

    def got(self):
        output = self.folder / "got.xml"
        output.unlink(missing_ok=True)
        return output.read_bytes() if self.client("get", "--project", self.project, "-o", output) else None

    def session(self) -> int:
        """How many steps were acknowledged before the host was gone."""
        for number, step in enumerate(self.steps):
            if not self.client(*step):
                return number
        return len(self.steps)

    def run(self, prefix=(), wait=None) -> int:
        """How many steps were acknowledged before the host was gone, at the end or after `wait` and a signal."""
        with self.running(*prefix) as host:
            if wait:
                threading.Timer(wait[0], host.send_signal, [wait[1]]).start()
            done = self.session()
            host.terminate()
            host.wait()
        return done

    def verdict(self, _there: bool, done: int, may_leave: bool) -> str:
        """What is wrong after `done` steps, or nothing."""
        allowed = self.states[done:done + 2]
        beside = [entry.name for entry in self.projects.iterdir() if entry.name not in ("show.xml", ".zanfcp")]
        if beside and not may_leave:
            return f"left beside: {beside}"
        file = self.saved()
        if file not in [file for file, _ in allowed]:
            return f"the saved file is neither old nor new after {done} steps"
        with self.running() as host:
            document = self.got()
            again = all(self.client(*step) for step in (self.steps[0], ["save", self.project, "--overwrite"]))
            host.terminate()
        if (file, document) not in allowed:
            return f"after {done} steps the next host has something else"
        self.counts["left beside" if beside else "old" if (file, document) == allowed[0] else "new"] += 1
        names = sorted(str(entry.relative_to(self.projects)) for entry in self.projects.rglob("*"))
        return "" if again and names == [".zanfcp", "show.xml"] else f"after the next save there are {names}"


def calls_of(target) -> collections.Counter:
    """How often a thread of the program makes each system call, at most, when nothing disturbs it."""
    listing = target.folder.parent / "calls"
    target.prepare(True)
    target.run(["strace", "-D", "-f", "-qq", "-o", listing])
    time.sleep(0.2)  # until strace has gone too
    calls = collections.Counter(re.findall(r"^(\d+) +(\w+)\(", listing.read_text(errors="replace"), re.MULTILINE))
    most = collections.Counter()
    for (_, name), count in calls.items():
        most[name] = max(most[name], count)
    return most


def at_each_call(target) -> int:
    findings = 0
    for name, number in [(name, number + 1) for name, count in calls_of(target).items() for number in range(count)]:
        if name == "execve":
            continue  # not yet the program
        for ending, there in itertools.product(("KILL", "TERM"), (True, False)):
            if ending == "TERM" and name not in ("fsync", "linkat", "rename", "close"):
                continue  # where SIGKILL left nothing, SIGTERM leaves nothing
            if isinstance(target, Host) and not there:
                continue  # its steps write both new files and over old ones
            target.prepare(there)
            done = target.run(["strace", "-D", "-f", "-qqq", "-o", "/dev/null", "-e",
                               f"inject={name}:signal={ending}:when={number}"])
            problem = target.verdict(there, done, may_leave=ending == "KILL" and name == "rename")
            if problem:
                findings += 1
                print(f"FINDING {target.name}, {ending} at {name} number {number}: {problem}", flush=True)
    print(f"{target.name}: killed at each system call: {sum(target.counts.values())} runs, {dict(target.counts)}", flush=True)
    target.counts.clear()
    return findings


def at_random(targets: list, seconds: float, dice: random.Random) -> int:
    findings, rounds, end = 0, 0, time.monotonic() + seconds
    while time.monotonic() < end:
        target = targets[rounds % len(targets)]
        rounds += 1
        there = dice.random() < 0.8
        target.prepare(there)
        ending = dice.choice([signal.SIGKILL, signal.SIGTERM])
        done = target.run(wait=(dice.uniform(0, 1.5 * target.seconds), ending))
        problem = target.verdict(there, done, may_leave=ending == signal.SIGKILL and there)
        if problem:
            findings += 1
            print(f"FINDING {target.name}, round {rounds}: {problem}", flush=True)
    for target in targets:
        print(f"{target.name}: at random: {sum(target.counts.values())} runs, {dict(target.counts)}")
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
                   Target(arguments.zanfcp, folder, "extract wav", ["mxf", "extract", recording, "--stream", "1"], "a.wav"),
                   Target(arguments.zanfcp, folder, "stream", ["mxf", "stream", recording, "--stream", "0"], "a.m2v")]
        documents = [folder / "first.xml", folder / "second.xml"]
        for document, movie in zip(documents, movies):
            subprocess.run([arguments.zanfcp, "build", movie, "-o", document], check=True, stderr=subprocess.DEVNULL)
        beside = Host(arguments.zanfcp, folder, "beside", documents)
        beside.prepare(True)
        findings = 0
        with beside.running():
            assert beside.client("send", documents[0])
            targets.append(Target(arguments.zanfcp, folder, "get", ["get", "--socket", beside.socket], "back.xml"))
            targets.append(Host(arguments.zanfcp, folder, "host", documents))
            if shutil.which("strace"):
                findings += sum(at_each_call(target) for target in targets)
            else:
                print("no strace here: not killed at each system call")
            findings += at_random(targets, arguments.seconds, random.Random(arguments.seed))
    finish(findings)


if __name__ == "__main__":
    main()
